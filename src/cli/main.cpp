// tervale-cli: every program of the suite without a screen.
#include <algorithm>
#include <iostream>

#include "cli/cli_context.h"
#include "cli/command_registry.h"
#include "state/errors.h"

namespace tervale::cli {

std::vector<CommandEntry>& CommandRegistry() {
  static std::vector<CommandEntry> registry;
  return registry;
}

}  // namespace tervale::cli

int main(int argc, char** argv) {
  using namespace tervale;
  using namespace tervale::cli;

  CliContext ctx;
  CLI::App app{"Tervale: vapour-liquid equilibrium and distillation calculations", "tervale-cli"};
  app.set_version_flag("--version", std::string(kVersionText));
  app.require_subcommand(0, 1);
  app.fallthrough();
  app.add_option("--data-dir", ctx.dataDir, "Data folder for run files (default: current folder)");
  app.add_option("--lang", ctx.lang, "Language of messages: en or ja")
      ->check(CLI::IsMember({"en", "ja"}));
  app.add_flag("--json", ctx.json, "Print one JSON object instead of a table");
  app.add_flag("--csv", ctx.csv, "Print tables as CSV");

  auto& registry = CommandRegistry();
  std::stable_sort(registry.begin(), registry.end(),
                   [](const CommandEntry& a, const CommandEntry& b) { return a.order < b.order; });
  for (auto& entry : registry) entry.setup(app, ctx);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e);
  }
  if (!ctx.action) {
    std::cout << app.help();
    return 0;
  }
  ctx.Prepare();
  try {
    return ctx.action();
  } catch (const FileReadError& e) {
    return Refuse(ctx, e.what());
  } catch (const TervaleError& e) {
    return Refuse(ctx, e.what());
  }
}
