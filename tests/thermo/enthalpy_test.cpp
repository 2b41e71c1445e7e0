#include <gtest/gtest.h>

#include "mixtures.h"
#include "thermo/enthalpy.h"

namespace tervale {
namespace {

TEST(Enthalpy, PolynomialPerKgmolInTheHeatUnit) {
  auto s = MakeSharedCalcState();
  Composition x = testmix::AlcoholsWilson(*s);
  s->Comp.HLiqA = {0, -253.37, -174.17, -485.52, -147.14999};
  s->Comp.HLiqB = {0, 0.81773, 0.77057, 0, 0.6577};
  s->Comp.HLiqC = {0, 0, 0, 0.001, 0};
  s->Comp.HVapA = {0, 62.453, 64.272, 119.87, 44.672};
  s->Comp.HVapB = {0, 0.39014, 0.41893, 0.46615, 0.3663};
  s->EnthalpyMethod = 1;
  s->Unit.HeatUnit = 1;
  const double t = 85.0;
  double expect = 0;
  for (int i = 1; i <= 4; ++i)
    expect += (s->Comp.HLiqA[i] + s->Comp.HLiqB[i] * t + s->Comp.HLiqC[i] * t * t) * x[i] *
              s->Comp.CompMW[i];
  EXPECT_NEAR(CalcLiquidEnthalpy(*s, t, 0.1, x), expect, 1e-9);
  EXPECT_EQ(CalcLiquidEnthalpy(*s, t, 0.1, x), CalcLiquidEnthalpyPoly(*s, t, x));
  const double hv = CalcVaporEnthalpy(*s, t, 0.1, x);
  EXPECT_GT(hv, CalcLiquidEnthalpy(*s, t, 0.1, x));

  // "Kcal" (2) scales by 4186.05, applied inside: callers never convert again.
  s->Unit.HeatUnit = 2;
  EXPECT_NEAR(CalcLiquidEnthalpy(*s, t, 0.1, x), expect * 4186.05, 1e-6);

  // Doubling every fraction leaves the enthalpy as it was.
  Composition x2 = x;
  for (int i = 1; i <= 4; ++i) x2[i] *= 2;
  EXPECT_NEAR(CalcVaporEnthalpy(*s, t, 0.1, x2), CalcVaporEnthalpy(*s, t, 0.1, x), 1e-9);

  // An all-zero composition gives 0 without error.
  EXPECT_EQ(CalcVaporEnthalpy(*s, t, 0.1, Composition{}), 0.0);

  // Methods 0, 2 and 3 give exactly 0 (the polynomial forms still compute).
  for (int method : {0, 2, 3}) {
    s->EnthalpyMethod = method;
    EXPECT_EQ(CalcLiquidEnthalpy(*s, t, 0.1, x), 0.0);
    EXPECT_EQ(CalcVaporEnthalpy(*s, t, 0.1, x), 0.0);
    EXPECT_NE(CalcVaporEnthalpyPoly(*s, t, x), 0.0);
  }
}

}  // namespace
}  // namespace tervale
