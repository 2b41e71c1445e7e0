#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <tuple>
#include <vector>

#include "regress/vle_case.h"
#include "regress/vle_graph.h"
#include "regress/vle_regression.h"
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
  // Example `number` through the Calc driver with the chosen type and objective.
  void Calc(int number, int calcType, int objective) {
    LoadVLEExample(*s, number);
    VLEScreenFields f = DisplayVLECase(*s);
    f.CalcTypeIndex = calcType - 1;
    f.ObjectiveIndex = objective - 1;
    ASSERT_TRUE(RunVLECalcDriver(*s, f));
  }
};

// Textbook NRTL for a binary, written independently of the routine.
void NrtlReference(double x1, double t12, double t21, double a, double& g1, double& g2) {
  const double x2 = 1 - x1, G12 = std::exp(-a * t12), G21 = std::exp(-a * t21);
  g1 =
      std::exp(x2 * x2 *
               (t21 * std::pow(G21 / (x1 + x2 * G21), 2) + t12 * G12 / std::pow(x2 + x1 * G12, 2)));
  g2 =
      std::exp(x1 * x1 *
               (t12 * std::pow(G12 / (x2 + x1 * G12), 2) + t21 * G21 / std::pow(x1 + x2 * G21, 2)));
}

TEST(VLEModels, WilsonAndNrtl) {
  Fixture f;
  double g1 = 0, g2 = 0;
  // Wilson with unit parameters is Raoult's law.
  f.c().CalcType = 1;
  f.c().WilsonLambda12 = f.c().WilsonLambda21 = 1;
  CalcActivityCoeff(*f.s, 0.3, g1, g2);
  EXPECT_DOUBLE_EQ(g1, 1);
  EXPECT_DOUBLE_EQ(g2, 1);
  // Infinite dilution: ln g1 = 1 - ln L12 - L21.
  f.c().WilsonLambda12 = 0.43045;
  f.c().WilsonLambda21 = 0.94934;
  CalcActivityCoeff(*f.s, 0.0, g1, g2);
  EXPECT_NEAR(std::log(g1), 1 - std::log(0.43045) - 0.94934, 1e-12);
  EXPECT_DOUBLE_EQ(g2, 1);
  // A non-positive sum gives the floor without a message.
  f.c().WilsonLambda12 = -2;
  CalcActivityCoeff(*f.s, 0.2, g1, g2);
  EXPECT_EQ(g1, 0.00001);
  EXPECT_TRUE(f.dialogs.messages.empty());

  f.c().CalcType = 4;
  f.c().NrtlTau12 = 0.8;
  f.c().NrtlTau21 = -0.3;
  f.c().NrtlAlpha = 0.3;
  for (double x : {0.0, 0.1, 0.5, 0.93, 1.0}) {
    double r1 = 0, r2 = 0;
    CalcActivityCoeff(*f.s, x, g1, g2);
    NrtlReference(x, 0.8, -0.3, 0.3, r1, r2);
    EXPECT_NEAR(g1, r1, 1e-13) << x;
    EXPECT_NEAR(g2, r2, 1e-13) << x;
  }
}

TEST(VLEModels, BubblePointsMeetTheAntoineEquation) {
  Fixture f;
  LoadVLEExample(*f.s, 1);
  f.c().CalcType = 1;
  f.c().WilsonLambda12 = 0.43045;
  f.c().WilsonLambda21 = 0.94934;
  // Pure water boils where its vapour pressure is the pressure field.
  const double tWater = 1730.63 / (8.07131 - std::log10(760.0)) - 233.426;
  EXPECT_NEAR(CalcBubbleTempFromGamma(*f.s, 0.0, 0.0, 1.0, 1.0), tWater, 1e-4);
  EXPECT_NEAR(f.c().VaporY2, 1.0, 1e-6);
  // At a mixture's bubble temperature the partial pressures add up to P.
  double g1 = 0, g2 = 0;
  CalcActivityCoeff(*f.s, 0.3, g1, g2);
  const double t = CalcBubbleTempFromGamma(*f.s, 80.0, 0.3, g1, g2);
  const double p = CalcBubblePressFromGamma(*f.s, t, 0.3, g1, g2);
  EXPECT_NEAR(p, 760, 760 * 1e-5);
  EXPECT_NEAR(f.c().VaporY1 + f.c().VaporY2, 1, 1e-12);
  EXPECT_NEAR(f.c().VaporY1, 0.665, 0.03);  // the measured point at x = 0.3
}

