#pragma once
#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

#include "cli/cli_context.h"

namespace tervale::cli {

// Each command file registers its subcommands with a static CommandRegistrar, so that adding a
// program to the command line touches only its own file.
using CommandSetup = std::function<void(CLI::App& app, CliContext& ctx)>;

struct CommandEntry {
  int order;  // position in --help
  CommandSetup setup;
};

std::vector<CommandEntry>& CommandRegistry();

struct CommandRegistrar {
  CommandRegistrar(int order, CommandSetup setup) {
    CommandRegistry().push_back({order, std::move(setup)});
  }
};

}  // namespace tervale::cli
