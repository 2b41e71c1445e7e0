#include "cli/cli_context.h"

#include <cmath>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "io/field_reader.h"
#include "io/record_writer.h"

namespace tervale::cli {

void CliDialogs::Message(std::string_view text) {
  std::cerr << text << '\n';
  RecordingDialogs::Message(text);
}

Answer CliDialogs::Ask(std::string_view text, Buttons buttons) {
  std::cerr << text << '\n';
  return RecordingDialogs::Ask(text, buttons);
}

void CliContext::Prepare() {
  state->LanguageFlag = (lang == "ja") ? 0 : 1;
  state->DataPath = dataDir.string();
  state->Dialogs = &dialogs;
}

Json CliContext::Messages() const {
  Json list = Json::array();
  for (const auto& m : dialogs.messages) list.push_back(m);
  return list;
}

Json JsonNumber(CliContext& ctx, double value, std::string_view what) {
  if (std::isfinite(value)) return value;
  ctx.dialogs.Message(std::string("Not a finite number: ") + std::string(what));
  return nullptr;
}

Json JsonComponents(CliContext& ctx, const CompArray& values, int n, std::string_view what) {
  Json list = Json::array();
  for (int i = 1; i <= n; ++i) list.push_back(JsonNumber(ctx, values[i], what));
  return list;
}

void PrintJson(CliContext& ctx, Json object) {
  object["messages"] = ctx.Messages();
  std::cout << object.dump(2) << std::endl;
}

int Refuse(CliContext& ctx, const std::string& message, Json object) {
  ctx.dialogs.Message(message);
  if (ctx.json) PrintJson(ctx, std::move(object));
  return 2;
}

namespace {

std::string CellText(const io::Cell& cell) {
  if (std::holds_alternative<double>(cell)) return io::FormatShortest(std::get<double>(cell));
  if (std::holds_alternative<std::string>(cell)) return std::get<std::string>(cell);
  return "";
}

// Display width of UTF-8 text: East Asian characters take two columns.
size_t DisplayWidth(const std::string& text) {
  size_t width = 0;
  for (size_t i = 0; i < text.size();) {
    unsigned char c = text[i];
    size_t len = c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : 4;
    width += (len >= 3) ? 2 : 1;
    i += len;
  }
  return width;
}

std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string out = "\"";
  for (char c : text) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

// A failed calculation can leave NaN or an infinity in a table: text and CSV print them as
// they are, so say once per column what they mean (JSON turns them into null with a message).
void WarnNonFinite(CliContext& ctx, const io::ReportTable& table) {
  for (size_t c = 0; c < table.columns.size(); ++c) {
    for (const auto& row : table.rows) {
      if (c < row.size() && std::holds_alternative<double>(row[c]) &&
          !std::isfinite(std::get<double>(row[c]))) {
        ctx.dialogs.Message("Not a finite number in column \"" + table.columns[c] +
                            "\": the calculation failed for this input");
        break;
      }
    }
  }
}

}  // namespace

void PrintTable(CliContext& ctx, const io::ReportTable& table) {
  for (const auto& m : table.messages) ctx.dialogs.Message(m);
  if (!ctx.json) WarnNonFinite(ctx, table);
  if (ctx.json) {
    Json rows = Json::array();
    for (const auto& row : table.rows) {
      Json r = Json::array();
      for (const auto& cell : row) {
        if (std::holds_alternative<double>(cell)) {
          r.push_back(JsonNumber(ctx, std::get<double>(cell), table.view));
        } else if (std::holds_alternative<std::string>(cell)) {
          r.push_back(std::get<std::string>(cell));
        } else {
          r.push_back(nullptr);
        }
      }
      rows.push_back(std::move(r));
    }
    Json object = {{"view", table.view}, {"columns", table.columns}, {"rows", std::move(rows)}};
    PrintJson(ctx, std::move(object));
    return;
  }
  if (ctx.csv) {
    std::cout << "\xEF\xBB\xBF";
    for (size_t c = 0; c < table.columns.size(); ++c)
      std::cout << (c ? "," : "") << CsvField(table.columns[c]);
    std::cout << "\r\n";
    for (const auto& row : table.rows) {
      for (size_t c = 0; c < row.size(); ++c)
        std::cout << (c ? "," : "") << CsvField(CellText(row[c]));
      std::cout << "\r\n";
    }
    return;
  }
  std::vector<size_t> width(table.columns.size(), 0);
  for (size_t c = 0; c < table.columns.size(); ++c) width[c] = DisplayWidth(table.columns[c]);
  for (const auto& row : table.rows)
    for (size_t c = 0; c < row.size() && c < width.size(); ++c)
      width[c] = std::max(width[c], DisplayWidth(CellText(row[c])));
  auto printRow = [&](const std::vector<std::string>& cells) {
    for (size_t c = 0; c < cells.size(); ++c) {
      size_t w = c < width.size() ? width[c] : 0;
      std::cout << (c ? "  " : "") << cells[c]
                << std::string(w - std::min(w, DisplayWidth(cells[c])), ' ');
    }
    std::cout << '\n';
  };
  printRow(table.columns);
  for (const auto& row : table.rows) {
    std::vector<std::string> cells;
    for (const auto& cell : row) cells.push_back(CellText(cell));
    printRow(cells);
  }
}

bool ParseOptionNumber(CliContext& ctx, const std::string& option, const std::string& text,
                       double& value) {
  if (io::ParseNumber(text, value) && std::isfinite(value)) return true;
  ctx.dialogs.Message("Option " + option + ": not a number: \"" + text + "\"");
  return false;
}

}  // namespace tervale::cli
