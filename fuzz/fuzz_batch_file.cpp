// needs: src/batch/batch_data.h
// The batch case file.
#include "batch/batch_data.h"
#include "fuzz_common.h"
#include "state/errors.h"
#include "state/shared_state.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tervale;
  static auto s = MakeSharedCalcState();
  static RecordingDialogs dialogs;
  dialogs.messages.clear();
  s->Dialogs = &dialogs;
  const auto path = fuzz::WriteInput(data, size, ".dat");
  try {
    ReadBatchCase(*s, path, false);
  } catch (const TervaleError&) {
  }
  return 0;
}
