// Speed of the equilibrium library: the calls the column and batch solvers make thousands of
// times per solution.
#include <benchmark/benchmark.h>

#include "../tests/thermo/mixtures.h"
#include "thermo/eos.h"
#include "thermo/equilibrium.h"

namespace {
using namespace tervale;

void BM_BubbleTemperatureWilson4(benchmark::State& state) {
  auto s = MakeSharedCalcState();
  const Composition z = testmix::AlcoholsWilson(*s);
  const double p = 760 * 0.00013322;
  for (auto _ : state) {
    double t = CalcBubbleTemperature(*s, 80.0, p, z);
    benchmark::DoNotOptimize(t);
  }
}
BENCHMARK(BM_BubbleTemperatureWilson4);

void BM_DewTemperatureWilson4(benchmark::State& state) {
  auto s = MakeSharedCalcState();
  const Composition z = testmix::AlcoholsWilson(*s);
  const double p = 760 * 0.00013322;
  for (auto _ : state) {
    double t = CalcDewTemperature(*s, 100.0, p, z);
    benchmark::DoNotOptimize(t);
  }
}
BENCHMARK(BM_DewTemperatureWilson4);

// Ethane, propane, n-butane at 10 kgf/cm2 from -10 C; arg 0 the default KijMatrix diagonal
// of 1.0, arg 1 a zero diagonal.
void EosBubble(benchmark::State& state, int method) {
  auto s = MakeSharedCalcState();
  const Composition x = testmix::LightHydrocarbons(*s, method);
  if (state.range(0) == 1)
    for (int i = 1; i <= 3; ++i) s->Bin.KijMatrix[i][i] = 0.0;
  for (auto _ : state) {
    double t = CalcBubbleTemperature(*s, -10.0, 10 * 0.0980665, x);
    benchmark::DoNotOptimize(t);
  }
}
void BM_BubbleTemperatureSRK(benchmark::State& state) {
  EosBubble(state, 4);
}
void BM_BubbleTemperaturePR(benchmark::State& state) {
  EosBubble(state, 5);
}
BENCHMARK(BM_BubbleTemperatureSRK)->Arg(0)->Arg(1);
BENCHMARK(BM_BubbleTemperaturePR)->Arg(0)->Arg(1);

}  // namespace
