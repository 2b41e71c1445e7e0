#pragma once
#include <functional>
#include <string_view>

#include "state/limits.h"

namespace tervale {

struct SharedCalcState;

// What the run reports: every unconverged pass (stage, pass, error), and at a stage's
// convergence the text "  Convergenced" with converged = true.
struct TrayProgress {
  int stage = 0;  // 1 material balance, 2 heat balance
  int pass = 0;
  double error = 0;
  bool converged = false;
  std::string_view text;  // "  Convergenced" at convergence, empty otherwise
};
// Returns true when the user asked to stop the run.
using TrayProgressFn = std::function<bool(const TrayProgress&)>;

inline constexpr std::string_view kConvergencedText = "  Convergenced";

struct TrayRunResult {
  bool converged = false;  // the last stage ended by its convergence test
  bool stopped = false;    // the user stopped the run (no results, Result.dat untouched)
  int passes = 0;          // passes made over all stages
  bool resultWritten = false;
};

// The Initial choice: mean feed composition on every tray, then the start profiles.
void InitTrayComposition(SharedCalcState& s);
// The Continue choice: the held compositions, bottom rows copied to a changed tray count.
// False (with "No of Component is not Equal") when the component count differs.
bool ContinueTrayComposition(SharedCalcState& s);
// Temperature, pressure and flow start profiles.
void InitTrayProfiles(SharedCalcState& s);
void CalcFeedEnthalpies(SharedCalcState& s);
// Sum of the absolute tray balance errors over components and trays, per feed and tray.
double CalcBalanceError(const SharedCalcState& s);

// The run. The product lists must have been built (BuildProductLists). At the end the case
// and the results are written to DataPath/Result.dat unless writeResult is false.
// A stopped run leaves CalcFinished 0 and does not touch Result.dat.
TrayRunResult RunTrayCalculation(SharedCalcState& s, const TrayProgressFn& progress,
                                 bool writeResult = true);

}  // namespace tervale
