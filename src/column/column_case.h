#pragma once
#include <array>
#include <cstdint>
#include <string>

#include "state/limits.h"

namespace tervale {

struct SharedCalcState;

using FeedArray = std::array<double, kMaxFeeds + 1>;
using SideCutArray = std::array<double, kMaxSideCuts + 1>;

// The products of a column as the result tables list them: liquid products are the top liquid
// (if any), the liquid side cuts and last the bottom; vapour products the top vapour (if any)
// and the vapour side cuts.
inline constexpr int kMaxLiqProducts = kMaxSideCuts + 2;
inline constexpr int kMaxVapProducts = kMaxSideCuts + 1;

struct ProductLists {
  int NLiqProduct = 0;
  std::array<double, kMaxLiqProducts + 1> LiqProductFlow{};
  std::array<int, kMaxLiqProducts + 1> LiqProductTray{};
  int NVapProduct = 0;
  std::array<double, kMaxVapProducts + 1> VapProductFlow{};
  std::array<int, kMaxVapProducts + 1> VapProductTray{};
};

// Part of SharedCalcState: the continuous column's case and its tray profiles. The counts
// (NC, NTray, NFeed, NSideLiq, NSideVap), methods, units, components and memo live in the
// shared state itself. Temperatures and pressures of the case are in the user's units; the
// tray state is in base units (C, MPa), enthalpies in the user's heat unit.
struct ColumnCase {
  // convergence settings: index 1 material balance stage, 2 heat balance stage
  std::array<int, 3> ConvMaxIter{};
  std::array<double, 3> ConvTolerance{};

  // short-cut inputs
  int ShortCutLightKey = 0;
  int ShortCutHeavyKey = 0;
  int ShortCutCalcType = 0;   // 0 top/bottom mole fractions, 1 recoveries to the top
  int ShortCutCondenser = 0;  // 0 total, 1 partial
  std::array<double, 3> ShortCutLightValue{};
  std::array<double, 3> ShortCutHeavyValue{};
  double ShortCutPress = 0;
  double ShortCutTemp = 0;

  // tower
  double TopLiquidFlow = 0;
  double TopVaporFlow = 0;
  double RefluxRatio = 0;
  double TopTempGuess = 0;
  double BottomTempGuess = 0;
  double TopPress = 0;
  double BottomPress = 0;
  TrayArray TrayPressInput{};  // 0 = interpolate

  // feeds 1..NFeed
  std::array<int, kMaxFeeds + 1> FeedTray{};
  FeedArray FeedTemp{}, FeedPress{}, FeedVF{}, FeedFlow{};
  std::array<CompArray, kMaxFeeds + 1> FeedComp{};

  // side cuts
  std::array<int, kMaxSideCuts + 1> LiqSideTray{};
  SideCutArray LiqSideFlow{};
  std::array<int, kMaxSideCuts + 1> VapSideTray{};
  SideCutArray VapSideFlow{};

  // derived totals (RefreshColumnTotals)
  double TotalFeed = 0;
  double TotalSideCut = 0;
  double BottomFlow = 0;

  // product lists, built when a calculation starts
  ProductLists Products;

  // results
  std::uint8_t CalcFinished = 0;
  int PrevNC = 0;
  int PrevNTray = 0;
  TrayArray TrayT{}, TrayP{}, TrayV{}, TrayL{}, TrayHV{}, TrayHL{};
  TrayCompMatrix TrayX{}, TrayY{};
  FeedArray FeedEnthalpy{};

  // the result display
  int GraphDecades = 6;

  // set by ReadColumnFile when the file is not a column case
  bool ReadFailed = false;
  // what the last read found wrong (file, line, field), for callers without a message box
  std::string ReadError;
};

// Defaults of a new case.
void ResetColumnCase(SharedCalcState& s);
// TotalFeed, TotalSideCut and BottomFlow from the inputs.
void RefreshColumnTotals(SharedCalcState& s);
// The product lists from the present inputs (totals included); BuildProductLists stores them.
ProductLists MakeProductLists(const SharedCalcState& s);
void BuildProductLists(SharedCalcState& s);
// The built-in example of the main screen.
void LoadColumnExample1(SharedCalcState& s);

// Input checks. Each returns the message the user is shown, empty when the input passes.
std::string CheckPlateLimit(const SharedCalcState& s, int nTray);
std::string CheckFeedLocation(const SharedCalcState& s, int tray);
std::string CheckLiqSideCut(const SharedCalcState& s, int tray, double flow);
std::string CheckVapSideCut(const SharedCalcState& s, int tray, double flow);
// Top vapour and top liquid drawn together are not supported.
std::string CheckTopDraw(const SharedCalcState& s);
// "Bottom flow negative", recalculating the totals first; shown at every refresh.
std::string CheckBottomFlow(SharedCalcState& s);
// Totals refreshed and the bottom-flow notice shown, as after every input screen.
void RefreshColumnSummary(SharedCalcState& s);

// The main screen's title text for a data file: the name behind the last backslash (or slash),
// plus one blank.
std::string ShowFileNameText(const std::string& path);

// What the Go button checks, plus the guards a case from a file needs so that the solver never
// indexes outside the column (counts, tray numbers, feed). Empty when the case can run.
std::string CheckColumnRunnable(const SharedCalcState& s);

// The case file ("Distillation Data"), also the Result.dat continue file. The reader parses
// into a scratch state and commits only a complete case; on failure ReadFailed is set, the
// message is shown and the state in memory stays as it was. A file whose results are cut short
// loads the case without results (CalcFinished 0) and says so. Returns !ReadFailed.
bool ReadColumnFile(SharedCalcState& s, const std::string& path);
// Writes the case, and the results when CalcFinished = 1 (atomically).
void WriteColumnFile(SharedCalcState& s, const std::string& path);
// The text WriteColumnFile writes.
std::string ColumnFileText(const SharedCalcState& s);

}  // namespace tervale
