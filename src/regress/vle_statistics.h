#pragma once
#include <optional>
#include <string>
#include <vector>

namespace tervale {

struct SharedCalcState;

// One measured point against the fitted model: y and the bubble temperature (isobaric) or
// pressure (isothermal), both in the case's units.
struct VLEResidualRow {
  double x = 0;
  double yMeasured = 0, yCalculated = 0, dy = 0;  // dy = measured - computed
  double tpMeasured = 0, tpCalculated = 0, dtp = 0;
};

// How well the regression determined the two parameters. N is the number of residuals of the
// objective; sigma^2 = S / (N - 2); covariance sigma^2 (J^T J)^-1 from a fresh forward-difference
// Jacobian (step 0.001) at the final parameters.
struct VLEStatistics {
  int residualCount = 0;
  double sumOfSquares = 0;
  std::optional<double> stdError12, stdError21;  // none when N <= 2 or J^T J is singular
  std::optional<double> correlation;
  std::vector<VLEResidualRow> residuals;
  double rmsdY = 0, aadY = 0, rmsdTP = 0, aadTP = 0;
  std::vector<std::string> messages;  // in the language of the state
};

// Statistics of the parameters now in s.VLE (after MarquardtRegression). The case is left
// exactly as it was (parameters, work arrays and start temperatures), so that nothing drawn
// afterwards changes.
VLEStatistics CalcVLEStatistics(SharedCalcState& s);

}  // namespace tervale
