#pragma once

namespace tervale {

struct SharedCalcState;

// Conversions between the user's units (UnitSelection) and the base units of the routines
// (C, MPa). An out-of-range selection passes the number through unchanged.
double ConvTempToBase(const SharedCalcState& s, double x);
double ConvTempFromBase(const SharedCalcState& s, double x);
double ConvPressToBase(const SharedCalcState& s, double x);
double ConvPressFromBase(const SharedCalcState& s, double x);
// HeatUnit 3 shows a message (hence the non-const state) and passes the number through.
double ConvHeatToDisplay(SharedCalcState& s, double x);
double ConvHeatToBase(SharedCalcState& s, double x);

}  // namespace tervale
