#pragma once
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "cli/cli_context.h"

namespace tervale::cli {

// Reads a JSON case file; an unreadable file or bad JSON is refused (InputRefused) naming it.
Json LoadJsonCase(const std::string& path);

// Writes text to a file (or stdout for an empty path) for the example commands.
int WriteExampleText(CliContext& ctx, const std::string& output, const std::string& text);

// Field access with messages naming the key. A missing key or null gives the fallback.
double CaseNumber(const Json& object, const std::string& key, double fallback,
                  const std::string& where);
std::optional<double> CaseOptionalNumber(const Json& object, const std::string& key,
                                         const std::string& where);
std::string CaseString(const Json& object, const std::string& key, const std::string& where);
// A box's text: a string as it stands, a number in its shortest form, null or absent as blank.
std::string CaseText(const Json& value, const std::string& where);

// The "example" command shared by the programs: created by the first program that needs it.
CLI::App* ExampleCommand(CLI::App& app);

}  // namespace tervale::cli
