// needs: cli
// The pure-component JSON case file, through the purecomp command.
#include "cli_case_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  return tervale::fuzz::RunCaseCommand(data, size, {"--json", "purecomp", "@"});
}
