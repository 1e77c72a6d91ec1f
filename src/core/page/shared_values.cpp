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

// Whether its box shows K itself.
bool IsPlainK(const SharedParameter& value, const QuorvaneModule& module) {
  return IsConstant(value) && !IsRatio(value, module.Setup) &&
         module.Preferences.KFormat == KDisplay::kPlain;
}

Refusal NotPositive(const std::string& constant) {
  return Refusal{constant + " must be greater than 0!"};
}

// Why a K cannot be typed: it has no logarithm.
Refusal RefusalOfK(const SharedParameter& value, const QuorvaneModule& module, double typed) {
  if (!IsPlainK(value, module) || typed > 0.0) return {};
  return &value == &shared::kLnK1 ? Refusal{"K must be >0 !"}
                                  : NotPositive(std::string(value.label));
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

Refusal RefusalOfRatio(const SharedParameter& value, double ratio) {
  return ratio > 0.0 ? Refusal{} : NotPositive(RatioName(value));
}

Refusal SetShared(const SharedParameter& value, QuorvaneModule& module, double number) {
  if (!std::isfinite(number)) return {kIllegalValue};
  Refusal refusal = IsRatio(value, module.Setup) ? RefusalOfRatio(value, number) : Refusal{};
  if (!refusal) module.FitPage.*value.field = number;
  return refusal;
}

Refusal RefusalOfFitting(const SharedParameter& value, bool constrained) {
  return constrained && MayBeRatio(value) ? Refusal{"a constrained ratio is held"} : Refusal{};
}

Refusal SetCheck(const SharedParameter& value, FitSetup& setup, bool checked) {
  if (Refusal held = RefusalOfFitting(value, setup.ConstrainKRatios)) {
    return checked ? held : Refusal{};  // its box stays grey
  }
  setup.*value.check = checked ? CheckState::kChecked : CheckState::kUnchecked;
  return {};
}

Refusal Enter(const SharedParameter& value, QuorvaneModule& module, std::string_view text) {
  const std::optional<double> entered = ParseNumeric(text);
  if (!entered) return {kIllegalValue};
  if (Refusal refusal = RefusalOfK(value, module, *entered)) return refusal;
  try {
    const double stored = Convert(value, module, kToStored, *entered);
    FormatParam(Convert(value, module, kToShown, stored));
    return SetShared(value, module, stored);
  } catch (const ArithmeticFault& fault) {
    return {fault.what()};
  }
}

std::string TakenBy(const SharedParameter& value, const QuorvaneModule& module) {
  const bool positive = IsPlainK(value, module) || IsRatio(value, module.Setup);
  return positive ? kTakesAboveZero : kTakesAnyNumber;
}

Refusal RefusalOfConstraint(const Model& model) {
  return model.kRatios ? Refusal{} : Refusal{"this model has no K ratios"};
}

Refusal ConstrainStoredRatios(QuorvaneModule& module) {
  if (Refusal refusal = RefusalOfConstraint(*module.Setup.FitModel)) return refusal;
  const FitPage& page = module.FitPage;
  if (RefusalOfRatio(shared::kLnK2, page.ModelLnK2) ||
      RefusalOfRatio(shared::kLnK3, page.ModelLnK3)) {
    return Refusal{"the ratios must be greater than 0"};
  }
  ConstrainRatios(module.Setup);
  return {};
}

Refusal ConstrainShownRatios(QuorvaneModule& module) {
  if (Refusal refusal = RefusalOfConstraint(*module.Setup.FitModel)) return refusal;
  try {
    const double lnK1 = LnKAsShown(shared::kLnK1, module);
    const double ratio2 = std::exp(LnKAsShown(shared::kLnK2, module) - lnK1);
    const double ratio3 = std::exp(LnKAsShown(shared::kLnK3, module) - lnK1);
    for (const double ratio : {ratio2, ratio3}) FormatParam(ratio);
    if (Refusal refusal = RefusalOfRatio(shared::kLnK2, ratio2)) return refusal;
    if (Refusal refusal = RefusalOfRatio(shared::kLnK3, ratio3)) return refusal;
    module.FitPage.ModelLnK2 = ratio2;
    module.FitPage.ModelLnK3 = ratio3;
  } catch (const ArithmeticFault& fault) {
    return {fault.what()};
  }
  ConstrainRatios(module.Setup);
  return {};
}

Refusal ReleaseShownRatios(QuorvaneModule& module) {
  try {
    ReleaseRatios(module.Setup, module.FitPage, LnKAsShown(shared::kLnK1, module));
  } catch (const ArithmeticFault& fault) {
    return {fault.what()};
  }
  return {};
}

}  // namespace quorvane
