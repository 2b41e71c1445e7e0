#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <tuple>

#include "common/scratch.h"
#include "regress/vle_case.h"
#include "state/errors.h"
#include "state/shared_state.h"

// GCC 12 reports a false -Wrestrict overlap in inlined string assignments.
#if defined(__GNUC__) && !defined(__clang__) && __GNUC__ == 12
#pragma GCC diagnostic ignored "-Wrestrict"
#endif

namespace tervale {
namespace {

namespace fs = std::filesystem;

struct Fixture {
  std::unique_ptr<SharedCalcState> s = MakeSharedCalcState();
  RecordingDialogs dialogs;
  Fixture() {
    s->Dialogs = &dialogs;
    s->LanguageFlag = 1;
  }
  std::string LastMessage() const {
    return dialogs.messages.empty() ? "" : dialogs.messages.back();
  }
};

using testcli::ReadBytes;
using testcli::ScratchDir;
using testcli::WriteBytes;

TEST(VLECase, DefaultsOfInitialize) {
  Fixture f;
  f.s->VLE.NVLEData = 7;
  f.s->VLE.VLEPressure = 100;
  InitializeVLECase(*f.s);
  const VLEDataCase& c = f.s->VLE;
  EXPECT_EQ(
      std::tie(c.TPType, c.VLETempUnit, c.VLEPressUnit, c.NVLEData, c.CalcType, c.ObjectiveFunc),
      std::make_tuple(0, 1, 3, 0, 1, 0));
  EXPECT_EQ(std::tie(c.VLETemperature, c.VLEPressure, c.NrtlAlpha, c.WilsonLambda12, c.GraphXMax,
                     c.GraphYMax),
            std::make_tuple(60.0, 760.0, 0.4, 0.0, 1.0, 1.0));
}

TEST(VLECase, ExamplesHoldAllTheirPointsAndExampleThreeChangesNothing) {
  Fixture f;
  const VLEDataCase& c = f.s->VLE;
  ASSERT_TRUE(LoadVLEExample(*f.s, 1));
  EXPECT_EQ(std::tie(c.ComponentName[1], c.NVLEData, c.DataTemp[12], c.DataY[12], c.AntoineC[2]),
            std::make_tuple("Methanol", 12, 65.0, 0.975, 233.426));
  EXPECT_NE(c.MemoLine[2].find("Wilson定数の文献値"), std::string::npos);
  ASSERT_TRUE(LoadVLEExample(*f.s, 2));
  EXPECT_EQ(std::tie(c.ComponentName[2], c.NVLEData, c.DataTemp[9], c.DataX[20], c.VLEPressure,
                     c.CalcType),
            std::make_tuple("ＷＡＴＥＲ", 20, 80.65, 0.941, 760.0, 1));
  EXPECT_FALSE(LoadVLEExample(*f.s, 3));
  EXPECT_EQ(f.LastMessage(), "未だ例題データを準備していません。");
  EXPECT_EQ(c.NVLEData, 20);
}

TEST(VLECase, FileRoundTrip) {
  Fixture f;
  LoadVLEExample(*f.s, 2);
  VLEDataCase& a = f.s->VLE;
  a.TPType = 1;
  a.VLETemperature = 55.5;
  a.DataPress[3] = 123.456789;
  a.WilsonLambda12 = 0.1 + 0.2;  // a value that needs all its digits
  a.NrtlTau21 = -1.5e-7;
  a.NrtlAlpha = 0.3;
  const ScratchDir dir("regress_round");
  const fs::path p = dir / "round.dat";
  SaveVLEDataFile(*f.s, p);
  const std::string first = ReadBytes(p);
  EXPECT_EQ(first.rfind("\"V_L Equibrium Data\"\r\n", 0), 0u);

  Fixture g;
  ASSERT_TRUE(ReadVLEDataFile(*g.s, p));
  const VLEDataCase& b = g.s->VLE;
  EXPECT_EQ(std::tie(b.MemoLine, b.ComponentName, b.AntoineB, b.DataX, b.DataY, b.ObjectiveFunc),
            std::tie(a.MemoLine, a.ComponentName, a.AntoineB, a.DataX, a.DataY, a.ObjectiveFunc));
  EXPECT_EQ(std::tie(b.TPType, b.VLETemperature, b.NVLEData, b.DataPress[3], b.WilsonLambda12,
                     b.NrtlTau21, b.NrtlAlpha),
            std::make_tuple(1, 55.5, 20, 123.456789, 0.1 + 0.2, -1.5e-7, 0.3));
  SaveVLEDataFile(*g.s, p);
  EXPECT_EQ(ReadBytes(p), first);

  // No data points: an empty grid, no message.
  InitializeVLECase(*f.s);
  SaveVLEDataFile(*f.s, p);
  Fixture h;
  ASSERT_TRUE(ReadVLEDataFile(*h.s, p));
  EXPECT_TRUE(h.s->VLE.NVLEData == 0 && h.dialogs.messages.empty());
}

TEST(VLECase, WrongAndTruncatedFiles) {
  Fixture f;
  LoadVLEExample(*f.s, 1);
  const ScratchDir dir("regress_wrong");
  const fs::path p = dir / "wrong.dat";
  WriteBytes(p, "\"Distillation Data\"\r\n\"memo\"\r\n");
  EXPECT_FALSE(ReadVLEDataFile(*f.s, p));
  EXPECT_EQ(f.LastMessage(), "not Vapor-Liquid Equibrium Data");
  EXPECT_EQ(f.s->VLE.NVLEData, 12);  // untouched
  f.s->LanguageFlag = 0;
  EXPECT_FALSE(ReadVLEDataFile(*f.s, p));
  EXPECT_EQ(f.LastMessage(), "気液平衡のデータファイルではありません。");

  // A missing file is an error and leaves the case alone.
  EXPECT_THROW(ReadVLEDataFile(*f.s, dir / "no-such-file.dat"), FileReadError);
  EXPECT_EQ(f.s->VLE.NVLEData, 12);

  // Cut short in the middle of the data: a read error naming the place, the case cleared.
  Fixture g;
  LoadVLEExample(*g.s, 1);
  const std::string whole = FormatVLEDataFile(g.s->VLE);
  const size_t cut = whole.find("73.1,");
  ASSERT_NE(cut, std::string::npos);
  WriteBytes(p, whole.substr(0, cut));
  try {
    ReadVLEDataFile(*g.s, p);
    FAIL() << "a truncated file was read";
  } catch (const FileReadError& e) {
    EXPECT_GT(e.line, 20);
    EXPECT_NE(std::string(e.what()).size(), 0u);
  }
  const VLEDataCase& c = g.s->VLE;
  EXPECT_EQ(std::tie(c.NVLEData, c.ComponentName[1], c.AntoineA[1], c.VLEPressure),
            std::make_tuple(0, "", 0.0, 760.0));

  // A count beyond the limit is an error, never an overflow.
  std::string big = whole;
  big.replace(big.find("0,1,3,60,760,12,"), 16, "0,1,3,60,760,51,");
  WriteBytes(p, big);
  EXPECT_THROW(ReadVLEDataFile(*g.s, p), FileReadError);
  EXPECT_EQ(c.NVLEData, 0);
}

TEST(VLECase, ReadAndSaveAskFirst) {
  Fixture f;
  LoadVLEExample(*f.s, 1);
  const ScratchDir dir("regress_asked");
  const fs::path p = dir / "asked.dat";
  f.dialogs.preparedAnswers = {Answer::No};
  EXPECT_FALSE(SaveVLEDataCommand(*f.s, p));
  EXPECT_EQ(f.LastMessage(), "Save [ asked.dat ]");
  EXPECT_FALSE(fs::exists(p));
  EXPECT_TRUE(SaveVLEDataCommand(*f.s, p));  // Yes; no further question for a new file
  EXPECT_EQ(f.LastMessage(), "Save [ asked.dat ]");
  f.dialogs.preparedAnswers = {Answer::Yes, Answer::Cancel};
  f.s->VLE.NVLEData = 3;
  EXPECT_FALSE(SaveVLEDataCommand(*f.s, p));
  EXPECT_EQ(f.LastMessage(), "exsist [ asked.dat ], over-write");

  Fixture g;
  g.s->LanguageFlag = 0;
  g.dialogs.preparedAnswers = {Answer::Cancel};
  EXPECT_FALSE(ReadVLEDataCommand(*g.s, p));
  EXPECT_EQ(g.LastMessage(), "[ asked.dat ] を読み込みます？");
  EXPECT_EQ(g.s->VLE.NVLEData, 0);
  EXPECT_TRUE(ReadVLEDataCommand(*g.s, p));
  EXPECT_EQ(g.s->VLE.NVLEData, 12);  // the overwrite was refused
}

TEST(VLECase, LenientNumbers) {
  const std::pair<const char*, double> cases[] = {{"12.5", 12.5},     {" 3abc", 3},
                                                  {"abc", 0},         {"-.5", -0.5},
                                                  {"2E", 2},          {"1.5E-3x", 1.5e-3},
                                                  {" 760 mmHg", 760}, {"-.5e2x", -50},
                                                  {"1D2", 100}};  // D: the old exponent letter
  for (auto [text, value] : cases) EXPECT_EQ(ReadNumberLeniently(text), value) << text;
  EXPECT_TRUE(IsBlankField("  "));
  EXPECT_FALSE(IsBlankField(" 0"));
}

// The screen after example 1, as a user would see it.
VLEScreenFields Example1Fields(Fixture& f) {
  LoadVLEExample(*f.s, 1);
  return DisplayVLECase(*f.s);
}

TEST(VLEDriver, AcceptsExampleAndDerivesMeasuredGammas) {
  Fixture f;
  VLEScreenFields fields = Example1Fields(f);
  EXPECT_TRUE(fields.Para12Text.empty());  // a cleared pair shows blank fields
  ASSERT_TRUE(RunVLECalcDriver(*f.s, fields)) << f.LastMessage();
  const VLEDataCase& c = f.s->VLE;
  // blank fields take the defaults
  EXPECT_EQ(std::tie(c.WilsonLambda12, c.WilsonLambda21, c.ObjectiveFunc, c.NVLEData),
            std::make_tuple(1.0, 1.0, 1, 12));
  EXPECT_NEAR(c.VLEPressure, 760, 1e-9);
  double mean = 0;
  for (int i = 1; i <= 12; ++i) mean += c.DataTemp[i];
  mean /= 12;
  for (int i = 1; i <= 12; ++i) {
    EXPECT_DOUBLE_EQ(c.CalcTemp[i], mean);
    // measured gamma from the vapour pressure at the point's own temperature
    const double p1 = std::pow(10.0, 7.8786 - 1473.11 / (c.DataTemp[i] + 230.0));
    const double p2 = std::pow(10.0, 8.07131 - 1730.63 / (c.DataTemp[i] + 233.426));
    EXPECT_NEAR(c.GammaExp[i][1], c.VLEPressure * c.DataY[i] / (p1 * c.DataX[i]), 1e-12);
    EXPECT_NEAR(c.GammaExp[i][2], (1 - c.DataY[i]) * c.VLEPressure / (p2 * (1 - c.DataX[i])),
                1e-12);
  }
  // Methanol-water deviates positively from Raoult's law.
  EXPECT_GT(c.GammaExp[1][1], 1.5);
}

TEST(VLEDriver, UnitsAndParameterFields) {
  Fixture f;
  VLEScreenFields fields = Example1Fields(f);
  fields.PressUnitIndex = 1;  // KPa
  fields.PressText = "101.325";
  fields.TempUnitIndex = 1;  // K
  for (auto& row : fields.DataRows) row[0] = std::to_string(std::stod(row[0]) + 273.15);
  fields.Para12Text = "0.5";
  fields.Para21Text = "";
  ASSERT_TRUE(RunVLECalcDriver(*f.s, fields)) << f.LastMessage();
  const VLEDataCase& c = f.s->VLE;
  EXPECT_DOUBLE_EQ(c.VLEPressure, 101.325 * 0.001 / 0.00013322);
  EXPECT_NEAR(c.DataTemp[1], 96.4, 1e-9);
  // a blank second field reads as 0; the suite's own unit selection is left alone
  EXPECT_EQ(std::tie(c.VLEPressUnit, c.WilsonLambda12, c.WilsonLambda21, f.s->Unit.PressUnit),
            std::make_tuple(2, 0.5, 0.0, 3));

  // NRTL: blank tau gives 0, blank alpha 0.4.
  fields.CalcTypeIndex = 1;
  fields.Para12Text = "";
  fields.AlphaText = "";
  ASSERT_TRUE(RunVLECalcDriver(*f.s, fields));
  // the Wilson pair keeps its own values
  EXPECT_EQ(std::tie(c.NrtlTau12, c.NrtlAlpha, c.WilsonLambda12), std::make_tuple(0.0, 0.4, 0.5));

  // Constant temperature: measured pressures through the unit, gammas at the fixed T.
  fields = Example1Fields(f);
  fields.TPType = 1;
  fields.TempText = "70";
  fields.PressUnitIndex = 0;  // MPa
  fields.DataRows = {{"0.05", "0.3", "0.6"}};
  ASSERT_TRUE(RunVLECalcDriver(*f.s, fields));
  const VLEDataCase& d = f.s->VLE;
  EXPECT_DOUBLE_EQ(d.DataPress[1], 0.05 / 0.00013322);
  const double p1 = std::pow(10.0, 7.8786 - 1473.11 / (70 + 230.0));
  EXPECT_NEAR(d.GammaExp[1][1], 0.6 * d.DataPress[1] / (p1 * 0.3), 1e-12);
}

TEST(VLEDriver, RefusalsInOrderLeaveTheCaseAsItWas) {
  Fixture f;
  VLEScreenFields good = Example1Fields(f);
  ASSERT_TRUE(RunVLECalcDriver(*f.s, good));
  const std::string before = FormatVLEDataFile(f.s->VLE);

  auto refused = [&](VLEScreenFields fields, const std::string& message) {
    const size_t n = f.dialogs.messages.size();
    EXPECT_FALSE(RunVLECalcDriver(*f.s, fields));
    ASSERT_EQ(f.dialogs.messages.size(), n + 1);
    EXPECT_EQ(f.LastMessage(), message);
    EXPECT_EQ(FormatVLEDataFile(f.s->VLE), before);
  };
  using Edit = std::function<void(VLEScreenFields&)>;
  const std::pair<Edit, const char*> refusals[] = {
      // the pressure comes first
      {[](auto& v) { v.PressText = " ", v.Name[1] = ""; }, "No Pressure Data"},
      {[](auto& v) { v.TPType = 1, v.TempText = ""; }, "No Temperature Data"},
      {[](auto& v) { v.Name[2] = ""; }, "No Component Name"},
      {[](auto& v) { v.CText[2] = "0"; }, "No Antoine's parameters"},
      {[](auto& v) { v.AText[1] = "abc"; }, "No Antoine's parameters"},  // unreadable counts as 0
      {[](auto& v) { v.DataRows[3][1] = "1"; }, "out of X range(0-1)"},
      {[](auto& v) { v.DataRows[0][2] = "0"; }, "out of Y range(0-1)"},
      {[](auto& v) { v.DataRows.clear(); }, "No VLE Data"},
      // a gap in the first row ends the data at once
      {[](auto& v) { v.DataRows[0][0] = ""; }, "No VLE Data"}};
  for (const auto& [edit, message] : refusals) {
    VLEScreenFields v = good;
    edit(v);
    refused(v, message);
  }
  VLEScreenFields v = good;
  while (v.DataRows.size() < 51) v.DataRows.push_back({"70", "0.5", "0.7"});
  refused(v, "Over Max Data (50)");
  f.s->LanguageFlag = 0;
  refused(v, "データの最大数50を越えています。");
  v.DataRows.resize(50);
  EXPECT_TRUE(RunVLECalcDriver(*f.s, v));
  EXPECT_EQ(f.s->VLE.NVLEData, 50);

  // A gap row ends the data silently; rows beneath it are ignored.
  v = good;
  v.DataRows[5][0] = " ";
  v.DataRows[7][1] = "7";  // would be refused if it were read
  EXPECT_TRUE(RunVLECalcDriver(*f.s, v));
  EXPECT_EQ(f.s->VLE.NVLEData, 5);

  // The calculate types accept an empty grid and keep the old points.
  v = good;
  v.CalcTypeIndex = 2;
  v.DataRows.clear();
  EXPECT_TRUE(RunVLECalcDriver(*f.s, v));
  EXPECT_EQ(f.s->VLE.NVLEData, 5);
  EXPECT_EQ(f.s->VLE.CalcType, 3);
}

}  // namespace
}  // namespace tervale
