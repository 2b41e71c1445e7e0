// No NaN or infinity reaches a printed result, in text or JSON, without a message saying what
// went wrong: the built-in examples perturbed (zero or negative Antoine C, zero pressure, an
// all-zero composition, a zero molecular weight, a reversed temperature range) and every number
// of the output checked.
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <regex>

#include "batch/batch_case.h"
#include "column/column_case.h"
#include "hardening/case_kinds.h"
#include "regress/vle_case.h"

namespace tervale::hardening {
namespace {

using Json = nlohmann::ordered_json;

// One perturbation: JSON pointers set to values.
struct Perturbation {
  std::string name;
  std::vector<std::pair<std::string, Json>> set;
};

std::map<std::string, std::vector<Perturbation>> Perturbations() {
  return {
      {"purecomp",
       {
           {"zero molecular weight", {{"/mol_weight", 0}}},
           {"negative molecular weight", {{"/mol_weight", -86}}},
           {"reversed temperature range", {{"/temp_low_c", 200}, {"/temp_high_c", 0}}},
           {"equal temperatures", {{"/temp_low_c", 50}, {"/temp_high_c", 50}}},
           {"boiling point at absolute zero", {{"/tb_c", -273.15}}},
           {"boiling point above the range", {{"/tb_c", 5000}}},
           {"no groups at all", {{"/groups", Json::object()}}},
           {"zero reference density", {{"/spencer_danner/rho_ref", 0}}},
           {"temperature below absolute zero", {{"/temp_low_c", -400}}},
       }},
      {"antoine",
       {
           {"zero Antoine C", {{"/substances/0/C", 0}}},
           {"negative Antoine C", {{"/substances/0/C", -300}}},
           {"zero pressure", {{"/substances/0/points/0/1", 0}}},
           {"all pressures zero",
            {{"/substances/0/points/0/1", 0},
             {"/substances/0/points/1/1", 0},
             {"/substances/0/points/2/1", 0}}},
           {"zero critical pressure", {{"/substances/0/Pc", 0}}},
           {"zero critical temperature", {{"/substances/0/Tc", 0}}},
           {"reversed temperature range", {{"/temp_low", 200}, {"/temp_high", 0}}},
       }},
      {"unifac",
       {
           {"zero Antoine C", {{"/components/0/C", 0}}},
           {"negative Antoine C", {{"/components/0/C", -300}}},
           {"Antoine C cancelling the temperature", {{"/components/1/C", -60}}},
           {"zero pressure", {{"/pressure", 0}}},
           {"negative pressure", {{"/pressure", -760}}},
           {"all-zero composition", {{"/groups", Json::array()}}},
           {"temperature at absolute zero", {{"/temperature", -273.15}}},
       }},
  };
}

// Applies the perturbation where its keys exist in the case; false when none applied.
bool Apply(Json& c, const Perturbation& p) {
  bool any = false;
  for (const auto& [pointer, value] : p.set) {
    const Json::json_pointer at(pointer);
    if (!c.contains(at.parent_pointer())) continue;
    c[at] = value;
    any = true;
  }
  return any;
}

// Perturbations of the record-file kinds, on the state before it is written.
struct StatePerturbation {
  std::string name;
  std::function<void(SharedCalcState&)> apply;
};

std::map<std::string, std::vector<StatePerturbation>> StatePerturbations() {
  std::map<std::string, std::vector<StatePerturbation>> all;
  all["vle"] = {
      {"zero Antoine C", [](SharedCalcState& s) { s.VLE.AntoineC[1] = 0; }},
      {"negative Antoine C", [](SharedCalcState& s) { s.VLE.AntoineC[2] = -400; }},
      {"zero pressure", [](SharedCalcState& s) { s.VLE.VLEPressure = 0; }},
      {"all-zero composition",
       [](SharedCalcState& s) {
         for (int i = 1; i <= s.VLE.NVLEData; ++i) s.VLE.DataX[i] = s.VLE.DataY[i] = 0;
       }},
      {"zero temperatures",
       [](SharedCalcState& s) {
         for (int i = 1; i <= s.VLE.NVLEData; ++i) s.VLE.DataTemp[i] = -273.15;
       }},
      {"no data points", [](SharedCalcState& s) { s.VLE.NVLEData = 0; }},
  };
  // Constants every program keeps in the component table.
  const std::vector<StatePerturbation> components = {
      {"zero Antoine C", [](SharedCalcState& s) { s.Comp.AntoineC[1] = 0; }},
      {"negative Antoine C", [](SharedCalcState& s) { s.Comp.AntoineC[2] = -400; }},
      {"zero molecular weight", [](SharedCalcState& s) { s.Comp.CompMW[1] = 0; }},
  };
  all["flash"] = components;
  all["flash"].push_back({"zero pressure", [](SharedCalcState& s) { s.Flash.FlashPress = 0; }});
  all["flash"].push_back({"all-zero composition", [](SharedCalcState& s) { s.Flash.FeedZ = {}; }});
  all["flash"].push_back(
      {"temperature at absolute zero", [](SharedCalcState& s) { s.Flash.FlashTemp = -273.15; }});
  all["batch"] = components;
  all["batch"].push_back(
      {"zero pressure", [](SharedCalcState& s) { s.Batch.TopPress = s.Batch.BottomPress = 0; }});
  all["batch"].push_back({"all-zero charge", [](SharedCalcState& s) { s.Batch.FeedComp = {}; }});
  all["column"] = components;
  all["column"].push_back({"zero pressure", [](SharedCalcState& s) {
                             s.Column.TopPress = s.Column.BottomPress = 0;
                             for (int f = 1; f <= s.NFeed; ++f) s.Column.FeedPress[f] = 0;
                           }});
  all["column"].push_back({"all-zero feed composition", [](SharedCalcState& s) {
                             for (int f = 1; f <= s.NFeed; ++f) s.Column.FeedComp[f] = {};
                           }});
  all["column"].push_back({"zero feed flow", [](SharedCalcState& s) {
                             for (int f = 1; f <= s.NFeed; ++f) s.Column.FeedFlow[f] = 0;
                           }});
  return all;
}

bool HasNonFiniteText(const std::string& text) {
  static const std::regex word(R"((^|[^A-Za-z])(-?nan|-?inf|NaN|-?Infinity)([^A-Za-z]|$))",
                               std::regex::icase);
  return std::regex_search(text, word);
}

// Runs a case file both ways and checks what it prints.
// Some outputs hold null for a value the case does not ask for (a blank field): only nulls beyond
// those of the unperturbed example (baseline) need a message.
int CheckOutputs(const std::string& command, const fs::path& file, const fs::path& scratch,
                 int baseline = 1 << 30) {
  // JSON: a value that is not finite is null, and then a message says why.
  const std::string global = "--data-dir " + scratch.string() + " ";
  const CliRun j = RunCli(global + "--json " + command + " " + file.string(), scratch);
  EXPECT_EQ(j.signal, 0) << j.err;
  EXPECT_TRUE(j.status == 0 || j.status == 2) << j.status << ": " << j.err;
  if (j.signal != 0) return 0;
  const Json out = Json::parse(j.out);
  int nulls = 0;
  std::function<void(const Json&)> count = [&](const Json& v) {
    if (v.is_null()) ++nulls;
    if (v.is_number_float() && !std::isfinite(v.get<double>())) ++nulls;
    if (v.is_structured())
      for (const auto& e : v) count(e);
  };
  for (auto e = out.begin(); e != out.end(); ++e)
    if (e.key() != "messages") count(e.value());
  if (nulls > baseline)
    EXPECT_FALSE(out["messages"].empty()) << nulls << " values left out without a message";
  // Text: "NaN" or "Infinity" printed only together with a message.
  const CliRun t = RunCli(global + command + " " + file.string(), scratch);
  EXPECT_EQ(t.signal, 0) << t.err;
  if (HasNonFiniteText(t.out)) EXPECT_FALSE(t.err.empty()) << t.out;
  return nulls;
}

TEST(NoSilentNaN, PerturbedRecordCasesNeverShowANonFiniteNumberWithoutAMessage) {
  if (!fs::exists(CliPath())) GTEST_SKIP() << "tervale-cli is not built";
  const auto all = StatePerturbations();
  for (const auto& kind : CoreCaseKinds()) {
    if (kind.cliCommand.empty()) continue;
    SCOPED_TRACE(kind.name);
    auto it = all.find(kind.name);
    ASSERT_NE(it, all.end()) << "no perturbations listed for " << kind.name;
    ScratchDir dir("nan_" + kind.name);
    const fs::path file = dir.path() / "case.dat";
    // The example as it stands first: the nulls it prints already need no message.
    std::vector<StatePerturbation> runs{{"as it stands", [](SharedCalcState&) {}}};
    runs.insert(runs.end(), it->second.begin(), it->second.end());
    int baseline = -1;
    for (const auto& p : runs) {
      SCOPED_TRACE(p.name);
      auto s = MakeSharedCalcState();
      kind.loadExample(*s, 1);
      p.apply(*s);
      kind.write(*s, file);
      const int nulls =
          CheckOutputs(kind.cliCommand, file, dir.path(), baseline < 0 ? 1 << 30 : baseline);
      if (baseline < 0) baseline = nulls;
    }
  }
}

TEST(NoSilentNaN, PerturbedExamplesNeverShowANonFiniteNumberWithoutAMessage) {
  if (!fs::exists(CliPath())) GTEST_SKIP() << "tervale-cli is not built";
  const auto all = Perturbations();
  for (const auto& kind : CliCaseKinds()) {
    SCOPED_TRACE(kind.name);
    ScratchDir dir("nan_" + kind.name);
    const fs::path exampleFile = dir.path() / "example.json";
    ASSERT_EQ(RunCli(kind.exampleArgs + " -o " + exampleFile.string(), dir.path()).status, 0);
    const Json example = Json::parse(ReadBytes(exampleFile));
    auto it = all.find(kind.name);
    ASSERT_NE(it, all.end()) << "no perturbations listed for " << kind.name;
    int applied = 0;
    const int baseline = CheckOutputs(kind.runArgs, exampleFile, dir.path());
    for (const auto& p : it->second) {
      SCOPED_TRACE(p.name);
      Json c = example;
      if (!Apply(c, p)) continue;
      ++applied;
      const fs::path file = dir.path() / "case.json";
      WriteBytes(file, c.dump(2));
      CheckOutputs(kind.runArgs, file, dir.path(), baseline);
    }
    EXPECT_GT(applied, 0) << "no perturbation applies to the example";
  }
}

}  // namespace
}  // namespace tervale::hardening
