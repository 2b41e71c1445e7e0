// needs: cli src/cli/cmd_unifac.cpp
// The UNIFAC JSON case file, through the unifac command (with the shipped UNIFAC.PAR).
#include "cli_case_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  return tervale::fuzz::RunCaseCommand(
      data, size, {"--json", "unifac", "--parameters", TERVALE_SOURCE_DIR "/data/UNIFAC.PAR", "@"});
}
