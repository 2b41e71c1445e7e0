#include "database/property_db.h"

#include <sqlite3.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <ctime>
#include <system_error>

#include "database/csv_reader.h"
#include "database/jet_like.h"
#include "io/record_writer.h"
#include "state/shared_state.h"

namespace tervale::db {

namespace fs = std::filesystem;

bool IsNull(const Value& v) {
  return std::holds_alternative<std::monostate>(v);
}

std::optional<double> AsNumber(const Value& v) {
  if (auto* i = std::get_if<std::int64_t>(&v)) return double(*i);
  if (auto* d = std::get_if<double>(&v)) return *d;
  return std::nullopt;
}

std::string AsText(const Value& v) {
  if (auto* i = std::get_if<std::int64_t>(&v)) return std::to_string(*i);
  if (auto* d = std::get_if<double>(&v)) return io::FormatShortest(*d);
  if (auto* s = std::get_if<std::string>(&v)) return *s;
  return "";
}

namespace {

bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) !=
        std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  return true;
}

const Value kNull{};

struct Statement {
  sqlite3_stmt* st = nullptr;
  ~Statement() { sqlite3_finalize(st); }
};

}  // namespace

int RecordSet::ColumnIndex(std::string_view name) const {
  for (size_t c = 0; c < columns.size(); ++c)
    if (SameName(columns[c], name)) return int(c);
  return -1;
}

const Value& RecordSet::Field(size_t row, std::string_view column) const {
  int c = ColumnIndex(column);
  if (c < 0 || row >= rows.size() || size_t(c) >= rows[row].size()) return kNull;
  return rows[row][c];
}

// ---- connection ----

PropertyDatabase::~PropertyDatabase() {
  sqlite3_close_v2(db_);
}

void PropertyDatabase::Fail(int code) const {
  std::string msg = db_ ? sqlite3_errmsg(db_) : sqlite3_errstr(code);
  throw DatabaseError(msg, code);
}

