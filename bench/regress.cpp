// Speed of the binary parameter estimation: the Wilson fit of example 1 and the 201-point curve.
#include <benchmark/benchmark.h>

#include "regress/vle_case.h"
#include "regress/vle_graph.h"
#include "regress/vle_regression.h"
#include "state/shared_state.h"

namespace {

using namespace tervale;

// Example 1 through the Calc driver with the Wilson type and the given objective.
std::unique_ptr<SharedCalcState> Example1(int objective) {
  auto s = MakeSharedCalcState();
  LoadVLEExample(*s, 1);
  VLEScreenFields f = DisplayVLECase(*s);
  f.CalcTypeIndex = 0;
  f.ObjectiveIndex = objective - 1;
  if (!RunVLECalcDriver(*s, f)) std::abort();
  return s;
}

void BM_WilsonRegressionExample1Objective4(benchmark::State& state) {
  auto s = Example1(4);
  const VLEDataCase start = s->VLE;
  int evaluations = 0;
  for (auto _ : state) {
    s->VLE = start;  // the default start, Lambda = 1, 1
    RegressionResult r = MarquardtRegression(*s);
    evaluations = r.evaluations;
    benchmark::DoNotOptimize(s->VLE.WilsonLambda12);
  }
  state.counters["evaluations"] = evaluations;
}
BENCHMARK(BM_WilsonRegressionExample1Objective4)->Unit(benchmark::kMillisecond);

void BM_Curve201Points(benchmark::State& state) {
  auto s = Example1(4);
  MarquardtRegression(*s);
  for (auto _ : state) {
    VLEGraphData g = DrawVLEGraph(*s);
    benchmark::DoNotOptimize(g.tpTop);
  }
}
BENCHMARK(BM_Curve201Points)->Unit(benchmark::kMicrosecond);

}  // namespace
