// How well the fit recovers what it is given: simulated experiments of each model, fitted from
// starts that are a little off. Prints the tables of docs/evidence.md.
// Usage: recovery [EXPERIMENTS [SCALE [MODEL...]]] (run by scripts/evidence); SCALE multiplies
// signal and noise, MODEL are the indices of those to run.
#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "base/arithmetic.h"
#include "base/quiet_host.h"
#include "fit/fit_statistics.h"
#include "fit/settled_fit.h"
#include "stats/confidence.h"
#include "support/simulated_experiment.h"

using namespace quorvane;

namespace {

constexpr int kMostSteps = 300;

// The levels of the search, as columns: method 1 and 2 at 1 and 2 standard deviations.
struct Level {
  RatioMethod method;
  double percent;
};
constexpr std::array<Level, 4> kLevels = {{{RatioMethod::kEqualFreedom, 68.27},
                                           {RatioMethod::kEqualFreedom, 95.46},
                                           {RatioMethod::kParameters, 68.27},
                                           {RatioMethod::kParameters, 95.46}}};

// What one experiment says of one parameter.
struct Recovered {
  double error = 0.0;      // value less truth
  double deviation = 0.0;  // the reported standard error
  std::array<bool, kLevels.size()> inside{};
  std::array<bool, kLevels.size()> limited{};  // both limits were found
};

struct Experiment {
  bool fitted = false;
  int givenUp = 0;                             // searches
  std::array<double, kLevels.size()> ratio{};  // of variances, that the searches sought
  std::vector<Recovered> parameters;           // shared and fitted, in order
};

int Cores() {
  return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

// A fit of a search that swings between two places for ever is given up after two seconds of all
// cores; processor time, so that the table does not depend on what else the machine does.
class PatientHost : public QuietHost {
 public:
  void RunPendingEvents() override {
    constexpr double kPatience = 2.0;
    const auto used = static_cast<double>(std::clock() - start_) / CLOCKS_PER_SEC;
    if (used > kPatience * Cores()) stop.Raise();
  }
  StopFlag stop;

 private:
  std::clock_t start_ = std::clock();
  bool gaveUp_ = false;
};

void SearchLevel(FitState& fit, std::size_t level, const Array1<double>& truth,
                 Experiment& experiment) {
  std::vector<Recovered>& parameters = experiment.parameters;
  PatientHost host;
  const int shared = fit.FitMA - fit.SharedBase();
  const ConfidenceRequest request{kLevels[level].percent, kLevels[level].method,
                                  std::vector<bool>(static_cast<std::size_t>(shared), true)};
  const ConfidenceOutcome found = CalcConfidence(fit, request, host.stop, host);
  experiment.ratio[level] = found.ratio;
  experiment.givenUp += host.stop.Raised();
  if (found.intervals.size() != parameters.size()) return;  // a fault, or given up
  std::size_t k = 0;
  for (int l = fit.SharedBase() + 1; l <= fit.FitMA; ++l) {
    if (fit.FitIA(l) == 0) continue;
    const ConfidenceInterval& interval = found.intervals[k];
    // 0: not bracketed. The value itself: every trial of the bisection lay above the level.
    parameters[k].limited[level] = interval.lower != 0.0 && interval.upper != 0.0 &&
                                   interval.lower < interval.value &&
                                   interval.value < interval.upper;
    parameters[k].inside[level] = interval.lower <= truth(l) && truth(l) <= interval.upper;
    ++k;
  }
}

Experiment Run(const Plan& plan, double scale, int number) {
  Experiment experiment;
  const std::uint64_t seed = 1000U * static_cast<unsigned>(plan.modelIndex + 1);
  FitState fit = Simulated(plan, scale, 100'000U + seed * 1000U + static_cast<unsigned>(number));
  const Array1<double> truth = fit.FitA;
  Displace(fit, seed * 7000U + static_cast<unsigned>(number));
  QuietHost host;
  try {
    if (SettleFit(fit, host, kMostSteps) != FitRest::kSettled) return experiment;
    const FitStatistics statistics = CalcFitStatistics(fit);
    for (int l = fit.SharedBase() + 1; l <= fit.FitMA; ++l) {
      if (fit.FitIA(l) == 0) continue;
      experiment.parameters.push_back(
          {.error = fit.FitA(l) - truth(l), .deviation = StandardError(fit, statistics, l)});
    }
    for (std::size_t level = 0; level < kLevels.size(); ++level) {
      SearchLevel(fit, level, truth, experiment);
    }
    experiment.fitted = true;
  } catch (const ArithmeticFault&) {
    experiment.parameters.clear();
  }
  return experiment;
}

std::vector<Experiment> RunAll(const Plan& plan, double scale, int count) {
  std::vector<Experiment> experiments(static_cast<std::size_t>(count));
  std::atomic<int> next = 0;
  std::vector<std::future<void>> runners;
  for (int k = 0; k < Cores(); ++k) {
    runners.push_back(std::async(std::launch::async, [&] {
      for (int i = next++; i < count; i = next++) {
        experiments[static_cast<std::size_t>(i)] = Run(plan, scale, i);
      }
    }));
  }
  for (std::future<void>& runner : runners) runner.get();
  return experiments;
}

// What a model says of a parameter, over its experiments.
struct Tally {
  int count = 0;
  int within = 0;       // truth in the value +- its standard error
  int withinTwice = 0;  // +- two
  double sum = 0.0;     // of errors
  double squares = 0.0;
  double deviations = 0.0;
  std::array<int, kLevels.size()> inside{}, limited{};
};

Tally Count(const std::vector<Experiment>& experiments, std::size_t k) {
  Tally tally;
  for (const Experiment& experiment : experiments) {
    if (!experiment.fitted) continue;
    const Recovered& one = experiment.parameters[k];
    ++tally.count;
    tally.sum += one.error;
    tally.squares += one.error * one.error;
    tally.deviations += one.deviation;
    tally.within += std::fabs(one.error) <= one.deviation;
    tally.withinTwice += std::fabs(one.error) <= 2.0 * one.deviation;
    for (std::size_t level = 0; level < kLevels.size(); ++level) {
      tally.limited[level] += one.limited[level];
      tally.inside[level] += one.limited[level] && one.inside[level];
    }
  }
  return tally;
}

double Percent(int part, int whole) {
  return whole == 0 ? 0.0 : 100.0 * part / whole;
}

void PrintLine(int modelIndex, std::string_view name, double truth, const Tally& tally) {
  const double bias = tally.sum / tally.count;
  const double meanSquare = tally.squares / tally.count;
  const double deviation = tally.deviations / tally.count;
  const double spread = std::sqrt(std::max(0.0, meanSquare - bias * bias));
  std::printf("| %d | %.*s | %g | %d | %+.2f | %+.2f | %.2f | %.0f | %.0f |", modelIndex,
              static_cast<int>(name.size()), name.data(), truth, tally.count, bias / deviation,
              bias / (spread / std::sqrt(tally.count)), std::sqrt(meanSquare) / deviation,
              Percent(tally.within, tally.count), Percent(tally.withinTwice, tally.count));
  for (std::size_t level = 0; level < kLevels.size(); ++level) {
    if (tally.limited[level] == 0) {
      std::printf(" - |");
    } else {
      std::printf(" %.0f |", Percent(tally.inside[level], tally.limited[level]));
    }
  }
  const int least = *std::min_element(tally.limited.begin(), tally.limited.end());
  std::printf(" %.0f |\n", Percent(tally.count - least, tally.count));
}

// How often the region of a variance ratio covers the truth of one parameter alone where the sum
// of squares is a parabola: in percent.
double CoverageOfOne(double ratio, int freedom) {
  return 100.0 * std::erf(std::sqrt(std::max(0.0, freedom * (ratio - 1.0) / 2.0)));
}

// What goes below the table.
struct Footer {
  int givenUp = 0;
  std::array<double, kLevels.size()> leastCoverage = {100.0, 100.0, 100.0, 100.0};

  void Add(const Experiment& experiment, int freedom) {
    givenUp += experiment.givenUp;
    if (!experiment.fitted) return;
    for (std::size_t level = 0; level < kLevels.size(); ++level) {
      leastCoverage[level] =
          std::min(leastCoverage[level], CoverageOfOne(experiment.ratio[level], freedom));
    }
  }
  void Print() const {
    std::printf("\nExpected of a parabola, %%, at least:");
    for (const double percent : leastCoverage) std::printf(" %.3f", percent);
    std::printf(". Searches given up by the clock: %d.\n", givenUp);
  }
};

void RunPlan(const Plan& plan, double scale, int count, Footer& footer) {
  const std::vector<Experiment> experiments = RunAll(plan, scale, count);
  const FitState fit = Simulated(plan, scale, 1);
  const int freedom = fit.FitNumPoints - fit.NumFitted();
  for (const Experiment& experiment : experiments) footer.Add(experiment, freedom);
  std::size_t k = 0;
  std::size_t place = 0;
  for (const ModelParameter& parameter : fit.FitModel->parameters) {
    const double truth = plan.truth[place++];
    if (fit.FitIA(fit.SharedBase() + static_cast<int>(place)) == 0) continue;
    PrintLine(plan.modelIndex, parameter.name, truth, Count(experiments, k++));
  }
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  const int count = argc > 1 ? std::atoi(argv[1]) : 200;
  const double scale = argc > 2 ? std::atof(argv[2]) : 1.0;
  std::vector<int> models;
  for (int k = 3; k < argc; ++k) models.push_back(std::atoi(argv[k]));
  if (count < 1 || !(scale > 0.0)) return 2;
  std::printf(
      "| Model | Parameter | Truth | Fits | Bias, sd | Bias, its errors | rms error / sd | "
      "+- 1 sd %% | +- 2 sd %% | M1 68.27 %% | M1 95.46 %% | M2 68.27 %% | M2 95.46 %% | "
      "No limit %% |\n"
      "|---|---|---|---|---|---|---|---|---|---|---|---|---|---|\n");
  Footer footer;
  for (const Plan& plan : kPlans) {
    if (!models.empty() && std::ranges::find(models, plan.modelIndex) == models.end()) continue;
    RunPlan(plan, scale, count, footer);
  }
  footer.Print();
  return 0;
}
