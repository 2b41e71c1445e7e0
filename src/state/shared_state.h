#pragma once
#include <memory>
#include <string>
#include <string_view>

#include "batch/batch_case.h"
#include "column/column_case.h"
#include "flash/flash_case.h"
#include "purecomp/pure_estimate.h"
#include "regress/vle_case.h"
#include "state/bitext.h"
#include "state/dialogs.h"
#include "state/limits.h"
#include "unifac/unifac_table.h"
#include "vapourpress/antoine_case.h"

namespace tervale {

// Per-component constants, 1..20, filled to NC.
struct ComponentTable {
  std::array<std::string, kMaxComponents + 1> CompName{};
  CompArray CompMW{};
  CompArray AntoineA{}, AntoineB{}, AntoineC{};  // log10 P[mmHg] = A - B / (t[C] + C)
  CompArray CompTc{};                            // K
  CompArray CompPc{};                            // in the units of the EOS gas constant (atm)
  CompArray CompVc{};
  CompArray CompOmega{};
  CompArray HLiqA{}, HLiqB{}, HLiqC{};  // H[Kcal/Kgmol] = A + B t + C t^2, t in C
  CompArray HVapA{}, HVapB{}, HVapC{};
  CompArray CpA{}, CpB{}, CpC{}, CpD{};  // ideal gas Cp, t in K
};

// Binary parameters addressed (row, column) as the grids show them.
struct BinaryParameterMatrix {
  CompMatrix WilsonLambda{};
  CompMatrix NrtlTau{};
  CompMatrix KijMatrix{};
  double NrtlAlpha = 0.4;
};

struct UnitSelection {
  int TempUnit = 1;   // 1 C, 2 K, 3 F
  int PressUnit = 3;  // 1 MPa, 2 KPa, 3 mmHg, 4 mmH2O, 5 Kgf/cm2, 6 PSIA
  int HeatUnit = 2;   // 1 J (passes through), 2 Kcal (x 4186.05)
};

inline constexpr std::string_view kVersionText = "Ver.05.1010";

// The one block of plain data every program reads and writes. The desktop program owns one
// instance for the life of the process; the command line and each test make their own.
// It is large (tray and run tables): allocate it on the heap, e.g. with MakeSharedCalcState().
struct SharedCalcState {
  // limits and counts
  int MaxComponents = kMaxComponents;
  int MaxTrays = kMaxTrays;
  int NC = 0;
  int NTray = 0;
  int NFeed = 0;
  int NSideLiq = 0;
  int NSideVap = 0;

  ComponentTable Comp;
  BinaryParameterMatrix Bin;
  int KValueMethod = 1;    // 1 Ideal, 2 Wilson, 3 NRTL, 4 S-R-K, 5 P-R
  int EnthalpyMethod = 0;  // 0 none, 1 polynomial, 2 S-R-K, 3 P-R
  UnitSelection Unit;

  // Written by every equilibrium call and read by the caller.
  CompArray KValue{};
  CompArray Gamma{};

  std::array<std::string, kMaxMemoLines + 1> MemoLine{};
  std::string DataFileName;

  // shell values
  std::string DataPath;
  std::string DatabaseFile;
  int LanguageFlag = 0;  // 0 Japanese, 1 English
  int ActiveProgram = 0;
  int BatchMode = 0;  // 0 continuous, 1 batch, 2 flash
  std::string MessageText;
  std::string TitlePrefix;

  // per-program blocks
  FlashCase Flash;
  ColumnCase Column;
  BatchCase Batch;
  VLEDataCase VLE;
  UnifacParameterTable Unifac;
  AntoineEstimate Antoine;
  PureComponentEstimate PureComp;

  // Where messages and questions go; null means nobody is listening (messages are dropped,
  // questions take their default answer).
  UserDialogs* Dialogs = nullptr;
};

std::unique_ptr<SharedCalcState> MakeSharedCalcState();

// Shows a message: fills MessageText, then hands it to the caller's dialogs.
void ShowMessage(SharedCalcState& s, std::string_view text);
inline void ShowMessage(SharedCalcState& s, const BiText& text) {
  ShowMessage(s, text.Pick(s.LanguageFlag));
}
Answer AskUser(SharedCalcState& s, std::string_view text, Buttons buttons);
inline Answer AskUser(SharedCalcState& s, const BiText& text, Buttons buttons) {
  return AskUser(s, text.Pick(s.LanguageFlag), buttons);
}
inline std::string_view Pick(const SharedCalcState& s, const BiText& text) {
  return text.Pick(s.LanguageFlag);
}

// The common part of every program's Reset: component arrays cleared up to MaxComponents,
// the diagonals of WilsonLambda and KijMatrix 1.0, NRTL diagonal 0, the unit defaults.
void ResetComponentsAndMatrices(SharedCalcState& s);

}  // namespace tervale
