#include "column/column_case.h"

#include "io/record_writer.h"
#include "state/shared_state.h"

namespace tervale {

namespace {
std::string NumberText(double v) {
  return io::FormatShortest(v);
}
}  // namespace

void ResetColumnCase(SharedCalcState& s) {
  s.NC = 0;
  s.NTray = 0;
  s.NFeed = 0;
  s.NSideLiq = 0;
  s.NSideVap = 0;
  ResetComponentsAndMatrices(s);
  for (int i = 0; i <= kMaxComponents; ++i) {
    s.Gamma[i] = 1.0;
    for (int j = 0; j <= kMaxComponents; ++j) {
      s.Bin.WilsonLambda[i][j] = 1.0;
      s.Bin.NrtlTau[i][j] = 0.0;
    }
  }
  s.Bin.NrtlAlpha = 0.4;
  for (auto& line : s.MemoLine) line.clear();
  s.Column = ColumnCase{};
  auto& c = s.Column;
  c.ConvMaxIter = {0, 20, 30};
  c.ConvTolerance = {0, 5e-05, 5e-06};
  s.Unit.PressUnit = 2;  // with the 760 and 780 below, as they are
  s.Unit.HeatUnit = 2;
  s.Unit.TempUnit = 1;
  c.RefluxRatio = 2.0;
  c.TopTempGuess = 100.0;
  c.BottomTempGuess = 100.0;
  c.TopPress = 760.0;
  c.BottomPress = 780.0;
  s.KValueMethod = 1;
  s.EnthalpyMethod = 0;
}

void RefreshColumnTotals(SharedCalcState& s) {
  auto& c = s.Column;
  c.TotalFeed = 0;
  for (int f = 1; f <= s.NFeed; ++f) c.TotalFeed += c.FeedFlow[f];
  c.TotalSideCut = 0;
  for (int k = 1; k <= s.NSideLiq; ++k) c.TotalSideCut += c.LiqSideFlow[k];
  for (int k = 1; k <= s.NSideVap; ++k) c.TotalSideCut += c.VapSideFlow[k];
  c.BottomFlow = c.TotalFeed - c.TopLiquidFlow - c.TopVaporFlow - c.TotalSideCut;
}

ProductLists MakeProductLists(const SharedCalcState& s) {
  const auto& c = s.Column;
  ProductLists p;
  if (c.TopLiquidFlow > 0) {
    ++p.NLiqProduct;
    p.LiqProductFlow[p.NLiqProduct] = c.TopLiquidFlow;
    p.LiqProductTray[p.NLiqProduct] = 1;
  }
  for (int k = 1; k <= s.NSideLiq; ++k) {
    ++p.NLiqProduct;
    p.LiqProductFlow[p.NLiqProduct] = c.LiqSideFlow[k];
    p.LiqProductTray[p.NLiqProduct] = c.LiqSideTray[k];
  }
  ++p.NLiqProduct;
  p.LiqProductFlow[p.NLiqProduct] = c.BottomFlow;
  p.LiqProductTray[p.NLiqProduct] = s.NTray;
  if (c.TopVaporFlow > 0) {
    ++p.NVapProduct;
    p.VapProductFlow[p.NVapProduct] = c.TopVaporFlow;
    p.VapProductTray[p.NVapProduct] = 1;
  }
  for (int k = 1; k <= s.NSideVap; ++k) {
    ++p.NVapProduct;
    p.VapProductFlow[p.NVapProduct] = c.VapSideFlow[k];
    p.VapProductTray[p.NVapProduct] = c.VapSideTray[k];
  }
  return p;
}

void BuildProductLists(SharedCalcState& s) {
  RefreshColumnTotals(s);
  s.Column.Products = MakeProductLists(s);
}

void LoadColumnExample1(SharedCalcState& s) {
  ResetColumnCase(s);
  s.MemoLine[1] = "逐次段蒸留計算プログラム";
  s.MemoLine[2] = "   例題データ";
  s.MemoLine[3] = "Methanol - Ethanol - Water - Propanol系 の例題";
  s.MemoLine[4] = "1998/10/19";
  s.KValueMethod = 2;
  s.EnthalpyMethod = 1;
  s.Unit.TempUnit = 1;
  s.Unit.PressUnit = 3;
  s.Unit.HeatUnit = 2;
  s.NC = 4;
  s.NTray = 15;
  s.NFeed = 1;
  s.NSideLiq = 0;
  s.NSideVap = 0;
  auto& c = s.Column;
  c.RefluxRatio = 3.0;
  c.TopLiquidFlow = 83.0;
  c.TopVaporFlow = 0;
  c.TopPress = 760;
  c.BottomPress = 770;
  c.TopTempGuess = 72;
  c.BottomTempGuess = 105;
  c.ConvMaxIter = {0, 10, 20};
  c.ConvTolerance = {0, 5e-05, 1e-05};
  c.TrayPressInput = {};
  c.TrayPressInput[1] = 760;
  c.TrayPressInput[15] = 770;
  c.FeedTray[1] = 5;
  c.FeedTemp[1] = 93;
  c.FeedPress[1] = 770;
  c.FeedVF[1] = 0.5;
  c.FeedFlow[1] = 380;

  struct Row {
    const char* name;
    double mw, a, b, cc, hla, hlb, hva, hvb, z;
  };
  static const Row rows[4] = {
      {"Methanol", 32.04, 7.8786, 1473.11, 230.0, -253.37, 0.81773, 62.453, 0.39014, 0.120949998},
      {"Ethanol", 46.07, 8.0449, 1554.3, 222.65, -174.17, 0.77057, 64.272, 0.41893, 0.01055},
      {"Water", 18.015, 8.07131, 1730.63, 233.43, -485.52, 0.46615, 119.87, 0.46615, 0.855279982},
      {"1-Propanol", 60.9, 7.9973, 1569.7, 209.5, -147.14999, 0.6577, 44.672, 0.3663, 0.01322},
  };
  for (int i = 1; i <= 4; ++i) {
    const Row& r = rows[i - 1];
    s.Comp.CompName[i] = r.name;
    s.Comp.CompMW[i] = r.mw;
    s.Comp.AntoineA[i] = r.a;
    s.Comp.AntoineB[i] = r.b;
    s.Comp.AntoineC[i] = r.cc;
    s.Comp.HLiqA[i] = r.hla;
    s.Comp.HLiqB[i] = r.hlb;
    s.Comp.HLiqC[i] = 0;
    s.Comp.HVapA[i] = r.hva;
    s.Comp.HVapB[i] = r.hvb;
    s.Comp.HVapC[i] = 0;
    c.FeedComp[1][i] = r.z;
  }
  static const double lambda[4][4] = {{1.0, 1.0, 1.0, 1.0},
                                      {1.0, 1.0, 0.826, 1.0},
                                      {0.382, 0.999, 1.0, 0.67},
                                      {1.0, 1.0, 0.001, 1.0}};
  for (int i = 1; i <= 4; ++i)
    for (int j = 1; j <= 4; ++j) s.Bin.WilsonLambda[i][j] = lambda[i - 1][j - 1];

  c.ShortCutLightKey = 2;
  c.ShortCutHeavyKey = 3;
  c.ShortCutCalcType = 0;
  c.ShortCutCondenser = 0;
  c.ShortCutLightValue = {0, 0.005, 0.98};
  c.ShortCutHeavyValue = {0, 0.35, 0.1};
  c.ShortCutPress = 760;
  c.ShortCutTemp = 80;
  c.CalcFinished = 0;
  RefreshColumnTotals(s);
}

std::string CheckPlateLimit(const SharedCalcState& s, int nTray) {
  if (nTray <= s.MaxTrays) return {};
  std::string n = std::to_string(s.MaxTrays);
  if (s.LanguageFlag == 1) return "Over max theoretical plates (" + n + ")";
  return "最大理論段数(" + n + ")を越えています。";
}

std::string CheckFeedLocation(const SharedCalcState& s, int tray) {
  if (tray < 2 || tray > s.NTray) return "フィード段が1以下または理論段数以上です。";
  return {};
}

std::string CheckLiqSideCut(const SharedCalcState& s, int tray, double flow) {
  if (tray < 2 || tray > s.NTray)
    return std::string(
        Pick(s, BiText{"Location <1 or >NT", "液サイドカット段が1以下または理論段数以上です。"}));
  if (flow < 0)
    return std::string(Pick(s, BiText{"Negative Liquid Flow rate", "液抜出量が0以下です。"}));
  return {};
}

std::string CheckVapSideCut(const SharedCalcState& s, int tray, double flow) {
  if (tray < 2 || tray > s.NTray)
    return std::string(
        Pick(s, BiText{"Location <1 or >NT", "蒸気サイドカット段が1以下または理論段数以上です。"}));
  if (flow < 0)
    return std::string(Pick(s, BiText{"Negative Vapor Flow rate", "蒸気抜出量が0以下です。"}));
  return {};
}

std::string CheckTopDraw(const SharedCalcState& s) {
  if (s.Column.TopLiquidFlow > 0 && s.Column.TopVaporFlow > 0)
    return "塔頂からの蒸気、液の同時抜き出しは未だサポートしていません。";
  return {};
}

std::string CheckBottomFlow(SharedCalcState& s) {
  RefreshColumnTotals(s);
  if (s.Column.BottomFlow <= 0)
    return "Bottom流量[ " + NumberText(s.Column.BottomFlow) + " ]が負です。";
  return {};
}

void RefreshColumnSummary(SharedCalcState& s) {
  std::string m = CheckBottomFlow(s);
  if (!m.empty()) ShowMessage(s, m);
}

std::string ShowFileNameText(const std::string& path) {
  const size_t cut = path.find_last_of("\\/");
  return (cut == std::string::npos ? path : path.substr(cut + 1)) + " ";
}

std::string CheckColumnRunnable(const SharedCalcState& s) {
  const auto& c = s.Column;
  const bool en = s.LanguageFlag == 1;
  if (s.NC <= 0)
    return en ? "No Component Name, input at Main Menu 'Component'"
              : "成分数が入力されていません。メイン画面の成分で入力して下さい。";
  if (std::string m = CheckPlateLimit(s, s.NTray); !m.empty()) return m;
  if (s.NTray < 2)
    return en ? "The column needs at least 2 theoretical plates" : "理論段数は2段以上必要です。";
  if (s.NFeed <= 0) return en ? "No Feed" : "フィード量が入力されていません。";
  // the solver handles a feed on tray 1, so only trays outside the column are refused here
  for (int f = 1; f <= s.NFeed; ++f)
    if (c.FeedTray[f] < 1 || c.FeedTray[f] > s.NTray) return CheckFeedLocation(s, c.FeedTray[f]);
  for (int k = 1; k <= s.NSideLiq; ++k)
    if (c.LiqSideTray[k] < 1 || c.LiqSideTray[k] > s.NTray)
      return CheckLiqSideCut(s, c.LiqSideTray[k], c.LiqSideFlow[k]);
  for (int k = 1; k <= s.NSideVap; ++k)
    if (c.VapSideTray[k] < 1 || c.VapSideTray[k] > s.NTray)
      return CheckVapSideCut(s, c.VapSideTray[k], c.VapSideFlow[k]);
  double total = 0;
  for (int f = 1; f <= s.NFeed; ++f) total += c.FeedFlow[f];
  if (total <= 0) return en ? "No Feed" : "フィード量が入力されていません。";
  return CheckTopDraw(s);
}

}  // namespace tervale
