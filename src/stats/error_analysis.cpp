#include "stats/error_analysis.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <map>
#include <mutex>

#include "base/arithmetic.h"
#include "base/clock.h"
#include "base/number_format.h"
#include "base/quiet_host.h"
#include "base/work_pool.h"
#include "fit/assembly.h"
#include "fit/fit_statistics.h"
#include "fit/model_pass.h"
#include "fit/settled_fit.h"
#include "stats/exact_quantiles.h"
#include "stats/minimum_check.h"
#include "stats/surface.h"

namespace quorvane {

namespace {

constexpr double kAxisLevel = 99.73;  // percent, of the axes of a surface
constexpr int kSideWork = 25;         // of one side of a profile, in fits, for the progress

// Both sides of a profile that was asked for or that an axis needs.
struct ProfileTask {
  int parameter = 0;
  bool asked = false;
  ProfileSide lower = {};
  ProfileSide upper = {};
};

class Analysis {
 public:
  Analysis(const FitState& fit, const ErrorRequest& request, const StopFlag& stop, Host& host)
      : rest_(fit), request_(request), stop_(stop), host_(host) {
    rest_.Stop = &stop;
    outcome_.request = request;
  }

  ErrorAnalysis Run() {
    const Stopwatch watch;
    host_.RunPendingEvents();
    CountWork();
    if (BringToRest()) {
      TakeRest();
      RunProfiles();
      if (request_.monteCarlo) Resample(ReplicateKind::kMonteCarlo);
      if (request_.bootstrap) Resample(ReplicateKind::kBootstrap);
      for (const auto& [x, y] : request_.surfaces) AddSurface(x, y);
      FindBetter();
    }
    outcome_.stopped = stop_.Raised();
    outcome_.seconds = watch.Seconds();
    return std::move(outcome_);
  }

 private:
  bool Asked(int parameter) const {
    return std::find(request_.parameters.begin(), request_.parameters.end(), parameter) !=
           request_.parameters.end();
  }
  bool OnAxis(int parameter) const {
    return std::any_of(request_.surfaces.begin(), request_.surfaces.end(), [&](const auto& axes) {
      return axes.first == parameter || axes.second == parameter;
    });
  }
  void CountWork();
  bool BringToRest();
  void TakeRest();
  double RootOf(double level) const;
  ParameterProfile ProfileOf(const ProfileTask& task) const;
  void RunProfiles();
  void Resample(ReplicateKind kind);
  void TakeReplicates(ReplicateKind kind, const std::vector<std::vector<double>>& ends, int failed);
  std::vector<double> AskedOf(const Array1<double>& values) const;
  std::vector<double> Axis(int parameter) const;
  void AddSurface(int x, int y);
  void FindBetter();
  void RunTasks(std::string_view what, std::size_t count,
                const std::function<void(std::size_t)>& task);

