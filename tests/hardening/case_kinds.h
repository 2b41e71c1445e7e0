#pragma once
// The case files the suite reads and writes, as one table the hardening tests walk through.
// A program joins by adding its entry in case_kinds.cpp (a reader, a writer and an example).
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "common/scratch.h"
#include "state/shared_state.h"

namespace tervale::hardening {

namespace fs = std::filesystem;

// A record file read and written by the core.
struct CaseKind {
  std::string name;
  // Puts built-in example `number` (1 or 2; 2 may give the same case as 1) into the state.
  std::function<void(SharedCalcState&, int)> loadExample;
  // Saves the state's case to a file.
  std::function<void(SharedCalcState&, const fs::path&)> write;
  // Reads a file into the state: false or an exception when the file is refused.
  std::function<bool(SharedCalcState&, const fs::path&)> read;
  // Set for a reader that, as the older program did, clears the case before reading: a file
  // broken after its first record leaves the case as this puts it (empty: exactly as it was).
  std::function<void(SharedCalcState&)> clearedOnBrokenFile;
  // For a file the suite reads but never writes (UNIFAC.PAR): its example content, and what
  // of the state it fills, as text (write stays empty).
  std::function<std::string()> exampleBytes;
  std::function<std::string(const SharedCalcState&)> fingerprint;
  // The tervale-cli command that runs a case file of this kind ("vle"), if any.
  std::string cliCommand;
};

std::vector<CaseKind> CoreCaseKinds();

// The kind's file for example `number`, and the state as text (its file, or its fingerprint).
std::string ExampleBytes(const CaseKind& kind, int number, const fs::path& scratch);
std::string Fingerprint(const CaseKind& kind, SharedCalcState& s, const fs::path& scratch);

// A case file read by a command of tervale-cli (the JSON case files).
struct CliCaseKind {
  std::string name;
  std::string exampleArgs;  // "example purecomp": writes the case with -o FILE
  std::string runArgs;      // "purecomp": runs a case file given after it
};

std::vector<CliCaseKind> CliCaseKinds();

// The shared whole-file helpers and scratch folder.
using testcli::ReadBytes;
using testcli::ScratchDir;
using testcli::WriteBytes;

// Runs tervale-cli with arguments (stderr to a file); the exit status or -1 for a signal.
struct CliRun {
  int status = -1;
  int signal = 0;
  std::string out;
  std::string err;
};
fs::path CliPath();
CliRun RunCli(const std::string& args, const fs::path& scratch);

}  // namespace tervale::hardening
