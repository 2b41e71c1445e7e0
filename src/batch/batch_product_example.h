#pragma once

namespace tervale {

struct SharedCalcState;

// The second built-in batch example: the first with the heat unit J (HeatUnit 1) and a
// total-reflux duty of 1000000, so that total reflux converges and the product tanks fill.
// The case is the one a user gets by changing those two fields of the first example's file.
bool LoadBatchProductExample(SharedCalcState& s);

}  // namespace tervale
