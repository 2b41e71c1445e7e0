#pragma once
#include <string_view>

#include "io/field_reader.h"
#include "io/record_writer.h"
#include "state/limits.h"

namespace tervale::io {

// A component matrix as the case files hold it: n lines of n numbers, row i holding j = 1..n.
inline void WriteMatrixRows(RecordWriter& w, const CompMatrix& m, int n) {
  for (int i = 1; i <= n; ++i) {
    for (int j = 1; j <= n; ++j) w.Num(m[i][j]);
    w.EndLine();
  }
}

// Reads n rows of n numbers (line breaks don't matter to the reader).
inline void ReadMatrixRows(FieldReader& r, CompMatrix& m, int n, std::string_view what) {
  for (int i = 1; i <= n; ++i)
    for (int j = 1; j <= n; ++j) m[i][j] = r.ReadDouble(what);
}

}  // namespace tervale::io
