#pragma once
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "database/property_db.h"
#include "state/shared_state.h"

namespace tervale::db::testing {

namespace fs = std::filesystem;

// A scratch folder of its own per test, removed afterwards.
inline fs::path MakeScratchFolder() {
  const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
  std::string name = std::string(info->test_suite_name()) + "_" + info->name();
  for (auto& c : name)
    if (c == '/') c = '_';
  fs::path dir =
      fs::temp_directory_path() / ("tervale_db_" + std::to_string(::getpid()) + "_" + name);
  fs::remove_all(dir);
  fs::create_directories(dir);
  return dir;
}

// The seeded database is built once per test program and copied for every test, so that the
// writers' tests start from the same file.
inline const fs::path& SeededDatabase() {
  static fs::path file = [] {
    fs::path dir = fs::temp_directory_path() / ("tervale_db_seed_" + std::to_string(::getpid()));
    fs::create_directories(dir);
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
    dir_ = MakeScratchFolder();
    file_ = dir_ / "Masterd$.mde";
    fs::copy_file(SeededDatabase(), file_);
    db_ = PropertyDatabase::Open(file_);
    s_ = MakeSharedCalcState();
    s_->LanguageFlag = 1;
    s_->Dialogs = &dialogs_;
    s_->DatabaseFile = file_.string();
  }
  void TearDown() override {
    db_.reset();
    std::error_code ec;
    fs::permissions(file_, fs::perms::owner_all, ec);
    fs::remove_all(dir_, ec);
  }
  int Count(const std::string& table) {
    return int(
        std::get<std::int64_t>(db_->Query("SELECT count(*) FROM [" + table + "]").rows[0][0]));
  }

  fs::path dir_, file_;
  std::unique_ptr<PropertyDatabase> db_;
  std::unique_ptr<SharedCalcState> s_;
  RecordingDialogs dialogs_;
};

}  // namespace tervale::db::testing
