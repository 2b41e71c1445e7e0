#pragma once
// Tables that the command line prints as text of its own, built with numbers at full
// precision for --csv.
#include "cli/cli_context.h"
#include "flash/flash_program.h"

namespace tervale::cli {

// Component, Vapour y, Liquid x, K, Gamma (blank for the equations of state)
io::ReportTable FlashResultTable(const SharedCalcState& s, const FlashResult& r);
// i, t, vf, h (h blank without enthalpies)
io::ReportTable CondensingCurveTable(const CondensingCurve& c);
// A further table after the first in the same CSV output: an empty line, then its header and
// rows, without a second byte-order mark.
void PrintCsvSection(const io::ReportTable& table);

}  // namespace tervale::cli
