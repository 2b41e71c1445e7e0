#include "purecomp/pure_graph.h"

#include <cmath>

namespace tervale {
namespace {

double Quadratic(const std::array<double, 4>& c, double tK) {
  return c[1] + c[2] * tK + c[3] * tK * tK;
}

}  // namespace

PureGraphData MakePureComponentGraph(const SharedCalcState& s, int plot) {
  const auto& p = s.PureComp;
  PureGraphData g;
  g.tAxisMin = std::floor(p.PropTempLow / 10) * 10;
  g.tAxisMax = std::floor(p.PropTempHigh / 10 + 0.9) * 10;
  for (int k = 0; k < 5; ++k) g.tTicks[k] = g.tAxisMin + (g.tAxisMax - g.tAxisMin) * k / 4;
  auto antoine = [&](double tC) {
    return std::pow(10.0, p.PropAntoineA - p.PropAntoineB / (tC + p.PropAntoineC));
  };
  switch (plot) {
    case 1:
      g.valueMin = antoine(p.PropTempLow);
      g.valueMax = antoine(p.PropTempHigh);
      break;
    case 2:
      g.curveCount = 2;
      g.valueMin = p.GridCpLMin;
      g.valueMax = p.GridCpLMax;
      break;
    case 3:
      g.valueMin = p.GridDenMin;
      g.valueMax = p.GridDenMax;
      break;
    default:
      g.valueMin = p.GridHvMin;
      g.valueMax = p.GridHvMax;
      break;
  }
  for (int i = 0; i <= kPureGraphSegments; ++i) {
    const double tC = g.tAxisMin + (g.tAxisMax - g.tAxisMin) * i / kPureGraphSegments;
    const double tK = tC + 273.15;
    g.t[i] = tC;
    switch (plot) {
      case 1:
        g.value[0][i] = antoine(tC);
        break;
      case 2:
        g.value[0][i] =
            p.PropCp0[1] + p.PropCp0[2] * tK + p.PropCp0[3] * tK * tK + p.PropCp0[4] * tK * tK * tK;
        g.value[1][i] = Quadratic(p.PropCpL, tK);
        break;
      case 3:
        g.value[0][i] = Quadratic(p.PropDenPoly, tK);
        break;
      default:
        g.value[0][i] = Quadratic(p.PropHv, tK);
        break;
    }
  }
  return g;
}

}  // namespace tervale
