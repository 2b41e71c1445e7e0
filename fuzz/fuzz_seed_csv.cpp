// needs: db
// The comma-separated reader of the property database's seed files (`tervale-cli db build`).
#include "database/csv_reader.h"
#include "state/errors.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    const auto rows = tervale::db::ParseCsv(text, "seed.csv");
    // Every field comes from the text: no row can hold more characters than it.
    size_t chars = 0;
    for (const auto& row : rows)
      for (const auto& field : row) chars += field ? field->size() : 0;
    if (chars > size) __builtin_trap();
  } catch (const tervale::TervaleError&) {
  }
  return 0;
}
