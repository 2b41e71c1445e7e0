#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <string>

#include "state/shared_state.h"
#include "vapourpress/antoine_estimate.h"

namespace tervale {
namespace {

TEST(AntoineFit, RecoversConstantsFromPointsOfTheirForm) {
  struct Abc {
    double a, b, c;
  };
  for (Abc k : {Abc{8.07131, 1730.63, 233.426}, Abc{6.90565, 1211.033, 220.79},
                Abc{7.87863, 1473.11, 230.0}}) {
    double t[9], p[9];
    for (int i = 0; i < 9; ++i) {
      t[i] = -10 + 12.5 * i;
      p[i] = std::pow(10.0, k.a - k.b / (t[i] + k.c));
    }
    AntoineFit f = FitAntoine(t, p, 9);
    ASSERT_TRUE(f.ok);
    EXPECT_NEAR(f.A, k.a, 1e-6 * k.a);
    EXPECT_NEAR(f.B, k.b, 1e-6 * k.b);
    EXPECT_NEAR(f.C, k.c, 1e-6 * k.c);
  }
}

TEST(AntoineFit, DeterminantsAndSingularFits) {
  EXPECT_DOUBLE_EQ(Det3({{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}), 1);
  EXPECT_DOUBLE_EQ(Det3({{{2, -3, 1}, {2, 0, -1}, {1, 4, 5}}}), 49);
  EXPECT_DOUBLE_EQ(Det3({{{1, 2, 3}, {2, 4, 6}, {7, 8, 9}}}), 0);
  // Two distinct temperatures; a zero pressure; too few points.
  const double t[] = {20, 20, 40, 40}, p[] = {10, 11, 30, 31};
  const double t2[] = {20, 30, 40}, p2[] = {10, 0, 30};
  EXPECT_FALSE(FitAntoine(t, p, 4).ok);
  EXPECT_FALSE(FitAntoine(t2, p2, 3).ok);
  EXPECT_FALSE(FitAntoine(t2, p2, 2).ok);
}

class AntoineEstimateTest : public ::testing::Test {
 protected:
  void SetUp() override {
    s->Dialogs = &d;
    s->LanguageFlag = 1;
    LoadAntoineExample(*s);
  }
  std::unique_ptr<SharedCalcState> s = MakeSharedCalcState();
  RecordingDialogs d;
};

TEST_F(AntoineEstimateTest, ExampleFitsMeasuredAndLeeKeslerRows) {
  // Measured data replace complete constants.
  s->Antoine.A[1] = 1;
  s->Antoine.B[1] = 2;
  s->Antoine.C[1] = 3;
  ASSERT_TRUE(EstimateAntoine(*s));
  EXPECT_TRUE(d.messages.empty());
  const auto& e = s->Antoine;
  EXPECT_EQ(s->NC, 4);
  EXPECT_TRUE(e.Fitted[1] && e.Fitted[2] && e.LeeKesler[2]);
  EXPECT_FALSE(e.Fitted[3] || e.Fitted[4]);
  // Methanol boils near 64.5 C with the fitted constants.
  double pb =
      std::pow(10.0, s->Comp.AntoineA[1] - s->Comp.AntoineB[1] / (64.51 + s->Comp.AntoineC[1]));
  EXPECT_NEAR(pb, 760, 15);
  // Ethanol: 11 Lee-Kesler points from -20 to 80 C, the fit passes through them closely,
  // and the normal boiling point is near 78 C.
  EXPECT_EQ(e.MeasuredCount[2], 11);
  EXPECT_DOUBLE_EQ(e.MeasuredTemp[2][11], 80);
  EXPECT_DOUBLE_EQ(e.MeasuredPress[2][1], LeeKeslerPressure(-20, 513.9, 61.4, 0.644));
  double tb = s->Comp.AntoineB[2] / (s->Comp.AntoineA[2] - std::log10(760)) - s->Comp.AntoineC[2];
  EXPECT_NEAR(tb, 78.3, 2.0);
  // Water keeps its constants.
  EXPECT_EQ(s->Comp.AntoineA[3], 7.9668);

  VaporPressureGraphData g = DrawVaporPressureGraph(*s);
  ASSERT_TRUE(g.Drawn);
  EXPECT_EQ(g.AxisTempLow, -20);
  EXPECT_EQ(g.AxisTempHigh, 80);
  EXPECT_EQ(g.TempTick, 20);
  ASSERT_EQ(g.Curves.size(), 4u);
  EXPECT_EQ(g.Curves[0].Curve.size(), 201u);
  EXPECT_EQ(g.Curves[0].Measured.size(), 5u);
  EXPECT_EQ(g.DecadeLow, static_cast<int>(std::floor(std::log10(g.PressLow))));
  EXPECT_EQ(g.Decades, static_cast<int>(std::floor(std::log10(g.PressHigh))) - g.DecadeLow + 1);
  EXPECT_GT(g.PressHigh, 760);
}

TEST(AntoineEstimate, LeeKeslerMeetsTheCriticalPointAndTheAcentricFactor) {
  // At the critical temperature the equation gives the critical pressure (atm times 760), and
  // at Tr = 0.7 log10(P/Pc) = -1 - omega, the definition of the acentric factor.
  for (double omega : {0.0, 0.2, 0.644}) {
    const double tc = 513.9, pc = 61.4;
    EXPECT_NEAR(LeeKeslerPressure(tc - 273.15, tc, pc, omega) / (pc * 760), 1, 1e-4) << omega;
    const double p07 = LeeKeslerPressure(0.7 * tc - 273.15, tc, pc, omega);
    EXPECT_NEAR(std::log10(p07 / (pc * 760)), -1 - omega, 0.002) << omega;
  }
}

TEST_F(AntoineEstimateTest, ChecksAndMessages) {
  struct Refusal {
    std::function<void(AntoineEstimate&)> change;
    std::string message;  // the first message, or a part of it
  };
  const Refusal refusals[] = {
      {[](AntoineEstimate& e) { e.TempHigh.reset(); }, "温度の下限／上限が入力されていません。"},
      {[](AntoineEstimate& e) { e.TempLow = 100; }, "温度の下限／上限が間違っています。"},
      {[](AntoineEstimate& e) { e.Name[3] = ""; }, "No Component Name"},
      {[](AntoineEstimate& e) { e.C[4] = 0; }, "No Antoine's parameters"},
      {[](AntoineEstimate& e) { e = AntoineEstimate{}, e.TempLow = 0, e.TempHigh = 100; },
       "No Component"},
      // Tc only: the Lee-Kesler route gives zero pressures and the fit is refused.
      {[](AntoineEstimate& e) { e.Pc[2] = e.Omega[2] = 0; }, "cannot be fitted"},
  };
  for (const Refusal& r : refusals) {
    SCOPED_TRACE(r.message);
    LoadAntoineExample(*s);  // afresh for every case
    r.change(s->Antoine);
    d.messages.clear();
    EXPECT_FALSE(EstimateAntoine(*s));
    ASSERT_FALSE(d.messages.empty());
    if (r.message == "cannot be fitted")
      EXPECT_NE(d.messages.front().find(r.message), std::string::npos) << d.messages.front();
    else
      EXPECT_EQ(d.messages.front(), r.message);
  }
}

}  // namespace
}  // namespace tervale
