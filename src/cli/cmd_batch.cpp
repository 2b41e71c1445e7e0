// The batch program on the command line: the example case, a run, and the result tables.
#include <cmath>
#include <iostream>

#include "batch/batch_data.h"
#include "batch/batch_results.h"
#include "batch/batch_run.h"
#include "batch/batch_run_files.h"
#include "cli/command_registry.h"
#include "cli/example_registry.h"
#include "state/errors.h"

namespace tervale::cli {
namespace {

// Progress on stderr: a line about every simulated hour, and the phase change.
class CliBatchObserver : public BatchRunObserver {
 public:
  explicit CliBatchObserver(long long stopAfter) : stopAfter_(stopAfter) {}
  void Yield(SharedCalcState& s, const BatchStepInfo& info) override {
    if (info.phase != lastPhase_) {
      lastPhase_ = info.phase;
      nextHour_ = 1;
    }
    if (info.time >= nextHour_) {
      std::cerr << (info.phase == 0 ? "[total reflux]" : "[product]") << " t=" << info.time
                << " h, step " << info.step << '\n';
      nextHour_ = std::floor(info.time) + 1;
    }
    if (stopAfter_ > 0 && info.step >= stopAfter_) RequestStop(s);
    // Nobody sits at the command line to answer Cancel: a step that fails over and over again
    // would run backwards for ever, so the run is stopped after a long series of failures.
    failedInRow_ = info.time < lastTime_ ? failedInRow_ + 1 : 0;
    lastTime_ = info.time;
    if (failedInRow_ >= kMaxFailedInRow && s.Batch.CalcStopFlag == 0) {
      ShowMessage(s, "Stopped after " + std::to_string(kMaxFailedInRow) +
                         " failed steps in a row (negative compositions): shorten DiffTime or "
                         "use --cancel");
      RequestStop(s);
    }
  }

