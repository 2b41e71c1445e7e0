#pragma once
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>

#include "cli/cli_context.h"

namespace tervale::cli {

// Reads a JSON case file; an unreadable file or bad JSON is refused (InputRefused) naming it.
Json LoadJsonCase(const std::string& path);

// Writes an example case file; refused when the file cannot be written.
int WriteExampleText(CliContext& ctx, const std::filesystem::path& output, const std::string& text);

// Refuses keys of `object` not in `allowed` (a misspelt key is never ignored) and a "program"
// other than `program`.
void CheckCaseKeys(const Json& object, std::initializer_list<const char*> allowed,
                   const std::string& where);
void CheckCaseProgram(const Json& object, const std::string& program, const std::string& file);

// Field access with messages naming the key. A missing key or null gives the fallback.
double CaseNumber(const Json& object, const std::string& key, double fallback,
                  const std::string& where);
std::optional<double> CaseOptionalNumber(const Json& object, const std::string& key,
                                         const std::string& where);
std::string CaseString(const Json& object, const std::string& key, const std::string& where);
// A box's text: a string as it stands, a number in its shortest form, null or absent as blank.
std::string CaseText(const Json& value, const std::string& where);

}  // namespace tervale::cli
