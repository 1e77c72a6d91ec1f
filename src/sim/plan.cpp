#include "sim/plan.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "base/text.h"
#include "fit/fit_state.h"
#include "sim/sim_boxes.h"

namespace quorvane {

namespace {

constexpr std::size_t kMostSpeeds = 99;
constexpr std::size_t kMostColumns = 32;
constexpr std::size_t kMostWavelengths = 4;

// Columns as cells for equilibrium are filled: 3 mm in two channels, 2 mm in the others. A row a
// channel, a column a centerpiece, as in the tables of the channel windows.
constexpr std::array<std::array<SolutionColumn, 3>, kMaxChannels> kColumns = {{
    {{{6.85, 7.15}, {5.85, 6.05}, {6.09, 6.28}}},
    {{{}, {6.35, 6.55}, {6.40, 6.59}}},
    {{{}, {6.85, 7.05}, {6.71, 6.90}}},
    {{{}, {}, {7.01, 7.20}}},
}};

using Refused = std::optional<PlanRefusal>;

Refused CheckBox(const char* key, SimBox box, double value) {
  const SimBoxInfo& info = InfoOf(box);
  if (std::isfinite(value) && info.bounds.Contain(value)) return std::nullopt;
  return PlanRefusal{key, std::string(info.refusal)};
}

// The first refusal of several checks.
template <class... Checks>
Refused FirstOf(Checks&&... checks) {
  Refused refusal;
  ((refusal = checks(), refusal.has_value()) || ...);
  return refusal;
}

Refused CheckSpeedList(const char* key, const std::vector<double>& speeds) {
  if (speeds.size() > kMostSpeeds) return PlanRefusal{key, "A plan has 1 to 99 speeds."};
  for (const double speed : speeds) {
    if (Refused refusal = CheckBox(key, SimBox::kSpeed, speed)) return refusal;
    if (speed != std::trunc(speed)) return PlanRefusal{key, "A speed is a whole number of rpm."};
  }
  const std::set<double> different(speeds.begin(), speeds.end());
  if (different.size() == speeds.size()) return std::nullopt;
  return PlanRefusal{key, "Each speed stands once."};
}

Refused CheckSpeeds(const ExperimentPlan& plan) {
  if (plan.speeds.empty() == plan.candidates.empty()) {
    return PlanRefusal{"speeds", "Either speeds or candidates are wanted."};
  }
  if (!Chooses(plan)) return CheckSpeedList("speeds", plan.speeds);
  if (Refused refusal = CheckSpeedList("candidates", plan.candidates)) return refusal;
  if (plan.choose < 1 || static_cast<std::size_t>(plan.choose) > plan.candidates.size()) {
    return PlanRefusal{"choose", "At least one of the candidates is chosen, at most all of them."};
  }
  if (CountChoices(plan, kMostChoices) <= kMostChoices) return std::nullopt;
  return PlanRefusal{"choose",
                     "There are more than 200,000 choices; fewer candidates can be ranked."};
}

Refused CheckLoads(const ExperimentPlan& plan) {
  const auto check = [](const char* key, const std::vector<double>& loads) -> Refused {
    if (loads.empty() || loads.size() > kMostColumns) {
      return PlanRefusal{key, "A plan has 1 to 32 loads."};
    }
    for (const double load : loads) {
      if (Refused refusal = CheckBox(key, SimBox::kLoadC, load)) return refusal;
    }
    return std::nullopt;
  };
  if (Refused refusal = check("loads", plan.loads)) return refusal;
  if (!plan.TwoComponents()) {
    if (plan.loadsB.empty()) return std::nullopt;
    return PlanRefusal{"loads_b", "The model has no second component."};
  }
  if (Refused refusal = check("loads_b", plan.loadsB)) return refusal;
  if (plan.loadsB.size() == 1 || plan.loadsB.size() == plan.loads.size()) return std::nullopt;
  return PlanRefusal{"loads_b", "B has as many loads as A, or a single one for all columns."};
}

Refused CheckExtinction(const ExperimentPlan& plan) {
  const std::size_t count = plan.extCoeff.size();
  if (count < 1 || count > kMostWavelengths) {
    return PlanRefusal{"ext_coeff",
                       "A plan has 1 to 4 wavelengths, an extinction coefficient each."};
  }
  if (!plan.TwoComponents()) {
    if (!plan.extCoeffB.empty()) {
      return PlanRefusal{"ext_coeff_b", "The model has no second component."};
    }
    for (const double value : plan.extCoeff) {
      if (Refused refusal = CheckBox("ext_coeff", SimBox::kExtCoeff, value)) return refusal;
    }
    return std::nullopt;
  }
  if (plan.extCoeffB.size() != count) {
    return PlanRefusal{"ext_coeff_b", "A and B have an extinction coefficient at each wavelength."};
  }
  for (std::size_t k = 0; k < count; ++k) {
    const double a = plan.extCoeff[k];
    const double b = plan.extCoeffB[k];
    if (a >= 0.0 && b >= 0.0 && a + b > 0.0 && std::isfinite(a + b)) continue;
    return PlanRefusal{"ext_coeff", "At each wavelength A or B absorbs, and neither below 0."};
  }
  return std::nullopt;
}

Refused CheckCell(const ExperimentPlan& plan) {
  if (!plan.centerpiece) {
    if (Refused refusal = CheckBox("meniscus", SimBox::kRmen, plan.meniscus)) return refusal;
    if (Refused refusal = CheckBox("base", SimBox::kRbase, plan.base)) return refusal;
    if (!(plan.meniscus < plan.base)) {
      return PlanRefusal{"base", std::string(InfoOf(SimBox::kRbase).refusal)};
    }
  }
  if (plan.points >= kMinPoints && plan.points <= kMaxPoints) return std::nullopt;
  return PlanRefusal{"points", "A scan has 10 to 2048 points."};
}

Refused CheckSignal(const ExperimentPlan& plan) {
  if (!(plan.noise > 0.0) || !std::isfinite(plan.noise)) {
    return PlanRefusal{"noise", "The noise must be > 0."};
  }
  if (!(plan.mostSignal > 0.0))
    return PlanRefusal{"most_signal", "The greatest signal must be > 0."};
  if (plan.check >= 0 && plan.check <= kMostChecks) return std::nullopt;
  return PlanRefusal{"check", "0 to 100,000 experiments are simulated."};
}

const char* RefusalOfValue(ParameterKind kind, double value) {
  if (!std::isfinite(value)) return "A number is wanted.";
  switch (kind) {
    case ParameterKind::kWeight:
      return value > 0.0 ? nullptr : "A buoyant weight must be > 0.";
    case ParameterKind::kStoichiometry:
      return value > 1.0 ? nullptr : "A stoichiometry must be > 1.";
    case ParameterKind::kFraction:
      return value >= 0.0 && value < 1.0 ? nullptr : "A fraction lies between 0 and 1.";
    case ParameterKind::kVirial:
      return value >= 0.0 ? nullptr : "The virial coefficient must be >= 0.";
    case ParameterKind::kLnK:
      break;
  }
  return nullptr;
}

Refused CheckParameters(const ExperimentPlan& plan) {
  for (const ModelParameter& parameter : plan.model->parameters) {
    const SharedParameter& shared = *parameter.shared;
    if (const char* why = RefusalOfValue(shared.kind, plan.truth.*shared.field)) {
      return PlanRefusal{std::string(shared.name), why, "parameters"};
    }
  }
  if (!plan.Fitted().empty()) return std::nullopt;
  return PlanRefusal{"parameters", "No parameter is left for the fit."};
}

Refused CheckSample(const ExperimentPlan& plan) {
  if (Refused refusal = CheckBox("temperature", SimBox::kTemp, plan.temperature)) return refusal;
  if (Refused refusal = CheckBox("vbar", SimBox::kVbar, plan.truth.Vbar)) return refusal;
  if (Refused refusal = CheckBox("density", SimBox::kDensity, plan.truth.Density)) return refusal;
  if (plan.truth.Vbar * plan.truth.Density < 1.0) return std::nullopt;
  return PlanRefusal{"density", "The sample must sink: vbar times density is below 1."};
}

// What one fit can hold.
Refused CheckSize(const ExperimentPlan& plan) {
  const std::size_t speeds =
      Chooses(plan) ? static_cast<std::size_t>(plan.choose) : plan.speeds.size();
  const std::size_t scans = speeds * plan.loads.size() * plan.extCoeff.size();
  const std::size_t parameters =
      scans * (plan.TwoComponents() ? 3 : 2) + plan.model->parameters.size();
  if (scans <= kMaxFitSets && parameters <= kMaxParameters) return std::nullopt;
  return PlanRefusal{"loads", "So many scans are more than one fit can hold: it has " +
                                  std::to_string(scans) + " scans and " +
                                  std::to_string(parameters) +
                                  " parameters, of at most 101 and 256."};
}

}  // namespace

std::size_t PlaceOf(const SharedParameter& parameter) {
  return static_cast<std::size_t>(&parameter - SharedParameters.data());
}

bool ExperimentPlan::Fits(const SharedParameter& parameter) const {
  return fitted[PlaceOf(parameter)];
}

std::vector<const ModelParameter*> ExperimentPlan::Fitted() const {
  std::vector<const ModelParameter*> parameters;
  for (const ModelParameter& parameter : model->parameters) {
    if (Fits(*parameter.shared)) parameters.push_back(&parameter);
  }
  return parameters;
}

SolutionColumn ColumnOf(const ExperimentPlan& plan, std::size_t column) {
  if (!plan.centerpiece) return {plan.meniscus, plan.base};
  const std::size_t channel = column % static_cast<std::size_t>(ChannelCount(*plan.centerpiece));
  return kColumns[channel][static_cast<std::size_t>(*plan.centerpiece)];
}

std::size_t CountChoices(const ExperimentPlan& plan, std::size_t most) {
  const auto n = plan.candidates.size();
  const auto k =
      std::min(static_cast<std::size_t>(plan.choose), n - static_cast<std::size_t>(plan.choose));
  std::size_t count = 1;
  for (std::size_t j = 1; j <= k; ++j) {
    count = count * (n - k + j) / j;
    if (count > most) return most + 1;
  }
  return count;
}

std::optional<PlanRefusal> RefusalOf(const ExperimentPlan& plan) {
  return FirstOf([&] { return CheckParameters(plan); }, [&] { return CheckSpeeds(plan); },
                 [&] { return CheckLoads(plan); }, [&] { return CheckExtinction(plan); },
                 [&] { return CheckSignal(plan); }, [&] { return CheckCell(plan); },
                 [&] { return CheckSample(plan); }, [&] { return CheckSize(plan); });
}

}  // namespace quorvane
