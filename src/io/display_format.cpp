#include "io/display_format.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "io/record_writer.h"

namespace tervale::io {
namespace {

// A pattern taken apart: literal text before the number, the digit placeholders of the whole
// part, of the fraction and of the exponent, and literal text after the number.
struct Pattern {
  std::string prefix;
  std::string suffix;
  int intPlaces = 0;      // '0' and '#' before the point (or of the whole, with no point)
  int intRequired = 0;    // places from the first '0' to the point
  bool grouping = false;  // a ',' among the whole-part places
  bool point = false;     // the pattern has a decimal point
  int fracPlaces = 0;     // '0' and '#' after the point
  int fracRequired = 0;   // places up to the last '0' after the point
  bool exponent = false;
  char expLetter = 'E';
  bool expSignAlways = false;  // "E+" shows '+', "E-" only '-'
  int expRequired = 0;         // '0' places of the exponent
};

bool IsPlaceholder(char c) {
  return c == '0' || c == '#';
}

Pattern ParsePattern(std::string_view p) {
  Pattern pat;
  enum { kBefore, kInt, kFrac, kExp, kAfter } stage = kBefore;
  bool firstZeroSeen = false;
  for (size_t i = 0; i < p.size(); ++i) {
    char c = p[i];
    std::string& lit = (stage == kBefore) ? pat.prefix : pat.suffix;
    if (c == '\\' && i + 1 < p.size()) {  // an escaped literal
      lit += p[++i];
      if (stage != kBefore && stage != kAfter) stage = kAfter;
      continue;
    }
    if (stage == kBefore || stage == kInt) {
      if (IsPlaceholder(c)) {
        stage = kInt;
        ++pat.intPlaces;
        if (c == '0') firstZeroSeen = true;
        if (firstZeroSeen) ++pat.intRequired;
        continue;
      }
      if (c == ',' && stage == kInt) {
        pat.grouping = true;
        continue;
      }
      if (c == '.') {
        pat.point = true;
        stage = kFrac;
        continue;
      }
    }
    if ((stage == kInt || stage == kFrac) && (c == 'E' || c == 'e') && i + 1 < p.size() &&
        (p[i + 1] == '+' || p[i + 1] == '-') && (pat.intPlaces > 0 || pat.fracPlaces > 0)) {
      pat.exponent = true;
      pat.expLetter = c;
      pat.expSignAlways = p[i + 1] == '+';
      ++i;
      stage = kExp;
      continue;
    }
    if (stage == kFrac && IsPlaceholder(c)) {
      ++pat.fracPlaces;
      if (c == '0') pat.fracRequired = pat.fracPlaces;
      continue;
    }
    if (stage == kExp && IsPlaceholder(c)) {
      if (c == '0') ++pat.expRequired;
      continue;
    }
    // Any other character is literal text; inside or after the number it follows it.
    if (stage != kBefore) stage = kAfter;
    ((stage == kBefore) ? pat.prefix : pat.suffix) += c;
  }
  return pat;
}

// The decimal digits of |value| in the shortest form that reads back to the same double, as
// 0.D x 10^P. Rounding works on these digits so that 2.675 shows as 2.68, as typed.
struct Digits {
  std::string d;  // no leading zeros; empty for zero
  int p = 0;
};

Digits DecimalDigits(double value) {
  Digits r;
  value = std::fabs(value);
  if (value == 0) return r;
  std::array<char, 64> buf{};
  auto res =
      std::to_chars(buf.data(), buf.data() + buf.size(), value, std::chars_format::scientific);
  std::string_view s(buf.data(), res.ptr - buf.data());
  size_t e = s.find('e');
  for (size_t i = 0; i < e; ++i)
    if (s[i] != '.') r.d += s[i];
  r.p = std::atoi(std::string(s.substr(e + 1)).c_str()) + 1;
  while (r.d.size() > 1 && r.d.back() == '0') r.d.pop_back();
  return r;
}

// Keeps the first `keep` digits, rounding half away from zero.
void RoundDigits(Digits& x, int keep) {
  if (x.d.empty() || keep >= static_cast<int>(x.d.size())) return;
  if (keep < 0) {
    x.d.clear();
    return;
  }
  bool up = x.d[keep] >= '5';
  x.d.resize(keep);
  if (up) {
    int i = keep - 1;
    while (i >= 0 && x.d[i] == '9') x.d[i--] = '0';
    if (i >= 0) {
      ++x.d[i];
    } else {
      x.d.insert(x.d.begin(), '1');
      ++x.p;
    }
  }
  while (!x.d.empty() && x.d.back() == '0') x.d.pop_back();
  if (x.d.empty() && !up) x.p = 0;
}

// Digit k (0-based from the first significant digit), '0' beyond the kept ones.
char DigitAt(const Digits& x, int k) {
  return (k >= 0 && k < static_cast<int>(x.d.size())) ? x.d[k] : '0';
}

std::string Group(const std::string& whole) {
  std::string out;
  int n = static_cast<int>(whole.size());
  for (int i = 0; i < n; ++i) {
    if (i > 0 && (n - i) % 3 == 0) out += ',';
    out += whole[i];
  }
  return out;
}

// Fraction digits with the optional trailing places dropped when they hold zeros.
std::string TrimFraction(std::string frac, int required) {
  while (static_cast<int>(frac.size()) > required && frac.back() == '0') frac.pop_back();
  return frac;
}

}  // namespace

std::string FormatNumber(double value, std::string_view pattern) {
  if (!std::isfinite(value)) return FormatShortest(value);
  Pattern pat = ParsePattern(pattern);
  if (pat.intPlaces == 0 && pat.fracPlaces == 0 && !pat.point) {
    // No number in the pattern: the literal text alone (empty pattern: the shortest form).
    return pattern.empty() ? FormatShortest(value) : pat.prefix + pat.suffix;
  }
  Digits x = DecimalDigits(value);
  std::string whole, frac, exp;
  if (pat.exponent) {
    // As many whole digits in the mantissa as the pattern requires (at least one).
    int k = pat.intRequired > 0 ? pat.intRequired : 1;
    int e = 0;
    if (!x.d.empty()) {
      RoundDigits(x, k + pat.fracPlaces);
      e = x.p - k;
    }
    for (int i = 0; i < k; ++i) whole += x.d.empty() ? '0' : DigitAt(x, i);
    for (int i = 0; i < pat.fracPlaces; ++i) frac += x.d.empty() ? '0' : DigitAt(x, k + i);
    std::string ed = std::to_string(std::abs(e));
    while (static_cast<int>(ed.size()) < pat.expRequired) ed.insert(ed.begin(), '0');
    exp += pat.expLetter;
    if (e < 0)
      exp += '-';
    else if (pat.expSignAlways)
      exp += '+';
    exp += ed;
  } else {
    RoundDigits(x, x.p + pat.fracPlaces);
    if (!x.d.empty())
      for (int i = 0; i < x.p; ++i) whole += DigitAt(x, i);
    while (static_cast<int>(whole.size()) < pat.intRequired) whole.insert(whole.begin(), '0');
    for (int i = 0; i < pat.fracPlaces; ++i) frac += x.d.empty() ? '0' : DigitAt(x, x.p + i);
  }
  frac = TrimFraction(frac, pat.fracRequired);
  if (pat.grouping) whole = Group(whole);
  // The sign is shown only when a digit shown is not zero.
  bool shownNonZero = whole.find_first_of("123456789") != std::string::npos ||
                      frac.find_first_of("123456789") != std::string::npos;
  std::string out = pat.prefix;
  if (value < 0 && shownNonZero) out += '-';
  out += whole;
  if (pat.point) out += '.';
  out += frac;
  out += exp;
  out += pat.suffix;
  return out;
}

}  // namespace tervale::io
