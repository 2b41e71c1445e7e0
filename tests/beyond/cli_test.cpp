// The additions to the binary commands of tervale-cli, run as a user runs them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "common/cli_fixture.h"
#include "io/field_reader.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using Rows = std::vector<std::vector<std::string>>;
using tervale::testcli::ReadBytes;
using tervale::testcli::RunCli;

// RFC 4180: fields separated by commas, quoted fields with doubled quotes, every line ended by
// CRLF. `wellFormed` is false on a bare CR or LF or an unended last line.
Rows ParseCsv(const std::string& text, bool& wellFormed) {
  Rows rows(1, std::vector<std::string>(1));
  bool quoted = false;
  wellFormed = true;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    std::string& field = rows.back().back();
    if (quoted && c == '"' && text.compare(i, 2, "\"\"") == 0) {
      field += text[i++];
    } else if (c == '"') {
      quoted = !quoted;
    } else if (quoted || (c != ',' && c != '\r' && c != '\n')) {
      field += c;
    } else if (c == ',') {
      rows.back().emplace_back();
    } else if (text.compare(i++, 2, "\r\n") == 0) {
      rows.emplace_back(1);
    } else {
      wellFormed = false;
    }
  }
  if (rows.back() != std::vector<std::string>(1) || quoted) wellFormed = false;
  rows.pop_back();
  return rows;
}

// A cell of a CSV body as a number, the same as the JSON's.
void ExpectSameNumber(const std::string& cell, double expected) {
  double v = 0;
  ASSERT_TRUE(tervale::io::ParseNumber(cell, v)) << cell;
  EXPECT_EQ(v, expected);
}

class BeyondCli : public tervale::testcli::CliFixture {
 protected:
  void Example(const std::string& which, const std::string& file) {
    ASSERT_EQ(RunCli("example " + which + " -o " + dir_ / file).status, 0) << which;
  }
  Json RunJson(const std::string& args) {
    auto r = RunCli(args + " --json");
    EXPECT_EQ(r.status, 0) << args;
    return Json::parse(r.out);
  }
  // The CSV answer of a command: a byte-order mark, then well-formed rows.
  Rows RunCsv(const std::string& args) {
    auto r = RunCli(args + " --csv");
    EXPECT_EQ(r.status, 0) << args;
    EXPECT_EQ(r.out.rfind("\xEF\xBB\xBF", 0), 0u) << args;
    bool wellFormed = false;
    Rows rows = ParseCsv(r.out.substr(std::min<size_t>(3, r.out.size())), wellFormed);
    EXPECT_TRUE(wellFormed) << args;
    return rows;
  }
};

// The pairs command reads the property database built beside the programs.
class BeyondDbCli : public BeyondCli {
 protected:
  void SetUp() override {
    if (!fs::exists(fs::path(TERVALE_BIN_DIR) / "Masterd$.mde"))
      GTEST_SKIP() << "the property database is not built";
    BeyondCli::SetUp();
  }
};

TEST_F(BeyondCli, ConsistencyOfTheFirstExamplePrintsBothVerdicts) {
  Example("vle 1", "v.dat");
  Json j = RunJson("vle " + dir_ / "v.dat" + " --consistency");
  const Json& c = j.at("consistency");
  EXPECT_TRUE(c.at("area").at("passed").is_boolean());
  EXPECT_TRUE(c.at("area").at("D").is_number());
  EXPECT_TRUE(c.at("area").at("J").is_number());  // isobaric data
  EXPECT_TRUE(c.at("point").at("passed").is_boolean());
  EXPECT_GE(c.at("point").at("order").get<int>(), 1);
  EXPECT_LE(c.at("point").at("order").get<int>(), 5);
  EXPECT_EQ(c.at("point").at("residuals_y").size(), 12u);
  EXPECT_TRUE(c.at("messages").is_array());
  EXPECT_TRUE(j.at("messages").is_array());
  EXPECT_FALSE(j.contains("curve"));  // the tests run instead of a fit
}

