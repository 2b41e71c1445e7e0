#include "database/csv_reader.h"

#include <fstream>
#include <sstream>

#include "state/errors.h"

namespace tervale::db {

std::vector<CsvRow> ParseCsv(std::string_view text, const std::string& fileName) {
  if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
  std::vector<CsvRow> rows;
  CsvRow row;
  std::string field;
  bool quoted = false;  // the current field began with a quote
  bool fieldStarted = false;
  int line = 1;
  size_t i = 0;
  auto endField = [&] {
    if (quoted || !field.empty()) {
      row.emplace_back(field);
    } else {
      row.emplace_back(std::nullopt);
    }
    field.clear();
    quoted = false;
    fieldStarted = false;
  };
  auto endRow = [&] {
    endField();
    // A line holding nothing at all is skipped.
    if (!(row.size() == 1 && !row[0].has_value())) rows.push_back(std::move(row));
    row.clear();
  };
  const size_t n = text.size();
  while (i < n) {
    char c = text[i];
    if (!fieldStarted && c == '"') {
      quoted = true;
      fieldStarted = true;
      int startLine = line;
      ++i;
      for (;;) {
        if (i >= n)
          throw FileReadError(fileName, startLine, int(row.size()) + 1,
                              "A quoted field is never closed");
        char q = text[i];
        if (q == '"') {
          if (i + 1 < n && text[i + 1] == '"') {
            field += '"';
            i += 2;
            continue;
          }
          ++i;
          break;
        }
        if (q == '\n') ++line;
        field += q;
        ++i;
      }
      // After the closing quote only a separator or a line end may follow.
      if (i < n && text[i] != ',' && text[i] != '\r' && text[i] != '\n')
        throw FileReadError(fileName, line, int(row.size()) + 1, "Text after a closing quote");
      continue;
    }
    if (c == ',') {
      endField();
      ++i;
      continue;
    }
    if (c == '\r' || c == '\n') {
      endRow();
      if (c == '\r' && i + 1 < n && text[i + 1] == '\n') ++i;
      ++i;
      ++line;
      continue;
    }
    fieldStarted = true;
    field += c;
    ++i;
  }
  if (fieldStarted || !row.empty()) endRow();
  return rows;
}

std::vector<CsvRow> ReadCsvFile(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw FileReadError(file.string(), 0, 0, "Cannot open " + file.string());
  std::ostringstream buffer;
  buffer << in.rdbuf();
  return ParseCsv(buffer.str(), file.string());
}

}  // namespace tervale::db
