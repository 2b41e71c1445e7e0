#include "io/display_format.h"

#include "io/record_writer.h"

namespace tervale::io {

// Placeholder until the pattern renderer lands: shortest text.
std::string FormatNumber(double value, std::string_view pattern) { return FormatShortest(value); }

}  // namespace tervale::io
