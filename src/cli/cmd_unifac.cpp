// The UNIFAC program on the command line: the two example cases and the estimate of a case.
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <iostream>

#include "cli/beyond_output.h"
#include "cli/command_registry.h"
#include "cli/example_registry.h"
#include "cli/json_case_file.h"
#include "cli/json_case_readers.h"
#include "io/display_format.h"
#include "io/field_reader.h"
#include "state/errors.h"
#include "unifac/unifac_model.h"

namespace tervale::cli {
namespace {

// The group table of the screen has four blocks of 22 rows.
constexpr int kScreenSubGroups = 88;

Json BoxValue(const std::string& text) {
  if (text.empty()) return nullptr;
  double v = 0;
  if (io::ParseNumber(text, v)) {
    if (text.find_first_of(".eE") == std::string::npos && std::fabs(v) < 1e9)
      return static_cast<long long>(v);
    return v;
  }
  return text;
}

Json ExampleCase(int number) {
  UnifacScreenInput in = UnifacExample(number);
  Json components = Json::array();
  for (int i = 1; i <= 2; ++i)
    components.push_back({{"name", in.Name[i]},
                          {"A", BoxValue(in.A[i])},
                          {"B", BoxValue(in.B[i])},
                          {"C", BoxValue(in.C[i])}});
  Json groups = Json::array();
  for (int sg = 1; sg <= kMaxSubGroups; ++sg) {
    if (in.Count[sg][1].empty() && in.Count[sg][2].empty()) continue;
    groups.push_back(
        {{"subgroup", sg}, {"counts", {BoxValue(in.Count[sg][1]), BoxValue(in.Count[sg][2])}}});
  }
  return Json{{"program", "unifac"},
              {"components", components},
              {"pressure", BoxValue(in.Press)},
              {"temperature", BoxValue(in.Temp)},
              {"groups", groups}};
}

UnifacScreenInput ReadCase(const Json& j, const std::string& file) {
  UnifacScreenInput in;
  CheckCaseProgram(j, "unifac", file);
  CheckCaseKeys(j, {"program", "components", "pressure", "temperature", "groups"}, file);
  const Json& comps = j.contains("components") ? j.at("components") : Json();
  if (!comps.is_array() || comps.size() != 2)
    throw InputRefused(file + ": \"components\" must list exactly two components");
  for (int i = 1; i <= 2; ++i) {
    const Json& c = comps.at(i - 1);
    std::string where = file + ": component " + std::to_string(i);
    CheckCaseKeys(c, {"name", "A", "B", "C"}, where);
    in.Name[i] = CaseString(c, "name", where);
    in.A[i] = CaseText(c.value("A", Json()), where + " A");
    in.B[i] = CaseText(c.value("B", Json()), where + " B");
    in.C[i] = CaseText(c.value("C", Json()), where + " C");
  }
  in.Press = CaseText(j.value("pressure", Json()), file + ": \"pressure\"");
  in.Temp = CaseText(j.value("temperature", Json()), file + ": \"temperature\"");
  if (j.contains("groups")) {
    const Json& groups = j.at("groups");
    if (!groups.is_array()) throw InputRefused(file + ": \"groups\" must be a list");
    for (const Json& g : groups) {
      std::string where = file + ": group " + g.dump();
      CheckCaseKeys(g, {"subgroup", "counts"}, where);
      if (!g.contains("subgroup") || !g.at("subgroup").is_number_integer())
        throw InputRefused(where + ": \"subgroup\" must be a whole number");
      int sg = g.at("subgroup").get<int>();
      if (sg < 1 || sg > kScreenSubGroups)
        throw InputRefused(where + ": subgroup " + std::to_string(sg) +
                           " is not on the group table (1.." + std::to_string(kScreenSubGroups) +
                           ")");
      const Json& counts = g.value("counts", Json());
      if (!counts.is_array() || counts.size() != 2)
        throw InputRefused(where +
                           ": \"counts\" must be [count in component 1, count in "
                           "component 2], null for an empty cell");
      for (int i = 1; i <= 2; ++i) {
        std::string text = CaseText(counts.at(i - 1), where + " count");
        if (!text.empty()) in.Count[sg][i] = text;
      }
    }
  }
  return in;
}

std::filesystem::path ProgramFolder() {
  std::error_code ec;
  auto exe = std::filesystem::read_symlink("/proc/self/exe", ec);
  if (ec) return std::filesystem::current_path();
  return exe.parent_path();
}

Json ResultJson(CliContext& ctx) {
  const auto& u = ctx.s().Unifac;
  Json curve = Json::array();
  for (int n = 1; n <= kUnifacPoints; ++n)
    curve.push_back({{"x", JsonNumber(ctx, u.CurveX[n], "x")},
                     {"y", JsonNumber(ctx, u.CurveY[n], "y")},
                     {"T", JsonNumber(ctx, u.CurveT[n], "T")},
                     {"gamma1", JsonNumber(ctx, u.CurveGamma[n][1], "gamma1")},
                     {"gamma2", JsonNumber(ctx, u.CurveGamma[n][2], "gamma2")}});
  Json end = Json::array();
  for (int i = 1; i <= 2; ++i)
    end.push_back({JsonNumber(ctx, u.EndGammaRes[i][1], "end_gamma_res"),
                   JsonNumber(ctx, u.EndGammaRes[i][2], "end_gamma_res")});
  return Json{
      {"curve", curve},
      {"t_max", JsonNumber(ctx, u.CurveTMax, "t_max")},
      {"t_min", JsonNumber(ctx, u.CurveTMin, "t_min")},
      {"end_gamma_res", end},
      {"wilson",
       {JsonNumber(ctx, u.DerivedWilson1, "wilson"), JsonNumber(ctx, u.DerivedWilson2, "wilson")}},
      {"azeotropes", AzeotropesJson(ctx, FindUnifacAzeotropes(ctx.s()))}};
}

void PrintText(CliContext& ctx) {
  const auto& s = ctx.s();
  const auto& u = s.Unifac;
  std::cout << Pick(s, BiText{"Estimate V-L Equibrium by Group Contribution MEthod (UNIFAC)",
                              "グループ寄与法による気液平衡推算(UNIFAC)"})
            << '\n';
  for (int i = 1; i <= 2; ++i)
    std::cout << "  " << s.Comp.CompName[i] << "  A=" << s.Comp.AntoineA[i]
              << " B=" << s.Comp.AntoineB[i] << " C=" << s.Comp.AntoineC[i] << '\n';
  std::cout << Pick(s, BiText{"Press=", "圧力="}) << u.VLEPressure << " mmHg\n";
  std::cout << Pick(s, BiText{"Estimate Wilson Parameter", "推算したWilson Parameter"}) << ": "
            << "Λ12=" << io::FormatNumber(u.DerivedWilson1, " ##0.00000000")
            << "  Λ21=" << io::FormatNumber(u.DerivedWilson2, " ##0.00000000") << '\n';
  std::cout << "T max=" << io::FormatNumber(u.CurveTMax, "####.#0")
            << "  T min=" << io::FormatNumber(u.CurveTMin, "####.#0") << '\n';
  PrintAzeotropesText(FindUnifacAzeotropes(s), "T", "C");
  io::ReportTable t;
  t.view = "curve";
  t.columns = {"x1", "y1", "T(C)", "gamma1", "gamma2"};
  for (int n = 1; n <= kUnifacPoints; ++n)
    t.rows.push_back(
        {io::FormatNumber(u.CurveX[n], "0.0000"), io::FormatNumber(u.CurveY[n], "0.00000"),
         io::FormatNumber(u.CurveT[n], "##0.00"), io::FormatNumber(u.CurveGamma[n][1], "#0.00000"),
         io::FormatNumber(u.CurveGamma[n][2], "#0.00000")});
  PrintTable(ctx, t);
}

void PrintCsv(CliContext& ctx) {
  const auto& u = ctx.s().Unifac;
  io::ReportTable t;
  t.view = "curve";
  t.columns = {"x", "y", "T", "gamma1", "gamma2"};
  for (int n = 1; n <= kUnifacPoints; ++n)
    t.rows.push_back(
        {u.CurveX[n], u.CurveY[n], u.CurveT[n], u.CurveGamma[n][1], u.CurveGamma[n][2]});
  PrintTable(ctx, t);
}

CommandRegistrar reg(60, [](CLI::App& app, CliContext& ctx) {
  auto* cmd = app.add_subcommand("unifac", "Estimate binary VLE by UNIFAC from a JSON case file");
  static std::string file;
  static std::string parameters;
  cmd->add_option("file", file, "The JSON case file")->required();
  cmd->add_option("--parameters", parameters,
                  "The UNIFAC.PAR to use (default: the one beside the program)");
  cmd->callback([&ctx] {
    ctx.action = [&ctx] {
      auto& s = ctx.s();
      std::filesystem::path par =
          parameters.empty() ? ProgramFolder() / "UNIFAC.PAR" : std::filesystem::path(parameters);
      if (!std::filesystem::is_regular_file(par))
        return Refuse(ctx, std::string(Pick(s, BiText{"The UNIFAC parameter file is missing: ",
                                                      "UNIFACパラメータファイルがありません: "})) +
                               par.string());
      ReadUnifacParameterFile(s, par);
      UnifacScreenInput in = ReadUnifacCaseFile(file);
      if (!RunUnifacEstimate(s, in)) {
        if (ctx.json) PrintJson(ctx, Json::object());
        return 2;
      }
      if (ctx.json)
        PrintJson(ctx, ResultJson(ctx));
      else if (ctx.csv)
        PrintCsv(ctx);
      else
        PrintText(ctx);
      return 0;
    };
  });
});

ExampleRegistrar unifacExamples({"unifac",
                                 "UNIFAC case 1 (methanol-water) or 2 (benzene-methanol)",
                                 {1, 2},
                                 1,
                                 [](CliContext& ctx, int number, const std::filesystem::path& out) {
                                   return WriteExampleText(ctx, out,
                                                           ExampleCase(number).dump(2) + "\n");
                                 }});

}  // namespace

UnifacScreenInput ReadUnifacCaseFile(const std::string& file) {
  return ReadCase(LoadJsonCase(file), file);
}

}  // namespace tervale::cli
