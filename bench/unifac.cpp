#include <benchmark/benchmark.h>

#include <filesystem>

#include "state/shared_state.h"
#include "unifac/unifac_model.h"
#include "vapourpress/antoine_estimate.h"

namespace {

using namespace tervale;

// The whole Estimate of example 1: checks, the 201-point sweep and the Wilson derivation.
void BM_UnifacExample1SweepWithDerivation(benchmark::State& state) {
  auto s = MakeSharedCalcState();
  ReadUnifacParameterFile(*s, std::filesystem::path(TERVALE_SOURCE_DIR) / "data" / "UNIFAC.PAR");
  const UnifacScreenInput in = UnifacExample(1);
  for (auto _ : state) {
    bool ok = RunUnifacEstimate(*s, in);
    benchmark::DoNotOptimize(ok);
    benchmark::DoNotOptimize(s->Unifac.DerivedWilson1);
  }
}
BENCHMARK(BM_UnifacExample1SweepWithDerivation)->Unit(benchmark::kMicrosecond);

void BM_UnifacExample2SweepWithDerivation(benchmark::State& state) {
  auto s = MakeSharedCalcState();
  ReadUnifacParameterFile(*s, std::filesystem::path(TERVALE_SOURCE_DIR) / "data" / "UNIFAC.PAR");
  const UnifacScreenInput in = UnifacExample(2);
  for (auto _ : state) {
    bool ok = RunUnifacEstimate(*s, in);
    benchmark::DoNotOptimize(ok);
  }
}
BENCHMARK(BM_UnifacExample2SweepWithDerivation)->Unit(benchmark::kMicrosecond);

void BM_AntoineExampleEstimate(benchmark::State& state) {
  auto s = MakeSharedCalcState();
  for (auto _ : state) {
    LoadAntoineExample(*s);
    bool ok = EstimateAntoine(*s);
    benchmark::DoNotOptimize(ok);
  }
}
BENCHMARK(BM_AntoineExampleEstimate)->Unit(benchmark::kMicrosecond);

}  // namespace
