#pragma once
// Runs one command of tervale-cli in the fuzzing process on the input as its case file, as the
// program's main does (stdout and stderr are closed by -close_fd_mask=3).
#include <algorithm>
#include <vector>

#include "cli/cli_context.h"
#include "cli/command_registry.h"
#include "fuzz_common.h"
#include "state/errors.h"

namespace tervale::cli {
std::vector<CommandEntry>& CommandRegistry() {
  static std::vector<CommandEntry> registry;
  return registry;
}
}  // namespace tervale::cli

namespace tervale::fuzz {

// args: the words after the program's name; "@" stands for the input file.
inline int RunCaseCommand(const uint8_t* data, size_t size, std::vector<std::string> args) {
  using namespace tervale::cli;
  const auto path = WriteInput(data, size, ".json");
  for (auto& a : args)
    if (a == "@") a = path.string();
  CliContext ctx;
  CLI::App app{"fuzz", "tervale-cli"};
  app.require_subcommand(0, 1);
  app.fallthrough();
  app.add_option("--data-dir", ctx.dataDir);
  app.add_option("--lang", ctx.lang);
  app.add_flag("--json", ctx.json);
  app.add_flag("--csv", ctx.csv);
  auto& registry = CommandRegistry();
  std::stable_sort(registry.begin(), registry.end(),
                   [](const CommandEntry& a, const CommandEntry& b) { return a.order < b.order; });
  for (auto& entry : registry) entry.setup(app, ctx);
  std::vector<const char*> argv{"tervale-cli"};
  for (auto& a : args) argv.push_back(a.c_str());
  try {
    app.parse(static_cast<int>(argv.size()), argv.data());
  } catch (const CLI::ParseError&) {
    __builtin_trap();  // the command line itself is fixed: it must parse
  }
  if (!ctx.action) __builtin_trap();
  ctx.Prepare();
  try {
    ctx.action();
  } catch (const TervaleError&) {
  }
  return 0;
}

}  // namespace tervale::fuzz
