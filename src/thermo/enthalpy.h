#pragma once
#include "state/limits.h"

namespace tervale {

struct SharedCalcState;

// Mixture enthalpies in the unit of HeatUnit (ConvHeatToDisplay applied inside). T in C,
// P unused. EnthalpyMethod 1 uses the polynomials; any other method gives 0.
double CalcLiquidEnthalpy(SharedCalcState& s, double T, double P, const Composition& x);
double CalcVaporEnthalpy(SharedCalcState& s, double T, double P, const Composition& y);
double CalcLiquidEnthalpyPoly(SharedCalcState& s, double T, const Composition& x);
double CalcVaporEnthalpyPoly(SharedCalcState& s, double T, const Composition& y);

}  // namespace tervale
