#include "batch/batch_results.h"

#include <cmath>
#include <limits>

#include "batch/batch_data.h"
#include "batch/batch_run_files.h"
#include "io/field_reader.h"
#include "io/record_writer.h"
#include "state/errors.h"
#include "state/shared_state.h"
#include "state/units.h"

namespace tervale {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

const char* FileRole(const std::string& name) {
  if (name.ends_with("_1.dat")) return "the total-reflux history";
  if (name.ends_with("_2.dat")) return "the converged total-reflux state";
  if (name.ends_with("_3.dat")) return "the end-of-run file";
  if (name.ends_with("_4.dat")) return "the product history";
  if (name.ends_with("_5.dat")) return "the tank file (written when a tank closes)";
  if (name.ends_with("_Log.dat")) return "the run log";
  return "a run file";
}

std::string CompName(const SharedCalcState& s, int j) {
  const auto& n = s.Comp.CompName[j];
  return n.empty() ? "Comp " + std::to_string(j) : n;
}

std::filesystem::path HistoryPath(const SharedCalcState& s, BatchSource source) {
  return BatchRunFilePath(s, source == BatchSource::TotalReflux ? "_1.dat" : "_4.dat");
}

// A row of numbers (built one cell at a time).
std::vector<io::Cell> NumRow(std::initializer_list<double> values) {
  std::vector<io::Cell> row;
  row.reserve(values.size() + kMaxComponents * 2 + kMaxTrays);
  for (double v : values) row.emplace_back(v);
  return row;
}

const char* SourceWord(BatchSource source) {
  return source == BatchSource::TotalReflux ? "total-reflux" : "product";
}

}  // namespace

BatchLineReader::BatchLineReader(const std::filesystem::path& path) {
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) {
    std::string name = path.filename().string();
    throw FileReadError(path.string(), 0, 0,
                        "Run file " + name + " (" + FileRole(name) + ") does not exist in " +
                            path.parent_path().string() + ": run the batch calculation first");
  }
  in_.open(path, std::ios::binary);
  if (!in_) throw FileReadError(path.string(), 0, 0, "Cannot open run file " + path.string());
}