  FitState rest_;  // the fit at rest
  const ErrorRequest& request_;
  const StopFlag& stop_;
  Host& host_;
  ErrorAnalysis outcome_;
  ProfileScale scale_;
  std::vector<ProfileTask> profiles_;
  std::atomic<int> done_ = 0;  // fits, roughly
  int all_ = 0;
};

// Steps of the progress: about as many fits.
void Analysis::CountWork() {
  for (int l = 1; l <= rest_.FitMA; ++l) {
    if (rest_.FitIA(l) == 0) continue;
    const bool asked = request_.profile && Asked(l);
    if (asked || OnAxis(l)) profiles_.push_back({.parameter = l, .asked = asked});
  }
  const int points = request_.surfacePoints;
  all_ = 2 * kSideWork * static_cast<int>(profiles_.size()) +
         request_.replicates * (request_.monteCarlo + request_.bootstrap) +
         static_cast<int>(request_.surfaces.size()) * points * (points + 1);
}

void Analysis::RunTasks(std::string_view what, std::size_t count,
                        const std::function<void(std::size_t)>& task) {
  quorvane::RunTasks(
      count, request_.threads,
      [&](std::size_t k) {
        if (!stop_.Raised()) task(k);
      },
      [&] {
        host_.RunPendingEvents();
        host_.ReportProgress({.what = what,
                              .iteration = std::min(done_.load(), all_),
                              .phase = SearchPhase::kParts,
                              .trial = static_cast<double>(all_)});
      });
}

// False, with the reason in the outcome, if there is nothing to analyse.
bool Analysis::BringToRest() {
  constexpr int kMostSteps = 5000;
  outcome_.freedom = rest_.FitNumPoints - rest_.NumFitted();
  if (outcome_.freedom <= 0) {
    outcome_.error =
        "There are no degrees of freedom: as many parameters are fitted as there are "
        "points.";
    return false;
  }
  RunTasks("Fit to rest", 1, [&](std::size_t) {
    try {
      if (SumStandsStill(SettleAll(rest_, kMostSteps))) {
        CalcModelValues(rest_);
      } else {
        outcome_.error = "The fit does not come to rest: its sum of squares goes on falling.";
      }
    } catch (const ArithmeticFault& fault) {
      outcome_.error = "The fit cannot be brought to rest: " + std::string(fault.what()) + ".";
    }
  });
  if (stop_.Raised()) outcome_.error.clear();
  return !stop_.Raised() && outcome_.error.empty();
}

// Standard error, or 0 where the covariance gives none.
double ErrorOf(const FitState& fit, double variance, int l) {
  const double square = variance * fit.FitCovar(l, l);
  return square > 0.0 && std::isfinite(square) ? std::sqrt(square) : 0.0;
}

void Analysis::TakeRest() {
  outcome_.sum = rest_.FitChiSq;
  outcome_.values = rest_.FitA;
  CopyLinked(rest_, outcome_.values);
  scale_.sum = outcome_.sum;
  scale_.variance = std::max(outcome_.sum, LeastSum(rest_)) / outcome_.freedom;
  for (const double level : request_.levels) scale_.roots.push_back(RootOf(level));
  for (int l = 1; l <= rest_.FitMA; ++l) {
    if (rest_.FitIA(l) == 0 || !Asked(l)) continue;
    outcome_.parameters.push_back({.parameter = l,
                                   .name = ParameterName(rest_, l),
                                   .value = rest_.FitA(l),
                                   .error = ErrorOf(rest_, scale_.variance, l)});
  }
}

double Analysis::RootOf(double level) const {
  constexpr double kAll = 100.0;
  return std::sqrt(FQuantile(1, outcome_.freedom, level / kAll));
}

void Analysis::RunProfiles() {
  ProfileScale onAxis = scale_;
  onAxis.roots.push_back(RootOf(kAxisLevel));
  RunTasks("Profiles", 2 * profiles_.size(), [&](std::size_t k) {
    ProfileTask& task = profiles_[k / 2];
    const ProfileScale& scale = OnAxis(task.parameter) ? onAxis : scale_;
    const int direction = k % 2 == 0 ? -1 : 1;
    ProfileSide& side = direction < 0 ? task.lower : task.upper;
    side = WalkProfile(rest_, task.parameter, direction, scale, stop_);
    done_ += kSideWork;
  });
  for (ParameterErrors& errors : outcome_.parameters) {
    for (const ProfileTask& task : profiles_) {
      if (task.asked && task.parameter == errors.parameter) errors.profile = ProfileOf(task);
    }
  }
}

ParameterProfile Analysis::ProfileOf(const ProfileTask& task) const {
  ParameterProfile profile;
  const auto limit = [](const ProfileSide& side, std::size_t k) {
    return k < side.limits.size() ? side.limits[k] : SideLimit{};
  };
  for (std::size_t k = 0; k < request_.levels.size(); ++k) {
    const double root = scale_.roots[k];
    profile.limits.push_back({request_.levels[k], 1.0 + root * root / outcome_.freedom,
                              limit(task.lower, k), limit(task.upper, k)});
  }
  profile.curve = task.lower.points;
  profile.curve.push_back({rest_.FitA(task.parameter), outcome_.sum});
  profile.curve.insert(profile.curve.end(), task.upper.points.begin(), task.upper.points.end());
  std::stable_sort(profile.curve.begin(), profile.curve.end(),
                   [](const ProfilePoint& a, const ProfilePoint& b) { return a.value < b.value; });
  return profile;
}

void Analysis::Resample(ReplicateKind kind) {
  constexpr std::size_t kTogether = 10;  // replicates of a task, which copies the fit once
  if (stop_.Raised()) return;
  const ReplicateSource source(rest_);
  const auto count = static_cast<std::size_t>(request_.replicates);
  std::vector<std::vector<double>> ends(count);
  std::atomic<int> failed = 0;
  const bool normal = kind == ReplicateKind::kMonteCarlo;
  RunTasks(normal ? "Monte Carlo" : "Bootstrap", (count + kTogether - 1) / kTogether,
           [&](std::size_t k) {
             ReplicateFit fit(rest_, source, stop_);
             const std::size_t end = std::min(count, (k + 1) * kTogether);
             for (std::size_t i = k * kTogether; i < end && !stop_.Raised(); ++i) {
               const std::optional<Array1<double>> at = fit.Run(kind, request_.seed, i);
               if (!at && !stop_.Raised()) ++failed;
               if (at) ends[i] = AskedOf(*at);
               ++done_;
             }
           });
  TakeReplicates(kind, ends, failed);
}

// Those of the parameters that were asked for.
std::vector<double> Analysis::AskedOf(const Array1<double>& values) const {
  std::vector<double> asked;
  asked.reserve(outcome_.parameters.size());
  for (const ParameterErrors& errors : outcome_.parameters) {
    asked.push_back(values(errors.parameter));
  }
  return asked;
}

// `ends` by replicate, empty for those that failed.
void Analysis::TakeReplicates(ReplicateKind kind, const std::vector<std::vector<double>>& ends,
                              int failed) {
  for (std::size_t k = 0; k < outcome_.parameters.size(); ++k) {
    ParameterErrors& errors = outcome_.parameters[k];
    ParameterReplicates replicates;
    replicates.failed = failed;
    for (const std::vector<double>& end : ends) {
      if (!end.empty()) replicates.values.push_back(end[k]);
    }
    const auto n = static_cast<double>(replicates.values.size());
    replicates.done = static_cast<int>(replicates.values.size());
    if (replicates.done > 1) {
      for (const double value : replicates.values) replicates.mean += value / n;
      double squares = 0.0;
      for (const double value : replicates.values) {
        squares += (value - replicates.mean) * (value - replicates.mean);
      }
      replicates.deviation = std::sqrt(squares / (n - 1.0));
      std::vector<double> sorted = replicates.values;
      std::sort(sorted.begin(), sorted.end());
      for (const double level : request_.levels) {
        replicates.limits.push_back(PercentilesOf(sorted, level));
      }
    }
    (kind == ReplicateKind::kMonteCarlo ? errors.monteCarlo : errors.bootstrap) =
        std::move(replicates);
  }
}

// Between the limits of the profile at 99.73 %, on an open side as far as 6 standard errors and no
// further than the profile went. None if the profile was stopped.
std::vector<double> Analysis::Axis(int parameter) const {
  constexpr double kErrors = 6.0;
  const double value = rest_.FitA(parameter);
  const double reach = kErrors * ErrorOf(rest_, scale_.variance, parameter);
  const auto task = std::find_if(profiles_.begin(), profiles_.end(), [&](const ProfileTask& one) {
    return one.parameter == parameter;
  });
  const auto end = [&](const ProfileSide& side) {
    const SideLimit& limit = side.limits.back();
    if (limit.HasLimit()) return limit.limit;
    double far = 0.0;
    for (const ProfilePoint& point : side.points) {
      if (std::fabs(point.value - value) > std::fabs(far)) far = point.value - value;
    }
    if (reach > 0.0 && std::fabs(far) > reach) far = std::copysign(reach, far);
    return value + far;
  };
  for (const ProfileSide* side : {&task->lower, &task->upper}) {
    if (side->limits.empty() || side->limits.back().end == SideEnd::kStopped) return {};
  }
  const double low = end(task->lower);
  const double high = end(task->upper);
  std::vector<double> places;
  places.reserve(static_cast<std::size_t>(request_.surfacePoints));
  for (int k = 0; k < request_.surfacePoints; ++k) {
    places.push_back(low + (high - low) * k / (request_.surfacePoints - 1));
  }
  return places;
}

void Analysis::AddSurface(int x, int y) {
  const SurfaceGrid grid{x, y, Axis(x), Axis(y)};
  if (grid.xs.empty() || grid.ys.empty()) return;
  ErrorSurface surface{.x = x,
                       .y = y,
                       .xName = ParameterName(rest_, x),
                       .yName = ParameterName(rest_, y),
                       .xs = grid.xs,
                       .ys = grid.ys,
                       .xError = ErrorOf(rest_, scale_.variance, x),
                       .yError = ErrorOf(rest_, scale_.variance, y),
                       .covariance = scale_.variance * rest_.FitCovar(x, y)};
  surface.sums.assign(
      grid.ys.size(),
      std::vector<double>(grid.xs.size(), std::numeric_limits<double>::quiet_NaN()));
  const auto side = static_cast<int>(grid.ys.size());
  std::vector<std::optional<RestPoint>> spine(grid.ys.size());
  RunTasks("Surface", 1, [&](std::size_t) {
    spine = WalkSpine(rest_, grid, stop_);
    done_ += side;
  });
  RunTasks("Surface", grid.ys.size(), [&](std::size_t iy) {
    if (spine[iy]) surface.sums[iy] = WalkRow(rest_, grid, iy, *spine[iy], stop_);
    done_ += side;
  });
  for (const double level : request_.levels) {
    constexpr double kAll = 100.0;
    const double f = FQuantile(2, outcome_.freedom, level / kAll);
    surface.ratios.push_back({level, 1.0 + 2.0 * f / outcome_.freedom});
  }
  outcome_.surfaces.push_back(std::move(surface));
}

// The lowest place of all profiles, with every parameter free.
void Analysis::FindBetter() {
  const RestPoint* lowest = nullptr;
  for (const ProfileTask& task : profiles_) {
    for (const ProfileSide* side : {&task.lower, &task.upper}) {
      if (side->lowest && (lowest == nullptr || side->lowest->sum < lowest->sum)) {
        lowest = &*side->lowest;
      }
    }
  }
  if (lowest == nullptr || !IsLowerSum(rest_, lowest->sum, outcome_.sum)) return;
  std::optional<RestPoint> free;
  RunTasks("Fit to rest", 1,
           [&](std::size_t) { free = HeldFit(rest_, {}, stop_).Rest(lowest->values); });
  const RestPoint& best = free && free->sum < lowest->sum ? *free : *lowest;
  outcome_.better = BetterFit{best.sum, best.values};
  CopyLinked(rest_, outcome_.better->parameters);
}

}  // namespace

std::vector<int> AllFitted(const FitState& fit) {
  std::vector<int> fitted;
  for (int l = 1; l <= fit.FitMA; ++l) {
    if (fit.FitIA(l) != 0) fitted.push_back(l);
  }
  return fitted;
}

std::vector<int> FittedShared(const FitState& fit) {
  std::vector<int> fitted = AllFitted(fit);
  std::erase_if(fitted, [&](int l) { return l <= fit.SharedBase(); });
  return fitted;
}

ErrorAnalysis AnalyseErrors(const FitState& fit, const ErrorRequest& request, const StopFlag& stop,
                            Host& host) {
  return Analysis(fit, request, stop, host).Run();
}

std::string BetterSumText(const ErrorAnalysis& analysis) {
  const auto sum = [](double value) { return FormatNumber(value, "0.00000E+00"); };
  return "A lower sum of squares was met: " + sum(analysis.better->sum) + ", that of the fit is " +
         sum(analysis.sum) + ". The limits are of the fit, which is not at its best minimum.";
}

}  // namespace quorvane
