#pragma once
// Runs the tervale-cli binary built beside the tests, the way a user runs it from a shell:
// stdout is captured, stderr (progress and messages) is discarded.
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <string>

namespace tervale::testcli {

struct CliRun {
  int status = -1;  // the exit status; -1 when the program did not exit normally
  std::string out;  // everything printed on stdout
};

inline std::filesystem::path CliPath() {
  return std::filesystem::path(TERVALE_BIN_DIR) / "tervale-cli";
}

// The command-line tests skip themselves when the binary has not been built.
inline bool CliBuilt() {
  return std::filesystem::exists(CliPath());
}

// `args` are appended to the binary's path as shell words (quote paths with spaces yourself).
inline CliRun RunCli(const std::string& args) {
  CliRun r;
  std::string command = "'";  // appended piece by piece: GCC 12 warns falsely on a + chain here
  command.append(CliPath().string()).append("' ").append(args).append(" 2>/dev/null");
  FILE* pipe = ::popen(command.c_str(), "r");
  if (!pipe) return r;
  char buffer[4096];
  size_t n;
  while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) r.out.append(buffer, n);
  const int status = ::pclose(pipe);
  r.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return r;
}

}  // namespace tervale::testcli