bool BatchLineReader::NextText(std::string& line) {
  if (!std::getline(in_, line)) return false;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

bool BatchLineReader::Next(std::vector<double>& values) {
  values.clear();
  std::string line;
  if (!std::getline(in_, line)) return false;
  if (in_.eof()) return false;  // no line end: the write was cut
  if (!line.empty() && line.back() == '\r') line.pop_back();
  size_t pos = 0;
  while (pos <= line.size()) {
    size_t end;
    std::string_view field;
    if (pos < line.size() && line[pos] == '"') {
      end = line.find('"', pos + 1);
      if (end == std::string::npos) return false;
      const bool empty = end == pos + 1;
      end = line.find(',', end);
      if (!empty) values.push_back(kNaN);
      if (end == std::string::npos) break;
      pos = end + 1;
      continue;
    }
    end = line.find(',', pos);
    if (end == std::string::npos) end = line.size();
    field = std::string_view(line).substr(pos, end - pos);
    double v = 0;
    if (field == "NaN") {
      v = kNaN;
    } else if (field == "Infinity") {
      v = std::numeric_limits<double>::infinity();
    } else if (field == "-Infinity") {
      v = -std::numeric_limits<double>::infinity();
    } else if (!io::ParseNumber(field, v)) {
      v = kNaN;
    }
    values.push_back(v);
    if (end >= line.size()) break;
    pos = end + 1;
  }
  return true;
}

BatchHistoryReader::BatchHistoryReader(const SharedCalcState& s, BatchSource source)
    : lines_(HistoryPath(s, source)), nc_(s.NC), nt_(s.NTray) {}

bool BatchHistoryReader::Next(BatchHistoryRecord& rec) {
  if (!lines_.Next(buf_) || buf_.size() != 1) return false;
  rec.time = buf_[0];
  for (int i = 1; i <= nt_; ++i) {
    if (!lines_.Next(buf_) || static_cast<int>(buf_.size()) != 2 * nc_) return false;
    for (int j = 1; j <= nc_; ++j) {
      rec.x[i][j] = buf_[2 * (j - 1)];
      rec.y[i][j] = buf_[2 * (j - 1) + 1];
    }
    if (!lines_.Next(buf_) || buf_.size() != 10) return false;
    for (int k = 0; k < 10; ++k) rec.values[i][k] = buf_[k];
  }
  return true;
}

void BatchPressureProfile(const SharedCalcState& s, TrayArray& P) {
  const auto& b = s.Batch;
  const int n = s.NTray;
  if (n < 1) return;
  auto entered = [&](int i) {
    double v = b.TrayPressInput[i];
    if (v == 0 && i == 1) v = b.TopPress;
    if (v == 0 && i == n) v = b.BottomPress;
    return v;
  };
  P[1] = ConvPressToBase(s, b.TopPress);
  P[n] = ConvPressToBase(s, b.BottomPress);
  int a = 1;
  while (a < n) {
    int c = a + 1;
    while (c < n && b.TrayPressInput[c] == 0) ++c;
    P[c] = ConvPressToBase(s, entered(c));
    const double pa = entered(a), pb = entered(c);
    // The divisor is one more than the number of intervals: the last tray is not quite reached.
    for (int k = 1; k <= c - a - 1; ++k) {
      P[a + k] = ConvPressToBase(s, pa + k * (pb - pa) / (c - a + 1));
    }
    a = c;
  }
}

io::ReportTable BatchTotalRefluxTable(SharedCalcState& s, BatchFraction fraction) {
  auto path = BatchRunFilePath(s, "_2.dat");
  BatchLineReader probe(path);  // a clear message when missing
  auto scratch = MakeSharedCalcState();
  scratch->DataPath = s.DataPath;
  scratch->LanguageFlag = s.LanguageFlag;
  scratch->Dialogs = s.Dialogs;
  if (!ReadBatchCase(*scratch, path, true)) {
    throw FileReadError(path.string(), 1, 1, "B_Calc_2.dat is not a batch state file");
  }
  SharedCalcState& t = *scratch;
  io::ReportTable table;
  table.view = "total-reflux";
  static const char* kTitles[] = {"Vapor Mol Fraction", "Liquid Mol Fraction",
                                  "Vapor Weight Fraction", "Liquid weight Fraction"};
  table.messages.push_back(std::string(kTitles[static_cast<int>(fraction)]) +
                           "; Convergence Time (Hr)=" + io::FormatShortest(t.Batch.ContinueTime));
  table.columns = {"Tray", "Temp", "Press"};
  for (int j = 1; j <= t.NC; ++j) table.columns.push_back(CompName(t, j));
  TrayArray P{};
  BatchPressureProfile(t, P);
  const bool vap = fraction == BatchFraction::VapMol || fraction == BatchFraction::VapWt;
  const bool wt = fraction == BatchFraction::VapWt || fraction == BatchFraction::LiqWt;
  for (int i = 1; i <= t.NTray; ++i) {
    const auto& z = vap ? t.Batch.VapComp[i] : t.Batch.LiqComp[i];
    std::vector<io::Cell> row =
        NumRow({static_cast<double>(i), ConvTempFromBase(t, t.Batch.TrayTemp[i]),
                ConvPressFromBase(t, P[i])});
    double sum = 0;
    for (int j = 1; j <= t.NC; ++j) sum += wt ? t.Comp.CompMW[j] * z[j] : z[j];
    for (int j = 1; j <= t.NC; ++j) row.emplace_back(wt ? t.Comp.CompMW[j] * z[j] / sum : z[j]);
    table.rows.push_back(std::move(row));
  }
  return table;
}

io::ReportTable BatchTankTable(SharedCalcState& s) {
  BatchLineReader lines(BatchRunFilePath(s, "_5.dat"));
  io::ReportTable table;
  table.view = "tank";
  const int nc = s.NC, nt = s.NTray;
  table.columns = {"Tank", "Change T(Hr)"};
  for (int j = 1; j <= nc; ++j) table.columns.push_back("Mol Fr " + CompName(s, j));
  for (int j = 1; j <= nc; ++j) table.columns.push_back("Wt Fr " + CompName(s, j));
  table.columns.push_back("Total Kgmol");
  table.columns.push_back("Total Kg");
  for (int i = 1; i <= nt; ++i) table.columns.push_back("Heat Tray " + std::to_string(i));
  bool mwKnown = true;
  for (int j = 1; j <= nc; ++j) mwKnown = mwKnown && s.Comp.CompMW[j] > 0;
  if (!mwKnown) table.messages.push_back("Molecular weights unknown: weight figures left empty");
  std::vector<double> head, content, heat;
  while (lines.Next(head) && head.size() == 2 && lines.Next(content) &&
         static_cast<int>(content.size()) == nc && lines.Next(heat) &&
         static_cast<int>(heat.size()) == nt) {
    std::vector<io::Cell> row = NumRow({head[0] + 1, head[1]});
    double mol = 0, kg = 0;
    for (int j = 1; j <= nc; ++j) {
      mol += content[j - 1];
      kg += content[j - 1] * s.Comp.CompMW[j];
    }
    for (int j = 1; j <= nc; ++j) row.emplace_back(content[j - 1] / mol);
    for (int j = 1; j <= nc; ++j) {
      if (mwKnown) {
        row.emplace_back(content[j - 1] * s.Comp.CompMW[j] / kg);
      } else {
        row.emplace_back(std::monostate{});
      }
    }
    row.emplace_back(mol);
    if (mwKnown) {
      row.emplace_back(kg);
    } else {
      row.emplace_back(std::monostate{});
    }
    for (int i = 1; i <= nt; ++i) row.emplace_back(ConvHeatToDisplay(s, heat[i - 1]));
    table.rows.push_back(std::move(row));
  }
  return table;
}

io::ReportTable BatchLoadTable(SharedCalcState& s, BatchSource source, bool liquid) {
  // Only the first three values of each tray line are needed; the reader takes the line whole.
  BatchHistoryReader reader(s, source);
  io::ReportTable table;
  table.view = "vl-load";
  table.messages.push_back(std::string(liquid ? "Liquid" : "Vapor") + " flow (Kgmol/H), " +
                           SourceWord(source));
  table.columns = {"Time"};
  for (int i = 1; i <= s.NTray; ++i) table.columns.push_back("Tray " + std::to_string(i));
  auto rec = std::make_unique<BatchHistoryRecord>();
  while (reader.Next(*rec)) {
    std::vector<io::Cell> row = NumRow({rec->time});
    for (int i = 1; i <= s.NTray; ++i) row.emplace_back(rec->values[i][liquid ? 2 : 1]);
    table.rows.push_back(std::move(row));
  }
  return table;
}

io::ReportTable BatchTrayDataTable(SharedCalcState& s, BatchSource source, int record,
                                   bool vapour) {
  BatchHistoryReader reader(s, source);
  io::ReportTable table;
  table.view = "tray-data";
  table.columns = {"Time", "Tray", "Temp", "Vapor", "Liquid"};
  for (int j = 1; j <= s.NC; ++j) table.columns.push_back(CompName(s, j));
  auto rec = std::make_unique<BatchHistoryRecord>();
  int k = 0;
  while (k < record && reader.Next(*rec)) ++k;
  if (record < 1 || k < record) {
    table.messages.push_back("Record " + std::to_string(record) + " is not in the " +
                             SourceWord(source) + " history (it holds " + std::to_string(k) +
                             " records)");
    return table;
  }
  table.messages.push_back(std::string(vapour ? "Vapor" : "Liquid") + " composition, record " +
                           std::to_string(record));
  for (int i = 1; i <= s.NTray; ++i) {
    std::vector<io::Cell> row = NumRow({rec->time, static_cast<double>(i), rec->values[i][0],
                                        rec->values[i][1], rec->values[i][2]});
    for (int j = 1; j <= s.NC; ++j) row.emplace_back(vapour ? rec->y[i][j] : rec->x[i][j]);
    table.rows.push_back(std::move(row));
  }
  return table;
}

io::ReportTable BatchTraySeries(SharedCalcState& s, BatchSource source, int tray) {
  io::ReportTable table;
  table.view = "tray-series";
  if (tray < 1 || tray > s.NTray) {
    table.messages.push_back(std::string(Pick(s, BiText{"invalid Stage", "段数が違います"})));
    return table;
  }
  BatchHistoryReader reader(s, source);
  table.columns = {"Time", "Temp"};
  for (int j = 1; j <= s.NC; ++j) table.columns.push_back(CompName(s, j));
  auto rec = std::make_unique<BatchHistoryRecord>();
  while (reader.Next(*rec)) {
    std::vector<io::Cell> row = NumRow({rec->time, rec->values[tray][0]});
    for (int j = 1; j <= s.NC; ++j) row.emplace_back(rec->x[tray][j]);
    table.rows.push_back(std::move(row));
  }
  return table;
}

io::ReportTable BatchTopBtmTable(SharedCalcState& s, BatchSource source, bool top) {
  io::ReportTable table = BatchTraySeries(s, source, top ? 1 : s.NTray);
  table.view = "top-btm";
  static const char* kTitles[2][2] = {
      {"Total Reflux Bottom Liquid Composition", "Product Bottom Liquid Composition"},
      {"Total Reflux Top Liquid Composition", "Product Top Liquid Composition"}};
  table.messages.insert(table.messages.begin(),
                        kTitles[top ? 1 : 0][source == BatchSource::Product ? 1 : 0]);
  return table;
}

io::ReportTable BatchLogTable(SharedCalcState& s) {
  BatchLineReader lines(BatchRunFilePath(s, "_Log.dat"));
  io::ReportTable table;
  table.view = "log";
  table.columns = {"Log"};
  std::string line;
  while (lines.NextText(line)) {
    std::vector<io::Cell> row;
    row.emplace_back(line);
    table.rows.push_back(std::move(row));
  }
  return table;
}

io::ReportTable BatchOpenTankTable(SharedCalcState& s) {
  const auto& b = s.Batch;
  io::ReportTable table;
  table.view = "open-tank";
  table.columns = {"Name", "Mole", "Mol Fr", "Weight", "Wt Fr"};
  double mol = 0, kg = 0;
  for (int j = 1; j <= s.NC; ++j) {
    mol += b.TankContent[j];
    kg += b.TankContent[j] * s.Comp.CompMW[j];
  }
  for (int j = 1; j <= s.NC; ++j) {
    const double w = b.TankContent[j] * s.Comp.CompMW[j];
    table.rows.push_back({CompName(s, j), b.TankContent[j],
                          mol != 0 ? io::Cell(b.TankContent[j] / mol) : io::Cell(), w,
                          kg != 0 ? io::Cell(w / kg) : io::Cell()});
  }
  const int r = b.TankRow;
  if (r >= 1 && r <= kMaxTankRows && r <= b.TankChangeCount) {
    const int key = b.TankChangeKey[r];
    const double limit = b.TankChangeLimit[r];
    const char* sense = limit > 0 ? " > " : " < ";
    std::string text = "Change Condition: ";
    if (key == -1 || key == -2) {
      text += std::string("Tank Total Quantity") + sense + io::FormatShortest(std::fabs(limit)) +
              (key == -1 ? " Kgmol" : " Kg");
    } else {
      const int n = key > 100 ? key - 100 : key;
      text += "(" + std::string(key > 100 ? "Wt Fr" : "Mol Fr") + ") " +
              (n >= 1 && n <= s.NC ? CompName(s, n) : "Comp " + std::to_string(n)) + sense +
              io::FormatShortest(std::fabs(limit));
    }
    table.messages.push_back(text);
  } else {
    table.messages.push_back("Change Condition: the last tank");
  }
  return table;
}

bool BatchConvergenceCellOver(const SharedCalcState& s, int tray, int component) {
  const auto& b = s.Batch;
  return std::fabs(b.LiqComp[tray][component] - b.VapComp[tray + 1][component]) > b.CurConvLimit;
}

io::ReportTable BatchConvergenceTable(SharedCalcState& s) {
  const auto& b = s.Batch;
  io::ReportTable table;
  table.view = "convergence";
  table.columns = {"Tray"};
  for (int j = 1; j <= s.NC; ++j) table.columns.push_back(CompName(s, j));
  for (int i = 1; i <= s.NTray - 1; ++i) {
    std::vector<io::Cell> row;
    row.emplace_back(static_cast<double>(i));
    for (int j = 1; j <= s.NC; ++j) row.emplace_back(b.LiqComp[i][j] - b.VapComp[i + 1][j]);
    table.rows.push_back(std::move(row));
  }
  return table;
}

io::ReportTable BatchTrayProfileTable(SharedCalcState& s) {
  const auto& b = s.Batch;
  io::ReportTable table;
  table.view = "tray-profile";
  table.columns = {"Tray", "Temp"};
  for (int j = 1; j <= s.NC; ++j) table.columns.push_back(CompName(s, j));
  table.messages.push_back("Ope.Time=" + io::FormatShortest(b.CalcTime));
  for (int i = 1; i <= s.NTray; ++i) {
    std::vector<io::Cell> row;
    row.emplace_back(static_cast<double>(i));
    row.emplace_back(b.TrayTemp[i]);
    for (int j = 1; j <= s.NC; ++j) row.emplace_back(b.LiqComp[i][j]);
    table.rows.push_back(std::move(row));
  }
  return table;
}

bool LoadBatchReportCase(SharedCalcState& s) {
  std::error_code ec;
  auto two = BatchRunFilePath(s, "_2.dat");
  if (std::filesystem::is_regular_file(two, ec)) {
    if (ReadBatchCase(s, two, false)) return true;
  }
  // The counts from the shape of the files: "_3.dat" (heat line, pairs line) or a history file.
  std::vector<double> v;
  int nc = 0, nt = 0;
  auto three = BatchRunFilePath(s, "_3.dat");
  if (std::filesystem::is_regular_file(three, ec)) {
    BatchLineReader r(three);
    std::vector<double> heat, pairs;
    if (r.Next(v) && r.Next(heat) && r.Next(v) && r.Next(pairs) && !pairs.empty()) {
      nt = static_cast<int>(heat.size());  // the empty text field is not counted
      nc = static_cast<int>(pairs.size()) / 2;
    }
  } else {
    for (const char* suffix : {"_1.dat", "_4.dat"}) {
      auto p = BatchRunFilePath(s, suffix);
      if (!std::filesystem::is_regular_file(p, ec)) continue;
      BatchLineReader r(p);
      std::vector<double> pairs;
      if (!r.Next(v) || v.size() != 1 || !r.Next(pairs)) continue;
      int trays = 1;
      while (r.Next(v) && r.Next(v) && v.size() != 1) ++trays;
      nc = static_cast<int>(pairs.size()) / 2;
      nt = trays;
      break;
    }
  }
  if (nc < 1 || nt < 1 || nc > kMaxComponents || nt > kMaxTrays) return false;
  s.NC = nc;
  s.NTray = nt;
  ShowMessage(s,
              "No B_Calc_2.dat in the folder: component names and molecular weights are "
              "unknown (give the case with --case FILE)");
  return true;
}

}  // namespace tervale
