// Speed of the flash engine and of the condensing curve.
#include <benchmark/benchmark.h>

#include "flash/flash_engine.h"
#include "flash/flash_program.h"
#include "state/shared_state.h"
#include "state/units.h"

namespace {
using namespace tervale;

std::unique_ptr<SharedCalcState> Example1() {
  auto s = MakeSharedCalcState();
  ResetFlashCase(*s);
  LoadFlashExample(*s, 1);
  return s;
}

// Isothermal flash of the first example (Wilson, 4 components) at 90 C and 760 mmHg.
void BM_IsothermalFlashExample1(benchmark::State& state) {
  auto s = Example1();
  const double p = ConvPressToBase(*s, 760);
  for (auto _ : state) {
    double vf = 0;
    CalcIsothermalFlashVF(*s, 90.0, p, vf, s->Flash.FeedZ);
    benchmark::DoNotOptimize(vf);
  }
}
BENCHMARK(BM_IsothermalFlashExample1);

void BM_FlashAndSplitExample1(benchmark::State& state) {
  auto s = Example1();
  const double p = ConvPressToBase(*s, 760);
  Composition x{}, y{};
  for (auto _ : state) {
    double vf = 0;
    CalcIsothermalFlashVF(*s, 90.0, p, vf, s->Flash.FeedZ);
    SplitFlashComposition(*s, 90.0, p, vf, s->Flash.FeedZ, y, x);
    benchmark::DoNotOptimize(x);
  }
}
BENCHMARK(BM_FlashAndSplitExample1);

// The whole condensing curve with empty limits: bubble and dew points, 201 flashes, enthalpies.
void BM_CondensingCurveExample1(benchmark::State& state) {
  auto s = Example1();
  s->EnthalpyMethod = 1;
  for (auto _ : state) {
    CondensingCurve c = CalcCondensingCurve(*s, std::nullopt, std::nullopt, 760);
    benchmark::DoNotOptimize(c);
  }
}
BENCHMARK(BM_CondensingCurveExample1)->Unit(benchmark::kMicrosecond);

}  // namespace
