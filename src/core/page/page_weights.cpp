#include "core/page/page_weights.h"

#include <cmath>

#include "base/arithmetic.h"
#include "base/number_format.h"
#include "core/page/display_form.h"
#include "core/page/shared_values.h"
#include "fit/model_parameters.h"

namespace quorvane {

namespace {

std::string NameOf(const SharedParameter& value, const FitSetup& setup) {
  if (!setup.TwoComponentModel) return "MW";
  return value.place == 2 ? "MW(B)" : "MW(A)";
}

std::string WeightText(double weight) {
  constexpr double kMostPlain = 1e12;
  return std::fabs(weight) < kMostPlain ? FormatNumber(weight, "#,##0") : FormatParam(weight);
}

PageWeight WeightOf(const SharedParameter& value, const FitSetup& setup, const FitPage& page) {
  const double vbar = value.place == 2 ? page.VbarB : page.Vbar;
  const double buoyancy = 1.0 - vbar * page.Density;
  const std::string name = NameOf(value, setup);
  std::string remark;
  if (!std::isfinite(buoyancy)) {
    remark = "vbar density is beyond all numbers";
  } else if (!(buoyancy > 0.0)) {
    remark = "1 - vbar density is " + FormatNumber(buoyancy, "0.0###") + ", not above 0";
  }
  try {
    const double weight = MolecularWeight(page.*value.field, vbar, page.Density);
    if (weight > 0.0) return {name + " = " + WeightText(weight) + " Da", remark, true};
    if (remark.empty()) remark = "the buoyant weight is not above 0";
  } catch (const ArithmeticFault&) {
    if (remark.empty()) remark = "it is beyond all numbers";
  }
  return {name + ": none", remark, false};
}

}  // namespace

std::vector<PageWeight> PageWeights(const QuorvaneModule& module) {
  return PageWeights(module.Setup, module.FitPage);
}

std::vector<PageWeight> PageWeights(const FitSetup& setup, const FitPage& page) {
  std::vector<PageWeight> weights;
  for (const SharedParameter* value : {&shared::kMW, &shared::kMWB}) {
    if (HasValue(setup, *value)) weights.push_back(WeightOf(*value, setup, page));
  }
  return weights;
}

std::vector<Constant> ConstantsOfWeights(const QuorvaneModule& module) {
  std::vector<Constant> constants;
  if (HasValue(module.Setup, shared::kMW)) constants.push_back(Constant::kVbar);
  if (HasValue(module.Setup, shared::kMWB)) constants.push_back(Constant::kVbarB);
  if (!constants.empty()) constants.push_back(Constant::kDensity);
  return constants;
}

std::string ConstantText(const QuorvaneModule& module, Constant constant) {
  const double value = ValueOf(module, constant);
  if (constant == Constant::kDensity) return "density " + FormatNumber(value, "0.00####");
  const char* const component = constant == Constant::kVbarB     ? "(B)"
                                : module.Setup.TwoComponentModel ? "(A)"
                                                                 : "";
  return std::string("vbar") + component + " " + FormatNumber(value, "0.00##");
}

}  // namespace quorvane
