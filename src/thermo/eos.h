#pragma once
#include "state/limits.h"

namespace tervale {

struct SharedCalcState;

// Selector of the cubic equation: 0 S-R-K, 1 P-R (KValueMethod - 4).
double CalcBubbleTemperatureEOS(SharedCalcState& s, int eos, double T, double P,
                                const Composition& x);
void CalcEOSInitialK(SharedCalcState& s, double T, double P);
void CalcEOSMixture(const SharedCalcState& s, int eos, double T, const Composition& z, double& a,
                    double& b, double& dadT, double& d2adT2);
// phase 0 takes the largest root, any other value the smallest; rho := Pk / (Z R Tk).
void CalcEOSCompressibility(const SharedCalcState& s, int eos, int phase, double T, double P,
                            const Composition& z, double& rho, double a, double b);
void CalcEOSFugacity(const SharedCalcState& s, int eos, double T, double P, const Composition& z,
                     CompArray& phi, double rho, double a, double b);

// The fourteen values of the bracketing root stepper. state: 1 first call, 2 one side known,
// 3 bracket known, 4 converged, 5 iteration limit, 6 stalled.
struct SecantBracketState {
  int state = 1;
  int count = 0;
  double X = 0, F = 0;
  double Xmin = 0, Xmax = 0;
  double step = 0, tol = 0;
  double Xp = 0, Fp = 0;
  double Xn = 0, Fn = 0;
  double Xold = 0, Fold = 0;
};
// One step: reads X and F (the function at X), moves X and the state.
void SecantBracketStep(SecantBracketState& st);

}  // namespace tervale
