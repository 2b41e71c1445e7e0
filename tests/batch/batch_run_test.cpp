#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <regex>

#include "batch/batch_results.h"
#include "batch/batch_run_files.h"
#include "batch/batch_test_util.h"
#include "state/errors.h"

using namespace tervale;
using namespace tervale::testing;

namespace {

// Checks the balances at every save and keeps the times of the steps.
class BalanceObserver : public BatchRunObserver {
 public:
  void ProfileChanged(SharedCalcState& s) override {
    const auto& b = s.Batch;
    double column = 0;
    for (int i = 1; i <= s.NTray; ++i) column += b.Holdup[i];
    // The still holds what is neither on the trays nor drawn off.
    worstOverall = std::max(worstOverall, std::fabs(column + b.TotalDistillate - b.TotalFeed));
    double drawn = closedTanks;
    for (int j = 1; j <= s.NC; ++j) drawn += b.TankContent[j];
    worstTanks = std::max(worstTanks, std::fabs(drawn - b.TotalDistillate));
    for (int j = 1; j <= s.NC; ++j) {
      double held = closedComp[j] + b.TankContent[j];
      for (int i = 1; i <= s.NTray; ++i) held += b.Holdup[i] * b.LiqComp[i][j];
      worstComp = std::max(worstComp, std::fabs(held - b.TotalFeed * b.FeedComp[j]));
    }
    ++saves;
  }
  void Notice(SharedCalcState& s, std::string_view text) override {
    notices.emplace_back(text);
    if (text.starts_with("Change Tank")) {
      // The closed tanks as the tank file holds them: every second line of three.
      auto lines = Lines(ReadBytes(std::filesystem::path(s.DataPath) / "B_Calc_5.dat"));
      closedComp = {};
      closedTanks = 0;
      for (size_t k = 1; k < lines.size(); k += 3) {
        std::istringstream in(lines[k]);
        std::string field;
        for (int j = 1; j <= s.NC && std::getline(in, field, ','); ++j) {
          closedComp[j] += std::stod(field);
          closedTanks += std::stod(field);
        }
      }
    }
  }
  void Yield(SharedCalcState& s, const BatchStepInfo& info) override {
    times.push_back(info.time);
    if (stopAt > 0 && info.step >= stopAt) RequestStop(s);
  }
  double worstOverall = 0, worstTanks = 0, worstComp = 0;
  double closedTanks = 0;
  CompArray closedComp{};
  int saves = 0;
  long long stopAt = 0;
  std::vector<std::string> notices;
  std::vector<double> times;
};

size_t Fields(const std::string& line) {
  return static_cast<size_t>(std::count(line.begin(), line.end(), ',')) + 1;
}

}  // namespace

using BatchRun = BatchFixture;

TEST_F(BatchRun, LiteralExampleEndsByTimeOverAtTotalReflux) {
  LoadBatchExample(s);
  ASSERT_TRUE(Ready());
  BatchRunResult r = RunBatchCalculation(s);
  EXPECT_EQ(r.end, BatchRunEnd::TimeOver);
  EXPECT_FALSE(r.converged);
  EXPECT_EQ(r.productSteps, 0);
  EXPECT_GT(s.Batch.RunTime, s.Batch.MaxOpeTime);
  EXPECT_EQ(BatchFilesPresent(dir.path()), "_1 _3 _Log");
  EXPECT_EQ(p.dialogs.messages.back(), "Time over or Bottom Volume=0, end of calculation");
  // _3.dat of the end of the run: no empty field, the entered save interval in the fourth.
  auto three = File("_3");
  EXPECT_EQ(three.size(), 3u + 2 * 10);
  const size_t fields[] = {9, 10, 0, 6, 7};
  for (size_t k : {0u, 1u, 3u, 4u}) EXPECT_EQ(Fields(three[k]), fields[k]) << k;
  EXPECT_EQ(three[1].find("\"\""), std::string::npos);
  EXPECT_EQ(three[2].substr(0, 4), "0,0,");
  EXPECT_TRUE(three[2].ends_with(",0.002"));
  auto log = File("_Log");
  ASSERT_EQ(log.size(), 2u);
  const std::string stamp = R"(^\d{4}/\d{2}/\d{2} \d{2}:\d{2}:\d{2} )";
  EXPECT_TRUE(std::regex_match(log[0], std::regex(stamp + "Start Calculation$"))) << log[0];
  EXPECT_TRUE(std::regex_match(
      log[1], std::regex(stamp + R"(Cal_time=10\.0000 Time over or Bottom Volume=0, )"
                                 "end of calculation$")))
      << log[1];
}

