// A save killed at a random instant leaves the target with its old content or its new content,
// byte for byte: never a mixture, never empty. 50 trials per file kind here; `make crash-test`
// runs 1000 (TERVALE_CRASH_TRIALS).
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <sstream>

#include "hardening/case_kinds.h"
#include "io/record_writer.h"

namespace tervale::hardening {
namespace {

int Trials() {
  const char* env = std::getenv("TERVALE_CRASH_TRIALS");
  return env ? std::max(1, std::atoi(env)) : 50;
}

using Clock = std::chrono::steady_clock;

// Starts `save` in a child over and over (or once, for a program run), kills it with SIGKILL
// after a random delay within [0, window], and checks the target each time.
void KillAndCheck(const std::string& what, const fs::path& target, const std::string& oldText,
                  const std::string& newText, std::chrono::microseconds window,
                  const std::function<void()>& childBody) {
  ASSERT_NE(oldText, newText) << what << ": the two contents must differ";
  std::mt19937 rng(12345);
  int sawOld = 0, sawNew = 0;
  const int trials = Trials();
  for (int trial = 0; trial < trials; ++trial) {
    WriteBytes(target, oldText);
    const pid_t pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
      childBody();
      ::_exit(0);
    }
    const auto delay = std::uniform_int_distribution<long>(0, window.count())(rng);
    ::usleep(static_cast<useconds_t>(delay));
    ::kill(pid, SIGKILL);
    int status = 0;
    ::waitpid(pid, &status, 0);
    const std::string now = ReadBytes(target);
    if (now == oldText) {
      ++sawOld;
    } else if (now == newText) {
      ++sawNew;
    } else {
      ADD_FAILURE() << what << ": trial " << trial << " after " << delay << " us left a mixture of "
                    << now.size() << " bytes (old " << oldText.size() << ", new " << newText.size()
                    << ")";
      return;
    }
  }
  ::testing::Test::RecordProperty(what + "_old", sawOld);
  ::testing::Test::RecordProperty(what + "_new", sawNew);
  std::cerr << what << ": " << trials << " trials, " << sawOld << " old, " << sawNew << " new\n";
}

std::chrono::microseconds TimeOf(const std::function<void()>& f) {
  const auto t0 = Clock::now();
  f();
  return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - t0);
}

TEST(CrashSafeSave, RecordFilesAreOldOrNewAfterSigkill) {
  ScratchDir dir("crash_record");
  // The codec's own atomic save, with a content large enough for the kill to land mid-write.
  {
    const fs::path target = dir.path() / "codec.dat";
    const std::string oldText(1 << 20, 'o'), newText(3 << 19, 'n');
    const auto once = TimeOf([&] { io::SaveFileAtomically(target, newText); });
    KillAndCheck("codec", target, oldText, newText, once * 3, [&] {
      for (;;) io::SaveFileAtomically(target, newText);
    });
  }
  for (const auto& kind : CoreCaseKinds()) {
    if (!kind.write) continue;  // read only (UNIFAC.PAR)
    SCOPED_TRACE(kind.name);
    const fs::path target = dir.path() / (kind.name + ".dat");
    auto oldState = MakeSharedCalcState();
    auto newState = MakeSharedCalcState();
    kind.loadExample(*oldState, 1);
    kind.loadExample(*newState, 2);
    kind.write(*oldState, target);
    const std::string oldText = ReadBytes(target);
    kind.write(*newState, target);
    std::string newText = ReadBytes(target);
    if (newText == oldText) {
      // One example only: the new content is the old one with its memo changed.
      newState->MemoLine[1] = "changed after the crash test started";
      kind.write(*newState, target);
      newText = ReadBytes(target);
    }
    const auto once = TimeOf([&] { kind.write(*newState, target); });
    KillAndCheck(kind.name, target, oldText, newText, std::max(once * 3, decltype(once)(2000)),
                 [&] {
                   for (;;) kind.write(*newState, target);
                 });
  }
}

TEST(CrashSafeSave, CommandLineExamplesAreOldOrNewAfterSigkill) {
  if (!fs::exists(CliPath())) GTEST_SKIP() << "tervale-cli is not built";
  for (const auto& kind : CliCaseKinds()) {
    SCOPED_TRACE(kind.name);
    ScratchDir dir("crash_cli_" + kind.name);
    const fs::path target = dir.path() / (kind.name + ".json");
    const std::string oldText = "{\"program\": \"an older case of this name\"}\n";
    WriteBytes(target, oldText);
    const std::string args = kind.exampleArgs + " -o " + target.string();
    std::chrono::microseconds once{};
    {
      const auto t0 = Clock::now();
      ASSERT_EQ(RunCli(args, dir.path()).status, 0);
      once = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - t0);
    }
    const std::string newText = ReadBytes(target);
    const std::string cli = CliPath().string();
    std::vector<std::string> argv{cli};
    std::istringstream words(args);
    for (std::string w; words >> w;) argv.push_back(w);
    KillAndCheck(kind.name, target, oldText, newText, once + once / 2, [&] {
      std::vector<char*> p;
      for (auto& a : argv) p.push_back(a.data());
      p.push_back(nullptr);
      std::freopen("/dev/null", "w", stderr);
      ::execv(cli.c_str(), p.data());
      ::_exit(127);
    });
  }
}

}  // namespace
}  // namespace tervale::hardening
