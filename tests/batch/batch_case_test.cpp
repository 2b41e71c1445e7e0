#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "batch/batch_data.h"
#include "batch/batch_results.h"
#include "batch/batch_test_util.h"
#include "state/errors.h"
#include "state/units.h"

using namespace tervale;
using namespace tervale::testing;

using BatchCaseTest = BatchFixture;

TEST_F(BatchCaseTest, ResetSetsEveryMatrixElementAndTheDefaults) {
  s.Bin.WilsonLambda[2][3] = 0.5;
  s.Bin.NrtlTau[1][2] = 3;
  s.Batch.TotalFeed = 7;
  ResetBatchCase(s);
  for (int i = 1; i <= kMaxComponents; ++i)
    for (int j = 1; j <= kMaxComponents; ++j) {
      EXPECT_EQ(s.Bin.WilsonLambda[i][j], 1.0);
      EXPECT_EQ(s.Bin.KijMatrix[i][j], 1.0);
      EXPECT_EQ(s.Bin.NrtlTau[i][j], 0.0);
    }
  EXPECT_EQ(s.Bin.NrtlAlpha, 0.4);
  EXPECT_EQ(s.Batch.HoldupBasis, 1);
  EXPECT_EQ(s.Batch.BatchOpeType, 1);
  EXPECT_EQ(s.Batch.GraphDivisions, 5);
  EXPECT_EQ(s.Unit.TempUnit, 1);
  EXPECT_EQ(s.Unit.PressUnit, 2);
  EXPECT_EQ(s.Unit.HeatUnit, 2);
  EXPECT_EQ(s.KValueMethod, 1);
  EXPECT_EQ(s.EnthalpyMethod, 1);
  EXPECT_EQ(s.Batch.MaxOpeTime, 10);
  EXPECT_EQ(s.Batch.DiffTime, 0.0001);
  EXPECT_EQ(s.Batch.SaveInterval, 0.001);
  EXPECT_EQ(s.Batch.TRefluxConvLimit, 0.0005);
  EXPECT_EQ(s.Batch.TotalFeed, 0);
}

TEST_F(BatchCaseTest, StillHoldupMixesBasesAsDesigned) {
  LoadBatchExample(s);
  s.Batch.HoldupBasis = 2;
  for (int i = 1; i <= 9; ++i) s.Batch.TrayHoldupInput[i][kHoldupKg] = 3;
  EXPECT_DOUBLE_EQ(DeriveStillHoldup(s), 100 - 27);
  EXPECT_DOUBLE_EQ(s.Batch.TrayHoldupInput[10][kHoldupKg], 73);
  EXPECT_DOUBLE_EQ(s.Batch.TrayHoldupInput[10][kHoldupKgmol], 87);
}

