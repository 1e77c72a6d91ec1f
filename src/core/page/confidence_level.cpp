#include "core/page/confidence_level.h"

#include <optional>

#include "base/number_format.h"
#include "base/text.h"

namespace quorvane {

namespace {

constexpr double kLeast = 50.0;  // percent, both outside the range
constexpr double kMost = 100.0;

std::string LevelText(double level) {
  return FormatNumber(level, "00.00");
}

}  // namespace

std::string ConfidenceLevelText(const QuorvaneModule& module, std::size_t place) {
  return LevelText(module.ConfidenceLevels[place]);
}

LevelEntry EnterConfidenceLevel(QuorvaneModule& module, std::string_view text) {
  const std::optional<double> level = ParseNumeric(text);
  if (!level) return LevelEntry::kNotANumber;
  if (*level <= kLeast || *level >= kMost) return LevelEntry::kOutOfRange;
  // Neither is a level that the box, from which the search takes it, shows as one of the limits.
  const std::string shown = LevelText(*level);
  if (shown == LevelText(kLeast) || shown == LevelText(kMost)) return LevelEntry::kOutOfRange;
  module.ConfidenceLevels[kUserLevel] = *level;
  return LevelEntry::kTaken;
}

}  // namespace quorvane
