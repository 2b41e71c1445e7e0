// needs: cli src/cli/json_case_readers.h
// The Antoine JSON case file, read and checked (the fit itself is not run).
#include "cli_case_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  return tervale::fuzz::ReadJsonCase(
      data, size, [](const std::string& f, auto& s) { tervale::cli::ReadAntoineCaseFile(f, s); });
}
