#pragma once
#include <array>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "database/property_db.h"
#include "state/bitext.h"

namespace tervale {
struct SharedCalcState;
}

namespace tervale::db {

// The grid the user stands on when a look-up dialogue opens (CallerGrid). The caller hands in
// the active cell and the texts the dialogue may read (at least the name cells of the active
// row); the dialogue's OK records what it writes, in order, for the caller to put in its grid.
struct GridCellWrite {
  int row = 0;
  int col = 0;
  std::string text;
};

struct CallerGrid {
  int ActiveRow = 1;
  int ActiveCol = 1;
  std::map<std::pair<int, int>, std::string> Cells;  // (row, col) -> text
  std::vector<GridCellWrite> Written;
  std::vector<std::pair<int, int>> PaintedBlackOnWhite;  // cells to paint black on white
  // The two parameter boxes of the binary estimation program (1 and 2), written by the pair
  // look-ups when ActiveProgram is 4; empty when not written.
  std::array<std::string, 3> ParameterBox{};

  std::string Text(int row, int col) const;
  void Set(int row, int col, std::string text);
};

enum class LookupKind { Antoine, Component, Enthalpy, HeatCapacity, Wilson, Nrtl, Kij };

bool IsPairLookup(LookupKind kind);
// The database table a dialogue reads.
std::string_view LookupTable(LookupKind kind);
// The enthalpy dialogue reads the enthalpy table for list index 1 of cboEnthalpy and the heat
// capacity table for 2 and 3 (and the enthalpy table for anything else).
LookupKind EnthalpyLookupKind(int enthalpyListIndex);

// Captions of a dialogue: its title, the list's headers and the database column shown under
// each header, and the label shown when a search finds nothing.
struct ListColumn {
  BiText header;
  std::string_view column;
};
struct LookupTexts {
  BiText title;
  std::vector<ListColumn> columns;
  BiText heading;  // the formula line of the enthalpy dialogue; empty otherwise
  BiText emptyLabel;
};
const LookupTexts& TextsOf(LookupKind kind);
inline constexpr BiText kOkCaption{"OK (&O)", "ＯＫ(&O)"};
inline constexpr BiText kCancelCaption{"Cancel(&C)", "取消(&C)"};

// One look-up dialogue from showing to OK.
struct LookupDialog {
  LookupKind kind = LookupKind::Antoine;
  std::string SearchWord;  // single-substance dialogues
  int PairA = 0;           // pair dialogues: the component numbers searched (a < b)
  int PairB = 0;
  RecordSet Found;      // whole rows, in the order listed
  int SelectedRow = 0;  // 1-based row of Found last clicked; 0 for none
  std::string Label;    // the label under the list ("" when rows were found)
  int PairFirst = 0;    // set by a pair OK: positions of the row's Name1 and Name2
  int PairSecond = 0;

  // The text of list row r (1-based), list column c (0-based, as TextsOf(kind).columns);
  // a Null is blank.
  std::string ListCell(int r, int c) const;
};

// The search word of a single-substance dialogue: the text of the active cell, or when that is
// empty the other of columns 1 and 2 (column 2 if the active column is 1, else column 1).
std::string LookupSearchWord(const CallerGrid& grid);

// Shows a single-substance dialogue: searches Name or Formula Like the word (Jet wildcards in
// the word work; the word is bound, never pasted into the query).
LookupDialog SearchSubstance(PropertyDatabase& db, SharedCalcState& s, LookupKind kind,
                             std::string_view word);
LookupDialog ShowSubstanceLookup(PropertyDatabase& db, SharedCalcState& s, LookupKind kind,
                                 const CallerGrid& grid);

// Shows a pair dialogue. The pair is components 1 and 2 for the binary estimation program
// (ActiveProgram 4), otherwise the active cell (row, column) of the matrix grid, the smaller
// being a. Both name orders are searched; NRTL rows only with Alpha exactly NrtlAlpha.
LookupDialog ShowPairLookup(PropertyDatabase& db, SharedCalcState& s, LookupKind kind,
                            const CallerGrid& matrixGrid);
LookupDialog SearchPair(PropertyDatabase& db, SharedCalcState& s, LookupKind kind,
                        std::string_view nameA, std::string_view nameB);

enum class OkResult { Closed, StaysOpen };

// OK of any look-up dialogue: copies the chosen row into the state and the caller's grid as
// the active program wants it. A Null is not copied. With no row chosen, the no-choice message
// and the dialogue stays open. A failure while reading shows "ERROR:" with the failure's text and
// closes, keeping what was copied so far.
OkResult LookupOk(PropertyDatabase& db, SharedCalcState& s, LookupDialog& dialog, CallerGrid& grid);

// Shows a message under a title: the dialogs receive the title, a line break and the text.
void ShowTitledMessage(SharedCalcState& s, std::string_view title, std::string_view text);

// ---- browsers ----

struct BrowserGrid {
  BiText caption;
  std::string_view table;
};
inline constexpr BiText kPhysicalDatabaseTitle{"Physical Property Database", "物性定数Database"};
inline constexpr BiText kPairDatabaseTitle{"Wilson /N.R.T.L. /Interraction Parameter",
                                           "２成分パラメータ"};
// The six grids of the substance browser and the three of the pair browser, in screen order.
const std::vector<BrowserGrid>& PhysicalDatabaseGrids();
const std::vector<BrowserGrid>& PairDatabaseGrids();

// A grid's content at load: the whole table in name order.
RecordSet BrowseOnLoad(PropertyDatabase& db, std::string_view table);
// "Querry": a substance table by Name Like the word; an empty word gives the whole table.
RecordSet BrowseQuery(PropertyDatabase& db, std::string_view table, std::string_view word);
// "Querry" of the pair browser: both words match the two names in either order, one word
// either name; Like for the Wilson table, plain equality for the other two; no word gives the
// whole table.
RecordSet BrowsePairQuery(PropertyDatabase& db, std::string_view table, std::string_view word1,
                          std::string_view word2);

}  // namespace tervale::db
