#pragma once
// Built-in examples on the command line: `tervale-cli example KIND [NUMBER] -o FILE`.
// Each program adds its kind from its own file with a static ExampleRegistrar, e.g.
//
//   ExampleRegistrar flashExamples({"flash", "Flash calculation examples 1 and 2", {1, 2}, 1,
//       [](CliContext& ctx, int number, const std::filesystem::path& out) { ...; return 0; }});
//
// The `example` subcommand checks the kind and the number before calling the writer.
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "cli/cli_context.h"

namespace tervale::cli {

struct ExampleKind {
  std::string name;          // the KIND word, e.g. "flash"
  std::string description;   // one line for --help
  std::vector<int> numbers;  // the example numbers that exist, e.g. {1, 2}
  int defaultNumber = 1;     // taken when NUMBER is omitted
  // Writes example `number` as a case file to `out`; returns the exit status (0 written).
  std::function<int(CliContext& ctx, int number, const std::filesystem::path& out)> write;
};

// All kinds registered so far (filled during static initialisation).
std::vector<ExampleKind>& ExampleRegistry();

struct ExampleRegistrar {
  explicit ExampleRegistrar(ExampleKind kind) { ExampleRegistry().push_back(std::move(kind)); }
};

}  // namespace tervale::cli
