// A database save killed at any instant leaves the file sound (PRAGMA integrity_check = ok)
// with each row written whole or not at all, for each writer of the program.
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <random>

#include "database/property_db.h"
#include "database/writers.h"
#include "hardening/case_kinds.h"
#include "state/dialogs.h"

namespace tervale::hardening {
namespace {

using namespace tervale::db;

int Trials() {
  const char* env = std::getenv("TERVALE_CRASH_TRIALS");
  return env ? std::max(1, std::atoi(env)) : 50;
}

// Every row a writer adds carries its serial number k in the memo, padded so that a row spans
// several pages, and numbers that follow from k, so that a torn row shows.
std::string MemoOf(std::int64_t k) {
  return "crash-" + std::to_string(k) + "|" + std::string(2000, 'm');
}

std::int64_t SerialOf(const std::string& memo) {
  return std::stoll(memo.substr(6));
}

struct Writer {
  std::string name;
  std::string table;
  // Run once before the trials (rows the writer needs to find).
  std::function<void(PropertyDatabase&, SharedCalcState&)> prepare;
  // Adds row k through the program's writer; runs in the child until it is killed.
  std::function<void(PropertyDatabase&, SharedCalcState&, std::int64_t)> write;
  // The numeric columns of row k and their values.
  std::function<std::vector<std::pair<std::string, double>>(std::int64_t)> numbers;
};

std::vector<Writer> Writers() {
  std::vector<Writer> w;
  w.push_back(
      {"AddAntoineRow",
       "AntoineConstant",
       {},
       [](PropertyDatabase& db, SharedCalcState&, std::int64_t k) {
         AntoineRow r;
         r.Formula = "CRASH";
         r.Name = "crash";
         r.Index = k;
         r.AN = k + 0.5;
         r.BN = 1000.0 + k;
         r.CN = -k;
         r.TL = 10.0;
         r.TU = 90.0 + k;
         r.Memo = MemoOf(k);
         AddAntoineRow(db, r);
       },
       [](std::int64_t k) {
         return std::vector<std::pair<std::string, double>>{
             {"Index", k}, {"AN", k + 0.5}, {"BN", 1000.0 + k}, {"CN", -k}, {"TU", 90.0 + k}};
       }});
  w.push_back({"SaveCriticalConstant",
               "CriticalConstant",
               {},
               [](PropertyDatabase& db, SharedCalcState& s, std::int64_t k) {
                 CriticalConstantEntry e;
                 e.Formula = "CRASH";
                 e.Name = "crash";
                 // Index, MW, Tc, Pc and the memo; the rest blank (Null).
                 e.Fields[1] = std::to_string(k);
                 e.Fields[2] = std::to_string(k) + ".25";
                 e.Fields[5] = std::to_string(k + 300);
                 e.Fields[6] = std::to_string(k) + ".5";
                 e.Fields[11] = MemoOf(k);
                 if (!SaveCriticalConstant(db, s, e).saved) std::abort();
               },
               [](std::int64_t k) {
                 return std::vector<std::pair<std::string, double>>{
                     {"Index", k}, {"MW", k + 0.25}, {"Tc", k + 300.0}, {"Pc", k + 0.5}};
               }});
  w.push_back({"SaveParameters", "Wilson Parameter",
               // Both components stand in CriticalConstant and their Antoine rows are known, so
               // the save asks nothing and writes the parameter row alone.
               [](PropertyDatabase& db, SharedCalcState& s) {
                 for (const char* name : {"crash-one", "crash-two"}) {
                   CriticalConstantEntry e;
                   e.Formula = "CRASH";
                   e.Name = name;
                   ASSERT_TRUE(SaveCriticalConstant(db, s, e).saved);
                 }
               },
               [](PropertyDatabase& db, SharedCalcState& s, std::int64_t k) {
                 ParameterSaveForm f;
                 f.Case.CalcType = 1;
                 f.Case.ComponentName = {"", "crash-one", "crash-two"};
                 f.Case.VLETemperature = 40;
                 f.Case.WilsonLambda12 = k + 0.25;
                 f.Case.WilsonLambda21 = k + 0.75;
                 f.Formula = {"", "CRASH", "CRASH"};
                 f.AntoineKnown = {false, true, true};
                 f.ParameterLastIndex = static_cast<std::int16_t>(k % 30000 - 1);
                 f.Memo = MemoOf(k);
                 if (SaveParameters(db, s, f).outcome != SaveOutcome::Saved) std::abort();
               },
               [](std::int64_t k) {
                 return std::vector<std::pair<std::string, double>>{
                     {"Index", k % 30000}, {"Lambda12", k + 0.25}, {"Lambda21", k + 0.75}};
               }});
  return w;
}

TEST(CrashSafeSave, DatabaseRowsAreWholeOrAbsentAfterSigkill) {
  const int trials = Trials();
  for (const Writer& writer : Writers()) {
    SCOPED_TRACE(writer.name);
    ScratchDir dir("crash_db");
    const fs::path file = dir.path() / "property.db";
    auto s = MakeSharedCalcState();
    RecordingDialogs dialogs;
    s->Dialogs = &dialogs;
    PropertyDatabase::Create(file);
    if (writer.prepare) {
      auto db = PropertyDatabase::Open(file);
      writer.prepare(*db, *s);
    }
    std::mt19937 rng(777);
    std::int64_t next = 1;
    for (int trial = 0; trial < trials; ++trial) {
      const std::int64_t first = next;
      next += 10000;
      const pid_t pid = ::fork();
      ASSERT_GE(pid, 0);
      if (pid == 0) {
        auto db = PropertyDatabase::Open(file);
        for (std::int64_t k = first;; ++k) writer.write(*db, *s, k);
      }
      ::usleep(std::uniform_int_distribution<unsigned>(0, 30000)(rng));
      ::kill(pid, SIGKILL);
      int status = 0;
      ::waitpid(pid, &status, 0);
      ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL)
          << "the writer stopped by itself, trial " << trial;

      auto db = PropertyDatabase::Open(file);
      const RecordSet check = db->Query("PRAGMA integrity_check");
      ASSERT_EQ(check.RecordCount(), 1);
      ASSERT_EQ(AsText(check.rows[0][0]), "ok") << "trial " << trial;
      const std::string mine = "[" + writer.table + "] WHERE substr([Memo], 1, 6) = 'crash-'";
      const RecordSet rows = db->Query("SELECT * FROM " + mine);
      std::int64_t written = 0, last = first - 1;
      for (size_t i = 0; i < rows.rows.size(); ++i) {
        const std::string memo = AsText(rows.Field(i, "Memo"));
        const std::int64_t k = SerialOf(memo);
        ASSERT_EQ(memo, MemoOf(k)) << "trial " << trial;
        for (const auto& [column, value] : writer.numbers(k))
          ASSERT_EQ(AsNumber(rows.Field(i, column)), value) << column << ", trial " << trial;
        ++written;
        last = std::max(last, k);
      }
      // The rows written form an unbroken run from the first: none lost before a later one.
      EXPECT_EQ(last, first + written - 1) << "trial " << trial;
      // Each trial starts from an empty table, so that a thousand trials stay quick.
      db->Execute("DELETE FROM " + mine);
    }
  }
}

}  // namespace
}  // namespace tervale::hardening
