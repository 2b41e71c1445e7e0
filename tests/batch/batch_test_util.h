#pragma once
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "batch/batch_data.h"
#include "batch/batch_run.h"
#include "state/shared_state.h"

namespace tervale::testing {

// A fresh empty folder under the temporary directory.
inline std::filesystem::path FreshDir(const std::string& name) {
  auto dir = std::filesystem::temp_directory_path() / ("tervale_batch_" + name);
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  return dir;
}

inline std::string ReadText(const std::filesystem::path& p) {
  std::ifstream in(p, std::ios::binary);
  std::stringstream ss;
  ss << in.rdbuf();
  return ss.str();
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

}  // namespace tervale::testing
