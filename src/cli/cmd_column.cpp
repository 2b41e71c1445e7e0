// The continuous column on the command line: example case, tray-by-tray run, result views,
// short-cut design.
#include <filesystem>
#include <iostream>
#include <map>

#include "cli/command_registry.h"
#include "cli/example_registry.h"
#include "column/column_case.h"
#include "column/column_results.h"
#include "column/shortcut.h"
#include "column/tray_solver.h"
#include "io/display_format.h"
#include "io/record_writer.h"
#include "state/errors.h"
#include "state/units.h"

namespace tervale::cli {

// Writes built-in column example `number` to `path`; false when there is no such example.
bool WriteColumnExample(CliContext& ctx, int number, const std::string& path) {
  if (number != 1) return false;
  LoadColumnExample1(ctx.s());
  WriteColumnFile(ctx.s(), path);
  return true;
}

namespace {

// Reads a case file for a command; the refusal message when it cannot be read.
bool ReadCase(CliContext& ctx, const std::string& file, std::string& refusal) {
  auto& s = ctx.s();
  ResetColumnCase(s);
  if (!ReadColumnFile(s, file)) {
    refusal = s.Column.ReadError;
    return false;
  }
  RefreshColumnSummary(s);  // the negative bottom-flow notice, as after reading on the screen
  return true;
}

Json TraysJson(CliContext& ctx) {
  auto& s = ctx.s();
  const auto& c = s.Column;
  Json trays = Json::array();
  for (int j = 1; j <= s.NTray; ++j) {
    trays.push_back(Json{{"T", JsonNumber(ctx, c.TrayT[j], "T")},
                         {"P", JsonNumber(ctx, c.TrayP[j], "P")},
                         {"L", JsonNumber(ctx, c.TrayL[j], "L")},
                         {"V", JsonNumber(ctx, c.TrayV[j], "V")},
                         {"HV", JsonNumber(ctx, c.TrayHV[j], "HV")},
                         {"HL", JsonNumber(ctx, c.TrayHL[j], "HL")},
                         {"x", JsonComponents(ctx, c.TrayX[j], s.NC, "x")},
                         {"y", JsonComponents(ctx, c.TrayY[j], s.NC, "y")}});
  }
  return trays;
}

int RunColumn(CliContext& ctx, const std::string& file, bool cont) {
  auto& s = ctx.s();
  std::string refusal;
  if (!ReadCase(ctx, file, refusal)) return Refuse(ctx, refusal);
  if (std::string m = CheckColumnRunnable(s); !m.empty()) return Refuse(ctx, m);
  std::error_code ec;
  std::filesystem::create_directories(ctx.dataDir, ec);
  BuildProductLists(s);
  if (cont) {
    if (s.Column.CalcFinished != 1) {  // no profiles are held without results
      return Refuse(ctx, s.LanguageFlag == 1
                             ? "No profiles to continue from: the file holds no calculation results"
                             : "前回計算結果がありません。ファイルに計算結果が含まれていません。");
    }
    if (!ContinueTrayComposition(s)) {  // the message has been shown
      if (ctx.json) PrintJson(ctx, Json::object());
      return 2;
    }
  } else {
    InitTrayComposition(s);
  }
  Json passes = Json::array();
  auto progress = [&](const TrayProgress& p) {
    if (p.converged) {
      std::cerr << p.text << '\n';
    } else {
      std::cerr << "Stage " << p.stage << "  Pass " << p.pass << "  Error "
                << io::FormatShortest(p.error) << '\n';
      passes.push_back(
          Json{{"stage", p.stage}, {"pass", p.pass}, {"error", JsonNumber(ctx, p.error, "error")}});
    }
    return false;
  };
  const TrayRunResult r = RunTrayCalculation(s, progress, true);
  const ColumnDuties d = CalcColumnDuties(s);
  if (ctx.json) {
    Json feedH = Json::array();
    for (int f = 1; f <= s.NFeed; ++f)
      feedH.push_back(JsonNumber(ctx, s.Column.FeedEnthalpy[f], "feed_enthalpy"));
    Json object{
        {"passes", std::move(passes)},
        {"converged", r.converged},
        {"trays", TraysJson(ctx)},
        {"feed_enthalpy", std::move(feedH)},
        {"condenser_duty",
         s.EnthalpyMethod >= 1 ? JsonNumber(ctx, d.Condenser, "condenser_duty") : Json(nullptr)},
        {"reboiler_duty",
         s.EnthalpyMethod >= 1 ? JsonNumber(ctx, d.Reboiler, "reboiler_duty") : Json(nullptr)}};
    PrintJson(ctx, std::move(object));
  } else {
    std::cout << (r.converged ? "converged" : "not converged") << " after " << r.passes
              << " passes\n";
    io::ReportTable t;
    t.view = "trays";
    t.columns = {"Tray", "T(C)", "P(MPa)", "L", "V"};
    for (int i = 1; i <= s.NC; ++i) t.columns.push_back("x " + s.Comp.CompName[i]);
    for (int j = 1; j <= s.NTray; ++j) {
      std::vector<io::Cell> row{static_cast<double>(j), s.Column.TrayT[j], s.Column.TrayP[j],
                                s.Column.TrayL[j], s.Column.TrayV[j]};
      for (int i = 1; i <= s.NC; ++i) row.push_back(s.Column.TrayX[j][i]);
      t.rows.push_back(std::move(row));
    }
    PrintTable(ctx, t);
    if (s.EnthalpyMethod >= 1)
      std::cout << "Condenser duty " << io::FormatShortest(d.Condenser) << "\nReboiler duty "
                << io::FormatShortest(d.Reboiler) << '\n';
    if (r.resultWritten)
      std::cerr << "Result written to "
                << (std::filesystem::path(s.DataPath) / "Result.dat").string() << '\n';
  }
  return 0;
}

int Report(CliContext& ctx, const std::string& file, const std::string& view) {
  auto& s = ctx.s();
  std::string refusal;
  if (!ReadCase(ctx, file, refusal)) return Refuse(ctx, refusal);
  if (s.Column.CalcFinished != 1)
    return Refuse(ctx, s.LanguageFlag == 1 ? "The file holds no calculation results"
                                           : "ファイルに計算結果がありません。");
  io::ReportTable t;
  static const std::map<std::string, TrayView> trays{{"tray-liquid-mol", TrayView::LiquidMol},
                                                     {"tray-vapour-mol", TrayView::VaporMol},
                                                     {"tray-liquid-wt", TrayView::LiquidWt},
                                                     {"tray-vapour-wt", TrayView::VaporWt}};
  static const std::map<std::string, ProductView> products{
      {"feed-mol", ProductView::FeedMol},     {"feed-wt", ProductView::FeedWt},
      {"vapour-mol", ProductView::VaporMol},  {"vapour-wt", ProductView::VaporWt},
      {"liquid-mol", ProductView::LiquidMol}, {"liquid-wt", ProductView::LiquidWt}};
  if (view == "balance") {
    t = ColumnBalanceTable(s);
  } else if (auto it = trays.find(view); it != trays.end()) {
    t = ColumnTrayTable(s, it->second);
  } else if (auto ip = products.find(view); ip != products.end()) {
    t = ColumnProductTable(s, ip->second);
  } else {
    return Refuse(ctx, "Unknown view: " + view);
  }
  t.view = view;
  PrintTable(ctx, t);
  return 0;
}

struct ShortCutOptions {
  std::string file;
  std::string temp;
  bool tempBlank = false;
  int type = -1;
  std::string condenser;
};

int RunShortCutCommand(CliContext& ctx, const ShortCutOptions& o) {
  auto& s = ctx.s();
  std::string refusal;
  if (!ReadCase(ctx, o.file, refusal)) return Refuse(ctx, refusal);
  if (o.type >= 0) s.Column.ShortCutCalcType = o.type;
  if (o.condenser == "total") s.Column.ShortCutCondenser = 0;
  if (o.condenser == "partial") s.Column.ShortCutCondenser = 1;
  ShortCutInput in = MakeShortCutInput(s);
  if (o.tempBlank) {
    in.TempGiven = false;
  } else if (!o.temp.empty()) {
    double t = 0;
    if (!ParseOptionNumber(ctx, "--temp", o.temp, t)) return 2;
    in.Temp = t;
  }
  ShortCutResult r;
  try {
    r = RunShortCut(s, in);
  } catch (const InputRefused& e) {
    if (ctx.json) PrintJson(ctx, Json::object());
    return 2;
  }
  const int nc = s.NC;
  if (ctx.json) {
    Json g = Json::array();
    for (const auto& p : r.Gilliland)
      g.push_back(Json{{"R", JsonNumber(ctx, p.R, "R")},
                       {"N", JsonNumber(ctx, p.N, "N")},
                       {"NF", JsonNumber(ctx, p.NF, "NF")}});
    Json object{{"vf", JsonNumber(ctx, r.VF, "vf")},
                {"temperature", JsonNumber(ctx, r.Temperature, "temperature")},
                {"min_plates", JsonNumber(ctx, r.MinPlates, "min_plates")},
                {"min_reflux", JsonNumber(ctx, r.MinReflux, "min_reflux")},
                {"feed_location", JsonNumber(ctx, r.FeedLocation, "feed_location")},
                {"top", JsonComponents(ctx, r.TopComp, nc, "top")},
                {"bottom", JsonComponents(ctx, r.BottomComp, nc, "bottom")},
                {"top_flow", JsonNumber(ctx, r.TopFlow, "top_flow")},
                {"bottom_flow", JsonNumber(ctx, r.BottomFlow, "bottom_flow")},
                {"gilliland", std::move(g)}};
    PrintJson(ctx, std::move(object));
    return 0;
  }
  const bool en = s.LanguageFlag == 1;
  std::cout << (en ? "Temp " : "温度 ") << io::FormatNumber(r.Temperature, "####.##") << '\n';
  std::cout << "V/F " << io::FormatNumber(r.VF, "#0.000") << '\n';
  std::cout << (en ? "Minimum Theoretical Plates " : "最小理論段数 ")
            << io::FormatNumber(r.MinPlates, "###.#####") << '\n';
  std::cout << (en ? "Minimum Reflux Ratio " : "最小還流比 ")
            << io::FormatNumber(r.MinReflux, "###.#####") << '\n';
  std::cout << (en ? "Feed Location from top " : "ﾌｨｰﾄﾞ段(塔頂より) ")
            << io::FormatNumber(r.FeedLocation, "###.#####") << '\n';
  io::ReportTable t;
  t.view = "shortcut";
  t.columns = {en ? "Component" : "成分", en ? "Top" : "塔頂組成", en ? "Bottom" : "塔底組成"};
  for (int i = 1; i <= nc; ++i)
    t.rows.push_back({s.Comp.CompName[i], r.TopComp[i], r.BottomComp[i]});
  t.rows.push_back({en ? "Flow" : "流量", r.TopFlow, r.BottomFlow});
  PrintTable(ctx, t);
  if (!r.Gilliland.empty()) {
    io::ReportTable g;
    g.view = "gilliland";
    g.columns = {"R", "N", "NF"};
    for (const auto& p : r.Gilliland) g.rows.push_back({p.R, p.N, p.NF});
    std::cout << '\n';
    PrintTable(ctx, g);
  }
  return 0;
}

CommandRegistrar reg(400, [](CLI::App& app, CliContext& ctx) {
  // column FILE [--continue]
  {
    auto* cmd = app.add_subcommand("column", "Solve a continuous column tray by tray");
    static std::string file;
    static bool cont = false;
    cmd->add_option("file", file, "Column case file")->required();
    cmd->add_flag("--continue", cont, "Start from the profiles held in the file (a result file)");
    cmd->callback([&ctx] { ctx.action = [&ctx] { return RunColumn(ctx, file, cont); }; });
  }
  // column-report RESULT.dat --view ...
  {
    auto* cmd =
        app.add_subcommand("column-report", "Show the result tables of a column result file");
    static std::string file;
    static std::string view = "balance";
    cmd->add_option("file", file, "Result file (Result.dat)")->required();
    cmd->add_option("--view", view,
                    "balance, tray-liquid-mol, tray-vapour-mol, tray-liquid-wt, "
                    "tray-vapour-wt, feed-mol, feed-wt, vapour-mol, vapour-wt, "
                    "liquid-mol or liquid-wt")
        ->check(CLI::IsMember({"balance", "tray-liquid-mol", "tray-vapour-mol", "tray-liquid-wt",
                               "tray-vapour-wt", "feed-mol", "feed-wt", "vapour-mol", "vapour-wt",
                               "liquid-mol", "liquid-wt"}));
    cmd->callback([&ctx] { ctx.action = [&ctx] { return Report(ctx, file, view); }; });
  }
  // shortcut FILE
  {
    auto* cmd = app.add_subcommand("shortcut", "Short-cut design (Fenske-Underwood-Gilliland)");
    static ShortCutOptions o;
    cmd->add_option("file", o.file, "Column case file")->required();
    auto* temp = cmd->add_option("--temp", o.temp, "Feed temperature in the case's unit");
    auto* blank =
        cmd->add_flag("--temp-blank", o.tempBlank, "Blank temperature: use the bubble point");
    temp->excludes(blank);
    cmd->add_option("--type", o.type, "0 top/bottom mole fractions, 1 recoveries")
        ->check(CLI::IsMember({0, 1}));
    cmd->add_option("--condenser", o.condenser, "total or partial")
        ->check(CLI::IsMember({"total", "partial"}));
    cmd->callback([&ctx] { ctx.action = [&ctx] { return RunShortCutCommand(ctx, o); }; });
  }
});

ExampleRegistrar columnExamples({"column",
                                 "Continuous column example 1",
                                 {1},
                                 1,
                                 [](CliContext& ctx, int number, const std::filesystem::path& out) {
                                   if (!WriteColumnExample(ctx, number, out.string()))
                                     return Refuse(ctx, "この例題のデータはまだありません。");
                                   return 0;
                                 }});

}  // namespace
}  // namespace tervale::cli