TEST_F(BeyondCli, EveryRunHoldsStatisticsAndAzeotropesAndTheCsvReadsBack) {
  Example("vle 1", "v1.dat");
  Example("vle 2", "v2.dat");
  Json j1 = RunJson("vle " + dir_ / "v1.dat");
  const Json& st = j1.at("statistics");
  ASSERT_EQ(st.at("std_errors").size(), 2u);
  EXPECT_GT(st.at("std_errors")[0].get<double>(), 0);
  EXPECT_LE(std::fabs(st.at("correlation").get<double>()), 1);
  for (const char* key : {"rmsd_y", "aad_y", "rmsd_tp", "aad_tp"})
    EXPECT_TRUE(st.at(key).is_number()) << key;
  ASSERT_EQ(st.at("residuals").size(), 12u);
  EXPECT_EQ(j1.at("azeotropes"), Json::array());  // methanol-water

  // TBA-water boils at a minimum near x1 = 0.65
  Json j2 = RunJson("vle " + dir_ / "v2.dat");
  ASSERT_EQ(j2.at("azeotropes").size(), 1u);
  EXPECT_EQ(j2.at("azeotropes")[0].at("kind"), "minimum-boiling");
  EXPECT_NEAR(j2.at("azeotropes")[0].at("x1").get<double>(), 0.65, 0.05);
  // the calculate types draw a diagram without a fit (here from the file's start parameters,
  // Raoult's law): azeotropes but no statistics
  Json j3 = RunJson("vle " + dir_ / "v2.dat" + " --calc-type 3");
  EXPECT_TRUE(j3.at("statistics").is_null());
  EXPECT_EQ(j3.at("azeotropes"), Json::array());

  // CSV of the residual table: header and the same numbers as the JSON
  Rows rows = RunCsv("vle " + dir_ / "v1.dat");
  ASSERT_EQ(rows.size(), 13u);
  const std::vector<std::string> header = {"x",       "y_meas",  "y_calc", "dy",
                                           "tp_meas", "tp_calc", "dtp"};
  EXPECT_EQ(rows[0], header);
  for (size_t i = 1; i < rows.size(); ++i)
    for (size_t k = 0; k < header.size(); ++k)
      ExpectSameNumber(rows[i][k], st.at("residuals")[i - 1].at(header[k]).get<double>());
  // without a fit the curve is the table
  rows = RunCsv("vle " + dir_ / "v1.dat" + " --calc-type 3");
  EXPECT_EQ(rows.size(), 202u);
  EXPECT_EQ(rows[0][0], "x1");
  // the consistency table too
  rows = RunCsv("vle " + dir_ / "v1.dat" + " --consistency");
  ASSERT_EQ(rows.size(), 13u);
  EXPECT_EQ(rows[0], (std::vector<std::string>{"x", "y_meas", "y_calc", "dy"}));
}

TEST_F(BeyondCli, TheUnifacDiagramReportsItsAzeotropes) {
  Example("unifac 1", "u1.json");
  Example("unifac 2", "u2.json");
  EXPECT_EQ(RunJson("unifac " + dir_ / "u1.json").at("azeotropes"), Json::array());
  Json j = RunJson("unifac " + dir_ / "u2.json");  // benzene-methanol
  ASSERT_EQ(j.at("azeotropes").size(), 1u);
  EXPECT_EQ(j.at("azeotropes")[0].at("kind"), "minimum-boiling");
  EXPECT_NEAR(j.at("azeotropes")[0].at("x1").get<double>(), 0.4, 0.05);
  EXPECT_NEAR(j.at("azeotropes")[0].at("tp").get<double>(), j.at("t_min").get<double>(), 0.01);
}

TEST_F(BeyondDbCli, PairsListsAndFillsTheMissingPairsOfColumnFlashAndBatchCases) {
  Example("column 1", "c.dat");
  const std::string original = ReadBytes(dir_ / "c.dat");
  // "Distillation Data" belongs to two programs: the command asks which
  EXPECT_EQ(RunCli("pairs " + dir_ / "c.dat").status, 2);
  EXPECT_NE(RunCli("pairs " + dir_ / "c.dat" + " --program nonsense").status, 0);

  Json j = RunJson("pairs " + dir_ / "c.dat" + " --program column");
  EXPECT_EQ(j.at("method"), "wilson");
  ASSERT_EQ(j.at("pairs").size(), 3u);
  EXPECT_EQ(j.at("pairs")[0], (Json{{"i", 1},
                                    {"j", 2},
                                    {"name1", "Methanol"},
                                    {"name2", "Ethanol"},
                                    {"stored", true},
                                    {"index", 0},
                                    {"filled", false}}));
  EXPECT_EQ(j.at("pairs")[2].at("stored"), false);
  EXPECT_TRUE(j.at("pairs")[2].at("index").is_null());

  // filling needs an output file, and never touches the input
  EXPECT_EQ(RunCli("pairs " + dir_ / "c.dat" + " --program column --fill-from-db").status, 2);
  Json f =
      RunJson("pairs " + dir_ / "c.dat" + " --program column --fill-from-db -o " + dir_ / "c2.dat");
  EXPECT_EQ(f.at("pairs")[0].at("filled"), true);
  EXPECT_EQ(f.at("output"), dir_ / "c2.dat");
  EXPECT_EQ(ReadBytes(dir_ / "c.dat"), original);
  const std::string filled = ReadBytes(dir_ / "c2.dat");
  // the seed's methanol-ethanol row: Lambda12 = 1.5851 to [2][1], Lambda21 = 0.563015 to [1][2]
  EXPECT_NE(filled.find("1,0.563015,1,1"), std::string::npos);
  EXPECT_NE(filled.find("1.5851,1,"), std::string::npos);
  Json after = RunJson("pairs " + dir_ / "c2.dat" + " --program column");
  ASSERT_EQ(after.at("pairs").size(), 2u);
  EXPECT_EQ(after.at("pairs")[0].at("name2"), "1-Propanol");
  // CSV of the list
  Rows rows = RunCsv("pairs " + dir_ / "c.dat" + " --program column");
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows[1][2], "Methanol");

  // A flash case is not a column case: the column reader refuses it.
  Example("flash 1", "f.dat");
  EXPECT_EQ(RunCli("pairs " + dir_ / "f.dat" + " --program column").status, 2);
  f = RunJson("pairs " + dir_ / "f.dat" + " --program flash --fill-from-db -o " + dir_ / "f2.dat");
  EXPECT_EQ(f.at("program"), "flash");
  ASSERT_EQ(f.at("pairs").size(), 3u);
  EXPECT_EQ(f.at("pairs")[0].at("filled"), true);
  EXPECT_EQ(RunJson("pairs " + dir_ / "f2.dat" + " --program flash").at("pairs").size(), 2u);
  // A batch case has a magic string of its own.
  Example("batch 1", "b.dat");
  Json b = RunJson("pairs " + dir_ / "b.dat" + " --fill-from-db -o " + dir_ / "b2.dat");
  EXPECT_EQ(b.at("program"), "batch");
  ASSERT_EQ(b.at("pairs").size(), 1u);
  EXPECT_EQ(b.at("pairs")[0].at("name2"), "Ethanol");
  EXPECT_EQ(b.at("pairs")[0].at("filled"), true);
  EXPECT_TRUE(RunJson("pairs " + dir_ / "b2.dat").at("pairs").empty());
  // not a case of these programs
  Example("vle 1", "v.dat");
  EXPECT_EQ(RunCli("pairs " + dir_ / "v.dat").status, 2);
}

