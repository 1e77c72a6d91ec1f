// What the user chooses of a confidence search: its level, and the parameters it is for.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/page/refusal.h"
#include "core/program_state.h"

namespace quorvane {

inline constexpr std::size_t kUserLevel = 2;  // the place in ConfidenceLevels that can be typed

// The level as its box shows it: "95.46".
std::string ConfidenceLevelText(const QuorvaneModule& module, std::size_t place);

// Why `percent` cannot be a level: 50 < level < 100.
Refusal RefusalOfLevel(double percent);

// Takes a level, in percent, 50 < level < 100 as shown too, as the user's own.
Refusal SetConfidenceLevel(QuorvaneModule& module, double percent);

// The place among the model's shared parameters (from 0) of the one with that name in a job, into
// `place`. Refused if the model of `setup` does not have it, or holds it.
Refusal FindFitted(const FitSetup& setup, std::string_view name, std::size_t& place);

// Adds the shared parameter with that name in a job to what is searched. Refused if the model of
// `setup` does not have it, or holds it.
Refusal ChooseForSearch(ConfidenceRequest& request, const FitSetup& setup, std::string_view name);

}  // namespace quorvane