 private:
  static constexpr int kMaxFailedInRow = 1000;
  long long stopAfter_;
  int failedInRow_ = 0;
  double lastTime_ = -1e300;
  int lastPhase_ = 0;
  double nextHour_ = 1;
};

Json LogWithoutClock(SharedCalcState& s) {
  Json lines = Json::array();
  try {
    BatchLineReader reader(BatchRunFilePath(s, "_Log.dat"));
    std::string line;
    while (reader.NextText(line)) {
      // "date time text": drop the date, the blank, the time and the blank behind it.
      size_t p = line.find(' ');
      if (p != std::string::npos) p = line.find(' ', p + 1);
      lines.push_back(p == std::string::npos ? std::string() : line.substr(p + 1));
    }
  } catch (const FileReadError&) {
  }
  return lines;
}

int RunBatch(CliContext& ctx, const std::string& file, bool cont, long long stopAfter,
             bool cancel) {
  auto& s = ctx.s();
  ResetBatchCase(s);
  if (!ReadBatchCase(s, file, false)) {
    return Refuse(ctx, "Not a batch case file: " + file);
  }
  if (cont) {
    // The converged state comes from B_Calc_2.dat of the data folder; the case from FILE.
    auto saved = MakeSharedCalcState();
    saved->DataPath = s.DataPath;
    saved->LanguageFlag = s.LanguageFlag;
    saved->Dialogs = s.Dialogs;
    if (!ReadBatchContinuation(*saved)) return Refuse(ctx, "No total-reflux state to continue");
    const auto& from = saved->Batch;
    auto& to = s.Batch;
    to.LiqComp = from.LiqComp;
    to.VapComp = from.VapComp;
    to.TrayTemp = from.TrayTemp;
    to.VaporFlow = from.VaporFlow;
    to.LiquidFlow = from.LiquidFlow;
    to.VapEnthalpy = from.VapEnthalpy;
    to.LiqEnthalpy = from.LiqEnthalpy;
    to.Holdup = from.Holdup;
    to.HoldupChange = from.HoldupChange;
    to.LiqEnthalpyChange = from.LiqEnthalpyChange;
    to.HeatTotal = from.HeatTotal;
    to.RkgCarry = from.RkgCarry;
    if (s.NC == saved->NC && s.NTray == saved->NTray) {
      for (int i = 1; i <= s.NTray; ++i) {
        if (i == 1 || i == s.NTray) to.TrayHeat[i] = from.TrayHeat[i];
      }
    }
    to.NCAtRead = from.NCAtRead;
    to.NTrayAtRead = from.NTrayAtRead;
    to.ContinueFromTReflux = 1;
    to.ContinueTime = from.ContinueTime;
  }
  BatchCheckResult check = CheckBatchGoCalc(s);
  if (!check.ok) {
    return Refuse(ctx, check.messages.empty() ? "The case was refused" : check.messages.back());
  }
  std::error_code ec;
  std::filesystem::create_directories(ctx.dataDir, ec);
  if (cancel) ctx.dialogs.preparedAnswers.assign(1, Answer::Cancel);
  CliBatchObserver observer(stopAfter);
  BatchRunResult r = RunBatchCalculation(s, &observer);
  const auto& b = s.Batch;
  if (!ctx.json) {
    std::cout << "end: " << BatchRunEndName(r.end) << '\n';
    std::cout << "steps: total reflux " << r.totalRefluxSteps << ", product " << r.productSteps
              << '\n';
    if (r.converged) std::cout << "total reflux converged at " << r.totalRefluxTime << " h\n";
    std::cout << "total distillate: " << b.TotalDistillate << " Kgmol\n";
    for (int k = 0; k < r.tankCount; ++k) {
      std::cout << "tank " << k + 1 << " at " << r.tanks[k].time << " h:";
      for (int j = 1; j <= s.NC; ++j) std::cout << ' ' << r.tanks[k].content[j];
      std::cout << " Kgmol\n";
    }
    return 0;
  }
  Json tanks = Json::array();
  for (int k = 0; k < r.tankCount; ++k) {
    const auto& t = r.tanks[k];
    double sum = 0;
    for (int j = 1; j <= s.NC; ++j) sum += t.content[j];
    CompArray x{};
    for (int j = 1; j <= s.NC; ++j) x[j] = sum != 0 ? t.content[j] / sum : 0;
    tanks.push_back(Json{{"time", JsonNumber(ctx, t.time, "tank time")},
                         {"content", JsonComponents(ctx, t.content, s.NC, "tank content")},
                         {"x", JsonComponents(ctx, x, s.NC, "tank x")}});
  }
  Json extremes = {{"temp_max", JsonNumber(ctx, b.TempMax, "TempMax")},
                   {"temp_min", JsonNumber(ctx, b.TempMin, "TempMin")},
                   {"vapour_max", JsonNumber(ctx, b.VaporMax, "VaporMax")},
                   {"vapour_min", JsonNumber(ctx, b.VaporMin, "VaporMin")},
                   {"liquid_max", JsonNumber(ctx, b.LiquidMax, "LiquidMax")},
                   {"liquid_min", JsonNumber(ctx, b.LiquidMin, "LiquidMin")}};
  Json out = {
      {"end", std::string(BatchRunEndName(r.end))},
      {"total_reflux_time",
       r.converged ? JsonNumber(ctx, r.totalRefluxTime, "total reflux time") : Json(nullptr)},
      {"steps", Json{{"total_reflux", r.totalRefluxSteps}, {"product", r.productSteps}}},
      {"total_distillate", JsonNumber(ctx, b.TotalDistillate, "total distillate")},
      {"tanks", std::move(tanks)},
      {"extremes", std::move(extremes)},
      {"log", LogWithoutClock(s)}};
  PrintJson(ctx, std::move(out));
  return 0;
}

int WriteExample(CliContext& ctx, int number, const std::filesystem::path& output) {
  auto& s = ctx.s();
  if (!LoadBatchExample(s, number)) {
    return Refuse(ctx, "There is no batch example " + std::to_string(number) + " (only 1)");
  }
  WriteBatchCase(s, output);
  if (ctx.json) {
    PrintJson(ctx, Json{{"kind", "batch"}, {"number", number}, {"file", output.string()}});
  } else {
    std::cerr << "Wrote " << output.string() << '\n';
  }
  return 0;
}

ExampleRegistrar batchExamples(
    {"batch", "Batch distillation example 1 (methanol, ethanol, water)", {1}, 1, WriteExample});

int Report(CliContext& ctx, const std::string& view, const std::string& source,
           const std::string& caseFile, const std::string& fraction, const std::string& flow,
           int record, const std::string& end, int tray) {
  auto& s = ctx.s();
  ResetBatchCase(s);
  if (!caseFile.empty()) {
    if (!ReadBatchCase(s, caseFile, false))
      return Refuse(ctx, "Not a batch case file: " + caseFile);
  } else if (view != "log" && view != "total-reflux" && !LoadBatchReportCase(s)) {
    return Refuse(
        ctx, "No batch run files in " + ctx.dataDir.string() + ": run the batch calculation first");
  }
  const BatchSource src = source == "product" ? BatchSource::Product : BatchSource::TotalReflux;
  io::ReportTable table;
  if (view == "total-reflux") {
    BatchFraction f = fraction == "vap-mol"  ? BatchFraction::VapMol
                      : fraction == "vap-wt" ? BatchFraction::VapWt
                      : fraction == "liq-wt" ? BatchFraction::LiqWt
                                             : BatchFraction::LiqMol;
    table = BatchTotalRefluxTable(s, f);
  } else if (view == "tank") {
    table = BatchTankTable(s);
  } else if (view == "vl-load") {
    table = BatchLoadTable(s, src, flow != "vapour");
  } else if (view == "tray-data") {
    table = BatchTrayDataTable(s, src, record, fraction == "vap-mol" || fraction == "vapour");
  } else if (view == "top-btm") {
    table = tray > 0 ? BatchTraySeries(s, src, tray) : BatchTopBtmTable(s, src, end != "bottom");
  } else {
    table = BatchLogTable(s);
  }
  table.view = view;
  PrintTable(ctx, table);
  return 0;
}

CommandRegistrar reg(500, [](CLI::App& app, CliContext& ctx) {
  {
    auto* cmd = app.add_subcommand("batch", "Run a batch distillation case");
    static std::string file;
    static bool cont = false;
    static long long stopAfter = 0;
    static bool retry = false;
    static bool cancel = false;
    cmd->add_option("file", file, "the batch case file")->required();
    cmd->add_flag("--continue", cont,
                  "continue from the converged total-reflux state B_Calc_2.dat of the data folder");
    cmd->add_option("--stop-after-steps", stopAfter, "ask the run to stop after N steps");
    auto* r = cmd->add_flag("--retry", retry, "answer Retry at a negative composition (default)");
    auto* c = cmd->add_flag("--cancel", cancel, "answer Cancel at a negative composition");
    r->excludes(c);
    cmd->callback(
        [&ctx] { ctx.action = [&ctx] { return RunBatch(ctx, file, cont, stopAfter, cancel); }; });
  }
  {
    auto* cmd = app.add_subcommand("batch-report", "Show a result table of the batch run files");
    static std::string view = "log";
    static std::string source = "total-reflux";
    static std::string caseFile;
    static std::string fraction = "liq-mol";
    static std::string flow = "liquid";
    static int record = 1;
    static std::string end = "top";
    static int tray = 0;
    cmd->add_option("--view", view, "total-reflux|tank|vl-load|tray-data|top-btm|log")
        ->required()
        ->check(CLI::IsMember({"total-reflux", "tank", "vl-load", "tray-data", "top-btm", "log"}));
    cmd->add_option("--source", source, "history file: total-reflux (_1.dat) or product (_4.dat)")
        ->check(CLI::IsMember({"total-reflux", "product"}));
    cmd->add_option("--case", caseFile, "the case (names, molecular weights, units)");
    cmd->add_option("--fraction", fraction,
                    "total-reflux: vap-mol|liq-mol|vap-wt|liq-wt; tray-data: vap-mol|liq-mol")
        ->check(CLI::IsMember({"vap-mol", "liq-mol", "vap-wt", "liq-wt"}));
    cmd->add_option("--flow", flow, "vl-load: liquid|vapour")
        ->check(CLI::IsMember({"liquid", "vapour"}));
    cmd->add_option("--record", record, "tray-data: the record number, from 1");
    cmd->add_option("--end", end, "top-btm: top|bottom")->check(CLI::IsMember({"top", "bottom"}));
    cmd->add_option("--tray", tray, "top-btm: the series of any tray instead");
    cmd->callback([&ctx] {
      ctx.action = [&ctx] {
        return Report(ctx, view, source, caseFile, fraction, flow, record, end, tray);
      };
    });
  }
});

}  // namespace
}  // namespace tervale::cli
