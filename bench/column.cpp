// Speed of the continuous column: the built-in example, generated columns of growing size,
// and the short-cut design.
#include <benchmark/benchmark.h>

#include "column/column_case.h"
#include "column/shortcut.h"
#include "column/tray_solver.h"
#include "state/shared_state.h"

namespace {

using namespace tervale;

// A generated column: nc hypothetical components of an ideal mixture (Raoult's law, K-value
// method 1, polynomial enthalpies), normal boiling points spread from about 40 C to 150 C;
// one feed of 1000 Kgmol/H, equimolar, half vapour, on the middle tray; reflux ratio 2,
// top liquid 500 Kgmol/H; 760 mmHg throughout; temperature guesses 60 and 140 C.
void MakeGeneratedColumn(SharedCalcState& s, int nTray, int nc) {
  ResetColumnCase(s);
  s.NC = nc;
  s.NTray = nTray;
  s.NFeed = 1;
  s.KValueMethod = 1;
  s.EnthalpyMethod = 1;
  s.Unit.TempUnit = 1;
  s.Unit.PressUnit = 3;
  s.Unit.HeatUnit = 2;
  for (int i = 1; i <= nc; ++i) {
    const double tb = 40.0 + 110.0 * (i - 1) / (nc > 1 ? nc - 1 : 1);  // boiling point, C
    const double C = 220.0, A = 7.9;
    s.Comp.CompName[i] = "C" + std::to_string(i);
    s.Comp.AntoineA[i] = A;
    s.Comp.AntoineC[i] = C;
    s.Comp.AntoineB[i] = (A - 2.880814) * (tb + C);  // log10(760) = 2.880814
    s.Comp.CompMW[i] = 40.0 + 5.0 * i;
    s.Comp.HLiqA[i] = 0;
    s.Comp.HLiqB[i] = 0.5;
    s.Comp.HVapA[i] = 300.0 + 5.0 * i;
    s.Comp.HVapB[i] = 0.45;
  }
  auto& c = s.Column;
  c.RefluxRatio = 2.0;
  c.TopLiquidFlow = 500;
  c.TopPress = 760;
  c.BottomPress = 760;
  c.TopTempGuess = 60;
  c.BottomTempGuess = 140;
  c.TrayPressInput[1] = 760;
  c.TrayPressInput[nTray] = 760;
  c.FeedTray[1] = nTray / 2;
  c.FeedTemp[1] = 90;
  c.FeedPress[1] = 760;
  c.FeedVF[1] = 0.5;
  c.FeedFlow[1] = 1000;
  for (int i = 1; i <= nc; ++i) c.FeedComp[1][i] = 1.0 / nc;
  RefreshColumnTotals(s);
}

void BM_ColumnExample1(benchmark::State& st) {
  auto s = MakeSharedCalcState();
  int passes = 0;
  for (auto _ : st) {
    LoadColumnExample1(*s);
    BuildProductLists(*s);
    InitTrayComposition(*s);
    const TrayRunResult r = RunTrayCalculation(*s, nullptr, false);
    passes = r.passes;
    benchmark::DoNotOptimize(s->Column.TrayT[1]);
  }
  st.counters["passes"] = passes;
}
BENCHMARK(BM_ColumnExample1)->Unit(benchmark::kMillisecond);

void BM_ColumnGenerated(benchmark::State& st) {
  const int nTray = static_cast<int>(st.range(0)), nc = static_cast<int>(st.range(1));
  auto s = MakeSharedCalcState();
  int passes = 0;
  for (auto _ : st) {
    MakeGeneratedColumn(*s, nTray, nc);
    BuildProductLists(*s);
    InitTrayComposition(*s);
    const TrayRunResult r = RunTrayCalculation(*s, nullptr, false);
    passes = r.passes;
    benchmark::DoNotOptimize(s->Column.TrayT[1]);
  }
  st.counters["passes"] = passes;
  st.counters["trays_x_comps"] = nTray * nc;
  // seconds per pass, per tray x component
  st.counters["ns_per_pass_tray_comp"] = benchmark::Counter(
      static_cast<double>(passes) * nTray * nc,
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_ColumnGenerated)
    ->Args({50, 5})
    ->Args({100, 10})
    ->Args({200, 20})
    ->Unit(benchmark::kMillisecond);

void BM_ShortCutExample1(benchmark::State& st) {
  auto s = MakeSharedCalcState();
  LoadColumnExample1(*s);
  const ShortCutInput in = MakeShortCutInput(*s);
  for (auto _ : st) {
    ShortCutResult r = RunShortCut(*s, in);
    benchmark::DoNotOptimize(r.MinPlates);
  }
}
BENCHMARK(BM_ShortCutExample1)->Unit(benchmark::kMicrosecond);

}  // namespace
