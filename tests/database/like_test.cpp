#include <gtest/gtest.h>

#include "database/jet_like.h"
#include "db_fixture.h"

namespace tervale::db::testing {
namespace {

TEST(JetLike, WildcardsSetsAndCase) {
  // * any run, also none
  EXPECT_TRUE(JetLike("Meth*", "Methanol"));
  EXPECT_TRUE(JetLike("Meth*", "Meth"));
  EXPECT_TRUE(JetLike("*", ""));
  EXPECT_TRUE(JetLike("*", "anything at all"));
  EXPECT_FALSE(JetLike("Meth*", "Ethanol"));
  EXPECT_TRUE(JetLike("*anol", "Methanol"));
  EXPECT_TRUE(JetLike("a*b*c", "aXbYbZc"));
  EXPECT_FALSE(JetLike("a*b*c", "abcb"));
  // ? exactly one character
  EXPECT_TRUE(JetLike("W?ter", "Water"));
  EXPECT_FALSE(JetLike("W?ter", "Wter"));
  EXPECT_FALSE(JetLike("W?ter", "Waater"));
  // # one digit
  EXPECT_TRUE(JetLike("C#H#", "C6H6"));
  EXPECT_FALSE(JetLike("C#", "CX"));
  EXPECT_TRUE(JetLike("C#", "C１"));  // full-width digit
  // sets, ranges, negation
  EXPECT_TRUE(JetLike("[abc]*", "Benzene"));
  EXPECT_FALSE(JetLike("[!abc]*", "Acetone"));
  EXPECT_TRUE(JetLike("[!abc]*", "Water"));
  EXPECT_TRUE(JetLike("[a-c]cetone", "Acetone"));
  EXPECT_FALSE(JetLike("[d-z]cetone", "Acetone"));
  EXPECT_TRUE(JetLike("[!0-9]*", "Xylene"));
  EXPECT_FALSE(JetLike("[!0-9]*", "1-Butanol"));
  // the special characters stand for themselves inside a set
  EXPECT_TRUE(JetLike("[[]x", "[x"));
  EXPECT_TRUE(JetLike("a[*]b", "a*b"));
  EXPECT_FALSE(JetLike("a[*]b", "axb"));
  EXPECT_TRUE(JetLike("[?]", "?"));
  EXPECT_TRUE(JetLike("[#]", "#"));
  EXPECT_FALSE(JetLike("[#]", "1"));
  // an unclosed set is plain text; an empty set takes no character
  EXPECT_TRUE(JetLike("[ab", "[ab"));
  EXPECT_TRUE(JetLike("a[]b", "ab"));
  // case: ASCII and the full-width Latin letters
  EXPECT_TRUE(JetLike("METHANOL", "methanol"));
  EXPECT_TRUE(JetLike("ＭＥＴＨ*", "ｍｅｔｈａｎｏｌ"));
  EXPECT_FALSE(JetLike("ＭＥＴＨ*", "methanol"));  // full-width is not half-width
  // other scripts compare as they are
  EXPECT_TRUE(JetLike("水*", "水素"));
  EXPECT_TRUE(JetLike("?素", "水素"));
  EXPECT_FALSE(JetLike("水", "氷"));
  // quotes and semicolons are plain characters
  EXPECT_TRUE(JetLike("x\"; DROP", "X\"; drop"));
}

TEST_F(SeededDbTest, LikeIsTheDatabasesLikeFunction) {
  // "*" lists a whole table.
  auto all = db_->Query("SELECT * FROM [CriticalConstant] WHERE [Name] Like ?", {std::string("*")});
  EXPECT_EQ(all.RecordCount(), Count("CriticalConstant"));
  EXPECT_EQ(all.RecordCount(), 430);
  // Jet, not SQL: % and _ are plain characters.
  EXPECT_EQ(db_->Query("SELECT * FROM [CriticalConstant] WHERE [Name] Like ?", {std::string("%")})
                .RecordCount(),
            0);
  auto r = db_->Query("SELECT ? Like ?, ? Like ?, NULL Like ?",
                      {std::string("WATER"), std::string("w?ter"), std::string("C2H6O"),
                       std::string("C#H#O"), std::string("*")});
  EXPECT_EQ(std::get<std::int64_t>(r.rows[0][0]), 1);
  EXPECT_EQ(std::get<std::int64_t>(r.rows[0][1]), 1);
  EXPECT_TRUE(IsNull(r.rows[0][2]));
}

}  // namespace
}  // namespace tervale::db::testing
