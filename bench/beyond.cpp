// Speed of the additions to the binary programs: the consistency tests, the parameter
// statistics after a fit and the azeotrope search of a 201-point curve.
#include <benchmark/benchmark.h>

#include "regress/vle_azeotrope.h"
#include "regress/vle_case.h"
#include "regress/vle_consistency.h"
#include "regress/vle_graph.h"
#include "regress/vle_regression.h"
#include "regress/vle_statistics.h"
#include "state/shared_state.h"

namespace {

using namespace tervale;

std::unique_ptr<SharedCalcState> Example1(int objective) {
  auto s = MakeSharedCalcState();
  LoadVLEExample(*s, 1);
  VLEScreenFields f = DisplayVLECase(*s);
  f.CalcTypeIndex = 0;
  f.ObjectiveIndex = objective - 1;
  if (!RunVLECalcDriver(*s, f)) std::abort();
  return s;
}

void BM_ConsistencyTestsExample1(benchmark::State& state) {
  auto s = Example1(1);
  int order = 0;
  for (auto _ : state) {
    ConsistencyResult r = TestVLEConsistency(*s);
    order = r.point ? r.point->order : 0;
    benchmark::DoNotOptimize(r.area);
  }
  state.counters["order"] = order;
}
BENCHMARK(BM_ConsistencyTestsExample1)->Unit(benchmark::kMicrosecond);

// The regression alone and the regression followed by its statistics, objective 1 and 4.
void BM_Regression(benchmark::State& state) {
  auto s = Example1(static_cast<int>(state.range(0)));
  const VLEDataCase start = s->VLE;
  for (auto _ : state) {
    s->VLE = start;
    RegressionResult r = MarquardtRegression(*s);
    benchmark::DoNotOptimize(r.sumOfSquares);
  }
}
BENCHMARK(BM_Regression)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);

void BM_RegressionWithStatistics(benchmark::State& state) {
  auto s = Example1(static_cast<int>(state.range(0)));
  const VLEDataCase start = s->VLE;
  for (auto _ : state) {
    s->VLE = start;
    RegressionResult r = MarquardtRegression(*s);
    VLEStatistics st = CalcVLEStatistics(*s);
    benchmark::DoNotOptimize(r.sumOfSquares);
    benchmark::DoNotOptimize(st.rmsdY);
  }
}
BENCHMARK(BM_RegressionWithStatistics)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);

// Ethanol (1) - water (2) at 760 mmHg with the seed database's Wilson pair: one azeotrope,
// refined with the model; methanol - water: the scan alone.
void BM_AzeotropeSearch(benchmark::State& state) {
  auto s = MakeSharedCalcState();
  VLEDataCase& c = s->VLE;
  InitializeVLECase(*s);
  c.CalcType = 3;
  c.TPType = 0;
  c.VLEPressure = 760;
  const bool ethanol = state.range(0) == 1;
  c.AntoineA = {0, ethanol ? 8.21185 : 8.07787, 7.99074};
  c.AntoineB = {0, ethanol ? 1648.22 : 1580.08, 1687.537};
  c.AntoineC = {0, ethanol ? 230.918 : 239.5, 230.17};
  c.WilsonLambda12 = ethanol ? 0.181288 : 0.331921;
  c.WilsonLambda21 = ethanol ? 0.861132 : 1.13829;
  DrawVLEGraph(*s);
  size_t found = 0;
  for (auto _ : state) {
    std::vector<Azeotrope> az = FindVLEAzeotropes(*s);
    found = az.size();
    benchmark::DoNotOptimize(az.data());
  }
  state.counters["azeotropes"] = static_cast<double>(found);
}
BENCHMARK(BM_AzeotropeSearch)->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

}  // namespace

namespace {
// The statistics alone, at the fitted parameters.
void BM_StatisticsAlone(benchmark::State& state) {
  auto s = Example1(static_cast<int>(state.range(0)));
  MarquardtRegression(*s);
  for (auto _ : state) {
    VLEStatistics st = CalcVLEStatistics(*s);
    benchmark::DoNotOptimize(st.rmsdY);
  }
}
BENCHMARK(BM_StatisticsAlone)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);
}  // namespace

namespace {
// The fit as the vle command runs it (Calc driver, regression, the 201-point diagram), without
// and with the statistics and the azeotrope search.
void BM_FitAsRun(benchmark::State& state) {
  auto s = MakeSharedCalcState();
  LoadVLEExample(*s, 1);
  VLEScreenFields f = DisplayVLECase(*s);
  f.ObjectiveIndex = static_cast<int>(state.range(0)) - 1;
  const bool extras = state.range(1) == 1;
  for (auto _ : state) {
    if (!RunVLECalcDriver(*s, f)) std::abort();
    MarquardtRegression(*s);
    VLEGraphData g = DrawVLEGraph(*s);
    benchmark::DoNotOptimize(g.tpTop);
    if (extras) {
      VLEStatistics st = CalcVLEStatistics(*s);
      std::vector<Azeotrope> az = FindVLEAzeotropes(*s);
      benchmark::DoNotOptimize(st.rmsdY);
      benchmark::DoNotOptimize(az.data());
    }
  }
}
BENCHMARK(BM_FitAsRun)
    ->Args({1, 0})
    ->Args({1, 1})
    ->Args({4, 0})
    ->Args({4, 1})
    ->Unit(benchmark::kMicrosecond);
}  // namespace
