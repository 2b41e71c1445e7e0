#pragma once
#include <string>
#include <string_view>

namespace tervale::io {

// Renders a number in a display pattern of the older program's Format function:
// '0' a required digit, '#' an optional one, '.' the decimal point, ',' grouping, literal
// characters kept (a leading blank stays), "E+"/"E-"/"e+"/"e-" an exponent whose own '0'/'#'
// give its digits. Rounding is half away from zero on the decimal digits of the shortest exact
// form; a minus sign stands just before the digits, and only when a digit shown is not zero.
// A point with no fraction digits left stays ("###.##" shows 12 as "12."), as the older display
// did. Examples: FormatNumber(0.5, "##.#000") == ".5000",
// FormatNumber(12.3456, " ###0.000") == " 12.346".
std::string FormatNumber(double value, std::string_view pattern);

}  // namespace tervale::io
