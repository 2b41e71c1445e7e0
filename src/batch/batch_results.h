#pragma once
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "batch/batch_case.h"
#include "io/report_table.h"

namespace tervale {

struct SharedCalcState;

// Reads the run files of the data folder as tables, one sequential pass per display; a file
// cut by a crash ends its table at the last complete record. The case in the state gives the
// counts, names, molecular weights and units. A missing file is a FileReadError with a clear
// message.

enum class BatchSource { TotalReflux, Product };  // "_1.dat" or "_4.dat"
enum class BatchFraction { VapMol, LiqMol, VapWt, LiqWt };

// One line of a run file split into fields; complete is false for a last line without its end.
class BatchLineReader {
 public:
  explicit BatchLineReader(const std::filesystem::path& path);  // throws when missing
  // Reads the next line's numeric fields into values (quoted fields read as NaN, an empty
  // quoted field is dropped). False at the end of the file or on an unfinished last line.
  bool Next(std::vector<double>& values);
  // The next line as text (for the log); false at the end.
  bool NextText(std::string& line);

 private:
  std::ifstream in_;
};

// One history record: time, the x, y pairs and the ten values per tray.
struct BatchHistoryRecord {
  double time = 0;
  TrayCompMatrix x{}, y{};
  std::array<std::array<double, 10>, kMaxTrays + 1> values{};  // T V L H h Q M dM dh HeatTotal
};

// Streams "_1.dat" or "_4.dat" record by record.
class BatchHistoryReader {
 public:
  BatchHistoryReader(const SharedCalcState& s, BatchSource source);
  // False at the end, or at a record that the file does not hold completely.
  bool Next(BatchHistoryRecord& record);

 private:
  BatchLineReader lines_;
  int nc_, nt_;
  std::vector<double> buf_;
};

io::ReportTable BatchTotalRefluxTable(SharedCalcState& s, BatchFraction fraction);
io::ReportTable BatchTankTable(SharedCalcState& s);
io::ReportTable BatchLoadTable(SharedCalcState& s, BatchSource source, bool liquid);
// The tray table of one record (1-based) of a history file: tray, temperature, flows and the
// vapour or liquid composition.
io::ReportTable BatchTrayDataTable(SharedCalcState& s, BatchSource source, int record, bool vapour);
// Time, temperature and liquid composition of one tray over all records (tray 1 and the still
// give the top/bottom table; any tray the series of the tray graph).
io::ReportTable BatchTraySeries(SharedCalcState& s, BatchSource source, int tray);
io::ReportTable BatchTopBtmTable(SharedCalcState& s, BatchSource source, bool top);
io::ReportTable BatchLogTable(SharedCalcState& s);

// ---- views of a run in progress (read from the run tables between steps) ----
// The open tank: per component Name, Mole (Kgmol), Mol Fr, Weight (Kg), Wt Fr; the change
// condition of the row in words in messages.
io::ReportTable BatchOpenTankTable(SharedCalcState& s);
// The convergence grid: per tray 1..NTray-1 the signed x[i][j] - y[i+1][j]; a cell is painted
// when its absolute value is above CurConvLimit (BatchConvergenceCellOver).
io::ReportTable BatchConvergenceTable(SharedCalcState& s);
bool BatchConvergenceCellOver(const SharedCalcState& s, int tray, int component);
// The present tray compositions: Tray, Temp, then x per component.
io::ReportTable BatchTrayProfileTable(SharedCalcState& s);

// The pressure profile of the case, base unit (entered pressures, interpolation between them).
void BatchPressureProfile(const SharedCalcState& s, TrayArray& pressure);

// Prepares a state for the reports of the data folder when no case is in memory: the case of
// "_2.dat" when present, else the counts taken from the shape of the run files (names
// "Comp n", molecular weights unknown). Returns false when no run file tells the counts.
bool LoadBatchReportCase(SharedCalcState& s);

}  // namespace tervale
