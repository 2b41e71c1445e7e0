// The unifac and antoine commands of tervale-cli, run as a user runs them.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "common/cli_fixture.h"

// GCC 12 reports a false -Wrestrict overlap in inlined string concatenation.
#if defined(__GNUC__) && !defined(__clang__) && __GNUC__ == 12
#pragma GCC diagnostic ignored "-Wrestrict"
#endif

namespace {

using tervale::testcli::CliRun;
using tervale::testcli::RunCli;

class CliTest : public tervale::testcli::CliFixture {
 protected:
  void SetUp() override {
    CliFixture::SetUp();
    if (IsSkipped()) return;
    ASSERT_EQ(RunCli("example unifac 1 -o " + dir_ / "u1.json").status, 0);
    ASSERT_EQ(RunCli("example antoine -o " + dir_ / "a.json").status, 0);
  }
};

TEST_F(CliTest, UnifacExamplesRunAndPrintTheContractKeys) {
  for (int n : {1, 2}) {
    std::string file = dir_ / ("u" + std::to_string(n) + ".json");
    ASSERT_EQ(RunCli("example unifac " + std::to_string(n) + " -o " + file).status, 0);
    CliRun r = RunCli("unifac " + file + " --json");
    EXPECT_EQ(r.status, 0);
    for (const char* key : {"\"curve\"", "\"t_max\"", "\"t_min\"", "\"end_gamma_res\"",
                            "\"wilson\"", "\"messages\"", "\"gamma1\"", "\"gamma2\""})
      EXPECT_NE(r.out.find(key), std::string::npos) << key;
    EXPECT_EQ(r.out.find("null"), std::string::npos);
  }
  EXPECT_NE(RunCli("example unifac 3 -o " + dir_ / "x.json").status, 0);
}

TEST_F(CliTest, UnifacRefusals) {
  std::string file = dir_ / "u1.json";
  // No UNIFAC.PAR where it is looked for.
  CliRun r = RunCli("unifac " + file + " --json --parameters " + dir_ / "none.PAR");
  EXPECT_EQ(r.status, 2);
  EXPECT_NE(r.out.find("UNIFAC parameter file is missing"), std::string::npos);
  // A failed check: the message in the JSON, non-zero status.
  std::ofstream(dir_ / "bad.json")
      << R"({"program":"unifac","components":[{"name":"a","A":1,"B":1,"C":1},)"
      << R"({"name":"b","A":1,"B":1,"C":1}],"pressure":760,"temperature":60,"groups":[]})";
  r = RunCli("unifac " + dir_ / "bad.json" + " --json");
  EXPECT_EQ(r.status, 2);
  EXPECT_NE(r.out.find("No group data"), std::string::npos);
  EXPECT_EQ(RunCli("unifac " + dir_ / "missing.json").status, 2);
}

TEST_F(CliTest, AntoineExampleAndRefusals) {
  std::string file = dir_ / "a.json";
  CliRun r = RunCli("antoine " + file + " --json");
  EXPECT_EQ(r.status, 0);
  for (const char* key : {"\"rows\"", "\"name\"", "\"A\"", "\"B\"", "\"C\"", "\"fitted\"",
                          "\"points\"", "\"messages\"", "1-Propanol"})
    EXPECT_NE(r.out.find(key), std::string::npos) << key;
  std::ofstream(dir_ / "two.json") << R"({"program":"antoine","temp_low":0,"temp_high":50,)"
                                   << R"("substances":[{"formula":"X","name":"X",)"
                                   << R"("points":[[10,5],[10,6],[20,7]]}]})";
  r = RunCli("antoine " + dir_ / "two.json" + " --json");
  EXPECT_EQ(r.status, 2);
  EXPECT_NE(r.out.find("cannot be fitted"), std::string::npos);
  EXPECT_EQ(RunCli("antoine " + dir_ / "a.json" + " --lang ja --json").status, 0);
  // A file of the other program is refused.
  EXPECT_EQ(RunCli("antoine " + dir_ / "u1.json").status, 2);
}

}  // namespace
