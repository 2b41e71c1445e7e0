#pragma once
#include <array>
#include <optional>
#include <string>

#include "state/limits.h"

namespace tervale {

inline constexpr int kMaxAntoineRows = 5;

using AntoineRowArray = std::array<double, kMaxAntoineRows + 1>;
using AntoinePointArray = std::array<double, kMaxDataPoints + 1>;

// Part of SharedCalcState: the tables of the Antoine estimation screen and their results.
// Rows 1..5 are the substances; a row is in use up to the first row with an empty formula.
struct AntoineEstimate {
  // the substance table: formula, name, A, B, C (log10 P[mmHg] = A - B/(t[C] + C)),
  // Tc (K), Pc (atm), acentric factor
  std::array<std::string, kMaxAntoineRows + 1> Formula{}, Name{};
  AntoineRowArray A{}, B{}, C{}, Tc{}, Pc{}, Omega{};

  // the measured table: pair k belongs to row k; t in C, P in mmHg
  std::array<AntoinePointArray, kMaxAntoineRows + 1> MeasuredTemp{}, MeasuredPress{};
  std::array<int, kMaxAntoineRows + 1> MeasuredCount{};
  std::array<std::string, kMaxAntoineRows + 1> MeasuredHead{};

  // the graph's temperature range (C); empty when the box is blank
  std::optional<double> TempLow, TempHigh;

  // results of the last estimate
  int NRows = 0;
  std::array<bool, kMaxAntoineRows + 1> Fitted{};     // constants replaced by the fit
  std::array<bool, kMaxAntoineRows + 1> LeeKesler{};  // points made by the Lee-Kesler route
};

}  // namespace tervale
