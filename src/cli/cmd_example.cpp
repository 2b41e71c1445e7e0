// `tervale-cli example KIND [NUMBER] -o FILE`: writes a built-in example as a case file. The
// kinds come from the programs' own command files through ExampleRegistrar.
#include <algorithm>
#include <iostream>

#include "cli/command_registry.h"
#include "cli/example_registry.h"
#include "io/field_reader.h"

namespace tervale::cli {

std::vector<ExampleKind>& ExampleRegistry() {
  static std::vector<ExampleKind> registry;
  return registry;
}

namespace {

std::string KindList() {
  std::string list;
  for (const auto& k : ExampleRegistry()) list += (list.empty() ? "" : ", ") + k.name;
  return list.empty() ? "(none)" : list;
}

CommandRegistrar reg(90, [](CLI::App& app, CliContext& ctx) {
  auto& kinds = ExampleRegistry();
  std::stable_sort(kinds.begin(), kinds.end(),
                   [](const ExampleKind& a, const ExampleKind& b) { return a.name < b.name; });
  size_t width = 0;
  for (const auto& k : kinds) width = std::max(width, k.name.size());
  std::string footer = "Kinds:";
  for (const auto& k : kinds)
    footer += "\n  " + k.name + std::string(width - k.name.size() + 2, ' ') + k.description;
  auto* cmd = app.add_subcommand("example", "Write a built-in example as a case file");
  cmd->footer(footer);
  static std::string kind, number, out;
  cmd->add_option("kind", kind, "Kind of example: " + KindList())->required();
  cmd->add_option("number", number, "Number of the example (default: the first)");
  cmd->add_option("-o,--output", out, "File to write")->required();
  cmd->callback([&ctx] {
    ctx.action = [&ctx]() -> int {
      const auto& registry = ExampleRegistry();
      auto it = std::find_if(registry.begin(), registry.end(),
                             [](const ExampleKind& k) { return k.name == kind; });
      if (it == registry.end())
        return Refuse(ctx, "Unknown example kind \"" + kind + "\"; known kinds: " + KindList());
      int n = it->defaultNumber;
      if (!number.empty()) {
        double value = 0;
        if (!io::ParseNumber(number, value) || value != static_cast<int>(value))
          return Refuse(ctx, "Example number: not a whole number: \"" + number + "\"");
        n = static_cast<int>(value);
      }
      if (std::find(it->numbers.begin(), it->numbers.end(), n) == it->numbers.end()) {
        std::string list;
        for (int k : it->numbers) list += (list.empty() ? "" : ", ") + std::to_string(k);
        return Refuse(ctx, "There is no " + kind + " example " + std::to_string(n) +
                               " (examples: " + list + ")");
      }
      return it->write(ctx, n, out);
    };
  });
});

}  // namespace
}  // namespace tervale::cli
