#pragma once
// The JSON case readers of the command line in the fuzzing process. The commands' objects
// register themselves into the registry that the program's main otherwise defines.
#include <vector>

#include "cli/command_registry.h"
#include "cli/json_case_readers.h"
#include "fuzz_common.h"
#include "state/dialogs.h"
#include "state/errors.h"

namespace tervale::cli {
std::vector<CommandEntry>& CommandRegistry() {
  static std::vector<CommandEntry> registry;
  return registry;
}
}  // namespace tervale::cli

namespace tervale::fuzz {

// Reads the input as a JSON case file with `read(path, state)`; a refusal is the expected end
// of a bad file, anything else is a finding.
template <class Read>
int ReadJsonCase(const uint8_t* data, size_t size, Read read) {
  static auto s = MakeSharedCalcState();
  static RecordingDialogs dialogs;
  dialogs.messages.clear();
  s->Dialogs = &dialogs;
  const auto path = WriteInput(data, size, ".json");
  try {
    read(path.string(), *s);
  } catch (const TervaleError&) {
  }
  return 0;
}

}  // namespace tervale::fuzz
