#include <gtest/gtest.h>

#include <cmath>

#include "state/shared_state.h"
#include "vapourpress/antoine_estimate.h"

namespace tervale {
namespace {

TEST(AntoineFit, Det3ByCofactors) {
  EXPECT_DOUBLE_EQ(Det3({{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}), 1);
  EXPECT_DOUBLE_EQ(Det3({{{2, -3, 1}, {2, 0, -1}, {1, 4, 5}}}), 49);
  EXPECT_DOUBLE_EQ(Det3({{{1, 2, 3}, {2, 4, 6}, {7, 8, 9}}}), 0);
}

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

TEST(AntoineFit, SingularFitsAreRefused) {
  double t[] = {20, 20, 40, 40};
  double p[] = {10, 11, 30, 31};
  EXPECT_FALSE(FitAntoine(t, p, 4).ok);  // two distinct temperatures
  double t2[] = {20, 30, 40};
  double p2[] = {10, 0, 30};
  EXPECT_FALSE(FitAntoine(t2, p2, 3).ok);  // a zero pressure
  EXPECT_FALSE(FitAntoine(t2, p2, 2).ok);
}

TEST(AntoineEstimate, ExampleFitsMeasuredAndLeeKeslerRows) {
  auto s = MakeSharedCalcState();
  RecordingDialogs d;
  s->Dialogs = &d;
  s->LanguageFlag = 1;
  LoadAntoineExample(*s);
  ASSERT_TRUE(EstimateAntoine(*s));
  EXPECT_TRUE(d.messages.empty());
  const auto& e = s->Antoine;
  EXPECT_EQ(s->NC, 4);
  EXPECT_TRUE(e.Fitted[1]);
  EXPECT_TRUE(e.Fitted[2]);
  EXPECT_TRUE(e.LeeKesler[2]);
  EXPECT_FALSE(e.Fitted[3]);
  EXPECT_FALSE(e.Fitted[4]);
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
  EXPECT_EQ(s->Comp.CompName[4], "1-Propanol");

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

TEST(AntoineEstimate, ChecksAndMessages) {
  auto s = MakeSharedCalcState();
  RecordingDialogs d;
  s->Dialogs = &d;
  s->LanguageFlag = 1;
  auto refused = [&] {
    d.messages.clear();
    EXPECT_FALSE(EstimateAntoine(*s));
    return d.messages.empty() ? std::string() : d.messages.front();
  };
  LoadAntoineExample(*s);
  s->Antoine.TempHigh.reset();
  EXPECT_EQ(refused(), "温度の下限／上限が入力されていません。");
  LoadAntoineExample(*s);
  s->Antoine.TempLow = 100;
  EXPECT_EQ(refused(), "温度の下限／上限が間違っています。");
  LoadAntoineExample(*s);
  s->Antoine.Name[3] = "";
  EXPECT_EQ(refused(), "No Component Name");
  LoadAntoineExample(*s);
  s->Antoine.C[4] = 0;
  EXPECT_EQ(refused(), "No Antoine's parameters");
  s->Antoine = AntoineEstimate{};
  s->Antoine.TempLow = 0;
  s->Antoine.TempHigh = 100;
  EXPECT_EQ(refused(), "No Component");
  // Tc only: the Lee-Kesler route gives zero pressures and the fit is refused.
  LoadAntoineExample(*s);
  s->Antoine.Pc[2] = 0;
  s->Antoine.Omega[2] = 0;
  EXPECT_NE(refused().find("cannot be fitted"), std::string::npos);
  // Measured data replace complete constants.
  LoadAntoineExample(*s);
  s->Antoine.A[1] = 1;
  s->Antoine.B[1] = 2;
  s->Antoine.C[1] = 3;
  ASSERT_TRUE(EstimateAntoine(*s));
  EXPECT_NE(s->Comp.AntoineA[1], 1);
}

}  // namespace
}  // namespace tervale
