#include "stats/confidence.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <future>
#include <memory>
#include <mutex>
#include <semaphore>
#include <thread>

#include "base/arithmetic.h"
#include "base/clock.h"
#include "base/host.h"
#include "base/number_format.h"
#include "base/text.h"
#include "fit/assembly.h"
#include "fit/fit_state.h"
#include "fit/levmarq.h"
#include "fit/models.h"
#include "stats/limit_search.h"
#include "stats/minimum_check.h"
#include "stats/quantiles.h"

namespace quorvane {

namespace {

// The Host of one search: keeps its lines for the log and remembers a better minimum that the fits
// come upon.
class SearchHost : public Host {
 public:
  // A search begins at `start`.
  SearchHost(const FitState& fit, double start)
      : fit_(fit), trial_(start), lowest_((1.0 - kClearly) * AcceptedSum(fit)) {}

  void PrintIt(std::string_view text) override { lines.emplace_back(text); }
  void ShowMessage(std::string_view, std::string_view, MessageIcon) override {}
  bool AskYesNo(std::string_view, std::string_view) override { return false; }
  void RunPendingEvents() override {}
  void SetStatus(std::string_view) override {}
  // Fits between two trial values have nothing to say that a reader could follow.
  void ReportProgress(const Progress& progress) override {
    if (progress.phase == SearchPhase::kNone) {
      RememberBetter();
      return;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    phase_ = progress.phase;
    trial_ = progress.trial;
  }
  void ReportFailure(std::string_view) override {}
  void SendPictureToLog(const Chart&) override {}

  // How far the search has come; for the thread that waits for it.
  Progress Now(std::string_view name) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return {.what = name, .phase = phase_, .trial = trial_};
  }

  // To be read when the search has ended.
  std::vector<std::string> lines;
  std::optional<BetterFit> better;

 private:
  static constexpr double kClearly = 1e-3;  // more than a fit that ended early leaves

  void RememberBetter() {
    const double sum = fit_.Memory.bestChiSq;
    if (!(sum < lowest_)) return;
    lowest_ = sum;
    better = BetterFit{sum, fit_.FitA};
  }

  const FitState& fit_;
  mutable std::mutex mutex_;  // guards what follows
  SearchPhase phase_ = SearchPhase::kBracketing;
  double trial_;
  double lowest_;  // what a better minimum has to stay below; of the search's thread alone
};

// The search of one parameter.
struct Search {
  Search(const FitState& start, int parameter, std::string caption, const StopFlag& end)
      : j(parameter), fit(start), host(fit, start.FitA(parameter)) {
    fit.Stop = &end;
    interval.name = std::move(caption);
    interval.value = start.FitA(parameter);
  }

  // Both limits; `finished` only if the user did not stop it.
  void Run(double chiBest, double ratio) {
    const SoughtLimit sought{j, chiBest, ratio};
    if (!fit.FitKeepGoing()) return;
    LimitBracket bracket = BracketParameter(fit, host, sought);
    if (!fit.FitKeepGoing()) return;
    interval.upper =
        BisectParameter(fit, host, sought, interval.value, bracket.Upper, bracket.ChiUpper);
    fit.FitChiSq = chiBest;
    if (!fit.FitKeepGoing()) return;
    interval.lower =
        BisectParameter(fit, host, sought, interval.value, bracket.Lower, bracket.ChiLower);
    finished = fit.FitKeepGoing();
  }

