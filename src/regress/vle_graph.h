#pragma once
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "regress/vle_case.h"

namespace tervale {

struct SharedCalcState;

// The plot box inside the picture, in the picture's own units: margins of 250 left and top,
// 400 right and 200 bottom. Rows grow downwards.
struct VLEGraphFrame {
  double left = 250, top = 250, right = 0, bottom = 0;
  static VLEGraphFrame ForPicture(double width, double height) {
    return VLEGraphFrame{250, 250, width - 400, height - 200};
  }
  double ColumnOfX(const VLEDataCase& c, double x) const {
    return left + (x - c.GraphXMin) / (c.GraphXMax - c.GraphXMin) * (right - left);
  }
  double RowOfY(const VLEDataCase& c, double y) const {
    return bottom - (y - c.GraphYMin) / (c.GraphYMax - c.GraphYMin) * (bottom - top);
  }
};

// Colours by QBColor number.
inline constexpr int kVLEColourGrid = 8, kVLEColourFrame = 7, kVLEColourY = 14, kVLEColourTP = 10,
                     kVLEColourGamma1 = 12, kVLEColourGamma2 = 13;

struct VLEMeasuredPoint {
  double x = 0, y = 0, gamma1 = 0, gamma2 = 0;
  double tp = 0;         // C, or the pressure in the case's unit
  bool insideX = false;  // drawn at all
  bool insideY = false;  // its y point drawn
};

struct VLEGraphData {
  bool constantPressure = true;
  // T (C) or P (case's pressure unit) of the 201 samples as plotted; kVLEMissing where none.
  std::array<double, kVLECurvePoints + 1> tpShown{};
  double tpTop = 0, tpBottom = 0, tpTick = 0;  // the T or P axis, five divisions
  double gammaTop = 2;                         // the gamma axis runs from 0
  std::vector<VLEMeasuredPoint> points;        // estimate types only
  bool objectiveShown = false;                 // estimate types only
  double objective = 0;
  std::string objectiveText;                      // plain shortest form
  std::string objectiveCaption;                   // the part right of "="
  std::string para12Text, para21Text, alphaText;  // "#.0000000E+##"; alpha for NRTL only
};

// Samples the model over the x window (CurveX, CurveY, CurveGamma1, CurveGamma2, CurveTP of
// the case), rounds the axes, gathers the measured points, and ends by evaluating the
// objective for the display.
VLEGraphData DrawVLEGraph(SharedCalcState& s);

// Axis rounding: the T or P top and bottom, and the gamma axis 2/5/10/20/50.
double RoundAxisTop(double max);
double RoundAxisBottom(double min);
double RoundGammaTop(double gammaMax);

// The read-out panel after a click on the picture.
struct VLEMouseReadout {
  bool ignored = true;   // the click was outside the samples: nothing changes
  bool visible = false;  // the panel is shown
  bool hit = false;      // a measured point was hit
  int index = 0;         // sample index 1..201
  int dataIndex = 0;     // the measured point hit, 1-based
  double crossX = 0, crossY = 0;
  double x = 0, y = 0, gamma1 = 0, gamma2 = 0, tp = 0;
  double measuredY = 0, measuredTP = 0;
  std::string xText, yText, gamma1Text, gamma2Text, tpText, measuredYText, measuredTPText;
  std::string tpLabel, tpUnit;  // "Temp=" "℃" or "Press=" "mmHg"
};

// Mouse read-out from the click position (picture units) ...
VLEMouseReadout ReadVLEMouse(const SharedCalcState& s, const VLEGraphFrame& frame, double clickX,
                             double clickY);
// ... or from the sample index the column gives and the click's row.
VLEMouseReadout ReadVLEMouseAt(const SharedCalcState& s, const VLEGraphFrame& frame, int index,
                               double clickX, double clickY);

// frmVLE_ChangeParameter: the old values as shown, and OK with the new fields (a blank field
// keeps its parameter; alpha only in the NRTL model; no range test).
struct VLEParameterDialog {
  std::string title;
  std::string old12, old21, oldAlpha;
  bool alphaShown = false;
};
VLEParameterDialog OpenVLEChangeParameter(const SharedCalcState& s);
void ApplyVLEChangeParameter(SharedCalcState& s, std::string_view new12, std::string_view new21,
                             std::string_view newAlpha);

// frmVLE_ChangeScale: OK with the four limits; the first failed test shows its message and
// nothing is stored (returns false).
bool ApplyVLEChangeScale(SharedCalcState& s, std::string_view xLower, std::string_view xUpper,
                         std::string_view yLower, std::string_view yUpper);

}  // namespace tervale
