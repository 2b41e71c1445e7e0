// The Antoine estimation on the command line: the example case and the estimate of a case.
#include <iostream>

#include "cli/command_registry.h"
#include "cli/example_registry.h"
#include "cli/json_case_file.h"
#include "cli/json_case_readers.h"
#include "io/display_format.h"
#include "state/errors.h"
#include "vapourpress/antoine_estimate.h"

namespace tervale::cli {
namespace {

Json OptionalNumber(const std::optional<double>& v) {
  if (v) return *v;
  return nullptr;
}

Json ExampleCase() {
  auto s = MakeSharedCalcState();
  LoadAntoineExample(*s);
  const auto& e = s->Antoine;
  Json subs = Json::array();
  for (int r = 1; r <= kMaxAntoineRows && !e.Formula[r].empty(); ++r) {
    Json points = Json::array();
    for (int n = 1; n <= e.MeasuredCount[r]; ++n)
      points.push_back({e.MeasuredTemp[r][n], e.MeasuredPress[r][n]});
    subs.push_back({{"formula", e.Formula[r]},
                    {"name", e.Name[r]},
                    {"A", e.A[r]},
                    {"B", e.B[r]},
                    {"C", e.C[r]},
                    {"Tc", e.Tc[r]},
                    {"Pc", e.Pc[r]},
                    {"omega", e.Omega[r]},
                    {"points", points}});
  }
  return Json{{"program", "antoine"},
              {"temp_low", OptionalNumber(e.TempLow)},
              {"temp_high", OptionalNumber(e.TempHigh)},
              {"substances", subs}};
}

void ReadCase(const Json& j, const std::string& file, SharedCalcState& s) {
  AntoineEstimate e;
  CheckCaseProgram(j, "antoine", file);
  CheckCaseKeys(j, {"program", "temp_low", "temp_high", "substances"}, file);
  e.TempLow = CaseOptionalNumber(j, "temp_low", file);
  e.TempHigh = CaseOptionalNumber(j, "temp_high", file);
  const Json& subs = j.contains("substances") ? j.at("substances") : Json::array();
  if (!subs.is_array()) throw InputRefused(file + ": \"substances\" must be a list");
  if (subs.size() > static_cast<size_t>(kMaxAntoineRows))
    throw InputRefused(file + ": at most " + std::to_string(kMaxAntoineRows) + " substances, not " +
                       std::to_string(subs.size()));
  for (size_t k = 0; k < subs.size(); ++k) {
    int r = static_cast<int>(k) + 1;
    const Json& o = subs.at(k);
    std::string where = file + ": substance " + std::to_string(r);
    CheckCaseKeys(o, {"formula", "name", "A", "B", "C", "Tc", "Pc", "omega", "points"}, where);
    e.Formula[r] = CaseString(o, "formula", where);
    e.Name[r] = CaseString(o, "name", where);
    e.A[r] = CaseNumber(o, "A", 0, where);
    e.B[r] = CaseNumber(o, "B", 0, where);
    e.C[r] = CaseNumber(o, "C", 0, where);
    e.Tc[r] = CaseNumber(o, "Tc", 0, where);
    e.Pc[r] = CaseNumber(o, "Pc", 0, where);
    e.Omega[r] = CaseNumber(o, "omega", 0, where);
    e.MeasuredHead[r] = "  " + e.Name[r];
    if (o.contains("points") && !o.at("points").is_null()) {
      const Json& pts = o.at("points");
      if (!pts.is_array()) throw InputRefused(where + ": \"points\" must be a list of [t, P]");
      if (pts.size() > static_cast<size_t>(kMaxDataPoints))
        throw InputRefused(where + ": at most " + std::to_string(kMaxDataPoints) +
                           " measured points, not " + std::to_string(pts.size()));
      int n = 0;
      for (const Json& p : pts) {
        if (!p.is_array() || p.size() != 2 || !p.at(0).is_number() || !p.at(1).is_number())
          throw InputRefused(where + ": a point must be [t in C, P in mmHg], not " + p.dump());
        ++n;
        e.MeasuredTemp[r][n] = p.at(0).get<double>();
        e.MeasuredPress[r][n] = p.at(1).get<double>();
      }
      e.MeasuredCount[r] = n;
    }
  }
  s.Antoine = e;
}

Json ResultJson(CliContext& ctx) {
  const auto& s = ctx.s();
  const auto& e = s.Antoine;
  Json rows = Json::array();
  for (int r = 1; r <= s.NC; ++r) {
    Json points = Json::array();
    if (e.Fitted[r])
      for (int n = 1; n <= e.MeasuredCount[r]; ++n)
        points.push_back({JsonNumber(ctx, e.MeasuredTemp[r][n], "t"),
                          JsonNumber(ctx, e.MeasuredPress[r][n], "P")});
    rows.push_back({{"name", s.Comp.CompName[r]},
                    {"A", JsonNumber(ctx, s.Comp.AntoineA[r], "A")},
                    {"B", JsonNumber(ctx, s.Comp.AntoineB[r], "B")},
                    {"C", JsonNumber(ctx, s.Comp.AntoineC[r], "C")},
                    {"fitted", static_cast<bool>(e.Fitted[r])},
                    {"points", points}});
  }
  return Json{{"rows", rows}};
}

void PrintText(CliContext& ctx) {
  const auto& s = ctx.s();
  const auto& e = s.Antoine;
  io::ReportTable t;
  t.view = "antoine";
  t.columns = {"Formula", "Name", "A", "B", "C", "Fitted", "Points"};
  for (int r = 1; r <= s.NC; ++r) {
    std::string how = !e.Fitted[r] ? "given" : e.LeeKesler[r] ? "Lee-Kesler" : "measured";
    if (ctx.csv) {  // numbers at full precision
      t.rows.push_back({e.Formula[r], s.Comp.CompName[r], s.Comp.AntoineA[r], s.Comp.AntoineB[r],
                        s.Comp.AntoineC[r], how,
                        static_cast<double>(e.Fitted[r] ? e.MeasuredCount[r] : 0)});
      continue;
    }
    t.rows.push_back({e.Formula[r], s.Comp.CompName[r],
                      io::FormatNumber(s.Comp.AntoineA[r], "#0.00000"),
                      io::FormatNumber(s.Comp.AntoineB[r], "#####0.000"),
                      io::FormatNumber(s.Comp.AntoineC[r], "###0.000"), how,
                      static_cast<double>(e.Fitted[r] ? e.MeasuredCount[r] : 0)});
  }
  PrintTable(ctx, t);
}

CommandRegistrar reg(70, [](CLI::App& app, CliContext& ctx) {
  auto* cmd = app.add_subcommand("antoine", "Fit Antoine constants from a JSON case file");
  static std::string file;
  cmd->add_option("file", file, "The JSON case file")->required();
  cmd->callback([&ctx] {
    ctx.action = [&ctx] {
      auto& s = ctx.s();
      ReadAntoineCaseFile(file, s);
      if (!EstimateAntoine(s)) {
        if (ctx.json) PrintJson(ctx, Json{{"rows", Json::array()}});
        return 2;
      }
      VaporPressureGraphData g = DrawVaporPressureGraph(s);
      (void)g;
      if (ctx.json)
        PrintJson(ctx, ResultJson(ctx));
      else
        PrintText(ctx);
      return 0;
    };
  });
});

ExampleRegistrar antoineExamples({"antoine",
                                  "Antoine case (methanol, ethanol, water, 1-propanol)",
                                  {1},
                                  1,
                                  [](CliContext& ctx, int, const std::filesystem::path& out) {
                                    return WriteExampleText(ctx, out, ExampleCase().dump(2) + "\n");
                                  }});

}  // namespace

void ReadAntoineCaseFile(const std::string& file, SharedCalcState& s) {
  ReadCase(LoadJsonCase(file), file, s);
}

}  // namespace tervale::cli
