#pragma once
#include <array>
#include <string>

#include "state/limits.h"

namespace tervale {

inline constexpr int kMaxSubGroups = 100;
inline constexpr int kMaxMainGroups = 50;
inline constexpr int kMaxCaseGroups = 10;
inline constexpr int kUnifacPoints = 201;
// An interaction parameter below this marks the main-group pair as not registered.
inline constexpr double kUnifacMissingMark = -9000.0;

using UnifacGroupArray = std::array<double, kMaxCaseGroups + 1>;
using UnifacPair = std::array<double, 3>;  // [1], [2]: the two components
using UnifacCurve = std::array<double, kUnifacPoints + 1>;

// Part of SharedCalcState: the UNIFAC groups and interaction parameters read from UNIFAC.PAR,
// the binary case of the UNIFAC screen and the model's working arrays and curves.
struct UnifacParameterTable {
  // ---- UNIFAC.PAR ----
  int NSubGroup = 0;
  int NMainGroup = 0;  // the highest main group met among the subgroups
  std::array<std::string, kMaxSubGroups + 1> SubGroupName{};
  std::array<int, kMaxSubGroups + 1> SubGroupMain{};
  std::array<double, kMaxSubGroups + 1> SubGroupR{};
  std::array<double, kMaxSubGroups + 1> SubGroupQ{};
  std::array<std::string, kMaxMainGroups + 1> MainGroupName{};
  std::array<std::array<double, kMaxMainGroups + 1>, kMaxMainGroups + 1> InteractionA{};  // K

  // ---- the case (names and Antoine constants live in Comp slots 1 and 2) ----
  double VLEPressure = 0;     // mmHg, as typed
  double UnifacTempInit = 0;  // C, as typed
  int NCaseGroup = 0;
  std::array<int, kMaxCaseGroups + 1> CaseGroupId{};                    // subgroup numbers
  std::array<std::array<int, 3>, kMaxCaseGroups + 1> CaseGroupCount{};  // [k][component]
  UnifacPair ComponentR{}, ComponentQ{}, ComponentL{};

  // ---- model ----
  std::array<UnifacGroupArray, kMaxCaseGroups + 1> GroupPsi{};
  UnifacGroupArray GroupX{}, GroupTheta{}, GroupLnGamma{};
  std::array<UnifacPair, kMaxCaseGroups + 1> PureLnGamma{};  // [k][component]
  UnifacPair LiquidX{}, PureVaporPress{}, LnGammaComb{}, LnGammaRes{}, UnifacGamma{}, VaporY{};

  // ---- curves of the diagram ----
  UnifacCurve CurveX{}, CurveY{}, CurveT{};
  std::array<UnifacPair, kUnifacPoints + 1> CurveGamma{};  // [n][component]
  double CurveTMax = -999.0;
  double CurveTMin = 9999.0;
  std::array<UnifacPair, 3> EndGammaRes{};  // [component][1: x1 = 1, 2: x1 = 0]

  // ---- the derived Wilson pair, shown as Lambda12 and Lambda21 ----
  double DerivedWilson1 = 0;
  double DerivedWilson2 = 0;
};

}  // namespace tervale
