#include "stats/fit_rest.h"

#include <algorithm>
#include <cmath>

#include "base/arithmetic.h"
#include "base/number_format.h"
#include "base/stop_flag.h"
#include "fit/fit_state.h"
#include "fit/fit_statistics.h"
#include "fit/levmarq.h"
#include "fit/models.h"
#include "fit/settled_fit.h"

namespace quorvane {

namespace {

std::string NamesOf(const FitState& fit, const std::vector<int>& parameters) {
  std::string names;
  for (const int l : parameters) names += (names.empty() ? "" : ", ") + ParameterName(fit, l);
  return names;
}

// Below this a sum is rounding.
double RoundedSum(const FitState& fit) {
  constexpr double kOfSignal = 1e-20;
  return kOfSignal * SquaredSignal(fit);
}

// The move of each fitted parameter that has a standard error, the largest into `verdict`.
void FindLargestMove(const FitState& fit, const FitState& rest, double variance,
                     RestVerdict& verdict) {
  for (int l = 1; l <= fit.FitMA; ++l) {
    const double error = std::sqrt(variance * rest.FitCovar(l, l));
    if (fit.FitIA(l) == 0 || !(error > 0.0)) continue;
    const double move = std::fabs(rest.FitA(l) - fit.FitA(l)) / error;
    if (!std::isfinite(move) || (move <= verdict.largestMove && !verdict.moved.empty())) continue;
    verdict.largestMove = move;
    verdict.moved = ParameterName(fit, l);
  }
}

std::string Direction(const FitState& fit, const RestEnd& end) {
  if (end.upwards) return "infinity";
  const int shared = end.runaway - fit.SharedBase();
  const bool weight =
      shared > 0 && fit.FitModel->parameters[static_cast<std::size_t>(shared - 1)].shared->kind ==
                        ParameterKind::kWeight;
  return weight ? "0" : "minus infinity";
}

// What stands in the way of an estimate, or nothing.
std::string Flaw(const FitState& fit, const RestEnd& end) {
  if (end.runaway != 0) {
    return ParameterName(fit, end.runaway) + " runs away to " + Direction(fit, end);
  }
  if (!end.undetermined.empty()) {
    return "the data do not determine " + NamesOf(fit, end.undetermined);
  }
  return "";
}

std::string MovesText(const RestVerdict& verdict) {
  const double percent = 100.0 * verdict.sumFall;
  std::string text = "The fit is not at rest: going on lowers the sum of squares to " +
                     FormatNumber(verdict.sum, "0.0000E+00") + " (it is " +
                     FormatNumber(percent, percent < 1.0   ? "0.######"
                                           : percent < 1e4 ? "0.0"
                                                           : "0.0E+00") +
                     " % above that)";
  if (verdict.determined && !verdict.moved.empty()) {
    text += " and moves " + verdict.moved + " by " +
            FormatNumber(verdict.largestMove, verdict.largestMove < 1e4 ? "0.00##" : "0.0E+00") +
            " standard errors";
  }
  return text;
}

std::string ReasonOf(const FitState& fit, const RestEnd& end, const RestVerdict& verdict) {
  const std::string flaw = Flaw(fit, end);
  std::string text;
  if (!verdict.atRest) {
    text = end.rest == FitRest::kStopped
               ? "Whether the fit is at rest is not known: it was stopped."
               : "Whether the fit is at rest is not known: " + std::to_string(end.steps) +
                     " steps did not bring it to an end.";
  } else if (*verdict.atRest) {
    text = flaw.empty() ? "The fit is at rest." : "The sum of squares stands still.";
  } else {
    text = MovesText(verdict) + ".";
  }
  if (flaw.empty()) return text;
  return text + (flaw.starts_with("the ") ? " T" + flaw.substr(1) : " " + flaw) + ".";
}

RestVerdict VerdictOf(const FitState& fit, const FitState& rest, const RestEnd& end) {
  const double least = RoundedSum(fit);
  const double sum = std::max(AcceptedSum(rest), least);
  RestVerdict verdict;
  verdict.sum = AcceptedSum(rest);
  verdict.sumFall = std::max(end.startSum - sum, 0.0) / (sum > 0.0 ? sum : 1.0);
  if (end.rest != FitRest::kStopped && end.startSum > least) {
    const int freedom = std::max(1, fit.FitNumPoints - fit.NumFitted());
    FindLargestMove(fit, rest, sum / freedom, verdict);
  }
  verdict.determined = end.undetermined.empty() && end.runaway == 0;
  if (!end.undetermined.empty()) {
    verdict.moved = NamesOf(fit, end.undetermined);
  }
  const bool moves = verdict.sumFall > kRestSumFall || verdict.largestMove > kRestMove;
  if (SumStandsStill(end.rest)) {
    verdict.atRest = !moves;
  } else if (verdict.sumFall > kRestSumFall) {
    verdict.atRest = false;
  }
  verdict.reason = ReasonOf(fit, end, verdict);
  return verdict;
}

}  // namespace

RestVerdict JudgeRest(const FitState& fit, const StopFlag& stop, Host& host, int mostSteps) {
  FitState copy = fit;
  copy.Stop = &stop;
  try {
    const RestEnd end = BringToRest(copy, host, mostSteps);
    return VerdictOf(fit, copy, end);
  } catch (const ArithmeticFault& fault) {
    RestVerdict unknown;
    unknown.sum = AcceptedSum(fit);
    unknown.reason = std::string("Whether the fit is at rest is not known: ") + fault.what() + ".";
    return unknown;
  }
}

std::string NoRestText(const FitState& fit, const RestEnd& end) {
  const std::string flaw = Flaw(fit, end);
  switch (end.rest) {
    case FitRest::kSettled:
      return "";
    case FitRest::kTooLong:
      return "The fit did not come to rest in " + std::to_string(end.steps) + " steps" +
             (flaw.empty() ? "." : ": " + flaw + ".");
    case FitRest::kStopped:
      return "Stopped before the fit had come to rest.";
    case FitRest::kUndetermined:
    case FitRest::kRunaway:
      break;
  }
  return "The fit does not come to rest: " + flaw + ".";
}

std::optional<std::string> RestRemark(const RestVerdict& verdict) {
  if (verdict.atRest.value_or(false) && verdict.determined) return std::nullopt;
  return verdict.reason;
}

}  // namespace quorvane
