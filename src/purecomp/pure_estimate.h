#pragma once
#include <array>
#include <string>

#include "state/limits.h"

namespace tervale {

// The group-contribution methods, in the order their count arrays are kept.
enum class GroupMethod {
  Lydersen = 0,
  Ambrose = 1,
  Joback = 2,
  KlincewiczReid = 3,
  Fedors = 4,
  RihaniDoraiswamy = 5,
};
inline constexpr int kGroupMethodCount = 6;
// Rows of the longest group table, with room to spare; rows are 1-based.
inline constexpr int kMaxGroupRows = 60;
using GroupCountArray = std::array<int, kMaxGroupRows + 1>;

inline constexpr int kGridPoints = 51;
using GridArray = std::array<double, kGridPoints + 1>;
using GridFlags = std::array<bool, kGridPoints + 1>;
inline constexpr int kMaxFitPoints = 60;
inline constexpr int kMaxFitCoef = 3;

// Choices of the estimation screen, by the index of each option group.
struct PureComponentMethods {
  int TcPcVc = 2;      // 0 Lydersen, 1 Ambrose, 2 Joback, 3 Klincewicz-Reid
  int Omega = 1;       // 0 Edmister, 1 Lee-Kesler
  int VaporPress = 2;  // 0 Riedel-Plank-Miller, 1 Pitzer, 2 Lee-Kesler
  int CpIdeal = 0;     // 0 Rihani-Doraiswamy, 1 leave Cp0 as it stands
  int CpLiquid = 0;    // 0 Rowlinson-Bondi, 1 Lyman-Danner
  int LiqDensity = 0;  // 0 Gunn-Yamada, 1 Spencer-Danner
};

// What the estimation screen's fields hold when the estimate starts. A blank field is
// HasX = false (a blank boiling point sends the estimate to Fedors first).
struct PureComponentInput {
  std::string Name;
  double MolWeight = 0;
  int TotalAtom = 0;
  bool HasTbC = false;
  double TbC = 0;
  double TempLow = 0;   // C
  double TempHigh = 0;  // C
  bool HasCpL_R = false, HasCpL_K = false;
  double CpL_R = 0, CpL_K = 0;  // Lyman-Danner R and K
  bool HasLiqD_Dref = false, HasLiqD_Tref = false;
  double LiqD_Dref = 0;  // reference liquid density, g/cc
  double LiqD_Tref = 0;  // its temperature, C
};

// Part of SharedCalcState: the pure-component estimation's inputs, group counts and results.
struct PureComponentEstimate {
  PureComponentMethods Methods;

  std::string PropName;
  double PropMolWeight = 0;
  int PropTotalAtom = 0;
  double PropTbC = 0, PropTbK = 0;  // normal boiling point, C and K
  double PropTc = 0;                // K
  double PropPc = 0;                // in the unit of the group method (atm on the screen)
  double PropVc = 0;                // cc/mol
  double PropOmega = 0;
  bool PropTbFromFedors = false;
  double PropTempLow = 0, PropTempHigh = 0;                     // C
  double PropAntoineA = 0, PropAntoineB = 0, PropAntoineC = 0;  // log10 P[mmHg] = A - B/(t + C)
  std::array<double, 5> PropCp0{};      // [1..4] Cp0 = A + B T + C T^2 + D T^3, cal/mol/K, T in K
  std::array<double, 4> PropCpL{};      // [1..3] CpL = A + B T + C T^2
  std::array<double, 4> PropHv{};       // [1..3] Hv = A + B T + C T^2
  std::array<double, 4> PropDenPoly{};  // [1..3] rhoL = A + B T + C T^2
  double PropDenRackettA = 0, PropDenRackettB = 0;  // rhoL = A B^(-(1 - Tr)^(2/7))
  double PropZra = 0;

  // The temperature grid and the points computed on it. A point is computed only where the
  // liquid exists (Tr < 1); the Has arrays say which.
  GridArray GridTempC{}, GridTempK{};
  GridArray GridVaporPress{};  // mmHg, every point
  GridArray GridHv{}, GridCpL{}, GridDen{};
  GridFlags GridHasHv{}, GridHasCpL{}, GridHasDen{};
  double GridHvMin = 1e10, GridHvMax = -1e10;
  double GridCpLMin = 1e10, GridCpLMax = -1e10;
  double GridDenMin = 1e10, GridDenMax = -1e10;

  // Work of the least-squares fits: FitBasis[k][i], k 1..3, i 1..60.
  std::array<std::array<double, kMaxFitPoints + 1>, kMaxFitCoef + 1> FitBasis{};
  std::array<double, kMaxFitPoints + 1> FitValue{};
  int FitPointCount = 0;

  // The counts of each group form, kept for the life of the program; [method][row], rows 1-based.
  std::array<GroupCountArray, kGroupMethodCount> GroupCount{};
};

}  // namespace tervale