TEST_F(BatchRun, ProductRunClosesItsBalancesAndAContinuationPicksItUp) {
  ASSERT_TRUE(Ready());
  BalanceObserver obs;
  BatchRunResult r = RunBatchCalculation(s, &obs);
  EXPECT_EQ(r.end, BatchRunEnd::TanksExhausted);
  EXPECT_TRUE(r.converged);
  EXPECT_GT(r.totalRefluxTime, 0.2);
  EXPECT_LT(r.totalRefluxTime, 3);
  EXPECT_GT(r.productSteps, 0);
  EXPECT_GT(obs.saves, 100);
  EXPECT_LT(obs.worstOverall, 1e-9);
  EXPECT_LT(obs.worstTanks, 1e-9);
  EXPECT_LT(obs.worstComp, 0.05);  // integration error only, out of a charge of 100 Kgmol
  ASSERT_EQ(r.tankCount, 2);
  // Tank 1 closes when its Kgmol rise above 2 (positive limit), tank 2 when its methanol
  // fraction falls below 0.88 (negative limit).
  double total1 = 0, total2 = 0;
  for (int j = 1; j <= 3; ++j) total1 += r.tanks[0].content[j], total2 += r.tanks[1].content[j];
  EXPECT_GT(total1, 2);
  EXPECT_LT(total1, 2 + 10 * s.Batch.DiffTime * 1.0001);
  EXPECT_LT(r.tanks[1].content[1] / total2, 0.88);
  EXPECT_GT(r.tanks[1].content[1] / total2, 0.87);
  EXPECT_NEAR(total1 + total2, s.Batch.TotalDistillate, 1e-9);
  EXPECT_EQ(obs.notices, (std::vector<std::string>{"Total Reflux Converged", "Change Tank 1"}));
  // The tank file: two records of three lines.
  auto five = File("_5");
  ASSERT_EQ(five.size(), 6u);
  EXPECT_TRUE(five[0].starts_with("0,"));
  EXPECT_TRUE(five[3].starts_with("1,"));
  EXPECT_EQ(Fields(five[1]), 3u);
  EXPECT_EQ(Fields(five[2]), 10u);
  // _3.dat of EndBatchCalculation: the empty text field, the next save time.
  auto three = File("_3");
  EXPECT_TRUE(three[1].ends_with(",\"\""));
  EXPECT_EQ(Fields(three[1]), 11u);
  EXPECT_TRUE(three[2].starts_with("1,0,"));
  EXPECT_FALSE(three[2].ends_with(",0.002"));
  auto log = File("_Log");
  ASSERT_EQ(log.size(), 4u);
  EXPECT_TRUE(log[1].ends_with(" 全還流収束"));
  EXPECT_TRUE(log[2].ends_with(" Change Tank"));
  EXPECT_TRUE(log[3].ends_with(" End of Calculation"));
  // _4.dat starts with the first product step (the clock restarted at 0), _1.dat at 0.
  EXPECT_EQ(File("_4")[0], "2e-04");
  EXPECT_EQ(File("_1")[0], "0");
  // The reports read the same figures back.
  auto tank = BatchTankTable(s);
  ASSERT_EQ(tank.rows.size(), 2u);
  EXPECT_DOUBLE_EQ(std::get<double>(tank.rows[1][1]), r.tanks[1].time);
  EXPECT_NEAR(std::get<double>(tank.rows[1][8]), total2, 1e-12);
  EXPECT_EQ(BatchTotalRefluxTable(s, BatchFraction::LiqMol).rows.size(), 10u);
  EXPECT_GT(BatchLoadTable(s, BatchSource::Product, true).rows.size(), 100u);
  EXPECT_EQ(BatchLogTable(s).rows.size(), 4u);

  // A continuation from the converged state converges at once and appends to the history.
  const auto historyBefore = ReadBytes(dir / "B_Calc_1.dat");
  Prepared q;
  Prepare(q, dir.path());
  auto& t = q.s();
  ASSERT_TRUE(ReadBatchContinuation(t));
  EXPECT_EQ(t.Batch.ContinueFromTReflux, 1);
  EXPECT_GT(t.Batch.ContinueTime, 0);
  ASSERT_TRUE(CheckBatchGoCalc(t).ok);
  BalanceObserver again;
  again.stopAt = r.totalRefluxSteps / 5;
  BatchRunResult c = RunBatchCalculation(t, &again);
  // The start temperatures come from the charge's bubble point, so the first steps settle the
  // flows again; the column is converged long before a start from the charge would be.
  EXPECT_TRUE(c.converged);
  EXPECT_LT(c.totalRefluxSteps, r.totalRefluxSteps / 10);
  EXPECT_EQ(c.end, BatchRunEnd::Stopped);
  EXPECT_GT(c.productSteps, 0);
  const auto historyAfter = ReadBytes(dir / "B_Calc_1.dat");
  EXPECT_TRUE(historyAfter.starts_with(historyBefore));
  EXPECT_GT(historyAfter.size(), historyBefore.size());
  // A stop in the product phase: the open tank is written, _3.dat is the second write.
  EXPECT_EQ(File("_5").size(), 3u);
  three = File("_3");
  EXPECT_EQ(three[1].find("\"\""), std::string::npos);
  EXPECT_TRUE(three[2].ends_with(",0.002"));
  EXPECT_TRUE(File("_Log").back().ends_with(" Abort, end of calculation"));

  // A continuation whose tray count changed: the notice, and a start from the charge.
  Prepared m;
  Prepare(m, dir.path());
  auto& u = m.s();
  ASSERT_TRUE(ReadBatchContinuation(u));
  u.NTray = 9;
  auto check = CheckBatchGoCalc(u);
  EXPECT_TRUE(check.ok);
  ASSERT_FALSE(check.messages.empty());
  EXPECT_EQ(check.messages[0],
            "not Equal N.Comp or T.Plate at total reflux data, calculate initial state");
  EXPECT_EQ(u.Batch.ContinueFromTReflux, 0);
  BalanceObserver anew;
  anew.stopAt = 3;
  EXPECT_FALSE(RunBatchCalculation(u, &anew).converged);
  EXPECT_EQ(File("_1")[0], "0");  // started anew

  // The missing state file is a message.
  const ScratchDir empty("batch_continue_missing");
  Prepared e;
  Prepare(e, empty.path());
  EXPECT_FALSE(ReadBatchContinuation(e.s()));
  EXPECT_EQ(e.dialogs.messages.back(), "not exist Total Reflux Data");
}

