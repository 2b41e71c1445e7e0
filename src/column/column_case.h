#pragma once
#include "state/limits.h"

namespace tervale {

// Part of SharedCalcState: the continuous column's case and its tray profiles.
struct ColumnCase {};

}  // namespace tervale
