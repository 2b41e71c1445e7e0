// The flash command end to end: examples, every calculation type, JSON keys, refusals.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "common/cli_fixture.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

using tervale::testcli::CliRun;
using tervale::testcli::RunCli;

class FlashCli : public tervale::testcli::CliFixture {
 protected:
  std::string Example(int number) {
    const std::string n = std::to_string(number), file = dir_ / (n + ".dat");
    EXPECT_EQ(RunCli("example flash " + n + " -o " + file).status, 0);
    return file;
  }
};

TEST_F(FlashCli, EveryCalculationOfBothExamples) {
  for (int number : {1, 2}) {
    const std::string file = Example(number);
    for (const char* calc : {"bubble-t", "dew-t", "bubble-p", "dew-p", "flash"}) {
      const CliRun r = RunCli("flash " + file + " --calc " + calc + " --json");
      EXPECT_EQ(r.status, 0) << number << " " << calc;
      const Json j = Json::parse(r.out);
      EXPECT_EQ(j["calc"], calc);
      for (const char* key :
           {"temperature", "pressure", "vf", "x", "y", "k", "gamma", "enthalpy", "messages"})
        EXPECT_TRUE(j.contains(key)) << key;
      EXPECT_EQ(j["x"].size(), number == 1 ? 4u : 3u);
      EXPECT_EQ(j["k"].size(), j["x"].size());
      if (number == 1) {
        EXPECT_TRUE(j["enthalpy"].is_null());  // EnthalpyMethod 0
        EXPECT_TRUE(j["messages"].empty());
      } else {
        EXPECT_TRUE(j["enthalpy"].is_object());
        EXPECT_TRUE(j["gamma"].is_null());
        if (std::string(calc) != "bubble-t") {
          ASSERT_EQ(j["messages"].size(), 1u);
          EXPECT_EQ(j["messages"][0], "S-R-K / P-Rの式は未だありません");
        }
      }
    }
  }
  // The flash at 90 C and 760 mmHg: two phases whose balance closes.
  const Json j = Json::parse(RunCli("flash " + Example(1) + " --calc flash --temp 90 --json").out);
  EXPECT_EQ(j["temperature"], 90.0);
  EXPECT_EQ(j["pressure"], 760.0);
  const double vf = j["vf"];
  EXPECT_GT(vf, 0.1);
  EXPECT_LT(vf, 0.4);
  const double z[] = {0.12, 0.01, 0.85, 0.02};
  for (int i = 0; i < 4; ++i)
    EXPECT_NEAR((1 - vf) * j["x"][i].get<double>() + vf * j["y"][i].get<double>(), z[i], 1e-5);
  // The table form prints the same calculation.
  const CliRun text = RunCli("flash " + Example(1) + " --calc flash --temp 90");
  EXPECT_EQ(text.status, 0);
  EXPECT_NE(text.out.find("Methanol"), std::string::npos);
  // With --csv stdout is the component table alone, one CRLF row per component.
  const CliRun csv = RunCli("flash " + Example(1) + " --calc flash --temp 90 --csv");
  EXPECT_EQ(csv.status, 0);
  EXPECT_EQ(csv.out.rfind("\xEF\xBB\xBF"
                          "Component,Vapour y,Liquid x,K,Gamma\r\nMethanol,",
                          0),
            0u)
      << csv.out;
  size_t rows = 0;
  for (size_t at = 0; (at = csv.out.find("\r\n", at)) != std::string::npos; at += 2) ++rows;
  EXPECT_EQ(rows, 5u);
  EXPECT_EQ(csv.out.find("V/F"), std::string::npos);
}

TEST_F(FlashCli, CondensingCurveAndRefusals) {
  const std::string file = Example(1);
  Json j = Json::parse(RunCli("flash " + file + " --calc curve --json").out);
  ASSERT_EQ(j["points"].size(), 201u);
  EXPECT_EQ(j["t_low"], j["bubble_t"]);
  EXPECT_EQ(j["t_high"], j["dew_t"]);
  EXPECT_LT(j["points"][0]["vf"].get<double>(), 1e-5);
  EXPECT_GT(j["points"][200]["vf"].get<double>(), 1 - 1e-5);
  EXPECT_TRUE(j["points"][0]["h"].is_null());

  // Refusals: status 2 and the message in the JSON.
  auto refused = [](const std::string& args) {
    const CliRun r = RunCli(args + " --json");
    EXPECT_EQ(r.status, 2) << args;
    return Json::parse(r.out);
  };
  j = refused("flash " + file + " --calc curve --temp 90 --temp2 90");
  EXPECT_TRUE(j["points"].empty());
  ASSERT_EQ(j["messages"].size(), 1u);
  EXPECT_EQ(j["messages"][0].get<std::string>().rfind("温度の上下限が逆転しています。 TL=", 0), 0u);
  j = refused("flash " + file + " --calc flash --temp abc");
  EXPECT_NE(j["messages"][0].get<std::string>().find("--temp"), std::string::npos);
  refused("flash " + file + " --calc sideways");
  const std::string wrong = dir_ / "wrong.dat";
  tervale::testcli::WriteBytes(wrong, "\"V_L Equibrium Data\"\r\n");
  j = refused("flash " + wrong + " --calc flash");
  EXPECT_EQ(j["messages"][0], "Flash計算のデータファイルではありません");
  const std::string out = " -o " + dir_ / "x.dat";
  for (const std::string number : {"3", "1e20", "1.5", "abc"})
    EXPECT_EQ(RunCli("example flash " + number + out).status, 2) << number;
  EXPECT_FALSE(fs::exists(dir_ / "x.dat"));
}

}  // namespace
