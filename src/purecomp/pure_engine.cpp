// Critical constants from group counts, then the acentric factor, vapour pressure, latent heat,
// heat capacities and liquid density over a temperature range, each fitted to the correlation
// forms the rest of the suite reads.
#include "purecomp/pure_engine.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "state/errors.h"

namespace tervale {
namespace {

constexpr double kZeroC = 273.15;
// Reduced pressure times Pc to mmHg, as the three vapour-pressure methods write it.
constexpr double kPcToMmHg = 735.56;

// The older program ended with the platform's error message on a division by zero, an overflow
// or the logarithm of a number not above zero. Such a value never goes on into a result here:
// the estimate ends with a fatal condition naming it.
[[noreturn]] void ArithmeticFault(const SharedCalcState& s, const std::string& what) {
  const std::string en = "Arithmetic fault: " + what +
                         " gives no finite number (a division by zero, an overflow or the "
                         "logarithm of a number not above zero). The program ends.";
  const std::string ja = "演算エラー：" + what +
                         " が有限の値になりません（ゼロ除算、オーバーフローまたは0以下の対数）。"
                         "プログラムを終了します。";
  throw FatalCondition(s.LanguageFlag == 1 ? en : ja);
}

double Finite(const SharedCalcState& s, double value, const std::string& what) {
  if (!std::isfinite(value)) ArithmeticFault(s, what);
  return value;
}

std::string MethodName(GroupMethod method) {
  switch (method) {
    case GroupMethod::Lydersen:
      return "Lydersen";
    case GroupMethod::Ambrose:
      return "Ambrose";
    case GroupMethod::Joback:
      return "Joback";
    case GroupMethod::KlincewiczReid:
      return "Klincewicz-Reid";
    case GroupMethod::Fedors:
      return "Fedors";
    case GroupMethod::RihaniDoraiswamy:
      return "Rihani-Doraiswamy";
  }
  return "";
}

double Det3(const std::array<std::array<double, 3>, 3>& m) {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

double CalcCp0(const PureComponentEstimate& p, double tK) {
  return p.PropCp0[1] + p.PropCp0[2] * tK + p.PropCp0[3] * tK * tK + p.PropCp0[4] * tK * tK * tK;
}

// Puts a point into the fit work with the basis 1, T, T^2.
void AddQuadraticPoint(PureComponentEstimate& p, double tK, double value) {
  int n = ++p.FitPointCount;
  p.FitBasis[1][n] = 1.0;
  p.FitBasis[2][n] = tK;
  p.FitBasis[3][n] = tK * tK;
  p.FitValue[n] = value;
}

void ClearFit(PureComponentEstimate& p) {
  p.FitPointCount = 0;
  p.FitBasis = {};
  p.FitValue = {};
}

// One computed curve on the grid (latent heat, liquid heat capacity or density): its points,
// which of them exist, and its extremes for the graphs.
struct GridCurve {
  GridArray& value;
  GridFlags& has;
  double& min;
  double& max;
};

// Empties the curve and the fit work before a curve is computed again.
void StartGridCurve(PureComponentEstimate& p, const GridCurve& curve) {
  ClearFit(p);
  curve.has = {};
  curve.min = 1e10;
  curve.max = -1e10;
}

// Keeps the value of grid point i and puts it into the fit work with the basis 1, T, T^2.
void KeepGridPoint(PureComponentEstimate& p, const GridCurve& curve, int i, double value) {
  curve.value[i] = value;
  curve.has[i] = true;
  curve.min = std::min(curve.min, value);
  curve.max = std::max(curve.max, value);
  AddQuadraticPoint(p, p.GridTempK[i], value);
}

// Fits the points in the fit work; coefficients 1..nCoef into out[1..nCoef].
template <size_t N>
void FitInto(SharedCalcState& s, int nCoef, std::array<double, N>& out, const char* what) {
  auto& p = s.PureComp;
  std::array<double, kMaxFitCoef + 1> coef{};
  FitLinearLeastSquares(nCoef, p.FitPointCount, p.FitBasis, p.FitValue, coef);
  for (int k = 1; k <= nCoef; ++k) out[k] = Finite(s, coef[k], what);
}

}  // namespace

// ---- group forms ----

std::array<double, 5> SumGroupContributions(const SharedCalcState& s, GroupMethod method) {
  const GroupTable& table = GetGroupTable(method);
  const GroupCountArray& count = s.PureComp.GroupCount[static_cast<int>(method)];
  std::array<double, 5> sum{};
  for (size_t r = 1; r <= table.rows.size(); ++r) {
    const GroupRow& row = table.rows[r - 1];
    if (row.heading) continue;
    for (int c = 1; c <= table.nConst; ++c) sum[c] += count[r] * row.delta[c - 1];
  }
  return sum;
}

void EstimateCriticalConstants(SharedCalcState& s, GroupMethod method) {
  auto& p = s.PureComp;
  const auto sum = SumGroupContributions(s, method);
  const double s1 = sum[1], s2 = sum[2], s3 = sum[3];
  const double mw = p.PropMolWeight;
  const double n = p.PropTotalAtom;
  const bool tbFromTc = p.PropTbFromFedors;
  double tc = p.PropTc, tb = p.PropTbK, pc = 0, vc = 0;
  switch (method) {
    case GroupMethod::Lydersen: {
      const double f = 0.567 + s1 - s1 * s1;
      if (tbFromTc)
        tb = tc * f;
      else
        tc = tb / f;
      pc = mw / ((0.34 + s2) * (0.34 + s2));
      vc = 40 + s3;
      break;
    }
    case GroupMethod::Ambrose: {
      const double f = 1 + 1 / (1.242 + s1);
      if (tbFromTc)
        tb = tc / f;
      else
        tc = tb * f;
      pc = mw / ((0.339 + s2) * (0.339 + s2));
      vc = 40 + s3;
      break;
    }
    case GroupMethod::Joback:
      // The inversion takes the Ambrose-type form, not the inverse of the forward formula.
      if (tbFromTc)
        tb = tc * (s1 + 1.242) / (s1 + 2.242);
      else
        tc = tb / (0.584 + 0.965 * s1 - s1 * s1);
      pc = std::pow(0.113 + 0.0032 * n - s2, -2.0);
      vc = 17.5 + s3;
      break;
    case GroupMethod::KlincewiczReid:
      // The inversion does not divide by 1.55.
      if (tbFromTc)
        tb = 0.77 * mw + tc - 45.4 - s1;
      else
        tc = 45.4 - 0.77 * mw + 1.55 * tb + s1;
      pc = mw / ((0.335 + 0.01 * mw + s2) * (0.335 + 0.01 * mw + s2)) / 1.0132;
      vc = 25.2 + 2.8 * mw + s3;
      break;
    default:
      throw InputRefused("No critical-constant method: " + MethodName(method));
  }
  const std::string name = MethodName(method);
  p.PropTc = Finite(s, tc, "Tc (" + name + ")");
  p.PropPc = Finite(s, pc, "Pc (" + name + ")");
  p.PropVc = Finite(s, vc, "Vc (" + name + ")");
  if (tbFromTc) {
    p.PropTbK = Finite(s, tb, "Tb (" + name + ")");
    p.PropTbC = p.PropTbK - kZeroC;
  }
}

void EstimateFedors(SharedCalcState& s) {
  auto& p = s.PureComp;
  const GroupTable& table = GetGroupTable(GroupMethod::Fedors);
  const GroupCountArray& count = p.GroupCount[static_cast<int>(GroupMethod::Fedors)];
  bool entered = false;
  for (size_t r = 1; r <= table.rows.size(); ++r) entered = entered || count[r] != 0;
  if (!entered) {
    throw InputRefused(std::string(
        Pick(s, BiText{"Fedors method: no group is entered, so Tc cannot be estimated. Enter the "
                       "group counts, or the normal boiling point.",
                       "Fedors法：原子団が入力されていないため、Tcを推算できません。"
                       "原子団の数か沸点を入力してください。"})));
  }
  const auto sum = SumGroupContributions(s, GroupMethod::Fedors);
  const double n = p.PropTotalAtom;
  const double arg = (n == 0) ? sum[1] : n + sum[2];
  if (!(arg > 0)) {
    throw InputRefused(std::string(Pick(
        s, BiText{"Fedors method: the sum of the group contributions is not above zero, so "
                  "its logarithm and Tc do not exist.",
                  "Fedors法：原子団の寄与の和が0以下のため、対数がとれずTcを推算できません。"})));
  }
  const double tc = (n == 0) ? 535 * std::log10(arg) : 535 * (std::log10(arg) - 3.5);
  p.PropTc = Finite(s, tc, "Tc (Fedors)");
  p.PropTbFromFedors = true;
}

void EstimateRihaniDoraiswamy(SharedCalcState& s) {
  const auto sum = SumGroupContributions(s, GroupMethod::RihaniDoraiswamy);
  auto& cp0 = s.PureComp.PropCp0;
  cp0[1] = sum[1];
  cp0[2] = 0.01 * sum[2];
  cp0[3] = 0.0001 * sum[3];
  cp0[4] = 0.000001 * sum[4];
}

// ---- engine ----

double CalcAcentricFactor(SharedCalcState& s) {
  auto& p = s.PureComp;
  if (p.PropTc == 0) {
    ShowMessage(s, Same("Tcが 0のため偏心因子ωが推算できません。"));
    return 0;
  }
  const double theta = p.PropTbK / p.PropTc;
  double omega = 0;
  if (p.Methods.Omega == 0) {
    omega = (3.0 / 7.0) * theta / (1 - theta) * std::log10(p.PropPc) - 1;
  } else {
    const double t6 = std::pow(theta, 6);
    omega = (-std::log(p.PropPc) - 5.92714 + 6.09648 / theta + 1.28862 * std::log(theta) -
             0.169347 * t6) /
            (15.2518 - 15.6875 / theta - 13.4721 * std::log(theta) + 0.43577 * t6);
  }
  return Finite(s, omega, "the acentric factor");
}

void MakeTemperatureGrid(SharedCalcState& s) {
  auto& p = s.PureComp;
  if (p.PropTempHigh + kZeroC > p.PropTc) {
    ShowMessage(s, Same("臨界温度Tcを越えています。"));
    p.PropTempHigh = p.PropTc - kZeroC;
  }
  if (p.PropTempLow < -kZeroC) {
    ShowMessage(s, Same("-273.15℃以下です。"));
    p.PropTempLow = -kZeroC;
  }
  const double step = (p.PropTempHigh - p.PropTempLow) / 50;
  for (int i = 1; i <= kGridPoints; ++i) {
    p.GridTempC[i] = (i - 1) * step + p.PropTempLow;
    p.GridTempK[i] = p.GridTempC[i] + kZeroC;
  }
}

double VaporPressRiedelPlankMiller(const SharedCalcState& s, double tC) {
  const auto& p = s.PureComp;
  const double tr = (tC + kZeroC) / p.PropTc;
  const double tbr = p.PropTbK / p.PropTc;
  const double h = tbr * std::log(p.PropPc) / (1 - tbr);
  const double g = 0.4835 + 0.4605 * h;
  const double k = (h / g - (1 + tbr)) / ((3 + tbr) * (1 - tbr) * (1 - tbr));
  const double lnPr = -(g / tr) * (1 - tr * tr + k * (3 + tr) * (1 - tr) * (1 - tr) * (1 - tr));
  return std::exp(lnPr) * p.PropPc * kPcToMmHg;
}

double VaporPressPitzer(const SharedCalcState& s, double tC) {
  const auto& p = s.PureComp;
  const double tr = (tC + kZeroC) / p.PropTc;
  const double l = std::log10(tr);
  const double theta = 36 / tr - 35 - std::pow(tr, 6) + 96.73 * l;
  const double a = l - 0.0364 * theta;
  const double b = 7 * l - 0.118 * theta;
  const double log10Pr = (b - 1.192 * a) + 4.93 * p.PropOmega * a;
  return std::pow(10.0, log10Pr) * p.PropPc * kPcToMmHg;
}

double VaporPressLeeKesler(const SharedCalcState& s, double tC) {
  const auto& p = s.PureComp;
  const double tr = (tC + kZeroC) / p.PropTc;
  const double t6 = std::pow(tr, 6);
  const double f0 = 5.92714 - 6.09648 / tr - 1.28862 * std::log(tr) + 0.169347 * t6;
  const double f1 = 15.2518 - 15.6875 / tr - 13.4721 * std::log(tr) + 0.43577 * t6;
  return std::exp(f0 + p.PropOmega * f1) * p.PropPc * kPcToMmHg;
}

double EstimateVaporPressure(const SharedCalcState& s, double tC) {
  switch (s.PureComp.Methods.VaporPress) {
    case 0:
      return VaporPressRiedelPlankMiller(s, tC);
    case 1:
      return VaporPressPitzer(s, tC);
    default:
      return VaporPressLeeKesler(s, tC);
  }
}

void FitAntoineConstants(SharedCalcState& s) {
  auto& p = s.PureComp;
  for (int i = 1; i <= kGridPoints; ++i)
    p.GridVaporPress[i] =
        Finite(s, EstimateVaporPressure(s, p.GridTempC[i]), "the vapour pressure");
  FitAntoineToGridPressures(s);
}

void FitAntoineToGridPressures(SharedCalcState& s) {
  auto& p = s.PureComp;
  // Fewer than three distinct temperatures leave the normal equations singular. The rounding
  // of the means seldom makes their determinant exactly 0, and Cramer's rule would then turn
  // noise into constants: the count is tested before solving.
  int distinct = 0;
  for (int i = 1; i <= kGridPoints && distinct < 3; ++i) {
    bool seen = false;
    for (int j = 1; j < i && !seen; ++j) seen = p.GridTempC[j] == p.GridTempC[i];
    if (!seen) ++distinct;
  }
  if (distinct < 3) {
    throw FatalCondition(std::string(Pick(
        s, BiText{"Arithmetic fault: division by zero in the Antoine fit. The temperatures of "
                  "the range hold fewer than three distinct values, so the determinant of its "
                  "equations is 0. The program ends.",
                  "演算エラー：Antoine定数の当てはめでゼロ除算が起きました（推算温度範囲の温度が"
                  "3つ以上の異なる値を持たないため、行列式が0です）。プログラムを終了します。"})));
  }
  // y = c1 + c2 t + c3 (y t), the normal equations from the means over the 51 points.
  double st = 0, syt = 0, stt = 0, sytyt = 0, styt = 0, sy = 0, syy_t = 0, syyt = 0;
  for (int i = 1; i <= kGridPoints; ++i) {
    const double t = p.GridTempC[i];
    const double y =
        Finite(s, std::log10(p.GridVaporPress[i]), "the logarithm of the vapour pressure");
    const double yt = y * t;
    st += t;
    syt += yt;
    stt += t * t;
    sytyt += yt * yt;
    styt += t * yt;
    sy += y;
    syy_t += y * t;
    syyt += y * yt;
  }
  const double n = 51.0;
  st /= n, syt /= n, stt /= n, sytyt /= n, styt /= n, sy /= n, syy_t /= n, syyt /= n;
  using M3 = std::array<std::array<double, 3>, 3>;
  const M3 m{{{1.0, st, syt}, {st, stt, styt}, {syt, styt, sytyt}}};
  const std::array<double, 3> r{sy, syy_t, syyt};
  const double det = Det3(m);
  if (det == 0) ArithmeticFault(s, "the Antoine fit (its determinant is 0)");
  std::array<double, 3> c{};
  for (int k = 0; k < 3; ++k) {
    M3 mk = m;
    for (int row = 0; row < 3; ++row) mk[row][k] = r[row];
    c[k] = Det3(mk) / det;
  }
  const double bigC = -1 / c[2];
  p.PropAntoineC = Finite(s, bigC, "Antoine C");
  p.PropAntoineA = Finite(s, bigC * c[1], "Antoine A");
  p.PropAntoineB = Finite(s, -(c[1] / c[2] + c[0]) * bigC, "Antoine B");
}

void EstimateLatentHeat(SharedCalcState& s) {
  auto& p = s.PureComp;
  const double pa = p.PropPc * 0.986923;
  const double tbr = p.PropTbK / p.PropTc;
  const double hvb = Finite(s,
                            p.PropTc * 8.31441 / p.PropMolWeight * tbr *
                                (0.4343 * std::log(pa) - 0.69377 + 0.89584 * tbr) /
                                (0.37691 - 0.37306 * tbr + 0.15057 / (pa * tbr * tbr)),
                            "the latent heat at the boiling point");
  const GridCurve curve{p.GridHv, p.GridHasHv, p.GridHvMin, p.GridHvMax};
  StartGridCurve(p, curve);
  for (int i = 1; i <= kGridPoints; ++i) {
    const double tr = p.GridTempK[i] / p.PropTc;
    if (tr >= 1) break;
    const double hv =
        Finite(s, std::pow((1 - tr) / (1 - tbr), 0.38) * hvb * 4.18605, "the latent heat");
    KeepGridPoint(p, curve, i, hv);
  }
  FitInto(s, 3, p.PropHv, "the latent heat fit");
}

void EstimateLiquidHeatCapacity(SharedCalcState& s, const PureComponentInput& in) {
  auto& p = s.PureComp;
  const bool lymanDanner = p.Methods.CpLiquid == 1;
  if (lymanDanner && (!in.HasCpL_R || !in.HasCpL_K)) {
    ShowMessage(s, Same("Lyman-Danner式はＲ，Ｋパラメータが入力されていないため計算できない。"));
    return;
  }
  const double bigR = in.CpL_R, bigK = in.CpL_K;
  const double omega = p.PropOmega;
  const GridCurve curve{p.GridCpL, p.GridHasCpL, p.GridCpLMin, p.GridCpLMax};
  StartGridCurve(p, curve);
  for (int i = 1; i <= kGridPoints; ++i) {
    const double tK = p.GridTempK[i];
    const double tr = tK / p.PropTc;
    if (!(tr < 1)) continue;
    double cpl = 0;
    if (!lymanDanner) {
      cpl = CalcCp0(p, tK) +
            1.987 * (2.56 + 0.436 / (1 - tr) +
                     omega * (2.91 + 4.28 * std::cbrt(1 - tr) / tr + 0.296 / (1 - tr)));
    } else {
      // The Tr^5 of this formula is a working variable that is never given a value: the
      // product Tr^3 Tr^2 is formed and dropped, and the term 0.04342/Tr^5 divides by zero.
      // The older program ended there with its arithmetic fault; so does this estimate.
      double tr5 = 0;
      const double tr2 = tr * tr, tr3 = tr2 * tr;
      [[maybe_unused]] const double dropped = tr3 * tr2;
      if (tr5 == 0) {
        throw FatalCondition(std::string(Pick(
            s, BiText{"Arithmetic fault: division by zero in the Lyman-Danner liquid heat "
                      "capacity (the term 0.04342/Tr^5, whose Tr^5 is never given a value). "
                      "The program ends.",
                      "演算エラー：Lyman-Danner式の液比熱でゼロ除算が起きました"
                      "（0.04342/Tr^5 の Tr^5 に値が入っていません）。プログラムを終了します。"})));
      }
      cpl = CalcCp0(p, tK) + 10.1273 + (3.2008 * bigR - 15.3546) * tr +
            (19.7302 - 0.8949 * bigR) * tr5 - 0.04342 / tr5 + 0.2241 * bigR / tr3 -
            0.01489 * bigR * bigR / tr2 + bigK * (0.31446 + 2.5346 * tr2 - 2.0242 * tr5) +
            bigK * bigK * (0.07264 * tr2 - 0.07055);
      if (tr > 0.8) cpl += 1.987 * std::exp(8.655 * tr - 8.385);
    }
    KeepGridPoint(p, curve, i, Finite(s, cpl, "the liquid heat capacity"));
  }
  FitInto(s, 3, p.PropCpL, "the liquid heat capacity fit");
}

void EstimateLiquidDensity(SharedCalcState& s, const PureComponentInput& in) {
  auto& p = s.PureComp;
  const bool spencerDanner = p.Methods.LiqDensity == 1;
  if (spencerDanner && (!in.HasLiqD_Dref || !in.HasLiqD_Tref)) {
    ShowMessage(s,
                Same("Spencer-Danner式はRohRef, Trefデータが入力されていないため計算できない。"));
    return;
  }
  const double tc = p.PropTc, pc = p.PropPc, mw = p.PropMolWeight, omega = p.PropOmega;
  const double twoSevenths = 2.0 / 7.0;
  double vsc = 0;
  if (spencerDanner) {
    const double zra = std::pow(pc / (tc * 82.05 * (in.LiqD_Dref / mw)),
                                1 / (1 + std::pow(1 - (in.LiqD_Tref + kZeroC) / tc, twoSevenths)));
    p.PropZra = Finite(s, zra, "Zra (Spencer-Danner)");
  } else {
    vsc = (0.292 - 0.0967 * omega) * (82.05 * tc / pc);
  }
  const GridCurve curve{p.GridDen, p.GridHasDen, p.GridDenMin, p.GridDenMax};
  StartGridCurve(p, curve);
  for (int i = 1; i <= kGridPoints; ++i) {
    const double tK = p.GridTempK[i];
    const double tr = tK / tc;
    if (!(tr < 1)) continue;
    double rho = 0;
    if (spencerDanner) {
      rho = (pc / 82.05 / tc) / std::pow(p.PropZra, 1 + std::pow(1 - tr, twoSevenths)) * mw;
    } else {
      double v0 = 0;
      if (tr <= 0.8) {
        // The same constant stands in the first two terms.
        v0 = 0.33593 - 0.33593 * tr + 1.51941 * tr * tr - 2.02512 * tr * tr * tr +
             1.11422 * tr * tr * tr * tr;
      } else {
        // The factor is this constant, not a logarithm of a variable.
        v0 = 1.0 + 1.3 * std::sqrt(1 - tr) * 0.434294481903252 - 0.50879 * (1 - tr) -
             0.91534 * (1 - tr) * (1 - tr);
      }
      const double gamma = 0.29607 - 0.09045 * tr - 0.04842 * tr * tr;
      rho = mw / (vsc * v0 * (1 - omega * gamma));
    }
    KeepGridPoint(p, curve, i, Finite(s, rho, "the liquid density"));
  }
  FitInto(s, 3, p.PropDenPoly, "the liquid density fit");

  // ln rho = c1 + c2 (-(1 - Tr)^(2/7)) over the same points.
  const int nPoint = p.FitPointCount;
  for (int i = 1; i <= nPoint; ++i) {
    const double tr = p.FitBasis[2][i] / tc;
    p.FitBasis[1][i] = 1.0;
    p.FitBasis[2][i] = -std::pow(1 - tr, twoSevenths);
    p.FitBasis[3][i] = 0;
    p.FitValue[i] = Finite(s, std::log(p.FitValue[i]), "the logarithm of the liquid density");
  }
  std::array<double, kMaxFitCoef + 1> rackett{};
  FitInto(s, 2, rackett, "the Rackett fit");
  p.PropDenRackettA = Finite(s, std::exp(rackett[1]), "Rackett A");
  p.PropDenRackettB = Finite(s, std::exp(rackett[2]), "Rackett B");
}

void FitLinearLeastSquares(int nCoef, int nPoint, const FitBasisArray& basis,
                           const FitValueArray& values, std::array<double, kMaxFitCoef + 1>& coef) {
  // The normal equations with the right-hand side as column nCoef + 1.
  std::array<std::array<double, kMaxFitCoef + 2>, kMaxFitCoef + 1> a{};
  for (int k = 1; k <= nCoef; ++k) {
    for (int l = k; l <= nCoef; ++l) {
      double sum = 0;
      for (int i = 1; i <= nPoint; ++i) sum += basis[k][i] * basis[l][i];
      a[k][l] = sum;
      a[l][k] = sum;
    }
    double rhs = 0;
    for (int i = 1; i <= nPoint; ++i) rhs += basis[k][i] * values[i];
    a[k][nCoef + 1] = rhs;
  }
  // Gauss-Jordan with partial pivoting; the search starts at the diagonal row.
  for (int k = 1; k <= nCoef; ++k) {
    int pivotRow = k;
    double largest = std::abs(a[k][k]);
    for (int i = k + 1; i <= nCoef; ++i) {
      if (std::abs(a[i][k]) > largest) {
        largest = std::abs(a[i][k]);
        pivotRow = i;
      }
    }
    if (!(largest >= 0.0000000001)) {
      throw FatalCondition("最小自乗法でPivotが1E-10になった。プログラムを終了する。");
    }
    if (pivotRow != k) std::swap(a[k], a[pivotRow]);
    const double pivot = a[k][k];
    for (int l = k; l <= nCoef + 1; ++l) a[k][l] /= pivot;
    for (int i = 1; i <= nCoef; ++i) {
      if (i == k) continue;
      const double factor = a[i][k];
      if (factor == 0) continue;
      for (int l = k; l <= nCoef + 1; ++l) a[i][l] -= factor * a[k][l];
    }
  }
  for (int k = 1; k <= nCoef; ++k) coef[k] = a[k][nCoef + 1];
}

void RunPureComponentEstimation(SharedCalcState& s, const PureComponentInput& in) {
  auto& p = s.PureComp;
  const auto& m = p.Methods;
  if (m.TcPcVc < 0 || m.TcPcVc > 3 || m.Omega < 0 || m.Omega > 1 || m.VaporPress < 0 ||
      m.VaporPress > 2 || m.CpIdeal < 0 || m.CpIdeal > 1 || m.CpLiquid < 0 || m.CpLiquid > 1 ||
      m.LiqDensity < 0 || m.LiqDensity > 1) {
    throw InputRefused(std::string(
        Pick(s, BiText{"An estimation method is out of range.", "推算法の選択が範囲外です。"})));
  }
  const PureComponentEstimate before = p;
  try {
    p.PropTbFromFedors = false;
    p.PropName = in.Name;
    p.PropMolWeight = in.MolWeight;
    p.PropTbC = in.HasTbC ? in.TbC : 0;
    p.PropTotalAtom = in.TotalAtom;
    p.PropTbK = p.PropTbC + kZeroC;
    if (!in.HasTbC) EstimateFedors(s);
    EstimateCriticalConstants(s, static_cast<GroupMethod>(m.TcPcVc));
    p.PropOmega = CalcAcentricFactor(s);
    p.PropTempLow = in.TempLow;
    p.PropTempHigh = in.TempHigh;
    MakeTemperatureGrid(s);
    FitAntoineConstants(s);
    if (m.CpIdeal == 0) EstimateRihaniDoraiswamy(s);
    EstimateLiquidHeatCapacity(s, in);
    EstimateLatentHeat(s);
    EstimateLiquidDensity(s, in);
  } catch (const InputRefused&) {
    p = before;
    throw;
  }
}

}  // namespace tervale
