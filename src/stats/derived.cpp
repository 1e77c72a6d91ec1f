#include "stats/derived.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "base/text.h"
#include "base/units.h"
#include "fit/fit_state.h"
#include "fit/models.h"
#include "stats/error_analysis.h"

namespace quorvane {

namespace {

using Transform = std::function<double(double)>;

std::optional<double> Transformed(const SideLimit& side, const Transform& of) {
  if (!side.HasLimit()) return std::nullopt;
  const double value = of(side.limit);
  return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

// A quantity that is monotone in the parameter.
void Add(std::string name, std::string unit, const ParameterErrors& errors, const Transform& of,
         std::vector<DerivedQuantity>& quantities) {
  DerivedQuantity quantity{std::move(name), std::move(unit), of(errors.value), {}};
  if (!std::isfinite(quantity.value)) return;
  if (errors.profile) {
    const bool falls = of(errors.value + std::fabs(errors.value) * 1e-3 + 1e-3) < quantity.value;
    for (const ProfileLimits& limits : errors.profile->limits) {
      DerivedLimits derived{limits.level, Transformed(limits.lower, of),
                            Transformed(limits.upper, of), limits.lower.end, limits.upper.end};
      if (falls) {
        std::swap(derived.lower, derived.upper);
        std::swap(derived.lowerEnd, derived.upperEnd);
      }
      quantity.limits.push_back(derived);
    }
  }
  quantities.push_back(std::move(quantity));
}

void AddWeight(const FitState& fit, const FitPage& page, int place, const ParameterErrors& errors,
               std::vector<DerivedQuantity>& quantities) {
  const double buoyancy = 1.0 - (place == 1 ? page.Vbar : page.VbarB) * page.Density;
  std::string name = "M";
  if (fit.TwoComponentModel) name += place == 1 ? "(A)" : "(B)";
  Add(
      std::move(name), "Da", errors, [=](double buoyant) { return buoyant / buoyancy; },
      quantities);
}

// K is [A_n]/[A]^n where the model has a stoichiometry of the same place, else of one step.
double PowerOf(const FitState& fit, const SharedParameter& constant) {
  int l = fit.SharedBase();
  for (const ModelParameter& parameter : fit.FitModel->parameters) {
    ++l;
    const bool own = parameter.shared->kind == ParameterKind::kStoichiometry &&
                     parameter.shared->place == constant.place;
    if (own) return fit.FitA(l) - 1.0;
  }
  return 1.0;
}

// Concentration to a power.
std::string UnitOf(ConcentrationScale scale, double power) {
  constexpr double kDigits = 1000.0;  // of the power
  std::string unit = scale == ConcentrationScale::kMolar    ? "M"
                     : scale == ConcentrationScale::kSignal ? "signal"
                                                            : "ref. conc.";
  if (power != 1.0) unit += "^" + ShortestText(std::round(power * kDigits) / kDigits);
  return unit;
}

void AddConstant(const FitState& fit, const SharedParameter& constant,
                 const ParameterErrors& errors, std::vector<DerivedQuantity>& quantities) {
  constexpr double kKilo = 1000.0;
  const ConcentrationScale scale = ScaleOf(fit);
  const std::string place = std::to_string(constant.place);
  const std::string unit = UnitOf(scale, PowerOf(fit, constant));
  Add(
      "log10 K" + place, "", errors, [](double lnK) { return lnK / std::log(10.0); }, quantities);
  Add(
      "K" + place, "1/" + unit, errors, [](double lnK) { return std::exp(lnK); }, quantities);
  Add(
      "Kd" + place, unit, errors, [](double lnK) { return std::exp(-lnK); }, quantities);
  if (scale != ConcentrationScale::kMolar) return;
  const double rt = kMolarGasConstant * fit.TempK / kKilo;
  Add(
      "dG" + place, "kJ/mol", errors, [=](double lnK) { return -rt * lnK; }, quantities);
}

// The shared parameter that was analysed, or null for one of a dataset.
const SharedParameter* SharedOf(const FitState& fit, const ParameterErrors& errors) {
  const int place = errors.parameter - fit.SharedBase() - 1;
  if (place < 0 || static_cast<std::size_t>(place) >= fit.FitModel->parameters.size()) {
    return nullptr;
  }
  return fit.FitModel->parameters[static_cast<std::size_t>(place)].shared;
}

}  // namespace

std::vector<DerivedQuantity> DerivedQuantities(const FitState& fit, const FitPage& page,
                                               const ErrorAnalysis& analysis) {
  std::vector<DerivedQuantity> quantities;
  for (const ParameterErrors& errors : analysis.parameters) {
    const SharedParameter* shared = SharedOf(fit, errors);
    if (shared == nullptr) continue;
    if (shared->kind == ParameterKind::kWeight) {
      AddWeight(fit, page, shared->place, errors, quantities);
    } else if (shared->kind == ParameterKind::kLnK) {
      AddConstant(fit, *shared, errors, quantities);
    }
  }
  return quantities;
}

std::string ScaleRemark(const FitState& fit, const ErrorAnalysis& analysis) {
  const bool constants = std::any_of(
      analysis.parameters.begin(), analysis.parameters.end(), [&](const ParameterErrors& errors) {
        const SharedParameter* shared = SharedOf(fit, errors);
        return shared != nullptr && shared->kind == ParameterKind::kLnK;
      });
  if (!constants) return {};
  switch (ScaleOf(fit)) {
    case ConcentrationScale::kMolar:
      return {};
    case ConcentrationScale::kSignal:
      return "Every extinction coefficient is 1, so K counts in units of signal, not of moles: a "
             "free energy needs the extinction coefficients.";
    case ConcentrationScale::kMixed:
      break;
  }
  return "Some extinction coefficients are 1, so K has no molar scale: a free energy needs all "
         "extinction coefficients.";
}

}  // namespace quorvane
