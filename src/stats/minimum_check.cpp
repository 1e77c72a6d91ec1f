#include "stats/minimum_check.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <mutex>
#include <random>

#include "base/arithmetic.h"
#include "base/clock.h"
#include "base/number_format.h"
#include "base/quiet_host.h"
#include "base/work_pool.h"
#include "fit/assembly.h"
#include "fit/fit_state.h"
#include "fit/fit_statistics.h"
#include "fit/levmarq.h"
#include "fit/models.h"
#include "fit/settled_fit.h"

namespace quorvane {

namespace {

constexpr int kMostSteps = 500;

// Even deviates in [-1, 1), the same on every platform.
class Deviates {
 public:
  explicit Deviates(std::uint64_t seed) : generator_(seed) {}
  double Next() { return static_cast<double>(generator_() >> 11) * 0x1p-52 - 1.0; }

 private:
  std::mt19937_64 generator_;
};

double Scattered(ParameterKind kind, double value, double deviate) {
  constexpr double kWeight = 2.0;
  constexpr double kStoichiometry = 0.2;
  constexpr double kLnK = 5.0;
  switch (kind) {
    case ParameterKind::kWeight:
      return value * std::pow(kWeight, deviate);
    case ParameterKind::kStoichiometry:
      return value * (1.0 + kStoichiometry * deviate);
    case ParameterKind::kVirial:
      return value * std::pow(10.0, deviate);
    case ParameterKind::kFraction:
      return (1.0 + deviate) / 2.0;
    case ParameterKind::kLnK:
      break;
  }
  return value + kLnK * deviate;
}

// Start values around the result of `fit`.
Array1<double> ScatteredStart(const FitState& fit, Deviates& deviates) {
  constexpr double kLnRefConc = 0.2;
  Array1<double> start = fit.FitA;
  for (int l = fit.NumFitSets + 1; l <= fit.SharedBase(); ++l) {
    if (fit.FitIA(l) != 0) start(l) += kLnRefConc * deviates.Next();
  }
  int l = fit.SharedBase();
  for (const ModelParameter& parameter : fit.FitModel->parameters) {
    if (fit.FitIA(++l) != 0)
      start(l) = Scattered(parameter.shared->kind, start(l), deviates.Next());
  }
  return start;
}

enum class StartEnd { kWaiting, kAtRest, kFailed };

// One start and where it came to.
struct Start {
  Array1<double> values;  // where it begins, then where it ended
  StartEnd end = StartEnd::kWaiting;
  double sum = 0.0;
  Array1<double> nearness;  // how far another end may lie off and be the same, by parameter
};

Array1<double> NearnessOf(const FitState& fit) {
  constexpr double kStandardErrors = 0.25;
  constexpr double kRelative = 1e-4;
  Array1<double> nearness(fit.FitMA);
  const FitStatistics statistics = CalcFitStatistics(fit);
  for (int l = 1; l <= fit.FitMA; ++l) {
    const double error = kStandardErrors * StandardError(fit, statistics, l);
    nearness(l) = std::fabs(fit.FitA(l)) * kRelative;
    if (std::isfinite(error)) nearness(l) = std::max(nearness(l), error);
  }
  return nearness;
}

void RunStart(const FitState& fit, const StopFlag& stop, Start& start) {
  FitState copy = fit;
  copy.FitA = start.values;
  copy.Stop = &stop;
  QuietHost host;
  try {
    const FitRest rest = SettleFit(copy, host, kMostSteps);
    if (rest == FitRest::kStopped) return;
    start.end = StartEnd::kFailed;
    if (rest != FitRest::kSettled) return;
    start.nearness = NearnessOf(copy);
    start.values = copy.FitA;
    start.sum = copy.FitChiSq;
    start.end = StartEnd::kAtRest;
  } catch (const ArithmeticFault&) {
    start.end = StartEnd::kFailed;
  } catch (const SubscriptFault&) {
    start.end = StartEnd::kFailed;
  }
}

// What the threads share.
struct Race {
  Race(const FitState& finished, const StopFlag& userStop, std::vector<Start>& all)
      : fit(finished), stop(userStop), starts(all) {}

