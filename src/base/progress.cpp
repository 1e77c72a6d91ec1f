#include "base/progress.h"

#include <algorithm>

#include "base/number_format.h"

namespace quorvane {

std::string ProgressText(const Progress& progress) {
  const std::string what(progress.what);
  switch (progress.phase) {
    case SearchPhase::kBracketing:
      return what + ": bracketing, " + FormatParam(progress.trial);
    case SearchPhase::kBisection:
      return what + ": bisection, " + FormatParam(progress.trial);
    case SearchPhase::kStarts:
      return what + ": " + std::to_string(progress.iteration) + " of " +
             FormatNumber(progress.trial, "0") + " starts, least sum of squares " +
             FormatNumber(progress.sumOfSquares, "0.000000E+00");
    case SearchPhase::kParts:
      return what + ": " + FormatNumber(100.0 * progress.iteration / progress.trial, "0") + " %";
    case SearchPhase::kNone:
      break;
  }
  return what + ": iteration " + std::to_string(progress.iteration) + ", sum of squares " +
         FormatNumber(progress.sumOfSquares, "0.000000E+00");
}

std::optional<double> ShareDone(const Progress& progress) {
  const bool counted =
      progress.phase == SearchPhase::kStarts || progress.phase == SearchPhase::kParts;
  if (!counted || !(progress.trial > 0.0)) return std::nullopt;
  return std::clamp(progress.iteration / progress.trial, 0.0, 1.0);
}

}  // namespace quorvane
