#include "regress/vle_azeotrope.h"

#include <cmath>

#include "regress/vle_regression.h"
#include "state/shared_state.h"

namespace tervale {
namespace {

constexpr double kZero = 1e-9;
constexpr int kMaxRefinements = 200;

int SignOf(double d) {
  if (std::fabs(d) < kZero) return 0;
  return d > 0 ? 1 : -1;
}

}  // namespace

std::vector<SignChange> FindSignChanges(const double* x, const double* y, const bool* missing,
                                        int count) {
  std::vector<SignChange> found;
  auto interior = [&](int i) { return !missing[i] && x[i] > 0 && x[i] < 1; };
  for (int i = 0; i + 1 < count; ++i) {
    if (!interior(i)) continue;
    const int si = SignOf(y[i] - x[i]);
    if (si == 0) {
      // a zero at a node counts when it separates a positive and a negative neighbour
      if (i == 0 || !interior(i - 1) || !interior(i + 1)) continue;
      const int left = SignOf(y[i - 1] - x[i - 1]), right = SignOf(y[i + 1] - x[i + 1]);
      if (left != 0 && right == -left) found.push_back({i, true, left > 0});
      continue;
    }
    if (!interior(i + 1)) continue;
    const int sj = SignOf(y[i + 1] - x[i + 1]);
    if (sj == -si) found.push_back({i, false, si > 0});
  }
  return found;
}

std::vector<Azeotrope> FindVLEAzeotropes(SharedCalcState& s) {
  VLEDataCase& c = s.VLE;
  const double keptY1 = c.VaporY1, keptY2 = c.VaporY2;
  const bool isobaric = c.TPType == 0;
  bool missing[kVLECurvePoints];
  for (int n = 0; n < kVLECurvePoints; ++n)
    missing[n] = c.CurveY[n + 1] <= kVLEMissing || c.CurveTP[n + 1] <= kVLEMissing;
  const std::vector<SignChange> changes =
      FindSignChanges(&c.CurveX[1], &c.CurveY[1], missing, kVLECurvePoints);
  std::vector<Azeotrope> found;
  found.reserve(changes.size());

  // y1 - x1 of the model at x, with its bubble temperature (C) or pressure (mmHg).
  auto excess = [&](double x, double tStart, double& tp) {
    double g1 = 0, g2 = 0;
    CalcActivityCoeff(s, x, g1, g2);
    if (isobaric) {
      tp = CalcBubbleTempFromGamma(s, tStart, x, g1, g2);
      return c.VaporY1 / (c.VaporY1 + c.VaporY2) - x;
    }
    tp = CalcBubblePressFromGamma(s, c.VLETemperature, x, g1, g2);
    return c.VaporY1 - x;
  };

  for (const SignChange& ch : changes) {
    const int n = ch.index + 1;  // 1-based node
    Azeotrope az;
    az.minimumBoiling = ch.minimumBoiling;
    double tp = c.CurveTP[n];
    if (ch.atNode) {
      az.x1 = c.CurveX[n];
      excess(az.x1, c.CurveTP[n], tp);
    } else {
      // Illinois regula falsi inside the bracket of the two nodes
      double a = c.CurveX[n], b = c.CurveX[n + 1];
      double tpa = 0, tpb = 0;
      double fa = excess(a, c.CurveTP[n], tpa);
      double fb = excess(b, c.CurveTP[n + 1], tpb);
      double xm = a, fm = fa;
      tp = tpa;
      int side = 0;
      if (std::fabs(fb) < std::fabs(fa)) {
        xm = b;
        fm = fb;
        tp = tpb;
      }
      for (int k = 0; k < kMaxRefinements && std::fabs(fm) >= kZero; ++k) {
        if ((fa < 0) == (fb < 0)) break;  // the model no longer brackets the sign change
        xm = (a * fb - b * fa) / (fb - fa);
        const double tStart = tpa + (tpb - tpa) * (xm - a) / (b - a);
        fm = excess(xm, isobaric ? tStart : 0, tp);
        if ((fm < 0) == (fb < 0)) {
          b = xm;
          fb = fm;
          tpb = tp;
          if (side == -1) fa *= 0.5;
          side = -1;
        } else {
          a = xm;
          fa = fm;
          tpa = tp;
          if (side == 1) fb *= 0.5;
          side = 1;
        }
        if (b - a <= 1e-15) break;
      }
      az.x1 = xm;
    }
    az.tp = isobaric ? VLETemperatureToCaseUnit(s, tp) : VLEPressureToCaseUnit(s, tp);
    found.push_back(az);
  }
  c.VaporY1 = keptY1;
  c.VaporY2 = keptY2;
  return found;
}

std::vector<Azeotrope> FindUnifacAzeotropes(const SharedCalcState& s) {
  const auto& u = s.Unifac;
  constexpr int count = kUnifacPoints;
  bool missing[count];
  for (int n = 0; n < count; ++n) missing[n] = !std::isfinite(u.CurveY[n + 1]);
  const std::vector<SignChange> changes =
      FindSignChanges(&u.CurveX[1], &u.CurveY[1], missing, count);
  std::vector<Azeotrope> found;
  for (const SignChange& ch : changes) {
    const int n = ch.index + 1;
    Azeotrope az;
    az.minimumBoiling = ch.minimumBoiling;
    if (ch.atNode) {
      az.x1 = u.CurveX[n];
      az.tp = u.CurveT[n];
    } else {
      const double da = u.CurveY[n] - u.CurveX[n], db = u.CurveY[n + 1] - u.CurveX[n + 1];
      const double f = da / (da - db);
      az.x1 = u.CurveX[n] + f * (u.CurveX[n + 1] - u.CurveX[n]);
      az.tp = u.CurveT[n] + f * (u.CurveT[n + 1] - u.CurveT[n]);
    }
    found.push_back(az);
  }
  return found;
}

}  // namespace tervale
