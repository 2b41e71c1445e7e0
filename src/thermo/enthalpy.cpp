#include "thermo/enthalpy.h"

#include "state/shared_state.h"
#include "state/units.h"

namespace tervale {
namespace {

// Per-kilogram coefficients times the molecular weight, averaged over the sum of z; the heat
// unit is applied here, so callers never convert the result again.
double PolyEnthalpy(SharedCalcState& s, double t, const Composition& z, const CompArray& A,
                    const CompArray& B, const CompArray& C) {
  double num = 0, den = 0;
  for (int i = 1; i <= s.NC; ++i) {
    num += ((C[i] * t + B[i]) * t + A[i]) * z[i] * s.Comp.CompMW[i];
    den += z[i];
  }
  if (den == 0) return 0;
  return ConvHeatToDisplay(s, num / den);
}

}  // namespace

double CalcLiquidEnthalpyPoly(SharedCalcState& s, double T, const Composition& x) {
  return PolyEnthalpy(s, T, x, s.Comp.HLiqA, s.Comp.HLiqB, s.Comp.HLiqC);
}

double CalcVaporEnthalpyPoly(SharedCalcState& s, double T, const Composition& y) {
  return PolyEnthalpy(s, T, y, s.Comp.HVapA, s.Comp.HVapB, s.Comp.HVapC);
}

double CalcLiquidEnthalpy(SharedCalcState& s, double T, double P, const Composition& x) {
  return s.EnthalpyMethod == 1 ? CalcLiquidEnthalpyPoly(s, T, x) : 0.0;
}

double CalcVaporEnthalpy(SharedCalcState& s, double T, double P, const Composition& y) {
  return s.EnthalpyMethod == 1 ? CalcVaporEnthalpyPoly(s, T, y) : 0.0;
}

}  // namespace tervale
