#pragma once
#include <stdexcept>
#include <string>

namespace tervale {

// Bad input and broken invariants throw this small hierarchy; soft calculation failures
// (an iteration limit) do not throw, they end with the last values as the programs always did.
class TervaleError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A file that cannot be read, or a record that is missing or malformed. line and field are
// 1-based; 0 where they do not apply.
class FileReadError : public TervaleError {
 public:
  FileReadError(std::string file, int line, int field, const std::string& what)
      : TervaleError(what), file(std::move(file)), line(line), field(field) {}
  std::string file;
  int line = 0;
  int field = 0;
};

class FileWriteError : public TervaleError {
 public:
  using TervaleError::TervaleError;
};

// A check refused the input; the message is the one the user is shown.
class InputRefused : public TervaleError {
 public:
  using TervaleError::TervaleError;
};

// A condition after which the older program ended itself (a singular fit, an arithmetic fault).
// The core never exits: the caller decides.
class FatalCondition : public TervaleError {
 public:
  using TervaleError::TervaleError;
};

}  // namespace tervale
