#pragma once
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "state/errors.h"

struct sqlite3;

namespace tervale {
struct SharedCalcState;
}

namespace tervale::db {

// One field as the database holds it: Null, an integer, a number or a text.
using Value = std::variant<std::monostate, std::int64_t, double, std::string>;

bool IsNull(const Value& v);
// The number a field holds (an integer widened), or nothing for Null and text.
std::optional<double> AsNumber(const Value& v);
// The text of a field as a grid cell shows it: "" for Null, numbers in their shortest form.
std::string AsText(const Value& v);

// The rows of one query, with the table's column names in table order.
struct RecordSet {
  std::vector<std::string> columns;
  std::vector<std::vector<Value>> rows;

  int RecordCount() const { return int(rows.size()); }
  // Position of a column by name (ASCII case ignored), -1 when absent.
  int ColumnIndex(std::string_view name) const;
  // The field of a row (0-based) by column name; Null when the column is absent.
  const Value& Field(size_t row, std::string_view column) const;
};

// A failure reported by the database: the text is the database's own message.
class DatabaseError : public TervaleError {
 public:
  DatabaseError(const std::string& what, int code) : TervaleError(what), code(code) {}
  int code = 0;
};

// The property database file, open. Holds one SQLite connection with the Jet-style like
// function registered and a busy timeout, so that a reader and a writer in two connections
// (a browser open while a save runs) wait for each other instead of failing.
class PropertyDatabase {
 public:
  // Opens an existing file for reading and writing; a file marked read-only (no write
  // permission bit at all) is opened read-only, so that a save reports the database's
  // refusal. Throws DatabaseError naming the path when the file is missing or is no database.
  static std::unique_ptr<PropertyDatabase> Open(const std::filesystem::path& file,
                                                bool readOnly = false);
  // Creates a new, empty file with all tables (used by the seed builder and tests).
  static std::unique_ptr<PropertyDatabase> Create(const std::filesystem::path& file);

  ~PropertyDatabase();
  PropertyDatabase(const PropertyDatabase&) = delete;
  PropertyDatabase& operator=(const PropertyDatabase&) = delete;

  // Runs a query with its parameters bound in order (never pasted into the text).
  RecordSet Query(std::string_view sql, const std::vector<Value>& params = {});
  // Runs a statement that changes the file; returns the number of rows changed.
  int Execute(std::string_view sql, const std::vector<Value>& params = {});
  // Runs fn inside one write transaction: all of it is written or none of it.
  template <class Fn>
  void InTransaction(Fn&& fn) {
    Begin();
    try {
      fn();
    } catch (...) {
      Rollback();
      throw;
    }
    Commit();
  }

  const std::filesystem::path& Path() const { return path_; }
  sqlite3* Handle() const { return db_; }

 private:
  PropertyDatabase(sqlite3* db, std::filesystem::path path) : db_(db), path_(std::move(path)) {}
  void Begin();
  void Commit();
  void Rollback();
  [[noreturn]] void Fail(int code) const;

  sqlite3* db_ = nullptr;
  std::filesystem::path path_;
};

// ---- schema ----

enum class ColumnType { Text, Integer, Number, Date };

struct ColumnDef {
  std::string_view name;
  ColumnType type;
};

struct TableDef {
  std::string_view name;      // the table's name in the database
  std::string_view seedFile;  // its file in the seed folder
  std::vector<ColumnDef> columns;
};

// Every table of the property database, columns in table order.
const std::vector<TableDef>& Schema();
const TableDef* FindTable(std::string_view name);

// Builds a new database file from the seed folder (one CSV a table, header row = column names
// in table order, empty field = Null). The file is written beside the target and renamed over
// it at the end, so a failed build leaves the old file. Returns the number of rows written.
int BuildDatabaseFromSeed(const std::filesystem::path& seedDir, const std::filesystem::path& out);

// ---- finding the file ----

inline constexpr std::string_view kDatabaseBaseName = "Masterd$";

// The database file beside the programs: Masterd$.mdb if such a file exists, else Masterd$.mde
// (whether it exists or not).
std::filesystem::path ResolveDatabaseFile(const std::filesystem::path& programFolder);

// Opens s.DatabaseFile for a dialogue. On failure shows a message naming the path and the
// database's reason, and returns null: the program goes on without look-ups.
std::unique_ptr<PropertyDatabase> OpenPropertyDatabase(SharedCalcState& s);

// Today's date as the database stores it (YYYY-MM-DD, local time).
std::string Today();

}  // namespace tervale::db
