#pragma once
// The JSON case readers of the estimation commands on their own: each reads and checks a whole
// case file and refuses it (InputRefused naming the file) before anything is calculated. The
// fuzz targets run them without the calculation behind them.
#include <string>

#include "purecomp/pure_estimate.h"
#include "state/shared_state.h"
#include "unifac/unifac_model.h"

namespace tervale::cli {

// Fills s.Antoine; the state is untouched when the file is refused.
void ReadAntoineCaseFile(const std::string& file, SharedCalcState& s);

// Fills the state's method choices, Cp0 and group counts, and `in`; untouched when refused.
void ReadPureComponentCaseFile(const std::string& file, SharedCalcState& s, PureComponentInput& in);

// The screen's fields of a UNIFAC case.
UnifacScreenInput ReadUnifacCaseFile(const std::string& file);

}  // namespace tervale::cli
