#include <gtest/gtest.h>

#include <cstdio>
#include <nlohmann/json.hpp>

#include "db_fixture.h"

namespace tervale::db::testing {
namespace {

// Runs the command line (when it has been built beside the tests) and returns its stdout.
struct CliRun {
  int status = -1;
  std::string out;
};

CliRun RunCli(const std::string& args) {
  CliRun r;
  std::string cmd = "'";
  cmd.append(TERVALE_BIN_DIR).append("/tervale-cli' ").append(args).append(" 2>/dev/null");
  FILE* p = popen(cmd.c_str(), "r");
  if (!p) return r;
  char buf[4096];
  size_t n;
  while ((n = fread(buf, 1, sizeof buf, p)) > 0) r.out.append(buf, n);
  int st = pclose(p);
  r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
  return r;
}

class CliTest : public SeededDbTest {
 protected:
  void SetUp() override {
    if (!fs::exists(fs::path(TERVALE_BIN_DIR) / "tervale-cli"))
      GTEST_SKIP() << "tervale-cli not built";
    SeededDbTest::SetUp();
    db_.reset();
  }
  std::string Db() const {
    std::string option = " --db '";
    option.append(file_.string()).append("'");
    return option;
  }
};

TEST_F(CliTest, SearchPairAndSaveTwice) {
  auto search = RunCli("--json db search antoine 'Meth*'" + Db());
  ASSERT_EQ(search.status, 0);
  auto j = nlohmann::json::parse(search.out);
  EXPECT_EQ(j["table"], "AntoineConstant");
  int methanol = 0;
  for (const auto& row : j["rows"]) methanol += row["Name"] == "Methanol";
  EXPECT_EQ(methanol, 2);

  auto pair = RunCli("--json db pair wilson Water Methanol" + Db());
  ASSERT_EQ(pair.status, 0);
  j = nlohmann::json::parse(pair.out);
  ASSERT_EQ(j["rows"].size(), 1u);
  EXPECT_EQ(j["rows"][0]["Name1"], "Methanol");
  EXPECT_EQ(j["matrix"][0][1].get<double>(), 0.331921);
  EXPECT_EQ(j["matrix"][1][0].get<double>(), 1.13829);
  EXPECT_EQ(j["matrix"][0][0].get<double>(), 1.0);
  EXPECT_TRUE(nlohmann::json::parse(RunCli("--json db pair kij Argon Bromine" + Db()).out)["matrix"]
                  .is_null());

  auto first = RunCli("--json db save-pair wilson Argon Bromine 0.5 0.25" + Db());
  ASSERT_EQ(first.status, 0);
  j = nlohmann::json::parse(first.out);
  EXPECT_EQ(j["outcome"], "saved");
  EXPECT_EQ(j["index"], 0);
  auto second = RunCli("--json db save-pair wilson Argon Bromine 0.5 0.25" + Db());
  ASSERT_EQ(second.status, 0);
  j = nlohmann::json::parse(second.out);
  EXPECT_EQ(j["outcome"], "duplicate");
  EXPECT_TRUE(j["duplicate"].get<bool>());
  EXPECT_EQ(j["messages"][0], "すでに同じWilson Parameterが登録済み！！");

  auto browse = RunCli("--json db browse wilson --name Argon" + Db());
  ASSERT_EQ(browse.status, 0);
  j = nlohmann::json::parse(browse.out);
  EXPECT_EQ(j["view"], "wilson");
  EXPECT_EQ(j["rows"].size(), 1u);

  std::string args = "--json db search antoine x --db '";
  args.append((dir_ / "none.mde").string()).append("'");
  auto missing = RunCli(args);
  EXPECT_EQ(missing.status, 2);
  j = nlohmann::json::parse(missing.out);
  EXPECT_NE(j["messages"][0].get<std::string>().find("none.mde"), std::string::npos);
}

}  // namespace
}  // namespace tervale::db::testing
