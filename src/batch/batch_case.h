#pragma once
#include <array>

#include "state/limits.h"

namespace tervale {

// Rows of the tank table: 1..TankChangeCount+1, held for rows 1..5.
inline constexpr int kMaxTankRows = kMaxTanks;

// TankOperation columns.
inline constexpr int kTankReflux = 0;
inline constexpr int kTankDistillate = 1;
inline constexpr int kTankDuty = 2;

// TrayHoldupInput columns: HoldupBasis - 1.
inline constexpr int kHoldupKgmol = 0;
inline constexpr int kHoldupKg = 1;
inline constexpr int kHoldupM3 = 2;

using TankOperationRow = std::array<double, 3>;
using TrayHoldupRow = std::array<double, 3>;
// RkgCarry is addressed [component][tray].
using CompTrayMatrix = std::array<TrayArray, kMaxComponents + 1>;

// Part of SharedCalcState: the batch column's case and its run tables.
struct BatchCase {
  // ---- the case ----
  int BatchOpeType = 1;  // 1 total reflux only, 2 R and D set, 3 R and reboiler duty set
  int HoldupBasis = 1;   // 1 Kgmol, 2 Kg, 3 m3
  double TopPress = 0, BottomPress = 0;  // user's unit
  double InitialTemp = 0;                // user's unit
  double TRefluxConvLimit = 0.0005;
  double DiffTime = 0.0001;
  double MaxOpeTime = 10;
  double TRefluxQReb = 0;  // base heat unit per hour
  double SaveInterval = 0.001;
  int GraphLinear = 0;     // not in the file
  int GraphDivisions = 5;  // not in the file
  int ReservedLong = 0;    // written and read back, used by nothing else
  int TankChangeCount = 0;
  std::array<int, kMaxTankRows + 1> TankChangeKey{};
  std::array<double, kMaxTankRows + 1> TankChangeLimit{};
  std::array<TankOperationRow, kMaxTankRows + 1> TankOperation{};
  TrayArray TrayPressInput{};                                  // user's unit, 0 where blank
  std::array<TrayHoldupRow, kMaxTrays + 1> TrayHoldupInput{};  // Kgmol, Kg, m3
  // Heat into each tray, base units (+ in, - out). One array with the run's Q: during a run
  // the condenser's and the still's rows hold the duties computed by the run.
  TrayArray TrayHeat{};
  double TotalFeed = 0;   // treated as Kgmol by the calculation
  CompArray FeedComp{};   // treated as mole fractions by the calculation
  int FeedUnitIndex = 0;  // 0 Kgmol, 1 Kg: a caption only; not in the file

  // counts kept aside by the last reading
  int NCAtRead = 0;
  int NTrayAtRead = 0;

  // continuation from the converged total-reflux state
  int ContinueFromTReflux = 0;
  double ContinueTime = 0;
  double QRebSet = 0;  // duty of the run, copied from TRefluxQReb by the Go check
  bool ResultsExist = false;

  // ---- run tables (base units: C, MPa, hours, Kgmol/H, Kgmol) ----
  TrayCompMatrix LiqComp{};  // x[i][j]
  TrayCompMatrix VapComp{};  // y[i][j]; the scratch store of the new x during a step
  TrayArray TrayTemp{};
  TrayArray TrayPress{};
  TrayArray Holdup{};
  TrayArray HoldupChange{};  // plain difference on trays 1..N-1, a rate in the still
  TrayArray VaporFlow{};
  TrayArray LiquidFlow{};
  TrayArray VapEnthalpy{};
  TrayArray LiqEnthalpy{};
  TrayArray LiqEnthalpyChange{};
  TrayArray HeatTotal{};
  TrayArray HeatTotalTank{};
  CompTrayMatrix RkgCarry{};  // q[j][i], kept across steps and phases
  CompArray TankContent{};    // Kgmol in the open tank

  // ---- run scalars ----
  double CalcTime = 0;  // time at the start of the step
  double RunTime = 0;   // the running time t
  double StepTime = 0;  // dt of the step
  double NextSaveTime = 0;
  double TotalDistillate = 0;
  double TempMax = 0, TempMin = 0;
  double VaporMax = 0, VaporMin = 0;
  double LiquidMax = 0, LiquidMin = 0;
  double ReboilerDuty = 0;  // QR of the step
  int CalcStopFlag = 0;     // 0 running, 1 stop asked for, -1 finished
  int CalcStarted = 0;
  int CalcPhase = 0;  // 0 total reflux, 1 product
  int TankCounter = 0;
  int TankRow = 1;
  int TanksExhausted = 0;

  // run-time copies the user may change between steps
  double CurDiffTime = 0;
  double CurSaveInterval = 0;
  double CurConvLimit = 0;
  double CurQReb = 0;
  double CurRefluxRatio = 0;
  double CurDistillate = 0;
};

}  // namespace tervale
