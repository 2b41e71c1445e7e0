#pragma once
#include <array>
#include <span>
#include <string_view>

#include "purecomp/pure_estimate.h"

namespace tervale {

// One row of a group form: its text and constants. Heading rows hold no constants and count
// as zero whatever is entered beside them.
struct GroupRow {
  std::string_view text;
  bool heading = false;
  std::array<double, 4> delta{};
};

// A group form: its caption, the headers of the constant columns and the rows in screen order.
struct GroupTable {
  GroupMethod method;
  std::string_view key;      // the word the command line uses
  std::string_view title;    // the form's caption
  std::string_view caption;  // the method's caption under it
  int nConst;                // constant columns (3, or 2 for Fedors, 4 for the heat capacity)
  std::array<std::string_view, 4> headers;
  std::span<const GroupRow> rows;  // row r of the form is rows[r - 1]
};

const GroupTable& GetGroupTable(GroupMethod method);
// The table for a command-line word ("lydersen", "joback", ...); null when there is none.
const GroupTable* FindGroupTable(std::string_view key);

}  // namespace tervale
