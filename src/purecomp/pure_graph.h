#pragma once
#include <array>

#include "state/shared_state.h"

namespace tervale {

inline constexpr int kPureGraphSegments = 200;

// The data of one of the four plots of the estimation's graph screen: the temperature axis in
// C from Int(low/10)*10 to Int(high/10 + 0.9)*10 with five ticks, the value range, and the curves
// drawn in 200 segments over that axis (index 0..200).
struct PureGraphData {
  double tAxisMin = 0, tAxisMax = 0;
  std::array<double, 5> tTicks{};
  double valueMin = 0, valueMax = 0;
  int curveCount = 1;  // 2 for the heat capacities: Cp0 then CpL
  std::array<double, kPureGraphSegments + 1> t{};
  std::array<std::array<double, kPureGraphSegments + 1>, 2> value{};
};

// plot 1 vapour pressure (mmHg) from the Antoine constants, its range from the two ends of the
// estimation range; 2 the heat capacities from PropCp0 and PropCpL, range of GridCpL; 3 the
// liquid density polynomial, range of GridDen; 4 the latent heat polynomial, range of GridHv.
PureGraphData MakePureComponentGraph(const SharedCalcState& s, int plot);

}  // namespace tervale
