// How well the fit recovers what it is given: simulated experiments of each model, fitted from
// starts that are a little off. Prints the tables of docs/evidence.md.
// Usage: recovery [EXPERIMENTS [SCALE [MODEL]]] (run by scripts/recovery); SCALE multiplies signal
// and noise, MODEL is the index of the only one.
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "base/arithmetic.h"
#include "base/clock.h"
#include "base/quiet_host.h"
#include "fit/report.h"
#include "fit/settled_fit.h"
#include "stats/confidence.h"
#include "tests/support/fit_problem.h"

namespace {

constexpr int kSets = 6;
constexpr int kPoints = 80;
constexpr double kNoise = 0.005;  // signal units
constexpr int kMostSteps = 300;
constexpr int kSearched = 40;  // experiments of each model whose intervals are searched

// How one model is simulated and fitted.
struct Plan {
  int modelIndex;
  std::vector<double> truth;  // shared parameters
  std::vector<int> held;      // shared parameters, from 1, that are kept at the truth
};

const std::vector<Plan> kPlans = {{0, {7500}, {}},
                                  {1, {7500, 8e-6}, {}},
                                  {2, {7500, 2, 1}, {2}},
                                  {3, {7500, 2, 1, 4, 3}, {2, 4}},
                                  {4, {7500, 4, 3, 0.3}, {2}},
                                  {5, {7500, 4, 3, 0.3}, {2}},
                                  {6, {9000, 3000, 2}, {1, 2}},
                                  {7, {9000, 3000, 2, 1.5}, {1, 2}},
                                  {8, {9000, 3000, 2, 1.5, 1}, {1, 2}},
                                  {9, {7500, -0.5}, {}},
                                  {10, {9000, 3000, 2, 2, 1.5}, {1, 2, 3}}};

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
  double error = 0.0;  // value less truth
  double deviation = 0.0;
  std::array<bool, kLevels.size()> inside{};
  std::array<bool, kLevels.size()> limited{};  // both limits were found
};

struct Experiment {
  bool fitted = false;
  bool searched = false;
  std::vector<Recovered> parameters;  // shared and fitted, in order
};

// With two components each cell is scanned twice, where A and where B absorbs: the second scan is
// linked to the first.
void PairScans(FitState& fit) {
  for (int d = 1; d <= kSets; ++d) {
    const bool second = d % 2 == 0;
    fit.SetEpsA(d) *= second ? 0.15 : 1.0;
    fit.SetEpsB(d) *= second ? 1.2 : 0.1;
    if (!second) continue;
    fit.RefLink[static_cast<std::size_t>(d - 1)] = static_cast<std::int16_t>(d - 2);
    fit.FitIA(kSets + d) = fit.FitIA(2 * kSets + d) = 0;
  }
}

// Three speeds; with one component each at two loadings.
void ShapeDatasets(FitState& fit) {
  constexpr std::array<double, 3> kSpeeds = {15000.0, 20000.0, 25000.0};
  for (int d = 1; d <= kSets; ++d) {
    const double speed =
        kSpeeds[static_cast<std::size_t>(fit.TwoComponentModel ? (d - 1) / 2 : (d - 1) % 3)];
    fit.SetSpeed(d) = speed;
    fit.SetOmegaTerm(d) = speed * kOmegaFactor * speed / fit.TempK;
    if (!fit.TwoComponentModel) fit.FitA(kSets + d) = std::log(d <= 3 ? 0.1 : 0.4);
  }
  if (fit.TwoComponentModel) PairScans(fit);
}

FitState Simulated(const Plan& plan, double scale, std::uint64_t seed) {
  FitState fit =
      MakeProblem({.modelIndex = plan.modelIndex, .sets = kSets, .points = kPoints}, plan.truth);
  ShapeDatasets(fit);
  for (int d = 1; d <= kSets; ++d) {
    fit.SetEpsA(d) *= scale;
    fit.SetEpsB(d) *= scale;
  }
  if (plan.modelIndex == 1) {  // with free baselines it can rebuild each signal from itself
    for (int d = 1; d <= kSets; ++d) fit.FitIA(d) = 0;
  }
  NormalNoise noise(seed, kNoise * scale);
  FillSignal(fit, [&](int) { return noise(); });
  for (const int k : plan.held) fit.FitIA(fit.SharedBase() + k) = 0;
  return fit;
}

// Start values a few percent off.
void Displace(FitState& fit, std::uint64_t seed) {
  NormalNoise noise(seed, 1.0);
  for (int l = 1; l <= fit.FitMA; ++l) {
    const double deviate = 2.0 * noise.Uniform() - 1.0;
    if (fit.FitIA(l) == 0) continue;
    const bool shared = l > fit.SharedBase();
    fit.FitA(l) += deviate * (shared ? 0.05 * std::fabs(fit.FitA(l)) : 0.02);
  }
}

// A fit of a search that swings between two places for ever is given up after two seconds.
class PatientHost : public QuietHost {
 public:
  explicit PatientHost(FitState& fit) : fit_(fit) {}
  void RunPendingEvents() override {
    constexpr double kPatience = 2.0;
    if (watch_.Seconds() > kPatience) fit_.FitKeepGoing = false;
  }

