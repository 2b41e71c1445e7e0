#pragma once
#include <filesystem>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "io/report_table.h"
#include "state/dialogs.h"
#include "state/shared_state.h"

namespace tervale::cli {

using Json = nlohmann::ordered_json;

// Collects what a run shows: messages go to stderr as they come and into the JSON's
// "messages"; questions take their default answer unless a command prepared one.
class CliDialogs : public RecordingDialogs {
 public:
  void Message(std::string_view text) override;
  Answer Ask(std::string_view text, Buttons buttons) override;
};

// Global options and the state of one command-line run.
struct CliContext {
  std::unique_ptr<SharedCalcState> state = MakeSharedCalcState();
  CliDialogs dialogs;
  bool json = false;
  bool csv = false;
  std::string lang = "en";
  std::filesystem::path dataDir = ".";
  // Set by the chosen subcommand; main runs it after parsing.
  std::function<int()> action;

  SharedCalcState& s() { return *state; }
  // Applies the global options to the state (language, data folder, dialogs).
  void Prepare();
  // The messages shown so far, for the JSON "messages" key.
  Json Messages() const;
};

// A number for JSON: finite values as numbers, NaN and infinities as null with a message.
Json JsonNumber(CliContext& ctx, double value, std::string_view what);
// Component arrays 1..n as 0-based JSON arrays.
Json JsonComponents(CliContext& ctx, const CompArray& values, int n, std::string_view what);

// Prints one JSON object (with "messages" added when missing) to stdout.
void PrintJson(CliContext& ctx, Json object);

// Ends a refused command: the message on stderr and, with --json, one object on stdout
// holding it in "messages". Returns the exit status to use.
int Refuse(CliContext& ctx, const std::string& message, Json object = Json::object());

// Prints a report table as aligned text, JSON {"view","columns","rows","messages"} or CSV.
void PrintTable(CliContext& ctx, const io::ReportTable& table);

// Parses a number given to an option; a bad value is refused naming the option.
bool ParseOptionNumber(CliContext& ctx, const std::string& option, const std::string& text,
                       double& value);

}  // namespace tervale::cli
