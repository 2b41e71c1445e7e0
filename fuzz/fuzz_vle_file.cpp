// needs: src/regress/vle_regression.h
// The binary VLE data file.
#include "fuzz_common.h"
#include "regress/vle_case.h"
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
    ReadVLEDataFile(*s, path);
  } catch (const TervaleError&) {
  }
  return 0;
}
