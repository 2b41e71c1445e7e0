#include "hardening/case_kinds.h"

#include <sys/wait.h>

#include <cstdio>
#include <sstream>

#include "batch/batch_data.h"
#include "batch/batch_run.h"
#include "batch/batch_run_files.h"
#include "column/column_case.h"
#include "column/tray_solver.h"
#include "flash/flash_program.h"
#include "regress/vle_case.h"
#include "unifac/unifac_model.h"

namespace tervale::hardening {

std::vector<CaseKind> CoreCaseKinds() {
  std::vector<CaseKind> kinds;
  kinds.push_back({"flash",
                   [](SharedCalcState& s, int n) { LoadFlashExample(s, n); },
                   [](SharedCalcState& s, const fs::path& p) { WriteFlashFile(s, p); },
                   [](SharedCalcState& s, const fs::path& p) {
                     ReadFlashFile(s, p);
                     return true;
                   },
                   {},
                   {},
                   {},
                   "flash --calc flash"});
  {
    const auto read = [](SharedCalcState& s, const fs::path& p) {
      return ReadColumnFile(s, p.string());
    };
    const auto write = [](SharedCalcState& s, const fs::path& p) {
      WriteColumnFile(s, p.string());
    };
    kinds.push_back({"column",
                     [](SharedCalcState& s, int) { LoadColumnExample1(s); },
                     write,
                     read,
                     {},
                     {},
                     {},
                     "column"});
    // Result.dat: the same format with the results of a run after the case (example 1 solved;
    // example 2 the case alone).
    kinds.push_back({"column_result",
                     [](SharedCalcState& s, int n) {
                       LoadColumnExample1(s);
                       if (n != 1) return;
                       BuildProductLists(s);
                       InitTrayComposition(s);
                       RunTrayCalculation(
                           s, [](const TrayProgress&) { return false; }, false);
                     },
                     write, read});
  }
  kinds.push_back({"batch",
                   [](SharedCalcState& s, int n) { LoadBatchExample(s, 1); },
                   [](SharedCalcState& s, const fs::path& p) { WriteBatchCase(s, p); },
                   [](SharedCalcState& s, const fs::path& p) { return ReadBatchCase(s, p); },
                   {},
                   {},
                   {},
                   "batch --stop-after-steps 50"});
  // B_Calc_2.dat: the case followed by the converged total-reflux state, as a run leaves it.
  kinds.push_back(
      {"batch_state",
       [](SharedCalcState& s, int) {
         LoadBatchExample(s, 1);
         s.Batch.BatchOpeType = 1;
         CheckBatchGoCalc(s);
         RunBatchCalculation(s, nullptr, {.writeFiles = false});
       },
       [](SharedCalcState& s, const fs::path& p) {
         s.DataPath = p.parent_path().string();
         WriteBatchConvergedState(s);
         fs::rename(fs::path(s.DataFileName), p);
       },
       [](SharedCalcState& s, const fs::path& p) { return ReadBatchCase(s, p, true); }});
  kinds.push_back({"vle",
                   [](SharedCalcState& s, int n) { LoadVLEExample(s, n); },
                   [](SharedCalcState& s, const fs::path& p) { SaveVLEDataFile(s, p); },
                   [](SharedCalcState& s, const fs::path& p) { return ReadVLEDataFile(s, p); },
                   [](SharedCalcState& s) { InitializeVLECase(s); },
                   {},
                   {},
                   "vle"});
  {
    CaseKind unifac;
    unifac.name = "unifac_par";
    const fs::path shipped = fs::path(TERVALE_SOURCE_DIR) / "data" / "UNIFAC.PAR";
    unifac.loadExample = [shipped](SharedCalcState& s, int) {
      ReadUnifacParameterFile(s, shipped);
    };
    unifac.read = [](SharedCalcState& s, const fs::path& p) {
      ReadUnifacParameterFile(s, p);
      return true;
    };
    unifac.exampleBytes = [shipped] { return ReadBytes(shipped); };
    unifac.fingerprint = [](const SharedCalcState& s) {
      const auto& u = s.Unifac;
      std::ostringstream f;
      f.precision(17);
      f << u.NSubGroup << ' ' << u.NMainGroup << '\n';
      for (int i = 0; i < static_cast<int>(u.SubGroupName.size()); ++i)
        f << u.SubGroupName[i] << ' ' << u.SubGroupMain[i] << ' ' << u.SubGroupR[i] << ' '
          << u.SubGroupQ[i] << '\n';
      for (const auto& n : u.MainGroupName) f << n << '\n';
      for (const auto& row : u.InteractionA)
        for (double a : row) f << a << ' ';
      return f.str();
    };
    kinds.push_back(unifac);
  }
  return kinds;
}

std::string ExampleBytes(const CaseKind& kind, int number, const fs::path& scratch) {
  if (kind.exampleBytes) return kind.exampleBytes();
  auto s = MakeSharedCalcState();
  kind.loadExample(*s, number);
  const fs::path file = scratch / ("example_" + kind.name + ".dat");
  kind.write(*s, file);
  return ReadBytes(file);
}

std::string Fingerprint(const CaseKind& kind, SharedCalcState& s, const fs::path& scratch) {
  if (kind.fingerprint) return kind.fingerprint(s);
  const fs::path file = scratch / ("state_" + kind.name + ".dat");
  kind.write(s, file);
  return ReadBytes(file);
}

std::vector<CliCaseKind> CliCaseKinds() {
  return {{"purecomp", "example purecomp", "purecomp"},
          {"unifac", "example unifac 1", "unifac"},
          {"antoine", "example antoine", "antoine"}};
}

fs::path CliPath() {
  return fs::path(TERVALE_BIN_DIR) / "tervale-cli";
}

CliRun RunCli(const std::string& args, const fs::path& scratch) {
  CliRun r;
  const fs::path errFile = scratch / "stderr.txt";
  const std::string command = CliPath().string() + " " + args + " 2>" + errFile.string();
  FILE* pipe = ::popen(command.c_str(), "r");
  if (!pipe) return r;
  char buffer[65536];
  size_t n;
  while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) r.out.append(buffer, n);
  const int status = ::pclose(pipe);
  if (WIFEXITED(status)) {
    r.status = WEXITSTATUS(status);
    // The shell reports a signal that ended the program as 128 + the signal.
    if (r.status > 128) r.signal = r.status - 128;
  } else if (WIFSIGNALED(status)) {
    r.signal = WTERMSIG(status);
  }
  r.err = ReadBytes(errFile);
  return r;
}

}  // namespace tervale::hardening
