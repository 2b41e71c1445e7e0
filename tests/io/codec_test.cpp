#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "common/scratch.h"
#include "io/field_reader.h"
#include "io/record_writer.h"
#include "state/errors.h"

namespace tervale::io {
namespace {

namespace fs = std::filesystem;

using testcli::ReadBytes;
using testcli::ScratchDir;
using testcli::WriteBytes;

TEST(Codec, WriterLayoutAndEveryDoubleClassRoundTrip) {
  // clang-format off
  const double values[] = {0.0, -0.0, 0.1, 1.0 / 3.0, -2.0 / 3.0, 1e300, -1e300, DBL_TRUE_MIN,
                           -DBL_TRUE_MIN, 2.2250738585072009e-308, DBL_MIN, DBL_MAX, -DBL_MAX,
                           DBL_EPSILON, 123456789012345678.0, 0.30000000000000004, 273.15};
  // clang-format on
  RecordWriter w;
  w.Str("a,b").Num(0.5).Int(-3).Bool(true).Bool(false).Empty().EndLine();
  for (double v : values) w.Num(v);
  w.EndLine();
  EXPECT_EQ(w.Text().substr(0, 32), "\"a,b\",0.5,-3,#TRUE#,#FALSE#,\r\n0,");
  FieldReader r(w.Text(), "layout.dat");
  EXPECT_EQ(r.ReadString("s"), "a,b");
  EXPECT_EQ(r.ReadDouble("n"), 0.5);
  EXPECT_EQ(r.ReadInt("i"), -3);
  EXPECT_TRUE(r.ReadBool("t"));
  EXPECT_FALSE(r.ReadBool("f"));
  EXPECT_EQ(r.ReadString("empty at the line end"), "");
  EXPECT_EQ(r.Line(), 1);
  for (double v : values) {
    double got = r.ReadDouble("value");
    EXPECT_EQ(std::memcmp(&got, &v, sizeof v), 0) << FormatShortest(v) << " read back as " << got;
  }
  EXPECT_EQ(r.Line(), 2);
  EXPECT_EQ(w.Text().substr(w.Text().size() - 9), ",273.15\r\n");
  EXPECT_TRUE(r.AtEnd());
}

TEST(Codec, OlderNumberFormsAndSpecialFields) {
  for (const char* eol : {"\n", "\r\n"}) {
    std::string text = std::string(".5,-.5,1E+20,1.5E-05,#TRUE#,#FALSE#,#NULL#,,") + eol +
                       "\"x, y\",  7 ,\"\"" + eol + eol + "+2.5e3" + eol;
    FieldReader r(text, "old.dat");
    for (double want : {0.5, -0.5, 1e20, 1.5e-5, -1.0}) EXPECT_EQ(r.ReadDouble("n"), want);
    EXPECT_TRUE(r.ReadBool("e2") == false);  // #FALSE#
    EXPECT_EQ(r.ReadDouble("g"), 0);
    EXPECT_EQ(r.ReadDouble("empty"), 0);
    EXPECT_EQ(r.ReadString("empty at end"), "");
    EXPECT_EQ(r.ReadString("quoted"), "x, y");
    EXPECT_EQ(r.Line(), 2);
    EXPECT_EQ(r.Field(), 1);
    EXPECT_EQ(r.ReadInt("int"), 7);
    EXPECT_EQ(r.ReadString("empty quoted"), "");
    EXPECT_EQ(r.ReadDouble("after a blank line"), 2500);
    EXPECT_EQ(r.Line(), 4);
    EXPECT_TRUE(r.AtEnd());
  }
  double v = 1;
  EXPECT_TRUE(ParseNumber("  -1.25E+2 ", v));
  EXPECT_EQ(v, -125);
  for (const char* bad :
       {"abc", "1.2.3", "0x10", "inf", "nan", "1E", "1E+", "--1", "1e999", "12abc"})
    EXPECT_FALSE(ParseNumber(bad, v)) << bad;
}

TEST(Codec, ShiftJisFileReadsAsUtf8) {
  const ScratchDir dir("codec_sjis");
  // "Distillation Data", then a memo "メタノール水系" in CP932 bytes, then a number.
  std::string bytes =
      "\"Distillation Data\"\r\n\""
      "\x83\x81\x83\x5E\x83\x6D\x81\x5B\x83\x8B\x90\x85\x8C\x6E"
      "\"\r\n1.5\r\n";
  WriteBytes(dir / "case.dat", bytes);
  FieldReader r = FieldReader::FromFile(dir / "case.dat");
  EXPECT_EQ(r.ReadString("head"), "Distillation Data");
  EXPECT_EQ(r.ReadString("memo"), "メタノール水系");
  EXPECT_EQ(r.ReadDouble("n"), 1.5);
  // The same text in UTF-8, with a byte-order mark, reads the same.
  WriteBytes(dir / "utf8.dat", "\xEF\xBB\xBF\"メタノール水系\"\n");
  FieldReader u = FieldReader::FromFile(dir / "utf8.dat");
  EXPECT_EQ(u.ReadString("memo"), "メタノール水系");
}

TEST(Codec, ErrorsNameFileLineAndField) {
  struct Case {
    const char* text;
    int skip;  // fields read before the failing one
    std::function<void(FieldReader&)> read;
    int line, field;
    std::string part;
  };
  const Case cases[] = {
      {"1,2\r\n3\r\n", 3, [](FieldReader& r) { r.ReadDouble("feed count"); }, 3, 1, "feed count"},
      {"1,2\r\n3,1.2x5\r\n", 3, [](FieldReader& r) { r.ReadDouble("reflux ratio"); }, 2, 2,
       "1.2x5"},
      {"\"head\"\n21\n", 1, [](FieldReader& r) { r.ReadCount("number of components", 1, 20); }, 2,
       1, "number of components"},
      {"2.5\n", 0, [](FieldReader& r) { r.ReadInt("tray count"); }, 1, 1, "not a whole number"},
      {"\"open string\n", 0, [](FieldReader& r) { r.ReadString("memo"); }, 1, 1, "unterminated"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    FieldReader r(c.text, "bad.dat");
    for (int i = 0; i < c.skip; ++i) r.ReadString("skip");
    try {
      c.read(r);
      ADD_FAILURE() << "no error";
    } catch (const FileReadError& e) {
      EXPECT_EQ(e.file, "bad.dat");
      EXPECT_EQ(e.line, c.line);
      EXPECT_EQ(e.field, c.field);
      const std::string what = e.what();
      for (const std::string& part :
           {std::string("bad.dat"), "line " + std::to_string(c.line), c.part})
        EXPECT_NE(what.find(part), std::string::npos) << what;
    }
  }
}

TEST(Codec, SaveFileAtomicallyReplacesAndLeavesNoTemporaryFile) {
  const ScratchDir dir("codec_save");
  const fs::path target = dir / "case.dat";
  SaveFileAtomically(target, "old\r\n");
  SaveFileAtomically(target, "new\r\n");
  EXPECT_EQ(ReadBytes(target), "new\r\n");
  std::vector<fs::path> files;
  for (auto& e : fs::directory_iterator(dir.path())) files.push_back(e.path().filename());
  EXPECT_EQ(files, std::vector<fs::path>{"case.dat"});
  // A folder that does not exist: an error, nothing left behind.
  EXPECT_THROW(SaveFileAtomically(dir.path() / "missing" / "x.dat", "x"), FileWriteError);
  AppendToFile(target, "more\r\n");
  EXPECT_EQ(ReadBytes(target), "new\r\nmore\r\n");
}

}  // namespace
}  // namespace tervale::io