TEST_F(BatchRun, FailedStepIsHalvedAndCancelEndsAtOnce) {
  s.Batch.DiffTime = 0.02;  // far too long a step for trays of 1 Kgmol
  ASSERT_TRUE(Ready());
  BalanceObserver obs;
  obs.stopAt = 40;
  RunBatchCalculation(s, &obs);
  EXPECT_NE(std::count(p.dialogs.messages.begin(), p.dialogs.messages.end(),
                       "ERROR:Runge-Kutta-Gill Negative composition"),
            0);
  // The first step that asked: its clock ends half a step behind where it began.
  auto back = std::adjacent_find(obs.times.begin(), obs.times.end(), std::greater<>());
  ASSERT_NE(back, obs.times.end());
  EXPECT_NEAR(back[1], back[0] - 0.01, 1e-12);
  auto log = File("_Log");
  std::regex retry(
      R"(^\d{4}/\d{2}/\d{2} \d{2}:\d{2}:\d{2} Cal_time=-?\d+\.\d{4} i= \d+  j = \d+ : Runge - Kutta - Gillの計算で組成がマイナス$)");
  ASSERT_GT(log.size(), 1u);
  EXPECT_TRUE(std::regex_match(log[1], retry)) << log[1];

  // Cancel: "End of Calculation", the log line, no end file.
  std::filesystem::remove(dir / "B_Calc_3.dat");
  LoadProductExample(s);
  s.Batch.DiffTime = 0.02;
  ASSERT_TRUE(Ready());
  p.dialogs.preparedAnswers = {Answer::Cancel};
  EXPECT_EQ(RunBatchCalculation(s).end, BatchRunEnd::Cancelled);
  EXPECT_EQ(p.dialogs.messages.back(), "End of Calculation");
  EXPECT_EQ(s.Batch.CalcStopFlag, 0);
  EXPECT_FALSE(std::filesystem::exists(dir / "B_Calc_3.dat"));
  EXPECT_TRUE(File("_Log").back().ends_with(" 計算完了"));
}

