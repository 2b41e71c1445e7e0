#include "regress/vle_consistency.h"

#include <algorithm>
#include <cmath>

#include "regress/small_linear.h"
#include "regress/vle_case.h"
#include "state/shared_state.h"

namespace tervale {
namespace {

constexpr double kLn10 = 2.30258509299405;
constexpr double kKelvin = 273.15;
constexpr int kMinPoints = 5;
constexpr int kMaxTerms = 5;

constexpr BiText kTooFewPoints{
    "The consistency tests need at least five measured points; no verdict is given.",
    "整合性テストには5点以上の測定データが必要です。判定しません。"};
constexpr BiText kPointFitFailed{
    "The point test could not fit the measured temperatures or pressures; no verdict is given.",
    "点テストで温度または圧力の当てはめができませんでした。判定しません。"};
constexpr BiText kOneSided{
    "The y residuals of the point test all have the same sign: the data may hold a systematic "
    "error.",
    "点テストの y の残差がすべて同じ符号です。測定データに系統誤差がある可能性があります。"};
constexpr BiText kAreaFlat{"ln(gamma1/gamma2) is zero throughout: the area test takes D = 0.",
                           "ln(γ1/γ2) がいたるところ 0 のため、面積テストは D = 0 とします。"};

double CubicAt(const double c[4], double x) {
  return ((c[3] * x + c[2]) * x + c[1]) * x + c[0];
}
double CubicPrimitive(const double c[4], double x) {
  return (((c[3] / 4 * x + c[2] / 3) * x + c[1] / 2) * x + c[0]) * x;
}

// A root of the cubic in [a, b] where its values at the ends differ in sign (bisection, which
// is exact enough in 60 halvings of an interval within [0, 1]).
double RootBetween(const double c[4], double a, double b) {
  double fa = CubicAt(c, a);
  for (int i = 0; i < 80 && b - a > 1e-16; ++i) {
    const double m = 0.5 * (a + b);
    const double fm = CubicAt(c, m);
    if (fm == 0) return m;
    if ((fm < 0) == (fa < 0)) {
      a = m;
      fa = fm;
    } else {
      b = m;
    }
  }
  return 0.5 * (a + b);
}

// Legendre polynomials L_k(z) and their derivatives, k = 0..n-1.
void Legendre(int n, double z, double* l, double* dl) {
  l[0] = 1;
  dl[0] = 0;
  if (n > 1) {
    l[1] = z;
    dl[1] = 1;
  }
  for (int k = 1; k + 1 < n; ++k) {
    l[k + 1] = ((2 * k + 1) * z * l[k] - k * l[k - 1]) / (k + 1);
    dl[k + 1] = (k + 1) * l[k] + z * dl[k];
  }
}

struct PointBasis {
  double x1 = 0, x2 = 0;
  double b1[kMaxTerms] = {}, b2[kMaxTerms] = {};  // d ln(gamma_i) / d a_k
  double measured = 0;                            // P mmHg or T C
  double y = 0;
};

// ln gamma of both components for the coefficients a (n terms).
void LnGamma(const PointBasis& p, int n, const double* a, double& lg1, double& lg2) {
  lg1 = lg2 = 0;
  for (int k = 0; k < n; ++k) {
    lg1 += a[k] * p.b1[k];
    lg2 += a[k] * p.b2[k];
  }
}

struct PointModel {
  double tp = 0;  // computed P (mmHg) or T (C)
  double y = 0;
  double grad[kMaxTerms] = {};  // d tp / d a_k
  bool ok = false;
};

// Modified Raoult's law at one point: the bubble pressure at the case temperature or the
// bubble temperature at the case pressure, with the derivatives for the least squares.
PointModel Evaluate(const VLEDataCase& c, const PointBasis& p, int n, const double* a,
                    bool isobaric) {
  PointModel m;
  double lg1 = 0, lg2 = 0;
  LnGamma(p, n, a, lg1, lg2);
  if (lg1 > 700 || lg2 > 700) return m;
  const double g1 = std::exp(lg1), g2 = std::exp(lg2);
  if (!isobaric) {
    const double t = c.VLETemperature;
    const double p1 = p.x1 * g1 * VLEVapourPressure(c, 1, t);
    const double p2 = p.x2 * g2 * VLEVapourPressure(c, 2, t);
    m.tp = p1 + p2;
    m.y = p1 / m.tp;
    for (int k = 0; k < n; ++k) m.grad[k] = p1 * p.b1[k] + p2 * p.b2[k];
    m.ok = std::isfinite(m.tp) && m.tp > 0;
    return m;
  }
  const double pressure = c.VLEPressure;
  double t = p.measured;
  double p1 = 0, p2 = 0, d1 = 0, d2 = 0;
  for (int round = 0; round < 100; ++round) {
    p1 = p.x1 * g1 * VLEVapourPressure(c, 1, t);
    p2 = p.x2 * g2 * VLEVapourPressure(c, 2, t);
    const double c1 = t + c.AntoineC[1], c2 = t + c.AntoineC[2];
    d1 = p1 * kLn10 * c.AntoineB[1] / (c1 * c1);
    d2 = p2 * kLn10 * c.AntoineB[2] / (c2 * c2);
    const double sum = p1 + p2;
    if (!(sum > 0) || !std::isfinite(sum)) return m;
    // Newton on ln(sum) - ln(P): fast and safe far from the root
    double dt = -(std::log(sum) - std::log(pressure)) * sum / (d1 + d2);
    if (!std::isfinite(dt)) return m;
    dt = std::clamp(dt, -20.0, 20.0);
    t += dt;
    if (std::fabs(dt) < 1e-10 * (1 + std::fabs(t))) {
      p1 = p.x1 * g1 * VLEVapourPressure(c, 1, t);
      p2 = p.x2 * g2 * VLEVapourPressure(c, 2, t);
      const double e1 = t + c.AntoineC[1], e2 = t + c.AntoineC[2];
      d1 = p1 * kLn10 * c.AntoineB[1] / (e1 * e1);
      d2 = p2 * kLn10 * c.AntoineB[2] / (e2 * e2);
      m.tp = t;
      m.y = p1 / (p1 + p2);
      for (int k = 0; k < n; ++k) m.grad[k] = -(p1 * p.b1[k] + p2 * p.b2[k]) / (d1 + d2);
      m.ok = std::isfinite(m.y);
      return m;
    }
  }
  return m;
}

double SumOfSquares(const VLEDataCase& c, const std::vector<PointBasis>& pts, int n,
                    const double* a, bool isobaric, bool& ok) {
  double s = 0;
  ok = true;
  for (const PointBasis& p : pts) {
    PointModel m = Evaluate(c, p, n, a, isobaric);
    if (!m.ok) {
      ok = false;
      return 0;
    }
    s += (m.tp - p.measured) * (m.tp - p.measured);
  }
  return s;
}

// Barker's method: the G^E coefficients that make the computed pressures or temperatures
// fit the measured ones (Levenberg-Marquardt from the direct fit of the measured G^E/RT).
bool FitBarker(const VLEDataCase& c, const std::vector<PointBasis>& pts, int n, bool isobaric,
               double* a) {
  // Start: G^E/RT from the measured activity coefficients, linear in a.
  {
    double ata[kMaxTerms][kMaxTerms] = {}, atb[kMaxTerms] = {};
    for (size_t i = 0; i < pts.size(); ++i) {
      const PointBasis& p = pts[i];
      const double z = 2 * p.x1 - 1;
      double l[kMaxTerms], dl[kMaxTerms];
      Legendre(n, z, l, dl);
      const double ge =
          p.x1 * std::log(c.GammaExp[i + 1][1]) + p.x2 * std::log(c.GammaExp[i + 1][2]);
      for (int j = 0; j < n; ++j) {
        const double fj = p.x1 * p.x2 * l[j];
        atb[j] += fj * ge;
        for (int k = 0; k < n; ++k) ata[j][k] += fj * p.x1 * p.x2 * l[k];
      }
    }
    if (SolveSmallSystem(n, ata, atb)) {
      for (int k = 0; k < n; ++k) a[k] = atb[k];
    } else {
      for (int k = 0; k < n; ++k) a[k] = 0;
    }
  }
  bool ok = false;
  double s = SumOfSquares(c, pts, n, a, isobaric, ok);
  if (!ok) {
    for (int k = 0; k < n; ++k) a[k] = 0;
    s = SumOfSquares(c, pts, n, a, isobaric, ok);
    if (!ok) return false;
  }
  double lambda = 1e-3;
  for (int iter = 0; iter < 200; ++iter) {
    double jtj[kMaxTerms][kMaxTerms] = {}, jtr[kMaxTerms] = {};
    for (const PointBasis& p : pts) {
      PointModel m = Evaluate(c, p, n, a, isobaric);
      if (!m.ok) return false;
      const double r = m.tp - p.measured;
      for (int j = 0; j < n; ++j) {
        jtr[j] += m.grad[j] * r;
        for (int k = 0; k < n; ++k) jtj[j][k] += m.grad[j] * m.grad[k];
      }
    }
    bool improved = false;
    for (int tries = 0; tries < 30 && !improved; ++tries) {
      double sys[kMaxTerms][kMaxTerms], step[kMaxTerms];
      for (int j = 0; j < n; ++j) {
        for (int k = 0; k < n; ++k) sys[j][k] = jtj[j][k];
        sys[j][j] += lambda * (jtj[j][j] > 0 ? jtj[j][j] : 1);
        step[j] = -jtr[j];
      }
      if (!SolveSmallSystem(n, sys, step)) {
        lambda *= 10;
        continue;
      }
      double trial[kMaxTerms];
      for (int k = 0; k < n; ++k) trial[k] = a[k] + step[k];
      bool trialOk = false;
      const double st = SumOfSquares(c, pts, n, trial, isobaric, trialOk);
      if (trialOk && st <= s) {
        double change = 0;
        for (int k = 0; k < n; ++k) change = std::fmax(change, std::fabs(step[k]));
        for (int k = 0; k < n; ++k) a[k] = trial[k];
        const double before = s;
        s = st;
        lambda = std::fmax(lambda * 0.3, 1e-12);
        improved = true;
        if (before - st <= 1e-14 * before || change < 1e-12) return true;
      } else {
        lambda *= 10;
      }
    }
    if (!improved) return true;  // no step lowers the sum any more: at the minimum
  }
  return true;
}

}  // namespace

double CubicIntegral01(const double c[4]) {
  return CubicPrimitive(c, 1.0) - CubicPrimitive(c, 0.0);
}

double CubicAbsIntegral01(const double c[4]) {
  // Split [0, 1] at the turning points, then at the one root each monotone piece may hold.
  double cuts[6] = {0};
  int nCuts = 1;
  const double qa = 3 * c[3], qb = 2 * c[2], qc = c[1];
  double turns[2];
  int nTurns = 0;
  if (qa != 0) {
    const double disc = qb * qb - 4 * qa * qc;
    if (disc >= 0) {
      const double sq = std::sqrt(disc);
      const double q = -0.5 * (qb + (qb >= 0 ? sq : -sq));
      if (q != 0) {
        turns[nTurns++] = q / qa;
        turns[nTurns++] = qc / q;
      } else {
        turns[nTurns++] = 0;
      }
    }
  } else if (qb != 0) {
    turns[nTurns++] = -qc / qb;
  }
  std::sort(turns, turns + nTurns);
  for (int i = 0; i < nTurns; ++i)
    if (turns[i] > 0 && turns[i] < 1) cuts[nCuts++] = turns[i];
  cuts[nCuts++] = 1;
  double points[8];
  int nPoints = 0;
  for (int i = 0; i + 1 < nCuts; ++i) {
    points[nPoints++] = cuts[i];
    const double fa = CubicAt(c, cuts[i]), fb = CubicAt(c, cuts[i + 1]);
    if ((fa < 0 && fb > 0) || (fa > 0 && fb < 0))
      points[nPoints++] = RootBetween(c, cuts[i], cuts[i + 1]);
  }
  points[nPoints++] = 1;
  double total = 0;
  for (int i = 0; i + 1 < nPoints; ++i)
    total += std::fabs(CubicPrimitive(c, points[i + 1]) - CubicPrimitive(c, points[i]));
  return total;
}

ConsistencyResult TestVLEConsistency(const SharedCalcState& s) {
  const VLEDataCase& c = s.VLE;
  ConsistencyResult result;
  auto say = [&](const BiText& text) { result.messages.emplace_back(text.Pick(s.LanguageFlag)); };
  const int n = c.NVLEData;
  if (n < kMinPoints) {
    say(kTooFewPoints);
    return result;
  }
  const bool isobaric = c.TPType == 0;

  // Area test
  {
    AreaTestResult area;
    double ata[4][4] = {}, atb[4] = {};
    for (int i = 1; i <= n; ++i) {
      const double x = c.DataX[i];
      const double v = std::log(c.GammaExp[i][1] / c.GammaExp[i][2]);
      double pw[4] = {1, x, x * x, x * x * x};
      for (int j = 0; j < 4; ++j) {
        atb[j] += pw[j] * v;
        for (int k = 0; k < 4; ++k) ata[j][k] += pw[j] * pw[k];
      }
    }
    if (SolveSmallSystem(4, ata, atb)) {
      for (int k = 0; k < 4; ++k) area.coefficients[k] = atb[k];
      const double whole = CubicIntegral01(area.coefficients);
      const double absolute = CubicAbsIntegral01(area.coefficients);
      if (absolute > 0) {
        area.D = 100 * std::fabs(whole) / absolute;
      } else {
        area.D = 0;
        say(kAreaFlat);
      }
      if (isobaric) {
        double tMax = c.DataTemp[1], tMin = c.DataTemp[1];
        for (int i = 2; i <= n; ++i) {
          tMax = std::fmax(tMax, c.DataTemp[i]);
          tMin = std::fmin(tMin, c.DataTemp[i]);
        }
        area.J = 150 * std::fabs(tMax - tMin) / (tMin + kKelvin);
        area.passed = area.D - *area.J < 10;
      } else {
        area.passed = area.D < 10;
      }
      result.area = area;
    }
  }

  // Point test
  std::vector<PointBasis> pts(n);
  for (int i = 1; i <= n; ++i) {
    PointBasis& p = pts[i - 1];
    p.x1 = c.DataX[i];
    p.x2 = 1 - p.x1;
    p.y = c.DataY[i];
    p.measured = isobaric ? c.DataTemp[i] : c.DataPress[i];
    double l[kMaxTerms], dl[kMaxTerms];
    Legendre(kMaxTerms, 2 * p.x1 - 1, l, dl);
    for (int k = 0; k < kMaxTerms; ++k) {
      const double g = p.x1 * p.x2 * l[k];
      const double dg = (p.x2 - p.x1) * l[k] + p.x1 * p.x2 * 2 * dl[k];
      p.b1[k] = g + p.x2 * dg;
      p.b2[k] = g - p.x1 * dg;
    }
  }
  const int maxOrder = std::min(kMaxTerms, n - 2);
  for (int order = 1; order <= maxOrder; ++order) {
    double a[kMaxTerms] = {};
    if (!FitBarker(c, pts, order, isobaric, a)) continue;
    PointTestResult trial;
    trial.order = order;
    for (int k = 0; k < order; ++k) trial.coefficients[k] = a[k];
    double sum = 0;
    bool ok = true;
    for (const PointBasis& p : pts) {
      PointModel m = Evaluate(c, p, order, a, isobaric);
      if (!m.ok) {
        ok = false;
        break;
      }
      trial.computedY.push_back(m.y);
      trial.computedTP.push_back(m.tp);
      trial.residualsY.push_back(p.y - m.y);
      sum += std::fabs(p.y - m.y);
    }
    if (!ok) continue;
    trial.meanAbsDy = sum / n;
    if (!result.point || trial.meanAbsDy < result.point->meanAbsDy) result.point = trial;
  }
  if (!result.point) {
    say(kPointFitFailed);
    return result;
  }
  PointTestResult& point = *result.point;
  point.passed = point.meanAbsDy < 0.01;
  int positive = 0, negative = 0;
  for (double r : point.residualsY) {
    if (r > 0) ++positive;
    if (r < 0) ++negative;
  }
  if ((positive == 0 || negative == 0) && point.meanAbsDy >= 0.001) say(kOneSided);
  return result;
}

}  // namespace tervale
