#pragma once
#include <array>
#include <cmath>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "state/bitext.h"
#include "state/shared_state.h"

namespace tervale {

// The message the UNIFAC screen shows when UNIFAC.PAR is not beside the program.
inline constexpr std::string_view kUnifacFileMissingText =
    "ｶﾚﾝﾄﾃﾞｨﾚｸﾄﾘｰにUNIFACﾊﾟﾗﾒｰﾀﾌｧｲﾙ(UNIFAC.PAR)がありません。 プログラム終了します。";

// Open-ended Newton searches stop after this many passes with a message.
inline constexpr int kUnifacNewtonPassLimit = 10000;

// Reads UNIFAC.PAR into s.Unifac (subgroups, main-group names, interaction matrix). The table
// is replaced only when the whole file has been read; errors are FileReadError.
void ReadUnifacParameterFile(SharedCalcState& s, const std::filesystem::path& path);

// The texts of the UNIFAC screen: two rows of name and Antoine constants, the pressure and
// initial temperature boxes and the two count columns of the group table, by subgroup number.
struct UnifacScreenInput {
  std::array<std::string, 3> Name{}, A{}, B{}, C{};  // [1], [2]
  std::string Press = "760";
  std::string Temp = "60";
  std::array<std::array<std::string, 3>, kMaxSubGroups + 1> Count{};  // [subgroup][component]
};

// Fills the screen as the example buttons do (1: methanol-water, 2: benzene-methanol).
UnifacScreenInput UnifacExample(int number);

// Registers subgroup `subgroup` among the case's groups and returns its position; a subgroup
// already registered keeps its place. Returns 0 when the case already holds ten others.
int AddCaseGroup(SharedCalcState& s, int subgroup);

// The checks and preparation of the Estimate button: names, constants, pressure and
// temperature into the case, groups registered with their counts, r, q, l, and the
// interaction pairs checked. False (after the messages) when the input is refused.
bool PrepareUnifacCase(SharedCalcState& s, const UnifacScreenInput& in);

// P_i = 10^(A_i - B_i / (C_i + T)), T in C, for both components.
void CalcPureVaporPress(SharedCalcState& s, double tempC);
// Group mole and area fractions and ln Gamma_k at LiquidX.
void CalcGroupLnGamma(SharedCalcState& s);
// Activity coefficients at LiquidX; returns the total pressure at the present PureVaporPress
// and fills VaporY.
double CalcUnifacGamma(SharedCalcState& s);

// The 201-point sweep at constant pressure (activity coefficients at the initial temperature,
// the bubble temperature found with them frozen) and EndGammaRes.
void RunUnifacSweep(SharedCalcState& s);
// The Wilson pair from EndGammaRes, into DerivedWilson1 and DerivedWilson2.
void DeriveWilsonFromUnifac(SharedCalcState& s);

// The whole Estimate button: checks, sweep and derivation. False when refused.
bool RunUnifacEstimate(SharedCalcState& s, const UnifacScreenInput& in);

// ---- the diagram as data ----
struct GraphPoint {
  double x = 0;
  double v = 0;  // in the curve's own axis unit
};
using Polyline = std::vector<GraphPoint>;

struct UnifacGraphData {
  // plot frame inside a picture of the given size (picture units)
  double Left = 0, Top = 0, Right = 0, Bottom = 0;
  double TempTop = 0, TempBottom = 0, TempTick = 0;  // C
  double GammaTop = 0;
  std::vector<Polyline> YCurve;         // colour 14, segments between samples
  std::vector<Polyline> Gamma1Curve;    // colour 12, clipped at GammaTop
  std::vector<Polyline> Gamma2Curve;    // colour 13
  std::vector<Polyline> TempCurve;      // colour 10
  GraphPoint Gamma1Label, Gamma2Label;  // left ends of the gamma curves
};

UnifacGraphData DrawUnifacGraph(const SharedCalcState& s, double pictureWidth = 10000,
                                double pictureHeight = 7000);

struct UnifacReadout {
  int N = 0;
  double X = 0, Y = 0, Gamma1 = 0, Gamma2 = 0, Temp = 0;
  std::string XText, YText, Gamma1Text, Gamma2Text, TempText;  // as the panel shows them
};
// The mouse read-out at picture abscissa `clickX`; nothing when outside the 201 samples.
std::optional<UnifacReadout> UnifacMouseReadout(const SharedCalcState& s,
                                                const UnifacGraphData& graph, double clickX);

// ---- the screens' tables ----
// Place of subgroup s in the group table: block (1..4) and row (1..22); the counts of block e
// are its columns 5e - 1 and 5e. Subgroups beyond 88 have no place (block 0).
struct UnifacTableCell {
  int Block = 0;
  int Row = 0;
};
UnifacTableCell UnifacGroupTableCell(int subgroup);
// A cell of the interaction grid: a_mn as text, blank for a value at or below -9999.
std::string UnifacInteractionCellText(const SharedCalcState& s, int m, int n);
// The reference screen's text (four lines, the same in both languages).
std::string UnifacReferenceText();

// "Int" of the older program: the greatest whole number not above x.
inline double IntOf(double x) {
  return std::floor(x);
}

// A number typed in a box: the leading number of the text, 0 when there is none.
double ScreenNumber(std::string_view text);

}  // namespace tervale
