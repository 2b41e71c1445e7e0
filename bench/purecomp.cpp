// Pure-component estimation end to end: critical constants from Joback groups, acentric
// factor, the 51-point grid, the Antoine fit and the four property fits (n-hexane).
#include <benchmark/benchmark.h>

#include "purecomp/pure_engine.h"
#include "state/shared_state.h"

namespace {

using namespace tervale;

PureComponentInput Hexane(SharedCalcState& s, int density) {
  auto& count = s.PureComp.GroupCount;
  count[static_cast<int>(GroupMethod::Joback)][2] = 2;
  count[static_cast<int>(GroupMethod::Joback)][3] = 4;
  count[static_cast<int>(GroupMethod::RihaniDoraiswamy)][2] = 2;
  count[static_cast<int>(GroupMethod::RihaniDoraiswamy)][3] = 4;
  s.PureComp.Methods.LiqDensity = density;
  PureComponentInput in;
  in.Name = "n-Hexane";
  in.MolWeight = 86.177;
  in.TotalAtom = 20;
  in.HasTbC = true;
  in.TbC = 68.73;
  in.TempLow = 0;
  in.TempHigh = 200;
  in.HasLiqD_Dref = in.HasLiqD_Tref = true;
  in.LiqD_Dref = 0.6594;
  in.LiqD_Tref = 20;
  return in;
}

void BM_PureComponentEstimation(benchmark::State& state) {
  auto s = MakeSharedCalcState();
  const PureComponentInput in = Hexane(*s, static_cast<int>(state.range(0)));
  for (auto _ : state) {
    RunPureComponentEstimation(*s, in);
    benchmark::DoNotOptimize(s->PureComp.PropDenRackettB);
  }
}
BENCHMARK(BM_PureComponentEstimation)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace
