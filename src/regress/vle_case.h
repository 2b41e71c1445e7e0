#pragma once
#include "state/limits.h"

namespace tervale {

// Part of SharedCalcState: measured binary data and the estimation's results.
struct VLEDataCase {};

}  // namespace tervale
