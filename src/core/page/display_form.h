// The forms in which association constants and molecular weights are shown and typed. Inside there
// are natural logarithms and buoyant weights only.
#pragma once

#include <string>

#include "base/k_display.h"

namespace quorvane {

// ln K, log10 K or K from ln K; a K beyond the range of double is an infinity.
double ShownK(double lnK, KDisplay display);

// ln K from what ShownK gives. Throws ArithmeticFault for a K of 0 or below.
double LnKOf(double shown, KDisplay display);

// M from M(1 - vbar rho) and back, Da; vbar in ml/g, density in g/ml.
// Both throw ArithmeticFault (division by zero) where vbar rho is 1 and one does not tell the
// other.
double MolecularWeight(double buoyant, double vbar, double density);
double BuoyantWeight(double weight, double vbar, double density);

// FormatParam of `value`; for an infinity or a NaN the description of that fault.
std::string ParamText(double value);

}  // namespace quorvane
