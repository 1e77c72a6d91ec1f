#include "core/page/confidence_level.h"

#include <algorithm>
#include <optional>

#include "base/number_format.h"
#include "base/text.h"
#include "fit/models.h"

namespace quorvane {

namespace {

constexpr double kLeast = 50.0;  // percent, both outside the range
constexpr double kMost = 100.0;

std::string LevelText(double level) {
  return FormatNumber(level, "00.00");
}

Refusal OutOfRange() {
  return Refusal{"Value must be 50 < P < 100 "};
}

}  // namespace

std::string ConfidenceLevelText(const QuorvaneModule& module, std::size_t place) {
  return LevelText(module.ConfidenceLevels[place]);
}

Refusal RefusalOfLevel(double percent) {
  return percent > kLeast && percent < kMost ? Refusal{} : OutOfRange();
}

Refusal SetConfidenceLevel(QuorvaneModule& module, double percent) {
  if (Refusal refusal = RefusalOfLevel(percent)) return refusal;
  // Neither is a level that the box, from which the search takes it, shows as one of the limits.
  const std::string shown = LevelText(percent);
  if (shown == LevelText(kLeast) || shown == LevelText(kMost)) return OutOfRange();
  module.ConfidenceLevels[kUserLevel] = percent;
  return {};
}

Refusal FindFitted(const FitSetup& setup, std::string_view name, std::size_t& place) {
  const std::span<const ModelParameter> parameters = setup.FitModel->parameters;
  const auto found =
      std::find_if(parameters.begin(), parameters.end(),
                   [&](const ModelParameter& parameter) { return parameter.shared->name == name; });
  if (found == parameters.end()) {
    return Refusal{"this model has no \"" + std::string(name) + "\""};
  }
  if (setup.*found->shared->check != CheckState::kChecked) {
    return Refusal{std::string(name) + " is held in this fit"};
  }
  place = static_cast<std::size_t>(found - parameters.begin());
  return {};
}

Refusal ChooseForSearch(ConfidenceRequest& request, const FitSetup& setup, std::string_view name) {
  std::size_t place = 0;
  if (Refusal refusal = FindFitted(setup, name, place)) return refusal;
  request.chosen.resize(setup.FitModel->parameters.size());
  request.chosen[place] = true;
  return {};
}

}  // namespace quorvane