TEST(VLERegression, PerfectStartStopsAfterOnePass) {
  for (int calcType : {1, 2}) {
    for (int objective : {1, 2, 3}) {
      Fixture f;
      f.Calc(1, calcType, objective);
      StoreRegressedParameters(
          *f.s, calcType == 1 ? std::array{0.0, 0.6, 0.9} : std::array{0.0, 0.2, 0.7});
      const auto start = RegressedParameters(f.c());
      for (int i = 1; i <= f.c().NVLEData; ++i) {
        double g1 = 0, g2 = 0;
        CalcActivityCoeff(*f.s, f.c().DataX[i], g1, g2);
        f.c().GammaExp[i][1] = g1;
        f.c().GammaExp[i][2] = g2;
      }
      RegressionResult r = MarquardtRegression(*f.s);
      // one pass: the start, two evaluations for the Jacobian, one trial
      EXPECT_EQ(std::tie(r.end, r.passes, r.evaluations, r.sumOfSquares),
                std::make_tuple(RegressionEnd::Converged, 1, 4, 0.0));
      EXPECT_EQ(RegressedParameters(f.c()), start);
    }
  }
}

TEST(VLERegression, AnEqualSumOfSquaresIsAccepted) {
  // The last residual is so large that no step changes the sum of squares in floating point:
  // every trial ties with the accepted point. Accepted ties let the other residuals be fitted;
  // rejected ties would never move the parameters.
  Fixture f;
  f.Calc(1, 1, 2);
  VLEDataCase& c = f.c();
  c.NVLEData = 2;
  c.DataX[1] = 0.5;
  c.GammaExp[1] = {0, 1.5, 1.2};
  c.DataX[2] = 0.3;
  c.GammaExp[2] = {0, 1.8, 1e20};
  c.WilsonLambda12 = c.WilsonLambda21 = 1;
  const double before = CalcObjectiveSum(*f.s);
  auto fitted = [&] {
    double sum = 0;
    for (int i = 1; i <= 3; ++i) sum += c.ResidualVector[i] * c.ResidualVector[i];
    return sum;
  };
  const double fittedBefore = fitted();
  RegressionResult r = MarquardtRegression(*f.s);
  EXPECT_EQ(r.end, RegressionEnd::Converged);
  EXPECT_GT(r.passes, 2);
  EXPECT_EQ(CalcObjectiveSum(*f.s), before);
  EXPECT_LT(fitted(), 0.01 * fittedBefore);
}

TEST(VLERegression, OneDataPointWithObjectiveOneStaysSolvable) {
  Fixture f;
  f.Calc(1, 1, 1);
  f.c().NVLEData = 1;
  f.c().DataX[1] = f.c().DataX[5];
  f.c().GammaExp[1] = f.c().GammaExp[5];
  RegressionResult r = MarquardtRegression(*f.s);
  EXPECT_NE(r.end, RegressionEnd::ArithmeticFault);
  EXPECT_TRUE(std::isfinite(f.c().WilsonLambda12) && std::isfinite(f.c().WilsonLambda21));
  EXPECT_LT(CalcObjectiveSum(*f.s), 1e-10);
  EXPECT_TRUE(f.dialogs.messages.empty());
}

TEST(VLERegression, ObjectiveFourAtConstantTemperatureUsesThePressureField) {
  Fixture f;
  LoadVLEExample(*f.s, 1);
  VLEScreenFields fields = DisplayVLECase(*f.s);
  fields.TPType = 1;
  fields.TempText = "70";
  fields.ObjectiveIndex = 3;
  fields.DataRows = {{"300", "0.2", "0.5"}, {"500", "0.6", "0.8"}};
  fields.Para12Text = "0.5";
  fields.Para21Text = "0.9";
  ASSERT_TRUE(RunVLECalcDriver(*f.s, fields));
  VLEDataCase& c = f.c();
  c.VLEPressure = 760;
  const double at760 = CalcObjectiveSum(*f.s);
  // The computed y is the bubble point at the pressure field, not at the measured pressures.
  for (int i = 1; i <= 2; ++i) {
    double g1 = 0, g2 = 0;
    CalcActivityCoeff(*f.s, c.DataX[i], g1, g2);
    const double p = CalcBubblePressFromGamma(*f.s, c.CalcTemp[i], c.DataX[i], g1, g2);
    EXPECT_NEAR(p, 760, 0.01);
  }
  c.DataPress[1] = 1;  // measured pressures play no part once the gammas are known
  c.DataPress[2] = 2;
  EXPECT_NEAR(CalcObjectiveSum(*f.s), at760, 1e-12);
  c.VLEPressure = 300;
  EXPECT_GT(std::fabs(CalcObjectiveSum(*f.s) - at760), 1e-3);
}

