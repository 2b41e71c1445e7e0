#include "flash/flash_program.h"

#include <cmath>

#include "flash/flash_engine.h"
#include "io/display_format.h"
#include "io/field_reader.h"
#include "io/record_writer.h"
#include "state/errors.h"
#include "state/shared_state.h"
#include "state/units.h"
#include "thermo/enthalpy.h"
#include "thermo/equilibrium.h"

namespace tervale {
namespace {

constexpr BiText kTitle{"Flash Calculation", "ＦＬＡＳＨ計算"};
constexpr BiText kNotFlashFile = Same("Flash計算のデータファイルではありません");
constexpr BiText kLimitsReversed = Same("温度の上下限が逆転しています。 TL=");

// Formats of the flash screen.
constexpr std::string_view kFmtTempPress = " ###0.000";
constexpr std::string_view kFmtFraction = "#0.#00000";
constexpr std::string_view kFmtK = "#.#00000E+#0";
constexpr std::string_view kFmtVF = "##.#000";
constexpr std::string_view kFmtEnthalpy = "#.#0000E+#0";
constexpr std::string_view kFmtLimit = " ####.##";
constexpr std::string_view kFmtPointT = "####.#0";
constexpr std::string_view kFmtPointVF = "##.###0";

// A number shown in a text box and read back: what the next reader of the box sees.
double ThroughTextBox(double value, std::string_view pattern) {
  double read = 0;
  if (!io::ParseNumber(io::FormatNumber(value, pattern), read)) return 0;  // no number reads 0
  return read;
}

void NormaliseInto(int n, const Composition& a, Composition& out) {
  double sum = 0;
  for (int i = 1; i <= n; ++i) sum += a[i];
  for (int i = 1; i <= n; ++i) out[i] = a[i] / sum;
}

}  // namespace

void ResetFlashCase(SharedCalcState& s) {
  s.BatchMode = 2;
  s.TitlePrefix = std::string(Pick(s, kTitle));
  ResetComponentsAndMatrices(s);
  s.NC = 0;
  for (auto& line : s.MemoLine) line.clear();
  s.Flash = FlashCase{};
  s.Bin.NrtlAlpha = 0.4;
  s.Unit.TempUnit = 1;
  s.Unit.PressUnit = 3;
  s.Unit.HeatUnit = 2;
  s.KValueMethod = 1;
  s.EnthalpyMethod = 1;
  s.Flash.CalcType = 0;
}

void LoadFlashExample(SharedCalcState& s, int number) {
  auto& c = s.Comp;
  auto& f = s.Flash;
  auto antoine = [&](int i, double a, double b, double cc) {
    c.AntoineA[i] = a;
    c.AntoineB[i] = b;
    c.AntoineC[i] = cc;
  };
  if (number == 1) {
    s.MemoLine[1] = "ＦＬＡＳＨ計算プログラム";
    s.MemoLine[2] = "   例題データ－１";
    s.MemoLine[3] = "    Methanol - Ethanol - Water - Propanol 系";
    s.NC = 4;
    c.CompName[1] = "Methanol";
    c.CompName[2] = "Ethanol";
    c.CompName[3] = "Water";
    c.CompName[4] = "1-Propanol";
    c.CompMW[1] = 32.04;
    c.CompMW[2] = 46.07;
    c.CompMW[3] = 18.015;
    c.CompMW[4] = 60.9;
    antoine(1, 7.8786, 1473.11, 230.0);
    antoine(2, 8.0449, 1554.3, 222.65);
    antoine(3, 8.07131, 1730.63, 233.43);
    antoine(4, 7.9973, 1569.7, 209.5);
    s.KValueMethod = 2;
    s.EnthalpyMethod = 0;
    s.Unit.TempUnit = 1;
    s.Unit.PressUnit = 3;
    s.Unit.HeatUnit = 2;
    f.FlashTemp = 80;
    f.FlashPress = 760;
    f.FeedZ[1] = 0.12;
    f.FeedZ[2] = 0.01;
    f.FeedZ[3] = 0.85;
    f.FeedZ[4] = 0.02;
    s.Bin.NrtlAlpha = 0.4;
    for (int i = 1; i <= 4; ++i)
      for (int j = 1; j <= 4; ++j) s.Bin.WilsonLambda[i][j] = 1.0;
    s.Bin.WilsonLambda[1][3] = 0.382;
    s.Bin.WilsonLambda[2][3] = 0.999;
    s.Bin.WilsonLambda[3][2] = 0.826;
    s.Bin.WilsonLambda[3][4] = 0.001;
    s.Bin.WilsonLambda[4][3] = 0.67;
    c.HVapA[1] = 62.453, c.HVapB[1] = 0.39014, c.HVapC[1] = 0;
    c.HVapA[2] = 64.272, c.HVapB[2] = 0.41893, c.HVapC[2] = 0;
    c.HVapA[3] = 119.87, c.HVapB[3] = 0.46615, c.HVapC[3] = 0;
    c.HVapA[4] = 44.672, c.HVapB[4] = 0.3663, c.HVapC[4] = 0;
    c.HLiqA[1] = -253.37, c.HLiqB[1] = 0.81773, c.HLiqC[1] = 0;
    c.HLiqA[2] = -174.17, c.HLiqB[2] = 0.77057, c.HLiqC[2] = 0;
    // Water: the example assigns HVapB a second time where HLiqB was meant, so HLiqB keeps
    // the value it had.
    c.HLiqA[3] = -485.52, c.HVapB[3] = 0.46615, c.HLiqC[3] = 0;
    c.HLiqA[4] = -147.14999, c.HLiqB[4] = 0.6577, c.HLiqC[4] = 0;
    return;
  }
  if (number == 2) {
    s.MemoLine[2] = "   例題データ－２";
    s.MemoLine[3] = "    Ethane - Propane - n-Butane 系";
    s.NC = 3;
    c.CompName[1] = "Ethane";
    c.CompName[2] = "Propane";
    c.CompName[3] = "n-Butane";
    const double mw[] = {0, 30.07, 44.094, 58.124};
    const double tc[] = {0, 305.4, 369.8, 425.2};
    const double pc[] = {0, 48.8, 42.5, 38};
    const double vc[] = {0, 148.3, 203, 255};
    const double w[] = {0, 0.099, 0.153, 0.199};
    for (int i = 1; i <= 3; ++i) {
      c.CompMW[i] = mw[i];
      c.CompTc[i] = tc[i];
      c.CompPc[i] = pc[i];
      c.CompVc[i] = vc[i];
      c.CompOmega[i] = w[i];
    }
    antoine(1, 6.80266, 656.401, 255.99);
    antoine(2, 6.82971, 813.199, 247.99);
    antoine(3, 6.80896, 935.861, 238.73);
    s.KValueMethod = 4;
    s.EnthalpyMethod = 2;
    s.Unit.TempUnit = 1;
    s.Unit.PressUnit = 5;
    s.Unit.HeatUnit = 2;
    f.FlashTemp = -10;
    f.FlashPress = 10;
    f.FeedZ[1] = 0.2;
    f.FeedZ[2] = 0.5;
    f.FeedZ[3] = 0.3;
    for (int i = 1; i <= 3; ++i)
      for (int j = 1; j <= 3; ++j) s.Bin.KijMatrix[i][j] = (i == j) ? 1.0 : 0.0;
    const double cp[4][6] = {{0, 0, 0, 0, 0, 0},
                             {0, 1.292, 0.04254, -1.657E-05, 2.081E-09, 0},
                             {0, -1.009, 0.07315, -3.789E-05, 7.678E-09, 0},
                             {0, 2.266, 0.07913, -2.647E-05, -6.74E-10, 0}};
    for (int i = 1; i <= 3; ++i) {
      f.FlashCp1[i] = cp[i][0];
      f.FlashCp2[i] = cp[i][1];
      f.FlashCp3[i] = cp[i][2];
      f.FlashCp4[i] = cp[i][3];
      f.FlashCp5[i] = cp[i][4];
      f.FlashCp6[i] = cp[i][5];
    }
  }
}

std::string_view FlashCalcTypeCaption(int calcType) {
  static constexpr std::string_view kCaptions[] = {"沸点計算(圧力指定)",
                                                   "露点計算(圧力指定)",
                                                   "沸点計算(温度指定)",
                                                   "露点計算(温度指定)",
                                                   "フラッシュ計算(温度、圧力指定)",
                                                   "凝縮曲線(圧力指定)"};
  return (calcType >= 0 && calcType <= 5) ? kCaptions[calcType] : std::string_view{};
}

std::string FlashReadQuestion(std::string_view fileName) {
  return "[ " + std::string(fileName) + " ] を読み込みます？";
}
std::string FlashSaveQuestion(std::string_view fileName) {
  return "[ " + std::string(fileName) + " ] を保存しますか？";
}
std::string FlashOverwriteQuestion(std::string_view fileName) {
  return "[ " + std::string(fileName) + " ] が存在します。上書きしますか？";
}

// ---- the flash data file ----

std::string FlashFileText(const SharedCalcState& s) {
  const int n = s.NC;
  const auto& c = s.Comp;
  const auto& f = s.Flash;
  io::RecordWriter w;
  w.Str(kFlashFileMagic).EndLine();
  for (int i = 1; i <= kMaxMemoLines; ++i) w.Str(s.MemoLine[i]).EndLine();
  w.Int(n).EndLine();
  for (int i = 1; i <= n; ++i) w.Str(c.CompName[i]).EndLine();
  for (int i = 1; i <= n; ++i) {
    w.Num(c.CompMW[i]).Num(c.AntoineA[i]).Num(c.AntoineB[i]).Num(c.AntoineC[i]);
    w.Num(c.CompTc[i]).Num(c.CompPc[i]).Num(c.CompVc[i]).Num(c.CompOmega[i]).EndLine();
  }
  for (int i = 1; i <= n; ++i) {
    w.Num(f.FlashCp1[i]).Num(f.FlashCp2[i]).Num(f.FlashCp3[i]);
    w.Num(f.FlashCp4[i]).Num(f.FlashCp5[i]).Num(f.FlashCp6[i]).EndLine();
  }
  for (int i = 1; i <= n; ++i) {
    w.Num(c.HLiqA[i]).Num(c.HLiqB[i]).Num(c.HLiqC[i]);
    w.Num(c.HVapA[i]).Num(c.HVapB[i]).Num(c.HVapC[i]).EndLine();
  }
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
  w.Int(s.Unit.TempUnit).Int(s.Unit.PressUnit).Int(s.Unit.HeatUnit);
  w.Int(s.KValueMethod).Int(s.EnthalpyMethod).EndLine();
  w.Num(f.FlashTemp).Num(f.FlashPress).EndLine();
  for (int i = 1; i <= n; ++i) w.Num(f.FeedZ[i]).EndLine();
  return w.Text();
}

void WriteFlashFile(SharedCalcState& s, const std::filesystem::path& path) {
  io::SaveFileAtomically(path, FlashFileText(s));
  s.DataFileName = path.string();
}

namespace {

// Everything the flash file holds, read aside before it replaces the case.
struct FlashFileData {
  std::array<std::string, kMaxMemoLines + 1> memo{};
  int nc = 0;
  std::array<std::string, kMaxComponents + 1> name{};
  CompArray mw{}, a{}, b{}, c{}, tc{}, pc{}, vc{}, omega{};
  CompArray cp1{}, cp2{}, cp3{}, cp4{}, cp5{}, cp6{};
  CompArray hla{}, hlb{}, hlc{}, hva{}, hvb{}, hvc{};
  CompMatrix wilson{}, tau{}, kij{};
  double alpha = 0;
  int tempUnit = 0, pressUnit = 0, heatUnit = 0, kMethod = 0, hMethod = 0;
  double temp = 0, press = 0;
  CompArray z{};
};

int ReadSelection(io::FieldReader& r, const char* what, int min, int max) {
  const int v = r.ReadInt(what);
  if (v < min || v > max)
    r.Fail(std::string(what) + " must be " + std::to_string(min) + " to " + std::to_string(max) +
           ", not " + std::to_string(v));
  return v;
}

}  // namespace

void ReadFlashFile(SharedCalcState& s, const std::filesystem::path& path) {
  io::FieldReader r = io::FieldReader::FromFile(path);
  if (r.ReadString("file type") != kFlashFileMagic)
    throw InputRefused(std::string(Pick(s, kNotFlashFile)));

  auto d = std::make_unique<FlashFileData>();
  for (int i = 1; i <= kMaxMemoLines; ++i) d->memo[i] = r.ReadString("memo line");
  const int n = d->nc = r.ReadCount("number of components", 0, kMaxComponents);
  for (int i = 1; i <= n; ++i) d->name[i] = r.ReadString("component name");
  for (int i = 1; i <= n; ++i) {
    d->mw[i] = r.ReadDouble("molecular weight");
    d->a[i] = r.ReadDouble("Antoine A");
    d->b[i] = r.ReadDouble("Antoine B");
    d->c[i] = r.ReadDouble("Antoine C");
    d->tc[i] = r.ReadDouble("Tc");
    d->pc[i] = r.ReadDouble("Pc");
    d->vc[i] = r.ReadDouble("Vc");
    d->omega[i] = r.ReadDouble("acentric factor");
  }
  for (int i = 1; i <= n; ++i) {
    d->cp1[i] = r.ReadDouble("FlashCp1");
    d->cp2[i] = r.ReadDouble("FlashCp2");
    d->cp3[i] = r.ReadDouble("FlashCp3");
    d->cp4[i] = r.ReadDouble("FlashCp4");
    d->cp5[i] = r.ReadDouble("FlashCp5");
    d->cp6[i] = r.ReadDouble("FlashCp6");
  }
  for (int i = 1; i <= n; ++i) {
    d->hla[i] = r.ReadDouble("HLiqA");
    d->hlb[i] = r.ReadDouble("HLiqB");
    d->hlc[i] = r.ReadDouble("HLiqC");
    d->hva[i] = r.ReadDouble("HVapA");
    d->hvb[i] = r.ReadDouble("HVapB");
    d->hvc[i] = r.ReadDouble("HVapC");
  }
  auto matrix = [&](CompMatrix& m, const char* what) {
    for (int i = 1; i <= n; ++i)
      for (int j = 1; j <= n; ++j) m[i][j] = r.ReadDouble(what);
  };
  matrix(d->wilson, "Wilson parameter");
  matrix(d->tau, "NRTL parameter");
  d->alpha = r.ReadDouble("NRTL alpha");
  matrix(d->kij, "Kij parameter");
  d->tempUnit = ReadSelection(r, "temperature unit", 1, 3);
  d->pressUnit = ReadSelection(r, "pressure unit", 1, 6);
  d->heatUnit = ReadSelection(r, "heat unit", 1, 3);
  d->kMethod = ReadSelection(r, "K-value method", 1, 5);
  d->hMethod = ReadSelection(r, "enthalpy method", 0, 3);
  d->temp = r.ReadDouble("flash temperature");
  d->press = r.ReadDouble("flash pressure");
  for (int i = 1; i <= n; ++i) d->z[i] = r.ReadDouble("feed fraction");

  // The whole file has been read: it replaces what it holds.
  for (int i = 1; i <= kMaxMemoLines; ++i) s.MemoLine[i] = d->memo[i];
  s.NC = n;
  auto& c = s.Comp;
  auto& f = s.Flash;
  for (int i = 1; i <= n; ++i) {
    c.CompName[i] = d->name[i];
    c.CompMW[i] = d->mw[i];
    c.AntoineA[i] = d->a[i];
    c.AntoineB[i] = d->b[i];
    c.AntoineC[i] = d->c[i];
    c.CompTc[i] = d->tc[i];
    c.CompPc[i] = d->pc[i];
    c.CompVc[i] = d->vc[i];
    c.CompOmega[i] = d->omega[i];
    f.FlashCp1[i] = d->cp1[i];
    f.FlashCp2[i] = d->cp2[i];
    f.FlashCp3[i] = d->cp3[i];
    f.FlashCp4[i] = d->cp4[i];
    f.FlashCp5[i] = d->cp5[i];
    f.FlashCp6[i] = d->cp6[i];
    c.HLiqA[i] = d->hla[i];
    c.HLiqB[i] = d->hlb[i];
    c.HLiqC[i] = d->hlc[i];
    c.HVapA[i] = d->hva[i];
    c.HVapB[i] = d->hvb[i];
    c.HVapC[i] = d->hvc[i];
    f.FeedZ[i] = d->z[i];
    for (int j = 1; j <= n; ++j) {
      s.Bin.WilsonLambda[i][j] = d->wilson[i][j];
      s.Bin.NrtlTau[i][j] = d->tau[i][j];
      s.Bin.KijMatrix[i][j] = d->kij[i][j];
    }
  }
  s.Bin.NrtlAlpha = d->alpha;
  s.Unit.TempUnit = d->tempUnit;
  s.Unit.PressUnit = d->pressUnit;
  s.Unit.HeatUnit = d->heatUnit;
  s.KValueMethod = d->kMethod;
  s.EnthalpyMethod = d->hMethod;
  f.FlashTemp = d->temp;
  f.FlashPress = d->press;
  s.DataFileName = path.string();
}

// ---- the Calculate button ----

FlashResult RunFlashCalculation(SharedCalcState& s, int calcType, double temp, double press) {
  if (calcType < 0 || calcType > 4)
    throw InputRefused("Calculation type " + std::to_string(calcType) +
                       " is not a flash calculation (0 to 4)");
  const int n = s.NC;
  const Composition& z = s.Flash.FeedZ;
  FlashResult r;
  r.calcType = calcType;
  r.temperature = temp;
  r.pressure = press;
  const double tBase = ConvTempToBase(s, temp);
  const double pBase = ConvPressToBase(s, press);
  // What the text boxes hold afterwards, read again for the enthalpies.
  double tBox = temp, pBox = press;
  Composition& x = s.Flash.FlashX;
  Composition& y = s.Flash.FlashY;

  switch (calcType) {
    case 0:
    case 2: {
      if (calcType == 0) {
        r.temperature = CalcBubbleTemperature(s, tBase, pBase, z);
        r.temperatureText = io::FormatNumber(r.temperature, kFmtTempPress);
        tBox = ThroughTextBox(r.temperature, kFmtTempPress);
      } else {
        r.pressure = CalcBubblePressure(s, tBase, pBase, z);
        r.pressureText = io::FormatNumber(r.pressure, kFmtTempPress);
        pBox = ThroughTextBox(r.pressure, kFmtTempPress);
      }
      r.vf = 0;
      r.vfText = " 0.0";
      Composition ky{};
      for (int i = 1; i <= n; ++i) {
        x[i] = z[i];
        ky[i] = s.KValue[i] * z[i];
      }
      NormaliseInto(n, ky, y);
      break;
    }
    case 1:
    case 3: {
      if (calcType == 1) {
        r.temperature = CalcDewTemperature(s, tBase, pBase, z);
        r.temperatureText = io::FormatNumber(r.temperature, kFmtTempPress);
        tBox = ThroughTextBox(r.temperature, kFmtTempPress);
      } else {
        r.pressure = CalcDewPressure(s, tBase, pBase, z);
        r.pressureText = io::FormatNumber(r.pressure, kFmtTempPress);
        pBox = ThroughTextBox(r.pressure, kFmtTempPress);
      }
      r.vf = 1;
      r.vfText = " 1.0";
      Composition xk{};
      for (int i = 1; i <= n; ++i) {
        y[i] = z[i];
        xk[i] = z[i] / s.KValue[i];
      }
      NormaliseInto(n, xk, x);
      break;
    }
    default: {
      double vf = 0;
      CalcIsothermalFlashVF(s, tBase, pBase, vf, z);
      SplitFlashComposition(s, tBase, pBase, vf, z, y, x);
      r.vf = vf;
      r.vfText = io::FormatNumber(vf, kFmtVF);
      break;
    }
  }
  if (r.temperatureText.empty()) r.temperatureText = io::FormatNumber(r.temperature, kFmtTempPress);
  if (r.pressureText.empty()) r.pressureText = io::FormatNumber(r.pressure, kFmtTempPress);

  for (int i = 1; i <= n; ++i) {
    r.x[i] = x[i];
    r.y[i] = y[i];
    r.k[i] = s.KValue[i];
    r.gamma[i] = s.Gamma[i];
    r.xText[i] = io::FormatNumber(x[i], kFmtFraction);
    r.yText[i] = io::FormatNumber(y[i], kFmtFraction);
    r.kText[i] = io::FormatNumber(s.KValue[i], kFmtK);
  }

  if (s.EnthalpyMethod > 0) {
    r.hasEnthalpy = true;
    const double t = ConvTempToBase(s, tBox);
    const double p = ConvPressToBase(s, pBox);
    r.hVapour = CalcVaporEnthalpy(s, t, p, y);
    r.hLiquid = CalcLiquidEnthalpy(s, t, p, x);
    r.hFeed = (1 - r.vf) * r.hLiquid + r.vf * r.hVapour;
    r.hFeedText = io::FormatNumber(r.hFeed, kFmtEnthalpy);
    r.showVapourH = r.vf > 0;
    r.showLiquidH = r.vf < 1;
    if (r.showVapourH) r.hVapourText = io::FormatNumber(r.hVapour, kFmtEnthalpy);
    if (r.showLiquidH) r.hLiquidText = io::FormatNumber(r.hLiquid, kFmtEnthalpy);
  }
  return r;
}

// ---- the condensing curve ----

CondensingCurve CalcCondensingCurve(SharedCalcState& s, std::optional<double> tLow,
                                    std::optional<double> tHigh, double press) {
  CondensingCurve c;
  const Composition& z = s.Flash.FeedZ;
  c.pressure = ThroughTextBox(press, kFmtTempPress);
  s.Flash.FlashPress = c.pressure;
  const double pBase = ConvPressToBase(s, c.pressure);

  // An empty lower limit box reads as 0 for the bubble point's start value.
  c.bubbleT = CalcBubbleTemperature(s, ConvTempToBase(s, tLow.value_or(0.0)), pBase, z);
  c.dewT = CalcDewTemperature(s, ConvTempToBase(s, 100.0), pBase, z);
  if (s.EnthalpyMethod > 0) {
    c.hasEnthalpy = true;
    c.hBubble = CalcLiquidEnthalpy(s, c.bubbleT, pBase, z);
    c.hDew = CalcVaporEnthalpy(s, c.dewT, pBase, z);
  }
  c.tLow = tLow ? *tLow : c.bubbleT;
  c.tHigh = tHigh ? *tHigh : c.dewT;
  if (!(c.tHigh > c.tLow)) {
    ShowMessage(s, std::string(Pick(s, kLimitsReversed)) + io::FormatNumber(c.tLow, kFmtLimit) +
                       " TU=" + io::FormatNumber(c.tHigh, kFmtLimit));
    return c;
  }
  c.drawn = true;
  c.step = (c.tHigh - c.tLow) / 200;
  Composition x{}, y{};
  for (int i = 1; i <= kCurvePoints; ++i) {
    const double t = (i - 1) * c.step + c.tLow;
    const double tBase = ConvTempToBase(s, t);
    double vf = 0;
    CalcIsothermalFlashVF(s, tBase, pBase, vf, z);
    SplitFlashComposition(s, tBase, pBase, vf, z, y, x);
    c.t[i] = t;
    c.vf[i] = vf;
    if (c.hasEnthalpy)
      c.h[i] = (1 - vf) * CalcLiquidEnthalpy(s, tBase, pBase, x) +
               vf * CalcVaporEnthalpy(s, tBase, pBase, y);
  }
  return c;
}

CurvePoint CurvePointDetail(SharedCalcState& s, const CondensingCurve& curve, int index) {
  CurvePoint p;
  if (index < 1) index = 1;
  if (index > kCurvePoints) index = kCurvePoints;
  p.index = index;
  const int n = s.NC;
  const Composition& z = s.Flash.FeedZ;
  p.t = (index - 1) * curve.step + curve.tLow;
  const double tBase = ConvTempToBase(s, p.t);
  const double pBase = ConvPressToBase(s, curve.pressure);
  double vf = 0;
  CalcIsothermalFlashVF(s, tBase, pBase, vf, z);
  SplitFlashComposition(s, tBase, pBase, vf, z, p.y, p.x);
  p.vf = vf;
  p.tText = io::FormatNumber(p.t, kFmtPointT);
  p.vfText = io::FormatNumber(vf, kFmtPointVF);
  for (int i = 1; i <= n; ++i) {
    p.z[i] = z[i];
    p.k[i] = s.KValue[i];
    p.zText[i] = io::FormatNumber(z[i], kFmtFraction);
    p.yText[i] = io::FormatNumber(p.y[i], kFmtFraction);
    p.xText[i] = io::FormatNumber(p.x[i], kFmtFraction);
    p.kText[i] = io::FormatNumber(p.k[i], kFmtK);
  }
  return p;
}

}  // namespace tervale
