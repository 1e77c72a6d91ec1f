#include "sim/plan_check.h"

#include <atomic>
#include <cmath>
#include <random>

#include <boost/random/normal_distribution.hpp>

#include "base/arithmetic.h"
#include "base/host.h"
#include "base/quiet_host.h"
#include "base/stop_flag.h"
#include "base/work_pool.h"
#include "fit/settled_fit.h"

namespace quorvane {

namespace {

constexpr std::size_t kBatch = 16;  // experiments a task: each copies the fit once

enum class Outcome : std::uint8_t { kNotMade, kFailed, kFitted };

// The shared parameters that one experiment gives.
struct Experiment {
  Outcome outcome = Outcome::kNotMade;
  std::vector<double> values;
};

// A stream of random bits of its own for each experiment.
std::mt19937_64 GeneratorOf(std::uint64_t seed, std::size_t experiment) {
  constexpr unsigned kHalf = 32;
  const auto low = [](std::uint64_t word) { return static_cast<std::uint32_t>(word); };
  std::seed_seq words{low(seed), low(seed >> kHalf), low(experiment), low(experiment >> kHalf)};
  return std::mt19937_64(words);
}

void AddNoise(FitState& fit, const FitState& truth, double noise, std::mt19937_64& generator) {
  boost::random::normal_distribution<double> normal(0.0, noise);
  for (int i = 1; i <= fit.FitNumPoints; ++i) fit.FitY(i) = truth.FitY(i) + normal(generator);
}

Experiment FittedExperiment(FitState& fit, const FitState& truth) {
  constexpr int kMostSteps = 500;
  QuietHost host;
  fit.FitA = truth.FitA;
  try {
    const FitRest rest = SettleFit(fit, host, kMostSteps);
    if (rest == FitRest::kStopped) return {};
    if (rest != FitRest::kSettled) return {Outcome::kFailed, {}};
  } catch (const ArithmeticFault&) {
    return {Outcome::kFailed, {}};
  }
  Experiment experiment{Outcome::kFitted, {}};
  for (int l = fit.SharedBase() + 1; l <= fit.FitMA; ++l) {
    if (fit.FitIA(l) != 0) experiment.values.push_back(fit.FitA(l));
    if (!std::isfinite(fit.FitA(l))) return {Outcome::kFailed, {}};
  }
  return experiment;
}

CheckedError ErrorOf(const std::vector<double>& values, const ExpectedError& expected) {
  CheckedError error;
  const auto n = static_cast<double>(values.size());
  for (const double value : values) error.mean += value / n;
  double squares = 0.0;
  for (const double value : values) squares += (value - error.mean) * (value - error.mean);
  error.scatter = std::sqrt(squares / (n - 1.0));
  if (expected.sd && *expected.sd > 0.0) {
    error.ratio = error.scatter / *expected.sd;
    error.bias = (error.mean - expected.value) / *expected.sd;
  }
  return error;
}

PlanCheck Counted(const std::vector<Experiment>& experiments, const PlanResult& result) {
  PlanCheck check;
  std::vector<std::vector<double>> values(result.errors.size());
  for (const Experiment& experiment : experiments) {
    if (experiment.outcome == Outcome::kNotMade) continue;
    ++check.experiments;
    if (experiment.outcome == Outcome::kFailed) ++check.failed;
    for (std::size_t k = 0; k < experiment.values.size(); ++k) {
      values[k].push_back(experiment.values[k]);
    }
  }
  if (check.experiments - check.failed < 2) return check;
  for (std::size_t k = 0; k < values.size(); ++k) {
    check.parameters.push_back(ErrorOf(values[k], result.errors[k]));
  }
  return check;
}

}  // namespace

PlanCheck CheckPlan(const ExperimentPlan& plan, const PlanResult& result,
                    const PlanCheckRequest& request, const StopFlag& stop, Host& host) {
  FitState truth = FitOf(plan, result.speeds);
  const auto count =
      truth.NumFitSets == 0 ? std::size_t{0} : static_cast<std::size_t>(request.experiments);
  truth.Stop = &stop;
  std::vector<Experiment> experiments(count);
  std::atomic<int> done = 0;
  const auto task = [&](std::size_t batch) {
    FitState fit = truth;
    const std::size_t end = std::min(count, (batch + 1) * kBatch);
    for (std::size_t k = batch * kBatch; k < end && !stop.Raised(); ++k) {
      std::mt19937_64 generator = GeneratorOf(request.seed, k);
      AddNoise(fit, truth, plan.noise, generator);
      experiments[k] = FittedExperiment(fit, truth);
      done.fetch_add(1, std::memory_order_relaxed);
    }
  };
  RunTasks((count + kBatch - 1) / kBatch, request.threads, task, [&] {
    host.ReportProgress({.what = "Check Plan",
                         .iteration = done.load(std::memory_order_relaxed),
                         .phase = SearchPhase::kParts,
                         .trial = static_cast<double>(count)});
    host.RunPendingEvents();
  });
  PlanCheck check = Counted(experiments, result);
  check.stopped = stop.Raised();
  return check;
}

WorkedPlan WorkOut(const ExperimentPlan& plan, const StopFlag& stop, Host& host) {
  WorkedPlan worked;
  RunTasks(
      1, 1, [&](std::size_t) { worked.result = PlanExperiment(plan, &stop); },
      [&] { host.RunPendingEvents(); });
  if (plan.check > 0 && !worked.result.speeds.empty()) {
    worked.check = CheckPlan(plan, worked.result, {.experiments = plan.check}, stop, host);
  }
  return worked;
}

}  // namespace quorvane