TEST_F(BeyondCli, SecondBatchExampleIsTheFirstInJoulesWithTheLargeDutyAndFillsItsTanks) {
  Example("batch", "b1.dat");
  Example("batch 1", "b1b.dat");
  Example("batch 2", "b2.dat");
  EXPECT_NE(RunCli("example batch 3 -o " + dir_ / "b3.dat").status, 0);
  std::string first = ReadBytes(dir_ / "b1.dat");
  EXPECT_EQ(first, ReadBytes(dir_ / "b1b.dat"));
  // the two edits of the file a user would make
  for (auto [from, to] : {std::pair{"3,10,2,1,2,1,0,1,3,2,1", "3,10,2,1,2,1,0,1,3,1,1"},
                          std::pair{"238.8886898149807", "1e+06"}}) {
    const size_t at = first.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    first.replace(at, std::string(from).size(), to);
  }
  EXPECT_EQ(first, ReadBytes(dir_ / "b2.dat"));

  Json j = RunJson("batch " + dir_ / "b2.dat" + " --data-dir " + dir_ / "out");
  EXPECT_EQ(j.at("end"), "tanks-exhausted");
  EXPECT_GT(j.at("steps").at("product").get<long long>(), 0);
  ASSERT_EQ(j.at("tanks").size(), 2u);
  for (const Json& tank : j.at("tanks")) {
    double content = 0;
    for (const Json& c : tank.at("content")) content += c.get<double>();
    EXPECT_GT(content, 1.0);
  }
}

TEST_F(BeyondCli, CsvOfTheFlashAntoineAndBatchTablesReadsBackToTheSameNumbers) {
  Example("flash 1", "f.dat");
  Json j = RunJson("flash " + dir_ / "f.dat" + " --calc flash");
  Rows rows = RunCsv("flash " + dir_ / "f.dat" + " --calc flash");
  ASSERT_EQ(rows.size(), j.at("components").size() + 1);
  EXPECT_EQ(rows[0], (std::vector<std::string>{"Component", "Vapour y", "Liquid x", "K", "Gamma"}));
  const char* keys[] = {"Component", "y", "x", "k"};
  for (size_t i = 1; i < rows.size(); ++i) {
    EXPECT_EQ(rows[i][0], j.at("components")[i - 1]);
    for (size_t k = 1; k <= 3; ++k) ExpectSameNumber(rows[i][k], j.at(keys[k])[i - 1]);
  }

  Example("antoine", "a.json");
  Json a = RunJson("antoine " + dir_ / "a.json");
  rows = RunCsv("antoine " + dir_ / "a.json");
  ASSERT_EQ(rows.size(), a.at("rows").size() + 1);
  const char* constants[] = {"", "", "A", "B", "C"};
  for (size_t i = 1; i < rows.size(); ++i)
    for (size_t k = 2; k <= 4; ++k)
      ExpectSameNumber(rows[i][k], a.at("rows")[i - 1].at(constants[k]));
}

}  // namespace
