#pragma once
#include "state/limits.h"

namespace tervale {

struct SharedCalcState;

// The one equilibrium library of the suite. Temperatures in C, pressures in MPa; every routine
// overwrites KValue (and Gamma for the activity-coefficient methods) in the state.
void CalcGammaWilson(SharedCalcState& s, const Composition& x);
void CalcGammaNRTL(SharedCalcState& s, const Composition& x);

// Bubble temperature: C for methods 1-3; for methods 4 and 5 the EOS result passed through
// ConvTempFromBase. T is the start value.
double CalcBubbleTemperature(SharedCalcState& s, double T, double P, const Composition& x);
// Dew temperature, C. y is never changed.
double CalcDewTemperature(SharedCalcState& s, double T, double P, const Composition& y);
// Bubble and dew pressure in the user's unit (ConvPressFromBase). P is used only by methods 4/5.
double CalcBubblePressure(SharedCalcState& s, double T, double P, const Composition& x);
double CalcDewPressure(SharedCalcState& s, double T, double P, const Composition& y);

// Gamma of the selected method from the liquid fractions x: Wilson (2), NRTL (3), 1.0 otherwise.
void CalcGamma(SharedCalcState& s, const Composition& x);

// KValueMethod 4 or 5: the equations of state, which only have a bubble-temperature form.
bool IsEosMethod(const SharedCalcState& s);
// What the routines without an equation-of-state form do for methods 4 and 5: the message
// "S-R-K / P-Rの式は未だありません" and every K set to 1.0.
void NoEosForm(SharedCalcState& s);

// Vapour pressure of component i at t C, mmHg.
double AntoinePressureMmHg(const SharedCalcState& s, int i, double t);

}  // namespace tervale
