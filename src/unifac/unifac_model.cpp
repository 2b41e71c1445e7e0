#include "unifac/unifac_model.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "io/display_format.h"
#include "io/field_reader.h"
#include "io/record_writer.h"
#include "state/errors.h"

// GCC 12 reports a false -Wrestrict overlap in the inlined string assignments of this file.
#if defined(__GNUC__) && !defined(__clang__) && __GNUC__ == 12
#pragma GCC diagnostic ignored "-Wrestrict"
#endif

namespace tervale {

double ScreenNumber(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  size_t start = i;
  auto digits = [&] {
    size_t from = i;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i;
    return i > from;
  };
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  bool any = digits();
  if (i < text.size() && text[i] == '.') {
    ++i;
    any = digits() || any;
  }
  if (!any) return 0;
  size_t end = i;
  if (i < text.size() && (text[i] == 'E' || text[i] == 'e')) {
    ++i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    if (digits()) end = i;
  }
  double v = 0;
  if (!io::ParseNumber(text.substr(start, end - start), v) || !std::isfinite(v)) return 0;
  return v;
}

void ReadUnifacParameterFile(SharedCalcState& s, const std::filesystem::path& path) {
  io::FieldReader r = io::FieldReader::FromFile(path);
  auto t = std::make_unique<UnifacParameterTable>(s.Unifac);  // the case part is kept
  t->NSubGroup = r.ReadCount("number of subgroups", 1, kMaxSubGroups);
  r.ReadString("title");
  t->NMainGroup = 0;
  for (int i = 1; i <= t->NSubGroup; ++i) {
    t->SubGroupName[i] = r.ReadString("subgroup name");
    t->SubGroupMain[i] =
        r.ReadCount("main group of subgroup " + std::to_string(i), 1, kMaxMainGroups);
    t->SubGroupR[i] = r.ReadDouble("R of subgroup " + std::to_string(i));
    t->SubGroupQ[i] = r.ReadDouble("Q of subgroup " + std::to_string(i));
    t->NMainGroup = std::max(t->NMainGroup, t->SubGroupMain[i]);
  }
  for (int i = t->NSubGroup + 1; i <= kMaxSubGroups; ++i) {
    t->SubGroupName[i].clear();
    t->SubGroupMain[i] = 0;
    t->SubGroupR[i] = t->SubGroupQ[i] = 0;
  }
  r.ReadString("heading of the interaction matrix");
  for (auto& row : t->InteractionA) row.fill(0);
  for (auto& n : t->MainGroupName) n.clear();
  for (int m = 1; m <= t->NMainGroup; ++m) {
    std::string label = r.ReadString("label of main group " + std::to_string(m));
    t->MainGroupName[m] = label.substr(0, label.find(' '));
    for (int n = 1; n <= t->NMainGroup; ++n)
      t->InteractionA[m][n] =
          r.ReadDouble("a(" + std::to_string(m) + "," + std::to_string(n) + ")");
  }
  s.Unifac = *t;
}

UnifacScreenInput UnifacExample(int number) {
  UnifacScreenInput in;
  if (number == 2) {
    in.Name = {"", "Benzene", "Methanol"};
    in.A = {"", "6.90565", "7.8786"};
    in.B = {"", "1211.033", "1473.11"};
    in.C = {"", "220.790", "230"};
    in.Count[10][1] = "6";
    in.Count[16][2] = "1";
  } else {
    in.Name = {"", "Methanol", "Water"};
    in.A = {"", "7.87863", "8.07131"};
    in.B = {"", "1473.11", "1730.63"};
    in.C = {"", "230.0", "233.426"};
    in.Count[16][1] = "1";
    in.Count[17][2] = "1";
  }
  return in;
}

int AddCaseGroup(SharedCalcState& s, int subgroup) {
  auto& u = s.Unifac;
  if (u.NCaseGroup > 0)
    for (int k = 1; k <= kMaxCaseGroups; ++k)
      if (u.CaseGroupId[k] == subgroup) return k;
  if (u.NCaseGroup >= kMaxCaseGroups) return 0;
  ++u.NCaseGroup;
  u.CaseGroupId[u.NCaseGroup] = subgroup;
  return u.NCaseGroup;
}

namespace {

bool IsBlank(const std::string& text) {
  return text.find_first_not_of(" \t") == std::string::npos;
}

}  // namespace

bool PrepareUnifacCase(SharedCalcState& s, const UnifacScreenInput& in) {
  auto& u = s.Unifac;
  for (int i = 1; i <= 2; ++i) {
    if (IsBlank(in.Name[i])) {
      ShowMessage(s, BiText{"No Component Name", "成分名が未入力です"});
      return false;
    }
    double a = ScreenNumber(in.A[i]), b = ScreenNumber(in.B[i]), c = ScreenNumber(in.C[i]);
    if (a == 0 || b == 0 || c == 0) {
      ShowMessage(s, BiText{"No Antoine's parameters", "Antoine 定数が未入力です"});
      return false;
    }
    s.Comp.CompName[i] = in.Name[i];
    s.Comp.AntoineA[i] = a;
    s.Comp.AntoineB[i] = b;
    s.Comp.AntoineC[i] = c;
  }
  s.NC = 2;
  if (IsBlank(in.Press)) {
    ShowMessage(s, BiText{"No Pressure data", "圧力が未入力です"});
    return false;
  }
  if (IsBlank(in.Temp)) {
    ShowMessage(s, BiText{"No Temperaturee data", "温度が未入力です"});
    return false;
  }
  u.VLEPressure = ScreenNumber(in.Press);
  u.UnifacTempInit = ScreenNumber(in.Temp);

  u.NCaseGroup = 0;
  u.CaseGroupId.fill(0);
  for (auto& c : u.CaseGroupCount) c.fill(0);
  bool any1 = false, any2 = false;
  for (int sg = 1; sg <= u.NSubGroup; ++sg) {
    for (int i = 1; i <= 2; ++i) {
      if (IsBlank(in.Count[sg][i])) continue;
      int k = AddCaseGroup(s, sg);
      if (k == 0) {
        ShowMessage(s, BiText{"Too many subgroups: a case may use at most 10 different subgroups",
                              "原子寄与団は10種類までしか選択できません"});
        return false;
      }
      u.CaseGroupCount[k][i] = static_cast<int>(IntOf(ScreenNumber(in.Count[sg][i])));
      (i == 1 ? any1 : any2) = true;
    }
  }
  if (!any1 || !any2) {
    ShowMessage(s, BiText{"No group data", "原子寄与団が未選択です"});
    return false;
  }
  for (int i = 1; i <= 2; ++i) {
    double r = 0, q = 0;
    for (int k = 1; k <= u.NCaseGroup; ++k) {
      r += u.CaseGroupCount[k][i] * u.SubGroupR[u.CaseGroupId[k]];
      q += u.CaseGroupCount[k][i] * u.SubGroupQ[u.CaseGroupId[k]];
    }
    u.ComponentR[i] = r;
    u.ComponentQ[i] = q;
    u.ComponentL[i] = 4 * r - 5 * q + 1;
  }
  bool missing = false;
  for (int k = 1; k <= u.NCaseGroup; ++k) {
    for (int l = 1; l <= u.NCaseGroup; ++l) {
      int m = u.SubGroupMain[u.CaseGroupId[k]];
      int n = u.SubGroupMain[u.CaseGroupId[l]];
      if (u.InteractionA[m][n] < kUnifacMissingMark) {
        std::string text = "相互作用ﾊﾟﾗﾒｰﾀ a" + std::to_string(m) + "," + std::to_string(n) +
                           "が登録されていません。";
        ShowMessage(s, text);
        missing = true;
      }
    }
  }
  return !missing;
}

void CalcPureVaporPress(SharedCalcState& s, double tempC) {
  for (int i = 1; i <= 2; ++i)
    s.Unifac.PureVaporPress[i] =
        std::pow(10.0, s.Comp.AntoineA[i] - s.Comp.AntoineB[i] / (s.Comp.AntoineC[i] + tempC));
}

void CalcGroupLnGamma(SharedCalcState& s) {
  auto& u = s.Unifac;
  const int ng = u.NCaseGroup;
  double denom = 0;
  for (int i = 1; i <= 2; ++i) {
    double nu = 0;
    for (int l = 1; l <= ng; ++l) nu += u.CaseGroupCount[l][i];
    denom += u.LiquidX[i] * nu;
  }
  double sumQX = 0;
  for (int k = 1; k <= ng; ++k) {
    u.GroupX[k] =
        (u.CaseGroupCount[k][1] * u.LiquidX[1] + u.CaseGroupCount[k][2] * u.LiquidX[2]) / denom;
    sumQX += u.SubGroupQ[u.CaseGroupId[k]] * u.GroupX[k];
  }
  for (int k = 1; k <= ng; ++k)
    u.GroupTheta[k] = u.SubGroupQ[u.CaseGroupId[k]] * u.GroupX[k] / sumQX;
  // sum_n Theta_n Psi_nm, once per m
  UnifacGroupArray inner{};
  for (int m = 1; m <= ng; ++m) {
    double t = 0;
    for (int n = 1; n <= ng; ++n) t += u.GroupTheta[n] * u.GroupPsi[n][m];
    inner[m] = t;
  }
  for (int k = 1; k <= ng; ++k) {
    double s1 = 0, s2 = 0;
    for (int m = 1; m <= ng; ++m) {
      s1 += u.GroupTheta[m] * u.GroupPsi[m][k];
      s2 += u.GroupTheta[m] * u.GroupPsi[k][m] / inner[m];
    }
    u.GroupLnGamma[k] = u.SubGroupQ[u.CaseGroupId[k]] * (1 - std::log(s1) - s2);
  }
}

double CalcUnifacGamma(SharedCalcState& s) {
  auto& u = s.Unifac;
  double sr = 0, sq = 0, sl = 0;
  for (int i = 1; i <= 2; ++i) {
    sr += u.LiquidX[i] * u.ComponentR[i];
    sq += u.LiquidX[i] * u.ComponentQ[i];
    sl += u.LiquidX[i] * u.ComponentL[i];
  }
  for (int i = 1; i <= 2; ++i) {
    double ri = u.ComponentR[i], qi = u.ComponentQ[i];
    u.LnGammaComb[i] = std::log(ri / sr) + 5 * qi * std::log((qi / ri) * sr / sq) +
                       u.ComponentL[i] - (ri / sr) * sl;
  }
  CalcGroupLnGamma(s);
  double p = 0;
  for (int i = 1; i <= 2; ++i) {
    double res = 0;
    for (int k = 1; k <= u.NCaseGroup; ++k)
      res += u.CaseGroupCount[k][i] * (u.GroupLnGamma[k] - u.PureLnGamma[k][i]);
    u.LnGammaRes[i] = res;
    u.UnifacGamma[i] = std::exp(u.LnGammaComb[i] + res);
    p += u.PureVaporPress[i] * u.UnifacGamma[i] * u.LiquidX[i];
  }
  for (int i = 1; i <= 2; ++i)
    u.VaporY[i] = u.PureVaporPress[i] * u.UnifacGamma[i] * u.LiquidX[i] / p;
  return p;
}

void RunUnifacSweep(SharedCalcState& s) {
  auto& u = s.Unifac;
  const double tInit = u.UnifacTempInit;
  const double pSys = u.VLEPressure;
  u.CurveTMax = -999.0;
  u.CurveTMin = 9999.0;
  int stalled = 0;
  double firstStalledX = 0;
  for (int n = 1; n <= kUnifacPoints; ++n) {
    double x1 = (1.0 / 200.0) * (n - 1);
    double x2 = 1 - x1;
    CalcPureVaporPress(s, tInit);
    double tk = tInit + 273.15;
    for (int k = 1; k <= u.NCaseGroup; ++k)
      for (int l = 1; l <= u.NCaseGroup; ++l)
        u.GroupPsi[k][l] = std::exp(
            -u.InteractionA[u.SubGroupMain[u.CaseGroupId[k]]][u.SubGroupMain[u.CaseGroupId[l]]] /
            tk);
    for (int i = 1; i <= 2; ++i) {
      u.LiquidX[i] = 1;
      u.LiquidX[3 - i] = 0;
      CalcGroupLnGamma(s);
      for (int k = 1; k <= u.NCaseGroup; ++k) u.PureLnGamma[k][i] = u.GroupLnGamma[k];
    }
    u.LiquidX[1] = x1;
    u.LiquidX[2] = x2;
    double f = CalcUnifacGamma(s) - pSys;
    double t = tInit;
    if (std::fabs(f) >= 0.000001) {
      // Bubble temperature with the activity coefficients frozen at the initial temperature.
      auto residual = [&](double temp) {
        CalcPureVaporPress(s, temp);
        return pSys - (u.UnifacGamma[1] * x1 * u.PureVaporPress[1] +
                       u.UnifacGamma[2] * x2 * u.PureVaporPress[2]);
      };
      int pass = 0;
      do {
        double f0 = residual(t);
        double f1 = residual(t + 0.01);
        double slope = (f1 - f0) / 0.01;
        t = t - f0 / slope;
        f = residual(t);
        ++pass;
      } while (!(std::fabs(f) < 0.000001) && pass < kUnifacNewtonPassLimit);
      if (!(std::fabs(f) < 0.000001)) {
        if (stalled == 0) firstStalledX = x1;
        ++stalled;
      }
    }
    u.CurveX[n] = x1;
    u.CurveY[n] = u.VaporY[1];
    u.CurveT[n] = t;
    u.CurveGamma[n][1] = u.UnifacGamma[1];
    u.CurveGamma[n][2] = u.UnifacGamma[2];
    u.CurveTMax = std::max(u.CurveTMax, t);
    u.CurveTMin = std::min(u.CurveTMin, t);
    if (n == 1)
      for (int i = 1; i <= 2; ++i) u.EndGammaRes[i][2] = std::exp(u.LnGammaRes[i]);
    if (n == kUnifacPoints)
      for (int i = 1; i <= 2; ++i) u.EndGammaRes[i][1] = std::exp(u.LnGammaRes[i]);
  }
  if (stalled > 0) {
    std::string x = io::FormatNumber(firstStalledX, "0.000");
    std::string en = "The bubble temperature search did not converge in " +
                     std::to_string(kUnifacNewtonPassLimit) + " passes at " +
                     std::to_string(stalled) + " point(s), the first at x1 = " + x +
                     "; the last temperature is kept.";
    std::string ja = "沸点の収束計算が" + std::to_string(kUnifacNewtonPassLimit) +
                     "回で収束しませんでした (" + std::to_string(stalled) + "点、最初は x1=" + x +
                     ")。最後の温度を使います。";
    ShowMessage(s, BiText{en, ja});
  }
}

void DeriveWilsonFromUnifac(SharedCalcState& s) {
  auto& u = s.Unifac;
  double uu = 1 - std::log(u.EndGammaRes[2][1]);
  double v = 1 - std::log(u.EndGammaRes[1][2]);
  double p = 1.0;
  if (!(std::fabs(uu + v - 2) < 0.0001)) {
    p = 0.001;
    if (std::exp(v - 1) >= uu && uu >= 1 && v >= 1) p = std::exp(uu);
    int pass = 0;
    for (;;) {
      if (p < 0) break;
      double q = std::exp(v - p);
      double f = std::log(p) + q - uu;
      double g = q - 1 / p;
      double d = f / g;
      if (std::fabs(d) < 0.00001) break;
      if (++pass >= kUnifacNewtonPassLimit) {
        ShowMessage(s, BiText{"The Wilson parameter search did not converge in 10000 passes; "
                              "the last value is shown.",
                              "Wilsonパラメータの収束計算が10000回で収束しませんでした。"
                              "最後の値を表示します。"});
        break;
      }
      p = p + d;
    }
  }
  u.DerivedWilson1 = p;
  u.DerivedWilson2 = uu - std::log(std::fabs(p));
}

bool RunUnifacEstimate(SharedCalcState& s, const UnifacScreenInput& in) {
  if (!PrepareUnifacCase(s, in)) return false;
  RunUnifacSweep(s);
  DeriveWilsonFromUnifac(s);
  return true;
}

// ---- the screens' tables ----

UnifacTableCell UnifacGroupTableCell(int subgroup) {
  UnifacTableCell c;
  if (subgroup < 1 || subgroup > 88) return c;
  c.Block = (subgroup - 1) / 22 + 1;
  c.Row = (subgroup - 1) % 22 + 1;
  return c;
}

std::string UnifacInteractionCellText(const SharedCalcState& s, int m, int n) {
  if (m < 1 || n < 1 || m > kMaxMainGroups || n > kMaxMainGroups) return "";
  double a = s.Unifac.InteractionA[m][n];
  if (a <= -9999) return "";
  return io::FormatShortest(a);
}

std::string UnifacReferenceText() {
  return "出典\r\n"
         "Ind. Eng. Chem. Res. 1987,26,159-161\r\n"
         "Ind. Eng. Chem. Res. 1991,30,2352-2355\r\n"
         "適用範囲：温度範囲(275～425K) 最大圧力 15bar";
}

// ---- diagram ----

namespace {

double GammaAxisTop(double greatest) {
  // The first of 2, 5, 10, 20 above the greatest; 20 or more gets 50.
  for (double top : {2.0, 5.0, 10.0, 20.0})
    if (greatest < top) return top;
  return 50.0;
}

// Splits a sampled curve into polylines, leaving out samples at or below -999 and, with a
// clip level, cutting segments at it.
std::vector<Polyline> Curves(const UnifacCurve& x, const std::array<double, kUnifacPoints + 1>& v,
                             std::optional<double> clipTop) {
  std::vector<Polyline> out;
  Polyline cur;
  auto flush = [&] {
    if (cur.size() >= 2) out.push_back(cur);
    cur.clear();
  };
  auto valid = [&](int n) { return v[n] > -999 && std::isfinite(v[n]); };
  for (int n = 1; n <= kUnifacPoints; ++n) {
    if (!valid(n)) {
      flush();
      continue;
    }
    if (clipTop && v[n] > *clipTop) {
      // Leaving the frame at the top: end the line where the segment crosses it.
      if (!cur.empty()) {
        double x0 = x[n - 1], v0 = v[n - 1];
        cur.push_back({x0 + (x[n] - x0) * (*clipTop - v0) / (v[n] - v0), *clipTop});
        flush();
      }
      // Coming back into the frame before the next sample: start where it crosses.
      if (n < kUnifacPoints && valid(n + 1) && v[n + 1] <= *clipTop) {
        double x1 = x[n + 1], v1 = v[n + 1];
        cur.push_back({x[n] + (x1 - x[n]) * (*clipTop - v[n]) / (v1 - v[n]), *clipTop});
      }
      continue;
    }
    cur.push_back({x[n], v[n]});
  }
  flush();
  return out;
}

}  // namespace

UnifacGraphData DrawUnifacGraph(const SharedCalcState& s, double pictureWidth,
                                double pictureHeight) {
  const auto& u = s.Unifac;
  UnifacGraphData g;
  g.Left = 250;
  g.Top = 250;
  g.Right = pictureWidth - 400;
  g.Bottom = pictureHeight - 200;
  g.TempTop = (IntOf(u.CurveTMax / 10) + 1) * 10;
  g.TempBottom = IntOf(u.CurveTMin / 10) * 10;
  g.TempTick = (g.TempTop - g.TempBottom) / 5;
  double greatest = 1.0;
  for (int n = 1; n <= kUnifacPoints; ++n)
    for (int i = 1; i <= 2; ++i)
      if (std::isfinite(u.CurveGamma[n][i])) greatest = std::max(greatest, u.CurveGamma[n][i]);
  g.GammaTop = GammaAxisTop(greatest);
  std::array<double, kUnifacPoints + 1> g1{}, g2{};
  for (int n = 1; n <= kUnifacPoints; ++n) {
    g1[n] = u.CurveGamma[n][1];
    g2[n] = u.CurveGamma[n][2];
  }
  g.YCurve = Curves(u.CurveX, u.CurveY, std::nullopt);
  g.TempCurve = Curves(u.CurveX, u.CurveT, std::nullopt);
  g.Gamma1Curve = Curves(u.CurveX, g1, g.GammaTop);
  g.Gamma2Curve = Curves(u.CurveX, g2, g.GammaTop);
  if (!g.Gamma1Curve.empty()) g.Gamma1Label = g.Gamma1Curve.front().front();
  if (!g.Gamma2Curve.empty()) g.Gamma2Label = g.Gamma2Curve.front().front();
  return g;
}

std::optional<UnifacReadout> UnifacMouseReadout(const SharedCalcState& s,
                                                const UnifacGraphData& graph, double clickX) {
  double pos = (clickX - graph.Left) / (graph.Right - graph.Left) * 200 + 1;
  if (!std::isfinite(pos)) return std::nullopt;
  int n = static_cast<int>(IntOf(pos));
  if (pos < 1 || n < 1 || n > kUnifacPoints) return std::nullopt;
  const auto& u = s.Unifac;
  UnifacReadout r;
  r.N = n;
  r.X = u.CurveX[n];
  r.Y = u.CurveY[n];
  r.Gamma1 = u.CurveGamma[n][1];
  r.Gamma2 = u.CurveGamma[n][2];
  r.Temp = u.CurveT[n];
  r.XText = io::FormatNumber(r.X, "#.####0");
  r.YText = io::FormatNumber(r.Y, "#.####0");
  r.Gamma1Text = io::FormatNumber(r.Gamma1, "#.####0");
  r.Gamma2Text = io::FormatNumber(r.Gamma2, "#.####0");
  r.TempText =
      std::string(Pick(s, BiText{"Temp=", "温度="})) + io::FormatNumber(r.Temp, "####.#0") + "℃";
  return r;
}

}  // namespace tervale
