#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <fstream>
#include <iterator>
#include <thread>
#include <tuple>

#include "database/lookups.h"
#include "database/writers.h"
#include "db_fixture.h"

namespace tervale::db::testing {
namespace {

class WriterTest : public SeededDbTest {
 protected:
  // A pair the seed does not hold; Argon's constants as its second stored set, Bromine's new.
  static ParameterSaveCase NewWilsonCase(double l12 = 0.25, double l21 = 0.75) {
    ParameterSaveCase c;
    c.ComponentName = {"", "Argon", "Bromine"};
    c.AntoineA = {0, 6.85327, 7.1};
    c.AntoineB = {0, 349.3335, 1200.5};
    c.AntoineC = {0, 273.9, 220.25};
    c.VLETemperature = 40;
    c.VLEPressure = 760;
    c.WilsonLambda12 = l12;
    c.WilsonLambda21 = l21;
    return c;
  }
  SaveResult Save(ParameterSaveForm& f, const std::string& memo) {
    f.Memo = memo;
    return SaveParameters(*db_, *s_, f);
  }
  SaveResult LoadAndSave(const ParameterSaveCase& c, const std::string& memo = "test memo") {
    auto f = LoadParameterSave(*db_, *s_, c);
    EXPECT_FALSE(f.LoadFailed);
    ShowParameterSave(*s_, f);
    return Save(f, f.Memo.empty() ? memo : f.Memo);
  }
  RecordSet PairRows(const std::string& table = "Wilson Parameter") {
    return db_->Query(
        "SELECT * FROM [" + table +
        "] WHERE ([Name1] = 'Argon' and [Name2] = 'Bromine') or ([Name1] = 'Bromine' and "
        "[Name2] = 'Argon') ORDER BY [Index]");
  }
};

TEST_F(WriterTest, FirstEntryTakesIndexZeroWithItsAntoineRows) {
  auto f = LoadParameterSave(*db_, *s_, NewWilsonCase());
  EXPECT_EQ(std::tie(f.Title, f.Formula[1], f.ModeLabel, f.IndexLabel),
            std::make_tuple("Save Wilson Parameter", "Ar", "新規登録", "Data Index= 0"));
  // Argon's constants are the same three as its second set; Bromine has none; no pair yet.
  EXPECT_EQ(std::tie(f.AntoineKnown[1], f.AntoineIndexShown[1], f.AntoineLastIndex[1],
                     f.AntoineKnown[2], f.ParameterLastIndex, f.ParameterDuplicate),
            std::make_tuple(true, "1", 1, false, -1, false));

  const int antoineBefore = Count("AntoineConstant");
  auto r = Save(f, "first");
  EXPECT_EQ(std::tie(r.outcome, r.parameterIndex, r.antoineRowsAdded),
            std::make_tuple(SaveOutcome::Saved, 0, 1));
  EXPECT_EQ(Count("AntoineConstant"), antoineBefore + 1);
  auto rows = PairRows();
  ASSERT_EQ(rows.RecordCount(), 1);
  ExpectRow(rows, 0,
            {"Index", "Name1", "Formula2", "Lambda12", "temp", "press", "Memo", "Date_Create"},
            {0, "Argon", "Br2", 0.25, 40.0, Value{}, "first", Today()});

  auto br = db_->Query("SELECT * FROM [AntoineConstant] WHERE [Name] = 'Bromine' ORDER BY [Index]");
  ExpectRow(br, br.RecordCount() - 1, {"Index", "Equation Type", "BN", "Memo"},
            {f.AntoineLastIndex[2] + 1, 1, 1200.5, Value{}});

  const std::vector<std::string> expected = {"'Bromine' のAntoine定数が未登録です。",
                                             "'Bromine' のAntoine定数を登録しました。",
                                             "'Argon - Bromine' のWilson定数を保存しました。"};
  EXPECT_EQ(dialogs_.messages, expected);
}

TEST_F(WriterTest, ADuplicateIsThePairWithTheSameValuesExactly) {
  ASSERT_EQ(LoadAndSave(NewWilsonCase(), "the first").outcome, SaveOutcome::Saved);
  dialogs_.messages.clear();
  const int antoine = Count("AntoineConstant");
  // The same again: the warning, nothing written.
  auto f = LoadParameterSave(*db_, *s_, NewWilsonCase());
  EXPECT_TRUE(f.ParameterDuplicate);
  EXPECT_TRUE(f.AntoineKnown[2]);  // stored by the first save
  EXPECT_EQ(f.Memo, "the first");  // the duplicate's memo in the box
  // The label follows the last name order asked, the reversed one, which holds no row.
  EXPECT_EQ(f.ModeLabel, "新規登録");
  ShowParameterSave(*s_, f);
  auto r = SaveParameters(*db_, *s_, f);
  EXPECT_EQ(r.outcome, SaveOutcome::Duplicate);
  EXPECT_FALSE(r.parameterRowAdded);
  EXPECT_EQ(PairRows().RecordCount(), 1);
  EXPECT_EQ(Count("AntoineConstant"), antoine);
  EXPECT_EQ(dialogs_.messages,
            std::vector<std::string>{"すでに同じWilson Parameterが登録済み！！"});

  // Another value takes the next Index and no Antoine row.
  f = LoadParameterSave(*db_, *s_, NewWilsonCase(0.25, 0.76));
  EXPECT_FALSE(f.ParameterDuplicate);
  EXPECT_EQ(f.ParameterLastIndex, 0);
  EXPECT_EQ(f.IndexLabel, "Data Index= 1");
  r = Save(f, "second");
  EXPECT_EQ(std::tie(r.outcome, r.parameterIndex, r.antoineRowsAdded),
            std::make_tuple(SaveOutcome::Saved, 1, 0));
  // Exact comparison: the next double is another value.
  f = LoadParameterSave(*db_, *s_, NewWilsonCase(std::nextafter(0.25, 1.0), 0.75));
  EXPECT_FALSE(f.ParameterDuplicate);
  EXPECT_EQ(f.ParameterLastIndex, 1);
  EXPECT_TRUE(LoadParameterSave(*db_, *s_, NewWilsonCase(0.25, 0.75)).ParameterDuplicate);

  // The pair seen from Bromine: the names, their constants and the two values exchange.
  auto c = NewWilsonCase(0.75, 0.25);
  for (auto* a : {&c.AntoineA, &c.AntoineB, &c.AntoineC}) std::swap((*a)[1], (*a)[2]);
  std::swap(c.ComponentName[1], c.ComponentName[2]);
  f = LoadParameterSave(*db_, *s_, c);
  EXPECT_TRUE(f.ParameterDuplicate);
  EXPECT_EQ(f.ParameterLastIndex, 1);
  EXPECT_EQ(f.ModeLabel, "Parameter追加登録");
  // The same numbers in the same places, names reversed: not the same pair, and the Index
  // continues from the reversed rows.
  std::swap(c.WilsonLambda12, c.WilsonLambda21);
  f = LoadParameterSave(*db_, *s_, c);
  EXPECT_FALSE(f.ParameterDuplicate);
  r = Save(f, "reversed");
  ASSERT_EQ(r.outcome, SaveOutcome::Saved);
  EXPECT_EQ(r.parameterIndex, 2);
  auto rows = PairRows();
  ASSERT_EQ(rows.RecordCount(), 3);
  EXPECT_EQ(AsText(rows.Field(2, "Name1")), "Bromine");

  // A stored pair without an Index fails the load.
  db_->Execute("UPDATE [Wilson Parameter] SET [Index] = NULL WHERE [Name1] = 'Argon'");
  dialogs_.messages.clear();
  EXPECT_TRUE(LoadParameterSave(*db_, *s_, NewWilsonCase(0.5, 0.5)).LoadFailed);
  EXPECT_EQ(dialogs_.messages, std::vector<std::string>{"ERROR: DataBase ｴﾗｰ!!"});
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
  ASSERT_EQ(Save(f, "nrtl").outcome, SaveOutcome::Saved);
  EXPECT_EQ(dialogs_.messages.back(), "'Argon - Bromine' のN.R.T.L定数を保存しました。");
  auto rows = PairRows("NRTL Parameter");
  ASSERT_EQ(rows.RecordCount(), 1);
  ExpectRow(rows, 0, {"Alpha", "Tau21", "temp", "press"}, {0.3, -0.125, Value{}, 500.0});

  // The look-up finds it with that alpha, and the duplicate test sees it.
  s_->Bin.NrtlAlpha = 0.3;
  EXPECT_EQ(SearchPair(*db_, *s_, LookupKind::Nrtl, "Bromine", "Argon").Found.RecordCount(), 1);
  ShowParameterSave(*s_, LoadParameterSave(*db_, *s_, c));
  EXPECT_EQ(dialogs_.messages.back(), "すでに同じN.R.T.L Parameterが登録済み！！");
}

TEST_F(WriterTest, ChecksStopTheSaveWithItsMessages) {
  auto c = NewWilsonCase();
  c.ComponentName[2] = "Unobtainium";  // neither critical constants nor Antoine rows
  auto f = LoadParameterSave(*db_, *s_, c);
  EXPECT_EQ(std::tie(f.Formula[2], f.AntoineLastIndex[2]), std::make_tuple("", -1));
  // No (the question's default) ends the save.
  dialogs_.preparedAnswers = {Answer::No};
  EXPECT_EQ(Save(f, "m").outcome, SaveOutcome::Stopped);
  EXPECT_EQ(dialogs_.messages.back(),
            "Unobtainium が臨界定数Databaseに登録されていません。登録しますか？");
  // Yes opens the critical-constant form; the formula it holds comes back to the grid.
  dialogs_.preparedAnswers = {Answer::Yes};
  std::string askedName;
  auto form = [&](const std::string& name, const std::string& formula) {
    askedName = name;
    EXPECT_EQ(formula, "");
    return SaveCriticalConstant(*db_, *s_, {"Uo", name, {}}).Formula;
  };
  f.Memo = "";
  EXPECT_EQ(SaveParameters(*db_, *s_, f, form).outcome, SaveOutcome::Stopped);
  EXPECT_EQ(askedName, "Unobtainium");
  EXPECT_EQ(f.Formula[2], "Uo");
  EXPECT_EQ(dialogs_.messages.back(), "メモを入力して下さい。");
  // An empty formula is refused with the name in quotes.
  f.Formula[1] = "";
  EXPECT_EQ(Save(f, "m").outcome, SaveOutcome::Stopped);
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
  EXPECT_EQ(std::tie(c.ComponentName[2], c.AntoineA[2], c.TPType, c.VLEPressure, c.WilsonLambda12,
                     c.WilsonLambda21),
            std::make_tuple("Bromine", 6.8778, 1, 700.0, 0.5, 2.0));
  EXPECT_TRUE(IsWilsonCalc(c.CalcType));
  EXPECT_FALSE(IsWilsonCalc(4));
}

TEST_F(WriterTest, CriticalConstantIsNumberedByTheDatabase) {
  CriticalConstantEntry e{
      "C9H20O",
      "Test alcohol",
      {"1-2-3", "0", "144.25", "", "", "600.5", "25", "", "", "0.6", "", "entered"}};
  auto r = SaveCriticalConstant(*db_, *s_, e);
  EXPECT_EQ(std::tie(r.saved, r.No, r.Formula), std::make_tuple(true, 431, "C9H20O"));
  auto rs = db_->Query("SELECT * FROM [CriticalConstant] WHERE [Name] = 'Test alcohol'");
  ASSERT_EQ(rs.RecordCount(), 1);
  ExpectRow(rs, 0, {"Name-1", "MW", "Tm", "Tc", "No", "Date_Create"},
            {"1-2-3", 144.25, Value{}, 600.5, 431, Today()});
  e.Name = "Second";
  EXPECT_EQ(SaveCriticalConstant(*db_, *s_, e).No, 432);

  // Text in a number column: the database's error, nothing written.
  e.Name = "Bad";
  e.Fields[2] = "heavy";
  EXPECT_FALSE(SaveCriticalConstant(*db_, *s_, e).saved);
  EXPECT_EQ(dialogs_.messages.back().rfind("ERROR:\n", 0), 0u);
  EXPECT_NE(dialogs_.messages.back().find("MW"), std::string::npos);
  EXPECT_EQ(Count("CriticalConstant"), 432);
}

TEST_F(WriterTest, ReadOnlyFileReportsTheDatabasesErrorAndChangesNothing) {
  db_.reset();
  fs::permissions(file_, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  const std::string before = ReadBytes(file_);
  db_ = PropertyDatabase::Open(file_);
  auto f = LoadParameterSave(*db_, *s_, NewWilsonCase());
  ASSERT_FALSE(f.LoadFailed);
  auto r = Save(f, "m");
  EXPECT_EQ(std::tie(r.outcome, r.antoineRowsAdded, r.parameterRowAdded),
            std::make_tuple(SaveOutcome::Failed, 0, false));
  const std::string& msg = dialogs_.messages.back();
  EXPECT_EQ(msg.rfind("Save Wilson Parameter ERROR:\n", 0), 0u) << msg;
  EXPECT_NE(msg.find("readonly"), std::string::npos) << msg;
  EXPECT_FALSE(SaveCriticalConstant(*db_, *s_, {"X", "Y", {}}).saved);
  db_.reset();
  EXPECT_EQ(ReadBytes(file_), before);
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
    ASSERT_EQ(Save(f, "run " + std::to_string(k)).outcome, SaveOutcome::Saved);
  }
  done = true;
  reader.join();
  EXPECT_EQ(failures, 0);
  EXPECT_GT(reads, 1);
  auto rows = PairRows();
  ASSERT_EQ(rows.RecordCount(), 20);
  EXPECT_EQ(std::get<std::int64_t>(rows.Field(19, "Index")), 19);
}

TEST_F(WriterTest, AntoineSaveNumbersAfterTheLastAndRefusesTheSameConstants) {
  const int before = Count("AntoineConstant");
  AntoineSaveCase c;
  c.Formula = "Ar";
  c.Name = "Argon";
  c.A = 6.9;
  c.B = 350.25;
  c.C = 274.5;
  c.TempLow = -200;
  c.TempHigh = -150;
  auto r = SaveAntoineConstants(*db_, *s_, c);
  // Argon stands with Index 0 and 1
  EXPECT_EQ(std::tie(r.outcome, r.Index), std::make_tuple(SaveOutcome::Saved, 2));
  ASSERT_FALSE(dialogs_.messages.empty());
  EXPECT_EQ(dialogs_.messages.back(), "'Argon' のAntoine定数を保存しました。");
  auto rows = db_->Query("SELECT * FROM [AntoineConstant] WHERE [Name] = 'Argon' AND [Index] = 2");
  ASSERT_EQ(rows.RecordCount(), 1);
  EXPECT_EQ(AsNumber(rows.Field(0, "Equation Type")), 1.0);
  ExpectRow(rows, 0, {"TL", "TU", "Memo"}, {-200.0, -150.0, Value{}});

  // The same three constants again: the notice, nothing written.
  EXPECT_EQ(SaveAntoineConstants(*db_, *s_, c).outcome, SaveOutcome::Duplicate);
  EXPECT_EQ(dialogs_.messages.back(), "'Argon' はすでに同じデータがある。！！");
  EXPECT_EQ(Count("AntoineConstant"), before + 1);

  // A substance missing from the critical constants: No, the default, ends the save.
  c.Name = "Tervalium";
  c.Formula = "Tv";
  dialogs_.preparedAnswers.push_back(Answer::No);
  EXPECT_EQ(SaveAntoineConstants(*db_, *s_, c).outcome, SaveOutcome::Stopped);
  EXPECT_EQ(dialogs_.messages.back(),
            "Tervalium が臨界定数Databaseに登録されていません。登録しますか？");
  EXPECT_EQ(Count("AntoineConstant"), before + 1);
  // Yes opens the critical-constant form; a new name starts at Index 0.
  dialogs_.preparedAnswers.push_back(Answer::Yes);
  bool opened = false;
  r = SaveAntoineConstants(*db_, *s_, c, [&](const std::string& name, const std::string& f) {
    opened = name == "Tervalium" && f == "Tv";
    return std::string("Tv2");
  });
  EXPECT_TRUE(opened);
  EXPECT_EQ(std::tie(r.outcome, r.Index), std::make_tuple(SaveOutcome::Saved, 0));
  rows = db_->Query("SELECT * FROM [AntoineConstant] WHERE [Name] = 'Tervalium'");
  ASSERT_EQ(rows.RecordCount(), 1);
  EXPECT_EQ(AsText(rows.Field(0, "Formula")), "Tv2");
}

}  // namespace
}  // namespace tervale::db::testing
