// How far a long calculation has come.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorvane {

// What a confidence search does with its parameter; or fits from many starts, or the parts of a
// larger work.
enum class SearchPhase { kNone, kBracketing, kBisection, kStarts, kParts };

struct Progress {
  std::string_view what;      // "Fit", or the parameter under search
  int iteration = 0;          // of the running fit, from 1; of starts and parts, those ended
  double sumOfSquares = 0.0;  // in squared signal units
  SearchPhase phase = SearchPhase::kNone;  // of a search
  double trial =
      0.0;  // value at which a search holds the parameter; of starts and parts, their number
};

// A line for status bar or terminal: "Fit: iteration 7, sum of squares 1.234567E-03",
// "LnK1: bracketing, 12.3450", "Check Minimum: 7 of 21 starts, least sum of squares 1.234567E-03"
// or "Monte Carlo: 40 %".
std::string ProgressText(const Progress& progress);

// The share of the work that is done, 0 to 1; nothing where nobody knows how much there is.
std::optional<double> ShareDone(const Progress& progress);

}  // namespace quorvane