TEST(VLERegression, Example1WilsonReproducesMeasuredY) {
  Fixture f;
  f.Calc(1, 1, 4);
  RegressionResult r = MarquardtRegression(*f.s);  // converges: see the loop over every case
  const VLEDataCase& c = f.c();
  EXPECT_NEAR(CalcObjectiveSum(*f.s), r.sumOfSquares, 1e-9);
  EXPECT_NEAR(c.VaporY1 + c.VaporY2, 1, 1e-5);
  for (int i = 1; i <= c.NVLEData; ++i)
    EXPECT_LT(std::fabs(c.ResidualVector[2 * i - 1]), 0.03) << "point " << i;
  // The bubble temperatures found on the way are the measured ones, within a degree or so.
  for (int i = 1; i <= c.NVLEData; ++i) EXPECT_NEAR(c.CalcTemp[i], c.DataTemp[i], 1.5) << i;
}

TEST(VLERegression, FitMovesTowardTheLiteratureValues) {
  const double lit12 = 0.43045, lit21 = 0.94934;
  for (int objective : {1, 3, 4}) {
    Fixture f;
    f.Calc(1, 1, objective);
    const double d0 = std::hypot(f.c().WilsonLambda12 - lit12, f.c().WilsonLambda21 - lit21);
    MarquardtRegression(*f.s);
    const double d1 = std::hypot(f.c().WilsonLambda12 - lit12, f.c().WilsonLambda21 - lit21);
    EXPECT_LT(d1, (objective == 1 ? 0.02 : 0.5 * d0)) << objective;
  }
}

TEST(VLERegression, ArithmeticFaultStopsAtTheLastAcceptedParameters) {
  Fixture f;
  f.Calc(1, 2, 1);
  f.c().NrtlTau12 = -5000;  // exp(+2000) overflows
  f.c().NrtlTau21 = 0.3;
  RegressionResult r = MarquardtRegression(*f.s);
  EXPECT_EQ(r.end, RegressionEnd::ArithmeticFault);
  EXPECT_EQ(f.c().NrtlTau12, -5000);
  EXPECT_EQ(f.c().NrtlTau21, 0.3);
  ASSERT_EQ(f.dialogs.messages.size(), 1u);
  EXPECT_NE(f.dialogs.messages[0].find("arithmetic fault"), std::string::npos);
}

TEST(VLERegression, StoreFollowsTheParityOfTheType) {
  Fixture f;
  f.c().CalcType = 3;
  StoreRegressedParameters(*f.s, {0, 0.1, 0.2});
  EXPECT_EQ(f.c().WilsonLambda21, 0.2);
  f.c().CalcType = 4;
  StoreRegressedParameters(*f.s, {0, 0.3, 0.4});
  EXPECT_EQ(f.c().NrtlTau12, 0.3);
  EXPECT_EQ(f.c().WilsonLambda12, 0.1);
  EXPECT_EQ(ObjectiveShortCaption(1), "x*log(r'-r)");
  EXPECT_EQ(ObjectiveShortCaption(5), "y'/y");
}

// The damped Gauss-Newton fit written the plain way: each trial step solves
// (JᵀJ + σ²·I)·δ = Jᵀ·r directly, σ growing by 1.5 on every rejection. The routine gets the same
// steps from a Householder factor and, after a rejection, from a 2×2 Cholesky refactor of the
// normal equations; the two routes must agree pass for pass.
struct ReferenceFit {
  RegressionEnd end = RegressionEnd::NothingToFit;
  int evaluations = 0, passes = 0;
  std::array<double, 3> p{};
  bool messageShown = false;
};

