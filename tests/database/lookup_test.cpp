#include <gtest/gtest.h>

#include <cmath>

#include "database/lookups.h"
#include "db_fixture.h"

namespace tervale::db::testing {
namespace {

class LookupTest : public SeededDbTest {};

TEST_F(LookupTest, AntoineSearchFallsBackToTheOtherNameCellAndFillsTheRow) {
  CallerGrid grid;
  grid.ActiveRow = 2;
  grid.ActiveCol = 1;  // a blank formula cell: the name in column 2 is searched
  grid.Cells[{2, 2}] = "Methanol";
  EXPECT_EQ(LookupSearchWord(grid), "Methanol");
  auto d = ShowSubstanceLookup(*db_, *s_, LookupKind::Antoine, grid);
  ASSERT_EQ(d.Found.RecordCount(), 2);
  EXPECT_EQ(d.SelectedRow, 1);
  EXPECT_EQ(d.Label, "");
  EXPECT_EQ(d.ListCell(1, 1), "Methanol");
  EXPECT_EQ(d.ListCell(1, 3), "1");  // Equation Type

  // The estimation of Antoine constants: formula, name and the three constants, painted.
  s_->ActiveProgram = 3;
  d.SelectedRow = 2;
  ASSERT_EQ(LookupOk(*db_, *s_, d, grid), OkResult::Closed);
  EXPECT_EQ(s_->Comp.AntoineA[2], 8.01761);
  EXPECT_EQ(s_->Comp.AntoineB[2], 1544.047);
  EXPECT_EQ(s_->Comp.AntoineC[2], 235.987);
  EXPECT_EQ(grid.Text(2, 1), "CH4O");
  EXPECT_EQ(grid.Text(2, 3), "8.01761");
  EXPECT_EQ(grid.PaintedBlackOnWhite.size(), 3u);

  // Any other program: columns 1 to 3 get the constants.
  s_->ActiveProgram = 0;
  CallerGrid kvalue;
  kvalue.ActiveRow = 1;
  kvalue.ActiveCol = 2;
  kvalue.Cells[{1, 1}] = "methanol";  // active cell empty, column 1 holds the name
  d = ShowSubstanceLookup(*db_, *s_, LookupKind::Antoine, kvalue);
  ASSERT_EQ(d.Found.RecordCount(), 2);
  ASSERT_EQ(LookupOk(*db_, *s_, d, kvalue), OkResult::Closed);
  EXPECT_EQ(s_->Comp.AntoineA[1], 8.07787);
  EXPECT_EQ(kvalue.Text(1, 1), "8.07787");
  EXPECT_EQ(kvalue.Text(1, 2), "1580.08");
  EXPECT_EQ(kvalue.Text(1, 3), "239.5");
  EXPECT_TRUE(dialogs_.messages.empty());
}

TEST_F(LookupTest, StarListsAllAndNothingFoundLeavesNoChoice) {
  auto all = SearchSubstance(*db_, *s_, LookupKind::Component, "*");
  EXPECT_EQ(all.Found.RecordCount(), 430);
  auto byFormula = SearchSubstance(*db_, *s_, LookupKind::Component, "CH4O");
  ASSERT_EQ(byFormula.Found.RecordCount(), 1);
  EXPECT_EQ(AsText(byFormula.Found.Field(0, "Name")), "Methanol");

  auto none = SearchSubstance(*db_, *s_, LookupKind::Antoine, "Unobtainium");
  EXPECT_EQ(none.SelectedRow, 0);
  EXPECT_EQ(none.Label, "Antoine's constants does not exist in Data Base");
  CallerGrid grid;
  EXPECT_EQ(LookupOk(*db_, *s_, none, grid), OkResult::StaysOpen);
  ASSERT_EQ(dialogs_.messages.size(), 1u);
  EXPECT_EQ(dialogs_.messages[0], "ERROR:\n Select Data");
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
  CallerGrid grid;
  grid.ActiveRow = 1;
  grid.ActiveCol = 1;
  grid.Cells[{1, 1}] = "Methanol";
  grid.Cells[{1, 3}] = "old Tc";
  s_->ActiveProgram = 0;
  auto d = ShowSubstanceLookup(*db_, *s_, LookupKind::Component, grid);
  ASSERT_EQ(LookupOk(*db_, *s_, d, grid), OkResult::Closed);
  EXPECT_EQ(grid.Text(1, 1), "Methanol");
  EXPECT_EQ(grid.Text(1, 2), "32.0419");
  EXPECT_EQ(grid.Text(1, 3), "old Tc");
  EXPECT_EQ(grid.Text(1, 4), "79.9112");
  EXPECT_EQ(grid.Text(1, 5), "");
  EXPECT_EQ(grid.Text(1, 6), "0.565");
  EXPECT_EQ(grid.Written.size(), 4u);

  // The Antoine estimation program: formula, name, Tc, Pc, omega in columns 1, 2, 6, 7, 8.
  s_->ActiveProgram = 3;
  CallerGrid antoine;
  antoine.ActiveRow = 3;
  antoine.ActiveCol = 2;
  antoine.Cells[{3, 2}] = "Water";
  d = ShowSubstanceLookup(*db_, *s_, LookupKind::Component, antoine);
  ASSERT_EQ(LookupOk(*db_, *s_, d, antoine), OkResult::Closed);
  EXPECT_EQ(antoine.Text(3, 1), "H2O");
  EXPECT_FALSE(antoine.Text(3, 6).empty());
  EXPECT_FALSE(antoine.Text(3, 8).empty());
}

TEST_F(LookupTest, EnthalpyAndHeatCapacityGoToTheActiveRow) {
  CallerGrid grid;
  grid.ActiveRow = 2;
  grid.ActiveCol = 1;
  grid.Cells[{2, 1}] = "Methanol";
  auto d = ShowSubstanceLookup(*db_, *s_, EnthalpyLookupKind(1), grid);
  ASSERT_EQ(d.kind, LookupKind::Enthalpy);
  ASSERT_EQ(LookupOk(*db_, *s_, d, grid), OkResult::Closed);
  EXPECT_EQ(s_->Comp.HVapA[2], 293.301);
  EXPECT_EQ(s_->Comp.HLiqC[2], 0.00084537);
  EXPECT_EQ(grid.Text(2, 7), "0.00084537");

  auto h = ShowSubstanceLookup(*db_, *s_, EnthalpyLookupKind(2), grid);
  ASSERT_EQ(h.kind, LookupKind::HeatCapacity);
  ASSERT_EQ(LookupOk(*db_, *s_, h, grid), OkResult::Closed);
  EXPECT_EQ(s_->Comp.CpA[2], 7.58536);
  EXPECT_EQ(s_->Comp.CpD[2], -2.42321e-08);
  EXPECT_EQ(grid.Text(2, 5), "-2.42321e-08");
  EXPECT_EQ(s_->Comp.CpA[1], 0.0);
}

TEST_F(LookupTest, ReversedPairLandsByNameNotByPosition) {
  // Stored as (Methanol, Water). In the natural order:
  s_->NC = 2;
  s_->Comp.CompName[1] = "Methanol";
  s_->Comp.CompName[2] = "Water";
  CallerGrid grid;
  grid.ActiveRow = 1;
  grid.ActiveCol = 2;
  auto d = ShowPairLookup(*db_, *s_, LookupKind::Wilson, grid);
  ASSERT_EQ(d.Found.RecordCount(), 1);
  ASSERT_EQ(LookupOk(*db_, *s_, d, grid), OkResult::Closed);
  const double lambda12 = 0.331921, lambda21 = 1.13829;
  EXPECT_EQ(s_->Bin.WilsonLambda[2][1], lambda12);
  EXPECT_EQ(s_->Bin.WilsonLambda[1][2], lambda21);

  // Reversed in the case: found from the matrix cell (water row, methanol column), and the
  // values follow the names.
  ResetComponentsAndMatrices(*s_);
  s_->Comp.CompName[1] = "Water";
  s_->Comp.CompName[2] = "Methanol";
  CallerGrid reversed;
  reversed.ActiveRow = 2;
  reversed.ActiveCol = 1;
  d = ShowPairLookup(*db_, *s_, LookupKind::Wilson, reversed);
  EXPECT_EQ(d.PairA, 1);
  EXPECT_EQ(d.PairB, 2);
  ASSERT_EQ(d.Found.RecordCount(), 1);
  ASSERT_EQ(LookupOk(*db_, *s_, d, reversed), OkResult::Closed);
  EXPECT_EQ(d.PairFirst, 2);
  EXPECT_EQ(d.PairSecond, 1);
  EXPECT_EQ(s_->Bin.WilsonLambda[1][2], lambda12);  // [Water][Methanol]
  EXPECT_EQ(s_->Bin.WilsonLambda[2][1], lambda21);
  EXPECT_EQ(s_->Bin.WilsonLambda[1][1], 1.0);
  ASSERT_EQ(reversed.Written.size(), 2u);
  EXPECT_EQ(reversed.Written[0].row, 1);
  EXPECT_EQ(reversed.Written[0].col, 2);
  EXPECT_EQ(reversed.Written[0].text, "0.331921");

  // The binary estimation program: boxes in component 1's view.
  s_->ActiveProgram = 4;
  CallerGrid boxes;
  d = ShowPairLookup(*db_, *s_, LookupKind::Wilson, boxes);
  ASSERT_EQ(LookupOk(*db_, *s_, d, boxes), OkResult::Closed);
  EXPECT_EQ(boxes.ParameterBox[1], "1.13829");  // exchanged: Methanol is component 2
  EXPECT_EQ(boxes.ParameterBox[2], "0.331921");
  s_->Comp.CompName[1] = "Methanol";
  s_->Comp.CompName[2] = "Water";
  d = ShowPairLookup(*db_, *s_, LookupKind::Wilson, boxes);
  ASSERT_EQ(LookupOk(*db_, *s_, d, boxes), OkResult::Closed);
  EXPECT_EQ(boxes.ParameterBox[1], "0.331921");
  EXPECT_EQ(boxes.ParameterBox[2], "1.13829");
}

TEST_F(LookupTest, NrtlAlphaMustMatchExactly) {
  s_->Comp.CompName[1] = "Carbon tetrachloride";
  s_->Comp.CompName[2] = "Methanol";
  CallerGrid grid;
  grid.ActiveRow = 1;
  grid.ActiveCol = 2;
  s_->Bin.NrtlAlpha = 0.2892;
  auto d = ShowPairLookup(*db_, *s_, LookupKind::Nrtl, grid);
  ASSERT_EQ(d.Found.RecordCount(), 1);
  ASSERT_EQ(LookupOk(*db_, *s_, d, grid), OkResult::Closed);
  EXPECT_EQ(s_->Bin.NrtlTau[1][2], 0.554581);  // [CCl4][Methanol] = Tau12 of (Methanol, CCl4)
  EXPECT_EQ(s_->Bin.NrtlTau[2][1], 2.09453);
  EXPECT_EQ(s_->Bin.NrtlAlpha, 0.2892);

  s_->Bin.NrtlAlpha = std::nextafter(0.2892, 1.0);
  EXPECT_EQ(ShowPairLookup(*db_, *s_, LookupKind::Nrtl, grid).Found.RecordCount(), 0);
  s_->Bin.NrtlAlpha = std::nextafter(0.2892, 0.0);
  EXPECT_EQ(ShowPairLookup(*db_, *s_, LookupKind::Nrtl, grid).Found.RecordCount(), 0);
  s_->Bin.NrtlAlpha = 0.4;
  EXPECT_EQ(ShowPairLookup(*db_, *s_, LookupKind::Nrtl, grid).Found.RecordCount(), 0);
}

TEST_F(LookupTest, KijFillsBothCellsAndUnknownNamesWalkOff) {
  s_->Comp.CompName[1] = "Water";
  s_->Comp.CompName[2] = "Methanol";
  CallerGrid grid;
  grid.ActiveRow = 1;
  grid.ActiveCol = 2;
  auto d = ShowPairLookup(*db_, *s_, LookupKind::Kij, grid);
  ASSERT_EQ(d.Found.RecordCount(), 2);  // SRK and PR, in Index order
  d.SelectedRow = 2;
  ASSERT_EQ(LookupOk(*db_, *s_, d, grid), OkResult::Closed);
  EXPECT_EQ(s_->Bin.KijMatrix[1][2], -0.0778);
  EXPECT_EQ(s_->Bin.KijMatrix[2][1], -0.0778);

  // The database matches names without regard to case; the component list does not, so the
  // look-up walks off the list: an error message, nothing copied.
  ResetComponentsAndMatrices(*s_);
  s_->Comp.CompName[1] = "water";
  s_->Comp.CompName[2] = "methanol";
  d = ShowPairLookup(*db_, *s_, LookupKind::Kij, grid);
  ASSERT_EQ(d.Found.RecordCount(), 2);
  CallerGrid other;
  EXPECT_EQ(LookupOk(*db_, *s_, d, other), OkResult::Closed);
  EXPECT_EQ(dialogs_.messages.back(), "ERROR:\nSubscript out of range");
  EXPECT_EQ(s_->Bin.KijMatrix[1][2], 0.0);
  EXPECT_TRUE(other.Written.empty());
}

TEST_F(LookupTest, InjectionAttemptsAreSearchedAsPlainText) {
  const char* attempts[] = {"x\" or \"1\"=\"1", "' or '1'='1",
                            "Methanol\"; DROP TABLE [AntoineConstant]; --",
                            "*\" or [Name] Like \"*", "]; DELETE FROM [CriticalConstant]; --"};
  for (const char* word : attempts) {
    EXPECT_EQ(SearchSubstance(*db_, *s_, LookupKind::Antoine, word).Found.RecordCount(), 0) << word;
    EXPECT_EQ(BrowseQuery(*db_, "CriticalConstant", word).RecordCount(), 0) << word;
    EXPECT_EQ(BrowsePairQuery(*db_, "Wilson Parameter", word, word).RecordCount(), 0) << word;
    EXPECT_EQ(SearchPair(*db_, *s_, LookupKind::Wilson, word, "Water").Found.RecordCount(), 0)
        << word;
  }
  EXPECT_EQ(Count("AntoineConstant"), 613);
  EXPECT_EQ(Count("CriticalConstant"), 430);
  // A name holding the same characters is found as it stands.
  db_->Execute("INSERT INTO [CriticalConstant] ([Formula], [Name], [Index]) VALUES ('X', ?, 0)",
               {std::string("O'Brien \"x\"; --")});
  auto d = SearchSubstance(*db_, *s_, LookupKind::Component, "O'Brien \"x\"; --");
  ASSERT_EQ(d.Found.RecordCount(), 1);
  EXPECT_EQ(SearchSubstance(*db_, *s_, LookupKind::Component, "O'B*").Found.RecordCount(), 1);
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
  for (int r = 0; r < w.RecordCount(); ++r) {
    std::string n1 = AsText(w.Field(r, "Name1")), n2 = AsText(w.Field(r, "Name2"));
    EXPECT_TRUE(n1 == "Water" || n2 == "Water");
  }
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