 private:
  FitState& fit_;
  Stopwatch watch_;
};

void SearchLevel(FitState& fit, std::size_t level, const Array1<double>& truth,
                 std::vector<Recovered>& parameters) {
  PatientHost host(fit);
  const int shared = fit.FitMA - fit.SharedBase();
  const ConfidenceRequest request{kLevels[level].percent, kLevels[level].method,
                                  std::vector<bool>(static_cast<std::size_t>(shared), true)};
  const ConfidenceOutcome found = CalcConfidence(fit, request, host);
  if (found.intervals.size() != parameters.size()) return;  // a fault, or given up
  std::size_t k = 0;
  for (int l = fit.SharedBase() + 1; l <= fit.FitMA; ++l) {
    if (fit.FitIA(l) == 0) continue;
    const ConfidenceInterval& interval = found.intervals[k];
    parameters[k].limited[level] = interval.lower != 0.0 && interval.upper != 0.0;
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
    for (std::size_t level = 0; number < kSearched && level < kLevels.size(); ++level) {
      SearchLevel(fit, level, truth, experiment.parameters);
    }
    experiment.fitted = true;
    experiment.searched = number < kSearched;
  } catch (const ArithmeticFault&) {
    experiment.parameters.clear();
  }
  return experiment;
}

std::vector<Experiment> RunAll(const Plan& plan, double scale, int count) {
  std::vector<Experiment> experiments(static_cast<std::size_t>(count));
  std::atomic<int> next = 0;
  std::vector<std::future<void>> runners;
  for (unsigned k = 0; k < std::max(1U, std::thread::hardware_concurrency()); ++k) {
    runners.push_back(std::async(std::launch::async, [&] {
      for (int i = next++; i < count; i = next++) {
        experiments[static_cast<std::size_t>(i)] = Run(plan, scale, i);
      }
    }));
  }
  for (std::future<void>& runner : runners) runner.get();
  return experiments;
}

double Percent(int part, int whole) {
  return whole == 0 ? 0.0 : 100.0 * part / whole;
}

// The line of one fitted parameter, number k of them.
void PrintLine(const Plan& plan, const std::vector<Experiment>& experiments, std::size_t k,
               std::string_view name, double truth) {
  int count = 0, within = 0, searched = 0;
  double sum = 0.0, squares = 0.0, deviations = 0.0;
  std::array<int, kLevels.size()> inside{}, limited{};
  for (const Experiment& experiment : experiments) {
    if (!experiment.fitted) continue;
    const Recovered& one = experiment.parameters[k];
    ++count;
    sum += one.error;
    squares += one.error * one.error;
    deviations += one.deviation;
    within += std::fabs(one.error) <= one.deviation;
    searched += experiment.searched;
    for (std::size_t level = 0; level < kLevels.size(); ++level) {
      limited[level] += one.limited[level];
      inside[level] += one.limited[level] && one.inside[level];
    }
  }
  const double bias = sum / count;
  const double spread = std::sqrt(std::max(0.0, squares / count - bias * bias));
  std::printf("| %d | %.*s | %g | %d | %+.2f | %+.2f | %.2f | %.0f |", plan.modelIndex,
              static_cast<int>(name.size()), name.data(), truth, count,
              bias / (spread / std::sqrt(count)), bias / (deviations / count),
              std::sqrt(squares / count) / (deviations / count), Percent(within, count));
  int least = searched;
  for (std::size_t level = 0; level < kLevels.size(); ++level) {
    if (limited[level] == 0) {
      std::printf(" - |");
    } else {
      std::printf(" %.0f |", Percent(inside[level], limited[level]));
    }
    least = std::min(least, limited[level]);
  }
  std::printf(" %.0f |\n", Percent(searched - least, searched));
}

}  // namespace

int main(int argc, char** argv) {
  const int count = argc > 1 ? std::atoi(argv[1]) : 200;
  const double scale = argc > 2 ? std::atof(argv[2]) : 1.0;
  const int only = argc > 3 ? std::atoi(argv[3]) : -1;
  if (count < 1 || !(scale > 0.0)) return 2;
  std::printf(
      "| Model | Parameter | Truth | Fits | Bias, its errors | Bias, sd | rms error / sd | +- 1 sd "
      "%% | M1 68.27 %% | M1 95.46 %% | M2 68.27 %% | M2 95.46 %% | No limit %% |\n"
      "|---|---|---|---|---|---|---|---|---|---|---|---|---|\n");
  for (const Plan& plan : kPlans) {
    if (only >= 0 && plan.modelIndex != only) continue;
    const std::vector<Experiment> experiments = RunAll(plan, scale, count);
    const FitState fit = Simulated(plan, scale, 1);
    std::size_t k = 0;
    std::size_t place = 0;
    for (const SharedParameter& parameter : fit.FitModel->parameters) {
      const double truth = plan.truth[place++];
      if (fit.FitIA(fit.SharedBase() + static_cast<int>(place)) == 0) continue;
      PrintLine(plan, experiments, k++, parameter.name, truth);
    }
    std::fflush(stdout);
  }
  return 0;
}
