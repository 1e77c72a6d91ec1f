#include "core/page/constants.h"

#include <cmath>

namespace quorvane {

namespace {

bool InRange(Constant constant, double value) {
  switch (constant) {
    case Constant::kVbar:
    case Constant::kVbarB:
      return value > 0.25;
    case Constant::kDensity:
      return value > 0.5;
    case Constant::kMCTolerance:
      return value > 0.0 && value <= 10.0;
    case Constant::kCriticalCCC:
      break;
  }
  return value > 0.0 && value < 1.0;
}

}  // namespace

const ConstantDialog& DialogOf(Constant constant) {
  static constexpr ConstantDialog kVbar = {
      "Set vbar / vbar(A)",
      "Enter a value for vbar for single component models, or vbar(A) for hetero-models",
      "0.###0",
      "Vbar Value Error",
      "Vbar Entry Error",
      "vbar/vbar(A) takes a number above 0.25."};
  static constexpr ConstantDialog kVbarB = {
      "Set vbar(B)",      "Enter a value for vbar(B) for hetero-models",
      "0.###0",           "Vbar Value Error",
      "Vbar Entry Error", "vbar(B) takes a number above 0.25."};
  static constexpr ConstantDialog kDensity = {
      "Set solution density", "Enter a value for density", "0.######",
      "Density Value Error",  "Density Entry Error",       "The density takes a number above 0.5."};
  static constexpr ConstantDialog kTolerance = {
      " Set mass conservation fitting tolerance ",
      "Enter a value for MC tolerance\r\n[ (tight) 0 < MCTol <= 10 (loose) ]",
      "#0.######",
      "MC Tolerance Value Error",
      "MC Tolerance Entry Error",
      "The MC tolerance takes a number above 0, up to 10."};
  static constexpr ConstantDialog kCritical = {
      "Set critical CCC value",
      "Enter a value for the absolute value of the \r\ncritical cross-correlation "
      "coefficient\r\n(for display purposes only)",
      "0.######",
      "Critical CCC Value Error",
      "Critical CCC Value Error",
      "The critical CCC takes a number between 0 and 1."};
  switch (constant) {
    case Constant::kVbar:
      return kVbar;
    case Constant::kVbarB:
      return kVbarB;
    case Constant::kDensity:
      return kDensity;
    case Constant::kMCTolerance:
      return kTolerance;
    case Constant::kCriticalCCC:
      break;
  }
  return kCritical;
}

Refusal RefusalOfConstant(Constant constant, double value) {
  return std::isfinite(value) && InRange(constant, value) ? Refusal{}
                                                          : Refusal{"Out-of-range Value Entered"};
}

double ValueOf(const QuorvaneModule& module, Constant constant) {
  switch (constant) {
    case Constant::kVbar:
      return module.FitPage.Vbar;
    case Constant::kVbarB:
      return module.FitPage.VbarB;
    case Constant::kDensity:
      return module.FitPage.Density;
    case Constant::kMCTolerance:
      return module.Preferences.MCTolerance;
    case Constant::kCriticalCCC:
      break;
  }
  return module.Preferences.CriticalCCCValue;
}

Refusal SetConstant(QuorvaneModule& module, Constant constant, double value) {
  if (Refusal refusal = RefusalOfConstant(constant, value)) return refusal;
  switch (constant) {
    case Constant::kVbar:
      module.FitPage.Vbar = module.Preferences.DefaultVbar = value;
      module.ConstantsSet.Vbar = true;
      break;
    case Constant::kVbarB:
      module.FitPage.VbarB = module.Preferences.DefaultVbarB = value;
      module.ConstantsSet.VbarB = true;
      break;
    case Constant::kDensity:
      module.FitPage.Density = module.Preferences.DefaultDensity = value;
      module.ConstantsSet.Density = true;
      break;
    case Constant::kMCTolerance:
      module.Preferences.MCTolerance = value;
      break;
    case Constant::kCriticalCCC:
      module.Preferences.CriticalCCCValue = value;
      break;
  }
  return {};
}

}  // namespace quorvane
