#include "core/page/shared_values.h"

#include <cmath>

#include "base/arithmetic.h"
#include "base/number_format.h"
#include "core/page/display_form.h"
#include "fit/models.h"

namespace quorvane {

namespace {

bool IsConstant(const SharedParameter& value) {
  return value.kind == ParameterKind::kLnK;
}

bool IsRatio(const SharedParameter& value, const FitSetup& setup) {
  return MayBeRatio(value) && setup.ConstrainKRatios;
}

// The K of a value: by their reactions where those have names.
std::string_view KName(const SharedParameter& value, const Model& model) {
  const ModelParameter* parameter = FindParameter(model, value);
  return parameter == nullptr || parameter->k.empty() ? value.label : parameter->k;
}

std::string WeightLabel(const SharedParameter& value, const QuorvaneModule& module) {
  const char* component = value.place == 2 ? "-B" : "-A";
  return std::string(module.Preferences.UseBuoyantMW ? "Buoy. " : "") + std::string(value.label) +
         (module.Setup.TwoComponentModel ? component : "");
}

std::string RatioName(const SharedParameter& value) {
  return std::string(value.label) + "/K1";
}

// How weights and constants K are turned from one form into the other.
struct Conversion {
  decltype(&MolecularWeight) weight;
  decltype(&ShownK) constant;
};

constexpr Conversion kToShown = {MolecularWeight, ShownK};
constexpr Conversion kToStored = {BuoyantWeight, LnKOf};

double Convert(const SharedParameter& value, const QuorvaneModule& module,
               const Conversion& conversion, double number) {
  const FitPage& page = module.FitPage;
  if (value.kind == ParameterKind::kWeight && !module.Preferences.UseBuoyantMW) {
    return conversion.weight(number, value.place == 2 ? page.VbarB : page.Vbar, page.Density);
  }
  const bool logarithm = IsConstant(value) && !IsRatio(value, module.Setup);
  return logarithm ? conversion.constant(number, module.Preferences.KFormat) : number;
}

bool MustBePositive(const SharedParameter& value, const QuorvaneModule& module) {
  return IsConstant(value) &&
         (module.Preferences.KFormat == KDisplay::kPlain || IsRatio(value, module.Setup));
}

Refusal NotPositive(const SharedParameter& value, const FitSetup& setup) {
  if (&value == &shared::kLnK1) return "K must be >0 !";
  return (IsRatio(value, setup) ? RatioName(value) : std::string(value.label)) +
         " must be greater than 0!";
}

// ln K as the digits of its box give it.
double LnKAsShown(const SharedParameter& value, const QuorvaneModule& module) {
  const std::string text =
      FormatParam(Convert(value, module, kToShown, module.FitPage.*value.field));
  return LnKOf(ParseNumeric(text).value_or(0.0), module.Preferences.KFormat);
}

}  // namespace

bool HasValue(const FitSetup& setup, const SharedParameter& value) {
  return FindParameter(*setup.FitModel, value) != nullptr;
}

std::string LabelOf(const SharedParameter& value, const QuorvaneModule& module) {
  if (value.kind == ParameterKind::kWeight) return WeightLabel(value, module);
  if (!IsConstant(value)) return std::string(value.label);
  if (IsRatio(value, module.Setup)) return RatioName(value);
  return KLabel(KName(value, *module.Setup.FitModel), module.Preferences.KFormat);
}

std::string TextOf(const SharedParameter& value, const QuorvaneModule& module) {
  try {
    return FormatParam(Convert(value, module, kToShown, module.FitPage.*value.field));
  } catch (const ArithmeticFault& fault) {
    return fault.what();
  }
}

Refusal Enter(const SharedParameter& value, QuorvaneModule& module, std::string_view text) {
  const std::optional<double> entered = ParseNumeric(text);
  if (!entered) return kIllegalValue;
  if (MustBePositive(value, module) && !(*entered > 0.0)) return NotPositive(value, module.Setup);
  try {
    const double stored = Convert(value, module, kToStored, *entered);
    FormatParam(Convert(value, module, kToShown, stored));
    module.FitPage.*value.field = stored;
  } catch (const ArithmeticFault& fault) {
    return fault.what();
  }
  return {};
}

std::string TakenBy(const SharedParameter& value, const QuorvaneModule& module) {
  return MustBePositive(value, module) ? kTakesAboveZero : kTakesAnyNumber;
}

Refusal ConstrainShownRatios(QuorvaneModule& module) {
  try {
    const double lnK1 = LnKAsShown(shared::kLnK1, module);
    const double ratio2 = std::exp(LnKAsShown(shared::kLnK2, module) - lnK1);
    const double ratio3 = std::exp(LnKAsShown(shared::kLnK3, module) - lnK1);
    for (const double ratio : {ratio2, ratio3}) FormatParam(ratio);
    if (ratio2 == 0.0) return RatioName(shared::kLnK2) + " must be greater than 0!";
    if (ratio3 == 0.0) return RatioName(shared::kLnK3) + " must be greater than 0!";
    module.FitPage.ModelLnK2 = ratio2;
    module.FitPage.ModelLnK3 = ratio3;
  } catch (const ArithmeticFault& fault) {
    return fault.what();
  }
  ConstrainRatios(module.Setup);
  return {};
}

Refusal ReleaseShownRatios(QuorvaneModule& module) {
  try {
    ReleaseRatios(module.Setup, module.FitPage, LnKAsShown(shared::kLnK1, module));
  } catch (const ArithmeticFault& fault) {
    return fault.what();
  }
  return {};
}

}  // namespace quorvane
