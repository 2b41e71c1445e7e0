#pragma once
#include <filesystem>
#include <string>
#include <string_view>

#include "state/bitext.h"

namespace tervale {

struct SharedCalcState;

// DataPath + "B_Calc" + suffix ("_Log.dat", "_1.dat" ... "_5.dat").
std::filesystem::path BatchRunFilePath(const SharedCalcState& s, std::string_view suffix);

// ---- the run log ----
// The date and the time as the log writes them: "YYYY/MM/DD HH:MM:SS".
std::string LogClockText();
// A number as a printed number shows it: the sign's place (blank or "-"), the figure, a blank.
std::string PrintedNumber(double value);
// "###0.0000": the run time behind " Cal_time=".
std::string CalTimeText(double t);
// Creates the log anew with its first line: date, time, " Start Calculation".
void StartBatchLog(SharedCalcState& s);
// Appends one line: date, time, " Cal_time=", the time, then text.
void AppendBatchLog(SharedCalcState& s, double time, std::string_view text);

// ---- the run files ----
// One history record (time line and the tray record with ten values) to "_1.dat" (total
// reflux) or "_4.dat" (product); truncate starts the file anew.
void WriteBatchHistoryRecord(SharedCalcState& s, bool truncate);
// The converged state behind the case in "_2.dat": the case, CalcTime, the tray record with ten
// values, the carry terms tray by tray.
void WriteBatchConvergedState(SharedCalcState& s);
// "_3.dat", the end of a run. fromEndCalculation selects the layout of EndBatchCalculation (an
// empty field behind the heat line, the next save time in the fourth field) against the one
// written at the end of RunBatchCalculation (no empty field, SaveInterval).
void WriteBatchEndFile(SharedCalcState& s, bool fromEndCalculation);
// One tank record to "_5.dat": truncated when TankCounter is 0.
void WriteBatchTankRecord(SharedCalcState& s);

}  // namespace tervale