TEST_F(BatchRun, RunTimeChangesAreLoggedOnlyWhenChanged) {
  ASSERT_TRUE(Ready());
  class Changer : public BatchRunObserver {
   public:
    void Yield(SharedCalcState& s, const BatchStepInfo& info) override {
      if (info.step == 1) {
        changed.push_back(ApplyBatchRunChange(s, BatchRunChange::DiffTime, 0.0002));  // same
        changed.push_back(ApplyBatchRunChange(s, BatchRunChange::DiffTime, 0.0001, "1E-4"));
        changed.push_back(ApplyBatchRunChange(s, BatchRunChange::DiffTime, 0.00005));
        changed.push_back(ApplyBatchRunChange(s, BatchRunChange::ConvLimit, 0.5));
        changed.push_back(ApplyBatchRunChange(s, BatchRunChange::RefluxRatio, 3));  // not now
      }
      if (info.step == 2) dt2 = info.dt;
      if (info.step == 3) RequestStop(s);
    }
    std::vector<bool> changed;
    double dt2 = 0;
  } changer;
  BatchRunResult r = RunBatchCalculation(s, &changer);
  EXPECT_EQ(r.end, BatchRunEnd::Stopped);
  EXPECT_FALSE(r.converged);  // the entered limit still holds
  EXPECT_EQ(changer.changed, (std::vector<bool>{false, true, true, true, false}));
  EXPECT_DOUBLE_EQ(changer.dt2, 0.00005);
  auto log = File("_Log");
  ASSERT_EQ(log.size(), 5u);
  // The figure behind "Old=" stays the entered value on a second change.
  std::regex first(R"(^\S+ \S+ Cal_time=0\.0000 Change Diff Time  Old= 2e-04  New=1E-4$)");
  EXPECT_TRUE(std::regex_match(log[1], first)) << log[1];
  EXPECT_TRUE(log[2].ends_with(" Change Diff Time  Old= 2e-04  New=5e-05")) << log[2];
  EXPECT_TRUE(log[3].ends_with(" Change Conv Limit  Old= 0.001  New=0.5")) << log[3];
  EXPECT_TRUE(log[4].ends_with(" Abort, end of calculation"));
}

