// The flash command end to end: examples, every calculation type, JSON keys, refusals.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

struct CliRun {
  int status = -1;
  std::string out;
};

class FlashCli : public ::testing::Test {
 protected:
  void SetUp() override {
    cli_ = fs::path(TERVALE_BIN_DIR) / "tervale-cli";
    if (!fs::exists(cli_)) GTEST_SKIP() << "tervale-cli is not built";
    dir_ = fs::temp_directory_path() / ("tervale_flash_cli_" + std::to_string(::getpid()));
    fs::create_directories(dir_);
  }
  void TearDown() override {
    if (!dir_.empty()) fs::remove_all(dir_);
  }
  CliRun Exec(const std::string& args) {
    CliRun r;
    const std::string command = cli_.string() + " " + args + " 2>" + (dir_ / "err.txt").string();
    FILE* pipe = ::popen(command.c_str(), "r");
    char buffer[4096];
    size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) r.out.append(buffer, n);
    const int status = ::pclose(pipe);
    r.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return r;
  }
  std::string Example(int number) {
    std::string name = std::to_string(number);
    name += ".dat";
    const fs::path file = dir_ / name;
    EXPECT_EQ(Exec("example flash " + std::to_string(number) + " -o " + file.string()).status, 0);
    return file.string();
  }
  fs::path cli_, dir_;
};

TEST_F(FlashCli, EveryCalculationOfBothExamples) {
  for (int number : {1, 2}) {
    const std::string file = Example(number);
    for (const char* calc : {"bubble-t", "dew-t", "bubble-p", "dew-p", "flash"}) {
      const CliRun r = Exec("flash " + file + " --calc " + calc + " --json");
      EXPECT_EQ(r.status, 0) << number << " " << calc;
      const Json j = Json::parse(r.out);
      EXPECT_EQ(j["calc"], calc);
      for (const char* key :
           {"temperature", "pressure", "vf", "x", "y", "k", "gamma", "enthalpy", "messages"})
        EXPECT_TRUE(j.contains(key)) << key;
      const size_t nc = number == 1 ? 4 : 3;
      EXPECT_EQ(j["x"].size(), nc);
      EXPECT_EQ(j["k"].size(), nc);
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
  const Json j = Json::parse(Exec("flash " + Example(1) + " --calc flash --temp 90 --json").out);
  EXPECT_EQ(j["temperature"], 90.0);
  EXPECT_EQ(j["pressure"], 760.0);
  const double vf = j["vf"];
  EXPECT_GT(vf, 0.1);
  EXPECT_LT(vf, 0.4);
  const double z[] = {0.12, 0.01, 0.85, 0.02};
  for (int i = 0; i < 4; ++i)
    EXPECT_NEAR((1 - vf) * j["x"][i].get<double>() + vf * j["y"][i].get<double>(), z[i], 1e-5);
  // The table form prints the same calculation.
  const CliRun text = Exec("flash " + Example(1) + " --calc flash --temp 90");
  EXPECT_EQ(text.status, 0);
  EXPECT_NE(text.out.find("Methanol"), std::string::npos);
}

TEST_F(FlashCli, CondensingCurveAndRefusals) {
  const std::string file = Example(1);
  Json j = Json::parse(Exec("flash " + file + " --calc curve --json").out);
  ASSERT_EQ(j["points"].size(), 201u);
  EXPECT_EQ(j["t_low"], j["bubble_t"]);
  EXPECT_EQ(j["t_high"], j["dew_t"]);
  EXPECT_LT(j["points"][0]["vf"].get<double>(), 1e-5);
  EXPECT_GT(j["points"][200]["vf"].get<double>(), 1 - 1e-5);
  EXPECT_TRUE(j["points"][0]["h"].is_null());

  CliRun r = Exec("flash " + file + " --calc curve --temp 90 --temp2 90 --json");
  EXPECT_EQ(r.status, 2);
  j = Json::parse(r.out);
  EXPECT_TRUE(j["points"].empty());
  ASSERT_EQ(j["messages"].size(), 1u);
  EXPECT_EQ(j["messages"][0].get<std::string>().rfind("温度の上下限が逆転しています。 TL=", 0), 0u);

  r = Exec("flash " + file + " --calc flash --temp abc --json");
  EXPECT_EQ(r.status, 2);
  j = Json::parse(r.out);
  EXPECT_NE(j["messages"][0].get<std::string>().find("--temp"), std::string::npos);

  r = Exec("flash " + file + " --calc sideways --json");
  EXPECT_EQ(r.status, 2);

  const fs::path wrong = dir_ / "wrong.dat";
  std::ofstream(wrong) << "\"V_L Equibrium Data\"\r\n";
  r = Exec("flash " + wrong.string() + " --calc flash --json");
  EXPECT_EQ(r.status, 2);
  j = Json::parse(r.out);
  EXPECT_EQ(j["messages"][0], "Flash計算のデータファイルではありません");

  r = Exec("example flash 3 -o " + (dir_ / "x.dat").string());
  EXPECT_EQ(r.status, 2);
  EXPECT_FALSE(fs::exists(dir_ / "x.dat"));
}

}  // namespace
