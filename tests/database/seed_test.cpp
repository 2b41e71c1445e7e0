#include <gtest/gtest.h>

#include <fstream>
#include <tuple>

#include "database/csv_reader.h"
#include "database/lookups.h"
#include "db_fixture.h"

namespace tervale::db::testing {
namespace {

TEST(SeedCsv, QuotesNullsAndLineEnds) {
  auto rows = ParseCsv(
      "\xEF\xBB\xBF"
      "a,b,c\r\n"
      "1,\"x, y\",\r\n"
      "\"say \"\"hi\"\"\",\"\",\"two\nlines\"\n"
      "\n"
      "last,,end");
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(*rows[0][0], "a");
  ASSERT_EQ(rows[1].size(), 3u);
  EXPECT_EQ(*rows[1][1], "x, y");
  EXPECT_FALSE(rows[1][2].has_value());  // empty = Null
  EXPECT_EQ(*rows[2][0], "say \"hi\"");
  EXPECT_EQ(*rows[2][1], "");  // a quoted empty field is an empty text
  EXPECT_EQ(*rows[2][2], "two\nlines");
  EXPECT_FALSE(rows[3][1].has_value());
  EXPECT_EQ(*rows[3][2], "end");

  EXPECT_THROW(ParseCsv("a,\"never closed\n1,2\n"), FileReadError);
  try {
    ParseCsv("a,b\n\"x\"y,2\n", "f.csv");
    FAIL();
  } catch (const FileReadError& e) {
    EXPECT_EQ(e.file, "f.csv");
    EXPECT_EQ(e.line, 2);
  }
}

TEST(SeedBuild, EveryTableWithItsColumnsInOrder) {
  auto db = PropertyDatabase::Open(SeededDatabase());
  const std::pair<const char*, int> counts[] = {
      {"CriticalConstant", 430},   {"AntoineConstant", 613}, {"HeatCapacity", 428},
      {"EnthalpyCoefficent", 384}, {"LiquidDensity", 422},   {"Rk_Parameter", 430},
      {"Wilson Parameter", 264},   {"NRTL Parameter", 262},  {"Kij Parameter", 710}};
  for (auto [table, n] : counts) {
    auto rs = db->Query(std::string("SELECT count(*) FROM [") + table + "]");
    EXPECT_EQ(std::get<std::int64_t>(rs.rows[0][0]), n) << table;
  }
  // The parameter columns stand fifth and sixth, counted from 0.
  const std::tuple<const char*, size_t, const char*> columns[] = {
      {"Wilson Parameter", 5, "Lambda12"}, {"Wilson Parameter", 6, "Lambda21"},
      {"NRTL Parameter", 5, "Tau12"},      {"NRTL Parameter", 6, "Tau21"},
      {"CriticalConstant", 2, "Name-1"},   {"AntoineConstant", 3, "Equation Type"}};
  for (auto [table, at, name] : columns)
    EXPECT_EQ(db->Query(std::string("SELECT * FROM [") + table + "] LIMIT 1").columns[at], name);

  // Numbers read back exactly as written in the seed; Null stays Null; integers stay integers.
  auto m = db->Query(
      "SELECT [AN], [BN], [Index] FROM [AntoineConstant] WHERE [Name] = ? AND [Index] = 0",
      {std::string("Methanol")});
  ASSERT_EQ(m.RecordCount(), 1);
  ExpectRow(m, 0, {"AN", "BN", "Index"}, {8.07787, 1580.08, 0});
  auto co2 = db->Query("SELECT [Tb] FROM [CriticalConstant] WHERE [Name] = ?",
                       {std::string("Carbon dioxide")});
  ASSERT_EQ(co2.RecordCount(), 1);
  ExpectRow(co2, 0, {"Tb"}, {Value{}});
  // Text compares as Jet compares it: without regard to case.
  EXPECT_EQ(
      db->Query("SELECT * FROM [CriticalConstant] WHERE [Name] = ?", {std::string("METHANOL")})
          .RecordCount(),
      1);
}

TEST(SeedBuild, ABadSeedLeavesTheOldFile) {
  const ScratchDir dir("db_bad_seed");
  fs::path seed = dir.path() / "seed";
  fs::copy(fs::path(TERVALE_SOURCE_DIR) / "data" / "property-seed", seed);
  fs::path out = dir / "Masterd$.mde";
  BuildDatabaseFromSeed(seed, out);
  auto before = fs::file_size(out);
  {
    std::ofstream f(seed / "Kij_Parameter.csv", std::ios::app);
    f << "Methanol,Water,1,not a number,,,,memo\r\n";
  }
  try {
    BuildDatabaseFromSeed(seed, out);
    FAIL() << "a bad number must be refused";
  } catch (const FileReadError& e) {
    EXPECT_NE(std::string(e.what()).find("AKij"), std::string::npos);
    EXPECT_EQ(e.line, 712);
  }
  EXPECT_EQ(fs::file_size(out), before);
  EXPECT_EQ(PropertyDatabase::Open(out)->Query("SELECT * FROM [Kij Parameter]").RecordCount(), 710);
  {
    std::ofstream f(seed / "HeatCapacity.csv", std::ios::trunc);
    f << "Formula,Name,Index,CpA\r\n";
  }
  EXPECT_THROW(BuildDatabaseFromSeed(seed, out), FileReadError);
  fs::remove(seed / "HeatCapacity.csv");
  EXPECT_THROW(BuildDatabaseFromSeed(seed, out), FileReadError);
  EXPECT_FALSE(fs::exists(dir / "Masterd$.mde.building"));
}

class DatabaseFile : public SeededDbTest {};

TEST_F(DatabaseFile, MdbWinsOverMde) {
  const fs::path dir = dir_ / "programs";
  fs::create_directory(dir);
  EXPECT_EQ(ResolveDatabaseFile(dir), dir / "Masterd$.mde");  // neither exists: the .mde name
  std::ofstream(dir / "Masterd$.mde") << "x";
  EXPECT_EQ(ResolveDatabaseFile(dir), dir / "Masterd$.mde");
  std::ofstream(dir / "Masterd$.mdb") << "x";
  EXPECT_EQ(ResolveDatabaseFile(dir), dir / "Masterd$.mdb");
}

TEST_F(DatabaseFile, MissingUnreadableOrAFolderIsNamedAndTheProgramGoesOn) {
  const fs::path missing = dir_ / "none.mde", text = dir_ / "text.mde", folder = dir_ / "f.mde";
  std::ofstream(text) << "this is no database, only some text that is long enough";
  fs::create_directory(folder);
  for (const fs::path& p : {missing, text, folder}) {
    SCOPED_TRACE(p.string());
    s_->DatabaseFile = p.string();
    dialogs_.messages.clear();
    EXPECT_EQ(OpenPropertyDatabase(*s_), nullptr);
    ASSERT_EQ(dialogs_.messages.size(), 1u);
    EXPECT_NE(dialogs_.messages[0].find(p.string()), std::string::npos);
  }
  EXPECT_FALSE(fs::exists(missing));  // never created by a look-up
}

}  // namespace
}  // namespace tervale::db::testing
