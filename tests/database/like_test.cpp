#include <gtest/gtest.h>

#include <vector>

#include "database/jet_like.h"
#include "db_fixture.h"

namespace tervale::db::testing {
namespace {

TEST(JetLike, WildcardsSetsAndCase) {
  const struct {
    const char* pattern;
    std::vector<const char*> matches, misses;
  } cases[] = {{"Meth*", {"Methanol", "Meth"}, {"Ethanol"}},  // * any run, also none
               {"*", {"", "anything at all"}, {}},
               {"*anol", {"Methanol"}, {}},
               {"a*b*c", {"aXbYbZc"}, {"abcb"}},
               {"W?ter", {"Water"}, {"Wter", "Waater"}},  // ? exactly one character
               {"C#H#", {"C6H6"}, {}},                    // # one digit, full-width ones too
               {"C#", {"C１"}, {"CX"}},
               {"[abc]*", {"Benzene"}, {}},  // sets, ranges, negation
               {"[!abc]*", {"Water"}, {"Acetone"}},
               {"[a-c]cetone", {"Acetone"}, {}},
               {"[d-z]cetone", {}, {"Acetone"}},
               {"[!0-9]*", {"Xylene"}, {"1-Butanol"}},
               {"[[]x", {"[x"}, {}},  // the special characters stand for themselves inside a set
               {"a[*]b", {"a*b"}, {"axb"}},
               {"[?]", {"?"}, {}},
               {"[#]", {"#"}, {"1"}},
               {"[ab", {"[ab"}, {}},            // an unclosed set is plain text
               {"a[]b", {"ab"}, {}},            // an empty set takes no character
               {"METHANOL", {"methanol"}, {}},  // case: ASCII and the full-width Latin letters
               {"ＭＥＴＨ*", {"ｍｅｔｈａｎｏｌ"}, {"methanol"}},  // full-width is not half-width
               {"水*", {"水素"}, {}},  // other scripts compare as they are
               {"?素", {"水素"}, {}},
               {"水", {}, {"氷"}},
               {"x\"; DROP", {"X\"; drop"}, {}}};  // quotes and semicolons are plain characters
  for (const auto& c : cases) {
    for (const char* text : c.matches) EXPECT_TRUE(JetLike(c.pattern, text)) << c.pattern << text;
    for (const char* text : c.misses) EXPECT_FALSE(JetLike(c.pattern, text)) << c.pattern << text;
  }
}

TEST_F(SeededDbTest, LikeIsTheDatabasesLikeFunction) {
  // Jet, not SQL: % and _ are plain characters ("*" listing a whole table: see the look-ups).
  auto r = db_->Query(
      "SELECT ? Like ?, ? Like ?, ? Like ?, ? Like ?, NULL Like ?",
      {std::string("WATER"), std::string("w?ter"), std::string("C2H6O"), std::string("C#H#O"),
       std::string("x"), std::string("%"), std::string("x"), std::string("_"), std::string("*")});
  const Value yes = std::int64_t{1}, no = std::int64_t{0};
  EXPECT_EQ(r.rows[0], (std::vector<Value>{yes, yes, no, no, Value{}}));
}

}  // namespace
}  // namespace tervale::db::testing
