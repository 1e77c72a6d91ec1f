// How often the limits of each parameter hold the truth: simulated experiments of each model, by
// profile, Monte Carlo and bootstrap, and how the sides of the profiles ended. Prints the tables of
// docs/evidence.md.
// Usage: coverage [EXPERIMENTS [REPLICATES [MODEL...]]] (run by scripts/evidence); no replicates
// leave out the other two methods, MODEL are the indices of those to run.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/quiet_host.h"
#include "base/work_pool.h"
#include "fit/settled_fit.h"
#include "stats/error_analysis.h"
#include "support/simulated_experiment.h"

using namespace quorvane;

namespace {

constexpr std::array<double, 2> kLevels = {68.27, 95.45};
constexpr int kMostSteps = 2000;

// The three ways to limits, as columns.
enum Method { kProfile, kMonteCarlo, kBootstrap, kMethods };

// What the experiments say of one parameter.
struct Tally {
  std::string name = {};
  int count = 0;
  double bias = 0.0;         // sum of (value - truth) / sd
  double replicaBias = 0.0;  // sum of (mean of the Monte Carlo - value) / sd
  std::array<std::array<int, kLevels.size()>, kMethods> inside = {};
  std::array<std::array<std::array<int, 4>, 2>, kLevels.size()> ends = {};  // [level][side][end]
  int loose = 0;  // limits found where the profile has no sum near the level
};

bool Holds(const SideLimit& lower, const SideLimit& upper, double truth) {
  return !(lower.HasLimit() && truth < lower.limit) && !(upper.HasLimit() && truth > upper.limit);
}

// Whether the curve reaches the level near the limit.
bool IsLoose(const ParameterProfile& profile, const SideLimit& side, double level) {
  if (side.end != SideEnd::kFound) return false;
  const auto above = [&](const ProfilePoint& point) { return point.sum >= level * (1.0 - 1e-5); };
  return std::none_of(profile.curve.begin(), profile.curve.end(), above);
}

void Count(const ParameterErrors& errors, double truth, double sum, Tally& tally) {
  ++tally.count;
  if (errors.error > 0.0) tally.bias += (errors.value - truth) / errors.error;
  for (std::size_t k = 0; k < kLevels.size(); ++k) {
    const ProfileLimits& limits = errors.profile->limits[k];
    tally.inside[kProfile][k] += Holds(limits.lower, limits.upper, truth);
    ++tally.ends[k][0][static_cast<std::size_t>(limits.lower.end)];
    ++tally.ends[k][1][static_cast<std::size_t>(limits.upper.end)];
    tally.loose += IsLoose(*errors.profile, limits.lower, limits.ratio * sum);
    tally.loose += IsLoose(*errors.profile, limits.upper, limits.ratio * sum);
    const auto count = [&](const std::optional<ParameterReplicates>& replicates, Method method) {
      if (!replicates || replicates->limits.empty()) return;
      const PercentileLimits& found = replicates->limits[k];
      tally.inside[method][k] += found.lower <= truth && truth <= found.upper;
    };
    count(errors.monteCarlo, kMonteCarlo);
    count(errors.bootstrap, kBootstrap);
  }
  if (errors.monteCarlo && errors.error > 0.0) {
    tally.replicaBias += (errors.monteCarlo->mean - errors.value) / errors.error;
  }
}

struct ModelRun {
  int failed = 0;  // experiments without an analysis
  int better = 0;  // with a lower sum met
  std::vector<Tally> tallies;
};

// Baselines and reference concentrations of all datasets are counted together.
std::string GroupOf(const FitState& fit, int l) {
  if (l <= fit.NumFitSets) return "baselines";
  if (l <= fit.SharedBase()) return "ln ref. conc.";
  const auto place = static_cast<std::size_t>(l - fit.SharedBase() - 1);
  return std::string(fit.FitModel->parameters[place].name);
}

void CountAll(const ErrorAnalysis& analysis, const FitState& truth, int number, ModelRun& run) {
  run.better += analysis.better.has_value();
  for (const ParameterErrors& errors : analysis.parameters) {
    const std::string name = GroupOf(truth, errors.parameter);
    auto tally = std::find_if(run.tallies.begin(), run.tallies.end(),
                              [&](const Tally& one) { return one.name == name; });
    if (tally == run.tallies.end()) tally = run.tallies.insert(tally, Tally{.name = name});
    const int loose = tally->loose;
    Count(errors, truth.FitA(errors.parameter), analysis.sum, *tally);
    if (tally->loose == loose) continue;
    std::fprintf(stderr, "experiment %d: a limit of %s is where the model ends\n", number,
                 name.c_str());
  }
}

ErrorAnalysis Analysed(const Plan& plan, int number, int replicates) {
  const std::uint64_t seed = 1000U * static_cast<unsigned>(plan.modelIndex + 1);
  FitState fit = Simulated(plan, 1.0, 100'000U + seed * 1000U + static_cast<unsigned>(number));
  Displace(fit, seed * 7000U + static_cast<unsigned>(number));
  QuietHost host;
  SettleFit(fit, host, kMostSteps);
  ErrorRequest request{.parameters = AllFitted(fit), .replicates = replicates, .threads = 1};
  request.levels.assign(kLevels.begin(), kLevels.end());
  request.monteCarlo = request.bootstrap = replicates > 0;
  request.seed = static_cast<std::uint64_t>(number) + 1;
  return AnalyseErrors(fit, request, kNoStop, host);
}

ModelRun Run(const Plan& plan, int count, int replicates) {
  std::vector<ErrorAnalysis> found(static_cast<std::size_t>(count));
  RunTasks(
      found.size(), 0,
      [&](std::size_t k) { found[k] = Analysed(plan, static_cast<int>(k), replicates); }, [] {});
  ModelRun run;
  const FitState truth = Simulated(plan, 1.0, 1);
  int number = 0;
  for (const ErrorAnalysis& analysis : found) {
    if (analysis.error.empty()) {
      CountAll(analysis, truth, number, run);
    } else {
      ++run.failed;
      std::fprintf(stderr, "model %d, experiment %d: %s\n", plan.modelIndex, number,
                   analysis.error.c_str());
    }
    ++number;
  }
  return run;
}

void PrintTally(int modelIndex, const Tally& tally, bool replicates) {
  const auto percent = [&](int part) { return 100.0 * part / tally.count; };
  std::printf("| %d | %s | %d | %+.2f |", modelIndex, tally.name.c_str(), tally.count,
              tally.bias / tally.count);
  for (int method = 0; method < (replicates ? kMethods : kMonteCarlo); ++method) {
    for (std::size_t k = 0; k < kLevels.size(); ++k) {
      std::printf(" %.1f |", percent(tally.inside[static_cast<std::size_t>(method)][k]));
    }
  }
  if (replicates) std::printf(" %+.2f |", tally.replicaBias / tally.count);
  for (std::size_t k = 0; k < kLevels.size(); ++k) {
    for (const auto& side : tally.ends[k]) {
      std::printf(" %d/%d/%d/%d |", side[0], side[1], side[2], side[3]);
    }
  }
  std::printf(" %d |\n", tally.loose);
}

void PrintHead(bool replicates) {
  std::vector<std::string> heads = {"Model",    "Parameter",       "Limits",
                                    "Bias, sd", "Profile 68.27 %", "Profile 95.45 %"};
  if (replicates) {
    for (const char* head : {"Monte Carlo 68.27 %", "Monte Carlo 95.45 %", "Bootstrap 68.27 %",
                             "Bootstrap 95.45 %", "Mean of Monte Carlo less value, sd"}) {
      heads.emplace_back(head);
    }
  }
  for (const char* head : {"68.27 % lower: found/open/bound/stopped", "upper", "95.45 % lower",
                           "upper", "At the end of the model"}) {
    heads.emplace_back(head);
  }
  std::string rule = "|";
  std::printf("|");
  for (const std::string& head : heads) {
    std::printf(" %s |", head.c_str());
    rule += "---|";
  }
  std::printf("\n%s\n", rule.c_str());
}

}  // namespace

int main(int argc, char** argv) {
  const int count = argc > 1 ? std::atoi(argv[1]) : 400;
  const int replicates = argc > 2 ? std::atoi(argv[2]) : 0;
  std::vector<int> models;
  for (int k = 3; k < argc; ++k) models.push_back(std::atoi(argv[k]));
  if (count < 1 || replicates < 0) return 2;
  PrintHead(replicates > 0);
  int failed = 0;
  int better = 0;
  for (const Plan& plan : kPlans) {
    if (!models.empty() && std::ranges::find(models, plan.modelIndex) == models.end()) continue;
    const ModelRun run = Run(plan, count, replicates);
    for (const Tally& tally : run.tallies) PrintTally(plan.modelIndex, tally, replicates > 0);
    failed += run.failed;
    better += run.better;
    std::fflush(stdout);
  }
  std::printf("\nWithout an analysis: %d. Met a lower sum: %d.\n", failed, better);
  return 0;
}
