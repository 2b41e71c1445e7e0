// The column commands of tervale-cli, run as a user runs them.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "common/cli_fixture.h"

namespace {

namespace fs = std::filesystem;
using tervale::testcli::CliRun;

struct ColumnCli : tervale::testcli::CliFixture {
  // Runs the program with every "@" in `args` standing for the test's folder.
  CliRun Cli(std::string args) {
    for (size_t at; (at = args.find('@')) != std::string::npos;)
      args.replace(at, 1, dir_.path().string() + "/");
    return tervale::testcli::RunCli(args);
  }
  void ExpectAll(const CliRun& r, std::initializer_list<const char*> keys) {
    for (const char* key : keys) EXPECT_NE(r.out.find(key), std::string::npos) << key;
  }
};

TEST_F(ColumnCli, ExampleRunReportAndShortCut) {
  ASSERT_EQ(Cli("example column 1 -o @c.dat").status, 0);
  CliRun run = Cli("column @c.dat --data-dir @out --json");
  ASSERT_EQ(run.status, 0);
  ExpectAll(run, {"\"passes\"", "\"converged\": true", "\"trays\"", "\"feed_enthalpy\"",
                  "\"condenser_duty\"", "\"reboiler_duty\"", "\"messages\"", "\"HV\"", "\"x\""});
  ASSERT_TRUE(fs::exists(dir_.path() / "out" / "Result.dat"));

  CliRun bal = Cli("column-report @out/Result.dat --view balance --json");
  ASSERT_EQ(bal.status, 0);
  ExpectAll(bal, {"\"view\": \"balance\"", "Methanol"});
  EXPECT_EQ(Cli("column-report @out/Result.dat --view vapour-mol").status, 0);

  CliRun cont = Cli("column @out/Result.dat --continue --data-dir @out2 --json");
  EXPECT_EQ(cont.status, 0);
  ExpectAll(cont, {"\"converged\": true"});

  CliRun sc = Cli("shortcut @c.dat --json");
  ASSERT_EQ(sc.status, 0);
  ExpectAll(sc,
            {"\"vf\"", "\"temperature\"", "\"min_plates\"", "\"min_reflux\"", "\"feed_location\"",
             "\"top\"", "\"bottom\"", "\"top_flow\"", "\"bottom_flow\"", "\"gilliland\""});
  CliRun text = Cli("shortcut @c.dat --temp-blank --type 1 --condenser partial");
  EXPECT_EQ(text.status, 0);
  ExpectAll(text, {"Minimum Reflux Ratio"});
}

TEST_F(ColumnCli, RefusedInput) {
  tervale::testcli::WriteBytes(dir_ / "bad.dat", "\"Flash Data\"\r\n");
  CliRun bad = Cli("column @bad.dat --json --data-dir @");
  EXPECT_EQ(bad.status, 2);
  ExpectAll(bad, {"蒸留計算のデータファイルではありません。"});
  EXPECT_FALSE(fs::exists(dir_ / "Result.dat"));

  ASSERT_EQ(Cli("example column 1 -o @c.dat").status, 0);
  // a case file holds no results: no report, no continue
  const struct {
    const char* args;
    int status;  // -1: any refusal
  } refused[] = {{"column-report @c.dat --view balance", 2},
                 {"column @c.dat --continue", 2},
                 {"column-report @c.dat --view nonsense", -1},
                 {"example column 2 -o @x.dat", -1},
                 {"shortcut @c.dat --temp abc", 2},
                 {"shortcut @c.dat --type 3", -1}};
  for (const auto& c : refused) {
    const int status = Cli(c.args).status;
    if (c.status < 0)
      EXPECT_NE(status, 0) << c.args;
    else
      EXPECT_EQ(status, c.status) << c.args;
  }

  // a result file whose side cut stands below the bottom tray: refused, not read out of bounds
  ASSERT_EQ(Cli("column @c.dat --data-dir @res").status, 0);
  std::string text = tervale::testcli::ReadBytes(dir_.path() / "res" / "Result.dat");
  // the counts line: NC, NTray, NFeed, NSideLiq, NSideVap, ...
  const size_t counts = text.find("4,15,1,0,0,");
  ASSERT_NE(counts, std::string::npos);
  text.replace(counts, 11, "4,15,1,1,0,");
  // the liquid side cut goes after the feed lines, before CalcFinished
  const size_t finished = text.find("\r\n1\r\n");
  ASSERT_NE(finished, std::string::npos);
  text.insert(finished + 2, "99,10\r\n");
  tervale::testcli::WriteBytes(dir_ / "odd.dat", text);
  CliRun odd = Cli("column-report @odd.dat --view liquid-mol --json");
  EXPECT_EQ(odd.status, 2);
  ExpectAll(odd, {"Location <1 or >NT"});
}

}  // namespace
