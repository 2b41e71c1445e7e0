// Consistency tests, parameter statistics and azeotropes of binary VLE data.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <tuple>

#include "regress/vle_azeotrope.h"
#include "regress/vle_case.h"
#include "regress/vle_consistency.h"
#include "regress/vle_graph.h"
#include "regress/vle_regression.h"
#include "regress/vle_statistics.h"
#include "state/shared_state.h"

namespace tervale {
namespace {

struct Fixture {
  std::unique_ptr<SharedCalcState> s = MakeSharedCalcState();
  RecordingDialogs dialogs;
  Fixture() {
    s->Dialogs = &dialogs;
    s->LanguageFlag = 1;
  }
  VLEDataCase& c() { return s->VLE; }
};

// Methanol (1) - water (2) with the Antoine constants of the first example and a Wilson pair:
// measured points made exact by the model's own bubble routine, isobaric at 760 mmHg or
// isothermal at 60 C, then passed through the Calc driver as a user would enter them.
void MakeWilsonData(Fixture& f, bool isobaric, const std::vector<double>& xs, double l12,
                    double l21, double yShift = 0, int objective = 1) {
  ASSERT_TRUE(LoadVLEExample(*f.s, 1));
  VLEDataCase& c = f.c();
  c.TPType = isobaric ? 0 : 1;
  c.VLEPressure = 760;
  c.VLETemperature = 60;
  c.CalcType = 1;
  c.WilsonLambda12 = l12;
  c.WilsonLambda21 = l21;
  c.NVLEData = static_cast<int>(xs.size());
  for (int i = 1; i <= c.NVLEData; ++i) {
    const double x = xs[i - 1];
    double g1 = 0, g2 = 0;
    CalcActivityCoeff(*f.s, x, g1, g2);
    if (isobaric) {
      // the routine's temperature, then Newton to the last digit so that the data are exact
      double t = CalcBubbleTempFromGamma(*f.s, 80, x, g1, g2);
      auto excess = [&](double tt) {
        return x * g1 * VLEVapourPressure(c, 1, tt) + (1 - x) * g2 * VLEVapourPressure(c, 2, tt) -
               c.VLEPressure;
      };
      for (int k = 0; k < 8; ++k) t -= excess(t) * 1e-4 / (excess(t + 1e-4) - excess(t));
      c.DataTemp[i] = t;
      c.DataY[i] = x * g1 * VLEVapourPressure(c, 1, t) / c.VLEPressure;
    } else {
      c.DataPress[i] = CalcBubblePressFromGamma(*f.s, c.VLETemperature, x, g1, g2);
      c.DataY[i] = c.VaporY1;
    }
    c.DataX[i] = x;
    if (i % 2 == 0) c.DataY[i] += yShift;
  }
  VLEScreenFields fields = DisplayVLECase(*f.s);
  fields.CalcTypeIndex = 0;
  fields.ObjectiveIndex = objective - 1;
  fields.Para12Text = fields.Para21Text = "";  // the fit starts from the defaults
  ASSERT_TRUE(RunVLECalcDriver(*f.s, fields));
}

const std::vector<double> kXs = {0.05, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.85, 0.9};

TEST(Consistency, ExactModelDataPassBothTestsAndShiftedYFailsThePointTest) {
  for (bool isobaric : {true, false}) {
    SCOPED_TRACE(isobaric ? "isobaric" : "isothermal");
    Fixture f;
    MakeWilsonData(f, isobaric, kXs, 0.43, 0.95);
    const VLEDataCase before = f.c();
    ConsistencyResult r = TestVLEConsistency(*f.s);
    ASSERT_TRUE(r.area && r.point);
    EXPECT_TRUE(r.area->passed);
    EXPECT_LT(r.area->D, 5);
    EXPECT_EQ(r.area->J.has_value(), isobaric);
    if (isobaric) {
      const auto [tMin, tMax] =
          std::minmax_element(&f.c().DataTemp[1], &f.c().DataTemp[1] + f.c().NVLEData);
      EXPECT_NEAR(*r.area->J, 150 * (*tMax - *tMin) / (*tMin + 273.15), 1e-12);
    }
    EXPECT_TRUE(r.point->passed);
    EXPECT_LT(r.point->meanAbsDy, 0.002);
    EXPECT_TRUE(r.point->order >= 1 && r.point->order <= 5) << r.point->order;
    ASSERT_EQ(r.point->residualsY.size(), kXs.size());
    for (size_t i = 0; i < kXs.size(); ++i)
      EXPECT_NEAR(r.point->residualsY[i], f.c().DataY[i + 1] - r.point->computedY[i], 1e-15);
    // nothing in the case changed
    EXPECT_EQ(std::tie(f.c().WilsonLambda12, f.c().CalcTemp, f.c().VaporY1),
              std::tie(before.WilsonLambda12, before.CalcTemp, before.VaporY1));

    Fixture g;
    MakeWilsonData(g, isobaric, kXs, 0.43, 0.95, 0.03);
    ConsistencyResult bad = TestVLEConsistency(*g.s);
    ASSERT_TRUE(bad.point);
    EXPECT_FALSE(bad.point->passed);
    EXPECT_GT(bad.point->meanAbsDy, 0.01);
  }
}

TEST(Consistency, FewerThanFivePointsGiveNoVerdict) {
  Fixture f;
  MakeWilsonData(f, true, {0.2, 0.4, 0.6, 0.8}, 0.43, 0.95);
  ConsistencyResult r = TestVLEConsistency(*f.s);
  EXPECT_FALSE(r.area || r.point);
  ASSERT_EQ(r.messages.size(), 1u);
  EXPECT_NE(r.messages[0].find("five"), std::string::npos);
  // five points: both verdicts, at most three Legendre terms
  Fixture g;
  MakeWilsonData(g, true, {0.1, 0.3, 0.5, 0.7, 0.9}, 0.43, 0.95);
  ConsistencyResult r5 = TestVLEConsistency(*g.s);
  ASSERT_TRUE(r5.area && r5.point);
  EXPECT_LE(r5.point->order, 3);
}

TEST(Consistency, AbsoluteIntegralOfTheCubicSplitsAtItsRoots) {
  const double line[4] = {-0.5, 1, 0, 0};  // x - 1/2
  EXPECT_NEAR(CubicIntegral01(line), 0, 1e-15);
  EXPECT_NEAR(CubicAbsIntegral01(line), 0.25, 1e-15);
  // (x - 0.2)(x - 0.5)(x - 0.9): compare with a fine midpoint sum
  const double c[4] = {-0.09, 0.73, -1.6, 1};
  double sum = 0;
  const int n = 200000;
  for (int i = 0; i < n; ++i) {
    const double x = (i + 0.5) / n;
    sum += std::fabs(((c[3] * x + c[2]) * x + c[1]) * x + c[0]) / n;
  }
  EXPECT_NEAR(CubicAbsIntegral01(c), sum, 1e-9);
  const double none[4] = {2, 0, 0, 0};
  EXPECT_DOUBLE_EQ(CubicAbsIntegral01(none), 2);
}

TEST(Statistics, ExactDataGiveTinyStandardErrorsAndTheCaseStaysAsItWas) {
  for (int objective : {1, 2, 3, 4}) {
    SCOPED_TRACE(objective);
    Fixture f;
    MakeWilsonData(f, true, kXs, 0.43, 0.95, 0, objective);
    MarquardtRegression(*f.s);
    EXPECT_NEAR(f.c().WilsonLambda12, 0.43, 1e-5);
    const VLEDataCase before = f.c();
    VLEStatistics st = CalcVLEStatistics(*f.s);
    ASSERT_TRUE(st.stdError12 && st.stdError21 && st.correlation);
    EXPECT_LT(*st.stdError12, 1e-6 * 0.43);
    EXPECT_LT(*st.stdError21, 1e-6 * 0.95);
    EXPECT_LE(std::fabs(*st.correlation), 1.0);
    EXPECT_EQ(st.residualCount, VLEResidualCount(f.c()));
    ASSERT_EQ(st.residuals.size(), kXs.size());
    EXPECT_LT(st.rmsdY, 1e-6);
    EXPECT_LT(st.aadTP, 1e-4);
    EXPECT_EQ(std::tie(st.residuals[3].x, st.residuals[3].yMeasured, st.residuals[3].tpMeasured),
              std::make_tuple(0.3, f.c().DataY[4], f.c().DataTemp[4]));
    EXPECT_DOUBLE_EQ(st.residuals[3].dy, st.residuals[3].yMeasured - st.residuals[3].yCalculated);
    // every evaluation's trace is gone again
    const VLEDataCase& c = f.c();
    EXPECT_EQ(std::tie(c.WilsonLambda12, c.WilsonLambda21, c.CalcTemp, c.ResidualVector, c.VaporY1),
              std::tie(before.WilsonLambda12, before.WilsonLambda21, before.CalcTemp,
                       before.ResidualVector, before.VaporY1));
  }
}

TEST(Statistics, TwoResidualsOrASingularProblemGiveNoStandardErrors) {
  Fixture f;
  MakeWilsonData(f, true, {0.3, 0.7}, 0.43, 0.95);  // objective 1: two residuals
  MarquardtRegression(*f.s);
  VLEStatistics st = CalcVLEStatistics(*f.s);
  EXPECT_FALSE(st.stdError12 || st.correlation);
  ASSERT_EQ(st.messages.size(), 1u);
  EXPECT_EQ(st.residuals.size(), 2u);
  // one point, two residuals per point (objective 2): N = 2 as well
  Fixture g;
  MakeWilsonData(g, false, {0.5}, 0.43, 0.95, 0, 2);
  MarquardtRegression(*g.s);
  VLEStatistics st2 = CalcVLEStatistics(*g.s);
  EXPECT_EQ(st2.residualCount, 2);
  EXPECT_FALSE(st2.stdError21.has_value());
}

TEST(Statistics, RepeatedNoisyFitsScatterAsTheStandardErrorsSay) {
  // Isothermal data, Gaussian noise on y; 300 seeded fits of the Wilson pair by objective 1.
  std::mt19937 rng(20261123);
  std::normal_distribution<double> noise(0, 0.004);
  const std::vector<double> xs = {0.1, 0.15, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.85, 0.9};
  Fixture truth;
  MakeWilsonData(truth, false, xs, 0.43, 0.95);
  const VLEDataCase exact = truth.c();
  const int runs = 300;
  std::array<double, 3> sum{}, sq{}, se{};
  for (int run = 0; run < runs; ++run) {
    Fixture f;
    f.s->VLE = exact;
    for (int i = 1; i <= exact.NVLEData; ++i) f.c().DataY[i] = exact.DataY[i] + noise(rng);
    VLEScreenFields fields = DisplayVLECase(*f.s);
    fields.ObjectiveIndex = 0;
    fields.Para12Text = fields.Para21Text = "";
    ASSERT_TRUE(RunVLECalcDriver(*f.s, fields));
    MarquardtRegression(*f.s);
    VLEStatistics st = CalcVLEStatistics(*f.s);
    ASSERT_TRUE(st.stdError12 && st.stdError21);
    const double p[] = {0, f.c().WilsonLambda12, f.c().WilsonLambda21};
    const double e[] = {0, *st.stdError12, *st.stdError21};
    for (int k = 1; k <= 2; ++k) sum[k] += p[k], sq[k] += p[k] * p[k], se[k] += e[k];
  }
  for (int k = 1; k <= 2; ++k) {
    const double sd = std::sqrt((sq[k] - sum[k] * sum[k] / runs) / (runs - 1));
    EXPECT_NEAR(sd / (se[k] / runs), 1.0, 0.3) << k;
  }
}

// A V-L case (calc type 3 or 4) from constants, drawn as the result screen draws it.
void DrawCase(Fixture& f, int calcType, bool isobaric, double p12, double p21, const double a1[3],
              const double a2[3]) {
  VLEDataCase& c = f.c();
  InitializeVLECase(*f.s);
  c.CalcType = calcType;
  c.TPType = isobaric ? 0 : 1;
  c.VLEPressure = 760;
  c.VLETemperature = 70;
  c.AntoineA = {0, a1[0], a2[0]};
  c.AntoineB = {0, a1[1], a2[1]};
  c.AntoineC = {0, a1[2], a2[2]};
  if (calcType == 3) {
    c.WilsonLambda12 = p12;
    c.WilsonLambda21 = p21;
  } else {
    c.NrtlTau12 = p12;
    c.NrtlTau21 = p21;
    c.NrtlAlpha = 0.3;
  }
  DrawVLEGraph(*f.s);
}

// Poling's Antoine constants and the ChemSep Wilson pairs of the seed database.
const double kEthanol[3] = {8.21185, 1648.22, 230.918};
const double kMethanol[3] = {8.07787, 1580.08, 239.5};
const double kWater[3] = {7.99074, 1687.537, 230.17};

TEST(Azeotropes, EthanolWaterHasOneNearNinetyPercentMethanolWaterNone) {
  Fixture f;
  DrawCase(f, 3, true, 0.181288, 0.861132, kEthanol, kWater);
  const double keptY1 = f.c().VaporY1;
  std::vector<Azeotrope> az = FindVLEAzeotropes(*f.s);
  ASSERT_EQ(az.size(), 1u);
  EXPECT_NEAR(az[0].x1, 0.9, 0.05);
  EXPECT_NEAR(az[0].tp, 78.2, 0.5);
  EXPECT_EQ(AzeotropeKind(az[0]), "minimum-boiling");
  EXPECT_EQ(f.c().VaporY1, keptY1);
  // refined: the model's own y1 equals x1 there
  double g1 = 0, g2 = 0;
  CalcActivityCoeff(*f.s, az[0].x1, g1, g2);
  const double t = CalcBubbleTempFromGamma(*f.s, 78, az[0].x1, g1, g2);
  EXPECT_NEAR(f.c().VaporY1 / (f.c().VaporY1 + f.c().VaporY2), az[0].x1, 1e-8);
  EXPECT_NEAR(t, az[0].tp, 1e-5);
  // the temperature is reported in the case's unit
  f.c().VLETempUnit = 2;
  std::vector<Azeotrope> kelvin = FindVLEAzeotropes(*f.s);
  ASSERT_EQ(kelvin.size(), 1u);
  EXPECT_NEAR(kelvin[0].tp, az[0].tp + 273.15, 1e-6);

  Fixture g;
  DrawCase(g, 3, true, 0.331921, 1.13829, kMethanol, kWater);
  EXPECT_TRUE(FindVLEAzeotropes(*g.s).empty());
  // an ideal NRTL case has none either
  DrawCase(g, 4, false, 0, 0, kMethanol, kWater);
  EXPECT_TRUE(FindVLEAzeotropes(*g.s).empty());
}

TEST(Azeotropes, AtACurveNodeAndOfBothKinds) {
  // Two components of equal vapour pressure: a symmetric model puts the azeotrope at x1 = 0.5,
  // which is node 101 of the curve.
  for (int calcType : {3, 4}) {
    for (bool isobaric : {true, false}) {
      SCOPED_TRACE(calcType * 10 + isobaric);
      Fixture f;
      const double p = calcType == 3 ? 0.5 : -1.2;  // Wilson < 1: positive; NRTL < 0: negative
      DrawCase(f, calcType, isobaric, p, p, kMethanol, kMethanol);
      ASSERT_EQ(f.c().CurveX[101], 0.5);
      std::vector<Azeotrope> az = FindVLEAzeotropes(*f.s);
      ASSERT_EQ(az.size(), 1u);
      if (isobaric) {
        // y1 of the bubble routine is exact to its own tolerance only
        EXPECT_NEAR(az[0].x1, 0.5, 1e-8);
      } else {
        ASSERT_EQ(f.c().CurveY[101], 0.5);
        EXPECT_EQ(az[0].x1, 0.5);
      }
      EXPECT_EQ(az[0].minimumBoiling, calcType == 3);
      const double node =
          isobaric ? f.c().CurveTP[101] : VLEPressureToCaseUnit(*f.s, f.c().CurveTP[101]);
      EXPECT_NEAR(az[0].tp, node, 1e-6 * std::fabs(node));
    }
  }
}

TEST(Azeotropes, SignChangesOnSampledCurves) {
  const double x[] = {0, 0.25, 0.5, 0.75, 1};
  const bool none[] = {false, false, false, false, false};
  // a touch without a change of sign is no azeotrope
  const double touch[] = {0, 0.3, 0.5, 0.8, 1};
  EXPECT_TRUE(FindSignChanges(x, touch, none, 5).empty());
  const double cross[] = {0, 0.3, 0.45, 0.7, 1};
  auto ch = FindSignChanges(x, cross, none, 5);
  ASSERT_EQ(ch.size(), 1u);
  EXPECT_EQ(std::tie(ch[0].index, ch[0].atNode, ch[0].minimumBoiling),
            std::make_tuple(1, false, true));
  // a missing node breaks the bracket
  const bool gap[] = {false, false, true, false, false};
  EXPECT_TRUE(FindSignChanges(x, cross, gap, 5).empty());

  // The UNIFAC curve: linear interpolation between the two nodes.
  Fixture f;
  auto& u = f.s->Unifac;
  for (int n = 1; n <= kUnifacPoints; ++n) {
    const double xn = (1.0 / 200) * (n - 1);
    u.CurveX[n] = xn;
    u.CurveY[n] = xn + 0.4 * xn * (1 - xn) * (xn - 0.3);  // maximum-boiling at 0.3
    u.CurveT[n] = 100 - 10 * xn;
  }
  u.CurveY[61] = 0.3 + 1e-3;  // shift the node at 0.3 off the root
  std::vector<Azeotrope> az = FindUnifacAzeotropes(*f.s);
  ASSERT_EQ(az.size(), 1u);
  EXPECT_FALSE(az[0].minimumBoiling);
  const double da = u.CurveY[60] - u.CurveX[60], db = u.CurveY[61] - u.CurveX[61];
  const double expected = u.CurveX[60] + da / (da - db) * (u.CurveX[61] - u.CurveX[60]);
  EXPECT_DOUBLE_EQ(az[0].x1, expected);
  EXPECT_DOUBLE_EQ(az[0].tp, 100 - 10 * expected);
}

}  // namespace
}  // namespace tervale
