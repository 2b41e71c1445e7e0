#pragma once
#include <filesystem>
#include <string>
#include <string_view>

namespace tervale::io {

// Writes the comma-separated record format of the case and run files: strings in double
// quotes, numbers in the shortest form that reads back to the same double, fields separated
// by commas, CRLF at the end of each line. Fields written after EndLine() start a new line;
// fields written without EndLine() run on in the same line (some files keep matrix rows so).
class RecordWriter {
 public:
  RecordWriter& Str(std::string_view text);
  RecordWriter& Num(double value);
  RecordWriter& Int(long long value);
  RecordWriter& Bool(bool value);  // #TRUE# / #FALSE#
  RecordWriter& Empty();           // an empty field
  RecordWriter& EndLine();

  const std::string& Text() const { return text_; }

 private:
  void Separate();
  std::string text_;
  bool lineOpen_ = false;
};

// The shortest text that reads back to the same double (std::to_chars); NaN and infinities
// are written as the reader's error would want them refused: "NaN", "Infinity", "-Infinity".
std::string FormatShortest(double value);

// Writes a whole file through a temporary file beside it and a rename, so that a crash leaves
// either the old or the new content. Throws FileWriteError with the path in the message.
void SaveFileAtomically(const std::filesystem::path& target, std::string_view content);

// Appends text to a file (open, append, close), for the run files that grow record by record.
void AppendToFile(const std::filesystem::path& target, std::string_view content);

}  // namespace tervale::io
