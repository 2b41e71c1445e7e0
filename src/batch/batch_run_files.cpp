#include "batch/batch_run_files.h"

#include <cmath>
#include <cstdio>
#include <ctime>

#include "batch/batch_data.h"
#include "io/display_format.h"
#include "io/record_writer.h"
#include "state/errors.h"
#include "state/shared_state.h"

namespace tervale {

namespace {

// Starts a run file anew with content (open for output, write, close).
void WriteFresh(const std::filesystem::path& path, std::string_view content) {
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) throw FileWriteError("Cannot write " + path.string());
  bool ok = std::fwrite(content.data(), 1, content.size(), f) == content.size();
  ok = (std::fclose(f) == 0) && ok;
  if (!ok) throw FileWriteError("Cannot write " + path.string());
}

void Put(const std::filesystem::path& path, std::string_view content, bool truncate) {
  if (truncate) {
    WriteFresh(path, content);
  } else {
    io::AppendToFile(path, content);
  }
}

// The tray record: per tray one line of x, y pairs and one line of values (ten, or seven).
void WriteTrayRecord(io::RecordWriter& w, const SharedCalcState& s, bool tenValues) {
  const auto& b = s.Batch;
  for (int i = 1; i <= s.NTray; ++i) {
    for (int j = 1; j <= s.NC; ++j) w.Num(b.LiqComp[i][j]).Num(b.VapComp[i][j]);
    w.EndLine();
    w.Num(b.TrayTemp[i]).Num(b.VaporFlow[i]).Num(b.LiquidFlow[i]).Num(b.VapEnthalpy[i]);
    w.Num(b.LiqEnthalpy[i]).Num(b.TrayHeat[i]).Num(b.Holdup[i]);
    if (tenValues) w.Num(b.HoldupChange[i]).Num(b.LiqEnthalpyChange[i]).Num(b.HeatTotal[i]);
    w.EndLine();
  }
}

}  // namespace

std::filesystem::path BatchRunFilePath(const SharedCalcState& s, std::string_view suffix) {
  std::filesystem::path dir =
      s.DataPath.empty() ? std::filesystem::path(".") : std::filesystem::path(s.DataPath);
  return dir / ("B_Calc" + std::string(suffix));
}

std::string LogClockText() {
  std::time_t now = std::time(nullptr);
  std::tm tm{};
  localtime_r(&now, &tm);
  char buf[32];
  std::strftime(buf, sizeof buf, "%Y/%m/%d %H:%M:%S", &tm);
  return buf;
}

std::string PrintedNumber(double value) {
  std::string text = io::FormatShortest(value);
  if (value < 0 || text.front() == '-') return text + " ";
  return " " + text + " ";
}

std::string CalTimeText(double t) {
  return io::FormatNumber(t, "###0.0000");
}

void StartBatchLog(SharedCalcState& s) {
  WriteFresh(BatchRunFilePath(s, "_Log.dat"), LogClockText() + " Start Calculation\r\n");
}

void AppendBatchLog(SharedCalcState& s, double time, std::string_view text) {
  std::string line = LogClockText();
  line += " Cal_time=";
  line += CalTimeText(time);
  line += text;
  line += "\r\n";
  io::AppendToFile(BatchRunFilePath(s, "_Log.dat"), line);
}

void WriteBatchHistoryRecord(SharedCalcState& s, bool truncate) {
  io::RecordWriter w;
  w.Num(s.Batch.CalcTime).EndLine();
  WriteTrayRecord(w, s, true);
  Put(BatchRunFilePath(s, s.Batch.CalcPhase == 0 ? "_1.dat" : "_4.dat"), w.Text(), truncate);
}

void WriteBatchConvergedState(SharedCalcState& s) {
  auto path = BatchRunFilePath(s, "_2.dat");
  s.DataFileName = path.string();
  // The case, then the state. Written in one atomic save: a continuation reads this file, so a
  // run killed while writing it must leave the previous state whole.
  io::RecordWriter w;
  w.Num(s.Batch.CalcTime).EndLine();
  WriteTrayRecord(w, s, true);
  for (int i = 1; i <= s.NTray; ++i) {
    for (int j = 1; j <= s.NC; ++j) w.Num(s.Batch.RkgCarry[j][i]);
    w.EndLine();
  }
  io::SaveFileAtomically(path, FormatBatchCase(s) + w.Text());
}

void WriteBatchEndFile(SharedCalcState& s, bool fromEndCalculation) {
  const auto& b = s.Batch;
  io::RecordWriter w;
  w.Num(b.TotalDistillate).Num(b.TempMax).Num(b.TempMin).Num(b.VaporMax).Num(b.VaporMin);
  w.Num(b.LiquidMax).Num(b.LiquidMin).Num(b.CalcTime).Num(b.CalcTime + b.RunTime).EndLine();
  for (int i = 1; i <= s.NTray; ++i) w.Num(b.HeatTotal[i]);
  if (fromEndCalculation) w.Str("");
  w.EndLine();
  w.Int(b.CalcPhase).Num(b.ContinueTime).Num(b.RunTime);
  w.Num(fromEndCalculation ? b.NextSaveTime : b.SaveInterval).EndLine();
  WriteTrayRecord(w, s, false);
  WriteFresh(BatchRunFilePath(s, "_3.dat"), w.Text());
}

void WriteBatchTankRecord(SharedCalcState& s) {
  const auto& b = s.Batch;
  io::RecordWriter w;
  w.Int(b.TankCounter).Num(b.RunTime).EndLine();
  for (int j = 1; j <= s.NC; ++j) w.Num(b.TankContent[j]);
  w.EndLine();
  for (int i = 1; i <= s.NTray; ++i) w.Num(b.HeatTotalTank[i]);
  w.EndLine();
  Put(BatchRunFilePath(s, "_5.dat"), w.Text(), b.TankCounter == 0);
}

}  // namespace tervale
