#pragma once
#include "state/limits.h"

namespace tervale {

struct SharedCalcState;

// Isothermal flash: T C, P MPa, z the feed; VF receives V/F (untouched for an empty feed);
// fills KValue (and Gamma, frozen at the feed).
void CalcIsothermalFlashVF(SharedCalcState& s, double T, double P, double& VF,
                           const Composition& z);
// Splits the feed with the KValue of the preceding flash; vapour first.
void SplitFlashComposition(SharedCalcState& s, double T, double P, double VF, const Composition& z,
                           Composition& y, Composition& x);

}  // namespace tervale