namespace {

std::unique_ptr<sqlite3, int (*)(sqlite3*)> OpenHandle(const fs::path& file, int flags) {
  sqlite3* raw = nullptr;
  int rc = sqlite3_open_v2(file.c_str(), &raw, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  std::unique_ptr<sqlite3, int (*)(sqlite3*)> h(raw, sqlite3_close_v2);
  if (rc != SQLITE_OK) {
    std::string why = raw ? sqlite3_errmsg(raw) : sqlite3_errstr(rc);
    throw DatabaseError(why + ": " + file.string(), rc);
  }
  return h;
}

void Prepare(sqlite3* h) {
  sqlite3_busy_timeout(h, 5000);
  if (int rc = RegisterJetLike(h); rc != SQLITE_OK) throw DatabaseError(sqlite3_errstr(rc), rc);
}

}  // namespace

std::unique_ptr<PropertyDatabase> PropertyDatabase::Open(const fs::path& file, bool readOnly) {
  std::error_code ec;
  auto st = fs::status(file, ec);
  if (ec || !fs::exists(st)) {
    throw DatabaseError("The property database file does not exist: " + file.string(),
                        SQLITE_CANTOPEN);
  }
  if (!fs::is_regular_file(st)) {
    throw DatabaseError("The property database is not a file: " + file.string(), SQLITE_CANTOPEN);
  }
  const auto writeBits = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  if ((st.permissions() & writeBits) == fs::perms::none) readOnly = true;
  auto h = OpenHandle(file, readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE);
  Prepare(h.get());
  // Opening is lazy: read the schema now, so that a file that is no database is refused here
  // and not at the first look-up.
  char* err = nullptr;
  int rc = sqlite3_exec(h.get(), "SELECT count(*) FROM sqlite_master", nullptr, nullptr, &err);
  if (rc != SQLITE_OK) {
    std::string why = err ? err : sqlite3_errstr(rc);
    sqlite3_free(err);
    throw DatabaseError(why + ": " + file.string(), rc);
  }
  return std::unique_ptr<PropertyDatabase>(new PropertyDatabase(h.release(), file));
}

namespace {

std::string Bracket(std::string_view name) {
  std::string out;
  out.reserve(name.size() + 2);
  out += '[';
  out.append(name);
  out += ']';
  return out;
}

std::string CreateTableSql(const TableDef& t) {
  std::string sql = "CREATE TABLE " + Bracket(t.name) + " (";
  for (size_t c = 0; c < t.columns.size(); ++c) {
    const auto& col = t.columns[c];
    if (c) sql += ", ";
    sql += Bracket(col.name);
    switch (col.type) {
      case ColumnType::Text:
        // Text compares as the Jet engine compares it: without regard to case.
        sql += " TEXT COLLATE NOCASE";
        break;
      case ColumnType::Integer:
        sql += " INTEGER";
        break;
      case ColumnType::Number:
        sql += " REAL";
        break;
      case ColumnType::Date:
        sql += " TEXT";
        break;
    }
  }
  return sql + ")";
}

}  // namespace

std::unique_ptr<PropertyDatabase> PropertyDatabase::Create(const fs::path& file) {
  std::error_code ec;
  fs::remove(file, ec);
  auto h = OpenHandle(file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  Prepare(h.get());
  std::unique_ptr<PropertyDatabase> db(new PropertyDatabase(h.release(), file));
  db->InTransaction([&] {
    for (const auto& t : Schema()) {
      db->Execute(CreateTableSql(t));
      // Look-ups go by name: index the name columns.
      bool pair = std::any_of(t.columns.begin(), t.columns.end(),
                              [](const ColumnDef& c) { return c.name == "Name1"; });
      std::string idx = "CREATE INDEX " + Bracket(std::string(t.name) + " by name") + " ON " +
                        Bracket(t.name) + (pair ? "([Name1], [Name2])" : "([Name])");
      db->Execute(idx);
    }
  });
  return db;
}

namespace {

void Bind(sqlite3_stmt* st, int pos, const Value& v) {
  if (auto* i = std::get_if<std::int64_t>(&v)) {
    sqlite3_bind_int64(st, pos, *i);
  } else if (auto* d = std::get_if<double>(&v)) {
    sqlite3_bind_double(st, pos, *d);
  } else if (auto* s = std::get_if<std::string>(&v)) {
    sqlite3_bind_text(st, pos, s->data(), int(s->size()), SQLITE_TRANSIENT);
  } else {
    sqlite3_bind_null(st, pos);
  }
}

Value ColumnValue(sqlite3_stmt* st, int c) {
  switch (sqlite3_column_type(st, c)) {
    case SQLITE_INTEGER:
      return std::int64_t(sqlite3_column_int64(st, c));
    case SQLITE_FLOAT:
      return sqlite3_column_double(st, c);
    case SQLITE_TEXT:
    case SQLITE_BLOB: {
      const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(st, c));
      return std::string(p ? p : "", size_t(sqlite3_column_bytes(st, c)));
    }
    default:
      return std::monostate{};
  }
}

}  // namespace

RecordSet PropertyDatabase::Query(std::string_view sql, const std::vector<Value>& params) {
  Statement s;
  int rc = sqlite3_prepare_v2(db_, sql.data(), int(sql.size()), &s.st, nullptr);
  if (rc != SQLITE_OK) Fail(rc);
  for (size_t i = 0; i < params.size(); ++i) Bind(s.st, int(i) + 1, params[i]);
  RecordSet rs;
  int n = sqlite3_column_count(s.st);
  for (int c = 0; c < n; ++c) rs.columns.emplace_back(sqlite3_column_name(s.st, c));
  while ((rc = sqlite3_step(s.st)) == SQLITE_ROW) {
    std::vector<Value> row;
    row.reserve(n);
    for (int c = 0; c < n; ++c) row.push_back(ColumnValue(s.st, c));
    rs.rows.push_back(std::move(row));
  }
  if (rc != SQLITE_DONE) Fail(rc);
  return rs;
}

int PropertyDatabase::Execute(std::string_view sql, const std::vector<Value>& params) {
  Statement s;
  int rc = sqlite3_prepare_v2(db_, sql.data(), int(sql.size()), &s.st, nullptr);
  if (rc != SQLITE_OK) Fail(rc);
  for (size_t i = 0; i < params.size(); ++i) Bind(s.st, int(i) + 1, params[i]);
  while ((rc = sqlite3_step(s.st)) == SQLITE_ROW) {
  }
  if (rc != SQLITE_DONE) Fail(rc);
  return sqlite3_changes(db_);
}

void PropertyDatabase::Begin() {
  // IMMEDIATE takes the write lock at once (waiting on the busy timeout), so a transaction
  // never fails half-way for want of the lock.
  Execute("BEGIN IMMEDIATE");
}

void PropertyDatabase::Commit() {
  int rc = sqlite3_exec(db_, "COMMIT", nullptr, nullptr, nullptr);
  if (rc != SQLITE_OK) {
    int code = rc;
    std::string msg = sqlite3_errmsg(db_);
    if (!sqlite3_get_autocommit(db_)) sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
    throw DatabaseError(msg, code);
  }
}

void PropertyDatabase::Rollback() {
  if (!sqlite3_get_autocommit(db_)) sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
}

// ---- schema ----

const std::vector<TableDef>& Schema() {
  using T = ColumnType;
  static const std::vector<TableDef> schema = {
      {"CriticalConstant",
       "CriticalConstant.csv",
       {{"Formula", T::Text},
        {"Name", T::Text},
        {"Name-1", T::Text},
        {"Index", T::Integer},
        {"MW", T::Number},
        {"Tm", T::Number},
        {"Tb", T::Number},
        {"Tc", T::Number},
        {"Pc", T::Number},
        {"Vc", T::Number},
        {"Zc", T::Number},
        {"Omg", T::Number},
        {"dp", T::Number},
        {"Memo", T::Text},
        {"No", T::Integer},
        {"Date_Create", T::Date}}},
      {"AntoineConstant",
       "AntoineConstant.csv",
       {{"Formula", T::Text},
        {"Name", T::Text},
        {"Index", T::Integer},
        {"Equation Type", T::Integer},
        {"AN", T::Number},
        {"BN", T::Number},
        {"CN", T::Number},
        {"TL", T::Number},
        {"TU", T::Number},
        {"Memo", T::Text},
        {"Date_Create", T::Date}}},
      {"HeatCapacity",
       "HeatCapacity.csv",
       {{"Formula", T::Text},
        {"Name", T::Text},
        {"Index", T::Integer},
        {"CpA", T::Number},
        {"CpB", T::Number},
        {"CpC", T::Number},
        {"cpd", T::Number},
        {"TL", T::Number},
        {"TU", T::Number},
        {"Memo", T::Text}}},
      {"EnthalpyCoefficent",
       "EnthalpyCoefficent.csv",
       {{"Formula", T::Text},
        {"Name", T::Text},
        {"Index", T::Integer},
        {"AHV", T::Number},
        {"BHV", T::Number},
        {"CHV", T::Number},
        {"AHL", T::Number},
        {"BHL", T::Number},
        {"CHL", T::Number},
        {"Memo", T::Text}}},
      {"LiquidDensity",
       "LiquidDensity.csv",
       {{"Formula", T::Text},
        {"Name", T::Text},
        {"Index", T::Integer},
        {"A", T::Number},
        {"B", T::Number},
        {"C", T::Number},
        {"D", T::Number},
        {"TL", T::Number},
        {"TU", T::Number},
        {"Density25C", T::Number},
        {"Memo", T::Text},
        {"Date_Create", T::Date}}},
      {"Rk_Parameter",
       "Rk_Parameter.csv",
       {{"Formula", T::Text},
        {"Name", T::Text},
        {"Index", T::Integer},
        {"Tc", T::Number},
        {"Pc", T::Number},
        {"a", T::Number},
        {"b", T::Number},
        {"ZRA", T::Number},
        {"Memo", T::Text},
        {"Date_Create", T::Date}}},
      // The pair tables: Lambda12 and Lambda21 (Tau12, Tau21) are the fifth and sixth columns
      // counted from 0; the parameter save addresses them by position.
      {"Wilson Parameter",
       "Wilson_Parameter.csv",
       {{"Formula", T::Text},
        {"Name1", T::Text},
        {"Formula2", T::Text},
        {"Name2", T::Text},
        {"Index", T::Integer},
        {"Lambda12", T::Number},
        {"Lambda21", T::Number},
        {"temp", T::Number},
        {"press", T::Number},
        {"Memo", T::Text},
        {"Date_Create", T::Date}}},
      {"NRTL Parameter",
       "NRTL_Parameter.csv",
       {{"Formula", T::Text},
        {"Name1", T::Text},
        {"Formula2", T::Text},
        {"Name2", T::Text},
        {"Index", T::Integer},
        {"Tau12", T::Number},
        {"Tau21", T::Number},
        {"Alpha", T::Number},
        {"temp", T::Number},
        {"press", T::Number},
        {"Memo", T::Text},
        {"Date_Create", T::Date}}},
      {"Kij Parameter",
       "Kij_Parameter.csv",
       {{"Name1", T::Text},
        {"Name2", T::Text},
        {"Index", T::Integer},
        {"AKij", T::Number},
        {"Kij", T::Number},
        {"temp", T::Number},
        {"press", T::Number},
        {"Memo", T::Text}}},
  };
  return schema;
}

const TableDef* FindTable(std::string_view name) {
  for (const auto& t : Schema())
    if (t.name == name) return &t;
  return nullptr;
}

// ---- seed ----

namespace {

Value SeedValue(const CsvField& field, const ColumnDef& col, const std::string& file, int line,
                int fieldNo) {
  if (!field) return std::monostate{};
  const std::string& text = *field;
  switch (col.type) {
    case ColumnType::Text:
    case ColumnType::Date:
      return text;
    case ColumnType::Integer: {
      std::int64_t v = 0;
      auto [p, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
      if (ec != std::errc() || p != text.data() + text.size())
        throw FileReadError(
            file, line, fieldNo,
            "Not a whole number in column " + std::string(col.name) + ": \"" + text + "\"");
      return v;
    }
    case ColumnType::Number: {
      double v = 0;
      auto [p, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
      if (ec != std::errc() || p != text.data() + text.size() || !std::isfinite(v))
        throw FileReadError(
            file, line, fieldNo,
            "Not a number in column " + std::string(col.name) + ": \"" + text + "\"");
      return v;
    }
  }
  return std::monostate{};
}

}  // namespace

int BuildDatabaseFromSeed(const fs::path& seedDir, const fs::path& out) {
  // Read and check every file before anything is written.
  std::vector<std::vector<std::vector<Value>>> tables;
  for (const auto& t : Schema()) {
    fs::path file = seedDir / std::string(t.seedFile);
    auto rows = ReadCsvFile(file);
    if (rows.empty()) throw FileReadError(file.string(), 1, 0, "The seed file has no header row");
    const auto& header = rows[0];
    bool same = header.size() == t.columns.size();
    for (size_t c = 0; same && c < header.size(); ++c)
      same = header[c] && *header[c] == t.columns[c].name;
    if (!same) {
      std::string expected;
      for (const auto& c : t.columns) {
        if (!expected.empty()) expected += ',';
        expected.append(c.name);
      }
      throw FileReadError(file.string(), 1, 0, "The header row must read: " + expected);
    }
    std::vector<std::vector<Value>> values;
    for (size_t r = 1; r < rows.size(); ++r) {
      if (rows[r].size() != t.columns.size())
        throw FileReadError(file.string(), int(r) + 1, 0,
                            "Expected " + std::to_string(t.columns.size()) + " fields, found " +
                                std::to_string(rows[r].size()));
      std::vector<Value> row;
      for (size_t c = 0; c < t.columns.size(); ++c)
        row.push_back(SeedValue(rows[r][c], t.columns[c], file.string(), int(r) + 1, int(c) + 1));
      values.push_back(std::move(row));
    }
    tables.push_back(std::move(values));
  }

  fs::path temp = out;
  temp += ".building";
  int count = 0;
  {
    auto db = PropertyDatabase::Create(temp);
    db->InTransaction([&] {
      for (size_t ti = 0; ti < Schema().size(); ++ti) {
        const auto& t = Schema()[ti];
        std::string sql = "INSERT INTO " + Bracket(t.name) + " VALUES (";
        for (size_t c = 0; c < t.columns.size(); ++c) sql += c ? ", ?" : "?";
        sql += ")";
        Statement st;
        int rc = sqlite3_prepare_v2(db->Handle(), sql.c_str(), -1, &st.st, nullptr);
        if (rc != SQLITE_OK) throw DatabaseError(sqlite3_errmsg(db->Handle()), rc);
        for (const auto& row : tables[ti]) {
          for (size_t c = 0; c < row.size(); ++c) Bind(st.st, int(c) + 1, row[c]);
          rc = sqlite3_step(st.st);
          if (rc != SQLITE_DONE) throw DatabaseError(sqlite3_errmsg(db->Handle()), rc);
          sqlite3_reset(st.st);
          ++count;
        }
      }
    });
    db->Execute("ANALYZE");
  }
  std::error_code ec;
  fs::rename(temp, out, ec);
  if (ec) {
    fs::remove(temp, ec);
    throw FileWriteError("Cannot write " + out.string());
  }
  return count;
}

// ---- finding the file ----

fs::path ResolveDatabaseFile(const fs::path& programFolder) {
  fs::path mdb = programFolder / (std::string(kDatabaseBaseName) + ".mdb");
  std::error_code ec;
  if (fs::exists(mdb, ec)) return mdb;
  return programFolder / (std::string(kDatabaseBaseName) + ".mde");
}

std::unique_ptr<PropertyDatabase> OpenPropertyDatabase(SharedCalcState& s) {
  try {
    return PropertyDatabase::Open(s.DatabaseFile);
  } catch (const DatabaseError& e) {
    std::string en = "The property database cannot be opened; look-ups are not available.\n";
    std::string ja = "物性データベースを開けません。データベース検索は使えません。\n";
    std::string why = e.what();
    ShowMessage(s, BiText{en + why, ja + why});
    return nullptr;
  }
}

std::string Today() {
  std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char buf[16];
  std::strftime(buf, sizeof buf, "%Y-%m-%d", &local);
  return buf;
}

}  // namespace tervale::db
