// Whether a finished fit is at rest. The end of FitData is an absolute rule, so with small signals
// a fit can be finished far from where its sum of squares stands still.
#pragma once

#include <optional>
#include <string>

namespace quorvane {

class Host;
class StopFlag;
struct FitState;
struct RestEnd;

// At rest is a fit whose sum falls no further than this when it goes on, and whose fitted
// parameters move no further.
inline constexpr double kRestSumFall = 1e-6;  // relative
inline constexpr double kRestMove = 0.01;     // standard errors

// Steps after which JudgeRest gives up; a fit at rest takes one to three.
inline constexpr int kVerdictSteps = 100;

struct RestVerdict {
  std::optional<bool> atRest;  // absent: not known, because of a stop or the limit on the steps
  double sum = 0.0;            // lowest sum of squares reached by going on
  double sumFall = 0.0;        // (sum at the fit's values - sum) / sum
  double largestMove = 0.0;    // of a fitted parameter over its standard error where it went
  // The trimmed name of the one that moved so; where the data do not determine some parameters,
  // so that they have no standard error, the names of these, parted by ", ".
  std::string moved;
  bool determined = true;  // no parameter lacks a standard error or runs away
  std::string reason;      // the whole verdict in a sentence or two
};

// Lets a copy of the finished `fit` go on, by BringToRest, for at most `mostSteps` steps. Sums
// below 1e-20 of the squared signal count as that: data without noise come to rest too. The result
// does not depend on time or threads. Throws nothing that the fit runs into; all numbers are
// finite.
RestVerdict JudgeRest(const FitState& fit, const StopFlag& stop, Host& host,
                      int mostSteps = kVerdictSteps);

// Why BringToRest has found no rest for `fit`, in a sentence; empty if it has.
std::string NoRestText(const FitState& fit, const RestEnd& end);

// What the quality of a fit has to say of its rest; nothing if all is well.
std::optional<std::string> RestRemark(const RestVerdict& verdict);

}  // namespace quorvane
