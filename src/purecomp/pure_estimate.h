#pragma once
#include "state/limits.h"

namespace tervale {

// Part of SharedCalcState: the pure-component estimation's inputs, group counts and results.
struct PureComponentEstimate {};

}  // namespace tervale
