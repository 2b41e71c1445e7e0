// needs: src/column/column_results.h
// The column case file, and Result.dat (the same format with results).
#include "column/column_case.h"
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
    ReadColumnFile(*s, path.string());
  } catch (const TervaleError&) {
  }
  return 0;
}
