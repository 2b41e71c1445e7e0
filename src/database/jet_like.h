#pragma once
#include <string_view>

struct sqlite3;

namespace tervale::db {

// The pattern match of the Jet dialect's Like, over UTF-8 text:
//   *        any run of characters, also none
//   ?        one character
//   #        one digit (0-9, also the full-width digits)
//   [abc]    one character of the set; ranges as [a-z]
//   [!abc]   one character not in the set
// Letters compare without regard to case, for ASCII and for the full-width Latin letters.
// "[]" matches nothing (a zero-length set); a "[" without its "]" stands for itself.
bool JetLike(std::string_view pattern, std::string_view text);

// Registers JetLike as the database's like function, so that "X Like ?" in a query has the
// Jet meaning. Returns the SQLite result code.
int RegisterJetLike(sqlite3* db);

}  // namespace tervale::db
