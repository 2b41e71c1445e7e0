// The column commands of tervale-cli, run as a user runs them.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;

struct CliRun {
  int status = 0;
  std::string out;
};

CliRun Cli(const fs::path& dir, const std::string& args) {
  const std::string cmd = "cd '" + dir.string() + "' && '" + std::string(TERVALE_BIN_DIR) +
                          "/tervale-cli' " + args + " 2>/dev/null";
  CliRun r;
  FILE* p = popen(cmd.c_str(), "r");
  if (!p) return {-1, ""};
  std::array<char, 4096> buf{};
  size_t n;
  while ((n = fread(buf.data(), 1, buf.size(), p)) > 0) r.out.append(buf.data(), n);
  const int st = pclose(p);
  r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
  return r;
}

struct ColumnCli : ::testing::Test {
  fs::path dir;
  void SetUp() override {
    dir = fs::temp_directory_path() /
          ("tervale_column_cli_" +
           std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    fs::remove_all(dir);
    fs::create_directories(dir);
  }
  void TearDown() override { fs::remove_all(dir); }
};

TEST_F(ColumnCli, ExampleRunReportAndShortCut) {
  if (!fs::exists(fs::path(TERVALE_BIN_DIR) / "tervale-cli"))
    GTEST_SKIP() << "tervale-cli not built";
  ASSERT_EQ(Cli(dir, "example column 1 -o c.dat").status, 0);
  ASSERT_TRUE(fs::exists(dir / "c.dat"));

  CliRun run = Cli(dir, "column c.dat --data-dir out --json");
  ASSERT_EQ(run.status, 0);
  for (const char* key :
       {"\"passes\"", "\"converged\": true", "\"trays\"", "\"feed_enthalpy\"", "\"condenser_duty\"",
        "\"reboiler_duty\"", "\"messages\"", "\"HV\"", "\"x\""})
    EXPECT_NE(run.out.find(key), std::string::npos) << key;
  ASSERT_TRUE(fs::exists(dir / "out" / "Result.dat"));

  CliRun bal = Cli(dir, "column-report out/Result.dat --view balance --json");
  ASSERT_EQ(bal.status, 0);
  EXPECT_NE(bal.out.find("\"view\": \"balance\""), std::string::npos);
  EXPECT_NE(bal.out.find("Methanol"), std::string::npos);

  CliRun vap = Cli(dir, "column-report out/Result.dat --view vapour-mol");
  EXPECT_EQ(vap.status, 0);

  CliRun cont = Cli(dir, "column out/Result.dat --continue --data-dir out2 --json");
  EXPECT_EQ(cont.status, 0);
  EXPECT_NE(cont.out.find("\"converged\": true"), std::string::npos);

  CliRun sc = Cli(dir, "shortcut c.dat --json");
  ASSERT_EQ(sc.status, 0);
  for (const char* key :
       {"\"vf\"", "\"temperature\"", "\"min_plates\"", "\"min_reflux\"", "\"feed_location\"",
        "\"top\"", "\"bottom\"", "\"top_flow\"", "\"bottom_flow\"", "\"gilliland\""})
    EXPECT_NE(sc.out.find(key), std::string::npos) << key;
  CliRun text = Cli(dir, "shortcut c.dat --temp-blank --type 1 --condenser partial");
  EXPECT_EQ(text.status, 0);
  EXPECT_NE(text.out.find("Minimum Reflux Ratio"), std::string::npos);
}

TEST_F(ColumnCli, RefusedInput) {
  if (!fs::exists(fs::path(TERVALE_BIN_DIR) / "tervale-cli"))
    GTEST_SKIP() << "tervale-cli not built";
  std::ofstream(dir / "bad.dat") << "\"Flash Data\"\r\n";
  CliRun bad = Cli(dir, "column bad.dat --json");
  EXPECT_EQ(bad.status, 2);
  EXPECT_NE(bad.out.find("蒸留計算のデータファイルではありません。"), std::string::npos);
  EXPECT_FALSE(fs::exists(dir / "Result.dat"));

  ASSERT_EQ(Cli(dir, "example column 1 -o c.dat").status, 0);
  // a case file holds no results: no report, no continue
  EXPECT_EQ(Cli(dir, "column-report c.dat --view balance").status, 2);
  EXPECT_EQ(Cli(dir, "column c.dat --continue").status, 2);
  EXPECT_EQ(Cli(dir, "column-report c.dat --view nonsense").status != 0, true);
  EXPECT_EQ(Cli(dir, "example column 2 -o x.dat").status != 0, true);
  EXPECT_EQ(Cli(dir, "shortcut c.dat --temp abc").status, 2);
  EXPECT_NE(Cli(dir, "shortcut c.dat --type 3").status, 0);
}

}  // namespace
