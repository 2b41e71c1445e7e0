// The additions to the binary commands of tervale-cli, run as a user runs them.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "io/field_reader.h"

// GCC 12 reports a false -Wrestrict overlap in inlined string concatenation.
#if defined(__GNUC__) && !defined(__clang__) && __GNUC__ == 12
#pragma GCC diagnostic ignored "-Wrestrict"
#endif

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

struct CliRun {
  int status = -1;
  std::string out;
};

CliRun RunCli(const fs::path& cli, const std::string& args) {
  CliRun r;
  std::string command = "'" + cli.string() + "' " + args + " 2>/dev/null";
  FILE* p = popen(command.c_str(), "r");
  if (!p) return r;
  char buf[4096];
  size_t n;
  while ((n = fread(buf, 1, sizeof buf, p)) > 0) r.out.append(buf, n);
  int st = pclose(p);
  r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
  return r;
}

// RFC 4180: fields separated by commas, quoted fields with doubled quotes, CRLF line ends.
std::vector<std::vector<std::string>> ParseCsv(const std::string& text, bool& wellFormed) {
  std::vector<std::vector<std::string>> rows;
  std::vector<std::string> row;
  std::string field;
  bool quoted = false;
  wellFormed = true;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quoted) {
      if (c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
        field += '"';
        ++i;
      } else if (c == '"') {
        quoted = false;
      } else {
        field += c;
      }
    } else if (c == '"') {
      quoted = true;
    } else if (c == ',') {
      row.push_back(field);
      field.clear();
    } else if (c == '\r') {
      if (i + 1 >= text.size() || text[i + 1] != '\n') wellFormed = false;
      row.push_back(field);
      field.clear();
      rows.push_back(row);
      row.clear();
      ++i;
    } else if (c == '\n') {
      wellFormed = false;  // a bare line feed
    } else {
      field += c;
    }
  }
  if (!field.empty() || !row.empty()) wellFormed = false;  // the last line must end too
  return rows;
}

class BeyondCli : public ::testing::Test {
 protected:
  void SetUp() override {
    cli_ = fs::path(TERVALE_BIN_DIR) / "tervale-cli";
    if (!fs::exists(cli_)) GTEST_SKIP() << "tervale-cli is not built";
    dir_ = fs::temp_directory_path() / ("tervale_beyond_cli_" + std::to_string(::getpid()));
    fs::create_directories(dir_);
  }
  void TearDown() override {
    if (!dir_.empty()) fs::remove_all(dir_);
  }
  std::string P(const std::string& name) { return (dir_ / name).string(); }
  Json RunJson(const std::string& args) {
    CliRun r = RunCli(cli_, args + " --json");
    EXPECT_EQ(r.status, 0) << args;
    return Json::parse(r.out);
  }
  fs::path cli_, dir_;
};