  const FitState& fit;
  const StopFlag& stop;
  std::vector<Start>& starts;
  std::mutex mutex;  // guards what follows
  int ended = 0;
  double leastSum = std::numeric_limits<double>::infinity();
};

void RunStart(Race& race, std::size_t k) {
  if (race.stop.Raised()) return;
  RunStart(race.fit, race.stop, race.starts[k]);
  const std::lock_guard<std::mutex> lock(race.mutex);
  ++race.ended;
  if (race.starts[k].end == StartEnd::kAtRest) {
    race.leastSum = std::min(race.leastSum, race.starts[k].sum);
  }
}

void ReportRace(Race& race, Host& host) {
  Progress progress{.what = "Check Minimum", .phase = SearchPhase::kStarts};
  {
    const std::lock_guard<std::mutex> lock(race.mutex);
    progress.iteration = race.ended;
    progress.sumOfSquares = std::isfinite(race.leastSum) ? race.leastSum : 0.0;
  }
  progress.trial = static_cast<double>(race.starts.size());
  host.ReportProgress(progress);
}

// Runs all starts while the user is served. False after a stop.
bool RunAll(Race& race, int threads, Host& host) {
  RunTasks(
      race.starts.size(), threads, [&race](std::size_t k) { RunStart(race, k); },
      [&] {
        host.RunPendingEvents();
        ReportRace(race, host);
      });
  return !race.stop.Raised();
}

bool SameMinimum(const FitState& fit, double rounding, const Start& a, const Start& b) {
  constexpr double kSameSum = 1e-4;
  if (std::fabs(a.sum - b.sum) > kSameSum * a.sum + rounding) return false;
  for (int l = 1; l <= fit.FitMA; ++l) {
    if (std::fabs(a.values(l) - b.values(l)) > a.nearness(l)) return false;
  }
  return true;
}

double RmsOf(const FitState& fit, double sum) {
  const int freedom = fit.FitNumPoints - fit.NumFitted();
  return freedom > 0 ? std::sqrt(sum / freedom) : 0.0;
}

// Groups the ends, the lowest first; each group stands for its lowest. Start 0 is the given fit.
std::vector<FoundMinimum> GroupEnds(const FitState& fit, const std::vector<Start>& starts) {
  std::vector<const Start*> ends;
  for (const Start& start : starts) {
    if (start.end == StartEnd::kAtRest) ends.push_back(&start);
  }
  std::stable_sort(ends.begin(), ends.end(),
                   [](const Start* a, const Start* b) { return a->sum < b->sum; });
  const double rounding = LeastSum(fit);
  std::vector<const Start*> lowest;
  std::vector<FoundMinimum> minima;
  for (const Start* end : ends) {
    const auto same = std::find_if(lowest.begin(), lowest.end(), [&](const Start* other) {
      return SameMinimum(fit, rounding, *other, *end);
    });
    const auto place = static_cast<std::size_t>(same - lowest.begin());
    if (same == lowest.end()) {
      lowest.push_back(end);
      minima.push_back({.sum = end->sum, .rms = RmsOf(fit, end->sum), .parameters = end->values});
      CopyLinked(fit, minima.back().parameters);
    }
    const bool given = end == &starts.front();
    minima[place].current = minima[place].current || given;
    minima[place].starts += given ? 0 : 1;
  }
  return minima;
}

}  // namespace

double LeastSum(const FitState& fit) {
  constexpr double kOfSignal = 1e-12;
  return kOfSignal * SquaredSignal(fit);
}

bool IsLowerSum(const FitState& fit, double sum, double than) {
  constexpr double kRelative = 1e-6;
  return sum < than * (1.0 - kRelative) - LeastSum(fit);
}

MinimumOutcome CheckMinimum(const FitState& fit, const MinimumRequest& request,
                            const StopFlag& stop, Host& host) {
  MinimumOutcome outcome;
  const Stopwatch watch;
  host.RunPendingEvents();
  host.SetStatus("Click anywhere in log window to halt calculation.");
  Deviates deviates(request.seed);
  std::vector<Start> starts(1);
  starts[0].values = fit.FitA;
  for (int k = 0; k < request.starts; ++k) {
    starts.emplace_back().values = ScatteredStart(fit, deviates);
  }
  Race race(fit, stop, starts);
  outcome.stopped = !RunAll(race, request.threads, host);
  for (std::size_t k = 1; k < starts.size(); ++k) {
    outcome.ended += starts[k].end == StartEnd::kAtRest;
    outcome.failed += starts[k].end == StartEnd::kFailed;
  }
  outcome.currentSum = AcceptedSum(fit);
  outcome.minima = GroupEnds(fit, starts);
  if (!outcome.minima.empty() && IsLowerSum(fit, outcome.minima[0].sum, outcome.currentSum)) {
    outcome.better = 0;
  }
  outcome.seconds = watch.Seconds();
  host.SetStatus(" ");
  return outcome;
}

std::string MinimumSummary(const MinimumOutcome& outcome, const MinimumRequest& request) {
  const std::string all = std::to_string(request.starts);
  std::string text;
  if (outcome.stopped) {
    text = "Stopped: " + std::to_string(outcome.ended + outcome.failed) + " of " + all +
           " starts had ended. ";
  }
  const auto sum = [](double value) { return FormatNumber(value, "0.00000E+00"); };
  if (outcome.minima.empty()) {
    text += "No start came to rest.";
  } else if (!outcome.better) {
    text += "No better minimum was found.";
  } else if (outcome.minima[*outcome.better].current) {
    text += "The fit had not settled: from its own values the sum of squares goes down from " +
            sum(outcome.currentSum) + " to " + sum(outcome.minima[*outcome.better].sum) + ".";
  } else {
    text += "A better minimum was found: its sum of squares is " +
            sum(outcome.minima[*outcome.better].sum) + ", that of the fit's values " +
            sum(outcome.currentSum) + ".";
  }
  if (outcome.failed > 0) {
    text += " " + std::to_string(outcome.failed) + " of " + all + " starts failed.";
  }
  return text;
}

}  // namespace quorvane