  int j;
  FitState fit;
  SearchHost host;
  ConfidenceInterval interval;
  bool finished = false;
};

double SoughtRatio(const FitState& fit, const ConfidenceRequest& request, Host& host) {
  const int fitted = fit.NumFitted();
  const int freedom = fit.FitNumPoints - fitted;
  const double p = request.percent / 100.0;
  const double f = FSTAT(fitted, freedom, p, host);
  double two = 0.0;
  CheckArithmetic([&] { two = 1.0 + static_cast<double>(fitted) / freedom * f; });
  const double one = FSTAT(freedom, freedom, p, host);
  host.PrintIt("\r\nVariance Ratio at the " + FormatNumber(request.percent, "##.0#") +
               "% confidence level:");
  if (request.method == RatioMethod::kEqualFreedom) {
    host.PrintIt("F(NDF,NDF,1-P) = " + FormatParam(one));
    return one;
  }
  host.PrintIt("1 + (Nparm/NDF)*F(Nparm,NDF,1-P) = " + FormatParam(two));
  return two;
}

std::vector<std::unique_ptr<Search>> PlanSearches(const FitState& fit,
                                                  const ConfidenceRequest& request,
                                                  const StopFlag& end) {
  std::vector<std::unique_ptr<Search>> searches;
  const std::span<const ModelParameter> parameters = fit.FitModel->parameters;
  for (std::size_t k = 0; k < std::min(parameters.size(), request.chosen.size()); ++k) {
    const int j = fit.SharedBase() + static_cast<int>(k) + 1;
    if (!request.chosen[k] || fit.FitIA(j) == 0) continue;
    searches.push_back(
        std::make_unique<Search>(fit, j, std::string(Trim(parameters[k].caption)), end));
  }
  return searches;
}

// The two flags of a search: that of the user, and the one that ends its threads, after a fault
// too.
struct SearchStops {
  const StopFlag& user;
  StopFlag end;
};

// Waits for one search while the user is served.
void AwaitSearch(std::future<void>& result, const Search& search, SearchStops& stops, Host& host) {
  constexpr auto kTurn = std::chrono::milliseconds(20);
  do {
    host.RunPendingEvents();
    if (stops.user.Raised()) stops.end.Raise();
    host.ReportProgress(search.host.Now(search.interval.name));
  } while (result.wait_for(kTurn) != std::future_status::ready);
}

void LogInterval(const Search& search, Host& host) {
  const ConfidenceInterval& found = search.interval;
  host.PrintIt(found.name + " = " + FormatParam(found.value) + " [" + FormatParam(found.lower) +
               "," + FormatParam(found.upper) + "]");
}

// Runs all searches, as many at once as the machine has cores, and logs them in their order.
void RunSearches(std::vector<std::unique_ptr<Search>>& searches, const FitState& fit,
                 SearchStops& stops, ConfidenceOutcome& outcome, Host& host) {
  const double chiBest = fit.FitChiSq;
  const double ratio = outcome.ratio;
  std::counting_semaphore<> cores(
      std::max(1, static_cast<int>(std::thread::hardware_concurrency())));
  std::vector<std::future<void>> results;
  for (const auto& search : searches) {
    results.push_back(std::async(std::launch::async, [&cores, &search, chiBest, ratio] {
      cores.acquire();
      try {
        search->Run(chiBest, ratio);
      } catch (...) {
        cores.release();
        throw;
      }
      cores.release();
    }));
  }
  std::exception_ptr fault;
  for (std::size_t k = 0; k < searches.size(); ++k) {
    AwaitSearch(results[k], *searches[k], stops, host);
    const bool over = fault || outcome.stopped;  // the rest only has to end
    try {
      results[k].get();
    } catch (...) {
      if (!over) fault = std::current_exception();
      stops.end.Raise();
    }
    if (over) continue;
    for (const std::string& line : searches[k]->host.lines) host.PrintIt(line);
    if (fault) continue;
    if (searches[k]->finished) {
      LogInterval(*searches[k], host);
      outcome.intervals.push_back(searches[k]->interval);
    }
    outcome.stopped = stops.user.Raised();
  }
  for (const auto& search : searches) {
    const std::optional<BetterFit>& better = search->host.better;
    if (better && (!outcome.better || better->sum < outcome.better->sum)) outcome.better = better;
  }
  if (outcome.better) CopyLinked(fit, outcome.better->parameters);
  if (fault) std::rethrow_exception(fault);
}

void LogStop(Host& host) {
  const std::string rule(40, '=');
  host.PrintIt(rule + "\r\n");
  host.PrintIt("** User Terminated Calculation of CIs **");
  host.PrintIt("\r\n" + rule);
}

// Number under which an error is logged.
int ErrorNumber(const std::exception& fault) {
  const auto* arithmetic = dynamic_cast<const ArithmeticFault*>(&fault);
  if (arithmetic == nullptr) return 9;
  switch (arithmetic->kind()) {
    case FaultKind::kOverflow:
      return 6;
    case FaultKind::kDivisionByZero:
      return 11;
    case FaultKind::kInvalidOperation:
      break;
  }
  return 5;
}

void LogFault(const std::exception& fault, Host& host) {
  const std::string rule(42, '=');
  host.PrintIt(rule + "\r\n!Error in Calculating Confidence Interval!\r\n!Error# " +
               std::to_string(ErrorNumber(fault)) + " :: " + fault.what() + "\r\n" + rule);
}

}  // namespace

std::string BetterFitText(const FitState& fit, const BetterFit& better) {
  const auto sum = [](double value) { return FormatNumber(value, "0.00000E+00"); };
  return "A better minimum was met in the search: its sum of squares is " + sum(better.sum) +
         ", that of the fit's values " + sum(AcceptedSum(fit)) +
         ". The intervals are of the worse one.";
}

std::string MissingLimitsText(const ConfidenceOutcome& outcome) {
  std::string names;
  for (const ConfidenceInterval& interval : outcome.intervals) {
    const bool lower = interval.lower == interval.value;
    if (!lower && interval.upper != interval.value) continue;
    names += (names.empty() ? "" : ", ") + interval.name;
  }
  if (names.empty()) return names;
  return "A limit that equals its value is none, the search did not find it: " + names +
         ". Signals in smaller units, or a lower level, may help; \"Error Analysis...\" ([errors] "
         "in "
         "a job) gives every parameter limits that exist.";
}

bool HasLimitOfZero(const ConfidenceOutcome& outcome) {
  return std::any_of(outcome.intervals.begin(), outcome.intervals.end(),
                     [](const ConfidenceInterval& interval) {
                       return interval.lower == 0.0 || interval.upper == 0.0;
                     });
}

std::vector<ConfidenceRow> ConfidenceRows(const FitState& fit) {
  std::vector<ConfidenceRow> rows;
  int j = fit.SharedBase();
  for (const ModelParameter& parameter : fit.FitModel->parameters) {
    if (++j > fit.FitMA) break;
    rows.push_back({parameter.caption, FormatParam(fit.FitA(j)), fit.FitIA(j) != 0});
  }
  return rows;
}

ConfidenceOutcome CalcConfidence(const FitState& fit, const ConfidenceRequest& request,
                                 const StopFlag& stop, Host& host) {
  ConfidenceOutcome outcome;
  const Stopwatch watch;
  SearchStops stops{stop, {}};
  host.RunPendingEvents();
  host.SetStatus("Click anywhere in log window to halt calculation.");
  try {
    outcome.ratio = SoughtRatio(fit, request, host);
    std::vector<std::unique_ptr<Search>> searches = PlanSearches(fit, request, stops.end);
    RunSearches(searches, fit, stops, outcome, host);
    outcome.seconds = watch.Seconds();
    if (outcome.stopped) {
      LogStop(host);
    } else {
      host.PrintIt("\r\nCalcCI Time: " + FormatNumber(outcome.seconds, "###.#0 secs") + "\r\n");
    }
  } catch (const std::exception& fault) {
    outcome.error = fault.what();
    outcome.seconds = watch.Seconds();
    LogFault(fault, host);
  }
  host.SetStatus(" ");
  return outcome;
}

}  // namespace quorvane
