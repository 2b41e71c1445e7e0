// The equilibrium, equation-of-state and enthalpy routines run thousands of times per column
// solution: none of them may allocate. A counting operator new watches them.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "flash/flash_engine.h"
#include "mixtures.h"
#include "thermo/enthalpy.h"
#include "thermo/eos.h"
#include "thermo/equilibrium.h"

namespace {
std::atomic<bool> gCounting{false};
std::atomic<long> gAllocations{0};
}  // namespace

void* operator new(std::size_t size) {
  if (gCounting.load(std::memory_order_relaxed)) gAllocations.fetch_add(1);
  if (void* p = std::malloc(size ? size : 1)) return p;
  throw std::bad_alloc();
}
void operator delete(void* p) noexcept {
  std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
  std::free(p);
}

namespace tervale {
namespace {

struct CountAllocations {
  CountAllocations() {
    gAllocations = 0;
    gCounting = true;
  }
  ~CountAllocations() { gCounting = false; }
  long Count() const { return gAllocations.load(); }
};

TEST(Allocation, ThermodynamicRoutinesNeverAllocate) {
  auto s = MakeSharedCalcState();
  auto h = MakeSharedCalcState();
  const Composition z = testmix::AlcoholsWilson(*s);
  s->EnthalpyMethod = 1;
  const Composition zh = testmix::LightHydrocarbons(*h, 4);
  testmix::SetKijDiagonal(*h, 0.0);
  Composition x{}, y{};
  double sink = 0;
  {  // a sanity check that the counter sees allocations at all
    CountAllocations probe;
    ::operator delete(::operator new(sizeof(double)));
    EXPECT_EQ(probe.Count(), 1);
  }
  CountAllocations counter;
  for (int method : {1, 2, 3}) {
    s->KValueMethod = method;
    sink += CalcBubbleTemperature(*s, 80.0, 0.101, z);
    sink += CalcDewTemperature(*s, 80.0, 0.101, z);
    sink += CalcBubblePressure(*s, 80.0, 0.101, z);
    sink += CalcDewPressure(*s, 80.0, 0.101, z);
    double vf = 0;
    CalcIsothermalFlashVF(*s, 90.0, 0.101, vf, z);
    SplitFlashComposition(*s, 90.0, 0.101, vf, z, y, x);
    sink += vf + CalcLiquidEnthalpy(*s, 90.0, 0.101, x) + CalcVaporEnthalpy(*s, 90.0, 0.101, y);
  }
  CalcGammaNRTL(*s, z);
  CalcGammaWilson(*s, z);
  SecantBracketState st;
  SecantBracketStep(st);
  // S-R-K cases that converge without a message.
  h->KValueMethod = 4;
  sink += CalcBubbleTemperature(*h, -30.0, 10 * 0.0980665, zh);
  testmix::SetKijDiagonal(*h, 1.0);
  sink += CalcBubbleTemperature(*h, -10.0, 10 * 0.0980665, zh);
  double a, b, da, dda, rho;
  CalcEOSMixture(*h, 1, 0.0, zh, a, b, da, dda);
  CalcEOSCompressibility(*h, 1, 0, 0.0, 1.0, zh, rho, a, b);
  CalcEOSFugacity(*h, 1, 0.0, 1.0, zh, x, rho, a, b);
  CalcEOSInitialK(*h, 0.0, 1.0);
  EXPECT_EQ(counter.Count(), 0);
  // P-R ends this case with its no-convergence message: the text of the message is the only
  // allocation.
  h->KValueMethod = 5;
  const long before = counter.Count();
  sink += CalcBubbleTemperature(*h, -10.0, 10 * 0.0980665, zh);
  EXPECT_EQ(h->MessageText, "T_Bubble_srk No-Convergence");
  EXPECT_EQ(counter.Count() - before, 1);
  EXPECT_NE(sink, 0.0);
}

}  // namespace
}  // namespace tervale