TEST_F(BatchCaseTest, ExampleFileLayoutAndRoundTrip) {
  EXPECT_FALSE(LoadBatchExample(s, 2));
  ASSERT_TRUE(LoadBatchExample(s));
  EXPECT_TRUE(CheckBatchGoCalc(s).ok);
  // The example's counts, methods, units, tank rows and Wilson matrix show in the layout below.
  EXPECT_DOUBLE_EQ(s.Batch.TRefluxQReb, ConvHeatToBase(s, 1000000));
  EXPECT_EQ(s.Batch.TrayHoldupInput[10][kHoldupKgmol], 87);
  EXPECT_EQ(s.Batch.TrayHoldupInput[1][kHoldupKgmol], 5);
  EXPECT_EQ(s.Comp.HLiqA[3], -485.52);
  EXPECT_EQ(s.Batch.GraphDivisions, 6);
  EXPECT_EQ(s.MemoLine[3], "Methanol - Ethanol -Water");
  s.Comp.CompPc[2] = 63.0;
  s.Batch.ReservedLong = 7;
  auto path = dir / "case.dat";
  WriteBatchCase(s, path);
  auto lines = Lines(ReadBytes(path));
  ASSERT_GT(lines.size(), 40u);
  EXPECT_EQ(lines[0], "\"Batch Distillastion Data\"");
  EXPECT_EQ(lines[11], "3,10,2,1,2,1,7,1,3,2,1");
  EXPECT_EQ(lines[13], "-1,2,5,10,0");
  EXPECT_EQ(lines[14], "1,-0.88,8,5,0");
  // CompPc twice.
  EXPECT_EQ(lines[29], "46.07,8.0449,1554.3,222.65,0,63,63,0,0");
  // Wilson: rows 1..NC-1 on one line, row NC one value a line (the first closing the line).
  EXPECT_EQ(lines[37], "1,1,1,1,1,0.829,0.382");
  EXPECT_EQ(lines[38], "0.999");
  EXPECT_EQ(lines[39], "1");
  EXPECT_EQ(lines[40], "0,0,0,0,0,0,0");
  EXPECT_EQ(lines.back(), "0.85");

  Prepared q;
  Prepare(q, dir.path());
  ResetBatchCase(q.s());
  ASSERT_TRUE(ReadBatchCase(q.s(), path));
  EXPECT_EQ(FormatBatchCase(q.s()), FormatBatchCase(s));
  EXPECT_EQ(q.s().Batch.NCAtRead, 3);
  EXPECT_EQ(q.s().Batch.NTrayAtRead, 10);
  EXPECT_EQ(q.s().Comp.CompPc[2], 63.0);
  EXPECT_EQ(q.s().Batch.ReservedLong, 7);
}

TEST_F(BatchCaseTest, BadFilesLeaveTheStateAsItWas) {
  LoadBatchExample(s);
  const std::string before = FormatBatchCase(s);
  {
    WriteBytes(dir / "wrong.dat", "\"Distillation Data\"\r\n");
    EXPECT_FALSE(ReadBatchCase(s, dir / "wrong.dat"));
    EXPECT_EQ(p.dialogs.messages.back(), "not Batch Distillation Data");
  }
  {
    std::string text = before.substr(0, before.size() / 2);
    WriteBytes(dir / "cut.dat", text);
    EXPECT_THROW(ReadBatchCase(s, dir / "cut.dat"), FileReadError);
  }
  {
    // A tank count of 5 has no place in the tank table.
    std::string text = before;
    text.replace(text.find("3,10,2,1,2,1,0,1,3,2,1"), 22, "3,10,2,1,2,1,0,1,3,2,5");
    WriteBytes(dir / "five.dat", text);
    EXPECT_NE(ReadErrorText([&] { ReadBatchCase(s, dir / "five.dat"); }).find("TankChangeCount"),
              std::string::npos);
  }
  EXPECT_THROW(ReadBatchCase(s, dir / "missing.dat"), FileReadError);
  EXPECT_EQ(FormatBatchCase(s), before);
}

TEST_F(BatchCaseTest, TowerSpecCheck) {
  ResetBatchCase(s);
  EXPECT_EQ(ApplyBatchTowerSpec(s, 201, 760, 770, 80), "Over max theoretical plates (200)");
  EXPECT_EQ(s.NTray, 0);
  s.LanguageFlag = 0;
  EXPECT_EQ(ApplyBatchTowerSpec(s, 201, 760, 770, 80), "最大理論段数(200)を越えています。");
  EXPECT_EQ(ApplyBatchTowerSpec(s, 12, 760, 770, 80), "");
  EXPECT_EQ(s.NTray, 12);
  EXPECT_EQ(s.Batch.TrayPressInput[1], 760);
  EXPECT_EQ(s.Batch.TrayPressInput[12], 770);
}

