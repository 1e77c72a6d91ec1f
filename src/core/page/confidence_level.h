// The level of a confidence search as the user chooses it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/program_state.h"

namespace quorvane {

inline constexpr std::size_t kUserLevel = 2;  // the place in ConfidenceLevels that can be typed

// The level as its box shows it: "95.46".
std::string ConfidenceLevelText(const QuorvaneModule& module, std::size_t place);

enum class LevelEntry { kTaken, kNotANumber, kOutOfRange };

// Takes a typed level, in percent, 50 < level < 100 as shown too, as the user's own; anything else
// changes nothing.
LevelEntry EnterConfidenceLevel(QuorvaneModule& module, std::string_view text);

}  // namespace quorvane
