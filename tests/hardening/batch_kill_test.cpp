// A batch run killed at a random step: the run files end at the last complete record, and every
// result view of the batch program reads them without error.
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <random>

#include "hardening/case_kinds.h"

namespace tervale::hardening {
namespace {

TEST(BatchRunKilled, RunFilesStayReadableByEveryView) {
  if (!fs::exists(CliPath())) GTEST_SKIP() << "tervale-cli is not built";
  ScratchDir dir("batch_kill");
  const fs::path caseFile = dir.path() / "case.dat";
  ASSERT_EQ(RunCli("example batch -o " + caseFile.string(), dir.path()).status, 0);
  const char* env = std::getenv("TERVALE_CRASH_TRIALS");
  const int trials = env ? std::max(1, std::atoi(env) / 50) : 4;
  std::mt19937 rng(4242);
  const std::vector<std::string> views = {"--view log",
                                          "--view total-reflux --fraction liq-mol",
                                          "--view total-reflux --source product --fraction vap-wt",
                                          "--view tank",
                                          "--view vl-load --flow vapour",
                                          "--view tray-data --record 1",
                                          "--view top-btm --end bottom",
                                          "--view top-btm --tray 2"};
  for (int trial = 0; trial < trials; ++trial) {
    const fs::path data = dir.path() / ("run" + std::to_string(trial));
    fs::create_directories(data);
    const std::string cli = CliPath().string();
    const pid_t pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
      std::freopen("/dev/null", "w", stdout);
      std::freopen("/dev/null", "w", stderr);
      ::execl(cli.c_str(), cli.c_str(), "--data-dir", data.c_str(), "batch", caseFile.c_str(),
              static_cast<char*>(nullptr));
      ::_exit(127);
    }
    ::usleep(std::uniform_int_distribution<unsigned>(20000, 1500000)(rng));
    ::kill(pid, SIGKILL);
    int status = 0;
    ::waitpid(pid, &status, 0);
    SCOPED_TRACE("trial " + std::to_string(trial));
    for (const auto& view : views) {
      SCOPED_TRACE(view);
      const CliRun r = RunCli(
          "--data-dir " + data.string() + " batch-report --case " + caseFile.string() + " " + view,
          dir.path());
      EXPECT_EQ(r.signal, 0) << r.err;
      EXPECT_TRUE(r.status == 0 || r.status == 2) << r.status << ": " << r.err;
      if (r.status == 2) EXPECT_FALSE(r.err.empty());
      const bool hasLog = fs::exists(data / "B_Calc_Log.dat");
      if (view == "--view log" && hasLog) EXPECT_EQ(r.status, 0) << r.err;
      if (view == "--view total-reflux --fraction liq-mol" && fs::exists(data / "B_Calc_1.dat") &&
          fs::exists(data / "B_Calc_2.dat") && fs::file_size(data / "B_Calc_1.dat") > 0)
        EXPECT_EQ(r.status, 0) << r.err;
    }
  }
}

}  // namespace
}  // namespace tervale::hardening
