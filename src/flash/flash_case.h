#pragma once
#include "state/limits.h"

namespace tervale {

// The flash program's own case, part of SharedCalcState: temperature and pressure as the
// screen holds them (the user's units), the feed, the last phase compositions and the six
// further ideal-gas coefficients per component that the flash file keeps.
struct FlashCase {
  double FlashTemp = 0;
  double FlashPress = 0;
  Composition FeedZ{};
  Composition FlashX{};
  Composition FlashY{};
  CompArray FlashCp1{}, FlashCp2{}, FlashCp3{}, FlashCp4{}, FlashCp5{}, FlashCp6{};
  // Selected calculation: 0 bubble temperature, 1 dew temperature, 2 bubble pressure,
  // 3 dew pressure, 4 isothermal flash, 5 condensing curve.
  int CalcType = 0;
};

}  // namespace tervale
