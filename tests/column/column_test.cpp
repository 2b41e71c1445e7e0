#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <numeric>

#include "column/column_case.h"
#include "column/column_results.h"
#include "column/shortcut.h"
#include "column/tray_solver.h"
#include "common/scratch.h"
#include "io/record_writer.h"
#include "state/errors.h"
#include "state/shared_state.h"
#include "state/units.h"

namespace tervale {
namespace {

namespace fs = std::filesystem;
using testcli::ReadBytes;
using testcli::ScratchDir;

struct ColumnFixture : ::testing::Test {
  std::unique_ptr<SharedCalcState> state = MakeSharedCalcState();
  SharedCalcState& s = *state;
  RecordingDialogs dialogs;
  ScratchDir dir{"column"};

  void SetUp() override {
    s.Dialogs = &dialogs;
    s.LanguageFlag = 1;
    s.DataPath = dir.path().string();
  }

  // A second state, as a fresh program reading a file, with its own English dialogs.
  RecordingDialogs otherDialogs;
  std::unique_ptr<SharedCalcState> ReaderState() {
    auto other = MakeSharedCalcState();
    other->Dialogs = &otherDialogs;
    other->LanguageFlag = 1;
    return other;
  }

  void Start() {
    BuildProductLists(s);
    InitTrayComposition(s);
  }
  // Runs from the start profile; the run finishes with every tray's figures finite.
  void RunToTheEnd() {
    RunTrayCalculation(s, nullptr, false);
    EXPECT_EQ(s.Column.CalcFinished, 1);
    for (int j = 1; j <= s.NTray; ++j)
      EXPECT_TRUE(std::isfinite(s.Column.TrayT[j]) && std::isfinite(s.Column.TrayV[j])) << j;
  }
  TrayRunResult Solve(bool write = false, std::vector<TrayProgress>* seen = nullptr) {
    Start();
    return RunTrayCalculation(
        s,
        [seen](const TrayProgress& p) {
          if (seen) seen->push_back(p);
          return false;
        },
        write);
  }
};

double Num(const io::Cell& c) {
  return std::get<double>(c);
}

TEST_F(ColumnFixture, ResetDefaults) {
  s.NC = 3;
  ResetColumnCase(s);
  EXPECT_EQ(s.NC, 0);
  EXPECT_EQ(s.Unit.PressUnit, 2);
  EXPECT_EQ(s.Column.TopPress, 760.0);
  EXPECT_EQ(s.Column.BottomPress, 780.0);
  EXPECT_EQ(s.Column.ConvMaxIter[1], 20);
  EXPECT_EQ(s.Column.ConvMaxIter[2], 30);
  EXPECT_EQ(s.Column.ConvTolerance[2], 5e-06);
  EXPECT_EQ(s.Column.RefluxRatio, 2.0);
  EXPECT_EQ(s.Bin.WilsonLambda[2][7], 1.0);
  EXPECT_EQ(s.Bin.NrtlAlpha, 0.4);
  EXPECT_EQ(s.Column.CalcFinished, 0);
}

TEST_F(ColumnFixture, ExampleOneConvergesClosesItsBalanceAndShowsItsProfiles) {
  LoadColumnExample1(s);
  EXPECT_DOUBLE_EQ(s.Column.TotalFeed, 380);
  EXPECT_DOUBLE_EQ(s.Column.BottomFlow, 380 - 83);
  std::vector<TrayProgress> seen;
  const TrayRunResult r = Solve(false, &seen);
  EXPECT_TRUE(r.converged);
  EXPECT_FALSE(r.stopped);
  EXPECT_EQ(s.Column.CalcFinished, 1);
  ASSERT_FALSE(seen.empty());
  EXPECT_EQ(seen.front().stage, 1);
  EXPECT_EQ(seen.front().pass, 0);
  EXPECT_TRUE(seen.back().converged);
  EXPECT_EQ(seen.back().text, "  Convergenced");
  EXPECT_EQ(seen.back().stage, 2);
  EXPECT_FALSE(fs::exists(dir / "Result.dat"));

  // physics: fractions sum to one, temperature rises down the column
  for (int j = 1; j <= s.NTray; ++j) {
    EXPECT_NEAR(std::accumulate(&s.Column.TrayX[j][1], &s.Column.TrayX[j][5], 0.0), 1, 1e-12);
    EXPECT_NEAR(std::accumulate(&s.Column.TrayY[j][1], &s.Column.TrayY[j][5], 0.0), 1, 1e-12);
  }
  EXPECT_LT(s.Column.TrayT[1], s.Column.TrayT[s.NTray]);
  EXPECT_GT(s.Column.TrayT[1], 60);
  EXPECT_LT(s.Column.TrayT[s.NTray], 105);
  // methanol goes to the top, water to the bottom
  EXPECT_GT(s.Column.TrayX[1][1], 0.4);
  EXPECT_GT(s.Column.TrayX[s.NTray][3], 0.95);

  // products add up to the feed, component by component
  const io::ReportTable t = ColumnBalanceTable(s);
  ASSERT_EQ(t.rows.size(), 6u);  // 4 components, mole and weight totals; no heat block for method 1
  for (const auto& row : t.rows) {
    const double in = Num(row[1]), out = Num(row[2]);
    if (row == t.rows[5]) continue;  // weight total
    EXPECT_NEAR(out, in, 2e-4 * s.Column.TotalFeed) << std::get<std::string>(row[0]);
  }
  // the products add up to the feed exactly; the feed's fractions sum to 0.99999998
  EXPECT_NEAR(Num(t.rows[4][2]), 380, 1e-9);
  EXPECT_NEAR(Num(t.rows[4][1]), 380 * (0.120949998 + 0.01055 + 0.855279982 + 0.01322), 1e-9);
  EXPECT_LT(std::fabs(Num(t.rows[4][4])), 1e-5);
  EXPECT_LT(std::fabs(Num(t.rows[5][4])), 0.01);

  // the graphs
  const ProfileGraph g = CompositionGraph(s);
  EXPECT_EQ(g.xMin, -6);
  EXPECT_EQ(g.series.size(), 8u);
  EXPECT_EQ(g.xLabels.back(), "1.0");
  EXPECT_EQ(g.markTrays, std::vector<int>{5});
  for (const auto& ser : g.series)
    for (const auto& p : ser.points) EXPECT_GE(p.first, g.xMin);
  const ProfileGraph tg = TemperatureGraph(s);
  EXPECT_EQ(tg.divisions, 3);
  ASSERT_EQ(tg.series[0].points.size(), 15u);
  EXPECT_EQ(tg.xMin, s.Column.TrayT[1]);
  SetGraphDivision(s, 3);
  EXPECT_EQ(s.Column.GraphDecades, 4);
  SetGraphDivision(s, -2);
  EXPECT_EQ(s.Column.GraphDecades, 6);

  // the tables carry the unit labels and the run's product lists
  io::ReportTable tt = ColumnTrayTable(s, TrayView::LiquidMol);
  EXPECT_EQ(tt.columns[1], "Temp C");
  EXPECT_EQ(tt.columns[2], "Press mmHg");
  // the table shows the user's units: tray 1 at the top pressure as typed
  EXPECT_NEAR(Num(tt.rows[0][2]), 760, 1e-9);
  s.LanguageFlag = 0;
  tt = ColumnTrayTable(s, TrayView::VaporWt);
  EXPECT_EQ(tt.columns[1], "温度 ℃");
  io::ReportTable p = ColumnProductTable(s, ProductView::LiquidMol);
  EXPECT_EQ(std::get<std::string>(p.rows[0][0]), "温度 ℃");
  EXPECT_EQ(std::get<std::string>(p.rows[1][0]), "圧力 mmHg");
  s.Unit.HeatUnit = 1;
  s.EnthalpyMethod = 2;
  EXPECT_EQ(std::get<std::string>(ColumnBalanceTable(s).rows[7][0]), "熱負荷 コンデンサー( J )");

  // a side cut typed after the run does not show among the run's products
  ASSERT_EQ(p.columns.size(), 3u);  // the top liquid and the bottom
  s.NSideLiq = 1;
  s.Column.LiqSideTray[1] = 10;
  s.Column.LiqSideFlow[1] = 20;
  EXPECT_EQ(ColumnProductTable(s, ProductView::LiquidMol).columns, p.columns);
}

TEST_F(ColumnFixture, ResultFileReadsBackWithTheSameTablesAndCutShortWithout) {
  LoadColumnExample1(s);
  ASSERT_TRUE(Solve(true).resultWritten);
  const std::string text = ReadBytes(dir / "Result.dat");
  EXPECT_EQ(text.rfind("\"Distillation Data\"\r\n", 0), 0u);
  auto tables = [](SharedCalcState& st) {
    std::vector<io::ReportTable> all{ColumnBalanceTable(st)};
    for (auto v : {TrayView::LiquidMol, TrayView::VaporMol, TrayView::LiquidWt, TrayView::VaporWt})
      all.push_back(ColumnTrayTable(st, v));
    for (auto v : {ProductView::FeedMol, ProductView::FeedWt, ProductView::VaporMol,
                   ProductView::VaporWt, ProductView::LiquidMol, ProductView::LiquidWt})
      all.push_back(ColumnProductTable(st, v));
    return all;
  };
  const std::vector<io::ReportTable> before = tables(s);
  const ColumnDuties d0 = CalcColumnDuties(s);

  auto other = ReaderState();
  ResetColumnCase(*other);
  ASSERT_TRUE(ReadColumnFile(*other, dir / "Result.dat"));
  EXPECT_EQ(other->Column.CalcFinished, 1);
  EXPECT_EQ(other->Column.PrevNTray, 15);
  const std::vector<io::ReportTable> after = tables(*other);
  ASSERT_EQ(before.size(), after.size());
  for (size_t k = 0; k < before.size(); ++k) {
    SCOPED_TRACE(before[k].view);
    EXPECT_EQ(before[k].columns, after[k].columns);
    EXPECT_EQ(before[k].rows, after[k].rows);
    EXPECT_EQ(before[k].messages, after[k].messages);
  }
  EXPECT_EQ(after[7].messages, std::vector<std::string>{"no Vapor Side Cut"});
  const ColumnDuties d1 = CalcColumnDuties(*other);
  EXPECT_EQ(d0.Condenser, d1.Condenser);
  EXPECT_EQ(d0.Reboiler, d1.Reboiler);
  EXPECT_GT(d0.Condenser, 0);
  // and the file written again is the same text
  EXPECT_EQ(ColumnFileText(*other), text);

  // results cut short: the case loads without its results
  const fs::path p = dir / "short.dat";
  io::SaveFileAtomically(p, text.substr(0, text.size() - 200));
  other = ReaderState();
  EXPECT_TRUE(ReadColumnFile(*other, p.string()));
  EXPECT_FALSE(other->Column.ReadFailed);
  EXPECT_EQ(other->Column.CalcFinished, 0);
  EXPECT_EQ(other->NTray, 15);
  EXPECT_EQ(other->Column.TopLiquidFlow, 83);
  ASSERT_FALSE(otherDialogs.messages.empty());
  EXPECT_NE(otherDialogs.messages.back().find("cut short"), std::string::npos);
}

TEST_F(ColumnFixture, CaseFileRoundTripAndResultsOnlyWhenFinished) {
  LoadColumnExample1(s);
  const fs::path p = dir / "c.dat";
  WriteColumnFile(s, p.string());
  const std::string text = ReadBytes(p);
  auto other = MakeSharedCalcState();
  ASSERT_TRUE(ReadColumnFile(*other, p.string()));
  EXPECT_EQ(ColumnFileText(*other), text);
  EXPECT_EQ(other->Comp.CompName[4], "1-Propanol");
  EXPECT_EQ(other->Bin.WilsonLambda[4][3], 0.001);
  EXPECT_EQ(other->MemoLine[1], "逐次段蒸留計算プログラム");
  EXPECT_EQ(other->Column.FeedComp[1][3], 0.855279982);
  EXPECT_EQ(other->Column.CalcFinished, 0);
  // the file ends with CalcFinished 0
  EXPECT_EQ(text.substr(text.size() - 3), "0\r\n");
}

TEST_F(ColumnFixture, BadFilesLeaveTheCaseAsItWas) {
  LoadColumnExample1(s);
  const std::string keep = ColumnFileText(s);
  const struct {
    const char* what;
    std::string text;  // empty: no file at all
    const char* message;
  } cases[] = {
      {"another program's file", "\"Flash Data\"\r\n", "蒸留計算のデータファイルではありません。"},
      {"cut short inside the case", keep.substr(0, keep.size() / 2), nullptr},
      {"a missing file", "", nullptr}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const fs::path bad = dir / "bad.dat";
    fs::remove(bad);
    if (!c.text.empty()) io::SaveFileAtomically(bad, c.text);
    EXPECT_FALSE(ReadColumnFile(s, bad.string()));
    EXPECT_EQ(ColumnFileText(s), keep);
    if (c.text.empty()) continue;
    EXPECT_TRUE(s.Column.ReadFailed);
    if (c.message)
      EXPECT_EQ(dialogs.messages.back(), c.message);
    else
      EXPECT_FALSE(s.Column.ReadError.empty());
  }
}

TEST_F(ColumnFixture, ContinueCopiesTheBottomRows) {
  LoadColumnExample1(s);
  Solve();
  const CompArray bottomX = s.Column.TrayX[15], bottomY = s.Column.TrayY[15];
  const CompArray row12 = s.Column.TrayX[12];
  s.NTray = 18;
  s.Column.TrayPressInput[18] = 770;
  ASSERT_TRUE(ContinueTrayComposition(s));
  for (int j = 16; j <= 18; ++j) {
    EXPECT_EQ(s.Column.TrayX[j], bottomX);
    EXPECT_EQ(s.Column.TrayY[j], bottomY);
  }
  EXPECT_EQ(s.Column.PrevNTray, 18);

  // fewer trays: the new bottom row takes the old bottom row
  s.NTray = 12;
  s.Column.PrevNTray = 15;
  s.Column.TrayX[15] = bottomX;
  ASSERT_TRUE(ContinueTrayComposition(s));
  EXPECT_EQ(s.Column.TrayX[12], bottomX);
  EXPECT_NE(s.Column.TrayX[12], row12);
  EXPECT_EQ(s.Column.PrevNTray, 12);
  const TrayRunResult r = RunTrayCalculation(s, nullptr, false);
  EXPECT_EQ(s.Column.CalcFinished, 1);
  EXPECT_GT(r.passes, 0);

  // a different component count refuses
  s.NC = 3;
  EXPECT_FALSE(ContinueTrayComposition(s));
  EXPECT_EQ(dialogs.messages.back(), "No of Component is not Equal");
  s.LanguageFlag = 0;
  EXPECT_FALSE(ContinueTrayComposition(s));
  EXPECT_EQ(dialogs.messages.back(), "成分数が違います。");
}

TEST_F(ColumnFixture, StartProfiles) {
  LoadColumnExample1(s);
  Start();
  auto& c = s.Column;
  // reflux with a top product: L1 = R S, V from tray 2 on = S + R S
  EXPECT_DOUBLE_EQ(c.TrayL[1], 3.0 * 83);
  EXPECT_DOUBLE_EQ(c.TrayV[1], 0);
  EXPECT_DOUBLE_EQ(c.TrayV[2], 4.0 * 83);
  EXPECT_DOUBLE_EQ(c.TrayL[5], 3.0 * 83 + 190);
  EXPECT_DOUBLE_EQ(c.TrayV[6], 4.0 * 83 - 190);
  EXPECT_DOUBLE_EQ(c.TrayL[15], 297);
  // the factor j: tray NTray - 1 has the bottom estimate
  EXPECT_DOUBLE_EQ(c.TrayT[14], 105);
  EXPECT_DOUBLE_EQ(c.TrayT[2], 72 + 2 * 33.0 / 14);
  // the pressure walk: tray NTray - 1 equals the bottom, equal steps above it
  EXPECT_DOUBLE_EQ(c.TrayP[14], c.TrayP[15]);
  EXPECT_DOUBLE_EQ(c.TrayP[1], ConvPressToBase(s, 760));
  EXPECT_NEAR(c.TrayP[3] - c.TrayP[2], c.TrayP[2] - c.TrayP[1], 1e-15);
  EXPECT_NEAR(c.TrayP[14] - c.TrayP[13], c.TrayP[2] - c.TrayP[1], 1e-15);
  // mean feed composition everywhere
  EXPECT_DOUBLE_EQ(c.TrayX[7][1], 0.120949998);
  EXPECT_DOUBLE_EQ(c.TrayY[15][4], 0.01322);
}

TEST_F(ColumnFixture, OtherLayoutsRunAndKeepTheirFixedFlows) {
  auto& c = s.Column;
  {
    SCOPED_TRACE("two feeds on one tray");
    LoadColumnExample1(s);
    s.NFeed = 2;
    c.FeedFlow[1] = c.FeedFlow[2] = 190;  // the second half of the feed, all liquid
    c.FeedTray[2] = 5, c.FeedTemp[2] = 93, c.FeedPress[2] = 770, c.FeedVF[2] = 0.0;
    c.FeedComp[2] = c.FeedComp[1];
    Start();
    // the start profile takes the last feed (all liquid), the balances the first
    EXPECT_DOUBLE_EQ(c.TrayL[5], 3.0 * 83 + 190);
    EXPECT_DOUBLE_EQ(c.TrayV[6], 4.0 * 83);
    RunToTheEnd();
  }
  {
    SCOPED_TRACE("two trays with a condenser");
    LoadColumnExample1(s);
    s.NTray = 2;
    c.FeedTray[1] = 2;
    c.TrayPressInput = {0, 760, 770};
    Start();
    const double l1 = c.TrayL[1], v2 = c.TrayV[2], v1 = c.TrayV[1];
    RunToTheEnd();
    EXPECT_EQ(c.TrayL[1], l1);
    EXPECT_EQ(c.TrayV[2], v2);
    EXPECT_EQ(c.TrayV[1], v1);
    EXPECT_EQ(c.TrayL[2], 297);
    EXPECT_NE(c.TrayHL[1], 0);  // stage 2 ran
  }
  {
    SCOPED_TRACE("no reflux: tray 1 is a real tray found by its dew point, the top vapour");
    LoadColumnExample1(s);
    c.RefluxRatio = 0;
    c.TopLiquidFlow = 0;
    c.TopVaporFlow = 83;
    Start();
    EXPECT_DOUBLE_EQ(c.TrayV[1], 83);
    EXPECT_DOUBLE_EQ(c.TrayL[1], 0);
    RunToTheEnd();
    EXPECT_DOUBLE_EQ(c.TrayV[1], 83);  // tray 1's vapour stays fixed
    io::ReportTable v = ColumnProductTable(s, ProductView::VaporMol);
    ASSERT_EQ(v.columns.size(), 2u);
    EXPECT_EQ(v.columns[1], "1 # ");
    EXPECT_TRUE(v.messages.empty());
    EXPECT_EQ(Num(v.rows[2][1]), 83);
  }
  {
    SCOPED_TRACE("a vapour product from a condenser with reflux keeps tray 1's temperature");
    LoadColumnExample1(s);
    c.TopLiquidFlow = 0;
    c.TopVaporFlow = 83;
    Start();
    const double t1 = c.TrayT[1];
    RunToTheEnd();
    EXPECT_EQ(c.TrayT[1], t1);
    EXPECT_EQ(c.TrayV[1], 0);
  }
}

TEST_F(ColumnFixture, HeatBlockOnlyAboveMethodOne) {
  LoadColumnExample1(s);
  s.EnthalpyMethod = 2;  // enthalpies all 0: every Q is 0 undivided
  Solve();
  EXPECT_EQ(s.Column.CalcFinished, 1);
  EXPECT_EQ(s.Column.TrayHV[5], 0);
  const io::ReportTable t = ColumnBalanceTable(s);
  ASSERT_EQ(t.rows.size(), 9u);
  EXPECT_EQ(std::get<std::string>(t.rows[7][0]), "Heat Duty Condenser( Kcal )");
  // nothing comes in as heat: the percentage is blank, not a division by zero
  EXPECT_EQ(Num(t.rows[6][1]), 0);
  EXPECT_TRUE(std::holds_alternative<std::monostate>(t.rows[6][4]));
  const ColumnDuties d = CalcColumnDuties(s);
  EXPECT_EQ(d.Condenser, 0);
  EXPECT_EQ(d.Reboiler, 0);
  // a side cut shows in the liquid products between the top and the bottom
  LoadColumnExample1(s);
  s.NSideLiq = 1;
  s.Column.LiqSideTray[1] = 10;
  s.Column.LiqSideFlow[1] = 20;
  Solve();
  const io::ReportTable l = ColumnProductTable(s, ProductView::LiquidWt);
  ASSERT_EQ(l.columns.size(), 4u);
  EXPECT_EQ(l.columns[2], "10 # ");
  double wsum = 0;
  for (int i = 1; i <= 4; ++i) wsum += Num(l.rows[3 + i][2]);
  EXPECT_NEAR(wsum, 1.0, 1e-12);
  const io::ReportTable b = ColumnBalanceTable(s);
  EXPECT_NEAR(Num(b.rows[4][2]), 380, 1e-9);
}

TEST_F(ColumnFixture, StoppedRunKeepsNoResults) {
  LoadColumnExample1(s);
  io::SaveFileAtomically(dir / "Result.dat", "old");
  Start();
  int calls = 0;
  const TrayRunResult r = RunTrayCalculation(
      s, [&](const TrayProgress&) { return ++calls == 3; }, true);
  EXPECT_TRUE(r.stopped);
  EXPECT_EQ(s.Column.CalcFinished, 0);
  EXPECT_EQ(ReadBytes(dir / "Result.dat"), "old");
}

TEST_F(ColumnFixture, InputChecksRefuseWithTheirMessages) {
  LoadColumnExample1(s);
  EXPECT_EQ(ShowFileNameText("C:\\data\\case1.dat"), "case1.dat ");
  EXPECT_EQ(ShowFileNameText("case2.dat"), "case2.dat ");
  EXPECT_EQ(CheckPlateLimit(s, 201), "Over max theoretical plates (200)");
  EXPECT_EQ(CheckPlateLimit(s, 200), "");
  EXPECT_EQ(CheckFeedLocation(s, 1), "フィード段が1以下または理論段数以上です。");
  EXPECT_EQ(CheckFeedLocation(s, 15), "");
  EXPECT_EQ(CheckFeedLocation(s, 16), "フィード段が1以下または理論段数以上です。");
  EXPECT_EQ(CheckLiqSideCut(s, 1, 5), "Location <1 or >NT");
  EXPECT_EQ(CheckLiqSideCut(s, 3, -1), "Negative Liquid Flow rate");
  EXPECT_EQ(CheckLiqSideCut(s, 3, 0), "");
  EXPECT_EQ(CheckVapSideCut(s, 3, -1), "Negative Vapor Flow rate");
  s.LanguageFlag = 0;
  EXPECT_EQ(CheckPlateLimit(s, 300), "最大理論段数(200)を越えています。");
  EXPECT_EQ(CheckVapSideCut(s, 20, 1), "蒸気サイドカット段が1以下または理論段数以上です。");
  EXPECT_EQ(CheckTopDraw(s), "");
  s.Column.TopVaporFlow = 5;
  EXPECT_EQ(CheckTopDraw(s), "塔頂からの蒸気、液の同時抜き出しは未だサポートしていません。");
  EXPECT_EQ(CheckColumnRunnable(s), "塔頂からの蒸気、液の同時抜き出しは未だサポートしていません。");
  s.Column.TopVaporFlow = 0;
  EXPECT_EQ(CheckColumnRunnable(s), "");
  s.Column.FeedTray[1] = 1;  // a file may hold it; the solver handles it
  EXPECT_EQ(CheckColumnRunnable(s), "");
  s.Column.FeedTray[1] = 16;
  EXPECT_NE(CheckColumnRunnable(s), "");
  s.Column.FeedTray[1] = 5;
  s.Column.TopLiquidFlow = 400;
  EXPECT_EQ(CheckBottomFlow(s), "Bottom流量[ -20 ]が負です。");
  RefreshColumnSummary(s);
  EXPECT_EQ(dialogs.messages.back(), "Bottom流量[ -20 ]が負です。");

  // tray numbers outside the column, as a file may hold them
  LoadColumnExample1(s);
  s.LanguageFlag = 1;
  s.NSideVap = 1;
  s.Column.VapSideTray[1] = 16;  // below the bottom of 15 trays
  s.Column.VapSideFlow[1] = 5;
  EXPECT_EQ(CheckColumnTrayNumbers(s), "Location <1 or >NT");
  EXPECT_EQ(CheckColumnRunnable(s), "Location <1 or >NT");
  s.Column.VapSideTray[1] = 1;  // a file may hold tray 1, which the solver handles
  EXPECT_EQ(CheckColumnTrayNumbers(s), "");
  s.Column.FeedTray[1] = 0;
  EXPECT_EQ(CheckColumnTrayNumbers(s), "フィード段が1以下または理論段数以上です。");
}

TEST_F(ColumnFixture, FenskeSplitGivesTheKeysBackTheirRecoveries) {
  // three components, alpha 2, 1, 0.5: the split at minimum plates returns the key recoveries
  CompArray z{}, alpha{}, top{}, bottom{};
  z[1] = 0.3, z[2] = 0.4, z[3] = 0.3;
  alpha[1] = 2, alpha[2] = 1, alpha[3] = 0.5;
  double nmin = 0;
  CalcFenskeSplit(z, alpha, 3, top, bottom, nmin, 0.95, 0.05, 2.0);
  EXPECT_NEAR(nmin, std::log(0.95 * 0.95 / (0.05 * 0.05)) / std::log(2.0), 1e-12);
  EXPECT_NEAR(top[1] / z[1], 0.95, 1e-12);
  EXPECT_NEAR(top[2] / z[2], 0.05, 1e-12);
  const double a3 = std::pow(0.5, nmin);
  EXPECT_NEAR(top[3], a3 * 0.05 / ((a3 - 1) * 0.05 + 1) * 0.3, 1e-15);
  for (int i = 1; i <= 3; ++i) EXPECT_DOUBLE_EQ(top[i] + bottom[i], z[i]);
}

TEST_F(ColumnFixture, ShortCutExampleHoldsUnderwoodKirkbrideAndEveryInputForm) {
  LoadColumnExample1(s);
  const ShortCutInput in = MakeShortCutInput(s);
  EXPECT_DOUBLE_EQ(in.FeedFlow, 380);
  const ShortCutResult a = RunShortCut(s, in);
  ASSERT_TRUE(a.Converged);
  EXPECT_GT(a.MinPlates, 0);
  EXPECT_DOUBLE_EQ(a.Alpha[3], 1.0);
  ASSERT_EQ(a.Gilliland.size(), 51u);
  EXPECT_DOUBLE_EQ(a.Gilliland[0].R, 1.09 * a.MinReflux);
  EXPECT_NEAR(a.TopFlow + a.BottomFlow, 380, 1e-9);
  // the keys meet their specifications: light key in the bottom, heavy key in the top
  EXPECT_NEAR(a.BottomComp[2], 0.005, 1e-4);
  EXPECT_NEAR(a.TopComp[3], 0.35, 1e-4);
  // the Underwood root lies between the keys' volatilities and zeroes the feed sum
  EXPECT_GT(a.Phi, 1.0);
  EXPECT_LT(a.Phi, a.Alpha[2]);
  double g = 0, rmin = -1;
  for (int i = 1; i <= 4; ++i) {
    g += in.FeedFraction[i] * a.Alpha[i] / (a.Alpha[i] - a.Phi);
    rmin += a.TopComp[i] * a.Alpha[i] / (a.Alpha[i] - a.Phi);
  }
  EXPECT_LT(std::fabs(g), 1e-4);
  EXPECT_NEAR(a.MinReflux, rmin, 1e-12);
  EXPECT_GT(a.MinReflux, 0);
  // Kirkbride: NR/NS = (zHK/zLK (xLK,B/xHK,D)^2 B/D)^0.206, FeedLocation = NR of MinPlates
  const double ratio = std::pow(in.FeedFraction[3] / in.FeedFraction[2] *
                                    std::pow(a.BottomComp[2] / a.TopComp[3], 2) *
                                    (1 - a.TopFraction) / a.TopFraction,
                                0.206);
  EXPECT_NEAR(a.FeedLocation, ratio / (1 + ratio) * a.MinPlates, 1e-9);

  // a partial condenser: one plate less at every reflux, all else the same
  s.Column.ShortCutCondenser = 1;
  const ShortCutResult b = RunShortCut(s, in);
  EXPECT_EQ(a.MinPlates, b.MinPlates);
  EXPECT_EQ(a.MinReflux, b.MinReflux);
  EXPECT_EQ(a.FeedLocation, b.FeedLocation);
  for (size_t k = 0; k < 51; ++k) {
    EXPECT_EQ(a.Gilliland[k].R, b.Gilliland[k].R);
    EXPECT_NEAR(b.Gilliland[k].N, a.Gilliland[k].N - 1, 1e-12);
  }
  s.Column.ShortCutCondenser = 0;

  // no temperature given: the feed at its bubble point
  ShortCutInput bubble = in;
  bubble.TempGiven = false;
  const ShortCutResult d = RunShortCut(s, bubble);
  EXPECT_EQ(d.VF, 0);
  EXPECT_GT(d.Temperature, 70);
  EXPECT_LT(d.Temperature, 100);
  EXPECT_EQ(s.Column.ShortCutTemp, d.Temperature);

  // recoveries to the top consistent with the mole-fraction result give the same column
  s.Column.ShortCutCalcType = 1;
  s.Column.ShortCutLightValue[2] = a.Top[2] / in.FeedFraction[2];
  s.Column.ShortCutHeavyValue[2] = a.Top[3] / in.FeedFraction[3];
  const ShortCutResult c = RunShortCut(s, in);
  EXPECT_NEAR(c.MinPlates, a.MinPlates, 1e-9);
  EXPECT_NEAR(c.MinReflux, a.MinReflux, 1e-9);
  EXPECT_NEAR(c.FeedLocation, a.FeedLocation, 1e-9);
  for (int i = 1; i <= 4; ++i) EXPECT_NEAR(c.TopComp[i], a.TopComp[i], 1e-9);
}

TEST_F(ColumnFixture, ShortCutRefusals) {
  LoadColumnExample1(s);
  const ShortCutInput good = MakeShortCutInput(s);
  auto expectRefused = [&](const ShortCutInput& in, const std::string& msg) {
    EXPECT_EQ(ValidateShortCut(s, in), msg);
    EXPECT_THROW(RunShortCut(s, in), InputRefused);
    EXPECT_EQ(dialogs.messages.back(), msg);
  };
  s.Column.ShortCutLightKey = 0;
  expectRefused(good, "Light Key or Heavey Key is not input");
  s.Column.ShortCutLightKey = 2;
  s.Column.ShortCutLightValue[1] = 1.0;
  expectRefused(good, "Invalid  Mol Fr or Recovery Rate in Light key/Heavey Key");
  s.Column.ShortCutLightValue[1] = 0.005;
  ShortCutInput in = good;
  in.FeedFlow = 0;
  expectRefused(in, "No Feed");
  in = good;
  in.FeedFraction[2] = 0;
  expectRefused(in, "No Feed Composition");
  s.Comp.AntoineB[4] = 0;
  expectRefused(good, "No Antoine Constants, input at Main Menu 'K-Value'");
  s.KValueMethod = 4;
  expectRefused(good, "No Critical Constants, input at Main Menu 'K-Value'");
  s.KValueMethod = 0;
  expectRefused(good, "No K-Value Method, input at Main Menu 'K-Value'");
  s.NC = 0;
  s.LanguageFlag = 0;
  expectRefused(good, "成分数が入力されていません。メイン画面の成分で入力して下さい。");
}

TEST_F(ColumnFixture, GillilandWithoutMinimumRefluxGivesNoPoints) {
  LoadColumnExample1(s);
  // keys swapped: the "light" key is the less volatile one
  s.Column.ShortCutLightKey = 3;
  s.Column.ShortCutHeavyKey = 1;
  s.Column.ShortCutCalcType = 1;
  const ShortCutResult r = RunShortCut(s, MakeShortCutInput(s));
  // the light key's volatility below 1 turns the minimum plates negative
  EXPECT_LT(r.Alpha[3], 1.0);
  EXPECT_LT(r.MinPlates, 0);
  EXPECT_TRUE(r.Gilliland.empty());
  EXPECT_NE(dialogs.messages.back().find("Gilliland"), std::string::npos);
}

}  // namespace
}  // namespace tervale
