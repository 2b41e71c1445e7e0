#pragma once
#include <string>
#include <string_view>

namespace tervale::io {

// Renders a number in a display pattern of the older program's Format function:
// '0' a required digit, '#' an optional one, '.' the decimal point, ',' grouping, literal
// characters kept (a leading blank stays), "E+"/"E-"/"e+"/"e-" an exponent whose own '0'/'#'
// give its digits. Examples: FormatNumber(0.5, "##.#000") == ".5000",
// FormatNumber(12.3456, " ###0.000") == "   12.346".
std::string FormatNumber(double value, std::string_view pattern);

}  // namespace tervale::io
