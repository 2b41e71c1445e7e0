#include "vapourpress/antoine_estimate.h"

#include <algorithm>
#include <cmath>

#include "io/display_format.h"

namespace tervale {

double Det3(const std::array<std::array<double, 3>, 3>& m) {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

AntoineFit FitAntoine(const double* temp, const double* press, int n) {
  AntoineFit fit;
  if (n < 3) return fit;
  int distinct = 0;
  for (int i = 0; i < n; ++i) {
    if (!(press[i] > 0) || !std::isfinite(press[i]) || !std::isfinite(temp[i])) return fit;
    bool seen = false;
    for (int j = 0; j < i; ++j) seen = seen || temp[j] == temp[i];
    if (!seen) ++distinct;
  }
  if (distinct < 3) return fit;
  double mt = 0, my = 0, myt = 0, mtt = 0, mytyt = 0, mytt = 0, myyt = 0;
  for (int i = 0; i < n; ++i) {
    double t = temp[i];
    double y = std::log10(press[i]);
    double yt = y * t;
    mt += t;
    my += y;
    myt += yt;
    mtt += t * t;
    mytyt += yt * yt;
    mytt += yt * t;
    myyt += y * yt;
  }
  mt /= n;
  my /= n;
  myt /= n;
  mtt /= n;
  mytyt /= n;
  mytt /= n;
  myyt /= n;
  const std::array<std::array<double, 3>, 3> a = {
      {{1, mt, myt}, {mt, mtt, mytt}, {myt, mytt, mytyt}}};
  const std::array<double, 3> rhs = {my, myt, myyt};
  double d = Det3(a);
  std::array<double, 3> c{};
  for (int col = 0; col < 3; ++col) {
    auto m = a;
    for (int row = 0; row < 3; ++row) m[row][col] = rhs[row];
    c[col] = Det3(m) / d;
  }
  fit.C = -1 / c[2];
  fit.A = c[1] * fit.C;
  fit.B = -(c[1] / c[2] + c[0]) * fit.C;
  fit.ok = d != 0 && std::isfinite(fit.A) && std::isfinite(fit.B) && std::isfinite(fit.C);
  return fit;
}

double LeeKeslerPressure(double tempC, double tc, double pc, double omega) {
  double tr = (tempC + 273.15) / tc;
  double f0 = 5.92714 - 6.09648 / tr - 1.28862 * std::log(tr) + 0.169347 * std::pow(tr, 6);
  double f1 = 15.2518 - 15.6875 / tr - 13.4721 * std::log(tr) + 0.43577 * std::pow(tr, 6);
  return std::exp(f0 + omega * f1) * pc * 760;
}

namespace {

bool RangeChecked(SharedCalcState& s) {
  const auto& e = s.Antoine;
  if (!e.TempLow || !e.TempHigh) {
    ShowMessage(s, Same("温度の下限／上限が入力されていません。"));
    return false;
  }
  if (*e.TempLow > *e.TempHigh) {
    ShowMessage(s, Same("温度の下限／上限が間違っています。"));
    return false;
  }
  return true;
}

bool IsBlank(const std::string& text) {
  return text.find_first_not_of(" \t") == std::string::npos;
}

double AntoinePressure(const SharedCalcState& s, int i, double t) {
  return std::pow(10.0, s.Comp.AntoineA[i] - s.Comp.AntoineB[i] / (t + s.Comp.AntoineC[i]));
}

}  // namespace

bool EstimateAntoine(SharedCalcState& s) {
  auto& e = s.Antoine;
  if (!RangeChecked(s)) return false;
  const double low = *e.TempLow, high = *e.TempHigh;
  e.Fitted.fill(false);
  e.LeeKesler.fill(false);
  s.NC = 0;
  e.NRows = 0;
  for (int row = 1; row <= kMaxAntoineRows && !IsBlank(e.Formula[row]); ++row) {
    s.NC += 1;
    e.NRows = s.NC;
    if (IsBlank(e.Name[row])) {
      ShowMessage(s, BiText{"No Component Name", "成分名が未入力です"});
      return false;
    }
    s.Comp.CompName[row] = e.Name[row];
    s.Comp.AntoineA[row] = e.A[row];
    s.Comp.AntoineB[row] = e.B[row];
    s.Comp.AntoineC[row] = e.C[row];
    s.Comp.CompTc[row] = e.Tc[row];
    s.Comp.CompPc[row] = e.Pc[row];
    s.Comp.CompOmega[row] = e.Omega[row];
    bool complete = e.A[row] != 0 && e.B[row] != 0 && e.C[row] != 0;
    if (complete || e.MeasuredCount[row] != 0) continue;
    if (e.Tc[row] == 0 && e.Pc[row] == 0 && e.Omega[row] == 0) {
      ShowMessage(s, BiText{"No Antoine's parameters", "Antoine 定数が未入力です"});
      return false;
    }
    double step = (high - low) / 10;
    e.MeasuredCount[row] = 11;
    for (int n = 1; n <= 11; ++n) {
      double t = low + (n - 1) * step;
      e.MeasuredTemp[row][n] = t;
      e.MeasuredPress[row][n] = LeeKeslerPressure(t, e.Tc[row], e.Pc[row], e.Omega[row]);
    }
    e.LeeKesler[row] = true;
  }
  if (s.NC == 0) {
    ShowMessage(s, BiText{"No Component", "成分データが未入力です"});
    return false;
  }
  for (int row = 1; row <= s.NC; ++row) {
    int n = e.MeasuredCount[row];
    if (n <= 0) continue;
    AntoineFit fit = FitAntoine(&e.MeasuredTemp[row][1], &e.MeasuredPress[row][1], n);
    if (!fit.ok) {
      std::string en = "The Antoine constants of " + e.Name[row] +
                       " cannot be fitted: at least three different temperatures with "
                       "pressures above zero are needed.";
      std::string ja =
          e.Name[row] + " のAntoine定数を求められません。温度の異なる3点以上の正の圧力が必要です。";
      ShowMessage(s, BiText{en, ja});
      return false;
    }
    e.A[row] = s.Comp.AntoineA[row] = fit.A;
    e.B[row] = s.Comp.AntoineB[row] = fit.B;
    e.C[row] = s.Comp.AntoineC[row] = fit.C;
    e.Fitted[row] = true;
  }
  return true;
}

void LoadAntoineExample(SharedCalcState& s) {
  s.Antoine = AntoineEstimate{};
  auto& e = s.Antoine;
  e.Formula = {"", "CH4O", "C2H6O", "H2O", "C3H8O", ""};
  e.Name = {"", "Methanol", "Ethanol", "Water", "1-Propanol", ""};
  e.MeasuredHead = {"", "  Methanol", "  Ethanol", "  Water", "  Propanol", ""};
  const double t[] = {-16.2, -6.3, 11.4, 34.03, 64.51};
  const double p[] = {10, 20, 60, 200, 760};
  for (int n = 1; n <= 5; ++n) {
    e.MeasuredTemp[1][n] = t[n - 1];
    e.MeasuredPress[1][n] = p[n - 1];
  }
  e.MeasuredCount[1] = 5;
  e.Tc[2] = 513.9;
  e.Pc[2] = 61.4;
  e.Omega[2] = 0.644;
  e.A[3] = 7.9668;
  e.B[3] = 1668.21;
  e.C[3] = 228;
  e.A[4] = 7.9973;
  e.B[4] = 1569.7;
  e.C[4] = 209.5;
  e.TempLow = -20;
  e.TempHigh = 80;
}

VaporPressureGraphData DrawVaporPressureGraph(SharedCalcState& s) {
  VaporPressureGraphData g;
  if (!RangeChecked(s)) return g;
  const auto& e = s.Antoine;
  const double low = *e.TempLow, high = *e.TempHigh;
  g.AxisTempLow = std::floor(low / 10) * 10;
  g.AxisTempHigh = std::floor(high / 10 + 0.9) * 10;
  g.TempTick = (g.AxisTempHigh - g.AxisTempLow) / 5;
  g.PressHigh = 0;
  g.PressLow = 999999;
  for (int i = 1; i <= s.NC; ++i) {
    g.PressHigh = std::max(g.PressHigh, AntoinePressure(s, i, high));
    g.PressLow = std::min(g.PressLow, AntoinePressure(s, i, low));
  }
  if (!(g.PressLow > 0) || !(g.PressHigh > 0) || !std::isfinite(g.PressHigh)) {
    ShowMessage(s, BiText{"The vapour pressure axis cannot be drawn: a pressure is not above zero.",
                          "蒸気圧の軸が描けません。圧力が正ではありません。"});
    return g;
  }
  g.DecadeLow = static_cast<int>(std::floor(std::log10(g.PressLow)));
  g.Decades = static_cast<int>(std::floor(std::log10(g.PressHigh))) - g.DecadeLow + 1;
  for (int i = 1; i <= s.NC; ++i) {
    VaporPressureCurve c;
    c.Name = s.Comp.CompName[i];
    for (int j = 0; j <= 200; ++j) {
      double t = low + (high - low) / 200 * j;
      c.Curve.push_back({t, AntoinePressure(s, i, t)});
    }
    for (int n = 1; n <= e.MeasuredCount[i]; ++n)
      c.Measured.push_back({e.MeasuredTemp[i][n], e.MeasuredPress[i][n]});
    g.Curves.push_back(std::move(c));
  }
  g.Drawn = true;
  return g;
}

}  // namespace tervale
