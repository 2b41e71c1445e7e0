#include <gtest/gtest.h>

#include "state/shared_state.h"
#include "state/units.h"

namespace tervale {
namespace {

TEST(Units, TemperatureAndPressureConversions) {
  auto s = MakeSharedCalcState();
  s->Unit.TempUnit = 2;
  EXPECT_DOUBLE_EQ(ConvTempFromBase(*s, 0), 273.15);
  s->Unit.TempUnit = 3;
  EXPECT_DOUBLE_EQ(ConvTempToBase(*s, 32), 0);
  EXPECT_DOUBLE_EQ(ConvTempFromBase(*s, 100), 212);
  s->Unit.PressUnit = 3;
  EXPECT_DOUBLE_EQ(ConvPressToBase(*s, 760), 760 * 0.00013322);  // not the exact atmosphere
  EXPECT_NEAR(ConvPressFromBase(*s, 1.0), kMmHgPerMPa, 1e-5);
  for (int u = 1; u <= 6; ++u) {
    s->Unit.PressUnit = u;
    EXPECT_NEAR(ConvPressFromBase(*s, ConvPressToBase(*s, 123.456)), 123.456, 1e-10) << u;
  }
  s->Unit.PressUnit = 9;  // out of range passes through
  s->Unit.TempUnit = 0;
  EXPECT_EQ(ConvPressToBase(*s, 5.5), 5.5);
  EXPECT_EQ(ConvTempFromBase(*s, 5.5), 5.5);
}

TEST(Units, HeatFactorAndTheBtuMessage) {
  auto s = MakeSharedCalcState();
  RecordingDialogs dialogs;
  s->Dialogs = &dialogs;
  s->Unit.HeatUnit = 1;
  EXPECT_EQ(ConvHeatToDisplay(*s, 2.5), 2.5);
  s->Unit.HeatUnit = 2;  // "Kcal" scales by the factor, kept so on purpose
  EXPECT_DOUBLE_EQ(ConvHeatToDisplay(*s, 1.0), 4186.05);
  EXPECT_DOUBLE_EQ(ConvHeatToBase(*s, 4186.05), 1.0);
  EXPECT_TRUE(dialogs.messages.empty());
  s->Unit.HeatUnit = 3;
  s->LanguageFlag = 1;  // the message is Japanese in both languages
  EXPECT_EQ(ConvHeatToBase(*s, 7.0), 7.0);
  ASSERT_EQ(dialogs.messages.size(), 1u);
  EXPECT_EQ(dialogs.messages[0], "熱量変換 BTU は未だサポートしていません。");
  EXPECT_EQ(s->MessageText, dialogs.messages[0]);
}

}  // namespace
}  // namespace tervale
