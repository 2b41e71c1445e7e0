#pragma once
#include <optional>
#include <string>
#include <vector>

#include "database/property_db.h"

namespace tervale {
struct SharedCalcState;
}

namespace tervale::db {

// A component pair of a multicomponent case whose Wilson (or NRTL) parameters are still both
// at their defaults (Wilson 1, NRTL 0), by the case's KValueMethod.
struct MissingPair {
  int i = 0, j = 0;  // component numbers, i < j
  std::string name1, name2;
  bool stored = false;                // the property database holds a row for the pair
  std::optional<std::int64_t> index;  // the Index of the first such row (look-up order)
  bool filled = false;                // filled from that row
};

struct MissingPairsResult {
  bool wilson = true;    // KValueMethod 2; false for NRTL (3)
  bool applies = false;  // the method uses binary parameters at all
  std::vector<MissingPair> pairs;
};

// The pairs 1 <= i < j <= NC at their defaults, each looked up as the pair dialogues look it
// up (both name orders; NRTL rows only with the case's exact alpha). With fill, each stored
// pair is copied into the matrix through the dialogue's OK with the first row chosen, so the
// case receives exactly what a user's look-up would give.
MissingPairsResult FindMissingPairs(PropertyDatabase& db, SharedCalcState& s, bool fill);

}  // namespace tervale::db
