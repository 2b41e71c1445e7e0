#pragma once
#include <filesystem>
#include <string>
#include <string_view>

namespace tervale::io {

// Reads the fields of the comma-separated record format one after another, ignoring line
// breaks between them (as the older program's sequential input did). Strings may be quoted
// (and then hold commas); numbers may be written ".5", "-.5", "1E+20", "1.5E-05"; "#TRUE#",
// "#FALSE#" and "#NULL#" are read as -1, 0 and 0 (booleans as true/false); an empty field
// reads as 0 or "". Every error is a FileReadError naming the file, line and field.
class FieldReader {
 public:
  // text must be UTF-8 (see DecodeCaseText); fileName is used in messages only.
  FieldReader(std::string text, std::string fileName);

  // Reads a whole file, decoding UTF-8 or Shift-JIS (CP932). A missing or unreadable file,
  // or a directory, is a FileReadError naming the path.
  static FieldReader FromFile(const std::filesystem::path& path);

  std::string ReadString(std::string_view what);
  double ReadDouble(std::string_view what);
  // A whole number; a fractional or out-of-range value is an error.
  int ReadInt(std::string_view what);
  // A whole number within [min, max]: a count beyond its limit is an error, never an overflow.
  int ReadCount(std::string_view what, int min, int max);
  bool ReadBool(std::string_view what);

  // True when only white space and line breaks remain.
  bool AtEnd();

  // Position of the field read last (1-based), for messages.
  int Line() const { return fieldLine_; }
  int Field() const { return fieldIndex_; }
  const std::string& FileName() const { return fileName_; }

  // Throws a FileReadError at the field read last.
  [[noreturn]] void Fail(std::string_view message) const;

 private:
  // The raw text of the next field; quoted tells whether it was in double quotes.
  std::string_view NextField(std::string_view what, bool& quoted);

  std::string text_;
  std::string fileName_;
  size_t pos_ = 0;
  int line_ = 1;         // line of pos_
  int fieldInLine_ = 0;  // fields already read on line_
  int fieldLine_ = 0;
  int fieldIndex_ = 0;
  bool afterComma_ = false;  // the last field ended with a comma: an empty field may follow
};

// Turns file bytes into UTF-8: valid UTF-8 (with or without a byte-order mark) is kept,
// anything else is decoded as Shift-JIS (CP932).
std::string DecodeCaseText(std::string_view bytes);

// Parses a number in the forms the files hold; false when the text is not a number.
bool ParseNumber(std::string_view text, double& value);

}  // namespace tervale::io
