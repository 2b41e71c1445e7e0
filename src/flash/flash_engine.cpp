#include "flash/flash_engine.h"

#include <cmath>

#include "state/shared_state.h"
#include "thermo/equilibrium.h"

namespace tervale {
namespace {
constexpr BiText kVfOutOfRange = Same("V/Fが<0 or >1です");
}  // namespace

void CalcIsothermalFlashVF(SharedCalcState& s, double T, double P, double& VF,
                           const Composition& z) {
  const int n = s.NC;
  if (IsEosMethod(s)) {
    NoEosForm(s);
    VF = 0;
    return;
  }
  const double pmm = P * kMmHgPerMPa;
  double sz = 0;
  for (int i = 1; i <= n; ++i) sz += z[i];
  if (sz == 0) return;

  // The feed stands in for the liquid: Gamma is taken once, at the feed, and held.
  Composition f{};
  for (int i = 1; i <= n; ++i) f[i] = z[i] / sz;
  CalcGamma(s, f);
  double s1 = 0, s2 = 0;
  for (int i = 1; i <= n; ++i) {
    const double k = s.Gamma[i] * AntoinePressureMmHg(s, i, T) / pmm;
    s.KValue[i] = k;
    s1 += f[i] * k;
    s2 += f[i] / k;
  }
  if (!(s1 > 1.0)) {
    VF = 0;
    return;
  }
  if (!(s2 > 1.0)) {
    VF = 1.0;
    return;
  }

  // Newton on sum (1 - K) f / ((K - 1) VF + 1) = 0 from 0.8; 51 passes at most, ending
  // silently with the last V/F.
  VF = 0.8;
  for (int count = 0; count <= 50; ++count) {
    double g = 0, h = 0;
    for (int i = 1; i <= n; ++i) {
      const double km1 = s.KValue[i] - 1;
      const double q = km1 * VF + 1;
      const double t = -km1 * f[i] / q;
      g += t;
      h -= km1 * t / q;
    }
    VF -= g / h;
    if (VF > 1.0) VF = 0.999999;
    if (VF < 0.0) VF = 1E-06;
    if (std::fabs(g) < 1E-06) break;
  }
}

void SplitFlashComposition(SharedCalcState& s, double T, double P, double VF, const Composition& z,
                           Composition& y, Composition& x) {
  const int n = s.NC;
  const CompArray& K = s.KValue;
  if (VF < 0 || VF > 1) {
    ShowMessage(s, kVfOutOfRange);
    return;
  }
  if (VF == 0) {
    double sum = 0;
    for (int i = 1; i <= n; ++i) {
      x[i] = z[i];
      y[i] = z[i] * K[i];
      sum += y[i];
    }
    for (int i = 1; i <= n; ++i) y[i] /= sum;
    return;
  }
  if (VF == 1) {
    double sum = 0;
    for (int i = 1; i <= n; ++i) {
      y[i] = z[i];
      x[i] = z[i] / K[i];
      sum += x[i];
    }
    for (int i = 1; i <= n; ++i) x[i] /= sum;
    return;
  }
  double sl = 0, sv = 0;
  for (int i = 1; i <= n; ++i) {
    const double l = (1 - VF) * z[i] / ((K[i] - 1) * VF + 1);
    x[i] = l;
    y[i] = z[i] - l;
    sl += l;
    sv += y[i];
  }
  for (int i = 1; i <= n; ++i) {
    x[i] /= sl;
    y[i] /= sv;
  }
}

}  // namespace tervale
