#include "batch/batch_data.h"

#include <algorithm>
#include <string>

#include "state/shared_state.h"
#include "state/units.h"

namespace tervale {

namespace {
std::string Num(double v) {
  // The figures the messages quote are whole numbers or plain values.
  std::string text = std::to_string(v);
  if (text.find('.') != std::string::npos) {
    while (!text.empty() && text.back() == '0') text.pop_back();
    if (!text.empty() && text.back() == '.') text.pop_back();
  }
  return text;
}
}  // namespace

void ResetBatchCase(SharedCalcState& s) {
  ResetComponentsAndMatrices(s);
  s.Batch = BatchCase{};
  s.NC = 0;
  s.NTray = 0;
  for (auto& line : s.MemoLine) line.clear();
  for (int i = 0; i <= kMaxComponents; ++i) {
    for (int j = 0; j <= kMaxComponents; ++j) {
      s.Bin.WilsonLambda[i][j] = 1.0;
      s.Bin.KijMatrix[i][j] = 1.0;
      s.Bin.NrtlTau[i][j] = 0.0;
    }
  }
  s.Bin.NrtlAlpha = 0.4;
  s.Unit.TempUnit = 1;
  s.Unit.PressUnit = 2;
  s.Unit.HeatUnit = 2;
  s.KValueMethod = 1;
  s.EnthalpyMethod = 1;
  auto& b = s.Batch;
  b.HoldupBasis = 1;
  b.BatchOpeType = 1;
  b.GraphDivisions = 5;
  b.MaxOpeTime = 10;
  b.DiffTime = 0.0001;
  b.SaveInterval = 0.001;
  b.TRefluxConvLimit = 0.0005;
  b.ContinueFromTReflux = 0;
  b.ContinueTime = 0;
}

double DeriveStillHoldup(SharedCalcState& s) {
  auto& b = s.Batch;
  if (s.NTray < 1) return 0;
  int col = b.HoldupBasis - 1;
  if (col < 0 || col > 2) col = 0;
  double sum = 0;
  for (int i = 1; i <= s.NTray - 1; ++i) sum += b.TrayHoldupInput[i][col];
  b.TrayHoldupInput[s.NTray][col] = b.TotalFeed - sum;
  return b.TrayHoldupInput[s.NTray][col];
}

std::string ApplyBatchTowerSpec(SharedCalcState& s, int nTray, double topPress, double bottomPress,
                                double initialTemp) {
  if (nTray > s.MaxTrays) {
    std::string n = std::to_string(s.MaxTrays);
    std::string text = s.LanguageFlag == 1 ? "Over max theoretical plates (" + n + ")"
                                           : "最大理論段数(" + n + ")を越えています。";
    ShowMessage(s, text);
    return text;
  }
  if (nTray < 0) {
    std::string text = s.LanguageFlag == 1 ? "The number of theoretical plates cannot be negative"
                                           : "理論段数が負です。";
    ShowMessage(s, text);
    return text;
  }
  auto& b = s.Batch;
  s.NTray = nTray;
  b.TopPress = topPress;
  b.BottomPress = bottomPress;
  b.InitialTemp = initialTemp;
  if (nTray >= 1) {
    b.TrayPressInput[1] = topPress;
    b.TrayPressInput[nTray] = bottomPress;
  }
  return "";
}

void ApplyBatchFeed(SharedCalcState& s, double totalFeed, const CompArray& feedComp,
                    int unitIndex) {
  s.Batch.TotalFeed = totalFeed;
  for (int j = 1; j <= s.NC; ++j) s.Batch.FeedComp[j] = feedComp[j];
  s.Batch.FeedUnitIndex = unitIndex;
  DeriveStillHoldup(s);
}

void ApplyBatchTray(SharedCalcState& s, int holdupBasis, const std::vector<BatchTrayRow>& rows) {
  auto& b = s.Batch;
  b.HoldupBasis = holdupBasis >= 1 && holdupBasis <= 3 ? holdupBasis : 1;
  const int col = b.HoldupBasis - 1;
  const int n = std::min<int>(s.NTray, static_cast<int>(rows.size()));
  for (int i = 1; i <= n; ++i) {
    const auto& row = rows[i - 1];
    b.TrayPressInput[i] = row.press;
    b.TrayHeat[i] = ConvHeatToBase(s, row.heat);
    if (i < s.NTray) b.TrayHoldupInput[i][col] = row.holdup;
  }
  if (n == s.NTray && n >= 1) b.TRefluxQReb = b.TrayHeat[s.NTray];
  DeriveStillHoldup(s);
}

void ApplyBatchOperation(SharedCalcState& s, const BatchOperationInput& in) {
  auto& b = s.Batch;
  b.MaxOpeTime = in.maxOpeTime;
  b.DiffTime = in.diffTime;
  b.SaveInterval = in.saveInterval;
  b.TRefluxConvLimit = in.convLimit;
  b.TRefluxQReb = ConvHeatToBase(s, in.duty);
  if (s.NTray >= 1) b.TrayHeat[s.NTray] = b.TRefluxQReb;
  b.BatchOpeType = in.opeType == 1 ? 1 : (b.BatchOpeType > 1 ? b.BatchOpeType : 2);
  b.GraphLinear = in.graphLinear;
  b.GraphDivisions = in.graphDivisions;
}

std::string BatchFeedScreenGuard(SharedCalcState& s) {
  bool named = false;
  for (int j = 1; j <= s.NC; ++j) named = named || !s.Comp.CompName[j].empty();
  if (s.NC >= 1 && named) return "";
  std::string text(Pick(s, BiText{"No Component Name", "成分名が入力されていません"}));
  ShowMessage(s, text);
  return text;
}

std::string BatchTrayScreenGuard(SharedCalcState& s) {
  if (s.NTray != 0) return "";
  std::string text(Pick(s, BiText{"T.Plate does not input", "段数が入力されていません"}));
  ShowMessage(s, text);
  return text;
}

std::string ApplyBatchProduct(SharedCalcState& s, const BatchProductInput& in) {
  auto refuse = [&](const std::string& en, const std::string& ja) {
    std::string text = s.LanguageFlag == 1 ? en : ja;
    ShowMessage(s, text);
    return text;
  };
  if (in.changeCount > 5) {
    return refuse("Over Max(5) Tank Change", "タンク切替回数がMax5 を越えています。");
  }
  if (in.changeCount == 5) {
    // Six tanks would need a sixth row of the tank table, which holds five.
    return refuse("Tank Change 5 needs six tanks; at most 5 tanks (4 changes) can be given",
                  "タンク切替 5 回には 6 基のタンクが必要です。タンクは最大 5 基(切替 4 回)です。");
  }
  if (in.changeCount < 0) {
    return refuse("Tank Change count < 0", "タンク切替回数が 0 未満です。");
  }
  const int rows = in.changeCount + 1;
  std::array<int, kMaxTankRows + 1> keys{};
  std::array<double, kMaxTankRows + 1> limits{};
  for (int r = 1; r <= rows; ++r) {
    const auto& row = in.rows[r];
    if (!(row.refluxRatio > 0)) return refuse("Reflux Ration < 0", "還流比が 0以下です。");
    if (in.opeType == 2 && row.distillate < 0) {
      return refuse("Distillate < 0", "抜き出し量が 0以下です。");
    }
    if (in.opeType == 3 && row.duty < 0) {
      return refuse("Reboiler Heat Duty < 0", "リボイラー熱量が 0以下です。");
    }
    if (r == rows) break;  // the last tank has no change condition
    if (row.byQuantity) {
      double bound = s.Batch.TotalFeed;
      if (row.quantityUnit == 1) {
        double mw = 0;
        for (int j = 1; j <= s.NC; ++j) mw += s.Comp.CompMW[j] * s.Batch.FeedComp[j];
        bound = mw * s.Batch.TotalFeed;
      }
      if (!(row.quantity > 0) || !(row.quantity < bound)) {
        return refuse("Distillate is negative or >= Feed rate(" + Num(bound) + ")",
                      "抜き出し量が 0以下またはフィード量" + Num(bound) + "より多い。");
      }
      limits[r] = row.quantity;
      keys[r] = row.quantityUnit == 1 ? -2 : -1;
    } else {
      if (row.component <= 0 || row.component > s.NC) {
        return refuse("Component No =<0 or Max Component",
                      "タンク切替の成分番号が 0以下または最大成分数を越えています。");
      }
      if (!(row.fraction > 0) || !(row.fraction < 1)) {
        return refuse("Composition =< 0 or >=1 ", "タンク切替の組成が 0以下または1以上です。");
      }
      keys[r] = row.weightFraction ? row.component + 100 : row.component;
      limits[r] = row.greater ? row.fraction : -row.fraction;
    }
  }
  auto& b = s.Batch;
  b.BatchOpeType = in.opeType;
  b.TankChangeCount = in.changeCount;
  for (int r = 1; r <= kMaxTankRows; ++r) {
    if (r <= rows) {
      b.TankChangeKey[r] = keys[r];
      b.TankChangeLimit[r] = limits[r];
      b.TankOperation[r] = {in.rows[r].refluxRatio, in.rows[r].distillate, in.rows[r].duty};
    }
  }
  return "";
}

BatchCheckResult CheckBatchGoCalc(SharedCalcState& s) {
  BatchCheckResult result;
  auto& b = s.Batch;
  auto say = [&](const char* en, const char* ja) {
    std::string text = s.LanguageFlag == 1 ? en : ja;
    ShowMessage(s, text);
    result.messages.push_back(text);
  };
  auto refuse = [&](const char* en, const char* ja) {
    say(en, ja);
    result.ok = false;
    return result;
  };
  if (b.ContinueFromTReflux == 1 && (s.NC != b.NCAtRead || s.NTray != b.NTrayAtRead)) {
    say("not Equal N.Comp or T.Plate at total reflux data, calculate initial state",
        "全還流収束データの成分数or理論段数と違うため、初期状態から計算する。");
    b.ContinueFromTReflux = 0;
  }
  if (s.NC == 0 || s.NTray == 0) {
    return refuse("N.Comp or T.Plate does not input", "成分数 or 理論段数が入力されていません。");
  }
  if (s.KValueMethod == 0 || s.EnthalpyMethod == 0) {
    return refuse("K-Value or Enthalpy Method does not input",
                  "気液平衡推算法 or エンタルピー推算法が入力されていません。");
  }
  for (int j = 1; j <= s.NC; ++j) {
    if (s.Comp.AntoineA[j] == 0 || s.Comp.AntoineB[j] == 0 || s.Comp.AntoineC[j] == 0) {
      return refuse("Antoine Constants does not input", "Antoine定数が入力されていません。");
    }
  }
  if (b.TotalFeed == 0) return refuse("Feed rate does not input", "仕込量が入力されていません。");
  for (int j = 1; j <= s.NC; ++j) {
    if (b.FeedComp[j] == 0) {
      return refuse("Feed Composition doese not input", "仕込組成が入力されていません。");
    }
  }
  for (int i = 1; i <= s.NTray - 1; ++i) {
    const auto& h = b.TrayHoldupInput[i];
    if (h[0] == 0 && h[1] == 0 && h[2] == 0) {
      return refuse("Tray holdup rate does not input", "Tray ﾎｰﾙﾄﾞｱｯﾌﾟ量が入力されていません。");
    }
  }
  if (b.TopPress == 0 || b.BottomPress == 0) {
    return refuse("Pressure does not input", "圧力が入力されていません。");
  }
  b.QRebSet = b.TRefluxQReb;
  if (!(b.QRebSet > 0)) {
    return refuse("Reboiler heat duty does not input", "ﾘﾎﾞｲﾗｰ熱量が入力されていません。");
  }
  if (b.TRefluxConvLimit == 0 || b.DiffTime == 0 || b.MaxOpeTime == 0 || b.SaveInterval == 0) {
    return refuse("Calculation condition does not input", "計算条件が入力されていません。");
  }
  // The tank table holds five rows; a file cannot bring more, but a case built in memory could.
  if (b.BatchOpeType > 1 && (b.TankChangeCount < 0 || b.TankChangeCount > kMaxTankRows - 1)) {
    return refuse("Tank Change count must be 0 to 4 (at most 5 tanks)",
                  "タンク切替回数は 0～4 (タンク最大 5 基)です。");
  }
  return result;
}

bool LoadBatchExample(SharedCalcState& s, int number) {
  if (number != 1) return false;
  ResetBatchCase(s);
  auto& b = s.Batch;
  if (s.LanguageFlag == 1) {
    s.MemoLine[1] = "Batch Distillation Program";
    s.MemoLine[2] = "  Example Data";
    s.MemoLine[3] = "Methanol - Ethanol -Water";
    s.MemoLine[4] = "            1998/11/30";
  } else {
    s.MemoLine[1] = "バッチ蒸留計算プログラム";
    s.MemoLine[2] = "  例題データ";
    s.MemoLine[3] = "Methanol - Ethanol -Water系の例題";
    s.MemoLine[4] = "            1998/11/30";
  }
  s.NC = 3;
  s.NTray = 10;
  s.KValueMethod = 2;
  s.EnthalpyMethod = 1;
  b.BatchOpeType = 2;
  b.HoldupBasis = 1;
  s.Unit.TempUnit = 1;
  s.Unit.PressUnit = 3;
  s.Unit.HeatUnit = 2;
  b.TopPress = 760;
  b.BottomPress = 770;
  b.InitialTemp = 80;
  b.TrayPressInput[1] = 760;
  b.TrayPressInput[10] = 770;
  b.TRefluxConvLimit = 0.001;
  b.DiffTime = 0.0002;
  b.MaxOpeTime = 10;
  b.SaveInterval = 0.002;
  b.TRefluxQReb = ConvHeatToBase(s, 1000000);
  b.GraphDivisions = 6;
  b.TotalFeed = 100;
  b.FeedComp[1] = 0.12;
  b.FeedComp[2] = 0.03;
  b.FeedComp[3] = 0.85;
  b.TankChangeCount = 1;
  b.TankChangeKey[1] = -1;
  b.TankChangeLimit[1] = 2;
  b.TankOperation[1] = {5, 10, 0};
  b.TankChangeKey[2] = 1;
  b.TankChangeLimit[2] = -0.88;
  b.TankOperation[2] = {8, 5, 0};
  b.TrayHoldupInput[1][kHoldupKgmol] = 5;
  for (int i = 2; i <= 9; ++i) b.TrayHoldupInput[i][kHoldupKgmol] = 1;
  DeriveStillHoldup(s);  // 87
  auto& c = s.Comp;
  c.CompName[1] = "Methanol";
  c.CompName[2] = "Ethanol";
  c.CompName[3] = "Water";
  c.CompMW[1] = 32.04;
  c.CompMW[2] = 46.07;
  c.CompMW[3] = 18.015;
  c.AntoineA[1] = 7.8786, c.AntoineB[1] = 1473.11, c.AntoineC[1] = 230.0;
  c.AntoineA[2] = 8.0449, c.AntoineB[2] = 1554.3, c.AntoineC[2] = 222.65;
  c.AntoineA[3] = 8.07131, c.AntoineB[3] = 1730.63, c.AntoineC[3] = 233.426;
  s.Bin.WilsonLambda[3][1] = 0.382;
  s.Bin.WilsonLambda[3][2] = 0.999;
  s.Bin.WilsonLambda[2][3] = 0.829;
  s.Bin.NrtlAlpha = 0.4;
  c.HVapA[1] = 62.453, c.HVapB[1] = 0.39014, c.HVapC[1] = 0;
  c.HVapA[2] = 64.272, c.HVapB[2] = 0.41893, c.HVapC[2] = 0;
  c.HVapA[3] = 119.87, c.HVapB[3] = 0.46615, c.HVapC[3] = 0;
  c.HLiqA[1] = -253.37, c.HLiqB[1] = 0.81773, c.HLiqC[1] = 0;
  c.HLiqA[2] = -174.17, c.HLiqB[2] = 0.77057, c.HLiqC[2] = 0;
  c.HLiqA[3] = -485.52, c.HLiqB[3] = 0.46615, c.HLiqC[3] = 0;
  b.ContinueFromTReflux = 0;
  b.ContinueTime = 0;
  b.ResultsExist = false;
  s.DataFileName.clear();
  return true;
}

}  // namespace tervale
