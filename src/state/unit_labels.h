#pragma once
#include <string_view>

#include "state/shared_state.h"

namespace tervale {

// The unit labels the units screen puts on the main screens, as its lists show them. An
// out-of-range selection has no label.
inline std::string_view TempUnitLabel(const SharedCalcState& s) {
  static constexpr BiText labels[] = {{"C", "℃"}, {"K", "゜K"}, {"F", "゜F"}};
  const int u = s.Unit.TempUnit;
  return u >= 1 && u <= 3 ? Pick(s, labels[u - 1]) : std::string_view{};
}

inline std::string_view PressUnitLabel(const SharedCalcState& s) {
  static constexpr std::string_view labels[] = {"MPa", "KPa", "mmHg", "mmH2O", "Kgf/cm2", "PSIA"};
  const int u = s.Unit.PressUnit;
  return u >= 1 && u <= 6 ? labels[u - 1] : std::string_view{};
}

inline std::string_view HeatUnitLabel(const SharedCalcState& s) {
  static constexpr std::string_view labels[] = {"J", "Kcal"};
  const int u = s.Unit.HeatUnit;
  return u >= 1 && u <= 2 ? labels[u - 1] : std::string_view{};
}

}  // namespace tervale
