// The unifac and antoine commands of tervale-cli, run as a user runs them.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

// GCC 12 reports a false -Wrestrict overlap in inlined string concatenation.
#if defined(__GNUC__) && !defined(__clang__) && __GNUC__ == 12
#pragma GCC diagnostic ignored "-Wrestrict"
#endif

namespace {

namespace fs = std::filesystem;

struct CliRun {
  int status = -1;
  std::string out;
};

CliRun RunCli(const std::string& cli, const std::string& args) {
  CliRun r;
  std::string command = "'" + cli + "' " + args + " 2>/dev/null";
  FILE* p = popen(command.c_str(), "r");
  if (!p) return r;
  char buf[4096];
  size_t n;
  while ((n = fread(buf, 1, sizeof buf, p)) > 0) r.out.append(buf, n);
  int st = pclose(p);
  r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
  return r;
}

class CliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    cli_ = fs::path(TERVALE_BIN_DIR) / "tervale-cli";
    if (!fs::exists(cli_)) GTEST_SKIP() << "tervale-cli is not built";
    dir_ = fs::temp_directory_path() / ("tervale_unifac_cli_" + std::to_string(::getpid()));
    fs::create_directories(dir_);
  }
  void TearDown() override {
    if (!dir_.empty()) fs::remove_all(dir_);
  }
  std::string P(const std::string& name) { return (dir_ / name).string(); }
  fs::path cli_, dir_;
};

TEST_F(CliTest, UnifacExamplesRunAndPrintTheContractKeys) {
  for (int n : {1, 2}) {
    std::string file = P("u" + std::to_string(n) + ".json");
    ASSERT_EQ(RunCli(cli_, "example unifac " + std::to_string(n) + " -o " + file).status, 0);
    CliRun r = RunCli(cli_, "unifac " + file + " --json");
    EXPECT_EQ(r.status, 0);
    for (const char* key : {"\"curve\"", "\"t_max\"", "\"t_min\"", "\"end_gamma_res\"",
                            "\"wilson\"", "\"messages\"", "\"gamma1\"", "\"gamma2\""})
      EXPECT_NE(r.out.find(key), std::string::npos) << key;
    EXPECT_EQ(r.out.find("null"), std::string::npos);
  }
  EXPECT_NE(RunCli(cli_, "example unifac 3 -o " + P("x.json")).status, 0);
}

TEST_F(CliTest, UnifacRefusals) {
  std::string file = P("u1.json");
  ASSERT_EQ(RunCli(cli_, "example unifac 1 -o " + file).status, 0);
  // No UNIFAC.PAR where it is looked for.
  CliRun r = RunCli(cli_, "unifac " + file + " --json --parameters " + P("none.PAR"));
  EXPECT_EQ(r.status, 2);
  EXPECT_NE(r.out.find("UNIFAC parameter file is missing"), std::string::npos);
  // A failed check: the message in the JSON, non-zero status.
  std::ofstream(P("bad.json"))
      << R"({"program":"unifac","components":[{"name":"a","A":1,"B":1,"C":1},)"
      << R"({"name":"b","A":1,"B":1,"C":1}],"pressure":760,"temperature":60,"groups":[]})";
  r = RunCli(cli_, "unifac " + P("bad.json") + " --json");
  EXPECT_EQ(r.status, 2);
  EXPECT_NE(r.out.find("No group data"), std::string::npos);
  std::ofstream(P("broken.json")) << "{";
  EXPECT_EQ(RunCli(cli_, "unifac " + P("broken.json")).status, 2);
  EXPECT_EQ(RunCli(cli_, "unifac " + P("missing.json")).status, 2);
}

TEST_F(CliTest, AntoineExampleAndRefusals) {
  std::string file = P("a.json");
  ASSERT_EQ(RunCli(cli_, "example antoine -o " + file).status, 0);
  CliRun r = RunCli(cli_, "antoine " + file + " --json");
  EXPECT_EQ(r.status, 0);
  for (const char* key : {"\"rows\"", "\"name\"", "\"A\"", "\"B\"", "\"C\"", "\"fitted\"",
                          "\"points\"", "\"messages\"", "1-Propanol"})
    EXPECT_NE(r.out.find(key), std::string::npos) << key;
  std::ofstream(P("two.json")) << R"({"program":"antoine","temp_low":0,"temp_high":50,)"
                               << R"("substances":[{"formula":"X","name":"X",)"
                               << R"("points":[[10,5],[10,6],[20,7]]}]})";
  r = RunCli(cli_, "antoine " + P("two.json") + " --json");
  EXPECT_EQ(r.status, 2);
  EXPECT_NE(r.out.find("cannot be fitted"), std::string::npos);
  EXPECT_EQ(RunCli(cli_, "antoine " + P("a.json") + " --lang ja --json").status, 0);
  // A file of the other program is refused.
  ASSERT_EQ(RunCli(cli_, "example unifac 1 -o " + P("u.json")).status, 0);
  EXPECT_EQ(RunCli(cli_, "antoine " + P("u.json")).status, 2);
}

}  // namespace