ReferenceFit ReferenceMarquardt(SharedCalcState& s) {
  VLEDataCase& c = s.VLE;
  const int m = VLEResidualCount(c);
  std::array<double, 3> p = RegressedParameters(c);
  auto eval = [&](const std::array<double, 3>& at) {
    StoreRegressedParameters(s, at);
    return CalcObjectiveSum(s);
  };
  std::vector<double> r0(m + 1), lo(m + 1);
  std::vector<std::array<double, 3>> jac(m + 1);
  ReferenceFit out;
  int e = 1, pass = 1;
  bool central = false;
  double sum = CalcObjectiveSum(s), sigma = 0;
  for (;;) {
    for (int i = 1; i <= m; ++i) r0[i] = c.ResidualVector[i];
    for (int k = 1; k <= 2; ++k) {
      if (!central) {
        p[k] += 0.001;
        eval(p), ++e;
        for (int i = 1; i <= m; ++i) jac[i][k] = (c.ResidualVector[i] - r0[i]) / 0.001;
        p[k] -= 0.001;
      } else {
        p[k] -= 0.001;
        eval(p), ++e;
        for (int i = 1; i <= m; ++i) lo[i] = c.ResidualVector[i];
        p[k] += 0.002;
        eval(p), ++e;
        for (int i = 1; i <= m; ++i) jac[i][k] = (c.ResidualVector[i] - lo[i]) / 0.002;
        p[k] -= 0.001;
      }
    }
    double n11 = 0, n12 = 0, n22 = 0, g1 = 0, g2 = 0;
    for (int i = 1; i <= m; ++i) {
      n11 += jac[i][1] * jac[i][1];
      n12 += jac[i][1] * jac[i][2];
      n22 += jac[i][2] * jac[i][2];
      g1 += jac[i][1] * r0[i];
      g2 += jac[i][2] * r0[i];
    }
    if (pass == 1) sigma = std::sqrt((n11 + n22) / (2.0 * m));
    int rejections = 0;
    for (;;) {
      const double a = n11 + sigma * sigma, d = n22 + sigma * sigma;
      const double det = a * d - n12 * n12;
      const double d1 = (d * g1 - n12 * g2) / det, d2 = (a * g2 - n12 * g1) / det;
      const std::array<double, 3> trial = {0, p[1] - d1, p[2] - d2};
      const double trialSum = eval(trial);
      ++e;
      const bool worse = sum < trialSum;
      const double pMax = std::fmax(1.0, std::fmax(std::fabs(p[1]), std::fabs(p[2])));
      const double dMax = std::fmax(std::fabs(d1), std::fabs(d2));
      if (pMax * 0.000001 > dMax) {
        if (!worse) StoreRegressedParameters(s, trial);
        out.end = RegressionEnd::Converged;
        break;
      }
      if (!worse) {
        central = pMax * 0.000001 * 100 > dMax;
        p = trial;
        sum = trialSum;
        if (rejections == 0) sigma *= 0.5;
        out.end = e > 800 * m ? RegressionEnd::EvaluationLimit : RegressionEnd::NothingToFit;
        break;
      }
      ++rejections;
      sigma *= 1.5;
      if (sigma > 1000000) {
        out.end = RegressionEnd::DampingTooBig;
        out.messageShown = true;
        break;
      }
      if (rejections > 200) {
        out.end = RegressionEnd::RejectionLimit;
        break;
      }
    }
    if (out.end != RegressionEnd::NothingToFit) break;
    ++pass;
  }
  out.evaluations = e;
  out.passes = pass;
  out.p = RegressedParameters(c);
  return out;
}

// Runs the routine and the reference on the same case and compares them; the routine's run is
// left in `routine`.
RegressionResult ExpectSameAsReference(const std::function<void(Fixture&)>& setUp,
                                       RegressionEnd expected, Fixture& routine) {
  Fixture reference;
  setUp(routine);
  setUp(reference);
  const RegressionResult r = MarquardtRegression(*routine.s);
  const ReferenceFit ref = ReferenceMarquardt(*reference.s);
  EXPECT_EQ(ref.end, expected);
  EXPECT_EQ(r.end, expected);
  EXPECT_EQ(r.evaluations, ref.evaluations);
  EXPECT_EQ(r.passes, ref.passes);
  const auto p = RegressedParameters(routine.c());
  for (int k = 1; k <= 2; ++k)
    EXPECT_NEAR(p[k], ref.p[k], 1e-9 * std::fmax(1.0, std::fabs(ref.p[k]))) << k;
  EXPECT_EQ(routine.dialogs.messages.size(), ref.messageShown ? 1u : 0u);
  return r;
}

