#pragma once
#include <array>
#include <string>
#include <string_view>

#include "batch/batch_case.h"

namespace tervale {

struct SharedCalcState;

// How a run ended.
enum class BatchRunEnd {
  TanksExhausted,   // the last tank was closed
  TimeOver,         // t passed MaxOpeTime, or the still ran empty
  Stopped,          // the user asked to stop
  TotalRefluxOnly,  // BatchOpeType 1 converged
  Cancelled,        // Cancel at a negative composition
};
std::string_view BatchRunEndName(BatchRunEnd end);  // "tanks-exhausted", ...

// The figures a user may change while a run stands at its yield.
enum class BatchRunChange { DiffTime, SaveInterval, ConvLimit, QReb, RefluxRatio, Distillate };

// Whether the calculation screen offers the change in the present phase and type.
bool BatchChangeOffered(const SharedCalcState& s, BatchRunChange which);
// A change screen's OK: when newValue differs from the run-time copy, writes the log line
// (CalcTime, the log text, the "Old=" figure, " New=" and the text as typed) and stores it.
// QReb is given in the user's heat unit. typed defaults to the shortest form of newValue.
// Returns true when the copy changed; false when unchanged or not offered now.
bool ApplyBatchRunChange(SharedCalcState& s, BatchRunChange which, double newValue,
                         std::string_view typed = {});

// What the run tells its observer at the one yield of each step.
struct BatchStepInfo {
  long long step = 0;  // steps finished so far, both phases
  int phase = 0;       // CalcPhase after the step
  double time = 0;     // t after the step
  double dt = 0;       // the step taken
};

// Watches a run. Yield is the single point per step (after the clock moved) at which the run
// stands still: progress, stop requests (RequestStop) and run-time changes
// (ApplyBatchRunChange) happen there and take effect from the next step. Notice is the
// self-closing notice ("Total Reflux Converged", "Change Tank n"): by default a message.
class BatchRunObserver {
 public:
  virtual ~BatchRunObserver() = default;
  virtual void Yield(SharedCalcState& s, const BatchStepInfo& info) {}
  virtual void Notice(SharedCalcState& s, std::string_view text);
  // A record was saved, a tank closed, the phase changed: for live pictures.
  virtual void ProfileChanged(SharedCalcState& s) {}
  static void RequestStop(SharedCalcState& s);
};

struct BatchTankRecord {
  int counter = 0;
  double time = 0;
  CompArray content{};
};

struct BatchRunOptions {
  bool writeFiles = true;  // the log and the run files
};

struct BatchRunResult {
  BatchRunEnd end = BatchRunEnd::TimeOver;
  long long totalRefluxSteps = 0;
  long long productSteps = 0;
  bool converged = false;
  double totalRefluxTime = 0;  // CalcTime of the converging step
  int tankCount = 0;
  std::array<BatchTankRecord, kMaxTankRows + 1> tanks{};  // 0..tankCount-1
};

// The whole run over the state: start at total reflux, the steps, tank changes, the end.
// Expects the Go check to have passed (QRebSet set).
BatchRunResult RunBatchCalculation(SharedCalcState& s, BatchRunObserver* observer = nullptr,
                                   const BatchRunOptions& options = {});

// The tank test of the open tank (row TankRow): the quantity its key names (-2 total Kg,
// -1 total Kgmol, n mole fraction of component n, 100 + n weight fraction) and whether it passed
// its limit (a positive limit: v above it; otherwise v below its absolute value).
double BatchTankValue(const SharedCalcState& s);
bool BatchTankChangeDue(const SharedCalcState& s);

// The integrator's constants A, B, C for stages 1..4.
struct RkgTable {
  std::array<double, 5> A{}, B{}, C{};
};
RkgTable MakeRkgTable();

}  // namespace tervale
