// The display-format renderer: random doubles against every pattern the screens use, and
// against random patterns.
#include <fuzzer/FuzzedDataProvider.h>

#include <iterator>

#include "io/display_format.h"

namespace {
// The patterns of the screens and reports.
const char* const kPatterns[] = {
    "0",        "0.0",       "0.00",          "0.000",       "0.0000",     "0.00000",
    "#",        "#.#",       "##.#000",       " ###0.000",   "####.000",   "####.00000",
    "###.000",  "##.000000", "#.#000000E+##", "#.00000",     "0.000E+00",  "0.0000E+00",
    "#,##0",    "#,##0.00",  "###.##",        "0.00000E-00", "##0.0",      "#0.000",
    "0.00E+00", "#.###E+00", "00000",         "0.0%",        "#####0.0##", "e+00",
};
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  const double value = in.ConsumeFloatingPoint<double>();
  const double raw = [&] {
    double d = 0;
    const auto bytes = in.ConsumeBytes<uint8_t>(sizeof d);
    if (bytes.size() == sizeof d) __builtin_memcpy(&d, bytes.data(), sizeof d);
    return d;
  }();
  const size_t selector = in.ConsumeIntegral<uint8_t>();
  const std::string own = in.ConsumeRemainingBytesAsString();
  for (double v : {value, raw}) {
    if (selector < std::size(kPatterns)) {
      // At most 309 digits, a separator for every three of them, and the pattern's own
      // characters.
      const std::string pattern = kPatterns[selector];
      const std::string out = tervale::io::FormatNumber(v, pattern);
      if (out.size() > 2 * pattern.size() + 450) __builtin_trap();
    } else {
      const std::string out = tervale::io::FormatNumber(v, own.substr(0, 256));
      if (out.size() > 2 * 256 + 450) __builtin_trap();
    }
  }
  return 0;
}