TEST(VLERegression, EveryObjectiveAndModelConvergesOnBothExamplesAsTheNormalEquationsSay) {
  for (int example : {1, 2})
    for (int calcType : {1, 2})
      for (int objective = 1; objective <= 5; ++objective) {
        SCOPED_TRACE(testing::Message() << "example " << example << " type " << calcType
                                        << " objective " << objective);
        Fixture f, start;
        start.Calc(example, calcType, objective);
        const double s0 = CalcObjectiveSum(*start.s);
        const auto r = ExpectSameAsReference(
            [&](Fixture& g) { g.Calc(example, calcType, objective); }, RegressionEnd::Converged, f);
        EXPECT_LT(r.sumOfSquares, calcType == 2 && objective == 4 ? 0.1 * s0 : s0);
        EXPECT_LE(r.evaluations, 800 * VLEResidualCount(f.c()));
        const auto p = RegressedParameters(f.c());
        EXPECT_TRUE(std::isfinite(p[1]) && std::isfinite(p[2]));
        // the other model's pair is not touched
        auto other = [&](Fixture& g) {
          return calcType == 1 ? g.c().NrtlTau12 : g.c().WilsonLambda12;
        };
        EXPECT_EQ(other(f), other(start));
        EXPECT_EQ(f.c().NrtlAlpha, 0.4);
        EXPECT_TRUE(f.dialogs.messages.empty());
      }
}

TEST(VLERegression, DampingTooBigEndsAtOnceWithTheLastTrial) {
  // One point whose measured γ2 is far beyond what Wilson can give near its start: every step
  // from the fourth pass on is worse, and four rejections push the damping over its limit.
  auto setUp = [](Fixture& f) {
    f.Calc(1, 1, 2);
    VLEDataCase& c = f.c();
    c.NVLEData = 1;
    c.DataX[1] = 0.1054054324443595;
    c.GammaExp[1] = {0, 91.182338965358639, 11127.689381388134};
    c.WilsonLambda12 = 0.12436823199207327;
    c.WilsonLambda21 = 0.0024900119117782379;
  };
  Fixture f;
  const RegressionResult r = ExpectSameAsReference(setUp, RegressionEnd::DampingTooBig, f);
  ASSERT_EQ(f.dialogs.messages.size(), 1u);
  EXPECT_EQ(f.dialogs.messages[0], "Marquardt Too Big V");
  // The case holds the rejected trial, worse than the best point reached.
  EXPECT_GT(CalcObjectiveSum(*f.s), r.sumOfSquares);
  EXPECT_LT(f.c().WilsonLambda12, 0);
}

TEST(VLERegression, TwoHundredRejectionsInAPassEndSilentlyWithTheLastTrial) {
  // After a long run of clean steps the damping is tiny; in the last pass the step direction
  // leads uphill, and the 201st rejection ends the fit before the damping reaches its limit.
  auto setUp = [](Fixture& f) {
    f.Calc(1, 1, 3);
    VLEDataCase& c = f.c();
    c.NVLEData = 4;
    const double x[] = {0.94168633453623296, 0.63675384278881586, 0.53573013570301831,
                        0.4326851080939037};
    const double g1[] = {19.138756281265575, 784.58836144397605, 12.122847910508694,
                         2.7871468574920857};
    const double g2[] = {3.1780751116444734, 0.72179862774745629, 2.1302157476754577,
                         2392.3625173405612};
    for (int i = 1; i <= 4; ++i) {
      c.DataX[i] = x[i - 1];
      c.GammaExp[i] = {0, g1[i - 1], g2[i - 1]};
    }
    c.WilsonLambda12 = 0.0062616365168827485;
    c.WilsonLambda21 = 1.6364796232335088;
  };
  Fixture f;
  const RegressionResult r = ExpectSameAsReference(setUp, RegressionEnd::RejectionLimit, f);
  EXPECT_TRUE(f.dialogs.messages.empty());
  EXPECT_LT(r.evaluations, 800 * 4);
  EXPECT_GT(CalcObjectiveSum(*f.s), r.sumOfSquares);  // the last trial, not the best point
}

TEST(VLEGraph, AxisRounding) {
  const std::pair<double, int> tops[] = {{99.9968, 100}, {100.0, 110}, {1234, 1300}},
                               bottoms[] = {{64.5, 64}, {1234, 1200}},
                               gammaTops[] = {{1.0, 2},  {1.99, 2},  {2.0, 5},
                                              {9.5, 10}, {19.9, 20}, {20.0, 50}};
  for (auto [v, top] : tops) EXPECT_EQ(RoundAxisTop(v), top) << v;
  for (auto [v, bottom] : bottoms) EXPECT_EQ(RoundAxisBottom(v), bottom) << v;
  for (auto [v, top] : gammaTops) EXPECT_EQ(RoundGammaTop(v), top) << v;
}