TEST_F(BeyondCli, ConsistencyOfTheFirstExamplePrintsBothVerdicts) {
  ASSERT_EQ(RunCli(cli_, "example vle 1 -o " + P("v.dat")).status, 0);
  Json j = RunJson("vle " + P("v.dat") + " --consistency");
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
  ASSERT_EQ(RunCli(cli_, "example vle 1 -o " + P("v1.dat")).status, 0);
  ASSERT_EQ(RunCli(cli_, "example vle 2 -o " + P("v2.dat")).status, 0);
  Json j1 = RunJson("vle " + P("v1.dat"));
  const Json& st = j1.at("statistics");
  ASSERT_EQ(st.at("std_errors").size(), 2u);
  EXPECT_GT(st.at("std_errors")[0].get<double>(), 0);
  EXPECT_LE(std::fabs(st.at("correlation").get<double>()), 1);
  for (const char* key : {"rmsd_y", "aad_y", "rmsd_tp", "aad_tp"})
    EXPECT_TRUE(st.at(key).is_number()) << key;
  ASSERT_EQ(st.at("residuals").size(), 12u);
  EXPECT_EQ(j1.at("azeotropes"), Json::array());  // methanol-water

  // TBA-water boils at a minimum near x1 = 0.65
  Json j2 = RunJson("vle " + P("v2.dat"));
  ASSERT_EQ(j2.at("azeotropes").size(), 1u);
  EXPECT_EQ(j2.at("azeotropes")[0].at("kind"), "minimum-boiling");
  EXPECT_NEAR(j2.at("azeotropes")[0].at("x1").get<double>(), 0.65, 0.05);
  // the calculate types draw a diagram without a fit (here from the file's start parameters,
  // Raoult's law): azeotropes but no statistics
  Json j3 = RunJson("vle " + P("v2.dat") + " --calc-type 3");
  EXPECT_TRUE(j3.at("statistics").is_null());
  EXPECT_EQ(j3.at("azeotropes"), Json::array());

  // CSV of the residual table: BOM, header, CRLF and the same numbers as the JSON
  CliRun csv = RunCli(cli_, "vle " + P("v1.dat") + " --csv");
  ASSERT_EQ(csv.status, 0);
  ASSERT_EQ(csv.out.rfind("\xEF\xBB\xBF", 0), 0u);
  bool wellFormed = false;
  auto rows = ParseCsv(csv.out.substr(3), wellFormed);
  EXPECT_TRUE(wellFormed);
  ASSERT_EQ(rows.size(), 13u);
  const std::vector<std::string> header = {"x",       "y_meas",  "y_calc", "dy",
                                           "tp_meas", "tp_calc", "dtp"};
  EXPECT_EQ(rows[0], header);
  for (size_t i = 1; i < rows.size(); ++i) {
    const Json& r = st.at("residuals")[i - 1];
    for (size_t k = 0; k < header.size(); ++k) {
      double v = 0;
      ASSERT_TRUE(tervale::io::ParseNumber(rows[i][k], v)) << rows[i][k];
      EXPECT_EQ(v, r.at(header[k]).get<double>()) << header[k];
    }
  }
  // without a fit the curve is the table
  CliRun curve = RunCli(cli_, "vle " + P("v1.dat") + " --calc-type 3 --csv");
  rows = ParseCsv(curve.out.substr(3), wellFormed);
  EXPECT_TRUE(wellFormed);
  EXPECT_EQ(rows.size(), 202u);
  EXPECT_EQ(rows[0][0], "x1");
  // the consistency table too
  CliRun cons = RunCli(cli_, "vle " + P("v1.dat") + " --consistency --csv");
  rows = ParseCsv(cons.out.substr(3), wellFormed);
  EXPECT_TRUE(wellFormed);
  ASSERT_EQ(rows.size(), 13u);
  EXPECT_EQ(rows[0], (std::vector<std::string>{"x", "y_meas", "y_calc", "dy"}));
}

TEST_F(BeyondCli, TheUnifacDiagramReportsItsAzeotropes) {
  ASSERT_EQ(RunCli(cli_, "example unifac 1 -o " + P("u1.json")).status, 0);
  ASSERT_EQ(RunCli(cli_, "example unifac 2 -o " + P("u2.json")).status, 0);
  EXPECT_EQ(RunJson("unifac " + P("u1.json")).at("azeotropes"), Json::array());
  Json j = RunJson("unifac " + P("u2.json"));  // benzene-methanol
  ASSERT_EQ(j.at("azeotropes").size(), 1u);
  EXPECT_EQ(j.at("azeotropes")[0].at("kind"), "minimum-boiling");
  EXPECT_NEAR(j.at("azeotropes")[0].at("x1").get<double>(), 0.4, 0.05);
  EXPECT_NEAR(j.at("azeotropes")[0].at("tp").get<double>(), j.at("t_min").get<double>(), 0.01);
}

}  // namespace