TEST_F(BatchCaseTest, ProductCheckMessagesInOrder) {
  LoadBatchExample(s);
  BatchProductInput in;
  in.opeType = 2;
  in.changeCount = 6;
  EXPECT_EQ(ApplyBatchProduct(s, in), "Over Max(5) Tank Change");
  in.changeCount = 5;
  EXPECT_NE(ApplyBatchProduct(s, in).find("at most 5 tanks"), std::string::npos);
  in.changeCount = 1;
  in.rows[1].refluxRatio = 0;
  EXPECT_EQ(ApplyBatchProduct(s, in), "Reflux Ration < 0");
  in.rows[1].refluxRatio = 3;
  in.rows[1].distillate = -1;
  EXPECT_EQ(ApplyBatchProduct(s, in), "Distillate < 0");
  in.rows[1].distillate = 4;
  in.rows[1].quantity = 100;  // not below the charge
  EXPECT_EQ(ApplyBatchProduct(s, in), "Distillate is negative or >= Feed rate(100)");
  in.rows[1].quantity = 3;
  in.rows[2].refluxRatio = 6;
  in.rows[2].distillate = 2;
  // The second row is the last: no condition is checked for it.
  EXPECT_EQ(ApplyBatchProduct(s, in), "");
  EXPECT_EQ(s.Batch.TankChangeKey[1], -1);
  EXPECT_EQ(s.Batch.TankChangeLimit[1], 3);
  EXPECT_EQ(s.Batch.TankOperation[2][kTankReflux], 6);
  // Component conditions.
  in.rows[1].byQuantity = false;
  in.rows[1].component = 4;
  EXPECT_EQ(ApplyBatchProduct(s, in), "Component No =<0 or Max Component");
  in.rows[1].component = 2;
  in.rows[1].fraction = 1;
  EXPECT_EQ(ApplyBatchProduct(s, in), "Composition =< 0 or >=1 ");
  in.rows[1].fraction = 0.3;
  in.rows[1].weightFraction = true;
  in.rows[1].greater = false;
  EXPECT_EQ(ApplyBatchProduct(s, in), "");
  EXPECT_EQ(s.Batch.TankChangeKey[1], 102);
  EXPECT_EQ(s.Batch.TankChangeLimit[1], -0.3);
  // Kg bound: sum MW z times the charge.
  in.opeType = 3;
  in.rows[1].byQuantity = true;
  in.rows[1].quantityUnit = 1;
  in.rows[1].quantity = 5000;
  in.rows[1].duty = -1;
  EXPECT_EQ(ApplyBatchProduct(s, in), "Reboiler Heat Duty < 0");
  in.rows[1].duty = 10;
  const double bound = (32.04 * 0.12 + 46.07 * 0.03 + 18.015 * 0.85) * 100;
  EXPECT_NE(ApplyBatchProduct(s, in).find("Feed rate("), std::string::npos);
  in.rows[1].quantity = bound - 1;
  EXPECT_EQ(ApplyBatchProduct(s, in), "");
  EXPECT_EQ(s.Batch.TankChangeKey[1], -2);
}

TEST_F(BatchCaseTest, GoCheckMessagesInOrder) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const struct {
    std::function<void(tervale::BatchCase&)> spoil;
    const char* message;
  } cases[] = {
      {[&](auto&) { s.NC = 0; }, "N.Comp or T.Plate does not input"},
      {[&](auto&) { s.EnthalpyMethod = 0; }, "K-Value or Enthalpy Method does not input"},
      {[&](auto&) { s.Comp.AntoineC[2] = 0; }, "Antoine Constants does not input"},
      {[](auto& b) { b.TotalFeed = 0; }, "Feed rate does not input"},
      {[](auto& b) { b.FeedComp[3] = 0; }, "Feed Composition doese not input"},
      {[](auto& b) {
         b.TrayHoldupInput[4] = {0, 0, 0};
       },
       "Tray holdup rate does not input"},
      {[](auto& b) { b.BottomPress = 0; }, "Pressure does not input"},
      {[](auto& b) { b.TRefluxQReb = 0; }, "Reboiler heat duty does not input"},
      {[](auto& b) { b.SaveInterval = 0; }, "Calculation condition does not input"},
      // A negative step or an end time that is no number would keep the run going for ever.
      {[](auto& b) { b.DiffTime = -0.0002; }, "Calculation condition must be positive numbers"},
      {[&](auto& b) { b.MaxOpeTime = nan; }, "Calculation condition must be positive numbers"},
      {[](auto& b) { b.SaveInterval = -0.002; }, "Calculation condition must be positive numbers"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    LoadBatchExample(s);
    c.spoil(s.Batch);
    auto r = CheckBatchGoCalc(s);
    EXPECT_FALSE(r.ok);
    ASSERT_FALSE(r.messages.empty());
    EXPECT_EQ(r.messages.back(), c.message);
  }
  // A continuation whose counts changed: the notice, then the checks go on.
  LoadBatchExample(s);
  s.Batch.ContinueFromTReflux = 1;
  s.Batch.NCAtRead = 3;
  s.Batch.NTrayAtRead = 9;
  auto r = CheckBatchGoCalc(s);
  EXPECT_TRUE(r.ok);
  EXPECT_EQ(r.messages,
            std::vector<std::string>{
                "not Equal N.Comp or T.Plate at total reflux data, calculate initial state"});
  EXPECT_EQ(s.Batch.ContinueFromTReflux, 0);
  EXPECT_EQ(s.Batch.QRebSet, s.Batch.TRefluxQReb);
}

