#include "core/shared_values.h"

#include <algorithm>
#include <cmath>

#include "base/arithmetic.h"
#include "base/number_format.h"
#include "core/display_form.h"
#include "fit/models.h"

namespace {

constexpr int kPlainK = 2;
constexpr int kIsodesmic = 9;
constexpr int kNmerHetero = 10;

bool IsRatio(const SharedValue& value, const FitSetup& setup) {
  return value.form == SharedForm::kFurtherK && setup.ConstrainKRatios;
}

// The K of a value: by their reactions where those have names.
std::string_view KName(const SharedValue& value, int modelIndex) {
  const std::string_view name = value.name;
  if (modelIndex == kIsodesmic && name == "K1") return "Ki";
  if (modelIndex == kNmerHetero && name == "K1") return "Ks";
  if (modelIndex == kNmerHetero && name == "K2") return "Kh";
  return name;
}

std::string WeightLabel(const SharedValue& value, const QuorvaneModule& module) {
  const char* component = value.form == SharedForm::kWeightB ? "-B" : "-A";
  return std::string(module.UseBuoyantMW ? "Buoy. " : "") + value.name +
         (module.Setup.TwoComponentModel ? component : "");
}

std::string RatioName(const SharedValue& value) {
  return std::string(value.name) + "/K1";
}

// How weights and constants K are turned from one form into the other.
struct Conversion {
  decltype(&MolecularWeight) weight;
  decltype(&ShownK) constant;
};

constexpr Conversion kToShown = {MolecularWeight, ShownK};
constexpr Conversion kToStored = {BuoyantWeight, LnKOf};

double Convert(const SharedValue& value, const QuorvaneModule& module, const Conversion& conversion,
               double number) {
  const FitPage& page = module.FitPage;
  switch (value.form) {
    case SharedForm::kPlain:
      return number;
    case SharedForm::kWeight:
      return module.UseBuoyantMW ? number : conversion.weight(number, page.Vbar, page.Density);
    case SharedForm::kWeightB:
      return module.UseBuoyantMW ? number : conversion.weight(number, page.VbarB, page.Density);
    case SharedForm::kFirstK:
    case SharedForm::kFurtherK:
      break;
  }
  return IsRatio(value, module.Setup) ? number : conversion.constant(number, module.KFormat);
}

bool MustBePositive(const SharedValue& value, const QuorvaneModule& module) {
  return IsAssociationConstant(value) &&
         (module.KFormat == kPlainK || IsRatio(value, module.Setup));
}

Refusal NotPositive(const SharedValue& value, const FitSetup& setup) {
  if (value.form == SharedForm::kFirstK) return "K must be >0 !";
  return (IsRatio(value, setup) ? RatioName(value) : value.name) + " must be greater than 0!";
}

// The value that `field` holds, which is one of SharedValues.
const SharedValue& SharedValueOf(double FitPage::*field) {
  return *std::find_if(SharedValues.begin(), SharedValues.end(),
                       [&](const SharedValue& value) { return value.field == field; });
}

// ln K as the digits of its box give it.
double LnKAsShown(const SharedValue& value, const QuorvaneModule& module) {
  const std::string text =
      FormatParam(Convert(value, module, kToShown, module.FitPage.*value.field));
  return LnKOf(ParseNumeric(text).value_or(0.0), module.KFormat);
}

}  // namespace

bool IsAssociationConstant(const SharedValue& value) {
  return value.form == SharedForm::kFirstK || value.form == SharedForm::kFurtherK;
}

bool HasValue(const FitSetup& setup, const SharedValue& value) {
  const auto parameters = FindModel(setup.ModelIndex)->parameters;
  return std::any_of(parameters.begin(), parameters.end(), [&](const SharedParameter& parameter) {
    return parameter.field == value.field;
  });
}

std::string LabelOf(const SharedValue& value, const QuorvaneModule& module) {
  if (value.form == SharedForm::kPlain) return value.name;
  if (!IsAssociationConstant(value)) return WeightLabel(value, module);
  if (IsRatio(value, module.Setup)) return RatioName(value);
  return KLabel(KName(value, module.Setup.ModelIndex), module.KFormat);
}

std::string TextOf(const SharedValue& value, const QuorvaneModule& module) {
  try {
    return FormatParam(Convert(value, module, kToShown, module.FitPage.*value.field));
  } catch (const ArithmeticFault& fault) {
    return fault.what();
  }
}

Refusal Enter(const SharedValue& value, QuorvaneModule& module, std::string_view text) {
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

std::string TakenBy(const SharedValue& value, const QuorvaneModule& module) {
  return MustBePositive(value, module) ? kTakesAboveZero : kTakesAnyNumber;
}

Refusal ConstrainShownRatios(QuorvaneModule& module) {
  const SharedValue& k2 = SharedValueOf(&FitPage::ModelLnK2);
  const SharedValue& k3 = SharedValueOf(&FitPage::ModelLnK3);
  try {
    const double lnK1 = LnKAsShown(SharedValueOf(&FitPage::ModelLnK1), module);
    const double ratio2 = std::exp(LnKAsShown(k2, module) - lnK1);
    const double ratio3 = std::exp(LnKAsShown(k3, module) - lnK1);
    for (const double ratio : {ratio2, ratio3}) FormatParam(ratio);
    if (ratio2 == 0.0) return RatioName(k2) + " must be greater than 0!";
    if (ratio3 == 0.0) return RatioName(k3) + " must be greater than 0!";
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
    ReleaseRatios(module.Setup, module.FitPage,
                  LnKAsShown(SharedValueOf(&FitPage::ModelLnK1), module));
  } catch (const ArithmeticFault& fault) {
    return fault.what();
  }
  return {};
}
