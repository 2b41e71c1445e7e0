#pragma once
#include <string_view>
#include <vector>

namespace tervale {

struct SharedCalcState;

struct Azeotrope {
  double x1 = 0;
  double tp = 0;  // temperature (isobaric) or pressure (isothermal), in the case's units
  bool minimumBoiling = true;
};

inline std::string_view AzeotropeKind(const Azeotrope& a) {
  return a.minimumBoiling ? "minimum-boiling" : "maximum-boiling";
}

// Where y1 - x1 changes sign on a sampled curve: between nodes i and i + 1 (0-based), or at a
// node i itself whose y1 - x1 is below 1e-9 while its neighbours differ in sign.
struct SignChange {
  int index = 0;
  bool atNode = false;
  bool minimumBoiling = true;  // y1 > x1 on the side of lower x1
};
// Nodes outside 0 < x < 1 and nodes flagged missing (missing[i] true) are not interior.
std::vector<SignChange> FindSignChanges(const double* x, const double* y, const bool* missing,
                                        int count);

// The azeotropes of the estimation program's diagram (CurveX, CurveY, CurveTP after
// DrawVLEGraph), each refined with the model and its bubble routine to |y1 - x1| < 1e-9. The
// case is left as it was.
std::vector<Azeotrope> FindVLEAzeotropes(SharedCalcState& s);

// The azeotropes of the UNIFAC diagram (after RunUnifacSweep): the sign change of the stored
// y1 - x1 refined by linear interpolation between the two nodes; tp is the temperature in C.
std::vector<Azeotrope> FindUnifacAzeotropes(const SharedCalcState& s);

}  // namespace tervale
