// tervale-cli pairs: the binary pairs of a flash, column or batch case still at their default
// Wilson or NRTL parameters, whether the property database holds them, and filling them from it.
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>

#include "batch/batch_data.h"
#include "cli/command_registry.h"
#include "column/column_case.h"
#include "database/missing_pairs.h"
#include "database/property_db.h"
#include "flash/flash_program.h"

namespace tervale::cli {
namespace {

namespace fs = std::filesystem;

struct PairsOptions {
  std::string file;
  std::string program;  // flash | column (needed for "Distillation Data")
  std::string out;
  std::string dbFile;
  bool fill = false;
};

// A program whose case files the command reads and writes.
struct CaseProgram {
  std::string name;
  std::string magic;      // first line of its files
  int activeProgram = 0;  // the menu's number of the program
  std::function<bool(SharedCalcState&, const fs::path&)> read;
  std::function<void(SharedCalcState&, const fs::path&)> write;
};

const std::vector<CaseProgram>& Programs() {
  static const std::vector<CaseProgram> list = {
      {"flash", "Distillation Data", 2,
       [](SharedCalcState& s, const fs::path& p) {
         ReadFlashFile(s, p);
         return true;
       },
       [](SharedCalcState& s, const fs::path& p) { WriteFlashFile(s, p); }},
      {"batch", kBatchFileMagic, 1,
       [](SharedCalcState& s, const fs::path& p) { return ReadBatchCase(s, p, false); },
       [](SharedCalcState& s, const fs::path& p) { WriteBatchCase(s, p); }},
      {"column", "Distillation Data", 0,
       [](SharedCalcState& s, const fs::path& p) { return ReadColumnFile(s, p.string()); },
       [](SharedCalcState& s, const fs::path& p) { WriteColumnFile(s, p.string()); }},
  };
  return list;
}

// The first line of a file without a byte-order mark, line end or surrounding blanks and quotes.
std::string FirstLine(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::string line;
  std::getline(in, line);
  if (line.rfind("\xEF\xBB\xBF", 0) == 0) line.erase(0, 3);
  while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '"'))
    line.pop_back();
  size_t start = line.find_first_not_of(" \"");
  return start == std::string::npos ? "" : line.substr(start);
}

fs::path ProgramFolder() {
  std::error_code ec;
  fs::path exe = fs::read_symlink("/proc/self/exe", ec);
  return ec ? fs::current_path() : exe.parent_path();
}

int RunPairs(CliContext& ctx, const PairsOptions& o) {
  auto& s = ctx.s();
  Json base = {{"file", o.file}};
  if (o.fill && o.out.empty())
    return Refuse(ctx,
                  "--fill-from-db needs -o OUT: the filled case is written there (the input file "
                  "is not overwritten unless OUT names it)",
                  base);
  if (!fs::is_regular_file(o.file)) return Refuse(ctx, "No such file: " + o.file, base);

  const std::string magic = FirstLine(o.file);
  std::vector<const CaseProgram*> candidates;
  for (const CaseProgram& p : Programs())
    if (p.magic == magic) candidates.push_back(&p);
  const CaseProgram* program = nullptr;
  if (o.program.empty() && magic == "Distillation Data")
    return Refuse(ctx,
                  "\"Distillation Data\" is the first line of both flash and column cases: say "
                  "which with --program flash|column",
                  base);
  if (!o.program.empty()) {
    for (const CaseProgram& p : Programs())
      if (p.name == o.program) program = &p;
    if (!program)
      return Refuse(ctx, "--program " + o.program + ": this build reads no such case files", base);
  } else if (candidates.size() == 1) {
    program = candidates[0];
  } else {
    return Refuse(ctx, "Not a flash, column or batch case file: " + o.file, base);
  }
  base["program"] = program->name;

  s.ActiveProgram = program->activeProgram;
  try {
    if (!program->read(s, o.file)) {
      if (ctx.json) PrintJson(ctx, base);
      return 2;
    }
  } catch (const TervaleError& e) {
    return Refuse(ctx, e.what(), base);
  }

  s.DatabaseFile = o.dbFile.empty() ? db::ResolveDatabaseFile(ProgramFolder()).string() : o.dbFile;
  std::unique_ptr<db::PropertyDatabase> database = db::OpenPropertyDatabase(s);
  if (!database) {
    if (ctx.json) PrintJson(ctx, base);
    return 2;
  }
  const db::MissingPairsResult r = db::FindMissingPairs(*database, s, o.fill);
  if (!r.applies)
    ctx.dialogs.Message(
        "The case's K-value method uses no Wilson or NRTL parameters: no pairs to look up");

  if (!o.out.empty()) {
    try {
      program->write(s, o.out);
    } catch (const TervaleError& e) {
      return Refuse(ctx, e.what(), base);
    }
  }

  if (ctx.json) {
    Json pairs = Json::array();
    for (const auto& p : r.pairs)
      pairs.push_back({{"i", p.i},
                       {"j", p.j},
                       {"name1", p.name1},
                       {"name2", p.name2},
                       {"stored", p.stored},
                       {"index", p.index ? Json(*p.index) : Json(nullptr)},
                       {"filled", p.filled}});
    Json object = base;
    object["method"] = r.applies ? (r.wilson ? "wilson" : "nrtl") : Json(nullptr);
    object["pairs"] = std::move(pairs);
    object["output"] = o.out.empty() ? Json(nullptr) : Json(o.out);
    PrintJson(ctx, std::move(object));
    return 0;
  }
  io::ReportTable t;
  t.view = "pairs";
  t.columns = {"i", "j", "name1", "name2", "stored", "index", "filled"};
  for (const auto& p : r.pairs) {
    io::Cell index = std::monostate{};
    if (p.index) index = static_cast<double>(*p.index);
    t.rows.push_back({static_cast<double>(p.i), static_cast<double>(p.j), p.name1, p.name2,
                      std::string(p.stored ? "yes" : "no"), index,
                      std::string(p.filled ? "yes" : "no")});
  }
  if (!ctx.csv && r.applies)
    std::cout << (r.wilson ? "Wilson" : "NRTL") << " pairs at their defaults: " << r.pairs.size()
              << '\n';
  PrintTable(ctx, t);
  if (!ctx.csv && !o.out.empty()) std::cout << "Written: " << o.out << '\n';
  return 0;
}

CommandRegistrar reg(70, [](CLI::App& app, CliContext& ctx) {
  static PairsOptions o;
  auto* cmd = app.add_subcommand(
      "pairs", "List (and fill from the database) the binary pairs of a case still at defaults");
  cmd->add_option("file", o.file, "A flash, column or batch case file")->required();
  cmd->add_option("--program", o.program,
                  "flash or column: which program's case a \"Distillation Data\" file is")
      ->check(CLI::IsMember({"flash", "column", "batch"}));
  cmd->add_flag("--fill-from-db", o.fill,
                "Fill every stored pair as the look-up dialogue's OK does (needs -o)");
  cmd->add_option("-o,--output", o.out, "Write the (filled) case to this file");
  cmd->add_option("--db", o.dbFile,
                  "Database file (default: Masterd$.mdb or .mde beside the program)");
  cmd->callback([&ctx] { ctx.action = [&ctx] { return RunPairs(ctx, o); }; });
});

}  // namespace
}  // namespace tervale::cli
