#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "common/scratch.h"
#include "state/errors.h"
#include "state/shared_state.h"
#include "unifac/unifac_model.h"

namespace tervale {
namespace {

// The state with the delivered UNIFAC.PAR read, English messages recorded.
class Unifac : public ::testing::Test {
 protected:
  void SetUp() override {
    s->LanguageFlag = 1;
    s->Dialogs = &d;
    ReadUnifacParameterFile(*s, std::filesystem::path(TERVALE_SOURCE_DIR) / "data" / "UNIFAC.PAR");
  }
  std::unique_ptr<SharedCalcState> s = MakeSharedCalcState();
  RecordingDialogs d;
};

TEST_F(Unifac, ParameterFileReadsSubgroupsAndMatrix) {
  const auto& u = s->Unifac;
  EXPECT_EQ(u.NSubGroup, 100);
  EXPECT_EQ(u.NMainGroup, 47);
  EXPECT_EQ(u.SubGroupName[10], "ACH");
  EXPECT_EQ(u.SubGroupMain[10], 3);
  EXPECT_EQ(u.SubGroupName[16], "CH3OH");
  EXPECT_EQ(u.SubGroupMain[16], 6);
  EXPECT_DOUBLE_EQ(u.SubGroupR[17], 0.92);
  EXPECT_DOUBLE_EQ(u.SubGroupQ[17], 1.4);
  EXPECT_EQ(u.MainGroupName[1], "CH2");
  EXPECT_EQ(u.MainGroupName[7], "H2O");
  EXPECT_DOUBLE_EQ(u.InteractionA[6][7], -181);
  EXPECT_DOUBLE_EQ(u.InteractionA[7][6], 289.6);
  for (int m = 1; m <= u.NMainGroup; ++m) EXPECT_EQ(u.InteractionA[m][m], 0) << m;
}

TEST_F(Unifac, BadParameterFilesLeaveTheTableAsItWas) {
  const testcli::ScratchDir dir("unifac");
  // Missing; a subgroup line cut short; more than 100 subgroups; a main group above 50.
  for (const char* text : {"", "2,\"t\"\n\"CH3\",1,0.9011,0.848\n\"CH2\",1,0.6744\n", "101,\"t\"\n",
                           "1,\"t\"\n\"X\",51,1,1\n"}) {
    if (*text) std::ofstream(dir / "UNIFAC.PAR") << text;
    EXPECT_THROW(ReadUnifacParameterFile(*s, dir / "UNIFAC.PAR"), FileReadError) << text;
  }
  EXPECT_EQ(s->Unifac.NSubGroup, 100);
  EXPECT_EQ(s->Unifac.NMainGroup, 47);
  EXPECT_EQ(s->Unifac.SubGroupName[16], "CH3OH");
}

TEST_F(Unifac, CaseGroupRegistersOnceAndRefusesAnEleventh) {
  EXPECT_EQ(AddCaseGroup(*s, 5), 1);
  EXPECT_EQ(AddCaseGroup(*s, 3), 2);
  EXPECT_EQ(AddCaseGroup(*s, 5), 1);
  EXPECT_EQ(s->Unifac.NCaseGroup, 2);
  for (int g = 20; g < 28; ++g) EXPECT_GT(AddCaseGroup(*s, g), 0);
  EXPECT_EQ(s->Unifac.NCaseGroup, 10);
  EXPECT_EQ(AddCaseGroup(*s, 40), 0);
  EXPECT_EQ(AddCaseGroup(*s, 27), 10);

  // Through the screen: a subgroup in both components sits once with both counts; counts are
  // truncated.
  UnifacScreenInput in = UnifacExample(1);
  in.Count[1][1] = "1.7";
  in.Count[1][2] = "2";
  ASSERT_TRUE(PrepareUnifacCase(*s, in));
  const auto& u = s->Unifac;
  EXPECT_EQ(u.NCaseGroup, 3);
  EXPECT_EQ(u.CaseGroupId[1], 1);
  EXPECT_EQ(u.CaseGroupCount[1][1], 1);
  EXPECT_EQ(u.CaseGroupCount[1][2], 2);
  EXPECT_EQ(u.CaseGroupId[2], 16);
  EXPECT_EQ(u.CaseGroupId[3], 17);
  EXPECT_NEAR(u.ComponentR[1], 0.9011 + 1.4311, 1e-12);
  EXPECT_NEAR(u.ComponentQ[2], 2 * 0.848 + 1.4, 1e-12);
  EXPECT_NEAR(u.ComponentL[1], 4 * u.ComponentR[1] - 5 * u.ComponentQ[1] + 1, 1e-12);

  // Eleven distinct subgroups through the screen.
  UnifacScreenInput many = UnifacExample(1);
  for (int g = 1; g <= 9; ++g) many.Count[g][1] = "1";
  d.messages.clear();
  EXPECT_FALSE(PrepareUnifacCase(*s, many));
  ASSERT_EQ(d.messages.size(), 1u);
  EXPECT_NE(d.messages[0].find("at most 10"), std::string::npos);
}

TEST_F(Unifac, CaseChecksInOrderWithTheirMessages) {
  auto refused = [&](UnifacScreenInput in) {
    d.messages.clear();
    EXPECT_FALSE(RunUnifacEstimate(*s, in));
    return d.messages;
  };
  using Texts = std::vector<std::string>;
  struct Check {
    std::function<void(UnifacScreenInput&)> change;
    Texts messages;
  };
  const Check checks[] = {
      {[](UnifacScreenInput& in) { in.Name[2] = " "; }, {"No Component Name"}},
      {[](UnifacScreenInput& in) { in.C[1] = "0"; }, {"No Antoine's parameters"}},
      {[](UnifacScreenInput& in) { in.Press = ""; }, {"No Pressure data"}},
      {[](UnifacScreenInput& in) { in.Temp = ""; }, {"No Temperaturee data"}},
      {[](UnifacScreenInput& in) { in.Count[17][2] = ""; }, {"No group data"}},
      // ACOH (main 8) has no parameter with HCOO (main 12): each direction has its message.
      {[](UnifacScreenInput& in) {
         in.Count[18][1] = in.Count[24][2] = "1";
         in.Count[16][1] = in.Count[17][2] = "";
       },
       {"相互作用ﾊﾟﾗﾒｰﾀ a8,12が登録されていません。",
        "相互作用ﾊﾟﾗﾒｰﾀ a12,8が登録されていません。"}},
  };
  for (const Check& c : checks) {
    UnifacScreenInput in = UnifacExample(1);
    c.change(in);
    EXPECT_EQ(refused(in), c.messages);
  }
  // Exactly -9000 counts as registered; below it the pair is missing.
  s->Unifac.InteractionA[6][7] = -9000;
  d.messages.clear();
  EXPECT_TRUE(PrepareUnifacCase(*s, UnifacExample(1)));
  s->Unifac.InteractionA[6][7] = -9000.5;
  EXPECT_EQ(refused(UnifacExample(1)), Texts{"相互作用ﾊﾟﾗﾒｰﾀ a6,7が登録されていません。"});
  s->Unifac.InteractionA[6][7] = -181;
  // Japanese texts in Japanese mode.
  s->LanguageFlag = 0;
  UnifacScreenInput in = UnifacExample(1);
  in.Name[1] = "";
  EXPECT_EQ(refused(in), Texts{"成分名が未入力です"});
}

TEST_F(Unifac, IdealPairGivesUnitParametersAndAntoineBoilingPoints) {
  // Two components built of the same groups: no residual part at all.
  UnifacScreenInput in = UnifacExample(1);
  in.Count[16][1] = in.Count[17][2] = "";
  in.Count[1][1] = in.Count[1][2] = "1";
  in.Count[2][1] = in.Count[2][2] = "2";
  ASSERT_TRUE(RunUnifacEstimate(*s, in));
  const auto& u = s->Unifac;
  const double uu = 1 - std::log(u.EndGammaRes[2][1]), v = 1 - std::log(u.EndGammaRes[1][2]);
  EXPECT_NEAR(uu + v, 2, 1e-12);
  EXPECT_EQ(u.DerivedWilson1, 1.0);
  EXPECT_DOUBLE_EQ(u.DerivedWilson2, uu);
  for (int n = 1; n <= kUnifacPoints; ++n) {
    EXPECT_NEAR(u.CurveGamma[n][1], 1, 1e-12);
    EXPECT_NEAR(u.CurveGamma[n][2], 1, 1e-12);
  }
  EXPECT_TRUE(d.messages.empty());
}

double AntoineBoilingPoint(double a, double b, double c, double p) {
  return b / (a - std::log10(p)) - c;
}

TEST_F(Unifac, MethanolWaterExampleMeetsAntoineAndTheTextbookForm) {
  ASSERT_TRUE(RunUnifacEstimate(*s, UnifacExample(1)));
  const auto& u = s->Unifac;
  EXPECT_TRUE(d.messages.empty());
  // The ends: pure water and pure methanol boil at their Antoine temperatures.
  EXPECT_NEAR(u.CurveT[kUnifacPoints], AntoineBoilingPoint(7.87863, 1473.11, 230.0, 760), 1e-6);
  EXPECT_NEAR(u.CurveT[1], AntoineBoilingPoint(8.07131, 1730.63, 233.426, 760), 1e-6);
  EXPECT_DOUBLE_EQ(u.CurveY[kUnifacPoints], 1.0);
  EXPECT_DOUBLE_EQ(u.CurveY[1], 0.0);
  EXPECT_DOUBLE_EQ(u.CurveX[101], 0.5);
  // Published UNIFAC values at 60 C: methanol in water about 2.2, water in methanol about 1.6.
  EXPECT_NEAR(u.CurveGamma[1][1], 2.2, 0.3);
  EXPECT_NEAR(u.CurveGamma[kUnifacPoints][2], 1.6, 0.3);
  for (int n = 2; n <= kUnifacPoints; ++n) {
    EXPECT_LT(u.CurveT[n], u.CurveT[n - 1]);  // methanol lowers the boiling point
    EXPECT_GE(u.CurveY[n], u.CurveX[n]);      // no azeotrope
  }
  EXPECT_EQ(u.CurveTMax, u.CurveT[1]);
  EXPECT_EQ(u.CurveTMin, u.CurveT[kUnifacPoints]);
  // Derived Wilson pair solves the two limits with the residual factors.
  const double uu = 1 - std::log(u.EndGammaRes[2][1]), v = 1 - std::log(u.EndGammaRes[1][2]);
  double p = u.DerivedWilson1;
  EXPECT_NEAR(std::log(p) + std::exp(v - p) - uu, 0, 1e-4);
  EXPECT_NEAR(u.DerivedWilson2, uu - std::log(p), 1e-12);

  // x1 = 0.3 at the initial temperature of 60 C, worked out with the usual volume and area
  // fractions (phi/x form of the combinatorial part) and the two-group residual part.
  const double x[3] = {0, 0.3, 0.7};
  const double r[3] = {0, 1.4311, 0.92}, q[3] = {0, 1.432, 1.4};
  const double t = 60 + 273.15;
  const double psi12 = std::exp(-u.InteractionA[6][7] / t);
  const double psi21 = std::exp(-u.InteractionA[7][6] / t);
  const double sumR = x[1] * r[1] + x[2] * r[2], sumQ = x[1] * q[1] + x[2] * q[2];
  double lnGamma[3] = {};
  for (int i = 1; i <= 2; ++i) {
    const double phi = r[i] * x[i] / sumR, theta = q[i] * x[i] / sumQ;
    const double l1 = 5 * (r[1] - q[1]) - (r[1] - 1), l2 = 5 * (r[2] - q[2]) - (r[2] - 1);
    lnGamma[i] = std::log(phi / x[i]) + 5 * q[i] * std::log(theta / phi) + (i == 1 ? l1 : l2) -
                 phi / x[i] * (x[1] * l1 + x[2] * l2);
  }
  // One group per component: the group fractions are the mole fractions, and a pure component's
  // own group has ln Gamma = 0.
  const double th1 = q[1] * x[1] / sumQ, th2 = q[2] * x[2] / sumQ;
  const double lnG1 = q[1] * (1 - std::log(th1 + th2 * psi21) - th1 / (th1 + th2 * psi21) -
                              th2 * psi12 / (th1 * psi12 + th2));
  const double lnG2 = q[2] * (1 - std::log(th1 * psi12 + th2) - th1 * psi21 / (th1 + th2 * psi21) -
                              th2 / (th1 * psi12 + th2));
  const int n = 61;
  ASSERT_DOUBLE_EQ(u.CurveX[n], 0.3);
  EXPECT_NEAR(u.CurveGamma[n][1], std::exp(lnGamma[1] + lnG1), 1e-12);
  EXPECT_NEAR(u.CurveGamma[n][2], std::exp(lnGamma[2] + lnG2), 1e-12);
  // The activity coefficients belong to the initial temperature.
  UnifacScreenInput hot = UnifacExample(1);
  hot.Temp = "90";
  double before = u.CurveGamma[1][1];
  ASSERT_TRUE(RunUnifacEstimate(*s, hot));
  EXPECT_NE(u.CurveGamma[1][1], before);
}

TEST_F(Unifac, BenzeneMethanolHasAnAzeotrope) {
  ASSERT_TRUE(RunUnifacEstimate(*s, UnifacExample(2)));
  const auto& u = s->Unifac;
  int crossings = 0;
  for (int n = 2; n < kUnifacPoints; ++n)
    if ((u.CurveY[n] - u.CurveX[n]) * (u.CurveY[n + 1] - u.CurveX[n + 1]) < 0) ++crossings;
  EXPECT_EQ(crossings, 1);
  EXPECT_GT(u.CurveGamma[kUnifacPoints][2], 5);  // methanol dilute in benzene

  UnifacGraphData g = DrawUnifacGraph(*s, 10000, 7000);
  EXPECT_EQ(g.Left, 250);
  EXPECT_EQ(g.Right, 9600);
  // The axis covers the dilute methanol's coefficient, the largest of the curves.
  EXPECT_EQ(g.GammaTop, 20);
  EXPECT_GE(g.GammaTop, u.CurveGamma[kUnifacPoints][2]);
  ASSERT_FALSE(g.YCurve.empty());
  EXPECT_EQ(g.YCurve.front().size(), 201u);

  auto r = UnifacMouseReadout(*s, g, g.Left + (g.Right - g.Left) / 2);
  ASSERT_TRUE(r.has_value());
  EXPECT_EQ(r->N, 101);
  EXPECT_EQ(r->XText, ".50000");
  EXPECT_EQ(r->TempText.substr(0, 5), "Temp=");
  EXPECT_FALSE(UnifacMouseReadout(*s, g, g.Left - 100).has_value());
  EXPECT_FALSE(UnifacMouseReadout(*s, g, g.Right + 100).has_value());
  EXPECT_EQ(UnifacMouseReadout(*s, g, g.Right)->N, 201);
}

TEST(UnifacGraph, GammaAxisAndClippingAtTheTop) {
  auto s = MakeSharedCalcState();
  auto& u = s->Unifac;
  for (int n = 1; n <= kUnifacPoints; ++n) {
    double x = (1.0 / 200.0) * (n - 1);
    u.CurveX[n] = u.CurveY[n] = x;
    u.CurveT[n] = 100 - 30 * x;
    u.CurveGamma[n][1] = 1 + 100 * (0.5 - x) * (0.5 - x) * 4;  // 101 at both ends, 1 in the middle
    u.CurveGamma[n][2] = 1;
  }
  u.CurveGamma[50][2] = -999;  // a missing sample splits the curve
  u.CurveTMax = 100;
  u.CurveTMin = 70;
  UnifacGraphData g = DrawUnifacGraph(*s);
  EXPECT_EQ(g.GammaTop, 50);
  EXPECT_EQ(g.TempTop, 110);
  EXPECT_EQ(g.TempBottom, 70);
  EXPECT_EQ(g.TempTick, 8);
  ASSERT_EQ(g.Gamma1Curve.size(), 1u);
  const Polyline& line = g.Gamma1Curve.front();
  EXPECT_DOUBLE_EQ(line.front().v, 50);
  EXPECT_DOUBLE_EQ(line.back().v, 50);
  EXPECT_NEAR(line.front().x, 0.5 - std::sqrt(49.0 / 400.0), 0.005);
  for (const auto& p : line) EXPECT_LE(p.v, 50);
  EXPECT_EQ(g.Gamma1Label.v, 50);
  EXPECT_EQ(g.Gamma2Curve.size(), 2u);
  // Exactly 20 goes to the 50 axis; just under 2 stays at 2.
  for (int n = 1; n <= kUnifacPoints; ++n) u.CurveGamma[n][1] = 1;
  u.CurveGamma[7][1] = 20;
  EXPECT_EQ(DrawUnifacGraph(*s).GammaTop, 50);
  u.CurveGamma[7][1] = 1.99;
  EXPECT_EQ(DrawUnifacGraph(*s).GammaTop, 2);
}

TEST_F(Unifac, UnreachablePressureEndsWithAMessage) {
  UnifacScreenInput in = UnifacExample(1);
  in.Press = "-5";  // no temperature gives a negative pressure
  ASSERT_TRUE(RunUnifacEstimate(*s, in));
  ASSERT_FALSE(d.messages.empty());
  EXPECT_NE(d.messages[0].find("did not converge"), std::string::npos);
}

TEST_F(Unifac, ScreenTablePlacesAndInteractionCells) {
  // Subgroup, block, row: four blocks of 22 rows.
  for (auto [group, block, row] : {std::array{1, 1, 1}, {22, 1, 22}, {23, 2, 1}, {88, 4, 22}}) {
    EXPECT_EQ(UnifacGroupTableCell(group).Block, block) << group;
    EXPECT_EQ(UnifacGroupTableCell(group).Row, row) << group;
  }
  EXPECT_EQ(UnifacGroupTableCell(89).Block, 0);
  EXPECT_EQ(UnifacInteractionCellText(*s, 6, 7), "-181");
  EXPECT_EQ(UnifacInteractionCellText(*s, 8, 12), "");
  s->Unifac.InteractionA[1][2] = -9500;  // registered for the grid, missing for the check
  EXPECT_EQ(UnifacInteractionCellText(*s, 1, 2), "-9500");
  EXPECT_EQ(UnifacReferenceText().substr(0, 6), "出典");
}

}  // namespace
}  // namespace tervale
