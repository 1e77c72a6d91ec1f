// What a fit and an evaluation without a fit have in common: the checks before it, the words of a
// failure.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/program_state.h"

namespace quorvane {

class Host;
struct FitSource;

// What the points of a fit of the page are made from; refers to `module`.
FitSource FitSourceOf(const QuorvaneModule& module);

// A message box.
struct Notice {
  std::string title;
  std::string text;
  std::string_view logLine = {};  // that goes with it; empty: none
};

// Why the cell's ends of `count` positions of the fit from `first` (from 0) do not serve: a
// meniscus that is not below the base, with a model that needs both.
std::optional<Notice> FaultOfCellEnds(const QuorvaneModule& module, int first, int count);

// The same, told; before it asks whether ends that are still where the load put them are to be
// changed. Gives back what held the work up.
std::optional<Notice> CheckCellEnds(const QuorvaneModule& module, int first, int count, Host& host);

// "Error while Fitting Data!  Error in FUNCS0.  Overflow": the routine last entered, and the error.
std::string FittingErrorText(const FitState& fit, const std::string& description);

// The line that sets a report off in the log.
inline constexpr std::string_view kRule = "========================================";

}  // namespace quorvane
