#pragma once
// Component sets shared by the thermodynamics tests.
#include "state/shared_state.h"

namespace tervale::testmix {

inline void SetAntoine(SharedCalcState& s, int i, const char* name, double a, double b, double c) {
  s.Comp.CompName[i] = name;
  s.Comp.AntoineA[i] = a;
  s.Comp.AntoineB[i] = b;
  s.Comp.AntoineC[i] = c;
}

// Methanol and water, nothing else set.
inline void MethanolWater(SharedCalcState& s) {
  s.NC = 2;
  SetAntoine(s, 1, "Methanol", 7.8786, 1473.11, 230.0);
  SetAntoine(s, 2, "Water", 8.07131, 1730.63, 233.43);
}

// The equation-of-state mixtures take the diagonal of Kij as a plain number (1.0 by default).
inline void SetKijDiagonal(SharedCalcState& s, double kii) {
  for (int i = 1; i <= s.NC; ++i) s.Bin.KijMatrix[i][i] = kii;
}

inline double SumXK(const SharedCalcState& s, const Composition& x) {
  double sum = 0;
  for (int i = 1; i <= s.NC; ++i) sum += x[i] * s.KValue[i];
  return sum;
}

// Methanol, ethanol, water, 1-propanol with the Wilson constants of the first flash example.
inline Composition AlcoholsWilson(SharedCalcState& s) {
  ResetComponentsAndMatrices(s);
  s.NC = 4;
  SetAntoine(s, 1, "Methanol", 7.8786, 1473.11, 230.0);
  SetAntoine(s, 2, "Ethanol", 8.0449, 1554.3, 222.65);
  SetAntoine(s, 3, "Water", 8.07131, 1730.63, 233.43);
  SetAntoine(s, 4, "1-Propanol", 7.9973, 1569.7, 209.5);
  s.Comp.CompMW = {0, 32.04, 46.07, 18.015, 60.9};
  for (int i = 1; i <= 4; ++i)
    for (int j = 1; j <= 4; ++j) s.Bin.WilsonLambda[i][j] = 1.0;
  s.Bin.WilsonLambda[1][3] = 0.382;
  s.Bin.WilsonLambda[2][3] = 0.999;
  s.Bin.WilsonLambda[3][2] = 0.826;
  s.Bin.WilsonLambda[3][4] = 0.001;
  s.Bin.WilsonLambda[4][3] = 0.67;
  s.KValueMethod = 2;
  return Composition{0, 0.12, 0.01, 0.85, 0.02};
}

// Ethane, propane, n-butane with the critical constants of the second flash example.
inline Composition LightHydrocarbons(SharedCalcState& s, int kValueMethod) {
  ResetComponentsAndMatrices(s);
  s.NC = 3;
  SetAntoine(s, 1, "Ethane", 6.80266, 656.401, 255.99);
  SetAntoine(s, 2, "Propane", 6.82971, 813.199, 247.99);
  SetAntoine(s, 3, "n-Butane", 6.80896, 935.861, 238.73);
  s.Comp.CompMW = {0, 30.07, 44.094, 58.124};
  s.Comp.CompTc = {0, 305.4, 369.8, 425.2};
  s.Comp.CompPc = {0, 48.8, 42.5, 38};
  s.Comp.CompVc = {0, 148.3, 203, 255};
  s.Comp.CompOmega = {0, 0.099, 0.153, 0.199};
  s.KValueMethod = kValueMethod;
  return Composition{0, 0.2, 0.5, 0.3};
}

}  // namespace tervale::testmix
