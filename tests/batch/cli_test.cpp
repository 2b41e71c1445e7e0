// The batch commands end to end: example, run, reports, refused input.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "batch/batch_test_util.h"
#include "common/cli_fixture.h"

namespace {

using Json = nlohmann::json;

using tervale::testcli::CliRun;
using tervale::testcli::ReadBytes;
using tervale::testcli::RunCli;
using tervale::testcli::WriteBytes;

class BatchCli : public tervale::testcli::CliFixture {
 protected:
  // The example with HeatUnit 1 and a duty of 1000000, made by editing the written file.
  std::string ProductExample() {
    const std::string file = dir_ / "b.dat";
    EXPECT_EQ(RunCli("example batch -o " + file).status, 0);
    std::string text = ReadBytes(file);
    auto replace = [&](const std::string& from, const std::string& to) {
      const size_t at = text.find(from);
      EXPECT_NE(at, std::string::npos) << from;
      if (at != std::string::npos) text.replace(at, from.size(), to);
    };
    replace("3,10,2,1,2,1,0,1,3,2,1", "3,10,2,1,2,1,0,1,3,1,1");
    replace("238.8886898149807", "1000000");
    const std::string variant = dir_ / "b1.dat";
    WriteBytes(variant, text);
    return variant;
  }
};

TEST_F(BatchCli, ProductRunPrintsEveryKeyAndLeavesTheSixFiles) {
  const std::string file = ProductExample();
  const std::string out = dir_ / "out";
  CliRun r = RunCli("batch " + file + " --data-dir " + out + " --json");
  ASSERT_EQ(r.status, 0) << r.out;
  Json j = Json::parse(r.out);
  EXPECT_EQ(j["end"], "tanks-exhausted");
  EXPECT_TRUE(j["total_reflux_time"].is_number());
  EXPECT_GT(j["steps"]["total_reflux"].get<long long>(), 0);
  EXPECT_GT(j["steps"]["product"].get<long long>(), 0);
  ASSERT_EQ(j["tanks"].size(), 2u);
  EXPECT_EQ(j["tanks"][0]["content"].size(), 3u);
  EXPECT_EQ(j["tanks"][0]["x"].size(), 3u);
  EXPECT_TRUE(j["tanks"][0]["time"].is_number());
  for (const char* key :
       {"temp_max", "temp_min", "vapour_max", "vapour_min", "liquid_max", "liquid_min"})
    EXPECT_TRUE(j["extremes"][key].is_number()) << key;
  ASSERT_EQ(j["log"].size(), 4u);
  EXPECT_EQ(j["log"][0], "Start Calculation");
  EXPECT_EQ(j["log"][3].get<std::string>().substr(0, 9), "Cal_time=");
  EXPECT_TRUE(j["messages"].is_array());
  EXPECT_EQ(tervale::testing::BatchFilesPresent(out), "_1 _2 _3 _4 _5 _Log");

  CliRun tank = RunCli("batch-report --view tank --json --data-dir " + out);
  ASSERT_EQ(tank.status, 0) << tank.out;
  Json t = Json::parse(tank.out);
  EXPECT_EQ(t["view"], "tank");
  ASSERT_EQ(t["rows"].size(), 2u);
  EXPECT_EQ(t["columns"][2], "Mol Fr Methanol");
  EXPECT_NEAR(t["rows"][0][2].get<double>(), j["tanks"][0]["x"][0].get<double>(), 1e-12);
  for (const char* view : {"total-reflux", "vl-load", "tray-data", "top-btm", "log"}) {
    CliRun v = RunCli(std::string("batch-report --json --source product --view ") + view +
                      " --data-dir " + out);
    ASSERT_EQ(v.status, 0) << view << v.out;
    Json o = Json::parse(v.out);
    EXPECT_EQ(o["view"], view);
    EXPECT_FALSE(o["rows"].empty()) << view;
  }
}

TEST_F(BatchCli, StopAndRefusals) {
  const std::string file = ProductExample();
  const std::string out = dir_ / "out";
  CliRun r = RunCli("batch " + file + " --stop-after-steps 10 --json --data-dir " + out);
  ASSERT_EQ(r.status, 0);
  Json j = Json::parse(r.out);
  EXPECT_EQ(j["end"], "stopped");
  EXPECT_EQ(j["steps"]["total_reflux"], 10);
  EXPECT_TRUE(j["total_reflux_time"].is_null());

  // A report of a file the run did not write.
  CliRun tank = RunCli("batch-report --view tank --json --data-dir " + out);
  EXPECT_EQ(tank.status, 2);
  Json t = Json::parse(tank.out);
  ASSERT_FALSE(t["messages"].empty());
  EXPECT_NE(t["messages"].back().get<std::string>().find("B_Calc_5.dat"), std::string::npos);

  // A case the Go check refuses: a zero feed fraction.
  std::string text = ReadBytes(file);
  text.replace(text.rfind("0.03"), 4, "0");
  const std::string bad = dir_ / "bad.dat";
  WriteBytes(bad, text);
  CliRun refused = RunCli("batch " + bad + " --json --data-dir " + out);
  EXPECT_EQ(refused.status, 2);
  Json m = Json::parse(refused.out);
  EXPECT_EQ(m["messages"].back(), "Feed Composition doese not input");

  // Continuation without a converged state.
  CliRun cont = RunCli("batch " + file + " --continue --json --data-dir " + dir_ / "none");
  EXPECT_EQ(cont.status, 2);
}

}  // namespace
