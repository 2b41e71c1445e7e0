// Files a user could really meet, given to every reader: each is refused with a clear message
// naming the file (and the line and field where it applies), or read as a case; nothing
// crashes, and a refused file leaves the state in memory and every file on disk as they were.
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <fcntl.h>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <typeinfo>

using namespace std::string_literals;

#include "hardening/case_kinds.h"
#include "io/field_reader.h"
#include "state/errors.h"

namespace tervale::hardening {
namespace {

struct Variant {
  std::string name;
  std::string bytes;
  bool mustRefuse = false;
  bool directory = false;   // a folder stands where the file should be
  bool unreadable = false;  // mode 000 (skipped when running as root)
  bool locked = false;      // another open description holds an exclusive lock
};

constexpr size_t kTenMegabytes = 10u << 20;

std::string Garbage(size_t n, unsigned seed) {
  std::mt19937 rng(seed);
  std::string out(n, '\0');
  for (auto& c : out) c = static_cast<char>(rng() & 0xFF);
  return out;
}

// Where the fields of a record file stand (quoted strings keep their commas).
struct Span {
  size_t start, length;
  bool quoted;
};
std::vector<Span> FieldSpans(const std::string& t) {
  std::vector<Span> spans;
  size_t i = 0;
  while (i < t.size()) {
    if (t[i] == '\r' || t[i] == '\n') {
      ++i;
      continue;
    }
    const size_t start = i;
    bool quoted = false;
    if (t[i] == '"') {
      quoted = true;
      const size_t end = t.find('"', i + 1);
      i = end == std::string::npos ? t.size() : end + 1;
    }
    while (i < t.size() && t[i] != ',' && t[i] != '\r' && t[i] != '\n') ++i;
    spans.push_back({start, i - start, quoted});
    if (i < t.size() && t[i] == ',') ++i;
  }
  return spans;
}

bool LooksWhole(const std::string& f) {
  if (f.empty()) return false;
  for (size_t k = (f[0] == '-'); k < f.size(); ++k)
    if (!std::isdigit(static_cast<unsigned char>(f[k]))) return false;
  return true;
}

// The counts that sit just above each limit of the suite, and the usual out-of-range ones.
const std::vector<std::string> kCountValues = {"0", "-1", "1000000000", "2147483648", "21", "201",
                                               "6", "11", "51",         "-2147483649"};
const std::vector<std::string> kNumberValues = {"1E+400",    "NaN", "Infinity",
                                                "-Infinity", "abc", "1.2.3"};

std::vector<Variant> RecordVariants(const std::string& example) {
  std::vector<Variant> v;
  const std::string firstLine = example.substr(0, example.find_first_of("\r\n"));
  v.push_back({"empty", "", true});
  v.push_back({"one byte", example.substr(0, 1), true});
  v.push_back({"only the magic string", firstLine, true});
  v.push_back({"the magic string and a line break", firstLine + "\r\n", true});
  v.push_back({"binary garbage", Garbage(4096, 7), true});
  v.push_back({"binary garbage after the magic string", firstLine + "\r\n" + Garbage(4096, 8)});
  v.push_back({"cut in half", example.substr(0, example.size() / 2)});
  v.push_back({"cut one byte short", example.substr(0, example.size() - 1)});
  {
    std::string t = example;
    for (size_t k = 5; k < t.size(); k += 7) t[k] = '\0';
    v.push_back({"NUL bytes", t});
    v.push_back({"all NUL", std::string(example.size(), '\0'), true});
  }
  v.push_back({"a 10 MB line", firstLine + "\r\n" + std::string(kTenMegabytes, 'x') + "\r\n" +
                                   example.substr(std::min(example.size(), firstLine.size() + 2))});
  {
    // The second field as a 10 MB number.
    auto spans = FieldSpans(example);
    if (spans.size() > 1) {
      std::string t = example;
      t.replace(spans[1].start, spans[1].length, std::string(kTenMegabytes, '9'));
      v.push_back({"a 10 MB number", t});
    }
  }
  v.push_back({"a directory", "", true, true});
  v.push_back({"no read permission", example, true, false, true});
  v.push_back({"locked by another process", example, false, false, false, true});

  // Field by field: counts beyond every limit and numbers no reader may take.
  auto spans = FieldSpans(example);
  const size_t step = spans.size() > 150 ? spans.size() / 150 + 1 : 1;
  for (size_t i = 1; i < spans.size(); i += step) {
    if (spans[i].quoted) continue;
    std::string field = example.substr(spans[i].start, spans[i].length);
    while (!field.empty() && field.back() == ' ') field.pop_back();
    double d;
    if (!io::ParseNumber(field, d) || field.empty()) continue;
    const auto& values = LooksWhole(field) ? kCountValues : kNumberValues;
    for (const auto& value : values) {
      std::string t = example;
      t.replace(spans[i].start, spans[i].length, value);
      v.push_back({"field " + std::to_string(i + 1) + " as " + value, t});
    }
    if (LooksWhole(field))
      for (const auto& value : kNumberValues) {
        std::string t = example;
        t.replace(spans[i].start, spans[i].length, value);
        v.push_back({"field " + std::to_string(i + 1) + " as " + value, t});
      }
  }
  return v;
}

bool RunningAsRoot() {
  return ::geteuid() == 0;
}

// Names, sizes and contents of the files of a folder.
std::map<std::string, std::string> Snapshot(const fs::path& dir) {
  std::map<std::string, std::string> files;
  for (const auto& e : fs::directory_iterator(dir))
    files[e.path().filename().string()] =
        e.is_regular_file() ? ReadBytes(e.path()) : std::string("<folder>");
  return files;
}

// The variant in place of the file for one read: the lock it holds and the read permission it
// takes away are given back when it goes. `applies` is false when it cannot apply here.
struct Placed {
  Placed(const Variant& v, const fs::path& file) : file(file), unreadable(v.unreadable) {
    fs::remove_all(file);
    if (v.directory) {
      fs::create_directory(file);
      return;
    }
    if (v.unreadable && RunningAsRoot()) {
      applies = unreadable = false;
      return;
    }
    WriteBytes(file, v.bytes);
    if (v.unreadable) fs::permissions(file, fs::perms::none);
    if (v.locked) {
      lockFd = ::open(file.c_str(), O_RDONLY);
      EXPECT_EQ(::flock(lockFd, LOCK_EX), 0);
    }
  }
  ~Placed() {
    if (lockFd >= 0) ::close(lockFd);
    if (unreadable) fs::permissions(file, fs::perms::owner_all);
  }
  fs::path file;
  bool unreadable;
  bool applies = true;
  int lockFd = -1;
};

TEST(HostileFiles, CoreReadersRefuseCleanlyAndKeepStateAndFiles) {
  const auto kinds = CoreCaseKinds();
  if (kinds.empty()) GTEST_SKIP() << "no record-file reader in this build";
  for (const auto& kind : kinds) {
    SCOPED_TRACE(kind.name);
    ScratchDir dir("hostile_" + kind.name);
    const fs::path saved = dir.path() / "saved";
    fs::create_directory(saved);
    // The example's own file, and the state as it stands before each read (example 2).
    const std::string example = ExampleBytes(kind, 1, saved);
    auto loaded = MakeSharedCalcState();
    loaded->LanguageFlag = 1;
    kind.loadExample(*loaded, 2);
    const std::string pristine = Fingerprint(kind, *loaded, saved);
    std::string cleared;
    if (kind.clearedOnBrokenFile) {
      auto t = MakeSharedCalcState();
      *t = *loaded;
      kind.clearedOnBrokenFile(*t);
      cleared = Fingerprint(kind, *t, saved);
    }
    ASSERT_FALSE(example.empty());
    const fs::path work = dir.path() / "work";
    fs::create_directory(work);
    WriteBytes(work / "neighbour.dat", example);
    const fs::path file = work / ("hostile_" + kind.name + ".dat");
    int refused = 0, read = 0;
    for (const auto& v : RecordVariants(example)) {
      SCOPED_TRACE(v.name);
      const Placed placed(v, file);
      if (!placed.applies) continue;
      const auto before = Snapshot(work);
      auto s = MakeSharedCalcState();
      *s = *loaded;
      RecordingDialogs dialogs;
      s->Dialogs = &dialogs;
      bool accepted = false, fileError = false;
      std::string message;
      try {
        accepted = kind.read(*s, file);
        if (!accepted && !dialogs.messages.empty()) message = dialogs.messages.back();
      } catch (const FileReadError& e) {
        message = e.what();
        fileError = true;
      } catch (const TervaleError& e) {
        message = e.what();
      } catch (const std::exception& e) {
        ADD_FAILURE() << "unexpected " << typeid(e).name() << ": " << e.what();
        continue;
      }
      EXPECT_TRUE(before == Snapshot(work)) << "a file on disk changed";
      if (accepted) {
        ++read;
        EXPECT_FALSE(v.mustRefuse) << "read as a case";
        continue;
      }
      ++refused;
      EXPECT_FALSE(message.empty()) << "refused without a message";
      if (fileError)
        EXPECT_NE(message.find(file.filename().string()), std::string::npos) << message;
      EXPECT_LT(message.size(), 2000u) << "the message carries the file's content";
      const std::string after = Fingerprint(kind, *s, saved);
      if (fileError && kind.clearedOnBrokenFile)
        EXPECT_TRUE(after == pristine || after == cleared) << "the state changed: " << message;
      else
        EXPECT_TRUE(after == pristine) << "the state changed: " << message;
    }
    EXPECT_GT(refused, 10);
    EXPECT_GT(read, 0);  // at least the lock does not stop a reader
  }
}

// ---- JSON case files read by the command line ----

std::vector<Variant> JsonVariants(const std::string& example) {
  using Json = nlohmann::ordered_json;
  std::vector<Variant> v;
  const Json c = Json::parse(example);
  Json magic = Json::object();
  if (c.contains("program")) magic["program"] = c["program"];
  v.push_back({"empty", "", true});
  v.push_back({"one byte", "{", true});
  v.push_back({"only the magic string", magic.dump(), true});
  v.push_back({"an array", "[]", true});
  v.push_back({"binary garbage", Garbage(4096, 9), true});
  {
    std::string t = example;
    for (size_t k = 5; k < t.size(); k += 11) t[k] = '\0';
    v.push_back({"NUL bytes", t, true});
  }
  v.push_back({"a 10 MB line", example + std::string(kTenMegabytes, ' ') + "x\n", true});
  v.push_back({"cut in half", example.substr(0, example.size() / 2), true});
  v.push_back({"a directory", "", true, true});
  v.push_back({"no read permission", example, true, false, true});
  v.push_back({"locked by another process", example, false, false, false, true});

  // Every leaf of the case replaced in turn (a sample of them when there are many).
  std::vector<Json::json_pointer> numbers, strings;
  std::function<void(const Json&, const Json::json_pointer&)> walk =
      [&](const Json& j, const Json::json_pointer& at) {
        if (j.is_object()) {
          for (auto it = j.begin(); it != j.end(); ++it) walk(it.value(), at / it.key());
        } else if (j.is_array()) {
          for (size_t k = 0; k < j.size(); ++k) walk(j[k], at / k);
        } else if (j.is_number()) {
          numbers.push_back(at);
        } else if (j.is_string() && at.to_string() != "/program") {
          strings.push_back(at);
        }
      };
  walk(c, Json::json_pointer());
  const size_t step = numbers.size() > 12 ? numbers.size() / 12 + 1 : 1;
  for (size_t i = 0; i < numbers.size(); i += step) {
    const auto& at = numbers[i];
    for (const char* value : {"0", "-1", "1000000000", "21", "201", "1E+400", "-1E+400"}) {
      Json t = c;
      t[at] = "@HOSTILE@";
      std::string text = t.dump();
      text.replace(text.find("\"@HOSTILE@\""), 11, value);
      v.push_back({at.to_string() + " = " + value, text});
    }
    for (const char* value : {"NaN", "Infinity"}) {
      Json t = c;
      t[at] = "@HOSTILE@";
      std::string text = t.dump();
      text.replace(text.find("\"@HOSTILE@\""), 11, value);
      v.push_back({at.to_string() + " = " + value, text, true});
    }
    Json t = c;
    t[at] = "abc";
    v.push_back({at.to_string() + " as text", t.dump()});
    t[at] = nullptr;
    v.push_back({at.to_string() + " as null", t.dump()});
  }
  if (!strings.empty()) {
    Json t = c;
    t[strings.front()] = std::string(kTenMegabytes, 'n');
    v.push_back({strings.front().to_string() + " of 10 MB", t.dump()});
    t[strings.front()] = 12;
    v.push_back({strings.front().to_string() + " as a number", t.dump()});
  }
  return v;
}

TEST(HostileFiles, CommandLineCaseFilesRefuseCleanlyAndKeepFiles) {
  if (!fs::exists(CliPath())) GTEST_SKIP() << "tervale-cli is not built";
  for (const auto& kind : CliCaseKinds()) {
    SCOPED_TRACE(kind.name);
    ScratchDir dir("hostile_cli_" + kind.name);
    const fs::path exampleFile = dir.path() / "example.json";
    ASSERT_EQ(RunCli(kind.exampleArgs + " -o " + exampleFile.string(), dir.path()).status, 0);
    const std::string example = ReadBytes(exampleFile);
    const fs::path work = dir.path() / "work";
    fs::create_directory(work);
    WriteBytes(work / "neighbour.json", example);
    const fs::path file = work / ("hostile_" + kind.name + ".json");
    for (const auto& v : JsonVariants(example)) {
      SCOPED_TRACE(v.name);
      const Placed placed(v, file);
      if (!placed.applies) continue;
      const auto before = Snapshot(work);
      const CliRun r = RunCli("--json " + kind.runArgs + " " + file.string(), dir.path());
      EXPECT_EQ(r.signal, 0) << r.err;
      EXPECT_TRUE(r.status == 0 || r.status == 2) << "status " << r.status << ": " << r.err;
      EXPECT_TRUE(before == Snapshot(work)) << "a file on disk changed";
      nlohmann::json out;
      try {
        out = nlohmann::json::parse(r.out);
      } catch (const std::exception& e) {
        ADD_FAILURE() << "stdout is not one JSON object: " << r.out.substr(0, 200);
        continue;
      }
      ASSERT_TRUE(out.contains("messages")) << r.out.substr(0, 200);
      if (r.status == 2) {
        EXPECT_FALSE(r.err.empty());
        // A broken file is refused naming it; a value the calculation refuses has the
        // calculation's own message.
        if (v.mustRefuse && v.name != "only the magic string")
          EXPECT_NE(r.err.find(file.filename().string()), std::string::npos)
              << "the message does not name the file: " << r.err;
        EXPECT_LT(r.err.size(), 4000u) << "the message carries the file's content";
      } else {
        EXPECT_FALSE(v.mustRefuse) << "read as a case";
      }
    }
  }
}

// ---- the record codec on its own ----

TEST(HostileFiles, RecordCodecNamesFileLineAndField) {
  ScratchDir dir("hostile_codec");
  struct Row {
    const char* name;
    std::string text;
    int line;  // line of the failing field; 0 when the file itself is refused
    int field;
  };
  const std::string head = "\"Magic\"\r\n";
  const std::vector<Row> rows = {
      {"empty", "", 1, 1},
      {"only the magic string", head, 2, 1},
      {"count -1", head + "-1\r\n", 2, 1},
      {"count 10^9", head + "1000000000\r\n", 2, 1},
      {"count above the limit", head + "21\r\n", 2, 1},
      {"count as text", head + "three\r\n", 2, 1},
      {"count with a fraction", head + "2.5\r\n", 2, 1},
      {"1E+400", head + "2\r\n1,1E+400\r\n", 3, 2},
      {"NaN", head + "2\r\nNaN,1\r\n", 3, 1},
      {"Infinity", head + "2\r\n1,Infinity\r\n", 3, 2},
      {"-Infinity", head + "2\r\n-Infinity,1\r\n", 3, 1},
      {"text in a number field", head + "2\r\n1,abc\r\n", 3, 2},
      {"NUL in a number field", head + "2\r\n1,2\0\r\n"s, 3, 2},
      {"a 10 MB number", head + "2\r\n1," + std::string(kTenMegabytes, '7') + "\r\n", 3, 2},
      {"a 10 MB word", head + "2\r\n1," + std::string(kTenMegabytes, 'z') + "\r\n", 3, 2},
      {"unterminated string", "\"Magic\r\n2\r\n1,2\r\n", 1, 1},
      {"binary garbage", Garbage(4096, 3), -1, -1},
      {"cut short", head + "2\r\n1", 3, 2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const fs::path file = dir.path() / "codec.dat";
    WriteBytes(file, row.text);
    try {
      auto r = io::FieldReader::FromFile(file);
      if (r.ReadString("magic") != "Magic") r.Fail("not a codec file");
      const int n = r.ReadCount("count", 1, 20);
      for (int k = 1; k <= n; ++k) r.ReadDouble("value");
      ADD_FAILURE() << "read without error";
    } catch (const FileReadError& e) {
      const std::string m = e.what();
      EXPECT_NE(m.find(file.string()), std::string::npos) << m;
      EXPECT_EQ(e.file, file.string());
      if (row.line >= 0) {
        EXPECT_EQ(e.line, row.line) << m;
        EXPECT_EQ(e.field, row.field) << m;
      }
      EXPECT_LT(m.size(), 1000u) << "the message carries the file's content";
    }
  }
  // A folder in place of the file, and a file that cannot be opened.
  for (const fs::path& p : {dir.path(), dir.path() / "missing.dat"}) {
    try {
      io::FieldReader::FromFile(p);
      ADD_FAILURE() << p << " opened";
    } catch (const FileReadError& e) {
      EXPECT_NE(std::string(e.what()).find(p.string()), std::string::npos) << e.what();
    }
  }
  if (!RunningAsRoot()) {
    const fs::path p = dir.path() / "secret.dat";
    WriteBytes(p, head);
    fs::permissions(p, fs::perms::none);
    EXPECT_THROW(io::FieldReader::FromFile(p), FileReadError);
  }
}

}  // namespace
}  // namespace tervale::hardening
