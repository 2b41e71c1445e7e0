#include "database/jet_like.h"

#include <sqlite3.h>

#include <string>
#include <vector>

namespace tervale::db {
namespace {

// Decodes UTF-8; a byte that does not start a valid sequence stands for itself (as a code
// point in a private range), so that any text can be compared.
void Decode(std::string_view text, std::vector<char32_t>& out) {
  out.clear();
  const auto* p = reinterpret_cast<const unsigned char*>(text.data());
  size_t n = text.size();
  for (size_t i = 0; i < n;) {
    unsigned char c = p[i];
    int len = c < 0x80 ? 1 : (c >> 5) == 0x6 ? 2 : (c >> 4) == 0xE ? 3 : (c >> 3) == 0x1E ? 4 : 0;
    bool ok = len > 0 && i + len <= n;
    char32_t cp = len == 1 ? c : len == 2 ? (c & 0x1F) : len == 3 ? (c & 0x0F) : (c & 0x07);
    for (int k = 1; ok && k < len; ++k) {
      if ((p[i + k] & 0xC0) != 0x80) ok = false;
      cp = (cp << 6) | (p[i + k] & 0x3F);
    }
    if (!ok) {
      out.push_back(0xF0000 + c);
      ++i;
      continue;
    }
    out.push_back(cp);
    i += len;
  }
}

char32_t Lower(char32_t c) {
  if (c >= U'A' && c <= U'Z') return c + 32;
  if (c >= 0xFF21 && c <= 0xFF3A) return c + 32;  // Ａ..Ｚ
  return c;
}

char32_t Upper(char32_t c) {
  if (c >= U'a' && c <= U'z') return c - 32;
  if (c >= 0xFF41 && c <= 0xFF5A) return c - 32;  // ａ..ｚ
  return c;
}

bool IsDigit(char32_t c) {
  return (c >= U'0' && c <= U'9') || (c >= 0xFF10 && c <= 0xFF19);
}

enum class Kind { Literal, Any, Digit, Star, Set };

struct Token {
  Kind kind;
  char32_t ch = 0;             // Literal (folded to lower case)
  bool negate = false;         // Set
  size_t first = 0, last = 0;  // Set: its ranges in the range list
};

struct Pattern {
  std::vector<Token> tokens;
  std::vector<std::pair<char32_t, char32_t>> ranges;
};

void Compile(const std::vector<char32_t>& p, Pattern& out) {
  out.tokens.clear();
  out.ranges.clear();
  for (size_t i = 0; i < p.size(); ++i) {
    char32_t c = p[i];
    if (c == U'*') {
      // Runs of stars are one star.
      if (out.tokens.empty() || out.tokens.back().kind != Kind::Star)
        out.tokens.push_back({Kind::Star});
    } else if (c == U'?') {
      out.tokens.push_back({Kind::Any});
    } else if (c == U'#') {
      out.tokens.push_back({Kind::Digit});
    } else if (c == U'[') {
      size_t close = i + 1;
      // A "]" directly after "[" or "[!" closes the set (an empty set).
      while (close < p.size() && p[close] != U']') ++close;
      if (close >= p.size()) {
        out.tokens.push_back({Kind::Literal, U'['});
        continue;
      }
      size_t j = i + 1;
      Token t{Kind::Set};
      if (j < close && p[j] == U'!') {
        t.negate = true;
        ++j;
      }
      t.first = out.ranges.size();
      while (j < close) {
        char32_t lo = p[j];
        if (j + 2 < close && p[j + 1] == U'-') {
          out.ranges.emplace_back(lo, p[j + 2]);
          j += 3;
        } else {
          out.ranges.emplace_back(lo, lo);
          ++j;
        }
      }
      t.last = out.ranges.size();
      i = close;
      // "[]" is a set of length zero: it matches without taking a character.
      if (t.first == t.last && !t.negate) continue;
      out.tokens.push_back(t);
    } else {
      out.tokens.push_back({Kind::Literal, Lower(c)});
    }
  }
}

bool InRanges(const Pattern& p, const Token& t, char32_t c) {
  for (size_t r = t.first; r < t.last; ++r) {
    auto [lo, hi] = p.ranges[r];
    if (lo > hi) std::swap(lo, hi);
    if (c >= lo && c <= hi) return true;
  }
  return false;
}

bool MatchOne(const Pattern& p, const Token& t, char32_t c) {
  switch (t.kind) {
    case Kind::Literal:
      return Lower(c) == t.ch;
    case Kind::Any:
      return true;
    case Kind::Digit:
      return IsDigit(c);
    case Kind::Set: {
      bool in = InRanges(p, t, c) || InRanges(p, t, Lower(c)) || InRanges(p, t, Upper(c));
      return in != t.negate;
    }
    case Kind::Star:
      return false;
  }
  return false;
}

// Every token but the star takes exactly one character, so one backtracking point (the last
// star) is enough.
bool Match(const Pattern& p, const std::vector<char32_t>& s) {
  size_t ti = 0, si = 0;
  size_t starTok = SIZE_MAX, starStr = 0;
  const auto& tk = p.tokens;
  while (si < s.size()) {
    if (ti < tk.size() && tk[ti].kind == Kind::Star) {
      starTok = ti++;
      starStr = si;
    } else if (ti < tk.size() && MatchOne(p, tk[ti], s[si])) {
      ++ti;
      ++si;
    } else if (starTok != SIZE_MAX) {
      ti = starTok + 1;
      si = ++starStr;
    } else {
      return false;
    }
  }
  while (ti < tk.size() && tk[ti].kind == Kind::Star) ++ti;
  return ti == tk.size();
}

struct Scratch {
  std::string lastPattern;  // the pattern compiled last: a query uses one pattern for all rows
  bool compiledOnce = false;
  std::vector<char32_t> pattern, text;
  Pattern compiled;
};

void LikeFunction(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL) {
    sqlite3_result_null(ctx);
    return;
  }
  // X Like Y calls like(Y, X): the pattern comes first.
  const auto* pat = reinterpret_cast<const char*>(sqlite3_value_text(argv[0]));
  int patLen = sqlite3_value_bytes(argv[0]);
  const auto* txt = reinterpret_cast<const char*>(sqlite3_value_text(argv[1]));
  int txtLen = sqlite3_value_bytes(argv[1]);
  auto* scratch = static_cast<Scratch*>(sqlite3_user_data(ctx));
  std::string_view patView(pat, size_t(patLen));
  if (!scratch->compiledOnce || patView != scratch->lastPattern) {
    scratch->lastPattern.assign(patView);
    Decode(patView, scratch->pattern);
    Compile(scratch->pattern, scratch->compiled);
    scratch->compiledOnce = true;
  }
  Decode(std::string_view(txt, size_t(txtLen)), scratch->text);
  sqlite3_result_int(ctx, Match(scratch->compiled, scratch->text) ? 1 : 0);
}

}  // namespace

bool JetLike(std::string_view pattern, std::string_view text) {
  std::vector<char32_t> p, s;
  Decode(pattern, p);
  Decode(text, s);
  Pattern compiled;
  Compile(p, compiled);
  return Match(compiled, s);
}

int RegisterJetLike(sqlite3* db) {
  // One scratch per connection: a connection runs one statement step at a time.
  auto* scratch = new Scratch;
  return sqlite3_create_function_v2(
      db, "like", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS, scratch, LikeFunction,
      nullptr, nullptr, [](void* p) { delete static_cast<Scratch*>(p); });
}

}  // namespace tervale::db
