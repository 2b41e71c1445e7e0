#pragma once
#include "state/limits.h"

namespace tervale {

// Part of SharedCalcState: the UNIFAC groups, interaction parameters and the binary case.
struct UnifacParameterTable {};

}  // namespace tervale
