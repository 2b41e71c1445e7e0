// Binary parameter estimation on the command line: the examples and the run of a case file.
#include <cmath>
#include <iostream>
#include <string>

#include "cli/command_registry.h"
#include "cli/example_registry.h"
#include "io/record_writer.h"
#include "regress/vle_case.h"
#include "regress/vle_graph.h"
#include "regress/vle_regression.h"

namespace tervale::cli {

// Writes example `number` of the estimation program to `file`. Returns the exit status.
// Example 3 is not prepared: its message, no file, exit 2.
int WriteVLEExample(CliContext& ctx, int number, const std::string& file) {
  auto& s = ctx.s();
  Json object = {{"program", "vle"}, {"example", number}, {"file", file}};
  if (!LoadVLEExample(s, number)) {
    if (ctx.json) PrintJson(ctx, std::move(object));
    return 2;
  }
  SaveVLEDataFile(s, file);
  if (ctx.json) {
    PrintJson(ctx, std::move(object));
  } else {
    std::cout << file << '\n';
  }
  return 0;
}

namespace {

struct VleOptions {
  std::string file;
  std::string calcType;
  std::string objective;
};

// A whole-number option within [min, max]; a bad value is refused naming the option.
bool ParseChoice(CliContext& ctx, const std::string& option, const std::string& text, int min,
                 int max, int& value) {
  double v = 0;
  if (!ParseOptionNumber(ctx, option, text, v)) return false;
  if (v != std::floor(v) || v < min || v > max) {
    ctx.dialogs.Message("Option " + option + ": \"" + text + "\" is not one of " +
                        std::to_string(min) + ".." + std::to_string(max));
    return false;
  }
  value = static_cast<int>(v);
  return true;
}

int Refused(CliContext& ctx) {
  if (ctx.json) PrintJson(ctx, Json::object());
  return 2;
}

// The curve's missing samples have no number: null in JSON.
Json CurveNumber(CliContext& ctx, double v, std::string_view what) {
  if (v <= kVLEMissing) return nullptr;
  return JsonNumber(ctx, v, what);
}

int RunVle(CliContext& ctx, const VleOptions& o) {
  auto& s = ctx.s();
  int calcType = 0, objective = 0;
  if (!o.calcType.empty() && !ParseChoice(ctx, "--calc-type", o.calcType, 1, 4, calcType))
    return Refused(ctx);
  if (!o.objective.empty() && !ParseChoice(ctx, "--objective", o.objective, 1, 5, objective))
    return Refused(ctx);
  if (!ReadVLEDataFile(s, o.file)) return Refused(ctx);

  VLEScreenFields fields = DisplayVLECase(s);
  if (calcType != 0 && calcType != s.VLE.CalcType) {
    // A change of type shows that model's own parameters, as the option buttons do.
    const int fileType = s.VLE.CalcType;
    s.VLE.CalcType = calcType;
    VLEScreenFields shown = DisplayVLECase(s);
    s.VLE.CalcType = fileType;
    fields.Para12Text = shown.Para12Text;
    fields.Para21Text = shown.Para21Text;
    fields.CalcTypeIndex = calcType - 1;
  }
  if (objective != 0) fields.ObjectiveIndex = objective - 1;
  if (!RunVLECalcDriver(s, fields)) return Refused(ctx);

  const VLEDataCase& c = s.VLE;
  RegressionResult fit;
  if (IsEstimateType(c.CalcType)) {
    std::cerr << "Fitting " << (IsWilsonType(c.CalcType) ? "Wilson" : "NRTL") << " parameters to "
              << c.NVLEData << " points ...\n";
    fit = MarquardtRegression(s);
  }
  VLEGraphData graph = DrawVLEGraph(s);

  const bool wilson = IsWilsonType(c.CalcType);
  const double p12 = wilson ? c.WilsonLambda12 : c.NrtlTau12;
  const double p21 = wilson ? c.WilsonLambda21 : c.NrtlTau21;

  if (ctx.json) {
    Json gammaExp = Json::array();
    if (IsEstimateType(c.CalcType))
      for (int i = 1; i <= c.NVLEData; ++i)
        gammaExp.push_back(Json::array({JsonNumber(ctx, c.GammaExp[i][1], "gamma_exp"),
                                        JsonNumber(ctx, c.GammaExp[i][2], "gamma_exp")}));
    Json curve = Json::array();
    for (int n = 1; n <= kVLECurvePoints; ++n) {
      curve.push_back({{"x", JsonNumber(ctx, c.CurveX[n], "curve x")},
                       {"y", CurveNumber(ctx, c.CurveY[n], "curve y")},
                       {"tp", CurveNumber(ctx, c.CurveTP[n], "curve tp")},
                       {"gamma1", CurveNumber(ctx, c.CurveGamma1[n], "curve gamma1")},
                       {"gamma2", CurveNumber(ctx, c.CurveGamma2[n], "curve gamma2")}});
    }
    Json object = {
        {"calc_type", c.CalcType},
        {"objective_func", c.ObjectiveFunc},
        {"params", Json::array({JsonNumber(ctx, p12, "params"), JsonNumber(ctx, p21, "params")})},
        {"alpha", wilson ? Json(nullptr) : JsonNumber(ctx, c.NrtlAlpha, "alpha")},
        {"objective",
         graph.objectiveShown ? JsonNumber(ctx, graph.objective, "objective") : Json(nullptr)},
        {"evaluations", fit.evaluations},
        {"passes", fit.passes},
        {"gamma_exp", std::move(gammaExp)},
        {"curve", std::move(curve)}};
    PrintJson(ctx, std::move(object));
    return 0;
  }

  io::ReportTable table;
  table.view = "curve";
  const bool isobaric = c.TPType == 0;
  table.columns = {"x1", "y1", isobaric ? "T (C)" : "P (mmHg)", "gamma1", "gamma2"};
  auto cell = [](double v) -> io::Cell {
    if (v <= kVLEMissing) return std::monostate{};
    return v;
  };
  for (int n = 1; n <= kVLECurvePoints; ++n) {
    std::vector<io::Cell> row;
    row.reserve(5);
    row.emplace_back(c.CurveX[n]);
    for (double v : {c.CurveY[n], c.CurveTP[n], c.CurveGamma1[n], c.CurveGamma2[n]})
      row.push_back(cell(v));
    table.rows.push_back(std::move(row));
  }
  if (!ctx.csv) {
    std::cout << c.ComponentName[1] << " (1) - " << c.ComponentName[2] << " (2), "
              << (isobaric ? "P = " + io::FormatShortest(c.VLEPressure) + " mmHg"
                           : "T = " + io::FormatShortest(c.VLETemperature) + " C")
              << '\n';
    std::cout << (wilson ? "Lambda12 = " : "tau12 = ") << io::FormatShortest(p12) << '\n';
    std::cout << (wilson ? "Lambda21 = " : "tau21 = ") << io::FormatShortest(p21) << '\n';
    if (!wilson) std::cout << "alpha = " << io::FormatShortest(c.NrtlAlpha) << '\n';
    if (graph.objectiveShown) {
      std::cout << "objective " << ObjectiveCaption(c.ObjectiveFunc) << ": " << graph.objectiveText
                << '\n';
      std::cout << "evaluations " << fit.evaluations << ", passes " << fit.passes << "\n\n";
    }
  }
  PrintTable(ctx, table);
  return 0;
}

CommandRegistrar reg(60, [](CLI::App& app, CliContext& ctx) {
  static VleOptions vle;
  auto* cmd = app.add_subcommand("vle", "Fit Wilson or NRTL parameters to binary VLE data");
  cmd->add_option("file", vle.file, "VLE data case file (first line \"V_L Equibrium Data\")")
      ->required();
  cmd->add_option("--calc-type", vle.calcType,
                  "1 estimate Wilson, 2 estimate NRTL, 3 V-L by Wilson, 4 V-L by NRTL");
  cmd->add_option("--objective", vle.objective,
                  "1 Q=x*log(r'-r), 2 Gamma1=r'-r, 3 Gamma2=log(r2/r1), 4 y1=y'-y, 5 y2=y'/y");
  cmd->callback([&ctx] { ctx.action = [&ctx] { return RunVle(ctx, vle); }; });
});

ExampleRegistrar vleExamples({"vle",
                              "Binary parameter estimation: 1 methanol-water, 2 TBA-water",
                              {1, 2, 3},
                              1,
                              [](CliContext& ctx, int number, const std::filesystem::path& out) {
                                return WriteVLEExample(ctx, number, out.string());
                              }});

}  // namespace
}  // namespace tervale::cli
