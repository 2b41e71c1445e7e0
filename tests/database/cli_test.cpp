#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "common/cli_runner.h"
#include "db_fixture.h"

namespace tervale::db::testing {
namespace {

using tervale::testcli::CliRun;
using tervale::testcli::RunCli;

class CliTest : public SeededDbTest {
 protected:
  void SetUp() override {
    if (!tervale::testcli::CliBuilt()) GTEST_SKIP() << "tervale-cli not built";
    SeededDbTest::SetUp();
    db_.reset();
  }
  std::string Db() const {
    std::string option = " --db '";
    option.append(file_.string()).append("'");
    return option;
  }
  // A command on the test's database that must succeed, its JSON answer.
  nlohmann::json Json(const std::string& args) {
    auto r = RunCli("--json db " + args + Db());
    EXPECT_EQ(r.status, 0) << args;
    return nlohmann::json::parse(r.out);
  }
};

TEST_F(CliTest, SearchPairAndSaveTwice) {
  auto j = Json("search antoine 'Meth*'");
  EXPECT_EQ(j["table"], "AntoineConstant");
  int methanol = 0;
  for (const auto& row : j["rows"]) methanol += row["Name"] == "Methanol";
  EXPECT_EQ(methanol, 2);

  j = Json("pair wilson Water Methanol");
  ASSERT_EQ(j["rows"].size(), 1u);
  EXPECT_EQ(j["rows"][0]["Name1"], "Methanol");
  EXPECT_EQ(j["matrix"][0][1].get<double>(), 0.331921);
  EXPECT_EQ(j["matrix"][1][0].get<double>(), 1.13829);
  EXPECT_EQ(j["matrix"][0][0].get<double>(), 1.0);
  EXPECT_TRUE(Json("pair kij Argon Bromine")["matrix"].is_null());

  j = Json("save-pair wilson Argon Bromine 0.5 0.25");
  EXPECT_EQ(j["outcome"], "saved");
  EXPECT_EQ(j["index"], 0);
  j = Json("save-pair wilson Argon Bromine 0.5 0.25");
  EXPECT_EQ(j["outcome"], "duplicate");
  EXPECT_TRUE(j["duplicate"].get<bool>());
  EXPECT_EQ(j["messages"][0], "すでに同じWilson Parameterが登録済み！！");

  j = Json("browse wilson --name Argon");
  EXPECT_EQ(j["view"], "wilson");
  ASSERT_EQ(j["rows"].size(), 1u);
  // The Index is a whole number in the file and stays one in the answer (0, not 0.0).
  const auto& columns = j["columns"];
  const size_t indexColumn =
      size_t(std::find(columns.begin(), columns.end(), "Index") - columns.begin());
  ASSERT_LT(indexColumn, columns.size());
  EXPECT_TRUE(j["rows"][0][indexColumn].is_number_integer());
  EXPECT_EQ(j["rows"][0][indexColumn].dump(), "0");
  EXPECT_EQ(j["rows"][0][5].get<double>(), 0.5);  // Lambda12

  std::string args = "--json db search antoine x --db '";
  args.append(dir_ / "none.mde").append("'");
  auto missing = RunCli(args);
  EXPECT_EQ(missing.status, 2);
  j = nlohmann::json::parse(missing.out);
  EXPECT_NE(j["messages"][0].get<std::string>().find("none.mde"), std::string::npos);
}

}  // namespace
}  // namespace tervale::db::testing
