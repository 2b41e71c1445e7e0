#include "regress/vle_statistics.h"

#include <cmath>
#include <memory>

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

}  // namespace

VLEStatistics CalcVLEStatistics(SharedCalcState& s) {
  VLEStatistics st;
  auto say = [&](const BiText& text) { st.messages.emplace_back(text.Pick(s.LanguageFlag)); };
  // Every evaluation below writes work arrays of the case: keep the case and put it back.
  const auto kept = std::make_unique<VLEDataCase>(s.VLE);
  VLEDataCase& c = s.VLE;

  const int m = VLEResidualCount(c);
  st.residualCount = m;
  if (m > 0) {
    std::vector<double> r0(m + 1), jac1(m + 1), jac2(m + 1);
    st.sumOfSquares = CalcObjectiveSum(s);
    for (int i = 1; i <= m; ++i) r0[i] = c.ResidualVector[i];
    std::array<double, 3> p = RegressedParameters(c);
    bool finite = std::isfinite(st.sumOfSquares);
    for (int k = 1; k <= 2 && finite; ++k) {
      std::array<double, 3> q = p;
      q[k] += kStep;
      StoreRegressedParameters(s, q);
      CalcObjectiveSum(s);
      std::vector<double>& jac = k == 1 ? jac1 : jac2;
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
  for (int i = 1; i <= n; ++i) {
    VLEResidualRow row;
    row.x = c.DataX[i];
    row.yMeasured = c.DataY[i];
    double g1 = 0, g2 = 0;
    CalcActivityCoeff(s, row.x, g1, g2);
    if (isobaric) {
      const double t = CalcBubbleTempFromGamma(s, c.DataTemp[i], row.x, g1, g2);
      row.tpMeasured = VLETemperatureToCaseUnit(s, c.DataTemp[i]);
      row.tpCalculated = VLETemperatureToCaseUnit(s, t);
    } else {
      const double p = CalcBubblePressFromGamma(s, c.VLETemperature, row.x, g1, g2);
      row.tpMeasured = VLEPressureToCaseUnit(s, c.DataPress[i]);
      row.tpCalculated = VLEPressureToCaseUnit(s, p);
    }
    row.yCalculated = c.VaporY1;
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
  s.VLE = *kept;
  return st;
}

}  // namespace tervale
