#pragma once
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "common/scratch.h"
#include "database/property_db.h"
#include "state/shared_state.h"

namespace tervale::db::testing {

namespace fs = std::filesystem;
using testcli::ReadBytes;
using testcli::ScratchDir;

// The seeded database is built once per test program and copied for every test, so that the
// writers' tests start from the same file.
inline const fs::path& SeededDatabase() {
  static const ScratchDir dir("db_seed");
  static fs::path file = [] {
    fs::path f = dir / "Masterd$.mde";
    BuildDatabaseFromSeed(fs::path(TERVALE_SOURCE_DIR) / "data" / "property-seed", f);
    return f;
  }();
  return file;
}

// Each named field of a row holds exactly the value given, its type included (an Index is an
// integer, Null is std::monostate).
inline void ExpectRow(const RecordSet& rs, size_t row, const std::vector<const char*>& columns,
                      const std::vector<Value>& values) {
  ASSERT_EQ(columns.size(), values.size());
  for (size_t k = 0; k < columns.size(); ++k)
    EXPECT_EQ(rs.Field(row, columns[k]), values[k]) << columns[k];
}

class SeededDbTest : public ::testing::Test {
 protected:
  void SetUp() override {
    file_ = dir_ / "Masterd$.mde";
    fs::copy_file(SeededDatabase(), file_);
    db_ = PropertyDatabase::Open(file_);
    s_ = MakeSharedCalcState();
    s_->LanguageFlag = 1;
    s_->Dialogs = &dialogs_;
    s_->DatabaseFile = file_.string();
  }
  int Count(const std::string& table) {
    return int(
        std::get<std::int64_t>(db_->Query("SELECT count(*) FROM [" + table + "]").rows[0][0]));
  }

  ScratchDir dir_{"db"};  // declared first: removed after the database is closed
  fs::path file_;
  std::unique_ptr<PropertyDatabase> db_;
  std::unique_ptr<SharedCalcState> s_;
  RecordingDialogs dialogs_;
};

}  // namespace tervale::db::testing
