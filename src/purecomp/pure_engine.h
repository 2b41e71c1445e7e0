#pragma once
#include <array>

#include "purecomp/group_tables.h"
#include "purecomp/pure_estimate.h"
#include "state/shared_state.h"

namespace tervale {

// The group forms. Each sums n * delta over its rows (counts of heading rows are ignored) and
// writes its estimate into s.PureComp; the counts stay in s.PureComp.GroupCount.

// Sums of n * delta over the first to fourth constant column, [1..4].
std::array<double, 5> SumGroupContributions(const SharedCalcState& s, GroupMethod method);

// Lydersen, Ambrose, Joback or Klincewicz-Reid: Pc and Vc, and Tc from Tb, or, once Fedors gave
// Tc (PropTbFromFedors), Tb from Tc.
void EstimateCriticalConstants(SharedCalcState& s, GroupMethod method);
// Fedors: Tc alone, and sets PropTbFromFedors. Nothing entered, or a sum whose logarithm does
// not exist, is refused with InputRefused.
void EstimateFedors(SharedCalcState& s);
// Rihani-Doraiswamy: the ideal-gas heat capacity PropCp0[1..4].
void EstimateRihaniDoraiswamy(SharedCalcState& s);

// The estimation engine, in the order the estimate runs it.

// Acentric factor by the chosen method; Tc = 0 gives 0 with a message.
double CalcAcentricFactor(SharedCalcState& s);
// The 51-point grid over PropTempLow..PropTempHigh, mending a range above Tc or below -273.15.
void MakeTemperatureGrid(SharedCalcState& s);
// Vapour pressure at t (C) in mmHg by each method, and by the chosen one.
double VaporPressRiedelPlankMiller(const SharedCalcState& s, double tC);
double VaporPressPitzer(const SharedCalcState& s, double tC);
double VaporPressLeeKesler(const SharedCalcState& s, double tC);
double EstimateVaporPressure(const SharedCalcState& s, double tC);
// Antoine constants from the vapour pressures on the grid (Cramer's rule on the means).
void FitAntoineConstants(SharedCalcState& s);
// The fit itself, over GridTempC and GridVaporPress as they stand.
void FitAntoineToGridPressures(SharedCalcState& s);
// Latent heat on the grid and its fit A + B T + C T^2.
void EstimateLatentHeat(SharedCalcState& s);
// Liquid heat capacity on the grid by the chosen method and its fit. Lyman-Danner with R or K
// blank gives a message and leaves PropCpL as it stood.
void EstimateLiquidHeatCapacity(SharedCalcState& s, const PureComponentInput& in);
// Liquid density on the grid, its polynomial and its Rackett fit. Spencer-Danner with the
// reference density or temperature blank gives a message and leaves them as they stood.
void EstimateLiquidDensity(SharedCalcState& s, const PureComponentInput& in);

// Least squares of values against nCoef basis functions over nPoint points, by the normal
// equations and Gauss-Jordan elimination with partial pivoting. coef[1..nCoef]. A pivot below
// 1E-10 throws FatalCondition with the message after which the program ends.
using FitBasisArray = std::array<std::array<double, kMaxFitPoints + 1>, kMaxFitCoef + 1>;
using FitValueArray = std::array<double, kMaxFitPoints + 1>;
void FitLinearLeastSquares(int nCoef, int nPoint, const FitBasisArray& basis,
                           const FitValueArray& values, std::array<double, kMaxFitCoef + 1>& coef);

// The whole estimate from the screen's fields and the kept group counts. Messages go through
// s.Dialogs. Refused input (Fedors with nothing entered) throws InputRefused with
// s.PureComp as it was; a singular fit or an arithmetic fault throws FatalCondition.
void RunPureComponentEstimation(SharedCalcState& s, const PureComponentInput& in);

}  // namespace tervale
