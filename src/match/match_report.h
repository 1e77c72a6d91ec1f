// The report of a match: lines of text and charts, in their order.
#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/chart.h"
#include "match/match.h"

namespace quorvane {

// A text ends with a line end that it does not hold; a CR LF inside it makes further lines.
using MatchReportItem = std::variant<std::string, Chart>;
using MatchReport = std::vector<MatchReportItem>;

// Appends a line to the report.
void PrintMatch(MatchReport& report, std::string text);

// What to tell when DoMatch or WriteMatchReport threw `fault` for `range`: the fault, and what a
// range must hold. Three lines.
std::string WhyNotMatched(std::string_view fault, FittingRange range);

// Head, one line a scan but the reference, and the three charts of the rms deviations. `result` is
// that of `series`; `dateAndTime` as of DateAndTimeText.
// Throws ArithmeticFault for a number that is not finite.
MatchReport WriteMatchReport(const MatchSeries& series, const MatchResult& result,
                             std::string_view dateAndTime);

}  // namespace quorvane
