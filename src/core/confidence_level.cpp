#include "core/confidence_level.h"

#include <optional>

#include "base/number_format.h"
#include "base/text.h"

std::string ConfidenceLevelText(const QuorvaneModule& module, std::size_t place) {
  return FormatNumber(module.ConfidenceLevels[place], "00.00");
}

LevelEntry EnterConfidenceLevel(QuorvaneModule& module, std::string_view text) {
  const std::optional<double> level = ParseNumeric(text);
  if (!level) return LevelEntry::kNotANumber;
  if (*level <= 50.0 || *level >= 100.0) return LevelEntry::kOutOfRange;
  module.ConfidenceLevels[kUserLevel] = *level;
  return LevelEntry::kTaken;
}