TEST_F(BatchCaseTest, PressureProfileInterpolatesWithTheLargerDivisor) {
  LoadBatchExample(s);
  s.Batch.BottomPress = 1100;
  s.Batch.TrayPressInput[10] = 1100;
  s.Batch.TrayPressInput[5] = 1000;
  s.Batch.TrayPressInput[6] = 1010;  // side by side: nothing in between
  TrayArray P{};
  BatchPressureProfile(s, P);
  const double mmHg[] = {0, 760, 808, 856, 904, 1000, 1010, 1028, 1046, 1064, 1100};
  for (int i = 1; i <= 10; ++i) EXPECT_NEAR(ConvPressFromBase(s, P[i]), mmHg[i], 1e-9) << i;
}

TEST_F(BatchCaseTest, EntryScreensKeepTheDerivedFigures) {
  ResetBatchCase(s);
  EXPECT_EQ(BatchFeedScreenGuard(s), "No Component Name");
  EXPECT_EQ(BatchTrayScreenGuard(s), "T.Plate does not input");
  LoadBatchExample(s);
  EXPECT_EQ(BatchFeedScreenGuard(s), "");
  CompArray z{};
  z[1] = 0.2, z[2] = 0.1, z[3] = 0.7;
  ApplyBatchFeed(s, 120, z, 1);  // the Kg caption changes nothing
  EXPECT_EQ(s.Batch.TotalFeed, 120);
  EXPECT_EQ(s.Batch.TrayHoldupInput[10][kHoldupKgmol], 120 - 13);
  std::vector<BatchTrayRow> rows(10, BatchTrayRow{0, 2, 0});
  rows[0].press = 760;
  rows[9] = BatchTrayRow{780, 999, 4186.05};  // the still's hold-up is never taken
  ApplyBatchTray(s, 1, rows);
  EXPECT_EQ(s.Batch.TrayHoldupInput[10][kHoldupKgmol], 120 - 18);
  EXPECT_DOUBLE_EQ(s.Batch.TRefluxQReb, 1.0);  // Kcal: 4186.05 in the user's unit
  EXPECT_EQ(s.Batch.TrayPressInput[10], 780);
  BatchOperationInput op;
  op.duty = 2 * 4186.05;
  op.opeType = 2;
  ApplyBatchOperation(s, op);
  EXPECT_DOUBLE_EQ(s.Batch.TRefluxQReb, 2.0);
  EXPECT_DOUBLE_EQ(s.Batch.TrayHeat[10], 2.0);
  EXPECT_EQ(s.Batch.BatchOpeType, 2);
  op.opeType = 1;
  ApplyBatchOperation(s, op);
  EXPECT_EQ(s.Batch.BatchOpeType, 1);
}
