#include <gtest/gtest.h>

#include <cmath>

#include "mixtures.h"
#include "state/units.h"
#include "thermo/equilibrium.h"

namespace tervale {
namespace {

constexpr std::string_view kNoEosForm = "S-R-K / P-Rの式は未だありません";

// Stage one ends where sum y / K = 1 with Gamma taken at y; stage two leaves Gamma and K of
// the liquid x = y / K (normalised), whose vapour K x (normalised) is y again.
void ExpectDewPointHolds(SharedCalcState& s, double td, double p, const Composition& y, int tag) {
  const CompArray kDew = s.KValue;
  const CompArray gammaDew = s.Gamma;
  auto t = MakeSharedCalcState();
  *t = s;
  if (s.KValueMethod == 2) CalcGammaWilson(*t, y);
  if (s.KValueMethod == 3) CalcGammaNRTL(*t, y);
  double sum = 0;
  for (int i = 1; i <= s.NC; ++i) {
    const double g = s.KValueMethod == 1 ? 1.0 : t->Gamma[i];
    sum += y[i] / (g * AntoinePressureMmHg(s, i, td) / (p * kMmHgPerMPa));
  }
  EXPECT_NEAR(sum, 1.0, 1e-5) << tag;
  Composition x{};
  double sx = 0;
  for (int i = 1; i <= s.NC; ++i) sx += (x[i] = y[i] / kDew[i]);
  double sy = 0;
  for (int i = 1; i <= s.NC; ++i) sy += kDew[i] * (x[i] /= sx);
  double e = 0;
  for (int i = 1; i <= s.NC; ++i) e += std::fabs(kDew[i] * x[i] / sy - y[i]);
  EXPECT_LT(e, 1e-6) << tag;
  for (int i = 1; i <= s.NC; ++i)
    EXPECT_NEAR(kDew[i], gammaDew[i] * AntoinePressureMmHg(s, i, td) / (p * kMmHgPerMPa), 1e-12);
}

TEST(Equilibrium, PureWaterBoilsWhereItsVapourPressureIsTheSystemPressure) {
  auto s = MakeSharedCalcState();
  s->NC = 1;
  testmix::SetAntoine(*s, 1, "Water", 8.07131, 1730.63, 233.43);
  const Composition x{0, 1.0};
  for (int method : {1, 2, 3}) {  // one component: every activity coefficient is 1
    s->KValueMethod = method;
    const double t = CalcBubbleTemperature(*s, 50.0, 0.101, x);
    EXPECT_NEAR(t, 99.96, 0.05) << method;
    EXPECT_NEAR(AntoinePressureMmHg(*s, 1, t) / (0.101 * kMmHgPerMPa), 1.0, 1e-6);
    EXPECT_NEAR(s->Gamma[1], 1.0, 1e-15);
    EXPECT_NEAR(s->KValue[1], 1.0, 1e-6);
    const double td = CalcDewTemperature(*s, 150.0, 0.101, x);
    EXPECT_NEAR(td, t, 1e-4);
  }
}

TEST(Equilibrium, BubbleAndDewPointsAndPressuresOfABinaryAgree) {
  for (int method : {1, 2, 3}) {
    auto s = MakeSharedCalcState();
    testmix::MethanolWater(*s);
    s->Bin.WilsonLambda[1][2] = 0.382;
    s->Bin.WilsonLambda[2][1] = 0.95;
    s->Bin.NrtlTau[1][2] = -0.2;
    s->Bin.NrtlTau[2][1] = 0.6;
    s->Bin.NrtlAlpha = 0.3;
    s->KValueMethod = method;
    const Composition x{0, 0.25, 0.75};
    const double p = 0.1;
    const double tb = CalcBubbleTemperature(*s, 80.0, p, x);
    EXPECT_NEAR(testmix::SumXK(*s, x), 1.0, 1e-6) << method;
    Composition y{};
    for (int i = 1; i <= 2; ++i) y[i] = x[i] * s->KValue[i];
    const double sy = y[1] + y[2];
    y[1] /= sy;
    y[2] /= sy;
    EXPECT_GT(y[1], x[1]);  // methanol is the lighter one
    const Composition yBefore = y;
    const double td = CalcDewTemperature(*s, 60.0, p, y);
    EXPECT_EQ(y, yBefore);  // the caller's y is never changed
    ExpectDewPointHolds(*s, td, p, y, method);
    if (method == 1) {
      // Ideal: the dew point of the bubble point's vapour is the bubble point, its liquid x.
      EXPECT_NEAR(td, tb, 1e-3);
      EXPECT_NEAR(y[1] / s->KValue[1] / (y[1] / s->KValue[1] + y[2] / s->KValue[2]), 0.25, 1e-5);
    } else {
      // The temperature is found with Gamma taken at the vapour fractions and is not corrected
      // after the liquid is refined, so it differs from the bubble point of that liquid.
      EXPECT_GT(std::fabs(td - tb), 0.1) << method;
    }
    // Bubble pressure at the bubble temperature gives back the pressure.
    s->Unit.PressUnit = 1;
    EXPECT_NEAR(CalcBubblePressure(*s, tb, 0, x), p, 1e-7) << method;
    if (method != 1) continue;
    // Ideal bubble pressure sum x Psat and dew pressure 1 / sum y / Psat, in the user's unit;
    // the bubble and dew temperatures at them are the temperature they were taken at.
    const double p1 = AntoinePressureMmHg(*s, 1, 70.0), p2 = AntoinePressureMmHg(*s, 2, 70.0);
    const double pmm = 0.25 * p1 + 0.75 * p2, pdew = 1.0 / (0.25 / p1 + 0.75 / p2);
    EXPECT_NEAR(CalcDewPressure(*s, 70.0, 0, x), pdew / kMmHgPerMPa, 1e-12);
    EXPECT_LT(pdew, pmm);
    EXPECT_NEAR(CalcBubbleTemperature(*s, 20.0, pmm / kMmHgPerMPa, x), 70.0, 1e-4);
    EXPECT_NEAR(CalcDewTemperature(*s, 20.0, pdew / kMmHgPerMPa, x), 70.0, 1e-4);
    s->Unit.PressUnit = 2;  // KPa
    EXPECT_NEAR(CalcBubblePressure(*s, 70.0, 0, x), pmm / kMmHgPerMPa * 1000, 1e-9);
    s->Unit.PressUnit = 3;  // mmHg: the sum itself, through the rounded factor and its reciprocal
    EXPECT_NEAR(CalcBubblePressure(*s, 70.0, 999.0, x), pmm, pmm * 1e-9);
    EXPECT_NEAR(s->KValue[1], p1 / pmm, 1e-12);
    EXPECT_NEAR(testmix::SumXK(*s, x), 1.0, 1e-12);
  }
}

TEST(Equilibrium, ActivityCoefficientsFollowTheirForms) {
  auto s = MakeSharedCalcState();
  s->NC = 2;
  s->Bin.WilsonLambda[1][2] = 0.4;
  s->Bin.WilsonLambda[2][1] = 0.9;
  const Composition x{0, 0.3, 0.7};
  CalcGammaWilson(*s, x);
  // Binary Wilson, (row, column) as stored.
  const double d1 = 0.3 + 0.7 * 0.4, d2 = 0.3 * 0.9 + 0.7;
  EXPECT_NEAR(std::log(s->Gamma[1]), 1 - std::log(d1) - 0.3 / d1 - 0.7 * 0.9 / d2, 1e-14);
  EXPECT_NEAR(std::log(s->Gamma[2]), 1 - std::log(d2) - 0.3 * 0.4 / d1 - 0.7 / d2, 1e-14);

  // NRTL with (i,j) in the first term: S1/S2 = sum_j x_j T(i,j) G(i,j) / sum_j x_j G(i,j).
  s->Bin.NrtlTau[1][2] = 0.8;
  s->Bin.NrtlTau[2][1] = -0.3;
  s->Bin.NrtlAlpha = 0.3;
  CalcGammaNRTL(*s, x);
  const double t12 = 0.8, t21 = -0.3, g12 = std::exp(-0.3 * t12), g21 = std::exp(-0.3 * t21);
  const double D1 = 0.3 + 0.7 * g21, D2 = 0.3 * g12 + 0.7;
  const double E1 = 0.7 * t21 * g21, E2 = 0.3 * t12 * g12;
  const double ln1 = (0.7 * t12 * g12) / (0.3 + 0.7 * g12) + (0.3 / D1) * (0 - E1 / D1) +
                     (0.7 * g12 / D2) * (t12 - E2 / D2);
  EXPECT_NEAR(std::log(s->Gamma[1]), ln1, 1e-14);
  // At infinite dilution of nothing (pure component) gamma is 1.
  CalcGammaNRTL(*s, Composition{0, 1.0, 0.0});
  EXPECT_NEAR(s->Gamma[1], 1.0, 1e-14);
}

TEST(Equilibrium, StartFarAwayMovesTwentyDegreesAPassAndEndsShortSilently) {
  auto s = MakeSharedCalcState();
  RecordingDialogs dialogs;
  s->Dialogs = &dialogs;
  s->NC = 1;
  s->KValueMethod = 1;
  // A component whose bubble point lies far below: every pass is cut to 20 C.
  testmix::SetAntoine(*s, 1, "Far", 8.0, 1730.0, 1500.0);
  const double t = CalcBubbleTemperature(*s, 500.0, 0.101, Composition{0, 1.0});
  EXPECT_EQ(t, 500.0 - 51 * 20.0);  // 51 passes, each clipped
  EXPECT_TRUE(dialogs.messages.empty());
  // KValue belongs to the last pass, 20 C above the returned temperature.
  EXPECT_NEAR(s->KValue[1], AntoinePressureMmHg(*s, 1, t + 20) / (0.101 * kMmHgPerMPa), 1e-6);

  // Water from 500 C: twenty clipped passes down, then Newton to the boiling point.
  testmix::SetAntoine(*s, 1, "Water", 8.07131, 1730.63, 233.43);
  EXPECT_NEAR(CalcBubbleTemperature(*s, 500.0, 0.101, Composition{0, 1.0}), 99.96, 0.05);
  EXPECT_NEAR(CalcDewTemperature(*s, 500.0, 0.101, Composition{0, 1.0}), 99.96, 0.05);
}

TEST(Equilibrium, EquationOfStateMethodsHaveNoDewOrPressureForm) {
  for (int method : {4, 5}) {
    auto s = MakeSharedCalcState();
    RecordingDialogs dialogs;
    s->Dialogs = &dialogs;
    s->LanguageFlag = 1;
    const Composition y = testmix::LightHydrocarbons(*s, method);
    s->KValue = {0, 7, 7, 7};

    s->Unit.TempUnit = 2;
    EXPECT_DOUBLE_EQ(CalcDewTemperature(*s, 10.0, 0.5, y), 283.15);
    EXPECT_EQ(s->KValue[1], 1.0);
    EXPECT_EQ(s->KValue[3], 1.0);

    s->Unit.PressUnit = 3;
    s->KValue = {0, 7, 7, 7};
    EXPECT_DOUBLE_EQ(CalcBubblePressure(*s, 10.0, 0.5, y), 0.5 / 0.00013322);
    EXPECT_EQ(s->KValue[2], 1.0);
    s->Unit.PressUnit = 5;
    s->KValue = {0, 7, 7, 7};
    EXPECT_DOUBLE_EQ(CalcDewPressure(*s, 10.0, 0.5, y), 0.5 / 0.0980665);
    EXPECT_EQ(s->KValue[2], 1.0);

    ASSERT_EQ(dialogs.messages.size(), 3u);
    for (const auto& m : dialogs.messages) EXPECT_EQ(m, kNoEosForm);
  }
}

TEST(Equilibrium, WilsonMixtureOfTheFlashExample) {
  auto s = MakeSharedCalcState();
  const Composition z = testmix::AlcoholsWilson(*s);
  const double p = 760 * 0.00013322;
  const double tb = CalcBubbleTemperature(*s, 80.0, p, z);
  EXPECT_NEAR(testmix::SumXK(*s, z), 1.0, 1e-6);
  EXPECT_GT(tb, 64.0);   // above pure methanol
  EXPECT_LT(tb, 100.0);  // below pure water
  const double td = CalcDewTemperature(*s, 100.0, p, z);
  EXPECT_GT(td, tb);
  ExpectDewPointHolds(*s, td, p, z, 2);
}

}  // namespace
}  // namespace tervale
