// tervale-cli db: the property database without the screens: build it from the seed, search
// it as the look-up dialogues do, list it as the browsers do, save a binary pair.
#include <iostream>
#include <optional>

#include "cli/command_registry.h"
#include "database/lookups.h"
#include "database/property_db.h"
#include "database/writers.h"

namespace tervale::cli {
namespace {

namespace fs = std::filesystem;
using db::PropertyDatabase;
using db::RecordSet;
using db::Value;

struct DbOptions {
  std::string dbFile;  // --db; empty: beside the program
  // build
  std::string seedDir, out;
  // search / browse
  std::string table, word;
  std::string name, name2;
  // pair / save-pair
  std::string kind, name1, nameB;
  std::string alpha;
  std::string p12, p21;
  std::string memo, formula1, formula2, temp, press;
  std::vector<std::string> antoine1, antoine2;
  bool addMissing = false;
};

DbOptions& Opt() {
  static DbOptions o;
  return o;
}

fs::path ProgramFolder() {
  std::error_code ec;
  fs::path exe = fs::read_symlink("/proc/self/exe", ec);
  return ec ? fs::current_path() : exe.parent_path();
}

// Opens the database for a command: --db FILE, else the file beside the program. A missing or
// unreadable file is refused with a message naming it.
std::unique_ptr<PropertyDatabase> OpenForCommand(CliContext& ctx) {
  auto& s = ctx.s();
  s.DatabaseFile =
      Opt().dbFile.empty() ? db::ResolveDatabaseFile(ProgramFolder()).string() : Opt().dbFile;
  return db::OpenPropertyDatabase(s);
}

// The database could not be opened: its message is shown already.
int NoDatabase(CliContext& ctx, Json object = Json::object()) {
  if (ctx.json) PrintJson(ctx, std::move(object));
  return 2;
}

Json JsonValue(CliContext& ctx, const Value& v, std::string_view what) {
  if (auto* i = std::get_if<std::int64_t>(&v)) return *i;
  if (auto* d = std::get_if<double>(&v)) return JsonNumber(ctx, *d, what);
  if (auto* t = std::get_if<std::string>(&v)) return *t;
  return nullptr;
}

Json JsonRows(CliContext& ctx, const RecordSet& rs) {
  Json rows = Json::array();
  for (const auto& row : rs.rows) {
    Json r = Json::object();
    for (size_t c = 0; c < rs.columns.size(); ++c)
      r[rs.columns[c]] = JsonValue(ctx, row[c], rs.columns[c]);
    rows.push_back(std::move(r));
  }
  return rows;
}

io::ReportTable ToReport(const std::string& view, const RecordSet& rs) {
  io::ReportTable t;
  t.view = view;
  t.columns = rs.columns;
  for (const auto& row : rs.rows) {
    std::vector<io::Cell> cells;
    for (const auto& v : row) {
      if (auto* i = std::get_if<std::int64_t>(&v)) {
        cells.emplace_back(double(*i));
      } else if (auto* d = std::get_if<double>(&v)) {
        cells.emplace_back(*d);
      } else if (auto* s = std::get_if<std::string>(&v)) {
        cells.emplace_back(*s);
      } else {
        cells.emplace_back(std::monostate{});
      }
    }
    t.rows.push_back(std::move(cells));
  }
  return t;
}

// The words of the command line for the tables.
std::optional<db::LookupKind> SearchKind(const std::string& word) {
  if (word == "antoine") return db::LookupKind::Antoine;
  if (word == "component") return db::LookupKind::Component;
  if (word == "enthalpy") return db::LookupKind::Enthalpy;
  if (word == "heat-capacity") return db::LookupKind::HeatCapacity;
  return std::nullopt;
}

std::optional<db::LookupKind> PairKind(const std::string& word) {
  if (word == "wilson") return db::LookupKind::Wilson;
  if (word == "nrtl") return db::LookupKind::Nrtl;
  if (word == "kij") return db::LookupKind::Kij;
  return std::nullopt;
}

std::string_view BrowseTable(const std::string& word) {
  if (word == "component" || word == "critical") return "CriticalConstant";
  if (word == "antoine") return "AntoineConstant";
  if (word == "heat-capacity") return "HeatCapacity";
  if (word == "liquid-density") return "LiquidDensity";
  if (word == "rk") return "Rk_Parameter";
  if (word == "enthalpy") return "EnthalpyCoefficent";
  if (word == "wilson") return "Wilson Parameter";
  if (word == "nrtl") return "NRTL Parameter";
  if (word == "kij") return "Kij Parameter";
  return "";
}

bool SameIgnoringCase(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) !=
        std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  return true;
}

int RunBuild(CliContext& ctx) {
  try {
    int rows = db::BuildDatabaseFromSeed(Opt().seedDir, Opt().out);
    std::cerr << "Property database " << Opt().out << ": " << rows << " rows\n";
    if (ctx.json) PrintJson(ctx, Json{{"file", Opt().out}, {"rows", rows}});
    return 0;
  } catch (const FileReadError& e) {
    std::string where = e.file + (e.line ? ":" + std::to_string(e.line) : "");
    return Refuse(ctx, where + ": " + e.what());
  } catch (const TervaleError& e) {
    return Refuse(ctx, e.what());
  }
}

int RunSearch(CliContext& ctx) {
  auto kind = SearchKind(Opt().table);
  if (!kind)
    return Refuse(ctx, "Unknown table \"" + Opt().table +
                           "\": antoine, component, enthalpy or heat-capacity");
  auto database = OpenForCommand(ctx);
  if (!database)
    return NoDatabase(
        ctx, Json{{"table", std::string(db::LookupTable(*kind))}, {"rows", Json::array()}});
  auto d = db::SearchSubstance(*database, ctx.s(), *kind, Opt().word);
  if (!d.Label.empty()) ctx.dialogs.Message(d.Label);
  std::string table(db::LookupTable(*kind));
  if (ctx.json) {
    PrintJson(ctx, Json{{"table", table}, {"rows", JsonRows(ctx, d.Found)}});
  } else {
    PrintTable(ctx, ToReport(table, d.Found));
  }
  return 0;
}

int RunPair(CliContext& ctx) {
  auto kind = PairKind(Opt().kind);
  if (!kind) return Refuse(ctx, "Unknown kind \"" + Opt().kind + "\": wilson, nrtl or kij");
  auto& s = ctx.s();
  std::optional<double> alpha;
  if (!Opt().alpha.empty()) {
    double a = 0;
    if (!ParseOptionNumber(ctx, "--alpha", Opt().alpha, a)) return Refuse(ctx, "Bad --alpha");
    alpha = a;
  }
  auto database = OpenForCommand(ctx);
  if (!database) return NoDatabase(ctx);
  std::string table(db::LookupTable(*kind));
  const std::string& n1 = Opt().name1;
  const std::string& n2 = Opt().nameB;

  // The rows: as the look-up finds them (NRTL with the exact alpha when one is given, all
  // alphas otherwise), in Index order.
  RecordSet rows;
  if (*kind == db::LookupKind::Nrtl && !alpha) {
    rows = database->Query(
        "SELECT * FROM [NRTL Parameter] WHERE ([Name1] = ? and [Name2] = ?) Or ([Name2] = ? and "
        "[Name1] = ?) ORDER BY [Index], rowid",
        {n1, n2, n1, n2});
  } else {
    if (alpha) s.Bin.NrtlAlpha = *alpha;
    rows = db::SearchPair(*database, s, *kind, n1, n2).Found;
  }

  // The block the look-up's OK fills for the first row, component 1 being NAME1.
  Json matrix = nullptr;
  if (rows.RecordCount() > 0) {
    ResetComponentsAndMatrices(s);
    s.NC = 2;
    s.ActiveProgram = 0;
    s.Comp.CompName[1] = n1;
    s.Comp.CompName[2] = n2;
    // The database compares names without regard to case: take the stored spelling.
    for (const char* col : {"Name1", "Name2"}) {
      std::string stored = db::AsText(rows.Field(0, col));
      for (int k = 1; k <= 2; ++k)
        if (SameIgnoringCase(stored, s.Comp.CompName[k])) s.Comp.CompName[k] = stored;
    }
    if (*kind == db::LookupKind::Nrtl) {
      if (auto a = db::AsNumber(rows.Field(0, "Alpha"))) s.Bin.NrtlAlpha = *a;
    }
    auto d = db::SearchPair(*database, s, *kind, s.Comp.CompName[1], s.Comp.CompName[2]);
    db::CallerGrid grid;
    grid.ActiveRow = 1;
    grid.ActiveCol = 2;
    if (db::LookupOk(*database, s, d, grid) == db::OkResult::Closed && d.PairFirst > 0) {
      const CompMatrix& m = *kind == db::LookupKind::Wilson ? s.Bin.WilsonLambda
                            : *kind == db::LookupKind::Nrtl ? s.Bin.NrtlTau
                                                            : s.Bin.KijMatrix;
      matrix = Json::array();
      for (int i = 1; i <= 2; ++i) {
        Json line = Json::array();
        for (int j = 1; j <= 2; ++j) line.push_back(JsonNumber(ctx, m[i][j], "matrix"));
        matrix.push_back(std::move(line));
      }
    }
  }
  if (ctx.json) {
    Json out{{"table", table}, {"name1", n1}, {"name2", n2}};
    if (*kind == db::LookupKind::Nrtl) out["alpha"] = alpha ? Json(*alpha) : Json(nullptr);
    out["rows"] = JsonRows(ctx, rows);
    out["matrix"] = matrix;
    PrintJson(ctx, std::move(out));
  } else {
    PrintTable(ctx, ToReport(table, rows));
    if (matrix.is_null()) {
      std::cout << "\nNo pair stored.\n";
    } else {
      std::cout << "\nMatrix (1 = " << n1 << ", 2 = " << n2 << "):\n";
      for (const auto& line : matrix)
        std::cout << "  " << line[0].dump() << "  " << line[1].dump() << '\n';
    }
  }
  return 0;
}

int RunBrowse(CliContext& ctx) {
  std::string_view table = BrowseTable(Opt().table);
  if (table.empty())
    return Refuse(ctx, "Unknown table \"" + Opt().table +
                           "\": component, antoine, heat-capacity, liquid-density, rk, enthalpy, "
                           "wilson, nrtl or kij");
  auto database = OpenForCommand(ctx);
  if (!database) return NoDatabase(ctx);
  const bool pair =
      table == "Wilson Parameter" || table == "NRTL Parameter" || table == "Kij Parameter";
  if (!pair && !Opt().name2.empty()) return Refuse(ctx, "--name2 belongs to the pair tables");
  RecordSet rs;
  if (Opt().name.empty() && Opt().name2.empty()) {
    rs = db::BrowseOnLoad(*database, table);
  } else if (pair) {
    rs = db::BrowsePairQuery(*database, table, Opt().name, Opt().name2);
  } else {
    rs = db::BrowseQuery(*database, table, Opt().name);
  }
  PrintTable(ctx, ToReport(Opt().table, rs));
  return 0;
}

bool ReadAntoine(CliContext& ctx, const std::vector<std::string>& texts, const char* option,
                 double& a, double& b, double& c) {
  return ParseOptionNumber(ctx, option, texts[0], a) &&
         ParseOptionNumber(ctx, option, texts[1], b) && ParseOptionNumber(ctx, option, texts[2], c);
}

const char* OutcomeWord(db::SaveOutcome o) {
  switch (o) {
    case db::SaveOutcome::Saved:
      return "saved";
    case db::SaveOutcome::Duplicate:
      return "duplicate";
    case db::SaveOutcome::Stopped:
      return "stopped";
    case db::SaveOutcome::Failed:
      return "failed";
  }
  return "";
}

int RunSavePair(CliContext& ctx) {
  const auto& o = Opt();
  if (o.kind != "wilson" && o.kind != "nrtl")
    return Refuse(ctx, "Unknown kind \"" + o.kind + "\": wilson or nrtl");
  auto& s = ctx.s();
  db::ParameterSaveCase c;
  c.CalcType = o.kind == "wilson" ? 1 : 2;
  c.ComponentName[1] = o.name1;
  c.ComponentName[2] = o.nameB;
  double p12 = 0, p21 = 0;
  if (!ParseOptionNumber(ctx, "P12", o.p12, p12) || !ParseOptionNumber(ctx, "P21", o.p21, p21))
    return Refuse(ctx, "Bad parameter value");
  if (c.CalcType == 1) {
    c.WilsonLambda12 = p12;
    c.WilsonLambda21 = p21;
  } else {
    c.NrtlTau12 = p12;
    c.NrtlTau21 = p21;
    if (!o.alpha.empty() && !ParseOptionNumber(ctx, "--alpha", o.alpha, c.NrtlAlpha))
      return Refuse(ctx, "Bad --alpha");
  }
  if (!o.press.empty()) {
    c.TPType = 1;
    if (!ParseOptionNumber(ctx, "--press", o.press, c.VLEPressure))
      return Refuse(ctx, "Bad --press");
  } else {
    c.TPType = 0;
    c.VLETemperature = 25;
    if (!o.temp.empty() && !ParseOptionNumber(ctx, "--temp", o.temp, c.VLETemperature))
      return Refuse(ctx, "Bad --temp");
  }
  auto database = OpenForCommand(ctx);
  if (!database) return NoDatabase(ctx);

  // The Antoine constants of the case: given, or the first stored set of the name.
  for (int k = 1; k <= 2; ++k) {
    const auto& given = k == 1 ? o.antoine1 : o.antoine2;
    if (!given.empty()) {
      if (!ReadAntoine(ctx, given, k == 1 ? "--antoine1" : "--antoine2", c.AntoineA[k],
                       c.AntoineB[k], c.AntoineC[k]))
        return Refuse(ctx, "Bad Antoine constants");
      continue;
    }
    auto rs =
        database->Query("SELECT * FROM [AntoineConstant] WHERE [Name] = ? ORDER BY [Index], rowid",
                        {c.ComponentName[k]});
    auto a = rs.RecordCount() ? db::AsNumber(rs.Field(0, "AN")) : std::nullopt;
    auto b = rs.RecordCount() ? db::AsNumber(rs.Field(0, "BN")) : std::nullopt;
    auto cc = rs.RecordCount() ? db::AsNumber(rs.Field(0, "CN")) : std::nullopt;
    if (!a || !b || !cc)
      return Refuse(ctx, "No Antoine constants stored for \"" + c.ComponentName[k] +
                             "\": give --antoine" + std::to_string(k) + " A B C");
    c.AntoineA[k] = *a;
    c.AntoineB[k] = *b;
    c.AntoineC[k] = *cc;
    c.AntoineTL[k] = db::AsNumber(rs.Field(0, "TL"));
    c.AntoineTU[k] = db::AsNumber(rs.Field(0, "TU"));
  }

  auto form = db::LoadParameterSave(*database, s, c);
  if (form.LoadFailed) return Refuse(ctx, "The parameter save could not read the database");
  if (!o.formula1.empty()) form.Formula[1] = o.formula1;
  if (!o.formula2.empty()) form.Formula[2] = o.formula2;
  if (!o.memo.empty()) {
    form.Memo = o.memo;
  } else if (form.Memo.empty()) {
    form.Memo = "Saved by tervale-cli db save-pair";
  }
  db::ShowParameterSave(s, form);

  // A component missing from CriticalConstant: --add-missing answers Yes and adds its formula
  // and name; otherwise the answer is the question's default, No.
  for (int k = 0; k < 2; ++k)
    ctx.dialogs.preparedAnswers.push_back(o.addMissing ? Answer::Yes : Answer::No);
  auto criticalForm = [&](const std::string& name, const std::string& formula) {
    db::CriticalConstantEntry e;
    e.Formula = formula;
    e.Name = name;
    e.Fields[1] = "0";  // Index
    auto r = db::SaveCriticalConstant(*database, s, e);
    return r.Formula;
  };
  auto result = db::SaveParameters(*database, s, form, criticalForm);
  ctx.dialogs.preparedAnswers.clear();

  if (ctx.json) {
    PrintJson(
        ctx,
        Json{{"table", std::string(c.CalcType == 1 ? "Wilson Parameter" : "NRTL Parameter")},
             {"name1", c.ComponentName[1]},
             {"name2", c.ComponentName[2]},
             {"duplicate", form.ParameterDuplicate},
             {"antoine_known", {bool(form.AntoineKnown[1]), bool(form.AntoineKnown[2])}},
             {"outcome", OutcomeWord(result.outcome)},
             {"antoine_rows_added", result.antoineRowsAdded},
             {"index", result.parameterRowAdded ? Json(result.parameterIndex) : Json(nullptr)}});
  } else {
    if (result.outcome == db::SaveOutcome::Stopped)
      std::cerr << "The save stopped; nothing was written.\n";
    std::cout << OutcomeWord(result.outcome);
    if (result.parameterRowAdded) std::cout << " (Index " << result.parameterIndex << ")";
    std::cout << '\n';
  }
  switch (result.outcome) {
    case db::SaveOutcome::Saved:
    case db::SaveOutcome::Duplicate:
      return 0;
    case db::SaveOutcome::Stopped:
      return 2;
    case db::SaveOutcome::Failed:
      return 1;
  }
  return 1;
}

CommandRegistrar reg(900, [](CLI::App& app, CliContext& ctx) {
  auto& o = Opt();
  auto* dbCmd = app.add_subcommand("db", "The property database: build, search, browse, save");
  dbCmd->require_subcommand(1);
  dbCmd->fallthrough();
  auto addDb = [&](CLI::App* cmd) {
    cmd->add_option("--db", o.dbFile,
                    "Database file (default: Masterd$.mdb or .mde beside the program)");
  };

  auto* build = dbCmd->add_subcommand("build", "Build the database file from the seed folder");
  build->add_option("SEED_DIR", o.seedDir, "Folder of the seed CSV files")->required();
  build->add_option("OUT", o.out, "Database file to write")->required();
  build->callback([&ctx] { ctx.action = [&ctx] { return RunBuild(ctx); }; });

  auto* search =
      dbCmd->add_subcommand("search", "Search a table by name or formula (Jet wildcards)");
  search->add_option("TABLE", o.table, "antoine, component, enthalpy or heat-capacity")->required();
  search->add_option("WORD", o.word, "Name or formula; * ? # [..] [!..] as wildcards")->required();
  addDb(search);
  search->callback([&ctx] { ctx.action = [&ctx] { return RunSearch(ctx); }; });

  auto* pair = dbCmd->add_subcommand("pair", "Find a binary pair in both name orders");
  pair->add_option("KIND", o.kind, "wilson, nrtl or kij")->required();
  pair->add_option("NAME1", o.name1, "Component 1")->required();
  pair->add_option("NAME2", o.nameB, "Component 2")->required();
  pair->add_option("--alpha", o.alpha, "NRTL: only rows with exactly this Alpha");
  addDb(pair);
  pair->callback([&ctx] { ctx.action = [&ctx] { return RunPair(ctx); }; });

  auto* browse = dbCmd->add_subcommand("browse", "List a table as the database browsers show it");
  browse
      ->add_option("TABLE", o.table,
                   "component, antoine, heat-capacity, liquid-density, rk, enthalpy, wilson, "
                   "nrtl or kij")
      ->required();
  browse->add_option("--name", o.name, "Query word (Name; Name1 or Name2 for the pair tables)");
  browse->add_option("--name2", o.name2, "Second query word (pair tables)");
  addDb(browse);
  browse->callback([&ctx] { ctx.action = [&ctx] { return RunBrowse(ctx); }; });

  auto* save =
      dbCmd->add_subcommand("save-pair", "Save a Wilson or NRTL pair as the parameter save does");
  save->add_option("KIND", o.kind, "wilson or nrtl")->required();
  save->add_option("NAME1", o.name1, "Component 1")->required();
  save->add_option("NAME2", o.nameB, "Component 2")->required();
  save->add_option("P12", o.p12, "Lambda12 or Tau12")->required();
  save->add_option("P21", o.p21, "Lambda21 or Tau21")->required();
  save->add_option("--alpha", o.alpha, "NRTL alpha (default 0.4)");
  save->add_option("--memo", o.memo, "Memo of the row");
  save->add_option("--formula1", o.formula1,
                   "Formula of component 1 (default: from its Antoine row)");
  save->add_option("--formula2", o.formula2, "Formula of component 2");
  save->add_option("--antoine1", o.antoine1, "A B C of component 1 (default: its first stored set)")
      ->expected(3);
  save->add_option("--antoine2", o.antoine2, "A B C of component 2")->expected(3);
  save->add_option("--temp", o.temp, "Temperature stored with the pair (C, default 25)");
  save->add_option("--press", o.press, "Pressure stored with the pair instead (mmHg)");
  save->add_flag("--add-missing", o.addMissing, "Add components missing from CriticalConstant");
  addDb(save);
  save->callback([&ctx] { ctx.action = [&ctx] { return RunSavePair(ctx); }; });
});

}  // namespace
}  // namespace tervale::cli
