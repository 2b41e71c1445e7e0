#pragma once
#include <cmath>
#include <utility>

namespace tervale {

// Solves A x = b in place for a small dense system (n <= N) by Gaussian elimination with
// partial pivoting; b receives x. Returns false when a pivot vanishes.
template <int N>
bool SolveSmallSystem(int n, double (&a)[N][N], double (&b)[N]) {
  for (int k = 0; k < n; ++k) {
    int pivot = k;
    for (int i = k + 1; i < n; ++i)
      if (std::fabs(a[i][k]) > std::fabs(a[pivot][k])) pivot = i;
    if (!(std::fabs(a[pivot][k]) > 0)) return false;
    if (pivot != k) {
      for (int j = 0; j < n; ++j) std::swap(a[k][j], a[pivot][j]);
      std::swap(b[k], b[pivot]);
    }
    for (int i = k + 1; i < n; ++i) {
      const double f = a[i][k] / a[k][k];
      for (int j = k; j < n; ++j) a[i][j] -= f * a[k][j];
      b[i] -= f * b[k];
    }
  }
  for (int k = n - 1; k >= 0; --k) {
    double v = b[k];
    for (int j = k + 1; j < n; ++j) v -= a[k][j] * b[j];
    b[k] = v / a[k][k];
    if (!std::isfinite(b[k])) return false;
  }
  return true;
}

}  // namespace tervale
