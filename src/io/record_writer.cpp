#include "io/record_writer.h"

#include <unistd.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <random>

#include "state/errors.h"

namespace tervale::io {

std::string FormatShortest(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0 ? "Infinity" : "-Infinity";
  std::array<char, 64> buf{};
  auto res = std::to_chars(buf.data(), buf.data() + buf.size(), value);
  return std::string(buf.data(), res.ptr);
}

void RecordWriter::Separate() {
  if (lineOpen_) text_ += ',';
  lineOpen_ = true;
}

RecordWriter& RecordWriter::Str(std::string_view text) {
  Separate();
  text_ += '"';
  // The format has no escape for a double quote inside a string: it is written as a single
  // quote so that the record stays readable.
  for (char c : text) text_ += (c == '"') ? '\'' : c;
  text_ += '"';
  return *this;
}

RecordWriter& RecordWriter::Num(double value) {
  Separate();
  text_ += FormatShortest(value);
  return *this;
}

RecordWriter& RecordWriter::Int(long long value) {
  Separate();
  text_ += std::to_string(value);
  return *this;
}

RecordWriter& RecordWriter::Bool(bool value) {
  Separate();
  text_ += value ? "#TRUE#" : "#FALSE#";
  return *this;
}

RecordWriter& RecordWriter::Empty() {
  Separate();
  return *this;
}

RecordWriter& RecordWriter::EndLine() {
  text_ += "\r\n";
  lineOpen_ = false;
  return *this;
}

void SaveFileAtomically(const std::filesystem::path& target, std::string_view content) {
  namespace fs = std::filesystem;
  fs::path dir = target.parent_path();
  if (dir.empty()) dir = ".";
  std::random_device rd;
  fs::path temp = dir / (target.filename().string() + ".tmp" + std::to_string(rd()));
  {
    FILE* f = std::fopen(temp.c_str(), "wb");
    if (!f) throw FileWriteError("Cannot write " + target.string() + ": the folder cannot be written");
    bool ok = std::fwrite(content.data(), 1, content.size(), f) == content.size();
    ok = (std::fflush(f) == 0) && ok;
    ok = (::fsync(fileno(f)) == 0) && ok;
    ok = (std::fclose(f) == 0) && ok;
    if (!ok) {
      std::error_code ec;
      fs::remove(temp, ec);
      throw FileWriteError("Cannot write " + target.string() + ": the disk refused the data");
    }
  }
  std::error_code ec;
  fs::rename(temp, target, ec);
  if (ec) {
    fs::remove(temp, ec);
    throw FileWriteError("Cannot replace " + target.string() + ": " + ec.message());
  }
}

void AppendToFile(const std::filesystem::path& target, std::string_view content) {
  FILE* f = std::fopen(target.c_str(), "ab");
  if (!f) throw FileWriteError("Cannot append to " + target.string());
  bool ok = std::fwrite(content.data(), 1, content.size(), f) == content.size();
  ok = (std::fclose(f) == 0) && ok;
  if (!ok) throw FileWriteError("Cannot append to " + target.string());
}

}  // namespace tervale::io
