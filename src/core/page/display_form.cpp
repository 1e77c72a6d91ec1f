#include "core/page/display_form.h"

#include <array>
#include <cmath>

#include "base/arithmetic.h"
#include "base/number_format.h"

namespace quorvane {

namespace {

double BuoyancyFactor(double vbar, double density) {
  const double factor = 1.0 - vbar * density;
  if (factor == 0.0) throw ArithmeticFault(FaultKind::kDivisionByZero);
  return factor;
}

}  // namespace

double ShownK(double lnK, KDisplay display) {
  if (display == KDisplay::kPlain) return std::exp(lnK);
  return display == KDisplay::kLog10 ? lnK / std::log(10.0) : lnK;
}

double LnKOf(double shown, KDisplay display) {
  if (display == KDisplay::kPlain) return CheckedLog(shown);
  return display == KDisplay::kLog10 ? shown * std::log(10.0) : shown;
}

double MolecularWeight(double buoyant, double vbar, double density) {
  return buoyant / BuoyancyFactor(vbar, density);
}

double BuoyantWeight(double weight, double vbar, double density) {
  return weight * BuoyancyFactor(vbar, density);
}

std::string ParamText(double value) {
  try {
    return FormatParam(value);
  } catch (const ArithmeticFault& fault) {
    return fault.what();
  }
}

}  // namespace quorvane
