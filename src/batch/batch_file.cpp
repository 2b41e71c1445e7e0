#include <filesystem>

#include "batch/batch_data.h"
#include "batch/batch_run_files.h"
#include "io/field_reader.h"
#include "io/matrix_records.h"
#include "io/record_writer.h"
#include "state/shared_state.h"

namespace tervale {

namespace {

// Matrix rows 1..NC-1 run on in one physical line; row NC has one value a line, the first of
// them closing the long line.
void WriteMatrix(io::RecordWriter& w, const CompMatrix& m, int nc) {
  for (int i = 1; i <= nc; ++i) {
    for (int j = 1; j <= nc; ++j) {
      w.Num(m[i][j]);
      if (i == nc) w.EndLine();
    }
  }
}

}  // namespace

std::string FormatBatchCase(SharedCalcState& s) {
  const auto& b = s.Batch;
  const auto& c = s.Comp;
  const int nc = s.NC;
  const int nt = s.NTray;
  io::RecordWriter w;
  w.Str(kBatchFileMagic).EndLine();
  for (int i = 1; i <= kMaxMemoLines; ++i) w.Str(s.MemoLine[i]).EndLine();
  w.Int(nc).Int(nt).Int(b.BatchOpeType).Int(b.HoldupBasis).Int(s.KValueMethod);
  w.Int(s.EnthalpyMethod).Int(b.ReservedLong).Int(s.Unit.TempUnit).Int(s.Unit.PressUnit);
  w.Int(s.Unit.HeatUnit).Int(b.TankChangeCount).EndLine();
  w.Num(b.TopPress).Num(b.BottomPress).Num(b.InitialTemp).Num(b.TRefluxConvLimit);
  w.Num(b.DiffTime).Num(b.MaxOpeTime).Num(b.TRefluxQReb).Num(b.SaveInterval).EndLine();
  for (int r = 1; r <= b.TankChangeCount + 1 && r <= kMaxTankRows; ++r) {
    w.Int(b.TankChangeKey[r]).Num(b.TankChangeLimit[r]);
    w.Num(b.TankOperation[r][kTankReflux]).Num(b.TankOperation[r][kTankDistillate]);
    w.Num(b.TankOperation[r][kTankDuty]).EndLine();
  }
  for (int i = 1; i <= nt; ++i) {
    w.Num(b.TrayPressInput[i]).Num(b.TrayHoldupInput[i][0]).Num(b.TrayHoldupInput[i][1]);
    w.Num(b.TrayHoldupInput[i][2]).Num(b.TrayHeat[i]).EndLine();
  }
  for (int j = 1; j <= nc; ++j) w.Str(c.CompName[j]).EndLine();
  for (int j = 1; j <= nc; ++j) {
    w.Num(c.CompMW[j]).Num(c.AntoineA[j]).Num(c.AntoineB[j]).Num(c.AntoineC[j]);
    w.Num(c.CompTc[j]).Num(c.CompPc[j]).Num(c.CompPc[j]).Num(c.CompVc[j]).Num(c.CompOmega[j]);
    w.EndLine();
  }
  for (int j = 1; j <= nc; ++j) {
    w.Num(c.HVapA[j]).Num(c.HVapB[j]).Num(c.HVapC[j]);
    w.Num(c.HLiqA[j]).Num(c.HLiqB[j]).Num(c.HLiqC[j]).EndLine();
  }
  for (int j = 1; j <= nc; ++j) w.Num(c.CpA[j]).Num(c.CpB[j]).Num(c.CpC[j]).Num(c.CpD[j]).EndLine();
  WriteMatrix(w, s.Bin.WilsonLambda, nc);
  WriteMatrix(w, s.Bin.NrtlTau, nc);
  w.Num(s.Bin.NrtlAlpha).EndLine();
  WriteMatrix(w, s.Bin.KijMatrix, nc);
  w.Num(b.TotalFeed).EndLine();
  for (int j = 1; j <= nc; ++j) w.Num(b.FeedComp[j]).EndLine();
  return w.Text();
}

void WriteBatchCase(SharedCalcState& s, const std::filesystem::path& path) {
  io::SaveFileAtomically(path, FormatBatchCase(s));
  s.DataFileName = path.string();
}

bool ReadBatchCase(SharedCalcState& s, const std::filesystem::path& path, bool readState) {
  io::FieldReader r = io::FieldReader::FromFile(path);
  if (r.ReadString("head line") != kBatchFileMagic) {
    ShowMessage(
        s, BiText{"not Batch Distillation Data", "バッチ蒸留計算のデータファイルではありません"});
    return false;
  }
  // Everything goes to a scratch copy first; the state changes only when the whole file read.
  auto scratch = std::make_unique<SharedCalcState>(s);
  SharedCalcState& t = *scratch;
  auto& b = t.Batch;
  auto& c = t.Comp;
  for (int i = 1; i <= kMaxMemoLines; ++i) t.MemoLine[i] = r.ReadString("MemoLine");
  const int nc = r.ReadCount("NC", 0, kMaxComponents);
  const int nt = r.ReadCount("NTray", 0, kMaxTrays);
  t.NC = nc;
  t.NTray = nt;
  b.BatchOpeType = r.ReadCount("BatchOpeType", 1, 3);
  b.HoldupBasis = r.ReadCount("HoldupBasis", 1, 3);
  t.KValueMethod = r.ReadInt("KValueMethod");
  t.EnthalpyMethod = r.ReadInt("EnthalpyMethod");
  b.ReservedLong = r.ReadInt("reserved");
  t.Unit.TempUnit = r.ReadInt("TempUnit");
  t.Unit.PressUnit = r.ReadInt("PressUnit");
  t.Unit.HeatUnit = r.ReadInt("HeatUnit");
  // The tank table holds five rows, that is four changes at most.
  b.TankChangeCount = r.ReadCount("TankChangeCount", 0, kMaxTankRows - 1);
  b.NCAtRead = nc;
  b.NTrayAtRead = nt;
  b.TopPress = r.ReadDouble("TopPress");
  b.BottomPress = r.ReadDouble("BottomPress");
  b.InitialTemp = r.ReadDouble("InitialTemp");
  b.TRefluxConvLimit = r.ReadDouble("TRefluxConvLimit");
  b.DiffTime = r.ReadDouble("DiffTime");
  b.MaxOpeTime = r.ReadDouble("MaxOpeTime");
  b.TRefluxQReb = r.ReadDouble("TRefluxQReb");
  b.SaveInterval = r.ReadDouble("SaveInterval");
  for (int k = 1; k <= b.TankChangeCount + 1; ++k) {
    b.TankChangeKey[k] = r.ReadInt("TankChangeKey");
    b.TankChangeLimit[k] = r.ReadDouble("TankChangeLimit");
    for (int m = 0; m < 3; ++m) b.TankOperation[k][m] = r.ReadDouble("TankOperation");
  }
  for (int i = 1; i <= nt; ++i) {
    b.TrayPressInput[i] = r.ReadDouble("TrayPressInput");
    for (int m = 0; m < 3; ++m) b.TrayHoldupInput[i][m] = r.ReadDouble("TrayHoldupInput");
    b.TrayHeat[i] = r.ReadDouble("TrayHeat");
  }
  for (int j = 1; j <= nc; ++j) c.CompName[j] = r.ReadString("CompName");
  for (int j = 1; j <= nc; ++j) {
    c.CompMW[j] = r.ReadDouble("CompMW");
    c.AntoineA[j] = r.ReadDouble("AntoineA");
    c.AntoineB[j] = r.ReadDouble("AntoineB");
    c.AntoineC[j] = r.ReadDouble("AntoineC");
    c.CompTc[j] = r.ReadDouble("CompTc");
    c.CompPc[j] = r.ReadDouble("CompPc");
    c.CompPc[j] = r.ReadDouble("CompPc");  // written twice; the second stands
    c.CompVc[j] = r.ReadDouble("CompVc");
    c.CompOmega[j] = r.ReadDouble("CompOmega");
  }
  for (int j = 1; j <= nc; ++j) {
    c.HVapA[j] = r.ReadDouble("HVapA");
    c.HVapB[j] = r.ReadDouble("HVapB");
    c.HVapC[j] = r.ReadDouble("HVapC");
    c.HLiqA[j] = r.ReadDouble("HLiqA");
    c.HLiqB[j] = r.ReadDouble("HLiqB");
    c.HLiqC[j] = r.ReadDouble("HLiqC");
  }
  for (int j = 1; j <= nc; ++j) {
    c.CpA[j] = r.ReadDouble("CpA");
    c.CpB[j] = r.ReadDouble("CpB");
    c.CpC[j] = r.ReadDouble("CpC");
    c.CpD[j] = r.ReadDouble("CpD");
  }
  io::ReadMatrixRows(r, t.Bin.WilsonLambda, nc, "WilsonLambda");
  io::ReadMatrixRows(r, t.Bin.NrtlTau, nc, "NrtlTau");
  t.Bin.NrtlAlpha = r.ReadDouble("NrtlAlpha");
  io::ReadMatrixRows(r, t.Bin.KijMatrix, nc, "KijMatrix");
  b.TotalFeed = r.ReadDouble("TotalFeed");
  for (int j = 1; j <= nc; ++j) b.FeedComp[j] = r.ReadDouble("FeedComp");
  b.ContinueFromTReflux = 0;
  b.ContinueTime = 0;
  if (readState) {
    b.ContinueTime = r.ReadDouble("CalcTime");
    for (int i = 1; i <= nt; ++i) {
      for (int j = 1; j <= nc; ++j) {
        b.LiqComp[i][j] = r.ReadDouble("x");
        b.VapComp[i][j] = r.ReadDouble("y");
      }
      b.TrayTemp[i] = r.ReadDouble("TrayTemp");
      b.VaporFlow[i] = r.ReadDouble("VaporFlow");
      b.LiquidFlow[i] = r.ReadDouble("LiquidFlow");
      b.VapEnthalpy[i] = r.ReadDouble("VapEnthalpy");
      b.LiqEnthalpy[i] = r.ReadDouble("LiqEnthalpy");
      b.TrayHeat[i] = r.ReadDouble("TrayHeat");
      b.Holdup[i] = r.ReadDouble("Holdup");
      b.HoldupChange[i] = r.ReadDouble("HoldupChange");
      b.LiqEnthalpyChange[i] = r.ReadDouble("LiqEnthalpyChange");
      b.HeatTotal[i] = r.ReadDouble("HeatTotal");
    }
    for (int i = 1; i <= nt; ++i)
      for (int j = 1; j <= nc; ++j) b.RkgCarry[j][i] = r.ReadDouble("RkgCarry");
  }
  t.DataFileName = path.string();
  s = std::move(t);
  return true;
}

bool ReadBatchContinuation(SharedCalcState& s) {
  std::filesystem::path path = BatchRunFilePath(s, "_2.dat");
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) {
    ShowMessage(s, BiText{"not exist Total Reflux Data", "全還流収束値ファイルがありません"});
    return false;
  }
  if (!ReadBatchCase(s, path, true)) return false;
  s.Batch.ContinueFromTReflux = 1;
  s.Batch.ResultsExist = true;
  return true;
}

}  // namespace tervale
