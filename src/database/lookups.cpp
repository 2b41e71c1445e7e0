#include "database/lookups.h"

#include "state/shared_state.h"

namespace tervale::db {

std::string CallerGrid::Text(int row, int col) const {
  auto it = Cells.find({row, col});
  return it == Cells.end() ? std::string() : it->second;
}

void CallerGrid::Set(int row, int col, std::string text) {
  Cells[{row, col}] = text;
  Written.push_back({row, col, std::move(text)});
}

bool IsPairLookup(LookupKind kind) {
  return kind == LookupKind::Wilson || kind == LookupKind::Nrtl || kind == LookupKind::Kij;
}

std::string_view LookupTable(LookupKind kind) {
  switch (kind) {
    case LookupKind::Antoine:
      return "AntoineConstant";
    case LookupKind::Component:
      return "CriticalConstant";
    case LookupKind::Enthalpy:
      return "EnthalpyCoefficent";
    case LookupKind::HeatCapacity:
      return "HeatCapacity";
    case LookupKind::Wilson:
      return "Wilson Parameter";
    case LookupKind::Nrtl:
      return "NRTL Parameter";
    case LookupKind::Kij:
      return "Kij Parameter";
  }
  return "";
}

LookupKind EnthalpyLookupKind(int enthalpyListIndex) {
  return (enthalpyListIndex == 2 || enthalpyListIndex == 3) ? LookupKind::HeatCapacity
                                                            : LookupKind::Enthalpy;
}

namespace {

constexpr BiText kFormulaHeader{"Formula", "化学式"};
constexpr BiText kNameHeader{"Name", "物質名"};
constexpr BiText kIndexHeader = Same("index");
constexpr BiText kComponentMissing{"Component Name does not exist in Data Base",
                                   "物質名がデータベースにありません。"};

const LookupTexts kAntoineTexts{
    {"Querry Antoine Constant from Data Base", "Antoine定数ＤＢ検索"},
    {{kFormulaHeader, "Formula"},
     {kNameHeader, "Name"},
     {kIndexHeader, "Index"},
     {{"Eq", "式ﾀｲﾌﾟ"}, "Equation Type"},
     {Same("A"), "AN"},
     {Same("B"), "BN"},
     {Same("C"), "CN"},
     {Same("TL"), "TL"},
     {Same("TU"), "TU"},
     {Same("Memo"), "Memo"}},
    {},
    {"Antoine's constants does not exist in Data Base", "Antoine定数がデータベースにありません。"}};

const LookupTexts kComponentTexts{{"Querry Physical Property from Data Base", "物性定数検索"},
                                  {{kFormulaHeader, "Formula"},
                                   {kNameHeader, "Name"},
                                   {kIndexHeader, "Index"},
                                   {Same("Tb"), "Tb"},
                                   {Same("Tc"), "Tc"},
                                   {Same("Pc"), "Pc"},
                                   {Same("Vc"), "Vc"},
                                   {Same("Omg"), "Omg"},
                                   {Same("Memo"), "Memo"}},
                                  {},
                                  kComponentMissing};

const LookupTexts kEnthalpyTexts{{"Querry Enthalpy from Data Base", "Enthalpy係数ＤＢ検索"},
                                 {{kFormulaHeader, "Formula"},
                                  {kNameHeader, "Name"},
                                  {kIndexHeader, "Index"},
                                  {Same("A(Vap)"), "AHV"},
                                  {Same("B(Vap)"), "BHV"},
                                  {Same("C(Vap)"), "CHV"},
                                  {Same("A(Liq)"), "AHL"},
                                  {Same("B(Liq)"), "BHL"},
                                  {Same("C(Liq)"), "CHL"},
                                  {Same("Memo"), "Memo"}},
                                 Same("H(Kcal/Kgmol)=A + B*t + C*t^2     t:℃"),
                                 kComponentMissing};

const LookupTexts kHeatCapacityTexts{{"Querry Enthalpy from Data Base", "Enthalpy係数ＤＢ検索"},
                                     {{kFormulaHeader, "Formula"},
                                      {kNameHeader, "Name"},
                                      {kIndexHeader, "Index"},
                                      {Same("A"), "CpA"},
                                      {Same("B"), "CpB"},
                                      {Same("C"), "CpC"},
                                      {Same("D"), "cpd"},
                                      {Same("TL"), "TL"},
                                      {Same("TU"), "TU"},
                                      {Same("Memo"), "Memo"}},
                                     Same("Cp(Kcal/KgmolK)=A + B*t + C*t^2 + D*t^3 t:K"),
                                     kComponentMissing};

constexpr BiText kName1Header{"Name1", "物質名1"};
constexpr BiText kName2Header{"Name2", "物質名2"};

const LookupTexts kWilsonTexts{{"Querry Wilson Parameter from Data Base", "Wilson定数DB検索"},
                               {{kName1Header, "Name1"},
                                {kName2Header, "Name2"},
                                {kIndexHeader, "Index"},
                                {Same("Lambda12"), "Lambda12"},
                                {Same("Lambda21"), "Lambda21"},
                                {Same("temp"), "temp"},
                                {Same("press"), "press"},
                                {Same("Memo"), "Memo"}},
                               {},
                               {}};

const LookupTexts kNrtlTexts{{"Querry NRTL Parameter from Data Base", "NRTL定数DB検索"},
                             {{kName1Header, "Name1"},
                              {kName2Header, "Name2"},
                              {kIndexHeader, "Index"},
                              {Same("Tau12"), "Tau12"},
                              {Same("Tau21"), "Tau21"},
                              {Same("Alpha"), "Alpha"},
                              {Same("temp"), "temp"},
                              {Same("press"), "press"},
                              {Same("Memo"), "Memo"}},
                             {},
                             {}};

const LookupTexts kKijTexts{{"Querry Kij Parameter from Data Base", "Kij 定数DB検索"},
                            {{kName1Header, "Name1"},
                             {kName2Header, "Name2"},
                             {kIndexHeader, "Index"},
                             {Same("Kij"), "Kij"},
                             {Same("temp"), "temp"},
                             {Same("press"), "press"},
                             {Same("Memo"), "Memo"}},
                            {},
                            {}};

std::string Q(std::string_view table) {
  std::string out;
  out.reserve(table.size() + 2);
  out += '[';
  out.append(table);
  out += ']';
  return out;
}

// A failure inside OK that the older program met as a run-time error.
class LookupFailure : public TervaleError {
 public:
  using TervaleError::TervaleError;
};

}  // namespace

const LookupTexts& TextsOf(LookupKind kind) {
  switch (kind) {
    case LookupKind::Antoine:
      return kAntoineTexts;
    case LookupKind::Component:
      return kComponentTexts;
    case LookupKind::Enthalpy:
      return kEnthalpyTexts;
    case LookupKind::HeatCapacity:
      return kHeatCapacityTexts;
    case LookupKind::Wilson:
      return kWilsonTexts;
    case LookupKind::Nrtl:
      return kNrtlTexts;
    case LookupKind::Kij:
      return kKijTexts;
  }
  return kAntoineTexts;
}

std::string LookupDialog::ListCell(int r, int c) const {
  const auto& cols = TextsOf(kind).columns;
  if (r < 1 || r > Found.RecordCount() || c < 0 || size_t(c) >= cols.size()) return "";
  return AsText(Found.Field(size_t(r - 1), cols[c].column));
}

void ShowTitledMessage(SharedCalcState& s, std::string_view title, std::string_view text) {
  ShowMessage(s, std::string(title) + "\n" + std::string(text));
}

std::string LookupSearchWord(const CallerGrid& grid) {
  std::string word = grid.Text(grid.ActiveRow, grid.ActiveCol);
  if (!word.empty()) return word;
  int other = grid.ActiveCol == 1 ? 2 : 1;
  return grid.Text(grid.ActiveRow, other);
}

LookupDialog SearchSubstance(PropertyDatabase& db, SharedCalcState& s, LookupKind kind,
                             std::string_view word) {
  LookupDialog d;
  d.kind = kind;
  d.SearchWord = std::string(word);
  const std::string t = Q(LookupTable(kind));
  d.Found = db.Query("SELECT " + t + ".* FROM " + t + " WHERE " + t + ".[Name] Like ? or " + t +
                         ".[Formula] Like ?",
                     {d.SearchWord, d.SearchWord});
  if (d.Found.RecordCount() > 0) {
    d.SelectedRow = 1;
  } else {
    d.SelectedRow = 0;
    d.Label = std::string(Pick(s, TextsOf(kind).emptyLabel));
  }
  return d;
}

LookupDialog ShowSubstanceLookup(PropertyDatabase& db, SharedCalcState& s, LookupKind kind,
                                 const CallerGrid& grid) {
  return SearchSubstance(db, s, kind, LookupSearchWord(grid));
}

LookupDialog SearchPair(PropertyDatabase& db, SharedCalcState& s, LookupKind kind,
                        std::string_view nameA, std::string_view nameB) {
  LookupDialog d;
  d.kind = kind;
  const std::string t = Q(LookupTable(kind));
  const std::string a(nameA), b(nameB);
  std::string alphaTest;
  std::vector<Value> params;
  if (kind == LookupKind::Nrtl) {
    // Only rows with exactly the present alpha: a value that differs in the last digit hides
    // the row.
    alphaTest = " And " + t + ".[Alpha] = ?";
    params = {a, b, s.Bin.NrtlAlpha, a, b, s.Bin.NrtlAlpha};
  } else {
    params = {a, b, a, b};
  }
  d.Found = db.Query("SELECT " + t + ".* FROM " + t + " WHERE (" + t + ".[Name1] = ? and " + t +
                         ".[Name2] = ?" + alphaTest + " ) Or (" + t + ".[Name2] = ? and " + t +
                         ".[Name1] = ?" + alphaTest + " ) ORDER BY " + t + ".[Index], rowid",
                     params);
  d.SelectedRow = d.Found.RecordCount() > 0 ? 1 : 0;
  return d;
}

LookupDialog ShowPairLookup(PropertyDatabase& db, SharedCalcState& s, LookupKind kind,
                            const CallerGrid& matrixGrid) {
  int a = 1, b = 2;
  if (s.ActiveProgram != 4) {
    a = std::min(matrixGrid.ActiveRow, matrixGrid.ActiveCol);
    b = std::max(matrixGrid.ActiveRow, matrixGrid.ActiveCol);
  }
  auto name = [&](int k) {
    return (k >= 1 && k <= kMaxComponents) ? s.Comp.CompName[k] : std::string();
  };
  LookupDialog d = SearchPair(db, s, kind, name(a), name(b));
  d.PairA = a;
  d.PairB = b;
  return d;
}

namespace {

void NoChoice(SharedCalcState& s, LookupKind kind) {
  switch (kind) {
    case LookupKind::Enthalpy:
    case LookupKind::HeatCapacity:
    case LookupKind::Kij:
      ShowTitledMessage(s, "Batch Distillation",
                        Pick(s, BiText{"ERROR: Select Data", "ERROR: 物質名を選択して下さい。"}));
      break;
    case LookupKind::Wilson:
    case LookupKind::Nrtl:
      ShowTitledMessage(s, "ERROR: ", Pick(s, BiText{"Select Data", "物質名を選択して下さい。"}));
      break;
    default:
      ShowTitledMessage(s, "ERROR:", Pick(s, BiText{" Select Data", " 物質名を選択して下さい。"}));
      break;
  }
}

// Writes a number field to a state array element and a grid cell; a Null is not copied.
void Put(const RecordSet& rec, std::string_view column, double* target, CallerGrid* grid, int row,
         int col) {
  const Value& v = rec.Field(0, column);
  auto number = AsNumber(v);
  if (!number) {
    // Text in a text cell (a formula or a name) goes to the grid; nothing else is copied.
    if (grid && std::holds_alternative<std::string>(v) && !target) grid->Set(row, col, AsText(v));
    return;
  }
  if (target) *target = *number;
  if (grid) grid->Set(row, col, AsText(v));
}

void CheckComponentRow(int r) {
  if (r < 1 || r > kMaxComponents) throw LookupFailure("Subscript out of range");
}

OkResult SubstanceOk(PropertyDatabase& db, SharedCalcState& s, LookupDialog& d, CallerGrid& grid) {
  const size_t row = size_t(d.SelectedRow - 1);
  std::string name = AsText(d.Found.Field(row, "Name"));
  if (name.empty()) return OkResult::StaysOpen;
  const Value index = d.Found.Field(row, "Index");
  const std::string t(LookupTable(d.kind));
  RecordSet rec = db.Query(
      "SELECT " + t + ".* FROM " + t + " WHERE " + t + ".[Name] = ? and  " + t + ".[Index] = ?",
      {name, index});
  if (rec.RecordCount() == 0) throw LookupFailure("No current record.");
  const int r = grid.ActiveRow;
  auto& c = s.Comp;
  switch (d.kind) {
    case LookupKind::Antoine:
      CheckComponentRow(r);
      if (s.ActiveProgram == 3) {
        Put(rec, "Formula", nullptr, &grid, r, 1);
        Put(rec, "Name", nullptr, &grid, r, 2);
        Put(rec, "AN", &c.AntoineA[r], &grid, r, 3);
        Put(rec, "BN", &c.AntoineB[r], &grid, r, 4);
        Put(rec, "CN", &c.AntoineC[r], &grid, r, 5);
        for (int col = 3; col <= 5; ++col) grid.PaintedBlackOnWhite.emplace_back(r, col);
      } else {
        Put(rec, "AN", &c.AntoineA[r], &grid, r, 1);
        Put(rec, "BN", &c.AntoineB[r], &grid, r, 2);
        Put(rec, "CN", &c.AntoineC[r], &grid, r, 3);
      }
      break;
    case LookupKind::Component:
      if (s.ActiveProgram == 3) {
        Put(rec, "Formula", nullptr, &grid, r, 1);
        Put(rec, "Name", nullptr, &grid, r, 2);
        Put(rec, "Tc", nullptr, &grid, r, 6);
        Put(rec, "Pc", nullptr, &grid, r, 7);
        Put(rec, "Omg", nullptr, &grid, r, 8);
      } else {
        Put(rec, "Name", nullptr, &grid, r, 1);
        Put(rec, "MW", nullptr, &grid, r, 2);
        Put(rec, "Tc", nullptr, &grid, r, 3);
        Put(rec, "Pc", nullptr, &grid, r, 4);
        Put(rec, "Vc", nullptr, &grid, r, 5);
        Put(rec, "Omg", nullptr, &grid, r, 6);
      }
      break;
    case LookupKind::Enthalpy:
      CheckComponentRow(r);
      Put(rec, "AHV", &c.HVapA[r], &grid, r, 2);
      Put(rec, "BHV", &c.HVapB[r], &grid, r, 3);
      Put(rec, "CHV", &c.HVapC[r], &grid, r, 4);
      Put(rec, "AHL", &c.HLiqA[r], &grid, r, 5);
      Put(rec, "BHL", &c.HLiqB[r], &grid, r, 6);
      Put(rec, "CHL", &c.HLiqC[r], &grid, r, 7);
      break;
    case LookupKind::HeatCapacity:
      CheckComponentRow(r);
      Put(rec, "CpA", &c.CpA[r], &grid, r, 2);
      Put(rec, "CpB", &c.CpB[r], &grid, r, 3);
      Put(rec, "CpC", &c.CpC[r], &grid, r, 4);
      Put(rec, "cpd", &c.CpD[r], &grid, r, 5);
      break;
    default:
      break;
  }
  return OkResult::Closed;
}

// The first component carrying the name; the walk has no other end than the array's.
int FindComponent(const SharedCalcState& s, const std::string& name) {
  for (int i = 1; i <= kMaxComponents; ++i)
    if (s.Comp.CompName[i] == name) return i;
  throw LookupFailure("Subscript out of range");
}

OkResult PairOk(PropertyDatabase& db, SharedCalcState& s, LookupDialog& d, CallerGrid& grid) {
  const size_t row = size_t(d.SelectedRow - 1);
  std::string name1 = AsText(d.Found.Field(row, "Name1"));
  std::string name2 = AsText(d.Found.Field(row, "Name2"));
  if (name1.empty() || name2.empty()) return OkResult::StaysOpen;
  const Value index = d.Found.Field(row, "Index");
  const std::string t = Q(LookupTable(d.kind));
  RecordSet rec = db.Query("SELECT " + t + ".* FROM " + t + " WHERE " + t + ".[Name1] = ? and " +
                               t + ".[Name2] = ? and " + t + ".[Index] = ?",
                           {name1, name2, index});
  if (rec.RecordCount() == 0) throw LookupFailure("No current record.");
  const int i = FindComponent(s, name1);
  d.PairFirst = i;
  const int j = FindComponent(s, name2);
  d.PairSecond = j;

  std::string_view c12 = "Lambda12", c21 = "Lambda21";
  CompMatrix* m = &s.Bin.WilsonLambda;
  if (d.kind == LookupKind::Nrtl) {
    c12 = "Tau12";
    c21 = "Tau21";
    m = &s.Bin.NrtlTau;
  } else if (d.kind == LookupKind::Kij) {
    c12 = c21 = "AKij";
    m = &s.Bin.KijMatrix;
  }
  if (s.ActiveProgram == 4 && d.kind != LookupKind::Kij) {
    // The estimation program's two boxes hold the pair as component 1 sees it.
    const Value& v12 = rec.Field(0, c12);
    const Value& v21 = rec.Field(0, c21);
    const Value& first = (i == 1) ? v12 : v21;
    const Value& second = (i == 1) ? v21 : v12;
    if (!IsNull(first)) grid.ParameterBox[1] = AsText(first);
    if (!IsNull(second)) grid.ParameterBox[2] = AsText(second);
    return OkResult::Closed;
  }
  Put(rec, c12, &(*m)[j][i], &grid, j, i);
  Put(rec, c21, &(*m)[i][j], &grid, i, j);
  return OkResult::Closed;
}

}  // namespace

OkResult LookupOk(PropertyDatabase& db, SharedCalcState& s, LookupDialog& dialog,
                  CallerGrid& grid) {
  if (dialog.SelectedRow <= 0 || dialog.SelectedRow > dialog.Found.RecordCount()) {
    NoChoice(s, dialog.kind);
    return OkResult::StaysOpen;
  }
  try {
    return IsPairLookup(dialog.kind) ? PairOk(db, s, dialog, grid)
                                     : SubstanceOk(db, s, dialog, grid);
  } catch (const TervaleError& e) {
    ShowTitledMessage(s, "ERROR:", e.what());
    return OkResult::Closed;
  }
}

// ---- browsers ----

const std::vector<BrowserGrid>& PhysicalDatabaseGrids() {
  static const std::vector<BrowserGrid> grids = {
      {{"Critical Const", "臨界定数"}, "CriticalConstant"},
      {{"Antoine Const", "Antoine定数"}, "AntoineConstant"},
      {{"Ideal Gas Heat Cap", "理想気体ガス比熱"}, "HeatCapacity"},
      {{"Liquid Density", "液密度"}, "LiquidDensity"},
      {Same("R & K Parameter"), "Rk_Parameter"},
      {{"Enthalpy Eq. Coeff.", "Enthalpy式係数"}, "EnthalpyCoefficent"},
  };
  return grids;
}

const std::vector<BrowserGrid>& PairDatabaseGrids() {
  static const std::vector<BrowserGrid> grids = {
      {Same("Wilson Parameter(Λij)"), "Wilson Parameter"},
      {Same("N.R.T.L. Parameter(τij)"), "NRTL Parameter"},
      {{"Interraction Parameter(kij)", "状態方程式 相互作用係数(kij)"}, "Kij Parameter"},
  };
  return grids;
}

namespace {

bool IsPairTable(std::string_view table) {
  const TableDef* t = FindTable(table);
  if (!t) return false;
  for (const auto& c : t->columns)
    if (c.name == "Name1") return true;
  return false;
}

void RequireTable(std::string_view table) {
  if (!FindTable(table)) throw DatabaseError("No such table: " + std::string(table), 1);
}

}  // namespace

RecordSet BrowseOnLoad(PropertyDatabase& db, std::string_view table) {
  RequireTable(table);
  const std::string t = Q(table);
  if (!IsPairTable(table))
    return db.Query("SELECT " + t + ".* FROM " + t + " order by [Formula],[Name]");
  // The pair tables hold the first formula in the column Formula; the kij table holds none.
  if (table == "Kij Parameter")
    return db.Query("SELECT " + t + ".* FROM " + t + " order by [Name1],[Name2]");
  return db.Query("SELECT " + t + ".* FROM " + t +
                  " order by [Formula],[Name1],[Formula2],[Name2]");
}

RecordSet BrowseQuery(PropertyDatabase& db, std::string_view table, std::string_view word) {
  RequireTable(table);
  const std::string t = Q(table);
  if (word.empty()) return db.Query("SELECT " + t + ".* FROM " + t);
  return db.Query("SELECT " + t + ".* FROM " + t + " WHERE " + t + ".[Name] Like ?",
                  {std::string(word)});
}

RecordSet BrowsePairQuery(PropertyDatabase& db, std::string_view table, std::string_view word1,
                          std::string_view word2) {
  RequireTable(table);
  const std::string t = Q(table);
  // Only the Wilson grid takes wildcards; the other two compare names plainly.
  const std::string op = table == "Wilson Parameter" ? " Like " : " = ";
  const std::string w1(word1), w2(word2);
  if (!w1.empty() && !w2.empty()) {
    return db.Query("SELECT " + t + ".* FROM " + t + " WHERE (" + t + ".[Name1]" + op + "? and " +
                        t + ".[Name2]" + op + "? ) Or (" + t + ".[Name2]" + op + "? and " + t +
                        ".[Name1]" + op + "? ) ",
                    {w1, w2, w1, w2});
  }
  if (!w1.empty() || !w2.empty()) {
    const std::string w = w1.empty() ? w2 : w1;
    return db.Query("SELECT " + t + ".* FROM " + t + " WHERE (" + t + ".[Name1]" + op + "?  Or " +
                        t + ".[Name2]" + op + "?)",
                    {w, w});
  }
  return db.Query("SELECT " + t + ".* FROM " + t);
}

}  // namespace tervale::db