TEST_F(BatchRun, ReportsOfMissingAndCutFiles) {
  EXPECT_NE(ReadErrorText([&] { BatchTankTable(s); }).find("B_Calc_5.dat"), std::string::npos);
  EXPECT_THROW(BatchLogTable(s), FileReadError);
  EXPECT_THROW(BatchTotalRefluxTable(s, BatchFraction::LiqMol), FileReadError);
  EXPECT_FALSE(LoadBatchReportCase(s));

  ASSERT_TRUE(Ready());
  BalanceObserver obs;
  obs.stopAt = 30;
  RunBatchCalculation(s, &obs);
  auto full = BatchTopBtmTable(s, BatchSource::TotalReflux, true);
  ASSERT_EQ(full.rows.size(), 3u);  // saves at 0, 0.002 and 0.004 h
  // Cut the history inside its last record: the table ends at the record before.
  auto path = dir / "B_Calc_1.dat";
  std::string text = ReadBytes(path);
  WriteBytes(path, text.substr(0, text.size() - 40));
  auto cut = BatchTopBtmTable(s, BatchSource::TotalReflux, true);
  EXPECT_EQ(cut.rows.size(), full.rows.size() - 1);
  // The counts can be taken from the files alone.
  Prepared q;
  Prepare(q, dir.path());
  ASSERT_TRUE(LoadBatchReportCase(q.s()));
  EXPECT_EQ(q.s().NC, 3);
  EXPECT_EQ(q.s().NTray, 10);
  auto tray = BatchTrayDataTable(q.s(), BatchSource::TotalReflux, 2, false);
  EXPECT_EQ(tray.rows.size(), 10u);
  auto none = BatchTrayDataTable(q.s(), BatchSource::TotalReflux, 1000, false);
  EXPECT_TRUE(none.rows.empty());
  EXPECT_FALSE(none.messages.empty());

  // A tank closed empty (the draw stood at 0) shows its totals, and no fractions of zeros.
  WriteBytes(dir / "B_Calc_5.dat", "0,0.5\r\n0,0,0\r\n1,2,3,4,5,6,7,8,9,10\r\n");
  auto tank = BatchTankTable(s);
  ASSERT_EQ(tank.rows.size(), 1u);
  for (const auto& cell : tank.rows[0])
    if (auto* v = std::get_if<double>(&cell)) EXPECT_TRUE(std::isfinite(*v));
  EXPECT_DOUBLE_EQ(std::get<double>(tank.rows[0][1]), 0.5);
  EXPECT_DOUBLE_EQ(std::get<double>(tank.rows[0][2 + 2 * 3]), 0);  // total Kgmol
}

TEST_F(BatchRun, TankTestKeysAndSigns) {
  auto& b = s.Batch;
  b.TankRow = 1;
  b.TankContent = {};
  b.TankContent[1] = 1.5;  // methanol
  b.TankContent[3] = 0.5;  // water
  const double kg = 1.5 * 32.04 + 0.5 * 18.015;
  struct Case {
    int key;
    double limit;
    double value;
    bool due;
  } cases[] = {
      {-1, 2, 2.0, false},                   // total Kgmol must rise above 2
      {-1, 1.9, 2.0, true},                  //
      {-2, kg - 1, kg, true},                // total Kg
      {1, 0.7, 0.75, true},                  // methanol mole fraction above 0.7
      {1, -0.7, 0.75, false},                // ... below 0.7
      {1, -0.8, 0.75, true},                 //
      {103, -0.2, 0.5 * 18.015 / kg, true},  // water weight fraction below 0.2
      {3, 0, 0.25, false},                   // a zero limit never changes
  };
  for (const auto& c : cases) {
    b.TankChangeKey[1] = c.key;
    b.TankChangeLimit[1] = c.limit;
    EXPECT_NEAR(BatchTankValue(s), c.value, 1e-12) << c.key;
    EXPECT_EQ(BatchTankChangeDue(s), c.due) << c.key << " " << c.limit;
  }
  // The open-tank view names the condition by the sign of the limit.
  b.TankChangeKey[1] = 1;
  b.TankChangeLimit[1] = -0.88;
  auto view = BatchOpenTankTable(s);
  ASSERT_EQ(view.rows.size(), 3u);
  EXPECT_DOUBLE_EQ(std::get<double>(view.rows[0][2]), 0.75);
  EXPECT_EQ(view.messages[0], "Change Condition: (Mol Fr) Methanol < 0.88");
}

