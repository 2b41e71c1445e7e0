#include "database/missing_pairs.h"

#include <algorithm>

#include "database/lookups.h"
#include "state/shared_state.h"

namespace tervale::db {

MissingPairsResult FindMissingPairs(PropertyDatabase& db, SharedCalcState& s, bool fill) {
  MissingPairsResult r;
  r.applies = s.KValueMethod == 2 || s.KValueMethod == 3;
  r.wilson = s.KValueMethod != 3;
  if (!r.applies) return r;
  // The look-up's OK writes the matrix for every program but the estimation program (4).
  const int keptProgram = s.ActiveProgram;
  if (keptProgram == 4) s.ActiveProgram = 0;
  const LookupKind kind = r.wilson ? LookupKind::Wilson : LookupKind::Nrtl;
  const CompMatrix& m = r.wilson ? s.Bin.WilsonLambda : s.Bin.NrtlTau;
  const double unset = r.wilson ? 1.0 : 0.0;
  const int n = std::min(s.NC, kMaxComponents);
  for (int i = 1; i <= n; ++i) {
    for (int j = i + 1; j <= n; ++j) {
      if (m[i][j] != unset || m[j][i] != unset) continue;
      MissingPair p;
      p.i = i;
      p.j = j;
      p.name1 = s.Comp.CompName[i];
      p.name2 = s.Comp.CompName[j];
      LookupDialog d = SearchPair(db, s, kind, p.name1, p.name2);
      d.PairA = i;
      d.PairB = j;
      p.stored = d.Found.RecordCount() > 0;
      if (p.stored) {
        const Value& index = d.Found.Field(0, "Index");
        if (auto* v = std::get_if<std::int64_t>(&index)) p.index = *v;
        if (auto v = AsNumber(index); v && !p.index) p.index = static_cast<std::int64_t>(*v);
      }
      if (fill && p.stored) {
        CallerGrid grid;
        grid.ActiveRow = i;
        grid.ActiveCol = j;
        LookupOk(db, s, d, grid);
        p.filled = !grid.Written.empty();
      }
      r.pairs.push_back(std::move(p));
    }
  }
  s.ActiveProgram = keptProgram;
  return r;
}

}  // namespace tervale::db
