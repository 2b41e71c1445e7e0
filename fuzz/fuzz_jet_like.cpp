// needs: db
// The Jet Like matcher: a random pattern against a random text.
#include <fuzzer/FuzzedDataProvider.h>

#include "database/jet_like.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  const std::string pattern = in.ConsumeRandomLengthString(256);
  const std::string text = in.ConsumeRemainingBytesAsString();
  const bool match = tervale::db::JetLike(pattern, text);
  // A pattern without wildcards or brackets matches at most its own text.
  if (pattern.find_first_of("*?#[") == std::string::npos && match &&
      text.size() > 4 * pattern.size())
    __builtin_trap();
  // "*" matches everything.
  if (!tervale::db::JetLike("*", text)) __builtin_trap();
  return 0;
}