namespace {

std::string ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST_F(BeyondCli, PairsListsAndFillsTheMissingPairsOfAColumnCase) {
  if (!fs::exists(fs::path(TERVALE_BIN_DIR) / "Masterd$.mde"))
    GTEST_SKIP() << "the property database is not built";
  ASSERT_EQ(RunCli(cli_, "example column 1 -o " + P("c.dat")).status, 0);
  const std::string original = ReadAll(P("c.dat"));
  // "Distillation Data" belongs to two programs: the command asks which
  EXPECT_EQ(RunCli(cli_, "pairs " + P("c.dat")).status, 2);
  EXPECT_NE(RunCli(cli_, "pairs " + P("c.dat") + " --program nonsense").status, 0);

  Json j = RunJson("pairs " + P("c.dat") + " --program column");
  EXPECT_EQ(j.at("method"), "wilson");
  ASSERT_EQ(j.at("pairs").size(), 3u);
  const Json& first = j.at("pairs")[0];
  EXPECT_EQ(first.at("i"), 1);
  EXPECT_EQ(first.at("j"), 2);
  EXPECT_EQ(first.at("name1"), "Methanol");
  EXPECT_EQ(first.at("name2"), "Ethanol");
  EXPECT_EQ(first.at("stored"), true);
  EXPECT_EQ(first.at("index"), 0);
  EXPECT_EQ(first.at("filled"), false);
  EXPECT_EQ(j.at("pairs")[2].at("stored"), false);
  EXPECT_TRUE(j.at("pairs")[2].at("index").is_null());

  // filling needs an output file, and never touches the input
  EXPECT_EQ(RunCli(cli_, "pairs " + P("c.dat") + " --program column --fill-from-db").status, 2);
  Json f = RunJson("pairs " + P("c.dat") + " --program column --fill-from-db -o " + P("c2.dat"));
  EXPECT_EQ(f.at("pairs")[0].at("filled"), true);
  EXPECT_EQ(f.at("output"), P("c2.dat"));
  EXPECT_EQ(ReadAll(P("c.dat")), original);
  const std::string filled = ReadAll(P("c2.dat"));
  // the seed's methanol-ethanol row: Lambda12 = 1.5851 to [2][1], Lambda21 = 0.563015 to [1][2]
  EXPECT_NE(filled.find("1,0.563015,1,1"), std::string::npos);
  EXPECT_NE(filled.find("1.5851,1,"), std::string::npos);
  Json after = RunJson("pairs " + P("c2.dat") + " --program column");
  ASSERT_EQ(after.at("pairs").size(), 2u);
  EXPECT_EQ(after.at("pairs")[0].at("name2"), "1-Propanol");

  // CSV of the list
  CliRun csv = RunCli(cli_, "pairs " + P("c.dat") + " --program column --csv");
  bool wellFormed = false;
  auto rows = ParseCsv(csv.out.substr(3), wellFormed);
  EXPECT_TRUE(wellFormed);
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows[1][2], "Methanol");
}

}  // namespace

namespace {

TEST_F(BeyondCli, PairsReadsAndWritesFlashAndBatchCasesToo) {
  if (!fs::exists(fs::path(TERVALE_BIN_DIR) / "Masterd$.mde"))
    GTEST_SKIP() << "the property database is not built";
  ASSERT_EQ(RunCli(cli_, "example flash 1 -o " + P("f.dat")).status, 0);
  // a flash case is not a column case: the column reader refuses it
  EXPECT_EQ(RunCli(cli_, "pairs " + P("f.dat") + " --program column").status, 2);
  Json f = RunJson("pairs " + P("f.dat") + " --program flash --fill-from-db -o " + P("f2.dat"));
  EXPECT_EQ(f.at("program"), "flash");
  ASSERT_EQ(f.at("pairs").size(), 3u);
  EXPECT_EQ(f.at("pairs")[0].at("filled"), true);
  EXPECT_EQ(RunJson("pairs " + P("f2.dat") + " --program flash").at("pairs").size(), 2u);

  ASSERT_EQ(RunCli(cli_, "example batch 1 -o " + P("b.dat")).status, 0);
  Json b = RunJson("pairs " + P("b.dat") + " --fill-from-db -o " + P("b2.dat"));  // own magic
  EXPECT_EQ(b.at("program"), "batch");
  ASSERT_EQ(b.at("pairs").size(), 1u);
  EXPECT_EQ(b.at("pairs")[0].at("name2"), "Ethanol");
  EXPECT_EQ(b.at("pairs")[0].at("filled"), true);
  EXPECT_TRUE(RunJson("pairs " + P("b2.dat")).at("pairs").empty());
  // not a case of these programs
  ASSERT_EQ(RunCli(cli_, "example vle 1 -o " + P("v.dat")).status, 0);
  EXPECT_EQ(RunCli(cli_, "pairs " + P("v.dat")).status, 2);
}

TEST_F(BeyondCli, SecondBatchExampleIsTheFirstInJoulesWithTheLargeDutyAndFillsItsTanks) {
  ASSERT_EQ(RunCli(cli_, "example batch -o " + P("b1.dat")).status, 0);
  ASSERT_EQ(RunCli(cli_, "example batch 1 -o " + P("b1b.dat")).status, 0);
  ASSERT_EQ(RunCli(cli_, "example batch 2 -o " + P("b2.dat")).status, 0);
  EXPECT_NE(RunCli(cli_, "example batch 3 -o " + P("b3.dat")).status, 0);
  std::string first = ReadAll(P("b1.dat"));
  EXPECT_EQ(first, ReadAll(P("b1b.dat")));
  // the two edits of the file a user would make
  auto replace = [&](const std::string& from, const std::string& to) {
    const size_t at = first.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    first.replace(at, from.size(), to);
  };
  replace("3,10,2,1,2,1,0,1,3,2,1", "3,10,2,1,2,1,0,1,3,1,1");
  replace("238.8886898149807", "1e+06");
  EXPECT_EQ(first, ReadAll(P("b2.dat")));

  CliRun r = RunCli(cli_, "batch " + P("b2.dat") + " --data-dir " + P("out") + " --json");
  ASSERT_EQ(r.status, 0);
  Json j = Json::parse(r.out);
  EXPECT_EQ(j.at("end"), "tanks-exhausted");
  EXPECT_GT(j.at("steps").at("product").get<long long>(), 0);
  ASSERT_EQ(j.at("tanks").size(), 2u);
  for (const Json& tank : j.at("tanks")) {
    double content = 0;
    for (const Json& c : tank.at("content")) content += c.get<double>();
    EXPECT_GT(content, 1.0);
  }
}

}  // namespace

