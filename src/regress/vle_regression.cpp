#include "regress/vle_regression.h"

#include <cmath>
#include <string>

#include "state/shared_state.h"

namespace tervale {
namespace {

constexpr double kLn10 = 2.30258509299405;
constexpr double kGammaFloor = 0.00001;
constexpr double kStep = 0.001;
constexpr double kRelTolerance = 0.000001;
constexpr double kMaxDamping = 1000000;
constexpr int kMaxRejections = 200;
constexpr int kEvaluationsPerResidual = 800;

constexpr BiText kArithmeticFault{
    "The regression met an arithmetic fault (the sum of squares is not a finite number) and "
    "stopped at the last accepted parameters.",
    "回帰計算で数値エラー（残差平方和が有限の値になりません）が発生したため、最後に採用した"
    "パラメータで計算を終了しました。"};

double Sign(double v) {
  return v > 0 ? 1.0 : (v < 0 ? -1.0 : 0.0);
}

double SumOfSquares(const VLEDataCase& c, int m) {
  double sum = 0;
  for (int i = 1; i <= m; ++i) sum += c.ResidualVector[i] * c.ResidualVector[i];
  return sum;
}

}  // namespace

void CalcActivityCoeff(SharedCalcState& s, double x, double& gamma1, double& gamma2) {
  const VLEDataCase& c = s.VLE;
  const double xs[3] = {0, x, 1 - x};
  if (IsWilsonType(c.CalcType)) {
    const double lambda[3][3] = {{0, 0, 0}, {0, 1, c.WilsonLambda12}, {0, c.WilsonLambda21, 1}};
    double sums[3] = {0, 0, 0};
    for (int k = 1; k <= 2; ++k) sums[k] = lambda[k][1] * xs[1] + lambda[k][2] * xs[2];
    double g[3] = {0, 0, 0};
    for (int k = 1; k <= 2; ++k) {
      if (sums[k] <= 0) {
        g[k] = kGammaFloor;
        continue;
      }
      double t = 0;
      for (int j = 1; j <= 2; ++j) t += xs[j] * lambda[j][k] / sums[j];
      g[k] = std::exp(1 - std::log(sums[k]) - t);
      if (!(g[k] > 0)) {
        ShowMessage(s, Same("ActivityCoeff:G(" + std::to_string(k) + ") <=0"));
        g[k] = kGammaFloor;
      }
    }
    gamma1 = g[1];
    gamma2 = g[2];
    return;
  }
  const double a = c.NrtlAlpha, t12 = c.NrtlTau12, t21 = c.NrtlTau21;
  const double x1 = xs[1], x2 = xs[2];
  const double g12 = std::exp(-a * t12), g21 = std::exp(-a * t21);
  const double d1 = (x1 + x2 * g21) * (x1 + x2 * g21);
  const double d2 = (x2 + x1 * g12) * (x2 + x1 * g12);
  gamma1 = std::exp(x2 * x2 * (t12 * g12 / d2 + t21 * std::exp(-2 * a * t21) / d1));
  gamma2 = std::exp(x1 * x1 * (t12 * std::exp(-2 * a * t12) / d2 + t21 * g21 / d1));
}

double CalcBubbleTempFromGamma(SharedCalcState& s, double tStart, double x, double gamma1,
                               double gamma2) {
  VLEDataCase& c = s.VLE;
  const double p = c.VLEPressure;
  double t = tStart;
  for (int round = 1; round <= 100; ++round) {
    const double y1 = x * gamma1 * VLEVapourPressure(c, 1, t) / p;
    const double y2 = (1 - x) * gamma2 * VLEVapourPressure(c, 2, t) / p;
    c.VaporY1 = y1;
    c.VaporY2 = y2;
    const double e = 1 - y1 - y2;
    if (std::fabs(e) < 0.000001) break;
    const double c1 = t + c.AntoineC[1], c2 = t + c.AntoineC[2];
    double dt = e / ((y1 * c.AntoineB[1] / (c1 * c1) + y2 * c.AntoineB[2] / (c2 * c2)) * kLn10);
    if (std::fabs(dt) > 20) dt = 20 * Sign(dt);
    t += dt;
  }
  return t;
}

double CalcBubblePressFromGamma(SharedCalcState& s, double t, double x, double gamma1,
                                double gamma2) {
  VLEDataCase& c = s.VLE;
  const double p1 = x * gamma1 * VLEVapourPressure(c, 1, t);
  const double p2 = (1 - x) * gamma2 * VLEVapourPressure(c, 2, t);
  const double p = p1 + p2;
  c.VaporY1 = p1 / p;
  c.VaporY2 = p2 / p;
  return p;
}

int VLEResidualCount(const VLEDataCase& c) {
  switch (c.ObjectiveFunc) {
    case 1:
    case 3:
      return c.NVLEData;
    case 2:
    case 4:
    case 5:
      return 2 * c.NVLEData;
    default:
      return 0;
  }
}

double CalcObjectiveSum(SharedCalcState& s) {
  VLEDataCase& c = s.VLE;
  const int n = c.NVLEData;
  for (int i = 1; i <= n; ++i) {
    const double x = c.DataX[i], y = c.DataY[i];
    const double ge1 = c.GammaExp[i][1], ge2 = c.GammaExp[i][2];
    double g1 = 0, g2 = 0;
    CalcActivityCoeff(s, x, g1, g2);
    switch (c.ObjectiveFunc) {
      case 1:
        c.ResidualVector[i] =
            x * (std::log(ge1) - std::log(g1)) + (1 - x) * (std::log(ge2) - std::log(g2));
        break;
      case 2:
        c.ResidualVector[2 * i - 1] = ge1 - g1;
        c.ResidualVector[2 * i] = ge2 - g2;
        break;
      case 3:
        c.ResidualVector[i] = std::log(ge1 / ge2) - std::log(g1 / g2);
        break;
      case 4:
      case 5: {
        // Both take the pressure field, also in a constant-temperature case.
        c.CalcTemp[i] = CalcBubbleTempFromGamma(s, c.CalcTemp[i], x, g1, g2);
        if (c.ObjectiveFunc == 4) {
          c.ResidualVector[2 * i - 1] = y - c.VaporY1;
          c.ResidualVector[2 * i] = (1 - y) - c.VaporY2;
        } else {
          c.ResidualVector[2 * i - 1] = y / c.VaporY1 - 1;
          c.ResidualVector[2 * i] = (1 - y) / c.VaporY2 - 1;
        }
        break;
      }
      default:
        break;
    }
  }
  return SumOfSquares(c, VLEResidualCount(c));
}

std::array<double, 3> RegressedParameters(const VLEDataCase& c) {
  if (IsWilsonType(c.CalcType)) return {0, c.WilsonLambda12, c.WilsonLambda21};
  return {0, c.NrtlTau12, c.NrtlTau21};
}

void StoreRegressedParameters(SharedCalcState& s, const std::array<double, 3>& p) {
  if (IsWilsonType(s.VLE.CalcType)) {
    s.VLE.WilsonLambda12 = p[1];
    s.VLE.WilsonLambda21 = p[2];
  } else {
    s.VLE.NrtlTau12 = p[1];
    s.VLE.NrtlTau21 = p[2];
  }
}

RegressionResult MarquardtRegression(SharedCalcState& s) {
  VLEDataCase& c = s.VLE;
  RegressionResult result;
  const int m = VLEResidualCount(c);
  if (m <= 0) return result;
  const int eMax = kEvaluationsPerResidual * m;

  // Rows 1..M: Jacobian (columns 1, 2), right-hand side (3), a residual copy (4); rows M+1,
  // M+2 the damping rows; M+3 the factor's diagonal; M+4 saved and M+5 trial parameters.
  double w[kVLEMaxResiduals + 6][5] = {};
  const int rDiag = m + 3, rSaved = m + 4, rTrial = m + 5;
  std::array<double, 3> p = RegressedParameters(c);
  std::array<double, 3> accepted = p;  // what an arithmetic fault falls back to
  double sigma = 0;
  bool central = false;
  bool worse = false;
  double lastTrialSum = 0;
  int e = 1;
  int pass = 1;
  const double* r = c.ResidualVector.data();

  auto evaluate = [&]() {
    StoreRegressedParameters(s, p);
    return CalcObjectiveSum(s);
  };
  auto fault = [&](RegressionEnd end) {
    StoreRegressedParameters(s, accepted);
    ShowMessage(s, kArithmeticFault);
    result.end = end;
  };

  double sum = CalcObjectiveSum(s);  // 1.
  result.sumOfSquares = sum;
  if (!std::isfinite(sum)) {
    fault(RegressionEnd::ArithmeticFault);
    result.evaluations = e;
    result.passes = 0;
    return result;
  }

  for (;;) {
    // 2. right-hand side
    for (int i = 1; i <= m; ++i) w[i][3] = r[i];
    // 3. Jacobian of the residuals, forward or central, with the absolute step
    bool jacobianFinite = true;
    if (!central) {
      for (int i = 1; i <= m; ++i) w[i][4] = r[i];
      for (int k = 1; k <= 2; ++k) {
        p[k] += kStep;
        evaluate();
        ++e;
        for (int i = 1; i <= m; ++i) w[i][k] = (r[i] - w[i][3]) / kStep;
        p[k] -= kStep;
      }
    } else {
      for (int k = 1; k <= 2; ++k) {
        p[k] -= kStep;
        evaluate();
        ++e;
        for (int i = 1; i <= m; ++i) w[i][4] = r[i];
        p[k] += 2 * kStep;
        evaluate();
        ++e;
        for (int i = 1; i <= m; ++i) w[i][k] = (r[i] - w[i][4]) / (2 * kStep);
        p[k] -= kStep;
      }
      for (int i = 1; i <= m; ++i) c.ResidualVector[i] = w[i][3];
    }
    for (int i = 1; i <= m && jacobianFinite; ++i)
      jacobianFinite = std::isfinite(w[i][1]) && std::isfinite(w[i][2]);
    if (!jacobianFinite) {
      fault(RegressionEnd::ArithmeticFault);
      break;
    }
    // 4. the damping starts at the RMS of the first Jacobian
    if (pass == 1) {
      double sq = 0;
      for (int i = 1; i <= m; ++i)
        for (int k = 1; k <= 2; ++k) sq += w[i][k] * w[i][k];
      sigma = std::sqrt(sq / (2.0 * m));
    }
    // 5. sigma * I below the Jacobian, zeros below the right-hand side
    int rejections = 0;
    for (int k = 1; k <= 2; ++k) {
      for (int j = 1; j <= 3; ++j) w[m + k][j] = 0;
      w[m + k][k] = sigma;
    }
    // 6. Householder reduction
    for (int k = 1; k <= 2; ++k) {
      const double a = w[k][k];
      double ss = 0;
      for (int i = k; i <= m + k; ++i) ss += w[i][k] * w[i][k];
      const double sn = std::sqrt(ss);
      const double cc = 1 / ((std::fabs(a) + sn) * sn);
      if (a == 0) {
        w[rDiag][k] = -sn;
        w[k][k] = sn;
      } else {
        w[rDiag][k] = -Sign(a) * sn;
        w[k][k] = a + Sign(a) * sn;
      }
      for (int j = k + 1; j <= 3; ++j) {
        double t = 0;
        for (int i = k; i <= m + k; ++i) t += w[i][j] * w[i][k];
        t *= cc;
        for (int i = k; i <= m + k; ++i) w[i][j] -= t * w[i][k];
      }
    }

    double normal[3][5] = {};  // the normal equations kept aside, laid out as in W
    bool toStep15 = false;
    bool stopNow = false;
    for (;;) {
      // 7. back substitution: the step
      w[2][4] = w[2][3] / w[rDiag][2];
      w[1][4] = (w[1][3] - w[1][2] * w[2][4]) / w[rDiag][1];
      const double d1 = w[1][4], d2 = w[2][4];
      // 8. trial
      for (int k = 1; k <= 2; ++k) {
        w[rTrial][k] = p[k] - w[k][4];
        w[rSaved][k] = p[k];
        p[k] = w[rTrial][k];
      }
      const double trialSum = evaluate();
      lastTrialSum = trialSum;
      ++e;
      for (int k = 1; k <= 2; ++k) p[k] = w[rSaved][k];
      // 9.
      if (!std::isfinite(trialSum) || !std::isfinite(d1) || !std::isfinite(d2)) {
        fault(RegressionEnd::ArithmeticFault);
        stopNow = true;
        break;
      }
      worse = sum < trialSum;
      // 10. convergence, before acceptance
      double pMax = std::fmax(std::fabs(p[1]), std::fabs(p[2]));
      if (pMax < 1.0) pMax = 1.0;
      const double dMax = std::fmax(std::fabs(d1), std::fabs(d2));
      if (pMax * kRelTolerance > dMax) {
        result.end = RegressionEnd::Converged;
        toStep15 = true;
        break;
      }
      // 11. accept
      if (!worse) {
        central = pMax * kRelTolerance * 100 > dMax;
        for (int k = 1; k <= 2; ++k) p[k] = w[rTrial][k];
        accepted = p;
        sum = trialSum;
        result.sumOfSquares = sum;
        if (rejections == 0) sigma *= 0.5;
        break;  // 12. follows
      }
      // 13. rejected step
      ++rejections;
      const double lambda = sigma * sigma;
      if (rejections == 1) {
        for (int k = 1; k <= 2; ++k) w[k][k] = w[rDiag][k];
        for (int j = 3; j >= 1; --j)
          for (int i = 1; i <= 2 && i <= j; ++i) {
            double t = 0;
            for (int l = 1; l <= i; ++l) t += w[l][i] * w[l][j];
            w[i][j + 1] = t;
          }
        for (int i = 1; i <= 2; ++i)
          for (int j = i + 1; j <= 4; ++j) normal[i][j] = w[i][j];
      }
      // 14. more damping, then the 2x2 Cholesky of the kept normal equations
      for (int k = 1; k <= 2; ++k) normal[k][k + 1] += 1.25 * lambda;
      for (int i = 1; i <= 2; ++i)
        for (int j = i + 1; j <= 4; ++j) w[i][j] = normal[i][j];
      for (int i = 1; i <= 2; ++i) {
        double v = w[i][i + 1];
        for (int l = 1; l < i; ++l) v -= w[l][i] * w[l][i];
        w[i][i] = std::sqrt(std::fabs(v));
        w[rDiag][i] = Sign(w[rDiag][i]) * w[i][i];
        for (int j = i + 1; j <= 3; ++j) {
          double t = w[i][j + 1];
          for (int l = 1; l < i; ++l) t -= w[l][i] * w[l][j];
          w[i][j] = t / w[rDiag][i];
        }
      }
      sigma *= 1.5;
      if (sigma > kMaxDamping) {
        ShowMessage(s, Same("Marquardt Too Big V"));
        result.end = RegressionEnd::DampingTooBig;
        stopNow = true;  // the case keeps the last trial
        break;
      }
      if (rejections > kMaxRejections) {
        result.end = RegressionEnd::RejectionLimit;
        toStep15 = true;
        break;
      }
    }
    if (stopNow) break;
    if (!toStep15) {
      // 12.
      if (e > eMax) {
        result.end = RegressionEnd::EvaluationLimit;
        toStep15 = true;
      } else {
        ++pass;
        continue;
      }
    }
    // 15. the last trial is kept when it was worse
    if (!worse) {
      for (int k = 1; k <= 2; ++k) p[k] = w[rTrial][k];
      StoreRegressedParameters(s, p);
      result.sumOfSquares = lastTrialSum;
    }
    break;
  }
  result.evaluations = e;
  result.passes = pass;
  return result;
}

std::string_view ObjectiveCaption(int objectiveFunc) {
  switch (objectiveFunc) {
    case 1:
      return "Q=x*log(r'-r)";
    case 2:
      return "Gamma1=r'-r";
    case 3:
      return "Gamma2=log(r2/r1)";
    case 4:
      return "y1=y'-y";
    case 5:
      return "y2=y'/y";
    default:
      return "";
  }
}

std::string_view ObjectiveShortCaption(int objectiveFunc) {
  std::string_view caption = ObjectiveCaption(objectiveFunc);
  size_t eq = caption.find('=');
  return eq == std::string_view::npos ? caption : caption.substr(eq + 1);
}

}  // namespace tervale
