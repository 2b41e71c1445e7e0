#pragma once
#include <string>
#include <vector>

#include "io/report_table.h"

namespace tervale {

struct SharedCalcState;

// Heat balance of a solved column, in the enthalpy unit the solver holds.
struct ColumnDuties {
  double HeatIn = 0, HeatOut = 0;
  double Condenser = 0, Reboiler = 0;
};
ColumnDuties CalcColumnDuties(const SharedCalcState& s);

// Material balance per component (mole and weight totals) and, when EnthalpyMethod > 1, the
// heat block with the condenser and reboiler duties.
io::ReportTable ColumnBalanceTable(SharedCalcState& s);

enum class TrayView { LiquidMol, VaporMol, LiquidWt, VaporWt };
io::ReportTable ColumnTrayTable(SharedCalcState& s, TrayView view);

enum class ProductView { FeedMol, FeedWt, VaporMol, VaporWt, LiquidMol, LiquidWt };
io::ReportTable ColumnProductTable(SharedCalcState& s, ProductView view);

// Graph series. Points are (x, tray); trays are numbered from the top.
struct GraphSeries {
  std::string name;
  bool vapour = false;
  int component = 0;
  std::vector<std::pair<double, double>> points;
};
struct ProfileGraph {
  std::string title;
  double xMin = 0, xMax = 1;  // composition: log10 of the mole fraction
  int divisions = 0;
  std::vector<std::string> xLabels;
  std::vector<int> markTrays;  // ">>" marks: feed and side-cut trays
  std::vector<GraphSeries> series;
};
// Composition profile on a log axis of GraphDecades decades ending at 1; a fraction below the
// axis lies at the left edge and a segment crossing the edge is cut where it crosses.
ProfileGraph CompositionGraph(const SharedCalcState& s);
// Temperature profile in the user's unit, axis from tray 1's to tray NTray's temperature.
ProfileGraph TemperatureGraph(const SharedCalcState& s);
// The graph-division screen: d typed, GraphDecades = d + 1, 6 when that is not above 0.
void SetGraphDivision(SharedCalcState& s, double d);

}  // namespace tervale
