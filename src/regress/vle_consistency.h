#pragma once
#include <optional>
#include <string>
#include <vector>

namespace tervale {

struct SharedCalcState;

// Area test of measured binary data: ln(g1'/g2') against x1 fitted by a cubic and integrated
// over 0..1. D = 100 |integral| / integral of the absolute value. Isobaric data also give
// J = 150 |Tmax - Tmin| / Tmin (kelvin); they pass when D - J < 10, isothermal data when D < 10.
struct AreaTestResult {
  double D = 0;
  std::optional<double> J;                // isobaric data only
  double coefficients[4] = {0, 0, 0, 0};  // c0 + c1 x + c2 x^2 + c3 x^3
  bool passed = false;
};

// Point test: G^E/RT = x1 x2 sum a_k L_k(2 x1 - 1), k = 0..order-1, fitted to the measured
// pressures (isothermal) or temperatures (isobaric) by least squares with modified Raoult's law;
// the computed y compared with the measured one. Passes when the mean |dy| < 0.01.
struct PointTestResult {
  int order = 0;  // number of Legendre terms, 1..5
  double coefficients[5] = {0, 0, 0, 0, 0};
  double meanAbsDy = 0;
  std::vector<double> residualsY;  // measured - computed, one per point
  std::vector<double> computedY;
  std::vector<double> computedTP;  // C (isobaric) or mmHg (isothermal)
  bool passed = false;
};

struct ConsistencyResult {
  std::optional<AreaTestResult> area;
  std::optional<PointTestResult> point;
  std::vector<std::string> messages;  // in the language of the state
};

// Both tests on the measured points of s.VLE, with the measured activity coefficients
// (GammaExp) the estimation driver has computed. The case is left as it was. Fewer than five
// points: no verdicts, a message.
ConsistencyResult TestVLEConsistency(const SharedCalcState& s);

// The cubic's integral over [0, 1] and the integral of its absolute value (split at its roots).
double CubicIntegral01(const double c[4]);
double CubicAbsIntegral01(const double c[4]);

}  // namespace tervale
