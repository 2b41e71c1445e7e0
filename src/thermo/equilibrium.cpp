#include "thermo/equilibrium.h"

#include <cmath>

#include "state/shared_state.h"
#include "state/units.h"
#include "thermo/eos.h"

namespace tervale {
namespace {

// log10(e): turns the derivative of 10^x into the Newton step in t.
constexpr double kLog10E = 0.434294481903252;
constexpr double kStepLimit = 20.0;  // C per pass
constexpr int kLastPass = 50;        // passes are counted 0..50

constexpr BiText kNoEosForm = Same("S-R-K / P-Rの式は未だありません");

double ClipStep(double dt) {
  if (std::fabs(dt) > kStepLimit) return dt > 0 ? kStepLimit : -kStepLimit;
  return dt;
}

}  // namespace

void CalcGamma(SharedCalcState& s, const Composition& x) {
  switch (s.KValueMethod) {
    case 2:
      CalcGammaWilson(s, x);
      return;
    case 3:
      CalcGammaNRTL(s, x);
      return;
    default:
      for (int i = 1; i <= s.NC; ++i) s.Gamma[i] = 1.0;
      return;
  }
}

bool IsEosMethod(const SharedCalcState& s) {
  return s.KValueMethod == 4 || s.KValueMethod == 5;
}

void NoEosForm(SharedCalcState& s) {
  ShowMessage(s, kNoEosForm);
  for (int i = 1; i <= s.NC; ++i) s.KValue[i] = 1.0;
}

double AntoinePressureMmHg(const SharedCalcState& s, int i, double t) {
  return std::pow(10.0, s.Comp.AntoineA[i] - s.Comp.AntoineB[i] / (t + s.Comp.AntoineC[i]));
}

void CalcGammaWilson(SharedCalcState& s, const Composition& x) {
  const int n = s.NC;
  const CompMatrix& L = s.Bin.WilsonLambda;
  // den[j] = sum_k x_k L(j,k); for j = i it is also the sum inside the logarithm.
  CompArray den{};
  for (int j = 1; j <= n; ++j) {
    double sum = 0;
    for (int k = 1; k <= n; ++k) sum += x[k] * L[j][k];
    den[j] = sum;
  }
  for (int i = 1; i <= n; ++i) {
    double sum = 0;
    for (int j = 1; j <= n; ++j) sum += x[j] * L[j][i] / den[j];
    s.Gamma[i] = std::exp(1.0 - std::log(den[i]) - sum);
  }
}

void CalcGammaNRTL(SharedCalcState& s, const Composition& x) {
  const int n = s.NC;
  const CompMatrix& T = s.Bin.NrtlTau;
  const double alpha = s.Bin.NrtlAlpha;
  CompMatrix G;
  for (int r = 1; r <= n; ++r)
    for (int c = 1; c <= n; ++c) G[r][c] = std::exp(-alpha * T[r][c]);
  CompArray D{}, E{};
  for (int j = 1; j <= n; ++j) {
    double d = 0, e = 0;
    for (int k = 1; k <= n; ++k) {
      d += x[k] * G[k][j];
      e += x[k] * T[k][j] * G[k][j];
    }
    D[j] = d;
    E[j] = e;
  }
  for (int i = 1; i <= n; ++i) {
    // The first term takes (i,j), not (j,i): the parameters of this suite are fitted to it.
    double s1 = 0, s2 = 0, sum = 0;
    for (int j = 1; j <= n; ++j) {
      s1 += x[j] * T[i][j] * G[i][j];
      s2 += x[j] * G[i][j];
      sum += (x[j] * G[i][j] / D[j]) * (T[i][j] - E[j] / D[j]);
    }
    s.Gamma[i] = std::exp(s1 / s2 + sum);
  }
}

double CalcBubbleTemperature(SharedCalcState& s, double T, double P, const Composition& x) {
  if (IsEosMethod(s)) {
    return ConvTempFromBase(s, CalcBubbleTemperatureEOS(s, s.KValueMethod - 4, T, P, x));
  }
  const int n = s.NC;
  const double pmm = P * kMmHgPerMPa;
  CalcGamma(s, x);  // once: not recomputed in the loop
  double t = T;
  for (int count = 0; count <= kLastPass; ++count) {
    double sum = 0, d = 0;
    for (int i = 1; i <= n; ++i) {
      const double tc = t + s.Comp.AntoineC[i];
      const double k = s.Gamma[i] * AntoinePressureMmHg(s, i, t) / pmm;
      s.KValue[i] = k;
      sum += x[i] * k;
      d -= x[i] * k * s.Comp.AntoineB[i] / (tc * tc);
    }
    if (std::fabs(1.0 - sum) < 1E-06) break;
    t -= ClipStep((1.0 - sum) / d * kLog10E);
  }
  return t;
}

double CalcDewTemperature(SharedCalcState& s, double T, double P, const Composition& y) {
  if (IsEosMethod(s)) {
    NoEosForm(s);
    return ConvTempFromBase(s, T);
  }
  const int n = s.NC;
  const double pmm = P * kMmHgPerMPa;
  double t = T;

  // Stage one: the vapour fractions stand in for the liquid ones in Gamma. They do not change
  // from pass to pass, so Gamma is the same every pass and is taken once.
  CalcGamma(s, y);
  for (int count = 0; count <= kLastPass; ++count) {
    double sum = 0, d = 0;
    for (int i = 1; i <= n; ++i) {
      const double tc = t + s.Comp.AntoineC[i];
      const double k = s.Gamma[i] * AntoinePressureMmHg(s, i, t) / pmm;
      s.KValue[i] = k;
      const double yk = y[i] / k;
      sum += yk;
      d += yk * s.Comp.AntoineB[i] / (tc * tc);
    }
    const double f = 1.0 - sum;
    if (std::fabs(f) < 1E-06) break;
    t -= ClipStep(f / d * kLog10E);
  }

  // Stage two, temperature held: refine Gamma and K from the liquid in equilibrium with y.
  // The caller's y is only compared, never changed.
  Composition x{}, yc{};
  for (int count = 0; count <= kLastPass; ++count) {
    double sx = 0;
    for (int i = 1; i <= n; ++i) {
      x[i] = y[i] / s.KValue[i];
      sx += x[i];
    }
    for (int i = 1; i <= n; ++i) x[i] /= sx;
    CalcGamma(s, x);
    double sy = 0;
    for (int i = 1; i <= n; ++i) {
      s.KValue[i] = s.Gamma[i] * AntoinePressureMmHg(s, i, t) / pmm;
      yc[i] = s.KValue[i] * x[i];
      sy += yc[i];
    }
    double e = 0;
    for (int i = 1; i <= n; ++i) e += std::fabs(yc[i] / sy - y[i]);
    if (e < 1E-06) break;
  }
  return t;
}

namespace {

// Bubble or dew pressure at T, in the user's unit: K_i := Gamma_i Psat_i with Gamma from z, the
// pressure sum z_i K_i (bubble) or 1 / sum z_i / K_i (dew) in mmHg, and K_i divided by it.
double SaturationPressure(SharedCalcState& s, double T, double P, const Composition& z, bool dew) {
  if (IsEosMethod(s)) {
    NoEosForm(s);
    return ConvPressFromBase(s, P);
  }
  const int n = s.NC;
  CalcGamma(s, z);
  double sum = 0;
  for (int i = 1; i <= n; ++i) {
    s.KValue[i] = s.Gamma[i] * AntoinePressureMmHg(s, i, T);
    sum += dew ? z[i] / s.KValue[i] : z[i] * s.KValue[i];
  }
  const double pmm = dew ? 1.0 / sum : sum;
  for (int i = 1; i <= n; ++i) s.KValue[i] /= pmm;
  return ConvPressFromBase(s, pmm / kMmHgPerMPa);
}

}  // namespace

double CalcBubblePressure(SharedCalcState& s, double T, double P, const Composition& x) {
  return SaturationPressure(s, T, P, x, false);
}

double CalcDewPressure(SharedCalcState& s, double T, double P, const Composition& y) {
  return SaturationPressure(s, T, P, y, true);
}

}  // namespace tervale
