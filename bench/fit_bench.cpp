// Passes over the points and whole fits, at the sizes of real experiments.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

#include "base/quiet_host.h"
#include "fit/levmarq.h"
#include "fit/settled_fit.h"
#include "stats/confidence.h"
#include "stats/error_analysis.h"
#include "stats/fit_rest.h"
#include "support/fit_problem.h"

using namespace quorvane;

namespace {

// One of the four standing problems: signal with noise of 0.005, start values off by some percent.
FitState StandingProblem(int number) {
  struct Standing {
    ProblemSize size;
    std::vector<double> shared;
    int held;  // shared parameter that is held, from 1; 0 for none
  };
  const std::array<Standing, 4> problems = {{
      {{.modelIndex = 0, .sets = 9, .points = 60}, {8100.0}, 0},
      {{.modelIndex = 2, .sets = 20, .points = 400}, {8100.0, 2.0, 1.5}, 2},
      {{.modelIndex = 7, .sets = 30, .points = 400, .massConservation = true},
       {8100.0, 5000.0, 2.0, 1.0},
       0},
      {{.modelIndex = 2, .sets = 80, .points = 1000}, {8100.0, 2.0, 1.5}, 2},
  }};
  const Standing& standing = problems[static_cast<std::size_t>(number)];
  FitState fit = MakeProblem(standing.size, standing.shared);
  std::mt19937_64 generator(17);
  std::normal_distribution<double> noise(0.0, 0.005);
  FillSignal(fit, [&](int) { return noise(generator); });
  TakeTrueLoads(fit);
  if (standing.held > 0) fit.FitIA(fit.SharedBase() + standing.held) = 0;
  for (int l = 1; l <= fit.FitMA; ++l) {
    if (fit.FitIA(l) != 0) fit.FitA(l) *= l % 2 == 0 ? 1.04 : 0.97;
  }
  return fit;
}

void Pass(benchmark::State& state) {
  FitState fit = StandingProblem(static_cast<int>(state.range(0)));
  PreparePass(fit);
  Matrix1<double> alpha(fit.FitMA, fit.FitMA);
  Matrix1<double> beta(fit.FitMA, 1);
  double chisq = 0.0;
  for (auto _ : state) {
    MRQCOF(fit, fit.FitA, alpha, beta, chisq);
    benchmark::DoNotOptimize(chisq);
  }
  state.counters["points"] = fit.FitNumPoints;
  state.counters["passes_per_s"] =
      benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void WholeFit(benchmark::State& state) {
  const FitState start = StandingProblem(static_cast<int>(state.range(0)));
  QuietHost host;
  int iterations = 0;
  double chisq = 0.0;
  for (auto _ : state) {
    FitState fit = start;
    FitData(fit, host, iterations);
    chisq = fit.FitChiSq;
  }
  state.counters["iterations"] = iterations;
  state.counters["chisq"] = chisq;
}

// From the start of WholeFit to the rest.
void ToRest(benchmark::State& state) {
  const FitState start = StandingProblem(static_cast<int>(state.range(0)));
  QuietHost host;
  RestEnd end;
  for (auto _ : state) {
    FitState fit = start;
    end = BringToRest(fit, host, kVerdictSteps);
  }
  state.counters["steps"] = end.steps;
}

// The verdict on the fit at rest, and (second argument 1) on that of one WholeFit.
void Verdict(benchmark::State& state) {
  FitState fit = StandingProblem(static_cast<int>(state.range(0)));
  QuietHost host;
  int iterations = 0;
  if (state.range(1) == 0) {
    BringToRest(fit, host, kVerdictSteps);
  } else {
    FitData(fit, host, iterations);
  }
  RestVerdict verdict;
  for (auto _ : state) verdict = JudgeRest(fit, StopFlag(), host);
  state.counters["at_rest"] = verdict.atRest.value_or(false) ? 1.0 : 0.0;
}

// The confidence search of all fitted shared parameters, on all cores.
void ConfidenceSearch(benchmark::State& state) {
  FitState fit = StandingProblem(static_cast<int>(state.range(0)));
  QuietHost host;
  int iterations = 0;
  FitData(fit, host, iterations);
  const ConfidenceRequest request{95.46, RatioMethod::kParameters, std::vector<bool>(5, true)};
  std::size_t found = 0;
  for (auto _ : state) found = CalcConfidence(fit, request, StopFlag(), host).intervals.size();
  state.counters["intervals"] = static_cast<double>(found);
}

// What an error analysis asks, beside what every one of them does.
void RunAnalysis(benchmark::State& state, ErrorRequest request) {
  FitState fit = StandingProblem(static_cast<int>(state.range(0)));
  QuietHost host;
  int iterations = 0;
  FitData(fit, host, iterations);
  request.parameters = FittedShared(fit);
  if (request.surfacePoints > 0) request.surfaces = {{request.parameters[0], fit.FitMA}};
  ErrorAnalysis found;
  for (auto _ : state) found = AnalyseErrors(fit, request, StopFlag(), host);
  state.counters["parameters"] = static_cast<double>(found.parameters.size());
}

// Both limits at two levels of all fitted shared parameters.
void Profiles(benchmark::State& state) {
  RunAnalysis(state, {.surfacePoints = 0});
}

void MonteCarlo1000(benchmark::State& state) {
  RunAnalysis(state, {.profile = false, .monteCarlo = true, .surfacePoints = 0});
}

// With the two profiles that give the axes.
void Surface41(benchmark::State& state) {
  RunAnalysis(state, {.profile = false, .surfacePoints = 41});
}

// Points per dataset fixed, datasets growing: the time of a pass must grow with the points.
void PassOverDatasets(benchmark::State& state) {
  FitState fit = MakeProblem(
      {.modelIndex = 0, .sets = static_cast<int>(state.range(0)), .points = 200}, {8100.0});
  FillSignal(fit, [](int) { return 0.0; });
  PreparePass(fit);
  Matrix1<double> alpha(fit.FitMA, fit.FitMA);
  Matrix1<double> beta(fit.FitMA, 1);
  double chisq = 0.0;
  for (auto _ : state) MRQCOF(fit, fit.FitA, alpha, beta, chisq);
  state.SetComplexityN(fit.FitNumPoints);
}

}  // namespace

// 0: Ideal, 9 x 60; 1: Monomer-Nmer, N held, 20 x 400; 2: A+B<>AB+B<>AB2 with soft mass
// conservation, 30 x 400; 3: Monomer-Nmer, N held, 80 x 1000.
BENCHMARK(Pass)->DenseRange(0, 3)->Unit(benchmark::kMicrosecond);
BENCHMARK(WholeFit)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);
BENCHMARK(ToRest)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);
BENCHMARK(Verdict)
    ->ArgsProduct({{0, 1, 2, 3}, {0, 1}})
    ->ArgNames({"", "one_press"})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ConfidenceSearch)->DenseRange(1, 2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(Profiles)->DenseRange(1, 2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(MonteCarlo1000)->DenseRange(1, 2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(Surface41)->DenseRange(1, 2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(PassOverDatasets)->RangeMultiplier(2)->Range(5, 80)->Complexity(benchmark::oN);
