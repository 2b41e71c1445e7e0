#pragma once
#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "state/limits.h"

namespace tervale {

struct SharedCalcState;

inline constexpr int kVLECurvePoints = 201;
inline constexpr int kVLEMaxResiduals = 2 * kMaxDataPoints;
// A sample the model could not give: its temperature or pressure and y are set to this.
inline constexpr double kVLEMissing = -999.0;
// MPa per mmHg, the rounded factor the estimation program converts its pressures with.
inline constexpr double kVLEMPaPerMmHg = 0.00013322;
inline constexpr std::string_view kVLEFileMagic = "V_L Equibrium Data";

// Part of SharedCalcState: measured binary data and the estimation's results.
// Temperatures are always C and pressures mmHg inside, whatever unit the screen shows.
struct VLEDataCase {
  std::array<std::string, kMaxMemoLines + 1> MemoLine{};
  std::array<std::string, 3> ComponentName{};
  // log10 P[mmHg] = A - B / (t[C] + C), components 1 and 2
  std::array<double, 3> AntoineA{}, AntoineB{}, AntoineC{};

  int TPType = 0;              // 0 constant pressure, 1 constant temperature
  int VLETempUnit = 1;         // 1 C, 2 K, 3 F
  int VLEPressUnit = 3;        // 1 MPa, 2 KPa, 3 mmHg, 4 mmH2O, 5 Kgf/cm2, 6 PSIA
  double VLETemperature = 60;  // C
  double VLEPressure = 760;    // mmHg

  int NVLEData = 0;
  std::array<double, kMaxDataPoints + 1> DataTemp{}, DataPress{}, DataX{}, DataY{};

  int CalcType = 1;       // 1 estimate Wilson, 2 estimate NRTL, 3 V-L by Wilson, 4 V-L by NRTL
  int ObjectiveFunc = 0;  // 1..5 once Calc has run
  double WilsonLambda12 = 0, WilsonLambda21 = 0;
  double NrtlTau12 = 0, NrtlTau21 = 0;
  double NrtlAlpha = 0.4;

  // Derived on Calc, not kept in the file.
  std::array<std::array<double, 3>, kMaxDataPoints + 1> GammaExp{};
  std::array<double, kMaxDataPoints + 1> CalcTemp{};
  double InitialTemp = 0;  // the "Init Temp" field as last read; nothing uses it further

  double GraphXMin = 0, GraphXMax = 1, GraphYMin = 0, GraphYMax = 1;

  // Work results of the regression routines and of the drawing.
  std::array<double, kVLEMaxResiduals + 1> ResidualVector{};
  double VaporY1 = 0, VaporY2 = 0;
  std::array<double, kVLECurvePoints + 1> CurveX{}, CurveY{}, CurveGamma1{}, CurveGamma2{},
      CurveTP{};
};

// Odd CalcType is the Wilson model, even the NRTL model.
inline bool IsWilsonType(int calcType) {
  return calcType % 2 != 0;
}
inline bool IsEstimateType(int calcType) {
  return calcType <= 2;
}

// cmdInitialize: the case back to its defaults.
void InitializeVLECase(SharedCalcState& s);

// The data file. The reader checks the first record: a file of another kind shows
// "not Vapor-Liquid Equibrium Data" and returns false with the case untouched. A file that
// passes it but is malformed or cut short throws FileReadError and leaves the case cleared as
// by Initialize. On success the case holds the file (fields not in it at their defaults).
bool ReadVLEDataFile(SharedCalcState& s, const std::filesystem::path& path);
std::string FormatVLEDataFile(const VLEDataCase& c);
void SaveVLEDataFile(const SharedCalcState& s, const std::filesystem::path& path);

// The screen's Read Data and Save Data after the file dialog: the questions first ("Read [ name ]"
// Yes/No/Cancel; "Save [ name ]" and, for an existing file, "exsist [ name ], over-write"), only
// Yes going on. Return true when the file was read or written.
bool ReadVLEDataCommand(SharedCalcState& s, const std::filesystem::path& path);
bool SaveVLEDataCommand(SharedCalcState& s, const std::filesystem::path& path);

// The example buttons: 1 methanol-water, 2 TBA-water at 760 mmHg. Any other number shows
// "not prepared yet" and changes nothing (returns false).
bool LoadVLEExample(SharedCalcState& s, int number);

// What the case screen holds when Calc is pressed: the texts of its fields and the selected
// options. Option indexes are the 0-based positions of the screen's option groups.
struct VLEScreenFields {
  int TPType = 0;
  int TempUnitIndex = 0;   // position in the temperature list, 0-based
  int PressUnitIndex = 2;  // position in the pressure list, 0-based
  std::string PressText = "760";
  std::string TempText;
  std::array<std::string, 3> Name{}, AText{}, BText{}, CText{};  // rows 1, 2
  int CalcTypeIndex = 0;                                         // 0..3
  int ObjectiveIndex = 0;                                        // 0..4
  std::string TempInitialText;
  // Rows of the data grid: first cell (temperature or pressure), x1, y1.
  std::vector<std::array<std::string, 3>> DataRows;
  std::string Para12Text, Para21Text, AlphaText;
};

// Fills the fields from the case as the screen shows it after a read or an example:
// numbers in full precision, data in the selected units. Wilson parameters that are both 0
// (a cleared case) leave the parameter fields blank, so Calc starts from the defaults.
VLEScreenFields DisplayVLECase(SharedCalcState& s);

// cmdMainGoCalc up to the opening of the result screen: every check in order, each failure
// shown as a message; the case is changed only when all have passed (returns true).
bool RunVLECalcDriver(SharedCalcState& s, const VLEScreenFields& f);

// The screen's lenient reading of a number field: the leading number of the text, 0 when
// there is none.
double ReadNumberLeniently(std::string_view text);
bool IsBlankField(std::string_view text);

// A pressure in mmHg, or a temperature in C, in the units the case selects.
double VLEPressureToCaseUnit(SharedCalcState& s, double mmHg);
double VLETemperatureToCaseUnit(SharedCalcState& s, double t);

// P° in mmHg of component 1 or 2 at t in C.
double VLEVapourPressure(const VLEDataCase& c, int component, double t);

}  // namespace tervale
