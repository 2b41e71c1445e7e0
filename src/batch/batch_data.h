#pragma once
#include <filesystem>
#include <string>
#include <vector>

#include "batch/batch_case.h"

namespace tervale {

struct SharedCalcState;

// Defaults of the batch program: clears the case, the components and the matrices (every
// Wilson and kij element 1, NRTL tau 0, alpha 0.4) and sets the batch units and methods.
void ResetBatchCase(SharedCalcState& s);

// The still's hold-up row: TotalFeed minus the sum of rows 1..NTray-1, in the basis in use
// (whatever the basis: the subtraction mixes bases, as designed). Returns the figure.
double DeriveStillHoldup(SharedCalcState& s);

// The tower screen's OK: returns the message that keeps the screen open, or "" when the
// values were taken (NTray, the two pressures, the initial temperature).
std::string ApplyBatchTowerSpec(SharedCalcState& s, int nTray, double topPress, double bottomPress,
                                double initialTemp);

// The feed screen's OK: the charge (treated as Kgmol and mole fractions whatever unitIndex
// says; it only changes a caption) and the still's hold-up derived again.
void ApplyBatchFeed(SharedCalcState& s, double totalFeed, const CompArray& feedComp, int unitIndex);

// The tray screen's OK. Rows 1..NTray-1 give pressure, hold-up (in the basis) and heat (user's
// heat unit, converted to base); the last row only pressure and heat, and its heat also becomes
// TRefluxQReb; the still's hold-up is derived again.
struct BatchTrayRow {
  double press = 0;
  double holdup = 0;
  double heat = 0;  // user's heat unit per hour
};
void ApplyBatchTray(SharedCalcState& s, int holdupBasis, const std::vector<BatchTrayRow>& rows);

// The operation screen's OK; the duty is in the user's heat unit, converted to base and also
// written into the still's row of the tray table.
struct BatchOperationInput {
  double maxOpeTime = 10, diffTime = 0.0001, saveInterval = 0.001, convLimit = 0.0005;
  double duty = 0;
  int opeType = 1;  // 1 total reflux, 2 total reflux then product
  int graphLinear = 0;
  int graphDivisions = 5;
};
void ApplyBatchOperation(SharedCalcState& s, const BatchOperationInput& in);

// The guards of the main screen's buttons: "" when the screen may open, else the message shown.
std::string BatchFeedScreenGuard(SharedCalcState& s);
std::string BatchTrayScreenGuard(SharedCalcState& s);

// One tank row as the product screen holds it.
struct BatchProductRow {
  double refluxRatio = 0;
  double distillate = 0;  // Kgmol/H, type 2
  double duty = 0;        // base heat unit per hour, type 3
  // The change condition (all rows but the last one).
  bool byQuantity = true;  // "Tank Total Quantity", else "Tank Component No"
  double quantity = 0;
  int quantityUnit = 0;  // 0 Kgmol, 1 Kg
  int component = 0;
  bool weightFraction = false;
  bool greater = true;  // ">" or "<"
  double fraction = 0;
};

struct BatchProductInput {
  int opeType = 2;                                       // 2 or 3
  int changeCount = 0;                                   // "No of TANK -1"
  std::array<BatchProductRow, kMaxTankRows + 2> rows{};  // 1..changeCount+1
};

// The product screen's OK: checks in order and returns the first message (the screen stays
// open, nothing is stored), or "" after storing type, count, keys, limits and operations.
std::string ApplyBatchProduct(SharedCalcState& s, const BatchProductInput& in);

// The Go button's checks in order. Every message is shown (ShowMessage) and returned; ok is
// false when a check refused the case. The mismatch of a continuation's counts is a notice:
// the continuation is dropped and the checks go on. Sets QRebSet.
struct BatchCheckResult {
  bool ok = true;
  std::vector<std::string> messages;
};
BatchCheckResult CheckBatchGoCalc(SharedCalcState& s);

// The built-in example (number 1), a fresh case without results or continuation.
// Returns false for an unknown number.
bool LoadBatchExample(SharedCalcState& s, int number = 1);

// ---- the case file "Batch Distillastion Data" ----
inline constexpr const char* kBatchFileMagic = "Batch Distillastion Data";

// The text of the case file, items 1 to 16.
std::string FormatBatchCase(SharedCalcState& s);
// Writes the case to path (atomically).
void WriteBatchCase(SharedCalcState& s, const std::filesystem::path& path);
// Reads a case file. With readState the converged total-reflux state that follows the case in
// "_2.dat" is read on into the run tables. Returns false (after the message) on a wrong head
// line; throws FileReadError on a broken file. The state changes only when the read succeeds.
bool ReadBatchCase(SharedCalcState& s, const std::filesystem::path& path, bool readState = false);
// Reads "_2.dat" of the data folder with its state and marks the continuation. Returns false
// after its message when the file is absent or not a batch file.
bool ReadBatchContinuation(SharedCalcState& s);

}  // namespace tervale
