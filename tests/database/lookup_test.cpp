#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <tuple>

#include "database/lookups.h"
#include "db_fixture.h"

namespace tervale::db::testing {
namespace {

class LookupTest : public SeededDbTest {
 protected:
  // Shows the look-up from `grid` and presses OK, on list row `row` when it is given.
  LookupDialog ShowAndOk(LookupKind kind, CallerGrid& grid, int row = 0) {
    auto d = IsPairLookup(kind) ? ShowPairLookup(*db_, *s_, kind, grid)
                                : ShowSubstanceLookup(*db_, *s_, kind, grid);
    if (row) d.SelectedRow = row;
    EXPECT_EQ(LookupOk(*db_, *s_, d, grid), OkResult::Closed);
    return d;
  }
  static CallerGrid Grid(int row, int col, std::map<std::pair<int, int>, std::string> cells = {}) {
    CallerGrid grid;
    grid.ActiveRow = row;
    grid.ActiveCol = col;
    grid.Cells = std::move(cells);
    return grid;
  }
  void Names(const char* first, const char* second) {
    s_->Comp.CompName[1] = first;
    s_->Comp.CompName[2] = second;
  }
};

TEST_F(LookupTest, AntoineSearchFallsBackToTheOtherNameCellAndFillsTheRow) {
  // A blank formula cell: the name in column 2 is searched.
  auto grid = Grid(2, 1, {{{2, 2}, "Methanol"}});
  EXPECT_EQ(LookupSearchWord(grid), "Methanol");
  auto d = ShowSubstanceLookup(*db_, *s_, LookupKind::Antoine, grid);
  ASSERT_EQ(d.Found.RecordCount(), 2);
  // the first row chosen, its name and Equation Type listed
  EXPECT_EQ(std::make_tuple(d.SelectedRow, d.Label, d.ListCell(1, 1), d.ListCell(1, 3)),
            std::make_tuple(1, "", "Methanol", "1"));

  // The estimation of Antoine constants: formula, name and the three constants, painted.
  s_->ActiveProgram = 3;
  ShowAndOk(LookupKind::Antoine, grid, 2);
  EXPECT_EQ(std::tie(s_->Comp.AntoineA[2], s_->Comp.AntoineB[2], s_->Comp.AntoineC[2]),
            std::make_tuple(8.01761, 1544.047, 235.987));
  EXPECT_EQ(std::make_tuple(grid.Text(2, 1), grid.Text(2, 3)), std::make_tuple("CH4O", "8.01761"));
  EXPECT_EQ(grid.PaintedBlackOnWhite.size(), 3u);

  // Any other program: columns 1 to 3 get the constants. The active cell is empty, column 1
  // holds the name.
  s_->ActiveProgram = 0;
  auto kvalue = Grid(1, 2, {{{1, 1}, "methanol"}});
  EXPECT_EQ(ShowAndOk(LookupKind::Antoine, kvalue).Found.RecordCount(), 2);
  EXPECT_EQ(s_->Comp.AntoineA[1], 8.07787);
  EXPECT_EQ(std::make_tuple(kvalue.Text(1, 1), kvalue.Text(1, 2), kvalue.Text(1, 3)),
            std::make_tuple("8.07787", "1580.08", "239.5"));
  EXPECT_TRUE(dialogs_.messages.empty());
}

TEST_F(LookupTest, StarListsAllAndNothingFoundLeavesNoChoice) {
  EXPECT_EQ(SearchSubstance(*db_, *s_, LookupKind::Component, "*").Found.RecordCount(), 430);
  auto byFormula = SearchSubstance(*db_, *s_, LookupKind::Component, "CH4O");
  ASSERT_EQ(byFormula.Found.RecordCount(), 1);
  EXPECT_EQ(AsText(byFormula.Found.Field(0, "Name")), "Methanol");

  auto none = SearchSubstance(*db_, *s_, LookupKind::Antoine, "Unobtainium");
  EXPECT_EQ(std::tie(none.SelectedRow, none.Label),
            std::make_tuple(0, "Antoine's constants does not exist in Data Base"));
  CallerGrid grid;
  EXPECT_EQ(LookupOk(*db_, *s_, none, grid), OkResult::StaysOpen);
  EXPECT_EQ(dialogs_.messages, std::vector<std::string>{"ERROR:\n Select Data"});
  EXPECT_TRUE(grid.Written.empty());

  s_->LanguageFlag = 0;
  auto none2 = SearchSubstance(*db_, *s_, LookupKind::Component, "Unobtainium");
  EXPECT_EQ(none2.Label, "物質名がデータベースにありません。");
  auto kij = SearchPair(*db_, *s_, LookupKind::Kij, "A", "B");
  LookupOk(*db_, *s_, kij, grid);
  EXPECT_EQ(dialogs_.messages.back(), "Batch Distillation\nERROR: 物質名を選択して下さい。");
}

TEST_F(LookupTest, ComponentNullsLeaveTheCellsUntouched) {
  db_->Execute("UPDATE [CriticalConstant] SET [Tc] = NULL, [Vc] = NULL WHERE [Name] = 'Methanol'");
  auto grid = Grid(1, 1, {{{1, 1}, "Methanol"}, {{1, 3}, "old Tc"}});
  s_->ActiveProgram = 0;
  ShowAndOk(LookupKind::Component, grid);
  const std::vector<std::string> row = {"Methanol", "32.0419", "old Tc", "79.9112", "", "0.565"};
  for (int col = 1; col <= 6; ++col) EXPECT_EQ(grid.Text(1, col), row[col - 1]) << col;
  EXPECT_EQ(grid.Written.size(), 4u);

  // The Antoine estimation program: formula, name, Tc, Pc, omega in columns 1, 2, 6, 7, 8.
  s_->ActiveProgram = 3;
  auto antoine = Grid(3, 2, {{{3, 2}, "Water"}});
  ShowAndOk(LookupKind::Component, antoine);
  EXPECT_EQ(antoine.Text(3, 1), "H2O");
  EXPECT_FALSE(antoine.Text(3, 6).empty() || antoine.Text(3, 8).empty());

  // The binary estimation program has no component grid: OK closes and writes nothing.
  s_->ActiveProgram = 4;
  auto other = Grid(1, 1, {{{1, 1}, "Water"}});
  ShowAndOk(LookupKind::Component, other);
  EXPECT_TRUE(other.Written.empty());
}

TEST_F(LookupTest, EnthalpyAndHeatCapacityGoToTheActiveRow) {
  auto grid = Grid(2, 1, {{{2, 1}, "Methanol"}});
  EXPECT_EQ(ShowAndOk(EnthalpyLookupKind(1), grid).kind, LookupKind::Enthalpy);
  EXPECT_EQ(std::make_tuple(s_->Comp.HVapA[2], s_->Comp.HLiqC[2], grid.Text(2, 7)),
            std::make_tuple(293.301, 0.00084537, "0.00084537"));

  EXPECT_EQ(ShowAndOk(EnthalpyLookupKind(2), grid).kind, LookupKind::HeatCapacity);
  EXPECT_EQ(std::make_tuple(s_->Comp.CpA[2], s_->Comp.CpD[2], grid.Text(2, 5), s_->Comp.CpA[1]),
            std::make_tuple(7.58536, -2.42321e-08, "-2.42321e-08", 0.0));
}

TEST_F(LookupTest, ReversedPairLandsByNameNotByPosition) {
  // Stored as (Methanol, Water). In the natural order:
  s_->NC = 2;
  Names("Methanol", "Water");
  auto grid = Grid(1, 2);
  EXPECT_EQ(ShowAndOk(LookupKind::Wilson, grid).Found.RecordCount(), 1);
  const double lambda12 = 0.331921, lambda21 = 1.13829;
  const auto& w = s_->Bin.WilsonLambda;
  EXPECT_EQ(std::tie(w[2][1], w[1][2]), std::tie(lambda12, lambda21));

  // Reversed in the case: found from the matrix cell (water row, methanol column), and the
  // values follow the names.
  ResetComponentsAndMatrices(*s_);
  Names("Water", "Methanol");
  auto reversed = Grid(2, 1);
  auto d = ShowAndOk(LookupKind::Wilson, reversed);
  EXPECT_EQ(d.Found.RecordCount(), 1);
  EXPECT_EQ(std::vector<int>({d.PairA, d.PairB, d.PairFirst, d.PairSecond}),
            std::vector<int>({1, 2, 2, 1}));
  // [Water][Methanol] takes Lambda12
  EXPECT_EQ(std::make_tuple(w[1][2], w[2][1], w[1][1]), std::make_tuple(lambda12, lambda21, 1.0));
  ASSERT_EQ(reversed.Written.size(), 2u);
  EXPECT_EQ(std::tie(reversed.Written[0].row, reversed.Written[0].col, reversed.Written[0].text),
            std::make_tuple(1, 2, "0.331921"));

  // The binary estimation program: boxes in component 1's view, exchanged when Methanol is
  // component 2.
  s_->ActiveProgram = 4;
  CallerGrid boxes;
  ShowAndOk(LookupKind::Wilson, boxes);
  EXPECT_EQ(boxes.ParameterBox, (std::array<std::string, 3>{"", "1.13829", "0.331921"}));
  Names("Methanol", "Water");
  ShowAndOk(LookupKind::Wilson, boxes);
  EXPECT_EQ(boxes.ParameterBox, (std::array<std::string, 3>{"", "0.331921", "1.13829"}));
}

TEST_F(LookupTest, NrtlAlphaMustMatchExactly) {
  Names("Carbon tetrachloride", "Methanol");
  auto grid = Grid(1, 2);
  s_->Bin.NrtlAlpha = 0.2892;
  EXPECT_EQ(ShowAndOk(LookupKind::Nrtl, grid).Found.RecordCount(), 1);
  // [CCl4][Methanol] = Tau12 of (Methanol, CCl4)
  EXPECT_EQ(std::tie(s_->Bin.NrtlTau[1][2], s_->Bin.NrtlTau[2][1], s_->Bin.NrtlAlpha),
            std::make_tuple(0.554581, 2.09453, 0.2892));
  for (double alpha : {std::nextafter(0.2892, 1.0), std::nextafter(0.2892, 0.0), 0.4}) {
    s_->Bin.NrtlAlpha = alpha;
    EXPECT_EQ(ShowPairLookup(*db_, *s_, LookupKind::Nrtl, grid).Found.RecordCount(), 0) << alpha;
  }
}

TEST_F(LookupTest, KijFillsBothCellsAndUnknownNamesWalkOff) {
  Names("Water", "Methanol");
  auto grid = Grid(1, 2);
  // SRK and PR, in Index order; the second chosen.
  EXPECT_EQ(ShowAndOk(LookupKind::Kij, grid, 2).Found.RecordCount(), 2);
  EXPECT_EQ(std::tie(s_->Bin.KijMatrix[1][2], s_->Bin.KijMatrix[2][1]),
            std::make_tuple(-0.0778, -0.0778));

  // The database matches names without regard to case; the component list does not, so the
  // look-up walks off the list: an error message, nothing copied.
  ResetComponentsAndMatrices(*s_);
  Names("water", "methanol");
  auto d = ShowPairLookup(*db_, *s_, LookupKind::Kij, grid);
  ASSERT_EQ(d.Found.RecordCount(), 2);
  CallerGrid other;
  EXPECT_EQ(LookupOk(*db_, *s_, d, other), OkResult::Closed);
  EXPECT_EQ(dialogs_.messages.back(), "ERROR:\nSubscript out of range");
  EXPECT_EQ(s_->Bin.KijMatrix[1][2], 0.0);
  EXPECT_TRUE(other.Written.empty());
}

TEST_F(LookupTest, InjectionAttemptsAreSearchedAsPlainText) {
  for (const char* word :
       {"x\" or \"1\"=\"1", "' or '1'='1", "Methanol\"; DROP TABLE [AntoineConstant]; --",
        "*\" or [Name] Like \"*", "]; DELETE FROM [CriticalConstant]; --"}) {
    SCOPED_TRACE(word);
    EXPECT_EQ(SearchSubstance(*db_, *s_, LookupKind::Antoine, word).Found.RecordCount(), 0);
    EXPECT_EQ(BrowseQuery(*db_, "CriticalConstant", word).RecordCount(), 0);
    EXPECT_EQ(BrowsePairQuery(*db_, "Wilson Parameter", word, word).RecordCount(), 0);
    EXPECT_EQ(SearchPair(*db_, *s_, LookupKind::Wilson, word, "Water").Found.RecordCount(), 0);
  }
  EXPECT_EQ(Count("AntoineConstant"), 613);
  EXPECT_EQ(Count("CriticalConstant"), 430);
  // A name holding the same characters is found as it stands.
  db_->Execute("INSERT INTO [CriticalConstant] ([Formula], [Name], [Index]) VALUES ('X', ?, 0)",
               {std::string("O'Brien \"x\"; --")});
  for (const char* word : {"O'Brien \"x\"; --", "O'B*"})
    EXPECT_EQ(SearchSubstance(*db_, *s_, LookupKind::Component, word).Found.RecordCount(), 1);
}

TEST_F(LookupTest, BrowsersQueries) {
  auto crit = BrowseOnLoad(*db_, "CriticalConstant");
  ASSERT_EQ(crit.RecordCount(), 430);
  auto lower = [](std::string t) {
    for (auto& c : t) c = char(std::tolower(static_cast<unsigned char>(c)));
    return t;
  };
  for (int r = 1; r < crit.RecordCount(); ++r)  // ordered by formula, case aside
    EXPECT_LE(lower(AsText(crit.Field(r - 1, "Formula")))
                  .compare(lower(AsText(crit.Field(r, "Formula")))),
              0);
  for (const auto& g : PhysicalDatabaseGrids())
    EXPECT_GT(BrowseOnLoad(*db_, g.table).RecordCount(), 0);
  for (const auto& g : PairDatabaseGrids()) EXPECT_GT(BrowseOnLoad(*db_, g.table).RecordCount(), 0);
  EXPECT_EQ(BrowseQuery(*db_, "AntoineConstant", "").RecordCount(), 613);
  EXPECT_EQ(BrowseQuery(*db_, "AntoineConstant", "methanol").RecordCount(), 2);

  // Wilson takes wildcards, in either name order.
  auto w = BrowsePairQuery(*db_, "Wilson Parameter", "Water", "Meth*");
  ASSERT_GE(w.RecordCount(), 1);
  for (int r = 0; r < w.RecordCount(); ++r)
    EXPECT_TRUE(AsText(w.Field(r, "Name1")) == "Water" || AsText(w.Field(r, "Name2")) == "Water");
  EXPECT_EQ(BrowsePairQuery(*db_, "Wilson Parameter", "", "Methanol").RecordCount(),
            BrowsePairQuery(*db_, "Wilson Parameter", "Methanol", "").RecordCount());
  // The other two tables compare plainly: the star is a star.
  EXPECT_EQ(BrowsePairQuery(*db_, "NRTL Parameter", "Water", "Meth*").RecordCount(), 0);
  EXPECT_EQ(BrowsePairQuery(*db_, "NRTL Parameter", "Water", "Methanol").RecordCount(), 1);
  EXPECT_EQ(BrowsePairQuery(*db_, "Kij Parameter", "Water", "Methanol").RecordCount(), 2);
  EXPECT_EQ(BrowsePairQuery(*db_, "Kij Parameter", "", "").RecordCount(), 710);
  EXPECT_THROW(BrowseOnLoad(*db_, "sqlite_master"), DatabaseError);
}

}  // namespace
}  // namespace tervale::db::testing
