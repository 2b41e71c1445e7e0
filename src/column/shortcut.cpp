// Fenske-Underwood-Gilliland short-cut design with constant volatilities at the feed.
#include "column/shortcut.h"

#include <cmath>

#include "column/column_case.h"
#include "flash/flash_engine.h"
#include "state/errors.h"
#include "state/shared_state.h"
#include "state/units.h"
#include "thermo/eos.h"
#include "thermo/equilibrium.h"

namespace tervale {

ShortCutInput MakeShortCutInput(const SharedCalcState& s) {
  const auto& c = s.Column;
  ShortCutInput in;
  in.TempGiven = true;
  in.Temp = c.ShortCutTemp;
  for (int f = 1; f <= s.NFeed; ++f) in.FeedFlow += c.FeedFlow[f];
  for (int i = 1; i <= s.NC; ++i) {
    double moles = 0;
    for (int f = 1; f <= s.NFeed; ++f) moles += c.FeedComp[f][i] * c.FeedFlow[f];
    in.FeedFraction[i] = in.FeedFlow != 0 ? moles / in.FeedFlow : 0.0;
  }
  return in;
}

std::string ValidateShortCut(const SharedCalcState& s, const ShortCutInput& in) {
  const auto& c = s.Column;
  const auto& p = s.Comp;
  auto say = [&](const char* en, const char* ja) {
    return std::string(s.LanguageFlag == 1 ? en : ja);
  };
  if (s.NC <= 0)
    return say("No Component Name, input at Main Menu 'Component'",
               "成分数が入力されていません。メイン画面の成分で入力して下さい。");
  if (s.KValueMethod < 1 || s.KValueMethod > 5)
    return say("No K-Value Method, input at Main Menu 'K-Value'",
               "気液平衡推算法が入力されていません。メイン画面の気液平衡推算法で入力して下さい。");
  if (s.KValueMethod <= 3) {
    for (int i = 1; i <= s.NC; ++i)
      if (p.AntoineA[i] == 0 || p.AntoineB[i] == 0 || p.AntoineC[i] == 0)
        return say("No Antoine Constants, input at Main Menu 'K-Value'",
                   "Antoine定数が入力されていません。メイン画面の気液平衡推算法で入力して下さい。");
  } else {
    for (int i = 1; i <= s.NC; ++i)
      if (p.CompTc[i] == 0 || p.CompPc[i] == 0 || p.CompOmega[i] == 0)
        return say("No Critical Constants, input at Main Menu 'K-Value'",
                   "臨界定数が入力されていません。メイン画面の気液平衡推算法で入力して下さい。");
  }
  const int light = c.ShortCutLightKey, heavy = c.ShortCutHeavyKey;
  if (light <= 0 || heavy <= 0 || light > s.NC || heavy > s.NC)
    return say("Light Key or Heavey Key is not input",
               "低沸点／高沸点限界成分が入力されていません。");
  const int k = c.ShortCutCalcType == 1 ? 2 : 1;
  const double lv = c.ShortCutLightValue[k], hv = c.ShortCutHeavyValue[k];
  if (!(lv > 0 && lv < 1 && hv > 0 && hv < 1))
    return say("Invalid  Mol Fr or Recovery Rate in Light key/Heavey Key",
               "低沸点／高沸点限界成分のモル分率／回収率データが間違っています。");
  if (!(in.FeedFlow > 0)) return say("No Feed", "フィード量が入力されていません。");
  for (int i = 1; i <= s.NC; ++i)
    if (!(in.FeedFraction[i] > 0) || in.FeedFraction[i] > 1)
      return say("No Feed Composition", "フィード組成が入力されていません。");
  return {};
}

void CalcFenskeSplit(const CompArray& z, const CompArray& alpha, int nc, CompArray& Top,
                     CompArray& Bottom, double& MinPlates, double rLight, double rHeavy,
                     double alphaLight) {
  MinPlates = std::log(((1 - rHeavy) * rLight) / ((1 - rLight) * rHeavy)) / std::log(alphaLight);
  for (int i = 1; i <= nc; ++i) {
    double f = 0;
    if (z[i] != 0 && alpha[i] != 0) {
      const double a = std::pow(alpha[i], MinPlates);
      const double den = (a - 1) * rHeavy + 1;
      if (std::fabs(den) == 0) {
        f = 1;
      } else {
        f = a * rHeavy / den;
        if (f < 0) f = 0;
        if (f > 1) f = 1;
      }
    }
    Top[i] = f * z[i];
    Bottom[i] = z[i] - Top[i];
  }
}

ShortCutResult RunShortCut(SharedCalcState& s, const ShortCutInput& in) {
  if (std::string m = ValidateShortCut(s, in); !m.empty()) {
    ShowMessage(s, m);
    throw InputRefused(m);
  }
  auto& c = s.Column;
  const int nc = s.NC, light = c.ShortCutLightKey, heavy = c.ShortCutHeavyKey;
  ShortCutResult r;
  CompArray z{};
  for (int i = 1; i <= nc; ++i) z[i] = in.FeedFraction[i] * in.FeedFlow / in.FeedFlow;

  // volatilities at the feed condition
  const double P = ConvPressToBase(s, c.ShortCutPress);
  if (!in.TempGiven) {
    r.Temperature = CalcBubbleTemperature(s, 100.0, P, z);
    c.ShortCutTemp = r.Temperature;  // the box shows the bubble point
    r.VF = 0;
  } else {
    r.Temperature = in.Temp;
    const double T = ConvTempToBase(s, in.Temp);
    CalcIsothermalFlashVF(s, T, P, r.VF, z);
  }
  for (int i = 1; i <= nc; ++i) r.Alpha[i] = s.KValue[i] / s.KValue[heavy];
  const double alphaLight = r.Alpha[light];

  if (c.ShortCutCalcType == 1) {
    CalcFenskeSplit(z, r.Alpha, nc, r.Top, r.Bottom, r.MinPlates, c.ShortCutLightValue[2],
                    c.ShortCutHeavyValue[2], alphaLight);
  } else {
    SecantBracketState st;
    st.state = 1;
    st.X = 0.7;
    st.Xmin = 1e-06;
    st.Xmax = 0.999999;
    st.step = 0.001;
    st.tol = 1e-05;
    while (true) {
      const double theta = st.X;
      const double rHeavy = theta * c.ShortCutHeavyValue[1] / z[heavy];
      const double rLight = (z[light] - (1 - theta) * c.ShortCutLightValue[1]) / z[light];
      CalcFenskeSplit(z, r.Alpha, nc, r.Top, r.Bottom, r.MinPlates, rLight, rHeavy, alphaLight);
      double sum = 0;
      for (int i = 1; i <= nc; ++i) sum += r.Top[i];
      st.F = sum - theta;
      SecantBracketStep(st);
      if (st.state == 4) break;
      if (st.state > 4) {
        r.Converged = false;
        ShowMessage(s, BiText{"No Convergence in Top/Bottom Mol Fr Calculation",
                              "Top/Bottomの濃度収束計算が収束しない"});
        break;
      }
    }
  }

  // Underwood, with the right side 0 (a saturated liquid feed) whatever the V/F
  r.TopFraction = 0;
  for (int i = 1; i <= nc; ++i) r.TopFraction += r.Top[i];
  const double bottomFraction = 1 - r.TopFraction;
  double lo = 1.0, hi = alphaLight, phi = 0;
  for (int count = 0;;) {
    phi = (lo + hi) / 2;
    double g = 0;
    for (int i = 1; i <= nc; ++i) g += z[i] * r.Alpha[i] / (r.Alpha[i] - phi);
    g = -g;
    if (g > 0)
      lo = phi;
    else
      hi = phi;
    ++count;
    if (std::fabs(g) < 0.0001 || count > 50) break;
  }
  r.Phi = phi;
  r.MinReflux = -1;
  for (int i = 1; i <= nc; ++i)
    r.MinReflux += (r.Top[i] / r.TopFraction) * r.Alpha[i] / (r.Alpha[i] - phi);

  // feed location (Kirkbride)
  const double xB = r.Bottom[light] / bottomFraction;
  const double q = std::pow(xB / r.Top[heavy] * r.TopFraction, 2) *
                   (bottomFraction / r.TopFraction) * z[heavy] / z[light];
  const double w = std::pow(10.0, std::log(q) * 0.206 / 2.302585093);
  r.FeedLocation = w * r.MinPlates / (1 + w);

  for (int i = 1; i <= nc; ++i) {
    r.TopComp[i] = r.Top[i] / r.TopFraction;
    r.BottomComp[i] = r.Bottom[i] / bottomFraction;
  }
  r.TopFlow = in.FeedFlow * r.TopFraction;
  r.BottomFlow = in.FeedFlow * bottomFraction;

  // Gilliland: plates against reflux; a partial condenser counts as one plate
  if (!(r.MinReflux > 0) || !(r.MinPlates > 0)) {
    ShowMessage(s, s.LanguageFlag == 1
                       ? std::string("No Gilliland curve: the minimum reflux ratio or the minimum "
                                     "theoretical plates is not above 0")
                       : std::string("最小還流比または最小理論段数が0以下のため、Gilliland "
                                     "相関関係は描けません。"));
  } else {
    r.Gilliland.reserve(51);
    for (int k = 1; k <= 51; ++k) {
      GillilandPoint g;
      g.R = (k * 0.04 + 1.05) * r.MinReflux;
      const double X = (g.R - r.MinReflux) / (g.R + 1);
      const double Y = 0.75 * (1 - std::pow(X, 0.5668));
      g.N = (Y + r.MinPlates) / (1 - Y) - c.ShortCutCondenser;
      g.NF = (r.FeedLocation / r.MinPlates) * g.N;
      r.Gilliland.push_back(g);
    }
  }
  return r;
}

}  // namespace tervale
