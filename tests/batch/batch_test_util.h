#pragma once
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "batch/batch_data.h"
#include "batch/batch_run.h"
#include "common/scratch.h"
#include "state/errors.h"
#include "state/shared_state.h"

namespace tervale::testing {

using testcli::ReadBytes;
using testcli::ScratchDir;
using testcli::WriteBytes;

// The run files present in a folder, e.g. "_1 _3 _Log".
inline std::string BatchFilesPresent(const std::filesystem::path& dir) {
  std::string present;
  for (const char* f : {"_1", "_2", "_3", "_4", "_5", "_Log"})
    if (std::filesystem::exists(dir / ("B_Calc" + std::string(f) + ".dat")))
      present += (present.empty() ? "" : " ") + std::string(f);
  return present;
}

inline std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> out;
  std::string line;
  std::istringstream in(text);
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    out.push_back(line);
  }
  return out;
}

// The example with HeatUnit 1 and a total-reflux duty of 1000000: it reaches product
// operation, fills both tanks and ends with the tanks exhausted.
inline void LoadProductExample(SharedCalcState& s) {
  LoadBatchExample(s, 1);
  s.Unit.HeatUnit = 1;
  s.Batch.TRefluxQReb = 1000000;
}

struct Prepared {
  std::unique_ptr<SharedCalcState> state = MakeSharedCalcState();
  RecordingDialogs dialogs;
  SharedCalcState& s() { return *state; }
};

inline void Prepare(Prepared& p, const std::filesystem::path& dir) {
  p.state->DataPath = dir.string();
  p.state->LanguageFlag = 1;
  p.state->Dialogs = &p.dialogs;
}

// The text of the FileReadError that `read` throws; empty when it throws none.
template <class Read>
std::string ReadErrorText(Read read) {
  try {
    read();
  } catch (const FileReadError& e) {
    return e.what();
  }
  return "";
}

// A state in English over a fresh folder of its own, holding the product example.
struct BatchFixture : ::testing::Test {
  ScratchDir dir{"batch"};
  Prepared p;
  SharedCalcState& s = p.s();
  void SetUp() override {
    Prepare(p, dir.path());
    LoadProductExample(s);
  }
  // The Go check passes on the case as it stands.
  bool Ready() { return CheckBatchGoCalc(s).ok; }
  std::vector<std::string> File(const std::string& suffix) {
    return Lines(ReadBytes(dir / ("B_Calc" + suffix + ".dat")));
  }
};

}  // namespace tervale::testing
