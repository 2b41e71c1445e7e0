#pragma once
// The flash program without its screens: the case's reset and examples, the flash data file,
// the calculation of the Calculate button and the condensing curve.
#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "state/limits.h"

namespace tervale {

struct SharedCalcState;

// The reset of the flash screen's load: BatchMode 2, caption prefix, constants, matrices, memo
// and the flash case cleared, NrtlAlpha 0.4, units 1/3/2, KValueMethod 1, EnthalpyMethod 1,
// CalcType 0, NC 0.
void ResetFlashCase(SharedCalcState& s);

// The two built-in examples (1: methanol/ethanol/water/1-propanol, Wilson; 2: ethane/propane/
// n-butane, S-R-K). They assign what they list over whatever the state holds; anything else
// stays as it was. Any other number does nothing.
void LoadFlashExample(SharedCalcState& s, int number);

// Caption of calculation type 0..5 in the option group (the same text in both languages);
// empty for any other number.
std::string_view FlashCalcTypeCaption(int calcType);
// The questions of the read and save buttons, the file's name inside the brackets.
std::string FlashReadQuestion(std::string_view fileName);
std::string FlashSaveQuestion(std::string_view fileName);
std::string FlashOverwriteQuestion(std::string_view fileName);

// The first record of a flash data file (the column program's files begin the same way).
inline constexpr const char* kFlashFileMagic = "Distillation Data";

// The flash data file as text (CRLF lines).
std::string FlashFileText(const SharedCalcState& s);
// Writes the file through a temporary file and a rename; DataFileName := path.
void WriteFlashFile(SharedCalcState& s, const std::filesystem::path& path);
// Reads a flash data file into a scratch case and commits it only when the whole file has
// been read; DataFileName := path. A wrong first record throws InputRefused with the message
// "Flash計算のデータファイルではありません"; a missing or malformed field throws FileReadError.
// In both cases the state is left as it was.
void ReadFlashFile(SharedCalcState& s, const std::filesystem::path& path);

// What the Calculate button leaves on the screen for CalcType 0..4.
struct FlashResult {
  int calcType = 0;
  // Temperature and pressure as the text boxes hold them afterwards: the solved one is the
  // routine's unrounded result (bubble and dew temperatures of methods 1-3 in C whatever
  // TempUnit says), the other the input.
  double temperature = 0;
  double pressure = 0;
  double vf = 0;
  Composition x{}, y{}, k{}, gamma{};
  bool hasEnthalpy = false;  // EnthalpyMethod above 0
  double hFeed = 0, hVapour = 0, hLiquid = 0;
  bool showVapourH = false, showLiquidH = false;  // VF > 0, VF < 1
  // Display texts in the screen's formats.
  std::string temperatureText, pressureText, vfText;
  std::array<std::string, kMaxComponents + 1> xText{}, yText{}, kText{};
  std::string hFeedText, hVapourText, hLiquidText;  // empty when not shown
};

// Runs calculation type 0..4 at temperature `temp` and pressure `press` in the user's units
// (the text boxes), feed FeedZ; FlashX and FlashY receive the phases. Messages go through the
// state's dialogs. Type 5 is the condensing curve (CalcCondensingCurve).
FlashResult RunFlashCalculation(SharedCalcState& s, int calcType, double temp, double press);

inline constexpr int kCurvePoints = 201;

struct CondensingCurve {
  double pressure = 0;  // the pressure box rounded to " ###0.000", user's unit
  double bubbleT = 0, dewT = 0;
  bool hasEnthalpy = false;
  double hBubble = 0, hDew = 0;  // liquid at the bubble point, vapour at the dew point
  double tLow = 0, tHigh = 0, step = 0;
  // False when the upper limit is not above the lower one (the message has been shown).
  bool drawn = false;
  // Points 1..201: temperature as entered (the limits' unit), V/F, mixture enthalpy.
  std::array<double, kCurvePoints + 1> t{}, vf{}, h{};
};

// The condensing curve at pressure `press` (user's unit): an empty limit takes the bubble
// (lower) or dew (upper) temperature; the bubble point starts from the lower limit (0 when
// empty), the dew point from 100.
CondensingCurve CalcCondensingCurve(SharedCalcState& s, std::optional<double> tLow,
                                    std::optional<double> tHigh, double press);

// The detail of one point of a drawn curve (index 1..201): the flash repeated there.
struct CurvePoint {
  int index = 0;
  double t = 0, vf = 0;
  Composition z{}, y{}, x{}, k{};
  std::string tText, vfText;  // "####.#0", "##.###0"
  std::array<std::string, kMaxComponents + 1> zText{}, yText{}, xText{}, kText{};
};
CurvePoint CurvePointDetail(SharedCalcState& s, const CondensingCurve& curve, int index);

}  // namespace tervale
