#include "batch/batch_product_example.h"

#include "batch/batch_data.h"
#include "state/shared_state.h"

namespace tervale {

bool LoadBatchProductExample(SharedCalcState& s) {
  if (!LoadBatchExample(s, 1)) return false;
  // The stored duty is in base units; with HeatUnit 1 the screen shows it as it stands.
  s.Unit.HeatUnit = 1;
  s.Batch.TRefluxQReb = 1000000;
  return true;
}

}  // namespace tervale
