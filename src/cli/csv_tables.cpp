#include "cli/csv_tables.h"

#include <iostream>

#include "io/record_writer.h"

namespace tervale::cli {
namespace {

std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string out = "\"";
  for (char c : text) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

std::string CellText(const io::Cell& cell) {
  if (const double* d = std::get_if<double>(&cell)) return io::FormatShortest(*d);
  if (const std::string* t = std::get_if<std::string>(&cell)) return *t;
  return "";
}

}  // namespace

io::ReportTable FlashResultTable(const SharedCalcState& s, const FlashResult& r) {
  io::ReportTable t;
  t.view = "flash";
  t.columns = {"Component", "Vapour y", "Liquid x", "K", "Gamma"};  // as the text table
  const bool eos = s.KValueMethod == 4 || s.KValueMethod == 5;
  for (int i = 1; i <= s.NC; ++i) {
    io::Cell gamma = std::monostate{};
    if (!eos) gamma = r.gamma[i];
    t.rows.push_back({s.Comp.CompName[i], r.y[i], r.x[i], r.k[i], gamma});
  }
  return t;
}

io::ReportTable CondensingCurveTable(const CondensingCurve& c) {
  io::ReportTable t;
  t.view = "curve";
  t.columns = {"i", "t", "vf", "h"};
  if (!c.drawn) return t;
  for (int i = 1; i <= kCurvePoints; ++i) {
    io::Cell h = std::monostate{};
    if (c.hasEnthalpy) h = c.h[i];
    t.rows.push_back({static_cast<double>(i), c.t[i], c.vf[i], h});
  }
  return t;
}

void PrintCsvSection(const io::ReportTable& table) {
  std::cout << "\r\n";
  for (size_t c = 0; c < table.columns.size(); ++c)
    std::cout << (c ? "," : "") << CsvField(table.columns[c]);
  std::cout << "\r\n";
  for (const auto& row : table.rows) {
    for (size_t c = 0; c < row.size(); ++c)
      std::cout << (c ? "," : "") << CsvField(CellText(row[c]));
    std::cout << "\r\n";
  }
}

}  // namespace tervale::cli