TEST(VLEGraph, CurveAndMouseReadoutOfExample1) {
  Fixture f;
  f.Calc(1, 1, 1);
  MarquardtRegression(*f.s);
  VLEGraphData g = DrawVLEGraph(*f.s);
  const VLEDataCase& c = f.c();
  EXPECT_EQ(c.CurveX[1], 0);
  EXPECT_EQ(c.CurveX[101], 0.5);
  EXPECT_DOUBLE_EQ(c.CurveX[201], 1);
  // The ends are the pure components at their Antoine boiling points.
  EXPECT_NEAR(c.CurveTP[1], 1730.63 / (8.07131 - std::log10(760.0)) - 233.426, 1e-4);
  EXPECT_NEAR(c.CurveTP[201], 1473.11 / (7.8786 - std::log10(760.0)) - 230.0, 1e-4);
  EXPECT_NEAR(c.CurveY[201], 1, 1e-6);
  for (int n = 2; n <= 201; ++n) {
    EXPECT_LT(c.CurveTP[n], c.CurveTP[n - 1]);  // no azeotrope in methanol-water
    EXPECT_GE(c.CurveY[n], c.CurveX[n]);
  }
  EXPECT_EQ(std::tie(g.tpTop, g.tpBottom), std::make_tuple(100.0, 64.0));
  EXPECT_NEAR(g.tpTick, 7.2, 1e-12);
  EXPECT_EQ(g.gammaTop, 5);  // gamma1 at infinite dilution is about 2.5
  ASSERT_EQ(g.points.size(), 12u);
  EXPECT_EQ(g.points[0].tp, 96.4);
  EXPECT_TRUE(g.objectiveShown);
  EXPECT_EQ(g.objectiveCaption, "x*log(r'-r)");
  EXPECT_FALSE(g.para12Text.empty());

  // The mouse readout of the drawn graph.
  const auto frame = VLEGraphFrame::ForPicture(2650, 2450);  // a 2000 x 2000 box
  // Beyond the right margin: nothing changes.
  EXPECT_TRUE(ReadVLEMouse(*f.s, frame, frame.right + 20, 1000).ignored);
  EXPECT_TRUE(ReadVLEMouse(*f.s, frame, frame.left - 20, 1000).ignored);
  // On measured point 4 (x = 0.2): a hit, with the measured values.
  const double col = frame.ColumnOfX(c, 0.2), row = frame.RowOfY(c, c.DataY[4]);
  VLEMouseReadout r = ReadVLEMouse(*f.s, frame, col + 5, row - 10);
  ASSERT_TRUE(r.visible);
  EXPECT_TRUE(r.hit);
  EXPECT_EQ(std::tie(r.dataIndex, r.index, r.x, r.y, r.measuredY),
            std::make_tuple(4, 41, 0.2, c.CurveY[41], 0.579));
  EXPECT_EQ(std::tie(r.xText, r.measuredYText, r.tpLabel, r.tpUnit),
            std::make_tuple(".20000", ".57900", "Temp=", "℃"));
  // On the curve away from any point: the curve's values; far from it: the panel hides.
  const double rowCurve = frame.RowOfY(c, c.CurveY[171]);
  r = ReadVLEMouseAt(*f.s, frame, 171, frame.ColumnOfX(c, 0.85), rowCurve + 20);
  ASSERT_TRUE(r.visible);
  EXPECT_FALSE(r.hit);
  EXPECT_DOUBLE_EQ(r.x, 0.85);
  EXPECT_TRUE(r.measuredYText.empty());
  r = ReadVLEMouseAt(*f.s, frame, 171, frame.ColumnOfX(c, 0.85), rowCurve + 30);
  EXPECT_FALSE(r.ignored);
  EXPECT_FALSE(r.visible);

  // A narrower window samples inside it and leaves points outside undrawn.
  ASSERT_TRUE(ApplyVLEChangeScale(*f.s, "0.5", "1", "0", "1"));
  g = DrawVLEGraph(*f.s);
  EXPECT_EQ(c.CurveX[1], 0.5);
  EXPECT_FALSE(g.points[0].insideX);
  EXPECT_TRUE(g.points[11].insideX);

  // The calculate types draw no points and no objective.
  f.Calc(1, 3, 1);
  g = DrawVLEGraph(*f.s);
  EXPECT_TRUE(g.points.empty());
  EXPECT_FALSE(g.objectiveShown);
}

