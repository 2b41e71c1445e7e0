#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "purecomp/pure_engine.h"
#include "state/errors.h"
#include "state/shared_state.h"

namespace tervale {
namespace {

constexpr int kJ = static_cast<int>(GroupMethod::Joback);

struct Fixture {
  std::unique_ptr<SharedCalcState> state = MakeSharedCalcState();
  RecordingDialogs dialogs;
  SharedCalcState& s;
  PureComponentEstimate& p;
  Fixture() : s(*state), p(state->PureComp) {
    s.Dialogs = &dialogs;
    s.LanguageFlag = 1;
  }
  void Count(GroupMethod m, int row, int n) { p.GroupCount[static_cast<int>(m)][row] = n; }
  // The messages shown so far, which are then forgotten.
  std::vector<std::string> Messages() { return std::exchange(dialogs.messages, {}); }
};

using Texts = std::vector<std::string>;

// n-hexane: 2 CH3 and 4 CH2 in every method.
PureComponentInput Hexane(Fixture& f) {
  f.Count(GroupMethod::Lydersen, 1, 6);
  f.Count(GroupMethod::Ambrose, 1, 6);
  f.Count(GroupMethod::Joback, 2, 2);
  f.Count(GroupMethod::Joback, 3, 4);
  f.Count(GroupMethod::KlincewiczReid, 1, 2);
  f.Count(GroupMethod::KlincewiczReid, 2, 4);
  f.Count(GroupMethod::Fedors, 1, 2);
  f.Count(GroupMethod::Fedors, 2, 4);
  f.Count(GroupMethod::RihaniDoraiswamy, 2, 2);
  f.Count(GroupMethod::RihaniDoraiswamy, 3, 4);
  PureComponentInput in;
  in.Name = "n-Hexane";
  in.MolWeight = 86.177;
  in.TotalAtom = 20;
  in.HasTbC = true;
  in.TbC = 68.73;
  in.TempLow = 0;
  in.TempHigh = 200;
  return in;
}

// Runs the estimate and says how it ended: "refused: <message>", "fault: <message>" or "" when
// it ran to the end.
std::string Outcome(Fixture& f, const PureComponentInput& in) {
  try {
    RunPureComponentEstimation(f.s, in);
  } catch (const InputRefused& e) {
    return std::string("refused: ") + e.what();
  } catch (const FatalCondition& e) {
    return std::string("fault: ") + e.what();
  }
  return "";
}

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(PureCompTables, RowsHeadingsTextsAndConstantsStandAsTheFormsList) {
  using D = std::array<double, 4>;
  struct Expect {
    GroupMethod m;
    size_t rows;
    int nConst;
    std::vector<int> headings;
    // First and last rows, and rows whose texts repeat within a table (row r is index r - 1).
    std::vector<std::pair<int, std::string_view>> texts;
    std::vector<std::pair<int, D>> deltas;
  };
  // clang-format off
  const Expect expect[] = {
      {GroupMethod::Lydersen, 37, 3, {},
       {{0, "-CH3,-CH2-"}, {17, "-OH(alchols)"}, {36, ">B-"}},
       {{0, {0.020, 0.227, 55.0, 0}}, {36, {0.03, 0, 0, 0}}}},
      {GroupMethod::Ambrose, 51, 3, {},
       {{0, "炭素原子数(alkyl)"}, {6, "-O-"}, {31, "-O-"}, {50, "double bond(ring)"}},
       {{31, {0.090, 0, -15.0, 0}}}},
      {GroupMethod::Joback, 46, 3, {1, 12, 18, 23, 34, 43},
       {{0, "Nonring increments"}, {3, ">CH-"}, {13, ">CH-"}, {42, "Sulfer increments"},
        {45, "-S-   (ring)"}},
       {{13, {0.0122, 0.0004, 38.0, 0}}, {45, {0.0019, 0.0051, 38.0, 0}}}},
      {GroupMethod::KlincewiczReid, 35, 3, {}, {{34, "-NO2"}}, {{5, {16.416, -0.136, 8.95, 0}}}},
      {GroupMethod::Fedors, 49, 2, {},
       {{3, ">CH- (隣接した>CH-を除く)"}, {48, "conjugate per = bond"}},
       {{48, {0.13, 0.3, 0, 0}}}},
      {GroupMethod::RihaniDoraiswamy, 53, 4, {1, 18, 22, 29, 37, 44, 49},
       {{0, "脂肪族炭化水素原子団"}, {51, "-Br"}, {52, "-I"}},
       {{52, {3.2651, 0.4901, -0.0539, 0.001782}}}},
  };
  // clang-format on
  for (const auto& e : expect) {
    const GroupTable& t = GetGroupTable(e.m);
    SCOPED_TRACE(t.key);
    ASSERT_EQ(t.rows.size(), e.rows);
    EXPECT_EQ(t.nConst, e.nConst);
    EXPECT_EQ(FindGroupTable(t.key), &t);
    std::vector<int> headings;
    for (size_t r = 1; r <= t.rows.size(); ++r)
      if (t.rows[r - 1].heading) headings.push_back(static_cast<int>(r));
    EXPECT_EQ(headings, e.headings);
    for (const auto& [i, text] : e.texts) EXPECT_EQ(t.rows[i].text, text) << i;
    for (const auto& [i, delta] : e.deltas) EXPECT_EQ(t.rows[i].delta, delta) << i;
  }
  EXPECT_EQ(FindGroupTable("vetere"), nullptr);
  EXPECT_EQ(GetGroupTable(GroupMethod::Ambrose).rows[50].delta[0], -0.300);
  EXPECT_EQ(GetGroupTable(GroupMethod::RihaniDoraiswamy).headers[1], "b*10^2");
}

TEST(PureCompGroups, JobackOnTwoFourDimethylphenolMatchesThePublishedEstimate) {
  // 2,4-dimethylphenol, C8H10O (19 atoms), Tb 484.13 K: 2 -CH3, 3 ring =CH-, 3 ring =C<,
  // 1 phenolic -OH. Poling, Prausnitz and O'Connell's worked Joback example gives
  // Tc 706.6 K, Pc 43.22 bar, Vc 341.5 cm3/mol.
  Fixture f;
  ASSERT_EQ(GetGroupTable(GroupMethod::Joback).rows[15].text, "=CH-");
  ASSERT_EQ(GetGroupTable(GroupMethod::Joback).rows[24].text, "-OH   (phenol)");
  // Row 1, a heading, counts as zero.
  for (auto [row, n] : {std::pair{2, 2}, {16, 3}, {17, 3}, {25, 1}, {1, 99}})
    f.Count(GroupMethod::Joback, row, n);
  f.p.PropMolWeight = 122.167;
  f.p.PropTotalAtom = 19;
  f.p.PropTbK = 484.13;
  EstimateCriticalConstants(f.s, GroupMethod::Joback);
  EXPECT_NEAR(f.p.PropTc, 706.6, 0.05);
  EXPECT_NEAR(f.p.PropPc, 43.22, 0.01);
  EXPECT_NEAR(f.p.PropVc, 341.5, 1e-9);
  EXPECT_DOUBLE_EQ(f.p.PropTbK, 484.13);
  // With no atoms entered only the 0.113 term stands.
  f.p.PropTotalAtom = 0;
  EstimateCriticalConstants(f.s, GroupMethod::Joback);
  EXPECT_NEAR(f.p.PropPc, std::pow(0.113 - 0.0217, -2.0), 1e-9);
}

TEST(PureCompGroups, TbFromTcFlagInBothDirections) {
  for (int m = 0; m < 4; ++m) {
    Fixture f;
    Hexane(f);
    const auto method = static_cast<GroupMethod>(m);
    f.p.PropMolWeight = 86.177;
    f.p.PropTotalAtom = 20;
    f.p.PropTbK = 341.88;
    f.p.PropTbC = 68.73;
    EstimateCriticalConstants(f.s, method);
    const double tc = f.p.PropTc, pc = f.p.PropPc, vc = f.p.PropVc;
    EXPECT_GT(tc, 480) << m;
    EXPECT_LT(tc, 540) << m;
    EXPECT_DOUBLE_EQ(f.p.PropTbK, 341.88) << m;

    // Flag set: Tc stays as Fedors gave it, Tb follows from it; Pc and Vc as before.
    f.p.PropTbFromFedors = true;
    f.p.PropTc = 500.0;
    EstimateCriticalConstants(f.s, method);
    EXPECT_EQ(f.p.PropTc, 500.0) << m;
    EXPECT_DOUBLE_EQ(f.p.PropPc, pc) << m;
    EXPECT_DOUBLE_EQ(f.p.PropVc, vc) << m;
    EXPECT_DOUBLE_EQ(f.p.PropTbC, f.p.PropTbK - 273.15) << m;
    const double s1 = SumGroupContributions(f.s, method)[1];
    switch (method) {
      case GroupMethod::Lydersen:  // a true inverse
      case GroupMethod::Ambrose:
        f.p.PropTc = tc;
        EstimateCriticalConstants(f.s, method);
        EXPECT_NEAR(f.p.PropTbK, 341.88, 1e-9) << m;
        break;
      case GroupMethod::Joback:  // the Ambrose-type form, not the inverse of its own
        EXPECT_DOUBLE_EQ(f.p.PropTbK, 500.0 * (s1 + 1.242) / (s1 + 2.242));
        EXPECT_GT(std::abs(f.p.PropTbK - 500.0 * (0.584 + 0.965 * s1 - s1 * s1)), 10);
        break;
      default:  // Klincewicz-Reid: not divided by 1.55
        EXPECT_DOUBLE_EQ(f.p.PropTbK, 0.77 * 86.177 + 500.0 - 45.4 - s1);
        break;
    }
  }
}

TEST(PureCompGroups, FedorsAndRihaniDoraiswamy) {
  Fixture f;
  Hexane(f);
  f.p.PropTotalAtom = 0;
  EstimateFedors(f.s);
  EXPECT_DOUBLE_EQ(f.p.PropTc, 535 * std::log10(2 * 1.79 + 4 * 1.34));
  EXPECT_TRUE(f.p.PropTbFromFedors);
  f.Count(GroupMethod::Fedors, 3, 1);  // >CH-, delta2 -1.0
  f.p.PropTotalAtom = 5000;
  EstimateFedors(f.s);
  EXPECT_DOUBLE_EQ(f.p.PropTc, 535 * (std::log10(5000 - 1.0) - 3.5));

  EstimateRihaniDoraiswamy(f.s);
  EXPECT_DOUBLE_EQ(f.p.PropCp0[1], 2 * 0.6087 + 4 * 0.3945);
  EXPECT_DOUBLE_EQ(f.p.PropCp0[2], 0.01 * (2 * 2.1433 + 4 * 2.1363));
  EXPECT_DOUBLE_EQ(f.p.PropCp0[3], 0.0001 * (2 * -0.0852 + 4 * -0.1197));
  EXPECT_DOUBLE_EQ(f.p.PropCp0[4], 0.000001 * (2 * 0.001135 + 4 * 0.002596));
  // Ideal-gas heat capacity of n-hexane at 298.15 K is about 34 cal/mol/K.
  const double t = 298.15;
  const auto& c = f.p.PropCp0;
  EXPECT_NEAR(c[1] + c[2] * t + c[3] * t * t + c[4] * t * t * t, 34.2, 1.5);
}

TEST(PureCompEstimate, BlankBoilingPointGoesThroughFedorsThenTheGroupFormOrIsRefused) {
  Fixture f;
  PureComponentInput in = Hexane(f);
  in.HasTbC = false;  // a blank boiling point sends the estimate to Fedors
  in.TotalAtom = 0;
  in.TempHigh = 100;
  f.p.Methods.TcPcVc = 1;  // Ambrose
  RunPureComponentEstimation(f.s, in);
  const double tcFedors = 535 * std::log10(2 * 1.79 + 4 * 1.34);
  EXPECT_DOUBLE_EQ(f.p.PropTc, tcFedors);
  EXPECT_TRUE(f.p.PropTbFromFedors);
  EXPECT_NEAR(f.p.PropTbK, tcFedors / (1 + 1 / (1.242 + 6 * 0.138)), 1e-9);
  EXPECT_NEAR(f.p.PropTbC, f.p.PropTbK - 273.15, 1e-12);

  // With no Fedors group entered it is refused and the state stays as it was.
  f.p.GroupCount[static_cast<int>(GroupMethod::Fedors)] = {};
  f.p.PropTc = 123.0;
  f.p.PropName = "before";
  for (int atoms : {0, 20}) {
    in.TotalAtom = atoms;
    const std::string outcome = Outcome(f, in);
    EXPECT_TRUE(Has(outcome, "refused: ") && Has(outcome, "Fedors")) << outcome;
    EXPECT_EQ(f.p.PropTc, 123.0);
    EXPECT_EQ(f.p.PropName, "before");
    EXPECT_EQ(f.p.GroupCount[kJ][3], 4);
  }
  // A sum whose logarithm does not exist is refused too.
  f.Count(GroupMethod::Fedors, 5, 1);  // >C<, -0.22
  in.TotalAtom = 0;
  EXPECT_TRUE(Has(Outcome(f, in), "refused: "));
  EXPECT_EQ(f.p.PropTc, 123.0);
}

TEST(PureCompEstimate, HexaneEndToEndBoilsAtItsBoilingPoint) {
  for (int vp = 0; vp < 3; ++vp) {
    Fixture f;
    PureComponentInput in = Hexane(f);
    f.p.Methods.VaporPress = vp;
    f.p.Methods.Omega = vp == 1 ? 0 : 1;
    RunPureComponentEstimation(f.s, in);
    EXPECT_EQ(f.Messages(), Texts{});
    // Joback Tc of n-hexane; measured 507.6 K.
    EXPECT_NEAR(f.p.PropTc, 507.70, 0.01);
    EXPECT_NEAR(f.p.PropOmega, 0.30, 0.03);
    // Riedel-Plank-Miller and Lee-Kesler (with its own acentric factor) pass through the
    // boiling point at Pr = 1/Pc, i.e. 735.56 mmHg; the fitted Antoine curve stays close.
    const auto& p = f.p;
    const double pTb = EstimateVaporPressure(f.s, p.PropTbC);
    if (vp != 1) EXPECT_NEAR(pTb, 735.56, 1e-6) << vp;
    const double antoine =
        std::pow(10.0, p.PropAntoineA - p.PropAntoineB / (p.PropTbC + p.PropAntoineC));
    EXPECT_NEAR(antoine / pTb, 1.0, 0.01) << vp;
    for (int i = 1; i <= kGridPoints; ++i)
      ASSERT_TRUE(p.GridHasHv[i] && p.GridHasCpL[i] && p.GridHasDen[i]);
    // Liquid n-hexane at 0 C: 0.677 g/cc measured.
    EXPECT_NEAR(p.GridDen[1], 0.677, 0.05);
    EXPECT_NEAR(p.GridTempC[51], 200, 1e-12);
  }
}

TEST(PureCompEstimate, RangeAboveTcBelowAbsoluteZeroAndZeroTcAreMendedWithAMessage) {
  Fixture f;
  PureComponentInput in = Hexane(f);
  in.TempHigh = 400;
  RunPureComponentEstimation(f.s, in);
  EXPECT_EQ(f.Messages(), Texts{"臨界温度Tcを越えています。"});
  EXPECT_DOUBLE_EQ(f.p.PropTempHigh, f.p.PropTc - 273.15);
  // The last point has Tr = 1: it is left out and the fits run on 50 points.
  EXPECT_NEAR(f.p.GridTempK[51] / f.p.PropTc, 1.0, 1e-12);
  EXPECT_FALSE(f.p.GridHasHv[51] || f.p.GridHasCpL[51] || f.p.GridHasDen[51]);
  EXPECT_TRUE(f.p.GridHasHv[50]);
  EXPECT_EQ(f.p.FitPointCount, 50);

  f.p.PropTempLow = -300;
  f.p.PropTempHigh = 100;
  MakeTemperatureGrid(f.s);
  EXPECT_EQ(f.Messages(), Texts{"-273.15℃以下です。"});
  EXPECT_EQ(f.p.PropTempLow, -273.15);
  EXPECT_EQ(f.p.GridTempK[1], 0.0);
  EXPECT_NEAR(f.p.GridTempC[51], 100, 1e-12);
  // At 0 K the vapour pressure divides by a zero reduced temperature: the estimate ends with
  // an arithmetic fault instead of going on with an infinity.
  in.TempLow = -300;
  in.TempHigh = 100;
  EXPECT_THROW(RunPureComponentEstimation(f.s, in), FatalCondition);
  EXPECT_EQ(f.Messages(), Texts{"-273.15℃以下です。"});
  // A zero Tc gives a zero acentric factor.
  f.p.PropTc = 0;
  f.p.PropTbK = 300;
  EXPECT_EQ(CalcAcentricFactor(f.s), 0.0);
  EXPECT_EQ(f.Messages(), Texts{"Tcが 0のため偏心因子ωが推算できません。"});
}

TEST(PureCompEstimate, LymanDannerBlankIsSkippedAndGivenIsAnArithmeticFault) {
  Fixture f;
  PureComponentInput in = Hexane(f);
  f.p.Methods.CpLiquid = 1;
  f.p.PropCpL = {0, 1, 2, 3};
  in.HasCpL_R = true;  // K blank
  in.CpL_R = 0.5;
  RunPureComponentEstimation(f.s, in);
  EXPECT_EQ(f.Messages(),
            Texts{"Lyman-Danner式はＲ，Ｋパラメータが入力されていないため計算できない。"});
  EXPECT_EQ(f.p.PropCpL, (std::array<double, 4>{0, 1, 2, 3}));
  EXPECT_NE(f.p.PropHv[1], 0.0);  // the estimate went on

  in.HasCpL_K = true;
  in.CpL_K = 0.1;
  const std::string outcome = Outcome(f, in);
  EXPECT_TRUE(Has(outcome, "fault: ") && Has(outcome, "Lyman-Danner") &&
              Has(outcome, "division by zero"))
      << outcome;
}

TEST(PureCompEstimate, SpencerDannerPassesThroughItsReferenceAndRackettFitIsExact) {
  Fixture f;
  PureComponentInput in = Hexane(f);
  f.p.Methods.LiqDensity = 1;
  RunPureComponentEstimation(f.s, in);
  EXPECT_EQ(f.Messages(),
            Texts{"Spencer-Danner式はRohRef, Trefデータが入力されていないため計算できない。"});

  in.HasLiqD_Dref = in.HasLiqD_Tref = true;
  in.LiqD_Dref = 0.6594;
  in.LiqD_Tref = 20;
  in.TempLow = 20;
  RunPureComponentEstimation(f.s, in);
  EXPECT_EQ(f.Messages(), Texts{});
  const auto& p = f.p;
  EXPECT_NEAR(p.GridDen[1], 0.6594, 1e-12);  // the first grid point is the reference
  // The Spencer-Danner density is exactly of the Rackett form: A = Pc MW/(82.05 Tc Zra),
  // B = Zra.
  EXPECT_NEAR(p.PropDenRackettB / p.PropZra, 1.0, 1e-9);
  EXPECT_NEAR(p.PropDenRackettA / (p.PropPc * p.PropMolWeight / (82.05 * p.PropTc * p.PropZra)),
              1.0, 1e-9);
  EXPECT_GT(p.PropZra, 0.2);
  EXPECT_LT(p.PropZra, 0.3);
}

TEST(PureCompFit, LeastSquaresRecoversExactDataAndStopsOnASingularSystem) {
  FitBasisArray basis{};
  FitValueArray values{};
  std::array<double, kMaxFitCoef + 1> coef{};
  for (int i = 1; i <= 51; ++i) {
    const double t = 250 + 4.0 * i;
    basis[1][i] = 1;
    basis[2][i] = t;
    basis[3][i] = t * t;
    values[i] = 1.25 - 3.5e-3 * t + 7.0e-6 * t * t;
  }
  FitLinearLeastSquares(3, 51, basis, values, coef);
  EXPECT_NEAR(coef[1], 1.25, 1e-8);
  EXPECT_NEAR(coef[2], -3.5e-3, 1e-10);
  EXPECT_NEAR(coef[3], 7.0e-6, 1e-13);
  // A diagonal already largest in its column needs no swap.
  FitLinearLeastSquares(2, 51, basis, values, coef);
  EXPECT_TRUE(std::isfinite(coef[1]) && std::isfinite(coef[2]));

  for (int i = 1; i <= 51; ++i) basis[3][i] = 2 * basis[1][i];  // dependent columns
  try {
    FitLinearLeastSquares(3, 51, basis, values, coef);
    FAIL() << "singular fit accepted";
  } catch (const FatalCondition& e) {
    EXPECT_STREQ(e.what(), "最小自乗法でPivotが1E-10になった。プログラムを終了する。");
  }
  EXPECT_THROW(FitLinearLeastSquares(3, 0, basis, values, coef), FatalCondition);
}

TEST(PureCompFit, AntoineFitRecoversExactConstants) {
  Fixture f;
  const double a = 6.87601, b = 1171.17, c = 224.41;
  for (int i = 1; i <= kGridPoints; ++i) {
    f.p.GridTempC[i] = -10 + 3.0 * (i - 1);
    f.p.GridVaporPress[i] = std::pow(10.0, a - b / (f.p.GridTempC[i] + c));
  }
  FitAntoineToGridPressures(f.s);
  EXPECT_NEAR(f.p.PropAntoineA, a, 1e-6);
  EXPECT_NEAR(f.p.PropAntoineB, b, 1e-3);
  EXPECT_NEAR(f.p.PropAntoineC, c, 1e-4);
}

TEST(PureCompFit, EqualRangeEndsTheEstimateAsSingular) {
  // 51 equal points leave the Antoine normal equations singular, whatever the rounding of
  // their means makes of the determinant: the estimate ends there, with no constants made up.
  for (double t : {50.0, 47.3, 123.456, -12.7, 0.1}) {
    Fixture f;
    PureComponentInput in = Hexane(f);
    in.TempLow = in.TempHigh = t;
    const std::string outcome = Outcome(f, in);
    EXPECT_TRUE(Has(outcome, "fault: ") && Has(outcome, "Antoine")) << t << outcome;
  }
}

TEST(PureCompEstimate, NoNonFiniteValueGoesOnWithoutAFault) {
  Fixture f;
  PureComponentInput in = Hexane(f);
  // A zero molecular weight gives Lydersen's Pc = 0, whose logarithm does not exist.
  f.p.Methods.TcPcVc = 0;
  in.MolWeight = 0;
  EXPECT_TRUE(Has(Outcome(f, in), "fault: Arithmetic fault")) << Outcome(f, in);
}

}  // namespace
}  // namespace tervale
