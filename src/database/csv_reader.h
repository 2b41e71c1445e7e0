#pragma once
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tervale::db {

// One field of a comma-separated file: an empty unquoted field is Null.
using CsvField = std::optional<std::string>;
using CsvRow = std::vector<CsvField>;

// Reads comma-separated text in the common form: fields in double quotes may hold commas, line
// breaks and doubled quotes; CRLF or LF line ends; a UTF-8 byte-order mark is skipped; blank lines
// are skipped. Throws FileReadError (with the line) on a quote that is never closed or text
// after a closing quote.
std::vector<CsvRow> ParseCsv(std::string_view text, const std::string& fileName = "");
std::vector<CsvRow> ReadCsvFile(const std::filesystem::path& file);

}  // namespace tervale::db