TEST(VLEGraph, ConstantTemperatureCurveInTheCaseUnit) {
  Fixture f;
  LoadVLEExample(*f.s, 1);
  VLEScreenFields fields = DisplayVLECase(*f.s);
  fields.TPType = 1;
  fields.TempText = "50";
  fields.PressUnitIndex = 1;  // KPa
  fields.CalcTypeIndex = 2;
  fields.Para12Text = "0.43045";
  fields.Para21Text = "0.94934";
  ASSERT_TRUE(RunVLECalcDriver(*f.s, fields));
  VLEGraphData g = DrawVLEGraph(*f.s);
  const double p2 = std::pow(10.0, 8.07131 - 1730.63 / (50 + 233.426));
  EXPECT_NEAR(f.c().CurveTP[1], p2, 1e-9);                  // mmHg inside
  EXPECT_NEAR(g.tpShown[1], p2 * 0.00013322 * 1000, 1e-9);  // KPa on the axis
  EXPECT_GE(g.tpTop, g.tpShown[201]);
  EXPECT_LE(g.tpBottom, g.tpShown[1]);
}

TEST(VLEDialogs, ChangeScaleChecksInOrder) {
  Fixture f;
  auto refused = [&](const char* a, const char* b, const char* c, const char* d,
                     const std::string& message) {
    EXPECT_FALSE(ApplyVLEChangeScale(*f.s, a, b, c, d));
    EXPECT_EQ(f.dialogs.messages.back(), message);
    EXPECT_EQ(std::tie(f.c().GraphXMin, f.c().GraphXMax, f.c().GraphYMin, f.c().GraphYMax),
              std::make_tuple(0.0, 1.0, 0.0, 1.0));
  };
  refused("-0.1", "2", "0", "1", "Ｘ軸の下限が０以下です");
  refused("0", "1.1", "0", "1", "Ｘ軸の上限が１以上です");
  refused("0.5", "0.5", "0", "1", "Ｘ軸の下限≧上限です");
  refused("0.2", "0.8", "-1", "1", "Ｙ軸の下限が０以下です");
  refused("0.2", "0.8", "0", "1.5", "Ｙ軸の上限が１以上です");
  refused("0.2", "0.8", "0.9", "0.1", "Ｙ軸の下限≧上限です");
  EXPECT_TRUE(ApplyVLEChangeScale(*f.s, "0.2", "0.8", "0.1", "0.9"));
  EXPECT_EQ(f.c().GraphXMin, 0.2);
  EXPECT_EQ(f.c().GraphYMax, 0.9);
  EXPECT_TRUE(ApplyVLEChangeScale(*f.s, "0", "1", "0", "1"));  // exactly 0 and 1 pass
}

TEST(VLEDialogs, ChangeParameterKeepsBlankFields) {
  Fixture f;
  StoreRegressedParameters(*f.s, {0, 0.5, 0.7});  // Wilson (type 1)
  VLEParameterDialog d = OpenVLEChangeParameter(*f.s);
  EXPECT_EQ(d.title, "Change Wilson Parameter(V-L Equibrium)");
  EXPECT_EQ(d.old12, "5.0000000E-1");
  EXPECT_FALSE(d.alphaShown);
  ApplyVLEChangeParameter(*f.s, "", "-3", "0.9");
  // no range test; alpha belongs to the NRTL model only
  EXPECT_EQ(std::tie(f.c().WilsonLambda12, f.c().WilsonLambda21, f.c().NrtlAlpha),
            std::make_tuple(0.5, -3.0, 0.4));
  f.c().CalcType = 2;
  d = OpenVLEChangeParameter(*f.s);
  EXPECT_EQ(d.title, "Change N.R.T.L. Parameter(V-L Equibrium)");
  EXPECT_TRUE(d.alphaShown);
  ApplyVLEChangeParameter(*f.s, "1.25", " ", "0.3");
  EXPECT_EQ(std::tie(f.c().NrtlTau12, f.c().NrtlTau21, f.c().NrtlAlpha),
            std::make_tuple(1.25, 0.0, 0.3));
}

}  // namespace
}  // namespace tervale
