#pragma once
#include <array>
#include <string_view>

#include "regress/vle_case.h"

namespace tervale {

struct SharedCalcState;

// Activity coefficients at liquid fraction x of component 1, by the model of CalcType
// (odd Wilson, even NRTL) with the parameters in the case.
void CalcActivityCoeff(SharedCalcState& s, double x, double& gamma1, double& gamma2);

// Bubble temperature (C) at VLEPressure for given activity coefficients, Newton from tStart.
// Leaves the vapour fractions in VaporY1, VaporY2.
double CalcBubbleTempFromGamma(SharedCalcState& s, double tStart, double x, double gamma1,
                               double gamma2);

// Bubble pressure (mmHg) at t (C) for given activity coefficients; sets VaporY1, VaporY2.
double CalcBubblePressFromGamma(SharedCalcState& s, double t, double x, double gamma1,
                                double gamma2);

// Number of residuals of the chosen objective: one or two per measured point.
int VLEResidualCount(const VLEDataCase& c);

// Fills ResidualVector for the parameters in the case and returns the sum of squares.
double CalcObjectiveSum(SharedCalcState& s);

// The parameter pair the regression works on: (Λ12, Λ21) or (τ12, τ21) by CalcType.
std::array<double, 3> RegressedParameters(const VLEDataCase& c);
void StoreRegressedParameters(SharedCalcState& s, const std::array<double, 3>& p);

enum class RegressionEnd {
  Converged,        // the step fell below the tolerance
  EvaluationLimit,  // more than 800 evaluations per residual
  RejectionLimit,   // more than 200 rejected steps in one pass
  DampingTooBig,    // "Marquardt Too Big V"
  ArithmeticFault,  // a non-finite sum of squares; the last accepted parameters are kept
  NothingToFit,     // no residuals
};

struct RegressionResult {
  RegressionEnd end = RegressionEnd::NothingToFit;
  int evaluations = 0;  // E, the first evaluation included
  int passes = 0;
  double sumOfSquares = 0;  // S of the last accepted step
};

// Marquardt fit of the two parameters from those in the case; the result stays in the case.
RegressionResult MarquardtRegression(SharedCalcState& s);

// Caption of an objective as on its choice button, and the part the result screen shows.
std::string_view ObjectiveCaption(int objectiveFunc);
std::string_view ObjectiveShortCaption(int objectiveFunc);

}  // namespace tervale
