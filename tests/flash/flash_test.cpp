#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <numeric>

#include "common/scratch.h"
#include "flash/flash_engine.h"
#include "flash/flash_program.h"
#include "io/display_format.h"
#include "io/field_reader.h"
#include "state/errors.h"
#include "state/shared_state.h"
#include "state/units.h"
#include "thermo/enthalpy.h"
#include "thermo/equilibrium.h"

namespace tervale {
namespace {

namespace fs = std::filesystem;

using testcli::ReadBytes;
using testcli::ScratchDir;
using testcli::WriteBytes;

std::unique_ptr<SharedCalcState> Example(int number) {
  auto s = MakeSharedCalcState();
  ResetFlashCase(*s);
  LoadFlashExample(*s, number);
  return s;
}

// Example 1 with English messages recorded.
struct FlashExample1 : ::testing::Test {
  std::unique_ptr<SharedCalcState> owner = Example(1);
  SharedCalcState& s = *owner;
  RecordingDialogs dialogs;
  void SetUp() override { s.Dialogs = &dialogs; }
};

TEST(FlashCase, ResetAndExamples) {
  auto s = MakeSharedCalcState();
  s->LanguageFlag = 1;
  s->NC = 5;
  s->Comp.HLiqB[3] = 9.5;
  s->Flash.FeedZ[1] = 3;
  ResetFlashCase(*s);
  EXPECT_EQ(s->BatchMode, 2);
  EXPECT_EQ(s->TitlePrefix, "Flash Calculation");
  EXPECT_EQ(s->NC, 0);
  EXPECT_EQ(s->Comp.HLiqB[3], 0.0);
  EXPECT_EQ(s->Flash.FeedZ[1], 0.0);
  EXPECT_EQ(s->KValueMethod, 1);
  EXPECT_EQ(s->EnthalpyMethod, 1);
  EXPECT_EQ(s->Unit.PressUnit, 3);
  EXPECT_EQ(s->Bin.KijMatrix[7][7], 1.0);
  EXPECT_EQ(s->Bin.NrtlAlpha, 0.4);
  s->LanguageFlag = 0;
  ResetFlashCase(*s);
  EXPECT_EQ(s->TitlePrefix, "ＦＬＡＳＨ計算");
  EXPECT_EQ(FlashCalcTypeCaption(5), "凝縮曲線(圧力指定)");
  EXPECT_EQ(FlashReadQuestion("a.dat"), "[ a.dat ] を読み込みます？");

  // Example 1 assigns water's HVapB twice and leaves its HLiqB as it was.
  s->Comp.HLiqB[3] = 0.123;
  LoadFlashExample(*s, 1);
  EXPECT_EQ(s->Comp.HLiqB[3], 0.123);
  EXPECT_EQ(s->Comp.HVapB[3], 0.46615);
  EXPECT_EQ(s->Comp.HLiqA[4], -147.14999);
  EXPECT_EQ(s->NC, 4);
  EXPECT_EQ(s->Comp.CompName[4], "1-Propanol");
  EXPECT_EQ(s->Bin.WilsonLambda[3][4], 0.001);
  EXPECT_EQ(s->Bin.WilsonLambda[4][1], 1.0);
  EXPECT_EQ(s->KValueMethod, 2);
  EXPECT_EQ(s->EnthalpyMethod, 0);
  EXPECT_EQ(s->Flash.FlashPress, 760);
  EXPECT_EQ(s->MemoLine[3], "    Methanol - Ethanol - Water - Propanol 系");

  auto e2 = Example(2);
  EXPECT_EQ(e2->NC, 3);
  EXPECT_EQ(e2->KValueMethod, 4);
  EXPECT_EQ(e2->EnthalpyMethod, 2);
  EXPECT_EQ(e2->Unit.PressUnit, 5);
  EXPECT_EQ(e2->Flash.FlashTemp, -10);
  EXPECT_EQ(e2->Comp.CompPc[1], 48.8);
  EXPECT_EQ(e2->Bin.KijMatrix[2][2], 1.0);
  EXPECT_EQ(e2->Bin.KijMatrix[1][3], 0.0);
  EXPECT_EQ(e2->Flash.FlashCp4[2], -3.789E-05);
  EXPECT_EQ(e2->Flash.FlashCp5[3], -6.74E-10);
  EXPECT_EQ(e2->MemoLine[2], "   例題データ－２");
}

TEST(FlashCase, FileRoundTripIsByteForByte) {
  const ScratchDir dir("flash");
  for (int number : {1, 2}) {
    auto s = Example(number);
    const fs::path first = dir / ("ex" + std::to_string(number) + ".dat");
    const fs::path second = dir / ("ex" + std::to_string(number) + "b.dat");
    WriteFlashFile(*s, first);
    EXPECT_EQ(s->DataFileName, first.string());
    auto t = MakeSharedCalcState();
    ResetFlashCase(*t);
    ReadFlashFile(*t, first);
    WriteFlashFile(*t, second);
    const std::string a = ReadBytes(first), b = ReadBytes(second);
    EXPECT_EQ(a, b) << number;
    EXPECT_EQ(a.rfind("\"Distillation Data\"\r\n", 0), 0u);
  }
  // Awkward doubles come back exactly.
  {
    auto s = Example(1);
    s->Bin.NrtlTau[1][2] = 0.1;
    s->Bin.NrtlTau[2][1] = 5e-324;
    s->Bin.NrtlTau[3][4] = -1e300;
    s->Bin.KijMatrix[2][3] = -0.0;
    s->Bin.NrtlAlpha = 1.0 / 3;
    s->Flash.FlashTemp = 2.0 / 3;
    s->Comp.CompName[2] = "Ethanol, dry";  // a comma inside a name
    WriteFlashFile(*s, dir / "odd.dat");
    auto t = MakeSharedCalcState();
    ReadFlashFile(*t, dir / "odd.dat");
    EXPECT_EQ(t->Bin.NrtlTau[2][1], 5e-324);
    EXPECT_EQ(t->Bin.NrtlTau[3][4], -1e300);
    EXPECT_TRUE(std::signbit(t->Bin.KijMatrix[2][3]));
    EXPECT_EQ(t->Bin.NrtlAlpha, 1.0 / 3);
    EXPECT_EQ(t->Flash.FlashTemp, 2.0 / 3);
    EXPECT_EQ(t->Comp.CompName[2], "Ethanol, dry");
    EXPECT_EQ(FlashFileText(*t), FlashFileText(*s));
  }

  // A file with LF line ends reads the same.
  auto s = Example(1);
  std::string text = FlashFileText(*s), lf;
  for (char c : text)
    if (c != '\r') lf += c;
  WriteBytes(dir / "lf.dat", lf);
  auto t = MakeSharedCalcState();
  ReadFlashFile(*t, dir / "lf.dat");
  EXPECT_EQ(FlashFileText(*t), text);
}

TEST_F(FlashExample1, BadFilesLeaveTheCaseAsItWas) {
  const ScratchDir dir("flash");
  s.DataFileName = "before.dat";
  const std::string before = FlashFileText(s);
  const std::string good = FlashFileText(*Example(2));

  // Wrong first record: the flash program's message.
  std::string wrong = good;
  wrong.replace(0, 19, "\"Batch Distillastion Data\"");
  WriteBytes(dir / "wrong.dat", wrong);
  try {
    ReadFlashFile(s, dir / "wrong.dat");
    ADD_FAILURE() << "no error";
  } catch (const InputRefused& e) {
    EXPECT_STREQ(e.what(), "Flash計算のデータファイルではありません");
  }
  EXPECT_EQ(FlashFileText(s), before);

  // Truncated anywhere after the first record: a read error naming the field.
  for (size_t cut : {size_t(25), good.size() / 3, good.size() / 2, good.size() - 8}) {
    WriteBytes(dir / "short.dat", good.substr(0, cut));
    EXPECT_THROW(ReadFlashFile(s, dir / "short.dat"), FileReadError) << cut;
    EXPECT_EQ(FlashFileText(s), before) << cut;
  }

  // A count above the limit, a text where a number belongs, an unknown method: the line and the
  // field of the fault.
  for (auto [from, to] :
       {std::pair{"\r\n3\r\n", "\r\n21\r\n"}, {"30.07", "thirty"}, {"1,5,2,4,2", "1,5,2,9,2"}}) {
    std::string bad = good;
    bad.replace(bad.find(from), std::string(from).size(), to);
    WriteBytes(dir / "bad.dat", bad);
    try {
      ReadFlashFile(s, dir / "bad.dat");
      ADD_FAILURE() << "no error: " << to;
    } catch (const FileReadError& e) {
      EXPECT_GT(e.line, 0) << to;
      EXPECT_GT(e.field, 0) << to;
    }
  }
  EXPECT_THROW(ReadFlashFile(s, dir / "missing.dat"), FileReadError);
  EXPECT_EQ(FlashFileText(s), before);
  EXPECT_EQ(s.DataFileName, "before.dat");
}

TEST_F(FlashExample1, CalculateButton) {
  s.EnthalpyMethod = 1;
  const Composition z = s.Flash.FeedZ;

  // Bubble temperature: x is the feed, y = K z normalised, V/F " 0.0", the vapour row blank.
  FlashResult r = RunFlashCalculation(s, 0, 80, 760);
  EXPECT_NEAR(r.temperature, 85.08, 0.01);
  EXPECT_EQ(r.pressure, 760);
  EXPECT_EQ(r.vf, 0.0);
  EXPECT_EQ(r.vfText, " 0.0");
  EXPECT_EQ(r.x, z);
  EXPECT_EQ(s.Flash.FlashX, z);
  EXPECT_NEAR(std::accumulate(&r.y[1], &r.y[5], 0.0), 1.0, 1e-12);
  EXPECT_NEAR(r.y[1], r.k[1] * z[1], 1e-5);
  ASSERT_TRUE(r.hasEnthalpy);
  EXPECT_FALSE(r.showVapourH);
  EXPECT_TRUE(r.showLiquidH);
  EXPECT_TRUE(r.hVapourText.empty());
  EXPECT_EQ(r.hFeed, r.hLiquid);
  EXPECT_EQ(r.hFeedText, io::FormatNumber(r.hFeed, "#.#0000E+#0"));
  // The enthalpy takes the temperature as the text box shows it.
  double tBox = 0;
  ASSERT_TRUE(io::ParseNumber(io::FormatNumber(r.temperature, " ###0.000"), tBox));
  EXPECT_EQ(r.hLiquid, CalcLiquidEnthalpy(s, tBox, 0, z));

  // Bubble and dew temperatures of methods 1-3 come back in C whatever TempUnit says.
  s.Unit.TempUnit = 2;
  FlashResult rk = RunFlashCalculation(s, 0, 353.15, 760);
  EXPECT_NEAR(rk.temperature, 85.08, 0.01);
  FlashResult rd = RunFlashCalculation(s, 1, 373.15, 760);
  EXPECT_NEAR(rd.temperature, 95.73, 0.05);
  EXPECT_EQ(rd.vfText, " 1.0");
  EXPECT_EQ(rd.y, z);
  EXPECT_TRUE(rd.showVapourH);
  EXPECT_FALSE(rd.showLiquidH);
  s.Unit.TempUnit = 1;

  // Bubble and dew pressures in the user's unit at 80 C; the temperature echoes the input.
  FlashResult rp = RunFlashCalculation(s, 2, 80, 0);
  EXPECT_EQ(rp.temperature, 80);
  EXPECT_GT(rp.pressure, 500);
  EXPECT_LT(rp.pressure, 760);
  FlashResult rq = RunFlashCalculation(s, 3, 80, 0);
  EXPECT_LT(rq.pressure, rp.pressure);

  // Flash at 90 C: two phases, both enthalpy rows, balance of the feed row.
  FlashResult rf = RunFlashCalculation(s, 4, 90, 760);
  EXPECT_GT(rf.vf, 0.1);
  EXPECT_LT(rf.vf, 0.4);
  EXPECT_EQ(rf.vfText, io::FormatNumber(rf.vf, "##.#000"));
  EXPECT_TRUE(rf.showVapourH && rf.showLiquidH);
  EXPECT_DOUBLE_EQ(rf.hFeed, (1 - rf.vf) * rf.hLiquid + rf.vf * rf.hVapour);
  EXPECT_EQ(rf.xText[1], io::FormatNumber(rf.x[1], "#0.#00000"));
  EXPECT_EQ(rf.kText[1], io::FormatNumber(rf.k[1], "#.#00000E+#0"));
  EXPECT_TRUE(dialogs.messages.empty());

  // Without a heat balance there are no enthalpy rows.
  s.EnthalpyMethod = 0;
  EXPECT_FALSE(RunFlashCalculation(s, 4, 90, 760).hasEnthalpy);
  EXPECT_THROW(RunFlashCalculation(s, 5, 90, 760), InputRefused);

  // Example 2 (S-R-K): the bubble temperature runs, the others show the message with K = 1.
  auto e2 = Example(2);
  e2->Dialogs = &dialogs;
  FlashResult b2 = RunFlashCalculation(*e2, 0, -10, 10);
  EXPECT_GT(b2.temperature, -60);
  EXPECT_LT(b2.temperature, 40);
  for (int type : {1, 2, 3, 4}) {
    dialogs.messages.clear();
    FlashResult m = RunFlashCalculation(*e2, type, -10, 10);
    ASSERT_EQ(dialogs.messages.size(), 1u) << type;
    EXPECT_EQ(dialogs.messages[0], "S-R-K / P-Rの式は未だありません");
    EXPECT_EQ(m.k[2], 1.0);
    EXPECT_EQ(m.temperature, -10);
    EXPECT_DOUBLE_EQ(m.pressure, 10);
  }
}

TEST_F(FlashExample1, CondensingCurve) {
  s.EnthalpyMethod = 1;

  // Empty limits: from the bubble point (V/F 0) to the dew point (V/F 1).
  CondensingCurve c = CalcCondensingCurve(s, std::nullopt, std::nullopt, 760);
  ASSERT_TRUE(c.drawn);
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_EQ(c.tLow, c.bubbleT);
  EXPECT_EQ(c.tHigh, c.dewT);
  EXPECT_NEAR(c.bubbleT, 85.08, 0.01);
  EXPECT_EQ(c.t[1], c.bubbleT);
  EXPECT_NEAR(c.t[kCurvePoints], c.dewT, 1e-9);
  EXPECT_LT(c.vf[1], 1e-5);
  EXPECT_GT(c.vf[kCurvePoints], 1 - 1e-5);
  for (int i = 2; i <= kCurvePoints; ++i) {
    EXPECT_GE(c.vf[i], c.vf[i - 1] - 1e-9) << i;
    EXPECT_GT(c.h[i], c.h[i - 1]) << i;  // condensing releases heat all the way
  }
  EXPECT_NEAR(c.h[1], c.hBubble, std::fabs(c.hBubble) * 1e-4);
  EXPECT_NEAR(c.h[kCurvePoints], c.hDew, std::fabs(c.hDew) * 2e-3);

  // The detail of a point repeats its flash.
  CurvePoint p = CurvePointDetail(s, c, 101);
  EXPECT_EQ(p.t, c.t[101]);
  EXPECT_EQ(p.vf, c.vf[101]);
  EXPECT_EQ(p.tText, io::FormatNumber(p.t, "####.#0"));
  EXPECT_EQ(p.vfText, io::FormatNumber(p.vf, "##.###0"));
  for (int i = 1; i <= 4; ++i) EXPECT_NEAR((1 - p.vf) * p.x[i] + p.vf * p.y[i], p.z[i], 2e-6);

  // Limits as entered.
  c = CalcCondensingCurve(s, 80.0, 100.0, 760);
  ASSERT_TRUE(c.drawn);
  EXPECT_EQ(c.t[1], 80.0);
  EXPECT_EQ(c.vf[1], 0.0);
  EXPECT_EQ(c.vf[kCurvePoints], 1.0);
  EXPECT_DOUBLE_EQ(c.step, 0.1);

  // Equal or reversed limits: the message, nothing drawn.
  c = CalcCondensingCurve(s, 90.0, 90.0, 760);
  EXPECT_FALSE(c.drawn);
  ASSERT_EQ(dialogs.messages.size(), 1u);
  EXPECT_EQ(dialogs.messages[0],
            "温度の上下限が逆転しています。 TL=" + io::FormatNumber(90.0, " ####.##") +
                " TU=" + io::FormatNumber(90.0, " ####.##"));
  c = CalcCondensingCurve(s, 99.0, std::nullopt, 760);  // above the dew point
  EXPECT_FALSE(c.drawn);
  EXPECT_EQ(dialogs.messages.size(), 2u);
}

TEST_F(FlashExample1, MaterialBalanceClosesAcrossTheTwoPhaseRange) {
  const Composition& z = s.Flash.FeedZ;
  const double p = ConvPressToBase(s, 760);
  int twoPhase = 0;
  for (double t = 80; t <= 100; t += 0.5) {
    double vf = -7;
    CalcIsothermalFlashVF(s, t, p, vf, z);
    Composition x{}, y{};
    SplitFlashComposition(s, t, p, vf, z, y, x);
    ASSERT_GE(vf, 0) << t;
    ASSERT_LE(vf, 1) << t;
    for (int i = 1; i <= 4; ++i)  // (1 - V/F) x + V/F y = z
      EXPECT_NEAR((1 - vf) * x[i] + vf * y[i], z[i], 2e-6) << t << " " << i;
    EXPECT_NEAR(std::accumulate(&x[1], &x[5], 0.0), 1.0, 1e-12);
    EXPECT_NEAR(std::accumulate(&y[1], &y[5], 0.0), 1.0, 1e-12);
    if (vf > 0 && vf < 1) {
      ++twoPhase;
      for (int i = 1; i <= 4; ++i) EXPECT_NEAR(y[i], s.KValue[i] * x[i], 2e-6) << t;
    } else {
      EXPECT_EQ(vf == 0 ? x : y, z);  // one phase: it is the feed
    }
  }
  EXPECT_GT(twoPhase, 15);  // bubble point near 85 C, dew point near 96 C

  // At the bubble point found by the bubble routine the flash gives V/F 0 (or next to it).
  const double tb = CalcBubbleTemperature(s, 80, p, z);
  double vf = 0.5;
  CalcIsothermalFlashVF(s, tb + 1e-3, p, vf, z);
  EXPECT_LT(vf, 1e-3);
}

// K near 10 and 0.1 from Psat 10^4 and 10^2 mmHg at 1000 mmHg.
void SetTenAndATenth(SharedCalcState& s, double& p) {
  ResetFlashCase(s);
  s.NC = 2;
  s.Comp.AntoineA[1] = 4;
  s.Comp.AntoineA[2] = 2;
  s.Comp.AntoineC[1] = s.Comp.AntoineC[2] = 100;
  p = 1000 / kMmHgPerMPa;
}

// Moves z1 (and with it z2 = 1 - z1) by single steps until the sum the flash tests equals 1
// exactly.
Composition FeedWithSumExactlyOne(const SharedCalcState& s, double z1, bool overK) {
  auto sumOf = [&](const Composition& z) {
    const double sz = z[1] + z[2];
    const double f1 = z[1] / sz, f2 = z[2] / sz;
    return overK ? 0 + f1 / s.KValue[1] + f2 / s.KValue[2]
                 : 0 + f1 * s.KValue[1] + f2 * s.KValue[2];
  };
  double up = z1, down = z1;
  for (int step = 0; step < 20000; ++step) {
    for (double c : {up, down}) {
      double z2 = 1 - c;
      for (int k = 0; k < 16; ++k) z2 = std::nextafter(z2, 0.0);
      for (int k = 0; k < 32; ++k, z2 = std::nextafter(z2, 1.0)) {
        const Composition z{0, c, z2};
        if (sumOf(z) == 1.0) return z;
      }
    }
    up = std::nextafter(up, 1.0);
    down = std::nextafter(down, 0.0);
  }
  return {};
}

TEST(FlashEngine, BoundariesOfTheTwoSums) {
  auto s = MakeSharedCalcState();
  double p = 0;
  SetTenAndATenth(*s, p);
  double vf = 0.5;
  CalcIsothermalFlashVF(*s, 20, p, vf, Composition{0, 0.5, 0.5});
  ASSERT_DOUBLE_EQ(s->KValue[1], 10.0);
  ASSERT_DOUBLE_EQ(s->KValue[2], 0.1);

  // S1 = sum f K exactly 1: all liquid.
  Composition z = FeedWithSumExactlyOne(*s, 1.0 / 11, false);
  ASSERT_NE(z[1], 0.0);
  vf = 0.5;
  CalcIsothermalFlashVF(*s, 20, p, vf, z);
  EXPECT_EQ(vf, 0.0);

  // S2 = sum f / K exactly 1: all vapour.
  z = FeedWithSumExactlyOne(*s, 10.0 / 11, true);
  ASSERT_NE(z[1], 0.0);
  vf = 0.5;
  CalcIsothermalFlashVF(*s, 20, p, vf, z);
  EXPECT_EQ(vf, 1.0);

  // Every K exactly 1: S1 = S2 = 1 and the first test wins, V/F 0. Search a vapour pressure
  // 10^A that some pressure in MPa turns into exactly the same mmHg figure.
  double a = 3.0, pk = 0;
  for (int i = 0; i < 100000 && pk == 0; ++i, a = std::nextafter(a, 4.0)) {
    const double target = std::pow(10.0, a);
    double q = target / kMmHgPerMPa;
    for (double c : {q, std::nextafter(q, 0.0), std::nextafter(q, 1.0)})
      if (c * kMmHgPerMPa == target) pk = c;
    if (pk != 0) break;
  }
  ASSERT_NE(pk, 0.0);
  s->Comp.AntoineA[1] = s->Comp.AntoineA[2] = a;
  vf = 0.5;
  CalcIsothermalFlashVF(*s, 20, pk, vf, Composition{0, 0.5, 0.5});
  EXPECT_EQ(s->KValue[1], 1.0);
  EXPECT_EQ(vf, 0.0);

  // An empty feed leaves V/F untouched.
  vf = 0.25;
  CalcIsothermalFlashVF(*s, 20, p, vf, Composition{});
  EXPECT_EQ(vf, 0.25);

  // A feed barely inside the two-phase region near the dew point: the 0.8 start steps past 1,
  // is held at 0.999999 and goes on to the answer.
  s->Comp.AntoineA[1] = 4;
  s->Comp.AntoineA[2] = 2;
  z = {0, 0.9, 0.1};  // the first Newton step from 0.8 lands near 1.115
  CalcIsothermalFlashVF(*s, 20, p, vf, z);
  EXPECT_NEAR(vf, 8.01 / 8.1, 1e-6);
  double g = 0;
  for (int i = 1; i <= 2; ++i) g += (1 - s->KValue[i]) * z[i] / ((s->KValue[i] - 1) * vf + 1);
  EXPECT_NEAR(g, 0, 1e-6);
}

TEST_F(FlashExample1, SplitBranchesAndMessages) {
  const Composition& z = s.Flash.FeedZ;
  s.KValue = {0, 4.0, 1.5, 0.7, 2.0};
  Composition x{}, y{};

  // V/F 1E-06 takes the general branch: x is not the feed itself.
  SplitFlashComposition(s, 0, 0, 1E-06, z, y, x);
  double sl = 0, sv = 0;
  Composition l{}, v{};
  for (int i = 1; i <= 4; ++i) {
    l[i] = (1 - 1E-06) * z[i] / ((s.KValue[i] - 1) * 1E-06 + 1);
    v[i] = z[i] - l[i];
    sl += l[i];
    sv += v[i];
  }
  bool differs = false;
  for (int i = 1; i <= 4; ++i) {
    EXPECT_DOUBLE_EQ(x[i], l[i] / sl);
    EXPECT_DOUBLE_EQ(y[i], v[i] / sv);
    differs = differs || x[i] != z[i];
  }
  EXPECT_TRUE(differs);

  // V/F exactly 0 and 1.
  SplitFlashComposition(s, 0, 0, 0.0, z, y, x);
  EXPECT_EQ(x, z);
  EXPECT_DOUBLE_EQ(y[1], 4.0 * 0.12 / (4.0 * 0.12 + 1.5 * 0.01 + 0.7 * 0.85 + 2.0 * 0.02));
  SplitFlashComposition(s, 0, 0, 1.0, z, y, x);
  EXPECT_EQ(y, z);
  EXPECT_DOUBLE_EQ(x[3], (0.85 / 0.7) / (0.12 / 4.0 + 0.01 / 1.5 + 0.85 / 0.7 + 0.02 / 2.0));
  EXPECT_TRUE(dialogs.messages.empty());

  // Out of range: the message, arrays unchanged.
  const Composition x0 = x, y0 = y;
  SplitFlashComposition(s, 0, 0, 1.5, z, y, x);
  SplitFlashComposition(s, 0, 0, -0.1, z, y, x);
  EXPECT_EQ(x, x0);
  EXPECT_EQ(y, y0);
  ASSERT_EQ(dialogs.messages.size(), 2u);
  EXPECT_EQ(dialogs.messages[0], "V/Fが<0 or >1です");

  // The equation-of-state methods have no flash: message, V/F 0, K 1.
  s.KValueMethod = 5;
  double vf = 0.3;
  CalcIsothermalFlashVF(s, 90, 0.1, vf, z);
  EXPECT_EQ(vf, 0.0);
  for (int i = 1; i <= 4; ++i) EXPECT_EQ(s.KValue[i], 1.0);
  EXPECT_EQ(dialogs.messages.back(), "S-R-K / P-Rの式は未だありません");
}

}  // namespace
}  // namespace tervale
