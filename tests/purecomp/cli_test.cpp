// The purecomp command end to end: the example, its JSON, and refused cases.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "common/cli_fixture.h"

namespace {

using Json = nlohmann::json;

using tervale::testcli::CliRun;
using tervale::testcli::RunCli;

class PureCompCli : public tervale::testcli::CliFixture {
 protected:
  Json Example() {
    const std::string file = dir_ / "example.json";
    EXPECT_EQ(RunCli("example purecomp -o " + file).status, 0);
    return Json::parse(tervale::testcli::ReadBytes(file));
  }
  std::string Write(const Json& c) {
    const std::string file = dir_ / "case.json";
    tervale::testcli::WriteBytes(file, c.dump());
    return file;
  }
  // Runs a case with --json; the output is one object in every case.
  Json RunCase(const Json& c, int expectStatus) {
    const CliRun r = RunCli("purecomp --json " + Write(c));
    EXPECT_EQ(r.status, expectStatus) << r.out;
    Json out = Json::parse(r.out);
    EXPECT_TRUE(out.contains("messages"));
    return out;
  }
};

TEST_F(PureCompCli, ExampleRunsAndPrintsEveryKey) {
  const Json out = RunCase(Example(), 0);
  for (const char* key : {"Tc", "Pc", "Vc", "Tb", "omega", "antoine", "cp0", "cpl", "hv",
                          "density_poly", "rackett", "zra", "grid", "messages"})
    EXPECT_TRUE(out.contains(key)) << key;
  EXPECT_NEAR(out["Tc"].get<double>(), 507.70, 0.01);  // Joback n-hexane
  EXPECT_NEAR(out["Tb"].get<double>(), 341.88, 1e-9);
  EXPECT_EQ(out["antoine"].size(), 3u);
  EXPECT_EQ(out["cp0"].size(), 4u);
  EXPECT_EQ(out["rackett"].size(), 2u);
  ASSERT_EQ(out["grid"].size(), 51u);
  EXPECT_EQ(out["grid"][0]["t"].get<double>(), 0.0);
  EXPECT_NEAR(out["grid"][50]["t"].get<double>(), 200.0, 1e-9);
  EXPECT_TRUE(out["grid"][50]["density"].is_number());
  EXPECT_TRUE(out["messages"].empty());
  EXPECT_EQ(RunCli("purecomp " + Write(Example())).status, 0);
}

TEST_F(PureCompCli, CountsAreTruncatedAndKeyedByRow) {
  Json c = Example();
  const double tc = RunCase(c, 0)["Tc"].get<double>();
  c["groups"]["joback"] = Json::parse("[[3, 4], [2, 2.9]]");
  EXPECT_EQ(RunCase(c, 0)["Tc"].get<double>(), tc);
  c["methods"]["critical"] = "lydersen";
  c["groups"]["lydersen"] = Json::parse("[[1, 6.99]]");
  EXPECT_NEAR(RunCase(c, 0)["Tc"].get<double>(), 341.88 / (0.567 + 0.12 - 0.0144), 1e-9);
}

TEST_F(PureCompCli, BadCasesAreRefusedWithAClearMessage) {
  auto refused = [&](const Json& c, const std::string& fragment) {
    SCOPED_TRACE(c.dump());
    const Json out = RunCase(c, 2);
    ASSERT_FALSE(out["messages"].empty());
    EXPECT_NE(out["messages"].back().get<std::string>().find(fragment), std::string::npos)
        << out["messages"].back();
  };
  // Each change is merged into the example (a null removes the key).
  const std::pair<const char*, const char*> cases[] = {
      {R"({"groups": {"joback": [[1, 2]]}})", "heading"},
      {R"({"groups": {"joback": [[47, 1]]}})", "not a row"},
      {R"({"groups": {"joback": [[2, 1], [2, 1]]}})", "twice"},
      {R"({"groups": {"vetere": []}})", "unknown method"},
      {R"({"methods": {"omega": "pitzer"}})", "edmister, lee-kesler"},
      {R"({"mol_weight": null})", "mol_weight"},
      {R"({"mol_weight": "86"})", "mol_weight"},
      {R"({"tb": 68.73})", "unknown key"},  // a misspelt key is never ignored
      {R"({"program": "unifac"})", "program"},
      {R"({"methods": {"cp_liquid": "lyman-danner"}, "lyman_danner": {"R": 1.0, "K": 0.1}})",
       "Lyman-Danner"},
      {R"({"temp_low_c": 50, "temp_high_c": 50})", "Antoine fit"},
  };
  for (const auto& [patch, fragment] : cases) {
    Json c = Example();
    c.merge_patch(Json::parse(patch));
    refused(c, fragment);
  }
  Json c = Example();  // a blank boiling point and no Fedors group
  c["tb_c"] = nullptr;
  c["groups"]["fedors"] = Json::array();
  refused(c, "Fedors");

  EXPECT_EQ(RunCli("purecomp " + (dir_ / "missing.json")).status, 2);
}

TEST_F(PureCompCli, SoftMessagesRunToTheEnd) {
  Json c = Example();
  c["temp_high_c"] = 400;
  c["methods"]["liquid_density"] = "spencer-danner";
  c["spencer_danner"] = Json{{"rho_ref", nullptr}, {"t_ref_c", 20}};
  const Json out = RunCase(c, 0);
  ASSERT_EQ(out["messages"].size(), 2u);
  EXPECT_EQ(out["messages"][0], "臨界温度Tcを越えています。");
  EXPECT_TRUE(out["grid"][50]["hv"].is_null());  // Tr = 1
  EXPECT_TRUE(out["grid"][49]["hv"].is_number());
}

}  // namespace
