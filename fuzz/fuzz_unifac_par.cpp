// needs: src/unifac/unifac_model.h
// UNIFAC.PAR, the group parameter file.
#include "fuzz_common.h"
#include "state/errors.h"
#include "state/shared_state.h"
#include "unifac/unifac_model.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tervale;
  static auto s = MakeSharedCalcState();
  static RecordingDialogs dialogs;
  dialogs.messages.clear();
  s->Dialogs = &dialogs;
  const auto path = fuzz::WriteInput(data, size, ".dat");
  try {
    ReadUnifacParameterFile(*s, path);
  } catch (const TervaleError&) {
  }
  return 0;
}
