#include "state/units.h"

#include "state/shared_state.h"

namespace tervale {
namespace {
// "Kcal" multiplies by this factor and "J" passes numbers through: kept so on purpose.
constexpr double kHeatFactor = 4186.05;
constexpr std::string_view kBtuNotSupported = "熱量変換 BTU は未だサポートしていません。";
}  // namespace

double ConvTempToBase(const SharedCalcState& s, double x) {
  switch (s.Unit.TempUnit) {
    case 1: return x;
    case 2: return x - 273.15;
    case 3: return (x - 32) * 5 / 9;
    default: return x;
  }
}

double ConvTempFromBase(const SharedCalcState& s, double x) {
  switch (s.Unit.TempUnit) {
    case 1: return x;
    case 2: return x + 273.15;
    case 3: return x * 1.8 + 32;
    default: return x;
  }
}

double ConvPressToBase(const SharedCalcState& s, double x) {
  switch (s.Unit.PressUnit) {
    case 1: return x;
    case 2: return x * 0.001;
    case 3: return x * 0.00013322;
    case 4: return x * 9.80665E-06;
    case 5: return x * 0.0980665;
    case 6: return x * 0.006895;
    default: return x;
  }
}

double ConvPressFromBase(const SharedCalcState& s, double x) {
  switch (s.Unit.PressUnit) {
    case 1: return x;
    case 2: return x * 1000;
    case 3: return x / 0.00013322;
    case 4: return x / 9.80665E-06;
    case 5: return x / 0.0980665;
    case 6: return x / 0.006895;
    default: return x;
  }
}

double ConvHeatToDisplay(SharedCalcState& s, double x) {
  switch (s.Unit.HeatUnit) {
    case 1: return x;
    case 2: return x * kHeatFactor;
    case 3: ShowMessage(s, kBtuNotSupported); return x;
    default: return x;
  }
}

double ConvHeatToBase(SharedCalcState& s, double x) {
  switch (s.Unit.HeatUnit) {
    case 1: return x;
    case 2: return x / kHeatFactor;
    case 3: ShowMessage(s, kBtuNotSupported); return x;
    default: return x;
  }
}

}  // namespace tervale
