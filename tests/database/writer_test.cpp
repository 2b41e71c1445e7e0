#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <fstream>
#include <sstream>
#include <thread>

#include "database/lookups.h"
#include "database/writers.h"
#include "db_fixture.h"

namespace tervale::db::testing {
namespace {

class WriterTest : public SeededDbTest {
 protected:
  // A pair the seed does not hold; Argon's constants as its second stored set, Bromine's new.
  ParameterSaveCase NewWilsonCase(double l12 = 0.25, double l21 = 0.75) {
    ParameterSaveCase c;
    c.CalcType = 1;
    c.ComponentName[1] = "Argon";
    c.ComponentName[2] = "Bromine";
    c.AntoineA[1] = 6.85327;
    c.AntoineB[1] = 349.3335;
    c.AntoineC[1] = 273.9;
    c.AntoineA[2] = 7.1;
    c.AntoineB[2] = 1200.5;
    c.AntoineC[2] = 220.25;
    c.TPType = 0;
    c.VLETemperature = 40;
    c.VLEPressure = 760;
    c.WilsonLambda12 = l12;
    c.WilsonLambda21 = l21;
    return c;
  }
  SaveResult LoadAndSave(const ParameterSaveCase& c, const std::string& memo = "test memo") {
    auto f = LoadParameterSave(*db_, *s_, c);
    EXPECT_FALSE(f.LoadFailed);
    ShowParameterSave(*s_, f);
    if (f.Memo.empty()) f.Memo = memo;
    return SaveParameters(*db_, *s_, f);
  }
  RecordSet PairRows(const std::string& table = "Wilson Parameter") {
    return db_->Query(
        "SELECT * FROM [" + table +
        "] WHERE ([Name1] = 'Argon' and [Name2] = 'Bromine') or ([Name1] = 'Bromine' and "
        "[Name2] = 'Argon') ORDER BY [Index]");
  }
};

TEST_F(WriterTest, FirstEntryTakesIndexZeroWithItsAntoineRows) {
  auto c = NewWilsonCase();
  auto f = LoadParameterSave(*db_, *s_, c);
  EXPECT_EQ(f.Title, "Save Wilson Parameter");
  EXPECT_TRUE(f.AntoineKnown[1]);  // the same three constants as Argon's second set
  EXPECT_EQ(f.AntoineIndexShown[1], "1");
  EXPECT_EQ(f.AntoineLastIndex[1], 1);
  EXPECT_FALSE(f.AntoineKnown[2]);
  EXPECT_EQ(f.Formula[1], "Ar");
  EXPECT_EQ(f.ParameterLastIndex, -1);
  EXPECT_FALSE(f.ParameterDuplicate);
  EXPECT_EQ(f.ModeLabel, "新規登録");
  EXPECT_EQ(f.IndexLabel, "Data Index= 0");

  const int antoineBefore = Count("AntoineConstant");
  f.Memo = "first";
  auto r = SaveParameters(*db_, *s_, f);
  ASSERT_EQ(r.outcome, SaveOutcome::Saved);
  EXPECT_EQ(r.parameterIndex, 0);
  EXPECT_EQ(r.antoineRowsAdded, 1);
  EXPECT_EQ(Count("AntoineConstant"), antoineBefore + 1);
  auto rows = PairRows();
  ASSERT_EQ(rows.RecordCount(), 1);
  EXPECT_EQ(std::get<std::int64_t>(rows.Field(0, "Index")), 0);
  EXPECT_EQ(AsText(rows.Field(0, "Name1")), "Argon");
  EXPECT_EQ(AsText(rows.Field(0, "Formula2")), "Br2");
  EXPECT_EQ(std::get<double>(rows.Field(0, "Lambda12")), 0.25);
  EXPECT_EQ(std::get<double>(rows.Field(0, "temp")), 40.0);
  EXPECT_TRUE(IsNull(rows.Field(0, "press")));
  EXPECT_EQ(AsText(rows.Field(0, "Memo")), "first");
  EXPECT_EQ(AsText(rows.Field(0, "Date_Create")), Today());

  auto br = db_->Query("SELECT * FROM [AntoineConstant] WHERE [Name] = 'Bromine' ORDER BY [Index]");
  int n = br.RecordCount();
  EXPECT_EQ(std::get<std::int64_t>(br.Field(n - 1, "Index")), f.AntoineLastIndex[2] + 1);
  EXPECT_EQ(std::get<std::int64_t>(br.Field(n - 1, "Equation Type")), 1);
  EXPECT_EQ(std::get<double>(br.Field(n - 1, "BN")), 1200.5);
  EXPECT_TRUE(IsNull(br.Field(n - 1, "Memo")));

  const std::vector<std::string> expected = {"'Bromine' のAntoine定数が未登録です。",
                                             "'Bromine' のAntoine定数を登録しました。",
                                             "'Argon - Bromine' のWilson定数を保存しました。"};
  EXPECT_EQ(dialogs_.messages, expected);
}

TEST_F(WriterTest, SameParametersTwiceWarnAndWriteNothing) {
  ASSERT_EQ(LoadAndSave(NewWilsonCase(), "the first").outcome, SaveOutcome::Saved);
  dialogs_.messages.clear();
  const int antoine = Count("AntoineConstant");

  auto f = LoadParameterSave(*db_, *s_, NewWilsonCase());
  EXPECT_TRUE(f.ParameterDuplicate);
  EXPECT_TRUE(f.AntoineKnown[2]);  // stored by the first save
  EXPECT_EQ(f.Memo, "the first");  // the duplicate's memo in the box
  // The label follows the last name order asked, the reversed one, which holds no row.
  EXPECT_EQ(f.ModeLabel, "新規登録");
  ShowParameterSave(*s_, f);
  ASSERT_EQ(dialogs_.messages.size(), 1u);
  EXPECT_EQ(dialogs_.messages[0], "すでに同じWilson Parameterが登録済み！！");
  auto r = SaveParameters(*db_, *s_, f);
  EXPECT_EQ(r.outcome, SaveOutcome::Duplicate);
  EXPECT_FALSE(r.parameterRowAdded);
  EXPECT_EQ(PairRows().RecordCount(), 1);
  EXPECT_EQ(Count("AntoineConstant"), antoine);
  EXPECT_EQ(dialogs_.messages.size(), 1u);
}

TEST_F(WriterTest, AnotherValueTakesTheNextIndexAndRoundedIsNotTheSame) {
  ASSERT_EQ(LoadAndSave(NewWilsonCase(0.25, 0.75)).outcome, SaveOutcome::Saved);
  auto f = LoadParameterSave(*db_, *s_, NewWilsonCase(0.25, 0.76));
  EXPECT_FALSE(f.ParameterDuplicate);
  EXPECT_EQ(f.ParameterLastIndex, 0);
  EXPECT_EQ(f.IndexLabel, "Data Index= 1");
  f.Memo = "second";
  auto r = SaveParameters(*db_, *s_, f);
  EXPECT_EQ(r.outcome, SaveOutcome::Saved);
  EXPECT_EQ(r.parameterIndex, 1);
  EXPECT_EQ(r.antoineRowsAdded, 0);

  // Exact comparison: the next double is another value.
  auto g = LoadParameterSave(*db_, *s_, NewWilsonCase(std::nextafter(0.25, 1.0), 0.75));
  EXPECT_FALSE(g.ParameterDuplicate);
  EXPECT_EQ(g.ParameterLastIndex, 1);
  auto h = LoadParameterSave(*db_, *s_, NewWilsonCase(0.25, 0.75));
  EXPECT_TRUE(h.ParameterDuplicate);
}

TEST_F(WriterTest, ReversedPairWithTheSameValuesIsADuplicate) {
  ASSERT_EQ(LoadAndSave(NewWilsonCase(0.25, 0.75)).outcome, SaveOutcome::Saved);
  auto c = NewWilsonCase();
  std::swap(c.ComponentName[1], c.ComponentName[2]);
  std::swap(c.AntoineA[1], c.AntoineA[2]);
  std::swap(c.AntoineB[1], c.AntoineB[2]);
  std::swap(c.AntoineC[1], c.AntoineC[2]);
  // The pair seen from Bromine: the two values exchange.
  c.WilsonLambda12 = 0.75;
  c.WilsonLambda21 = 0.25;
  auto f = LoadParameterSave(*db_, *s_, c);
  EXPECT_TRUE(f.ParameterDuplicate);
  EXPECT_EQ(f.ParameterLastIndex, 0);
  EXPECT_EQ(f.ModeLabel, "Parameter追加登録");
  // The same numbers in the same places, names reversed: not the same pair, and the Index
  // continues from the reversed rows.
  c.WilsonLambda12 = 0.25;
  c.WilsonLambda21 = 0.75;
  auto g = LoadParameterSave(*db_, *s_, c);
  EXPECT_FALSE(g.ParameterDuplicate);
  g.Memo = "reversed";
  auto r = SaveParameters(*db_, *s_, g);
  ASSERT_EQ(r.outcome, SaveOutcome::Saved);
  EXPECT_EQ(r.parameterIndex, 1);
  auto rows = PairRows();
  ASSERT_EQ(rows.RecordCount(), 2);
  EXPECT_EQ(AsText(rows.Field(1, "Name1")), "Bromine");
}

TEST_F(WriterTest, NrtlStoresAlphaAndPressure) {
  auto c = NewWilsonCase();
  c.CalcType = 4;
  c.NrtlTau12 = 0.5;
  c.NrtlTau21 = -0.125;
  c.NrtlAlpha = 0.3;
  c.TPType = 1;
  c.VLEPressure = 500;
  auto f = LoadParameterSave(*db_, *s_, c);
  EXPECT_EQ(f.Title, "Save N.R.T.L. Parameter");
  f.Memo = "nrtl";
  ASSERT_EQ(SaveParameters(*db_, *s_, f).outcome, SaveOutcome::Saved);
  EXPECT_EQ(dialogs_.messages.back(), "'Argon - Bromine' のN.R.T.L定数を保存しました。");
  auto rows = PairRows("NRTL Parameter");
  ASSERT_EQ(rows.RecordCount(), 1);
  EXPECT_EQ(std::get<double>(rows.Field(0, "Alpha")), 0.3);
  EXPECT_EQ(std::get<double>(rows.Field(0, "Tau21")), -0.125);
  EXPECT_TRUE(IsNull(rows.Field(0, "temp")));
  EXPECT_EQ(std::get<double>(rows.Field(0, "press")), 500.0);

  // The look-up finds it with that alpha, and the duplicate test sees it.
  s_->Bin.NrtlAlpha = 0.3;
  EXPECT_EQ(SearchPair(*db_, *s_, LookupKind::Nrtl, "Bromine", "Argon").Found.RecordCount(), 1);
  dialogs_.messages.clear();
  auto g = LoadParameterSave(*db_, *s_, c);
  ShowParameterSave(*s_, g);
  EXPECT_EQ(dialogs_.messages.back(), "すでに同じN.R.T.L Parameterが登録済み！！");
}

TEST_F(WriterTest, ChecksStopTheSaveWithItsMessages) {
  auto c = NewWilsonCase();
  c.ComponentName[2] = "Unobtainium";  // neither critical constants nor Antoine rows
  auto f = LoadParameterSave(*db_, *s_, c);
  EXPECT_EQ(f.Formula[2], "");
  EXPECT_EQ(f.AntoineLastIndex[2], -1);
  f.Memo = "m";
  // No (the question's default) ends the save.
  dialogs_.preparedAnswers = {Answer::No};
  EXPECT_EQ(SaveParameters(*db_, *s_, f).outcome, SaveOutcome::Stopped);
  EXPECT_EQ(dialogs_.messages.back(),
            "Unobtainium が臨界定数Databaseに登録されていません。登録しますか？");
  // Yes opens the critical-constant form; the formula it holds comes back to the grid.
  dialogs_.preparedAnswers = {Answer::Yes};
  std::string askedName;
  auto form = [&](const std::string& name, const std::string& formula) {
    askedName = name;
    EXPECT_EQ(formula, "");
    CriticalConstantEntry e;
    e.Formula = "Uo";
    e.Name = name;
    return SaveCriticalConstant(*db_, *s_, e).Formula;
  };
  f.Memo = "";
  EXPECT_EQ(SaveParameters(*db_, *s_, f, form).outcome, SaveOutcome::Stopped);
  EXPECT_EQ(askedName, "Unobtainium");
  EXPECT_EQ(f.Formula[2], "Uo");
  EXPECT_EQ(dialogs_.messages.back(), "メモを入力して下さい。");
  // An empty formula is refused with the name in quotes.
  f.Formula[1] = "";
  f.Memo = "m";
  EXPECT_EQ(SaveParameters(*db_, *s_, f).outcome, SaveOutcome::Stopped);
  EXPECT_EQ(dialogs_.messages.back(), "'Argon' の化学式を入力して下さい。");
  EXPECT_EQ(PairRows().RecordCount(), 0);
  f.Formula[1] = "Ar";
  EXPECT_EQ(SaveParameters(*db_, *s_, f).outcome, SaveOutcome::Saved);
}

TEST_F(WriterTest, TheEstimationCaseIsWhatASaveStores) {
  s_->VLE.ComponentName[1] = "Argon";
  s_->VLE.ComponentName[2] = "Bromine";
  s_->VLE.AntoineA[2] = 6.8778;
  s_->VLE.CalcType = 3;
  s_->VLE.TPType = 1;
  s_->VLE.VLEPressure = 700;
  s_->VLE.WilsonLambda12 = 0.5;
  s_->VLE.WilsonLambda21 = 2;
  auto c = ParameterSaveCaseFrom(s_->VLE);
  EXPECT_EQ(c.ComponentName[2], "Bromine");
  EXPECT_EQ(c.AntoineA[2], 6.8778);
  EXPECT_TRUE(IsWilsonCalc(c.CalcType));
  EXPECT_EQ(c.TPType, 1);
  EXPECT_EQ(c.VLEPressure, 700.0);
  EXPECT_EQ(c.WilsonLambda21, 2.0);
  EXPECT_FALSE(IsWilsonCalc(4));
}

TEST_F(WriterTest, CriticalConstantIsNumberedByTheDatabase) {
  CriticalConstantEntry e;
  e.Formula = "C9H20O";
  e.Name = "Test alcohol";
  e.Fields = {"1-2-3", "0", "144.25", "", "", "600.5", "25", "", "", "0.6", "", "entered"};
  auto r = SaveCriticalConstant(*db_, *s_, e);
  ASSERT_TRUE(r.saved);
  EXPECT_EQ(r.No, 431);
  EXPECT_EQ(r.Formula, "C9H20O");
  auto rs = db_->Query("SELECT * FROM [CriticalConstant] WHERE [Name] = 'Test alcohol'");
  ASSERT_EQ(rs.RecordCount(), 1);
  EXPECT_EQ(AsText(rs.Field(0, "Name-1")), "1-2-3");
  EXPECT_EQ(std::get<double>(rs.Field(0, "MW")), 144.25);
  EXPECT_TRUE(IsNull(rs.Field(0, "Tm")));
  EXPECT_EQ(std::get<double>(rs.Field(0, "Tc")), 600.5);
  EXPECT_EQ(std::get<std::int64_t>(rs.Field(0, "No")), 431);
  EXPECT_EQ(AsText(rs.Field(0, "Date_Create")), Today());
  e.Name = "Second";
  EXPECT_EQ(SaveCriticalConstant(*db_, *s_, e).No, 432);

  // Text in a number column: the database's error, nothing written.
  e.Name = "Bad";
  e.Fields[2] = "heavy";
  auto bad = SaveCriticalConstant(*db_, *s_, e);
  EXPECT_FALSE(bad.saved);
  EXPECT_EQ(dialogs_.messages.back().rfind("ERROR:\n", 0), 0u);
  EXPECT_NE(dialogs_.messages.back().find("MW"), std::string::npos);
  EXPECT_EQ(Count("CriticalConstant"), 432);
}

std::string FileBytes(const fs::path& p) {
  std::ifstream in(p, std::ios::binary);
  std::ostringstream b;
  b << in.rdbuf();
  return b.str();
}

TEST_F(WriterTest, ReadOnlyFileReportsTheDatabasesErrorAndChangesNothing) {
  db_.reset();
  fs::permissions(file_, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  const std::string before = FileBytes(file_);
  db_ = PropertyDatabase::Open(file_);
  auto f = LoadParameterSave(*db_, *s_, NewWilsonCase());
  ASSERT_FALSE(f.LoadFailed);
  f.Memo = "m";
  auto r = SaveParameters(*db_, *s_, f);
  EXPECT_EQ(r.outcome, SaveOutcome::Failed);
  EXPECT_EQ(r.antoineRowsAdded, 0);
  EXPECT_FALSE(r.parameterRowAdded);
  const std::string& msg = dialogs_.messages.back();
  EXPECT_EQ(msg.rfind("Save Wilson Parameter ERROR:\n", 0), 0u) << msg;
  EXPECT_NE(msg.find("readonly"), std::string::npos) << msg;
  CriticalConstantEntry e;
  e.Formula = "X";
  e.Name = "Y";
  EXPECT_FALSE(SaveCriticalConstant(*db_, *s_, e).saved);
  db_.reset();
  EXPECT_EQ(FileBytes(file_), before);
  EXPECT_FALSE(fs::exists(fs::path(file_.string() + "-journal")));
}

TEST_F(WriterTest, ReadersWhileSavesRunSeeOnlyWholeRows) {
  std::atomic<bool> done{false};
  std::atomic<int> reads{0}, failures{0};
  std::thread reader([&] {
    auto rdb = PropertyDatabase::Open(file_);
    do {
      try {
        auto rs = BrowsePairQuery(*rdb, "Wilson Parameter", "Argon", "");
        for (int r = 0; r < rs.RecordCount(); ++r) {
          // every row complete: its memo and both parameters present
          if (IsNull(rs.Field(r, "Lambda12")) || IsNull(rs.Field(r, "Lambda21")) ||
              IsNull(rs.Field(r, "Memo")))
            ++failures;
        }
        ++reads;
      } catch (const DatabaseError&) {
        ++failures;
      }
    } while (!done);
  });
  // The saves begin once the reader is reading.
  while (reads == 0 && failures == 0) std::this_thread::yield();
  for (int k = 0; k < 20; ++k) {
    auto f = LoadParameterSave(*db_, *s_, NewWilsonCase(0.25, 1.0 + k));
    f.Memo = "run " + std::to_string(k);
    ASSERT_EQ(SaveParameters(*db_, *s_, f).outcome, SaveOutcome::Saved);
  }
  done = true;
  reader.join();
  EXPECT_EQ(failures, 0);
  EXPECT_GT(reads, 1);
  auto rows = PairRows();
  ASSERT_EQ(rows.RecordCount(), 20);
  EXPECT_EQ(std::get<std::int64_t>(rows.Field(19, "Index")), 19);
}

}  // namespace
}  // namespace tervale::db::testing
