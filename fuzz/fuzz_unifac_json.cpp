// needs: cli src/cli/json_case_readers.h
// The UNIFAC JSON case file, read and checked (the estimation itself is not run).
#include "cli_case_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  return tervale::fuzz::ReadJsonCase(
      data, size, [](const std::string& f, auto&) { (void)tervale::cli::ReadUnifacCaseFile(f); });
}
