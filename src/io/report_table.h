#pragma once
#include <string>
#include <variant>
#include <vector>

namespace tervale::io {

// A table as a result screen shows it: column titles and rows of cells. Front ends print it
// as text, JSON or CSV; the core only fills it.
using Cell = std::variant<std::monostate, double, std::string>;

struct ReportTable {
  std::string view;
  std::vector<std::string> columns;
  std::vector<std::vector<Cell>> rows;
  std::vector<std::string> messages;
};

}  // namespace tervale::io
