#pragma once
#include <array>
#include <string>
#include <vector>

#include "state/shared_state.h"

namespace tervale {

// Determinant of a 3 by 3 matrix, by cofactors along the first row.
double Det3(const std::array<std::array<double, 3>, 3>& m);

struct AntoineFit {
  bool ok = false;
  double A = 0, B = 0, C = 0;
};

// Fits log10 P = A - B/(t + C) to n points (t in C, P in mmHg) through the linear form
// y = c0 + c1 t + c2 (y t), normal equations in means, Cramer's rule. Refused (ok false) when
// fewer than three distinct temperatures are given or a pressure is not above zero.
AntoineFit FitAntoine(const double* temp, const double* press, int n);

// The Lee-Kesler vapour pressure (mmHg) at t (C) from Tc (K), Pc (atm) and omega.
double LeeKeslerPressure(double tempC, double tc, double pc, double omega);

// The Estimate button: checks, Lee-Kesler points for rows with critical constants only, the fit
// of every row with points, the component table filled. False (after its message) when refused.
bool EstimateAntoine(SharedCalcState& s);

// Loads the example of the screen (four substances, range -20 to 80 C).
void LoadAntoineExample(SharedCalcState& s);

// ---- the graph as data ----
struct VaporPressureCurve {
  std::string Name;
  std::vector<std::array<double, 2>> Curve;     // (t C, P mmHg), 201 samples
  std::vector<std::array<double, 2>> Measured;  // markers
};

struct VaporPressureGraphData {
  bool Drawn = false;
  double AxisTempLow = 0, AxisTempHigh = 0, TempTick = 0;  // C, five divisions
  double PressLow = 0, PressHigh = 0;                      // mmHg, extremes of the curves
  int DecadeLow = 0;                                       // log10 of the lowest decade line
  int Decades = 0;                                         // number of decades on the axis
  std::vector<VaporPressureCurve> Curves;
};

// The graph of the rows' Antoine curves over [TempLow, TempHigh] with the measured points.
VaporPressureGraphData DrawVaporPressureGraph(SharedCalcState& s);

}  // namespace tervale
