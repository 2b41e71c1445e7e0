#pragma once
#include "state/limits.h"

namespace tervale {

// Part of SharedCalcState: the Antoine estimation's tables and results.
struct AntoineEstimate {};

}  // namespace tervale