namespace {

// Every cell of a CSV body as a number, compared with the JSON's.
void ExpectSameNumber(const std::string& cell, double expected) {
  double v = 0;
  ASSERT_TRUE(tervale::io::ParseNumber(cell, v)) << cell;
  EXPECT_EQ(v, expected);
}

TEST_F(BeyondCli, CsvOfTheFlashAntoineAndBatchTablesReadsBackToTheSameNumbers) {
  ASSERT_EQ(RunCli(cli_, "example flash 1 -o " + P("f.dat")).status, 0);
  Json j = RunJson("flash " + P("f.dat") + " --calc flash");
  CliRun csv = RunCli(cli_, "flash " + P("f.dat") + " --calc flash --csv");
  ASSERT_EQ(csv.status, 0);
  ASSERT_EQ(csv.out.rfind("\xEF\xBB\xBF", 0), 0u);
  bool wellFormed = false;
  auto rows = ParseCsv(csv.out.substr(3), wellFormed);
  EXPECT_TRUE(wellFormed);
  ASSERT_EQ(rows.size(), j.at("components").size() + 1);
  EXPECT_EQ(rows[0], (std::vector<std::string>{"Component", "Vapour y", "Liquid x", "K", "Gamma"}));
  for (size_t i = 1; i < rows.size(); ++i) {
    EXPECT_EQ(rows[i][0], j.at("components")[i - 1]);
    ExpectSameNumber(rows[i][1], j.at("y")[i - 1].get<double>());
    ExpectSameNumber(rows[i][2], j.at("x")[i - 1].get<double>());
    ExpectSameNumber(rows[i][3], j.at("k")[i - 1].get<double>());
  }

  ASSERT_EQ(RunCli(cli_, "example antoine -o " + P("a.json")).status, 0);
  Json a = RunJson("antoine " + P("a.json"));
  CliRun acsv = RunCli(cli_, "antoine " + P("a.json") + " --csv");
  rows = ParseCsv(acsv.out.substr(3), wellFormed);
  EXPECT_TRUE(wellFormed);
  ASSERT_EQ(rows.size(), a.at("rows").size() + 1);
  for (size_t i = 1; i < rows.size(); ++i) {
    ExpectSameNumber(rows[i][2], a.at("rows")[i - 1].at("A").get<double>());
    ExpectSameNumber(rows[i][3], a.at("rows")[i - 1].at("B").get<double>());
    ExpectSameNumber(rows[i][4], a.at("rows")[i - 1].at("C").get<double>());
  }
}

}  // namespace
