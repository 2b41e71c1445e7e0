// The column case file: ordered records without keys, first record "Distillation Data".
#include <exception>

#include "column/column_case.h"
#include "io/field_reader.h"
#include "io/record_writer.h"
#include "state/errors.h"
#include "state/shared_state.h"

namespace tervale {

namespace {

constexpr const char* kMagic = "Distillation Data";

// Everything of the case that lives outside ColumnCase, copied into and out of the scratch
// state as one block.
void CommitCase(SharedCalcState& to, const SharedCalcState& from) {
  to.NC = from.NC;
  to.NTray = from.NTray;
  to.NFeed = from.NFeed;
  to.NSideLiq = from.NSideLiq;
  to.NSideVap = from.NSideVap;
  to.Comp = from.Comp;
  to.Bin = from.Bin;
  to.KValueMethod = from.KValueMethod;
  to.EnthalpyMethod = from.EnthalpyMethod;
  to.Unit = from.Unit;
  to.Gamma = from.Gamma;
  to.MemoLine = from.MemoLine;
  to.Column = from.Column;
}

// Items 1 to 18. Throws FileReadError.
void ReadCaseItems(io::FieldReader& r, SharedCalcState& t) {
  auto& c = t.Column;
  if (r.ReadString("file kind") != kMagic) r.Fail("not a column case file");
  for (int k = 1; k <= kMaxMemoLines; ++k) t.MemoLine[k] = r.ReadString("memo line");
  t.NC = r.ReadCount("NC", 0, kMaxComponents);
  t.NTray = r.ReadCount("NTray", 0, kMaxTrays);
  t.NFeed = r.ReadCount("NFeed", 0, kMaxFeeds);
  t.NSideLiq = r.ReadCount("NSideLiq", 0, kMaxSideCuts);
  t.NSideVap = r.ReadCount("NSideVap", 0, kMaxSideCuts);
  t.KValueMethod = r.ReadInt("KValueMethod");
  t.EnthalpyMethod = r.ReadInt("EnthalpyMethod");
  t.Unit.TempUnit = r.ReadInt("TempUnit");
  t.Unit.PressUnit = r.ReadInt("PressUnit");
  t.Unit.HeatUnit = r.ReadInt("HeatUnit");
  c.ConvMaxIter[1] = r.ReadInt("ConvMaxIter");
  c.ConvTolerance[1] = r.ReadDouble("ConvTolerance");
  c.ConvMaxIter[2] = r.ReadInt("ConvMaxIter");
  c.ConvTolerance[2] = r.ReadDouble("ConvTolerance");
  c.ShortCutLightKey = r.ReadInt("ShortCutLightKey");
  c.ShortCutHeavyKey = r.ReadInt("ShortCutHeavyKey");
  c.ShortCutCalcType = r.ReadInt("ShortCutCalcType");
  c.ShortCutCondenser = r.ReadInt("ShortCutCondenser");
  c.ShortCutLightValue[1] = r.ReadDouble("ShortCutLightValue");
  c.ShortCutLightValue[2] = r.ReadDouble("ShortCutLightValue");
  c.ShortCutHeavyValue[1] = r.ReadDouble("ShortCutHeavyValue");
  c.ShortCutHeavyValue[2] = r.ReadDouble("ShortCutHeavyValue");
  c.ShortCutPress = r.ReadDouble("ShortCutPress");
  c.ShortCutTemp = r.ReadDouble("ShortCutTemp");
  const int n = t.NC;
  auto& p = t.Comp;
  for (int i = 1; i <= n; ++i) p.CompName[i] = r.ReadString("CompName");
  for (int i = 1; i <= n; ++i) {
    p.CompMW[i] = r.ReadDouble("CompMW");
    p.AntoineA[i] = r.ReadDouble("AntoineA");
    p.AntoineB[i] = r.ReadDouble("AntoineB");
    p.AntoineC[i] = r.ReadDouble("AntoineC");
    p.CompTc[i] = r.ReadDouble("CompTc");
    p.CompPc[i] = r.ReadDouble("CompPc");
    p.CompVc[i] = r.ReadDouble("CompVc");
    p.CompOmega[i] = r.ReadDouble("CompOmega");
  }
  for (int i = 1; i <= n; ++i) {
    p.HLiqA[i] = r.ReadDouble("HLiqA");
    p.HLiqB[i] = r.ReadDouble("HLiqB");
    p.HLiqC[i] = r.ReadDouble("HLiqC");
    p.HVapA[i] = r.ReadDouble("HVapA");
    p.HVapB[i] = r.ReadDouble("HVapB");
    p.HVapC[i] = r.ReadDouble("HVapC");
  }
  for (int i = 1; i <= n; ++i) {
    p.CpA[i] = r.ReadDouble("CpA");
    p.CpB[i] = r.ReadDouble("CpB");
    p.CpC[i] = r.ReadDouble("CpC");
    p.CpD[i] = r.ReadDouble("CpD");
  }
  for (int i = 1; i <= n; ++i)
    for (int j = 1; j <= n; ++j) t.Bin.WilsonLambda[i][j] = r.ReadDouble("WilsonLambda");
  for (int i = 1; i <= n; ++i)
    for (int j = 1; j <= n; ++j) t.Bin.NrtlTau[i][j] = r.ReadDouble("NrtlTau");
  t.Bin.NrtlAlpha = r.ReadDouble("NrtlAlpha");
  for (int i = 1; i <= n; ++i)
    for (int j = 1; j <= n; ++j) t.Bin.KijMatrix[i][j] = r.ReadDouble("KijMatrix");
  c.TopLiquidFlow = r.ReadDouble("TopLiquidFlow");
  c.TopVaporFlow = r.ReadDouble("TopVaporFlow");
  c.RefluxRatio = r.ReadDouble("RefluxRatio");
  c.TopTempGuess = r.ReadDouble("TopTempGuess");
  c.BottomTempGuess = r.ReadDouble("BottomTempGuess");
  c.TopPress = r.ReadDouble("TopPress");
  c.BottomPress = r.ReadDouble("BottomPress");
  for (int j = 1; j <= t.NTray; ++j) c.TrayPressInput[j] = r.ReadDouble("TrayPressInput");
  for (int f = 1; f <= t.NFeed; ++f) {
    c.FeedTray[f] = r.ReadInt("FeedTray");
    c.FeedTemp[f] = r.ReadDouble("FeedTemp");
    c.FeedPress[f] = r.ReadDouble("FeedPress");
    c.FeedVF[f] = r.ReadDouble("FeedVF");
    c.FeedFlow[f] = r.ReadDouble("FeedFlow");
    for (int i = 1; i <= n; ++i) c.FeedComp[f][i] = r.ReadDouble("FeedComp");
  }
  for (int k = 1; k <= t.NSideLiq; ++k) {
    c.LiqSideTray[k] = r.ReadInt("LiqSideTray");
    c.LiqSideFlow[k] = r.ReadDouble("LiqSideFlow");
  }
  for (int k = 1; k <= t.NSideVap; ++k) {
    c.VapSideTray[k] = r.ReadInt("VapSideTray");
    c.VapSideFlow[k] = r.ReadDouble("VapSideFlow");
  }
  c.CalcFinished = r.ReadInt("CalcFinished") == 1 ? 1 : 0;
}

// Item 19.
void ReadResultItems(io::FieldReader& r, SharedCalcState& t) {
  auto& c = t.Column;
  for (int f = 1; f <= t.NFeed; ++f) c.FeedEnthalpy[f] = r.ReadDouble("FeedEnthalpy");
  for (int j = 1; j <= t.NTray; ++j) {
    c.TrayT[j] = r.ReadDouble("TrayT");
    c.TrayP[j] = r.ReadDouble("TrayP");
    c.TrayL[j] = r.ReadDouble("TrayL");
    c.TrayV[j] = r.ReadDouble("TrayV");
    c.TrayHV[j] = r.ReadDouble("TrayHV");
    c.TrayHL[j] = r.ReadDouble("TrayHL");
    for (int i = 1; i <= t.NC; ++i) {
      c.TrayX[j][i] = r.ReadDouble("TrayX");
      c.TrayY[j][i] = r.ReadDouble("TrayY");
    }
  }
}

std::string Where(const FileReadError& e) {
  return e.file + ":" + std::to_string(e.line) + ":" + std::to_string(e.field) + ": " + e.what();
}

}  // namespace

bool ReadColumnFile(SharedCalcState& s, const std::string& path) {
  auto scratch = MakeSharedCalcState();
  SharedCalcState& t = *scratch;
  t.LanguageFlag = s.LanguageFlag;
  ResetColumnCase(t);
  s.Column.ReadError.clear();
  try {
    io::FieldReader r = io::FieldReader::FromFile(path);
    ReadCaseItems(r, t);
    if (t.Column.CalcFinished == 1) {
      try {
        ReadResultItems(r, t);
      } catch (const FileReadError& e) {
        // the case is whole: keep it, without the results
        t.Column.CalcFinished = 0;
        t.Column.FeedEnthalpy = {};
        t.Column.TrayT = t.Column.TrayP = t.Column.TrayL = t.Column.TrayV = {};
        t.Column.TrayHV = t.Column.TrayHL = {};
        t.Column.TrayX = t.Column.TrayY = {};
        t.Column.PrevNC = t.NC;
        t.Column.PrevNTray = t.NTray;
        RefreshColumnTotals(t);
        CommitCase(s, t);
        s.Column.ReadError = Where(e);
        const std::string where = Where(e);
        ShowMessage(s, s.LanguageFlag == 1 ? "The results in the file are cut short (" + where +
                                                 "); the case was loaded without results."
                                           : "ファイルの計算結果が途中で切れています (" + where +
                                                 ")。計算結果なしで読み込みました。");
        return true;
      }
    }
  } catch (const FileReadError& e) {
    s.Column.ReadFailed = true;
    s.Column.ReadError = Where(e);
    ShowMessage(s, Same("蒸留計算のデータファイルではありません。"));
    return false;
  } catch (const std::exception& e) {
    s.Column.ReadFailed = true;
    s.Column.ReadError = e.what();
    ShowMessage(s, Same("蒸留計算のデータファイルではありません。"));
    return false;
  }
  t.Column.PrevNC = t.NC;
  t.Column.PrevNTray = t.NTray;
  RefreshColumnTotals(t);
  if (t.Column.CalcFinished == 1) t.Column.Products = MakeProductLists(t);
  CommitCase(s, t);
  s.Column.ReadFailed = false;
  return true;
}

std::string ColumnFileText(const SharedCalcState& s) {
  const auto& c = s.Column;
  const auto& p = s.Comp;
  const int n = s.NC;
  io::RecordWriter w;
  w.Str(kMagic).EndLine();
  for (int k = 1; k <= kMaxMemoLines; ++k) w.Str(s.MemoLine[k]).EndLine();
  w.Int(s.NC).Int(s.NTray).Int(s.NFeed).Int(s.NSideLiq).Int(s.NSideVap).Int(s.KValueMethod);
  w.Int(s.EnthalpyMethod).Int(s.Unit.TempUnit).Int(s.Unit.PressUnit).Int(s.Unit.HeatUnit).EndLine();
  w.Int(c.ConvMaxIter[1])
      .Num(c.ConvTolerance[1])
      .Int(c.ConvMaxIter[2])
      .Num(c.ConvTolerance[2])
      .EndLine();
  w.Int(c.ShortCutLightKey)
      .Int(c.ShortCutHeavyKey)
      .Int(c.ShortCutCalcType)
      .Int(c.ShortCutCondenser);
  w.Num(c.ShortCutLightValue[1]).Num(c.ShortCutLightValue[2]).Num(c.ShortCutHeavyValue[1]);
  w.Num(c.ShortCutHeavyValue[2]).Num(c.ShortCutPress).Num(c.ShortCutTemp).EndLine();
  for (int i = 1; i <= n; ++i) w.Str(p.CompName[i]).EndLine();
  for (int i = 1; i <= n; ++i) {
    w.Num(p.CompMW[i]).Num(p.AntoineA[i]).Num(p.AntoineB[i]).Num(p.AntoineC[i]);
    w.Num(p.CompTc[i]).Num(p.CompPc[i]).Num(p.CompVc[i]).Num(p.CompOmega[i]).EndLine();
  }
  for (int i = 1; i <= n; ++i) {
    w.Num(p.HLiqA[i]).Num(p.HLiqB[i]).Num(p.HLiqC[i]);
    w.Num(p.HVapA[i]).Num(p.HVapB[i]).Num(p.HVapC[i]).EndLine();
  }
  for (int i = 1; i <= n; ++i) w.Num(p.CpA[i]).Num(p.CpB[i]).Num(p.CpC[i]).Num(p.CpD[i]).EndLine();
  auto matrix = [&](const CompMatrix& m) {
    for (int i = 1; i <= n; ++i) {
      for (int j = 1; j <= n; ++j) w.Num(m[i][j]);
      w.EndLine();
    }
  };
  matrix(s.Bin.WilsonLambda);
  matrix(s.Bin.NrtlTau);
  w.Num(s.Bin.NrtlAlpha).EndLine();
  matrix(s.Bin.KijMatrix);
  w.Num(c.TopLiquidFlow).Num(c.TopVaporFlow).Num(c.RefluxRatio).Num(c.TopTempGuess);
  w.Num(c.BottomTempGuess).Num(c.TopPress).Num(c.BottomPress).EndLine();
  for (int j = 1; j <= s.NTray; ++j) w.Num(c.TrayPressInput[j]).EndLine();
  for (int f = 1; f <= s.NFeed; ++f) {
    w.Int(c.FeedTray[f]).Num(c.FeedTemp[f]).Num(c.FeedPress[f]).Num(c.FeedVF[f]).Num(c.FeedFlow[f]);
    w.EndLine();
    for (int i = 1; i <= n; ++i) w.Num(c.FeedComp[f][i]);
    w.EndLine();
  }
  for (int k = 1; k <= s.NSideLiq; ++k) w.Int(c.LiqSideTray[k]).Num(c.LiqSideFlow[k]).EndLine();
  for (int k = 1; k <= s.NSideVap; ++k) w.Int(c.VapSideTray[k]).Num(c.VapSideFlow[k]).EndLine();
  w.Int(c.CalcFinished).EndLine();
  if (c.CalcFinished == 1) {
    for (int f = 1; f <= s.NFeed; ++f) w.Num(c.FeedEnthalpy[f]).EndLine();
    for (int j = 1; j <= s.NTray; ++j) {
      w.Num(c.TrayT[j])
          .Num(c.TrayP[j])
          .Num(c.TrayL[j])
          .Num(c.TrayV[j])
          .Num(c.TrayHV[j])
          .Num(c.TrayHL[j]);
      w.EndLine();
      for (int i = 1; i <= n; ++i) w.Num(c.TrayX[j][i]).Num(c.TrayY[j][i]);
      w.EndLine();
    }
  }
  return w.Text();
}

void WriteColumnFile(SharedCalcState& s, const std::string& path) {
  io::SaveFileAtomically(path, ColumnFileText(s));
}

}  // namespace tervale