TEST_F(BatchRun, HoldupChangeIsADifferenceOnTraysAndARateInTheStill) {
  s.Batch.HoldupBasis = 2;  // Kg: the Kgmol on a tray follow its mean molecular weight
  for (int i = 1; i <= 9; ++i) s.Batch.TrayHoldupInput[i][kHoldupKg] = i == 1 ? 100 : 20;
  ASSERT_TRUE(Ready());
  class Watcher : public BatchRunObserver {
   public:
    void Yield(SharedCalcState& s, const BatchStepInfo& info) override {
      const auto& b = s.Batch;
      if (info.step >= 2) {
        for (int i = 1; i <= s.NTray - 1; ++i) {
          worstTray = std::max(worstTray, std::fabs(b.HoldupChange[i] - (b.Holdup[i] - last[i])));
        }
        worstStill =
            std::max(worstStill, std::fabs(b.HoldupChange[s.NTray] -
                                           (b.Holdup[s.NTray] - last[s.NTray]) / b.CurDiffTime));
        anyChange = anyChange || b.HoldupChange[1] != 0;
      }
      last = b.Holdup;
      if (info.step >= 50) RequestStop(s);
    }
    TrayArray last{};
    double worstTray = 0, worstStill = 0;
    bool anyChange = false;
  } watcher;
  RunBatchCalculation(s, &watcher);
  EXPECT_TRUE(watcher.anyChange);
  EXPECT_LT(watcher.worstTray, 1e-12);
  EXPECT_LT(watcher.worstStill, 1e-6);
  // On the Kg basis the upper trays hold Kg over the mean molecular weight.
  double mw = 0;
  for (int j = 1; j <= 3; ++j) mw += s.Batch.LiqComp[1][j] * s.Comp.CompMW[j];
  EXPECT_NEAR(s.Batch.Holdup[1], 100 / mw, 0.5);
}

TEST_F(BatchRun, DutySetOperationDrawsByTheEnergyBalanceAndKeepsTheDutyInForce) {
  auto& b = s.Batch;
  b.BatchOpeType = 3;
  b.TankOperation[1][kTankDuty] = 500000;
  b.TankOperation[2][kTankDuty] = 123;  // reaches the table, never the column
  ASSERT_TRUE(Ready());
  class DutyWatcher : public BalanceObserver {
   public:
    void Yield(SharedCalcState& s, const BatchStepInfo& info) override {
      BalanceObserver::Yield(s, info);
      const auto& b = s.Batch;
      if (info.phase == 0) return;
      // The still gets the duty in force; the draw follows from the column's energy balance.
      worstDuty = std::max(worstDuty, std::fabs(b.TrayHeat[s.NTray] - b.CurQReb));
      minDraw = std::min(minDraw, b.CurDistillate);
      if (!notices.empty() && notices.back().starts_with("Change Tank")) {
        if (afterChange++ == 0) tableDuty = b.QRebSet;
        if (afterChange >= 20) RequestStop(s);
      }
    }
    double worstDuty = 0, minDraw = 1e300, tableDuty = -1;
    int afterChange = 0;
  } watcher;
  BatchRunResult r = RunBatchCalculation(s, &watcher);
  ASSERT_TRUE(r.converged);
  EXPECT_EQ(r.end, BatchRunEnd::Stopped);
  EXPECT_GE(watcher.afterChange, 20);
  EXPECT_DOUBLE_EQ(watcher.tableDuty, 123);
  EXPECT_DOUBLE_EQ(b.CurQReb, 1000000);  // the total-reflux duty stays in force
  EXPECT_EQ(watcher.worstDuty, 0);
  EXPECT_GT(watcher.minDraw, 0);
  EXPECT_LT(watcher.worstOverall, 1e-9);
  EXPECT_LT(watcher.worstTanks, 1e-9);
  EXPECT_LT(watcher.worstComp, 0.05);  // integration error only, as with the set draw
}
