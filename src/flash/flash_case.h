#pragma once
#include "state/limits.h"

namespace tervale {

// Part of SharedCalcState: the flash program's own case (temperature, pressure, feed, results, FlashCp1..6).
struct FlashCase {};

}  // namespace tervale
