#include "thermo/eos.h"

#include <cmath>
#include <utility>

#include "state/shared_state.h"

namespace tervale {
namespace {

constexpr double kGasConstant = 0.082053;
constexpr double kKgfPerMPa = 0.0980665;  // Pk = P / this
constexpr double kKelvinOffset = 273.15;

constexpr BiText kNoConvergence = Same("T_Bubble_srk No-Convergence");

double Kelvin(double t) {
  return t + kKelvinOffset;
}
double PressureKgf(double p) {
  return p / kKgfPerMPa;
}

double EosM(int eos, double w) {
  return eos == 0 ? 0.48 + (1.574 - 0.176 * w) * w : 0.37464 + (1.54226 - 0.26992 * w) * w;
}

// The attraction constant differs between the mixture and the fugacity routine for P-R
// (0.0030785 against 0.00307846): both figures are kept as they are.
double EosAcMixture(int eos, double tc, double pc) {
  return (eos == 0 ? 0.00287803 : 0.0030785) * tc * tc / pc;
}
double EosAcFugacity(int eos, double tc, double pc) {
  return (eos == 0 ? 0.00287803 : 0.00307846) * tc * tc / pc;
}
double EosB(int eos, double tc, double pc) {
  return (eos == 0 ? 0.00710907 : 0.00638372) * tc / pc;
}

double SignedCubeRoot(double v) {
  if (v > 0) return std::pow(v, 1.0 / 3.0);
  if (v < 0) return -std::pow(-v, 1.0 / 3.0);
  return 0.0;
}

}  // namespace

void CalcEOSInitialK(SharedCalcState& s, double T, double P) {
  const double tk = Kelvin(T);
  const double pk = PressureKgf(P);
  for (int i = 1; i <= s.NC; ++i) {
    const double w = s.Comp.CompOmega[i];
    double tr = tk / s.Comp.CompTc[i];
    double lnPr;
    if (tr > 1) {
      const double zc = 0.291 - 0.08 * w;
      const double q = ((-90 * zc + 73.85) * zc - 16.26) * (1 - tr) / tr;
      const double sh = tr - 1.8 + 6.2 * zc;
      const double e = -8.68 * sh * sh;
      lnPr = e > -75 ? q - std::pow(10.0, e) : q;
    } else {
      if (!(tr > 0)) tr = 0.1;
      const double l = std::log(tr);
      const double tr3 = tr * tr * tr;
      lnPr =
          (5.81 + 4.92 * w) * l - 0.0838 * (2.06 + 4.92 * w) * (36 / tr - 35 - tr3 * tr3 + 42 * l);
    }
    if (lnPr < -75) lnPr = -75;
    double k = (s.Comp.CompPc[i] / pk) * std::exp(lnPr);
    if (!(k > 0)) k = 1E-10;
    s.KValue[i] = k;
  }
}

void CalcEOSMixture(const SharedCalcState& s, int eos, double T, const Composition& z, double& a,
                    double& b, double& dadT, double& d2adT2) {
  const int n = s.NC;
  const double tk = Kelvin(T);
  const double r = std::sqrt(tk);
  CompArray sqrtAc{}, m{}, f{}, sqrtTc{};
  b = 0;
  for (int i = 1; i <= n; ++i) {
    if (!(z[i] > 0)) continue;
    const double tc = s.Comp.CompTc[i];
    const double pc = s.Comp.CompPc[i];
    sqrtAc[i] = std::sqrt(EosAcMixture(eos, tc, pc));
    m[i] = EosM(eos, s.Comp.CompOmega[i]);
    sqrtTc[i] = std::sqrt(tc);
    f[i] = 1 + m[i] * (1 - std::sqrt(tk / tc));
    b += z[i] * EosB(eos, tc, pc);
  }
  // The diagonal of KijMatrix takes part like any other element: with its default of 1.0 the
  // pure-component terms drop out of a, and a 0 brings them back.
  double sa = 0, sd = 0, sd2 = 0;
  for (int i = 1; i <= n; ++i) {
    if (!(z[i] > 0)) continue;
    for (int j = 1; j <= n; ++j) {
      if (!(z[j] > 0)) continue;
      const double w = (1 - s.Bin.KijMatrix[i][j]) * z[i] * z[j] * sqrtAc[i] * sqrtAc[j];
      sa += w * f[i] * f[j];
      sd += w * (f[i] * m[j] / (r * sqrtTc[j]) + f[j] * m[i] / (r * sqrtTc[i]));
      sd2 += w * ((m[i] + 1) * m[j] / sqrtTc[j] + (m[j] + 1) * m[i] / sqrtTc[i]);
    }
  }
  a = sa;
  dadT = -0.5 * sd;
  d2adT2 = 0.25 * sd2 / (tk * r);
}

void CalcEOSCompressibility(const SharedCalcState& s, int eos, int phase, double T, double P,
                            const Composition& z, double& rho, double a, double b) {
  const double tk = Kelvin(T);
  const double pk = PressureKgf(P);
  const double rt = tk * kGasConstant;
  const double A = pk * a / rt / rt;
  const double B = pk * b / rt;

  double c2, c1, c0;
  if (eos == 0) {
    c2 = -1;
    c1 = A - (B + 1) * B;
    c0 = -A * B;
  } else {
    c2 = B - 1;
    c1 = A - (3 * B + 2) * B;
    c0 = ((B + 1) * B - A) * B;
  }
  const double sh = c2 / 3;
  const double p = c1 / 3 - sh * sh;
  const double r = 2 * sh * sh * sh - (c1 / 3) * c2 + c0;
  const double p3 = p * p * p;
  const double D = r * r + 4 * p3;

  double Z;
  if (D > 0) {
    // One real root, used for both phases.
    const double sqrtD = std::sqrt(D);
    const double u = r > 0 ? 0.5 * (-r - sqrtD) : 0.5 * (-r + sqrtD);
    const double v = -p3 / u;
    Z = SignedCubeRoot(u) + SignedCubeRoot(v) - sh;
  } else {
    // atan of -sqrt(-D)/r; for r = 0 that is atan(-infinity).
    const double th = (r == 0 ? -M_PI / 2 : std::atan(-std::sqrt(-D) / r)) / 3;
    const double g = 2 * std::sqrt(-p);
    double z1 = g * std::cos(th) - sh;
    double z2 = g * std::cos(th + 2.0944) - sh;
    double z3 = g * std::cos(th + 4.18879) - sh;
    if (D == 0) {
      std::swap(z1, z3);
    } else {
      if (z1 > z2) std::swap(z1, z2);
      if (z2 > z3) z3 = z2;
      if (z1 > z3) std::swap(z1, z3);
    }
    Z = phase == 0 ? z3 : z1;
  }
  rho = pk / (Z * kGasConstant * tk);
}

void CalcEOSFugacity(const SharedCalcState& s, int eos, double T, double P, const Composition& z,
                     CompArray& phi, double rho, double a, double b) {
  const int n = s.NC;
  const double tk = Kelvin(T);
  const double pk = PressureKgf(P);
  const double rt = tk * kGasConstant;
  const double A = pk * a / rt / rt;
  const double B = pk * b / rt;
  const double Z = (1 / rho) * pk / rt;
  const double lz = Z > B ? std::log(Z - B) : 0;

  CompArray ai{}, bb{};
  for (int i = 1; i <= n; ++i) {
    const double tc = s.Comp.CompTc[i];
    const double pc = s.Comp.CompPc[i];
    const double f = 1 + EosM(eos, s.Comp.CompOmega[i]) * (1 - std::sqrt(tk / tc));
    ai[i] = EosAcFugacity(eos, tc, pc) * f * f;
    bb[i] = EosB(eos, tc, pc) / b;
  }

  if (eos == 1) {
    const double ratio = (Z + B + 1.414213562 * B) / (Z + B - 1.414213562 * B);
    const double lr = ratio > 0 ? std::log(ratio) : 0;
    // 0.434294 stands where the textbook form has 1/(2 sqrt 2); the program's figure is kept.
    const double factor = A * 0.434294 / B * lr;
    for (int i = 1; i <= n; ++i) {
      double si = 0;
      for (int j = 1; j <= n; ++j)
        si += (1 - s.Bin.KijMatrix[i][j]) * z[j] * std::sqrt(ai[i] * ai[j]);
      phi[i] = std::exp(bb[i] * (Z - 1) - lz - (2 * si / a - bb[i]) * factor);
    }
  } else {
    const double arg = 1 + B / Z;
    const double lr = arg > 0 ? std::log(arg) : 0;
    const double factor = A / B * lr;
    for (int i = 1; i <= n; ++i) {
      phi[i] = std::exp(bb[i] * (Z - 1) - lz - (2 * std::sqrt(ai[i] / a) - bb[i]) * factor);
    }
  }
}

void SecantBracketStep(SecantBracketState& st) {
  constexpr double kNone = 1E+30;
  if (st.state == 1) {
    if (st.X < st.Xmin || st.X > st.Xmax) {
      st.X = (st.Xmin + st.Xmax) * 0.5;
      return;
    }
    if (std::fabs(st.F) <= st.tol) {
      st.state = 4;
      return;
    }
    st.count = 0;
    st.state = 2;
    if (st.F < 0) {
      st.Fn = st.F;
      st.Xn = st.X;
      st.Fp = kNone;
    } else {
      st.Fp = st.F;
      st.Xp = st.X;
      st.Fn = -kNone;
    }
    st.X += st.step;
    if (!(st.X < st.Xmax)) st.X -= 2 * st.step;
    return;
  }

  if (std::fabs(st.F) <= st.tol) {
    st.state = 4;
    return;
  }
  if (st.count > 50) {
    st.state = 5;
    return;
  }
  st.count += 1;

  if (st.state == 2) {
    if (!(st.F > 0)) {
      if (st.Fn == -kNone) {
        // The negative side is now known; its X stays as it was.
        st.state = 3;
        st.Fn = st.F;
        st.Fold = st.Fp;
        st.Xold = st.Xp;
      } else {
        st.Fold = st.Fn;
        st.Xold = st.Xn;
        if (st.F > st.Fn) {
          st.Fn = st.F;
          st.Xn = st.X;
        }
      }
    } else {
      if (st.Fp == kNone) {
        st.state = 3;
        st.Fp = st.F;
        st.Xp = st.X;
        st.Fold = st.Fn;
        st.Xold = st.Xn;
      } else {
        st.Fold = st.Fp;
        st.Xold = st.Xp;
        if (st.F < st.Fp) {
          st.Fp = st.F;
          st.Xp = st.X;
        }
      }
    }
  } else if (st.state == 3) {
    if (st.F < 0) {
      if (st.F > st.Fn) {
        st.Fn = st.F;
        st.Xn = st.X;
      }
      st.Fold = st.Fp;
      st.Xold = st.Xp;
    } else {
      if (st.F < st.Fp) {
        st.Fp = st.F;
        st.Xp = st.X;
      }
      st.Fold = st.Fn;
      st.Xold = st.Xn;
    }
  }

  const double d = (st.F - st.Fold) / st.F;
  if (std::fabs(d) <= 1E-05) {
    st.state = 6;
    return;
  }
  const double e = (st.X - st.Xold) / d;
  if (std::fabs(e / (st.Xmax - st.Xmin)) < 1E-05) {
    st.state = 6;
    return;
  }
  const double before = st.X;
  double x = st.X - e;
  if (x < st.Xmin) x = st.Xmin;
  if (x > st.Xmax) x = st.Xmax;
  st.X = x;
  if (st.X == before) st.state = 6;
}

double CalcBubbleTemperatureEOS(SharedCalcState& s, int eos, double T, double P,
                                const Composition& x) {
  const int n = s.NC;
  SecantBracketState st;
  st.Xmax = T + 50;
  st.Xmin = T - 50;
  if (st.Xmin < -273.15) st.Xmin = -270;
  CalcEOSInitialK(s, T, P);
  st.state = 1;
  st.step = 0.5;
  st.tol = 1E-05;

  double t = T;
  Composition y{};
  CompArray phiL{}, phiV{};
  for (;;) {
    double a, b, dadT, d2adT2, rho;
    CalcEOSMixture(s, eos, t, x, a, b, dadT, d2adT2);
    CalcEOSCompressibility(s, eos, 0, t, P, x, rho, a, b);
    CalcEOSFugacity(s, eos, t, P, x, phiL, rho, a, b);

    double sum = 0;
    for (int i = 1; i <= n; ++i) {
      y[i] = x[i] * s.KValue[i];
      sum += y[i];
    }
    for (int i = 1; i <= n; ++i) y[i] /= sum;

    // The vapour side at the y just formed. The K-value loop holds y, so every further pass
    // would give these same coefficients and find nothing changed: one pass settles K.
    CalcEOSMixture(s, eos, t, y, a, b, dadT, d2adT2);
    CalcEOSCompressibility(s, eos, 1, t, P, y, rho, a, b);
    CalcEOSFugacity(s, eos, t, P, y, phiV, rho, a, b);
    for (int i = 1; i <= n; ++i) s.KValue[i] = phiL[i] / phiV[i];

    sum = 0;
    for (int i = 1; i <= n; ++i) {
      y[i] = x[i] * s.KValue[i];
      sum += y[i];
    }
    for (int i = 1; i <= n; ++i) y[i] /= sum;

    st.X = t;
    st.F = 1 - sum;
    SecantBracketStep(st);
    t = st.X;
    if (st.state == 5 || st.state == 6) ShowMessage(s, kNoConvergence);
    if (st.state >= 4) break;
  }
  return t;
}

}  // namespace tervale
