#include <gtest/gtest.h>

#include <cmath>

#include "purecomp/pure_graph.h"

namespace tervale {
namespace {

TEST(PureCompGraph, AxesRangesAndCurvesFollowTheFits) {
  auto s = MakeSharedCalcState();
  auto& p = s->PureComp;
  p.PropTempLow = -15;
  p.PropTempHigh = 187;
  p.PropAntoineA = 6.87601;
  p.PropAntoineB = 1171.17;
  p.PropAntoineC = 224.41;
  p.PropCp0 = {0, 2.0, 0.1, 0, 0};
  p.PropCpL = {0, 30, 0.05, 0};
  p.GridCpLMin = 40;
  p.GridCpLMax = 55;
  const PureGraphData g1 = MakePureComponentGraph(*s, 1);
  EXPECT_EQ(g1.tAxisMin, -20);  // Int rounds down
  EXPECT_EQ(g1.tAxisMax, 190);
  EXPECT_EQ(g1.tTicks[4], 190);
  EXPECT_EQ(g1.t[0], -20);
  EXPECT_EQ(g1.t[200], 190);
  EXPECT_NEAR(g1.valueMin, std::pow(10.0, 6.87601 - 1171.17 / (-15 + 224.41)), 1e-12);
  const PureGraphData g2 = MakePureComponentGraph(*s, 2);
  EXPECT_EQ(g2.curveCount, 2);
  EXPECT_EQ(g2.valueMax, 55);
  EXPECT_NEAR(g2.value[0][0], 2.0 + 0.1 * 253.15, 1e-12);
  EXPECT_NEAR(g2.value[1][200], 30 + 0.05 * 463.15, 1e-12);
}

}  // namespace
}  // namespace tervale
