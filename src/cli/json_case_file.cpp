#include "cli/json_case_file.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "io/record_writer.h"
#include "state/errors.h"

namespace tervale::cli {

Json LoadJsonCase(const std::string& path) {
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec))
    throw InputRefused("Cannot read the case file " + path + ": it is a folder");
  std::ifstream f(path, std::ios::binary);
  if (!f) throw InputRefused("Cannot open the case file " + path);
  std::stringstream text;
  text << f.rdbuf();
  try {
    Json j = Json::parse(text.str());
    if (!j.is_object())
      throw InputRefused("The case file " + path + " does not hold a JSON object");
    return j;
  } catch (const Json::exception& e) {
    // A number beyond the doubles (1E+400) is not a parse error but still bad JSON. The parser's
    // text can quote megabytes of the file: its start is enough.
    throw InputRefused("The case file " + path +
                       " is not valid JSON: " + std::string(e.what()).substr(0, 300));
  }
}

int WriteExampleText(CliContext& ctx, const std::filesystem::path& output,
                     const std::string& text) {
  try {
    io::SaveFileAtomically(output, text);
  } catch (const FileWriteError& e) {
    return Refuse(ctx, e.what());
  }
  if (ctx.json) PrintJson(ctx, Json{{"file", output.string()}});
  std::cerr << "Wrote " << output.string() << '\n';
  return 0;
}

void CheckCaseKeys(const Json& object, std::initializer_list<const char*> allowed,
                   const std::string& where) {
  if (!object.is_object()) throw InputRefused(where + " must be a JSON object");
  for (const auto& item : object.items()) {
    bool known = false;
    for (const char* k : allowed) known = known || item.key() == k;
    if (!known) {
      std::string list;
      for (const char* k : allowed) list += (list.empty() ? "" : ", ") + std::string(k);
      throw InputRefused(where + ": unknown key \"" + item.key() + "\" (known keys: " + list + ")");
    }
  }
}

void CheckCaseProgram(const Json& object, const std::string& program, const std::string& file) {
  std::string found = CaseString(object, "program", file);
  if (found != program)
    throw InputRefused(file + ": not a case of the " + program + " program (\"program\" is \"" +
                       found + "\", expected \"" + program + "\")");
}

double CaseNumber(const Json& object, const std::string& key, double fallback,
                  const std::string& where) {
  auto v = CaseOptionalNumber(object, key, where);
  return v ? *v : fallback;
}

std::optional<double> CaseOptionalNumber(const Json& object, const std::string& key,
                                         const std::string& where) {
  if (!object.is_object() || !object.contains(key) || object.at(key).is_null()) return std::nullopt;
  const Json& v = object.at(key);
  if (!v.is_number())
    throw InputRefused(where + ": \"" + key + "\" must be a number, not " + v.dump());
  return v.get<double>();
}

std::string CaseString(const Json& object, const std::string& key, const std::string& where) {
  if (!object.is_object() || !object.contains(key) || object.at(key).is_null()) return "";
  const Json& v = object.at(key);
  if (!v.is_string())
    throw InputRefused(where + ": \"" + key + "\" must be a string, not " + v.dump());
  return v.get<std::string>();
}

std::string CaseText(const Json& value, const std::string& where) {
  if (value.is_null()) return "";
  if (value.is_string()) return value.get<std::string>();
  if (value.is_number()) return io::FormatShortest(value.get<double>());
  throw InputRefused(where + " must be a number, a text or null, not " + value.dump());
}

}  // namespace tervale::cli
