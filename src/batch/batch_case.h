#pragma once
#include "state/limits.h"

namespace tervale {

// Part of SharedCalcState: the batch column's case and its run tables.
struct BatchCase {};

}  // namespace tervale
