// needs: cli src/cli/cmd_antoine.cpp
// The Antoine JSON case file, through the antoine command.
#include "cli_case_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  return tervale::fuzz::RunCaseCommand(data, size, {"--json", "antoine", "@"});
}
