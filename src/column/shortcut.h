#pragma once
#include <string>
#include <vector>

#include "state/limits.h"

namespace tervale {

struct SharedCalcState;

// What the short-cut screen holds besides the case: the temperature box (blank or a value in
// the user's unit) and the feed grid (total flow and fractions as shown).
struct ShortCutInput {
  bool TempGiven = true;
  double Temp = 0;
  double FeedFlow = 0;
  CompArray FeedFraction{};
};

struct GillilandPoint {
  double R = 0, N = 0, NF = 0;
};

struct ShortCutResult {
  double VF = 0;
  double Temperature = 0;  // the temperature used; on the bubble-point path the value written back
  double MinPlates = 0;
  double MinReflux = 0;
  double FeedLocation = 0;
  double Phi = 0;
  CompArray Alpha{};
  CompArray Top{}, Bottom{};          // shares of one mole of feed
  double TopFraction = 0;             // D/F
  CompArray TopComp{}, BottomComp{};  // mole fractions of the products
  double TopFlow = 0, BottomFlow = 0;
  std::vector<GillilandPoint> Gilliland;
  bool Converged = true;  // the type-0 iteration converged
};

// The screen's start-up: the feeds mixed into one (flow and fractions).
ShortCutInput MakeShortCutInput(const SharedCalcState& s);

// Validation in the screen's order; the message of the first failure, empty when all pass.
std::string ValidateShortCut(const SharedCalcState& s, const ShortCutInput& in);

// The Fenske step: MinPlates from the key recoveries, then each component's split.
void CalcFenskeSplit(const CompArray& z, const CompArray& alpha, int nc, CompArray& Top,
                     CompArray& Bottom, double& MinPlates, double rLight, double rHeavy,
                     double alphaLight);

// Validates (throws InputRefused with the message) and calculates. Shows the non-convergence
// message of the type-0 iteration and the Gilliland notice through the dialogs. On the
// bubble-point path the temperature is written back into ShortCutTemp.
ShortCutResult RunShortCut(SharedCalcState& s, const ShortCutInput& in);

}  // namespace tervale
