// A database save killed at any instant leaves the file sound (PRAGMA integrity_check = ok)
// with each row written whole or not at all.
#include <gtest/gtest.h>

#if __has_include("database/writers.h")
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <random>

#include "database/property_db.h"
#include "database/writers.h"
#include "hardening/case_kinds.h"

namespace tervale::hardening {
namespace {

using namespace tervale::db;

int Trials() {
  const char* env = std::getenv("TERVALE_CRASH_TRIALS");
  return env ? std::max(1, std::atoi(env)) : 50;
}

// Every field of row `index` follows from its index, so that a torn row shows.
AntoineRow RowOf(std::int64_t index) {
  AntoineRow r;
  r.Formula = "CRASH";
  r.Name = "crash-" + std::to_string(index);
  r.Index = index;
  r.AN = index + 0.5;
  r.BN = 1000.0 + index;
  r.CN = -index;
  r.TL = 10.0;
  r.TU = 90.0 + index;
  r.Memo = std::string(2000, 'm') + std::to_string(index);
  return r;
}

TEST(CrashSafeSave, DatabaseRowsAreWholeOrAbsentAfterSigkill) {
  ScratchDir dir("crash_db");
  const fs::path file = dir.path() / "property.db";
  PropertyDatabase::Create(file);
  std::mt19937 rng(777);
  std::int64_t next = 1;
  const int trials = Trials();
  for (int trial = 0; trial < trials; ++trial) {
    const std::int64_t first = next;
    next += 100000;
    const pid_t pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
      auto db = PropertyDatabase::Open(file);
      for (std::int64_t k = first;; ++k) AddAntoineRow(*db, RowOf(k));
    }
    ::usleep(std::uniform_int_distribution<unsigned>(0, 30000)(rng));
    ::kill(pid, SIGKILL);
    int status = 0;
    ::waitpid(pid, &status, 0);

    auto db = PropertyDatabase::Open(file);
    const RecordSet check = db->Query("PRAGMA integrity_check");
    ASSERT_EQ(check.RecordCount(), 1);
    ASSERT_EQ(AsText(check.rows[0][0]), "ok") << "trial " << trial;
    const RecordSet rows =
        db->Query("SELECT * FROM [AntoineConstant] WHERE [Formula] = ? AND [Index] >= ?",
                  {std::string("CRASH"), first});
    for (size_t i = 0; i < rows.rows.size(); ++i) {
      const auto index = static_cast<std::int64_t>(*AsNumber(rows.Field(i, "Index")));
      const AntoineRow want = RowOf(index);
      ASSERT_EQ(AsText(rows.Field(i, "Name")), want.Name) << "trial " << trial;
      ASSERT_EQ(AsNumber(rows.Field(i, "AN")), want.AN);
      ASSERT_EQ(AsNumber(rows.Field(i, "BN")), want.BN);
      ASSERT_EQ(AsNumber(rows.Field(i, "CN")), want.CN);
      ASSERT_EQ(AsNumber(rows.Field(i, "TU")), *want.TU);
      ASSERT_EQ(AsText(rows.Field(i, "Memo")), *want.Memo);
    }
    // The rows written form an unbroken run from the first: none lost before a later one.
    const RecordSet count = db->Query(
        "SELECT COUNT(*), MAX([Index]) FROM [AntoineConstant] WHERE [Formula] = ? AND [Index] >= ?",
        {std::string("CRASH"), first});
    const double n = AsNumber(count.rows[0][0]).value_or(0);
    if (n > 0) EXPECT_EQ(AsNumber(count.rows[0][1]).value_or(0), first + n - 1);
  }
}

}  // namespace
}  // namespace tervale::hardening
#endif
