#include "regress/vle_statistics.h"

#include <array>
#include <cmath>

#include "regress/vle_regression.h"
#include "state/shared_state.h"

namespace tervale {
namespace {

constexpr double kStep = 0.001;

constexpr BiText kTooFewResiduals{
    "Standard errors need more residuals than the two parameters; none are given.",
    "残差の数がパラメータ数 2 以下のため、標準誤差は求められません。"};
constexpr BiText kSingular{
    "The two parameters cannot be told apart by these data (J^T J is singular); no standard "
    "errors are given.",
    "このデータでは 2 つのパラメータを区別できません（JᵀJ が特異）。標準誤差は求められません。"};

constexpr double kLn10 = 2.30258509299405;

// Bubble temperature (C) of the model's activity coefficients at the case pressure, and the
// vapour fraction y1 there. Newton on ln(sum of partial pressures) in the variable
// 1/(t + C), in which ln P° is nearly linear: from the measured temperature two passes give the
// temperature to about 1e-12 C; the last step's effect on y1 is taken to first order. False
// when it does not settle (the caller then takes the program's own bubble routine).
bool BubbleTemperature(const VLEDataCase& c, double x, double g1, double g2, double t, double& y1,
                       double& tOut) {
  const double lnP = std::log(c.VLEPressure);
  const double a1 = kLn10 * c.AntoineA[1], b1 = kLn10 * c.AntoineB[1];
  const double a2 = kLn10 * c.AntoineA[2], b2 = kLn10 * c.AntoineB[2];
  const double cm = 0.5 * (c.AntoineC[1] + c.AntoineC[2]);
  for (int round = 0; round < 60; ++round) {
    const double c1 = t + c.AntoineC[1], c2 = t + c.AntoineC[2];
    const double p1 = x * g1 * std::exp(a1 - b1 / c1);
    const double p2 = (1 - x) * g2 * std::exp(a2 - b2 / c2);
    const double sum = p1 + p2;
    const double s1 = b1 / (c1 * c1), s2 = b2 / (c2 * c2);  // d ln P° / dt
    const double dtNewton = -(std::log(sum) - lnP) * sum / (p1 * s1 + p2 * s2);
    const double tc = t + cm;
    double step = tc / (1 - dtNewton / tc) - tc;
    if (!std::isfinite(step)) return false;
    if (step > 20) step = 20;
    if (step < -20) step = -20;
    if (std::fabs(step) < 1e-3) {
      const double q1 = p1 * (1 + s1 * step), q2 = p2 * (1 + s2 * step);
      y1 = q1 / (q1 + q2);
      tOut = t + step;
      return std::isfinite(y1);
    }
    t += step;
  }
  return false;
}

}  // namespace

VLEStatistics CalcVLEStatistics(SharedCalcState& s) {
  VLEStatistics st;
  auto say = [&](const BiText& text) { st.messages.emplace_back(text.Pick(s.LanguageFlag)); };
  // The evaluations below write the parameters, the start temperatures, the residuals and the
  // vapour fractions of the case: keep those and put them back.
  VLEDataCase& c = s.VLE;
  const std::array<double, 3> keptParameters = RegressedParameters(c);
  const auto keptCalcTemp = c.CalcTemp;
  const auto keptResiduals = c.ResidualVector;
  const double keptY1 = c.VaporY1, keptY2 = c.VaporY2;

  const int m = VLEResidualCount(c);
  st.residualCount = m;
  if (m > 0) {
    std::array<double, kVLEMaxResiduals + 1> r0, jac1, jac2;
    st.sumOfSquares = CalcObjectiveSum(s);
    for (int i = 1; i <= m; ++i) r0[i] = c.ResidualVector[i];
    std::array<double, 3> p = RegressedParameters(c);
    bool finite = std::isfinite(st.sumOfSquares);
    for (int k = 1; k <= 2 && finite; ++k) {
      std::array<double, 3> q = p;
      q[k] += kStep;
      StoreRegressedParameters(s, q);
      CalcObjectiveSum(s);
      auto& jac = k == 1 ? jac1 : jac2;
      for (int i = 1; i <= m; ++i) {
        jac[i] = (c.ResidualVector[i] - r0[i]) / kStep;
        finite = finite && std::isfinite(jac[i]);
      }
    }
    StoreRegressedParameters(s, p);
    if (m <= 2) {
      say(kTooFewResiduals);
    } else {
      double a11 = 0, a12 = 0, a22 = 0;
      for (int i = 1; i <= m; ++i) {
        a11 += jac1[i] * jac1[i];
        a12 += jac1[i] * jac2[i];
        a22 += jac2[i] * jac2[i];
      }
      const double det = a11 * a22 - a12 * a12;
      if (!finite || !(det > 1e-12 * a11 * a22) || !std::isfinite(det)) {
        say(kSingular);
      } else {
        const double sigma2 = st.sumOfSquares / (m - 2);
        const double c11 = sigma2 * a22 / det, c22 = sigma2 * a11 / det;
        st.stdError12 = std::sqrt(c11);
        st.stdError21 = std::sqrt(c22);
        // The correlation of the covariance, which sigma cancels from (also for an exact fit).
        st.correlation = -a12 / std::sqrt(a11 * a22);
      }
    }
  }

  // The residual table: y and T or P from the bubble point of the fitted model.
  const bool isobaric = c.TPType == 0;
  const int n = c.NVLEData;
  double sy = 0, ay = 0, stp = 0, atp = 0;
  st.residuals.reserve(n);
  for (int i = 1; i <= n; ++i) {
    VLEResidualRow row;
    row.x = c.DataX[i];
    row.yMeasured = c.DataY[i];
    double g1 = 0, g2 = 0;
    CalcActivityCoeff(s, row.x, g1, g2);
    if (isobaric) {
      double t = 0, y1 = 0;
      if (!BubbleTemperature(c, row.x, g1, g2, c.DataTemp[i], y1, t)) {
        t = CalcBubbleTempFromGamma(s, c.DataTemp[i], row.x, g1, g2);
        y1 = c.VaporY1 / (c.VaporY1 + c.VaporY2);
      }
      row.yCalculated = y1;
      row.tpMeasured = VLETemperatureToCaseUnit(s, c.DataTemp[i]);
      row.tpCalculated = VLETemperatureToCaseUnit(s, t);
    } else {
      const double p = CalcBubblePressFromGamma(s, c.VLETemperature, row.x, g1, g2);
      row.tpMeasured = VLEPressureToCaseUnit(s, c.DataPress[i]);
      row.tpCalculated = VLEPressureToCaseUnit(s, p);
      row.yCalculated = c.VaporY1;
    }
    row.dy = row.yMeasured - row.yCalculated;
    row.dtp = row.tpMeasured - row.tpCalculated;
    sy += row.dy * row.dy;
    ay += std::fabs(row.dy);
    stp += row.dtp * row.dtp;
    atp += std::fabs(row.dtp);
    st.residuals.push_back(row);
  }
  if (n > 0) {
    st.rmsdY = std::sqrt(sy / n);
    st.aadY = ay / n;
    st.rmsdTP = std::sqrt(stp / n);
    st.aadTP = atp / n;
  }
  StoreRegressedParameters(s, keptParameters);
  c.CalcTemp = keptCalcTemp;
  c.ResidualVector = keptResiduals;
  c.VaporY1 = keptY1;
  c.VaporY2 = keptY2;
  return st;
}

}  // namespace tervale
