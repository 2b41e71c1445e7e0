#include "regress/vle_case.h"

#include <cmath>
#include <cstdlib>
#include <memory>

#include "io/field_reader.h"
#include "io/record_writer.h"
#include "state/errors.h"
#include "state/shared_state.h"
#include "state/units.h"

namespace tervale {
namespace {

// The estimation screen has its own unit lists; the conversions of the suite read the
// common selection, so it is lent to them for the moment of a conversion and given back.
class LentUnits {
 public:
  LentUnits(SharedCalcState& s, int tempUnit, int pressUnit) : s_(s), saved_(s.Unit) {
    s.Unit.TempUnit = tempUnit;
    s.Unit.PressUnit = pressUnit;
  }
  ~LentUnits() { s_.Unit = saved_; }
  LentUnits(const LentUnits&) = delete;
  LentUnits& operator=(const LentUnits&) = delete;

 private:
  SharedCalcState& s_;
  UnitSelection saved_;
};

constexpr BiText kNoPressure{"No Pressure Data", "圧力が未入力です"};
constexpr BiText kNoTemperature{"No Temperature Data", "温度が未入力です"};
constexpr BiText kNoName{"No Component Name", "成分名が未入力です"};
constexpr BiText kNoAntoine{"No Antoine's parameters", "Antoine 定数が未入力です"};
constexpr BiText kXRange{"out of X range(0-1)", "X の値が0以下又は1以上です。"};
constexpr BiText kYRange{"out of Y range(0-1)", "Y の値が0以下又は1以上です。"};
constexpr BiText kNoData{"No VLE Data", "実測気液平衡データが未入力です"};
constexpr BiText kNotVLEFile{"not Vapor-Liquid Equibrium Data",
                             "気液平衡のデータファイルではありません。"};
constexpr std::string_view kNoExample = "未だ例題データを準備していません。";

std::string OverMaxData(const SharedCalcState& s) {
  std::string n = std::to_string(kMaxDataPoints);
  return s.LanguageFlag == 1 ? "Over Max Data (" + n + ")"
                             : "データの最大数" + n + "を越えています。";
}

std::string Shortest(double v) {
  return io::FormatShortest(v);
}

struct ExamplePoint {
  double t, x, y;
};

void FillExample(VLEDataCase& c, const char* name1, const char* name2,
                 std::array<double, 3> antoine1, std::array<double, 3> antoine2,
                 std::string_view memo1, std::string_view memo2, const ExamplePoint* points,
                 int n) {
  c = VLEDataCase{};
  c.CalcType = 1;
  c.ObjectiveFunc = 1;  // the first objective option
  c.TPType = 0;
  c.VLETempUnit = 1;
  c.VLEPressUnit = 3;
  c.VLEPressure = 760;
  c.NrtlAlpha = 0.4;
  c.NrtlTau12 = c.NrtlTau21 = 0;
  c.MemoLine[1] = memo1;
  c.MemoLine[2] = memo2;
  c.ComponentName[1] = name1;
  c.ComponentName[2] = name2;
  c.AntoineA[1] = antoine1[0];
  c.AntoineB[1] = antoine1[1];
  c.AntoineC[1] = antoine1[2];
  c.AntoineA[2] = antoine2[0];
  c.AntoineB[2] = antoine2[1];
  c.AntoineC[2] = antoine2[2];
  c.NVLEData = n;
  for (int i = 1; i <= n; ++i) {
    c.DataTemp[i] = points[i - 1].t;
    c.DataX[i] = points[i - 1].x;
    c.DataY[i] = points[i - 1].y;
  }
}

constexpr ExamplePoint kMethanolWater[] = {
    {96.4, 0.02, 0.134}, {91.2, 0.06, 0.304}, {87.7, 0.1, 0.418}, {81.7, 0.2, 0.579},
    {78.0, 0.3, 0.665},  {75.3, 0.4, 0.729},  {73.1, 0.5, 0.779}, {71.2, 0.6, 0.825},
    {69.3, 0.7, 0.87},   {67.5, 0.8, 0.915},  {66.0, 0.9, 0.958}, {65.0, 0.95, 0.975}};

constexpr ExamplePoint kTbaWater[] = {
    {86.5, 0.019, 0.404},  {83.8, 0.027, 0.463}, {82.0, 0.043, 0.484},  {81.7, 0.063, 0.489},
    {81.4, 0.119, 0.499},  {81.1, 0.167, 0.507}, {81.0, 0.234, 0.519},  {80.9, 0.316, 0.534},
    {80.65, 0.369, 0.544}, {80.5, 0.388, 0.546}, {80.3, 0.467, 0.57},   {80.0, 0.529, 0.589},
    {80.0, 0.609, 0.622},  {80.0, 0.638, 0.641}, {80.1, 0.671, 0.696},  {80.2, 0.755, 0.716},
    {80.3, 0.828, 0.785},  {80.9, 0.874, 0.833}, {81.25, 0.912, 0.877}, {81.8, 0.941, 0.905}};

}  // namespace

bool IsBlankField(std::string_view text) {
  for (char ch : text)
    if (ch != ' ' && ch != '\t' && ch != '\r' && ch != '\n') return false;
  return true;
}

double ReadNumberLeniently(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  size_t start = i;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  size_t digits = 0;
  while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i, ++digits;
  if (i < text.size() && text[i] == '.') {
    ++i;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i, ++digits;
  }
  if (digits == 0) return 0;
  size_t end = i;
  if (i < text.size() && (text[i] == 'E' || text[i] == 'e' || text[i] == 'D' || text[i] == 'd')) {
    size_t j = i + 1;
    if (j < text.size() && (text[j] == '+' || text[j] == '-')) ++j;
    size_t expDigits = 0;
    while (j < text.size() && text[j] >= '0' && text[j] <= '9') ++j, ++expDigits;
    if (expDigits > 0) end = j;
  }
  std::string number(text.substr(start, end - start));
  for (char& ch : number)
    if (ch == 'D' || ch == 'd') ch = 'E';
  double v = std::strtod(number.c_str(), nullptr);
  return std::isfinite(v) ? v : 0;
}

double VLEVapourPressure(const VLEDataCase& c, int component, double t) {
  return std::pow(10.0,
                  c.AntoineA[component] - c.AntoineB[component] / (t + c.AntoineC[component]));
}

double VLEPressureToCaseUnit(SharedCalcState& s, double mmHg) {
  LentUnits units(s, s.VLE.VLETempUnit, s.VLE.VLEPressUnit);
  return ConvPressFromBase(s, mmHg * kVLEMPaPerMmHg);
}

double VLETemperatureToCaseUnit(SharedCalcState& s, double t) {
  LentUnits units(s, s.VLE.VLETempUnit, s.VLE.VLEPressUnit);
  return ConvTempFromBase(s, t);
}

void InitializeVLECase(SharedCalcState& s) {
  s.VLE = VLEDataCase{};
}

std::string FormatVLEDataFile(const VLEDataCase& c) {
  io::RecordWriter w;
  w.Str(kVLEFileMagic).EndLine();
  for (int i = 1; i <= kMaxMemoLines; ++i) w.Str(c.MemoLine[i]).EndLine();
  w.Str(c.ComponentName[1]).EndLine();
  w.Str(c.ComponentName[2]).EndLine();
  for (int k = 1; k <= 2; ++k) w.Num(c.AntoineA[k]).Num(c.AntoineB[k]).Num(c.AntoineC[k]).EndLine();
  w.Int(c.TPType).Int(c.VLETempUnit).Int(c.VLEPressUnit).Num(c.VLETemperature).Num(c.VLEPressure);
  w.Int(c.NVLEData).Int(c.CalcType).Int(c.ObjectiveFunc).EndLine();
  for (int i = 1; i <= c.NVLEData; ++i)
    w.Num(c.DataTemp[i]).Num(c.DataPress[i]).Num(c.DataX[i]).Num(c.DataY[i]).EndLine();
  w.Num(c.WilsonLambda12).Num(c.WilsonLambda21).Num(c.NrtlTau12).Num(c.NrtlTau21);
  w.Num(c.NrtlAlpha).EndLine();
  return w.Text();
}

void SaveVLEDataFile(const SharedCalcState& s, const std::filesystem::path& path) {
  io::SaveFileAtomically(path, FormatVLEDataFile(s.VLE));
}

bool ReadVLEDataFile(SharedCalcState& s, const std::filesystem::path& path) {
  io::FieldReader r = io::FieldReader::FromFile(path);
  if (r.AtEnd() || r.ReadString("first line") != kVLEFileMagic) {
    ShowMessage(s, kNotVLEFile);
    return false;
  }
  auto c = std::make_unique<VLEDataCase>();
  try {
    for (int i = 1; i <= kMaxMemoLines; ++i) c->MemoLine[i] = r.ReadString("memo line");
    c->ComponentName[1] = r.ReadString("name of component 1");
    c->ComponentName[2] = r.ReadString("name of component 2");
    for (int k = 1; k <= 2; ++k) {
      c->AntoineA[k] = r.ReadDouble("Antoine A");
      c->AntoineB[k] = r.ReadDouble("Antoine B");
      c->AntoineC[k] = r.ReadDouble("Antoine C");
    }
    c->TPType = r.ReadInt("TPType");
    c->VLETempUnit = r.ReadInt("VLETempUnit");
    c->VLEPressUnit = r.ReadInt("VLEPressUnit");
    c->VLETemperature = r.ReadDouble("VLETemperature");
    c->VLEPressure = r.ReadDouble("VLEPressure");
    c->NVLEData = r.ReadCount("NVLEData", 0, kMaxDataPoints);
    c->CalcType = r.ReadInt("CalcType");
    c->ObjectiveFunc = r.ReadInt("ObjectiveFunc");
    for (int i = 1; i <= c->NVLEData; ++i) {
      c->DataTemp[i] = r.ReadDouble("DataTemp");
      c->DataPress[i] = r.ReadDouble("DataPress");
      c->DataX[i] = r.ReadDouble("DataX");
      c->DataY[i] = r.ReadDouble("DataY");
    }
    c->WilsonLambda12 = r.ReadDouble("WilsonLambda12");
    c->WilsonLambda21 = r.ReadDouble("WilsonLambda21");
    c->NrtlTau12 = r.ReadDouble("NrtlTau12");
    c->NrtlTau21 = r.ReadDouble("NrtlTau21");
    c->NrtlAlpha = r.ReadDouble("NrtlAlpha");
  } catch (const FileReadError&) {
    // The old program had cleared the case before reading: nothing half-read stays.
    InitializeVLECase(s);
    throw;
  }
  s.VLE = *c;
  s.DataFileName = path.string();
  return true;
}

bool ReadVLEDataCommand(SharedCalcState& s, const std::filesystem::path& path) {
  const std::string name = path.filename().string();
  const std::string en = "Read [ " + name + " ]";
  const std::string ja = "[ " + name + " ] を読み込みます？";
  if (AskUser(s, BiText{en, ja}, Buttons::YesNoCancel) != Answer::Yes) return false;
  return ReadVLEDataFile(s, path);
}

bool SaveVLEDataCommand(SharedCalcState& s, const std::filesystem::path& path) {
  const std::string name = path.filename().string();
  const std::string en = "Save [ " + name + " ]";
  const std::string ja = "[ " + name + " ] を保存しますか？";
  if (AskUser(s, BiText{en, ja}, Buttons::YesNoCancel) != Answer::Yes) return false;
  std::error_code ec;
  if (std::filesystem::exists(path, ec)) {
    const std::string en2 = "exsist [ " + name + " ], over-write";
    const std::string ja2 = "[ " + name + " ] が存在します。上書きしますか？";
    if (AskUser(s, BiText{en2, ja2}, Buttons::YesNoCancel) != Answer::Yes) return false;
  }
  SaveVLEDataFile(s, path);
  s.DataFileName = path.string();
  return true;
}

bool LoadVLEExample(SharedCalcState& s, int number) {
  switch (number) {
    case 1:
      FillExample(s.VLE, "Methanol", "Water", {7.8786, 1473.11, 230.0}, {8.07131, 1730.63, 233.426},
                  "Methanol(1) - Water(2), 760 mmHg",
                  "Wilson定数の文献値 Λ12 = 0.43045, Λ21 = 0.94934", kMethanolWater, 12);
      return true;
    case 2:
      FillExample(s.VLE, "ＴＢＡ", "ＷＡＴＥＲ", {7.60203, 1285.067, 189.318},
                  {8.10765, 1750.286, 235.0}, "TBA(1) - Water(2), 760 mmHg",
                  "Wilson定数の文献値 Λ12 = 0.022706, Λ21 = 0.76689", kTbaWater, 20);
      return true;
    default:
      ShowMessage(s, Same(kNoExample));
      return false;
  }
}

VLEScreenFields DisplayVLECase(SharedCalcState& s) {
  const VLEDataCase& c = s.VLE;
  VLEScreenFields f;
  LentUnits units(s, c.VLETempUnit, c.VLEPressUnit);
  auto pressOut = [&](double mmHg) { return ConvPressFromBase(s, mmHg * kVLEMPaPerMmHg); };
  auto tempOut = [&](double t) { return ConvTempFromBase(s, t); };
  f.TPType = c.TPType;
  f.TempUnitIndex = c.VLETempUnit - 1;
  f.PressUnitIndex = c.VLEPressUnit - 1;
  f.PressText = Shortest(pressOut(c.VLEPressure));
  f.TempText = Shortest(tempOut(c.VLETemperature));
  for (int k = 1; k <= 2; ++k) {
    f.Name[k] = c.ComponentName[k];
    f.AText[k] = Shortest(c.AntoineA[k]);
    f.BText[k] = Shortest(c.AntoineB[k]);
    f.CText[k] = Shortest(c.AntoineC[k]);
  }
  f.CalcTypeIndex = (c.CalcType >= 1 && c.CalcType <= 4) ? c.CalcType - 1 : 0;
  f.ObjectiveIndex = (c.ObjectiveFunc >= 1 && c.ObjectiveFunc <= 5) ? c.ObjectiveFunc - 1 : 0;
  for (int i = 1; i <= c.NVLEData; ++i) {
    double first = c.TPType == 0 ? tempOut(c.DataTemp[i]) : pressOut(c.DataPress[i]);
    f.DataRows.push_back({Shortest(first), Shortest(c.DataX[i]), Shortest(c.DataY[i])});
  }
  if (IsWilsonType(c.CalcType)) {
    if (c.WilsonLambda12 != 0 || c.WilsonLambda21 != 0) {
      f.Para12Text = Shortest(c.WilsonLambda12);
      f.Para21Text = Shortest(c.WilsonLambda21);
    }
  } else {
    f.Para12Text = Shortest(c.NrtlTau12);
    f.Para21Text = Shortest(c.NrtlTau21);
  }
  f.AlphaText = Shortest(c.NrtlAlpha);
  return f;
}

bool RunVLECalcDriver(SharedCalcState& s, const VLEScreenFields& f) {
  auto work = std::make_unique<VLEDataCase>(s.VLE);
  VLEDataCase& c = *work;
  auto refuse = [&](const BiText& text) {
    ShowMessage(s, text);
    return false;
  };

  // 1. units
  c.VLETempUnit = f.TempUnitIndex + 1;
  c.VLEPressUnit = f.PressUnitIndex + 1;
  c.TPType = f.TPType;
  LentUnits units(s, c.VLETempUnit, c.VLEPressUnit);
  auto pressIn = [&](std::string_view text) {
    return ConvPressToBase(s, ReadNumberLeniently(text)) / kVLEMPaPerMmHg;
  };
  auto tempIn = [&](std::string_view text) { return ConvTempToBase(s, ReadNumberLeniently(text)); };

  // 2. the fixed condition
  if (c.TPType == 0) {
    if (IsBlankField(f.PressText)) return refuse(kNoPressure);
    c.VLEPressure = pressIn(f.PressText);
  } else {
    if (IsBlankField(f.TempText)) return refuse(kNoTemperature);
    c.VLETemperature = tempIn(f.TempText);
  }

  // 3. names and Antoine constants; a constant of exactly 0 counts as not entered
  for (int k = 1; k <= 2; ++k) {
    if (IsBlankField(f.Name[k])) return refuse(kNoName);
    c.ComponentName[k] = f.Name[k];
    c.AntoineA[k] = ReadNumberLeniently(f.AText[k]);
    c.AntoineB[k] = ReadNumberLeniently(f.BText[k]);
    c.AntoineC[k] = ReadNumberLeniently(f.CText[k]);
    if (c.AntoineA[k] == 0 || c.AntoineB[k] == 0 || c.AntoineC[k] == 0) return refuse(kNoAntoine);
  }

  // 4. calculation and objective
  c.CalcType = f.CalcTypeIndex + 1;
  c.ObjectiveFunc = f.ObjectiveIndex + 1;

  // 5. the initial temperature, kept for the screen only
  c.InitialTemp = tempIn(f.TempInitialText);

  // 6. measured data
  if (IsEstimateType(c.CalcType)) {
    c.NVLEData = 0;
    for (const auto& row : f.DataRows) {
      if (IsBlankField(row[0])) break;
      if (c.NVLEData >= kMaxDataPoints) {
        ShowMessage(s, OverMaxData(s));
        return false;
      }
      int i = ++c.NVLEData;
      if (c.TPType == 0) {
        c.DataTemp[i] = tempIn(row[0]);
      } else {
        c.DataPress[i] = pressIn(row[0]);
      }
      c.DataX[i] = ReadNumberLeniently(row[1]);
      if (!(c.DataX[i] > 0 && c.DataX[i] < 1)) return refuse(kXRange);
      c.DataY[i] = ReadNumberLeniently(row[2]);
      if (!(c.DataY[i] > 0 && c.DataY[i] < 1)) return refuse(kYRange);
    }
    if (c.NVLEData == 0) return refuse(kNoData);
  }

  // 7. parameters, blank fields taking the defaults
  if (IsWilsonType(c.CalcType)) {
    if (IsBlankField(f.Para12Text)) {
      c.WilsonLambda12 = c.WilsonLambda21 = 1;
    } else {
      c.WilsonLambda12 = ReadNumberLeniently(f.Para12Text);
      c.WilsonLambda21 = ReadNumberLeniently(f.Para21Text);
    }
  } else {
    if (IsBlankField(f.Para12Text)) {
      c.NrtlTau12 = c.NrtlTau21 = 0;
    } else {
      c.NrtlTau12 = ReadNumberLeniently(f.Para12Text);
      c.NrtlTau21 = ReadNumberLeniently(f.Para21Text);
    }
    c.NrtlAlpha = IsBlankField(f.AlphaText) ? 0.4 : ReadNumberLeniently(f.AlphaText);
  }

  // 8. measured activity coefficients
  if (IsEstimateType(c.CalcType)) {
    const int n = c.NVLEData;
    if (c.TPType == 0) {
      double sum = 0;
      for (int i = 1; i <= n; ++i) sum += c.DataTemp[i];
      const double mean = sum / n;
      for (int i = 1; i <= n; ++i) c.CalcTemp[i] = mean;
      c.InitialTemp = mean;
      const double p = c.VLEPressure;
      for (int i = 1; i <= n; ++i) {
        const double x = c.DataX[i], y = c.DataY[i], t = c.DataTemp[i];
        c.GammaExp[i][1] = p * y / (VLEVapourPressure(c, 1, t) * x);
        c.GammaExp[i][2] = (1 - y) * p / (VLEVapourPressure(c, 2, t) * (1 - x));
      }
    } else {
      const double t = c.VLETemperature;
      const double p1 = VLEVapourPressure(c, 1, t), p2 = VLEVapourPressure(c, 2, t);
      for (int i = 1; i <= n; ++i) {
        const double x = c.DataX[i], y = c.DataY[i], p = c.DataPress[i];
        c.GammaExp[i][1] = y * p / (p1 * x);
        c.GammaExp[i][2] = (1 - y) * p / (p2 * (1 - x));
      }
    }
  } else {
    // 9. the calculate types take the initial temperature as a plain number
    c.InitialTemp = ReadNumberLeniently(f.TempInitialText);
  }

  // 10. the graph window starts whole
  c.GraphXMin = 0;
  c.GraphXMax = 1;
  c.GraphYMin = 0;
  c.GraphYMax = 1;
  s.VLE = c;
  return true;
}

}  // namespace tervale
