#include "stats/profile.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>

#include "base/arithmetic.h"
#include "fit/fit_statistics.h"
#include "fit/models.h"

namespace quorvane {

namespace {

constexpr double kStep = 0.5;        // that a trial is to raise the signed root by
constexpr double kMostGrowth = 3.0;  // of the step from trial to trial
constexpr int kMostTrials = 400;     // of a walk
constexpr double kNothing = 1e-6;    // a rise that is none, in variances
constexpr double kOrdinary = 80.0;   // e-folds of a logarithm beyond which nothing new can come

// A place of the walk.
struct Trial {
  RestPoint rest;
  double value = 0.0;  // of the walked parameter
  double root = 0.0;   // signed root of the rise
};

// The polynomial through parameter l at the places, at `value` of the walked one.
double Lagrange(std::span<const Trial> places, int l, double value) {
  double sum = 0.0;
  for (const Trial& place : places) {
    double weight = 1.0;
    for (const Trial& other : places) {
      if (&other != &place) weight *= (value - other.value) / (place.value - other.value);
    }
    sum += weight * place.rest.values(l);
  }
  return sum;
}

double SignedRoot(double rise) {
  return rise < 0.0 ? -std::sqrt(-rise) : std::sqrt(rise);
}

class Walk {
 public:
  Walk(const FitState& fit, int j, int direction, const ProfileScale& scale, const StopFlag& stop)
      : fit_(fit),
        j_(j),
        direction_(direction),
        scale_(scale),
        range_(RangeOf(fit, j)),
        held_(fit, {j}, stop),
        order_(scale.roots.size()) {
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    std::stable_sort(order_.begin(), order_.end(),
                     [&](std::size_t a, std::size_t b) { return scale.roots[a] < scale.roots[b]; });
    side_.limits.resize(order_.size());
    path_.push_back({{fit.FitA, scale.sum}, fit.FitA(j), 0.0});
  }

  ProfileSide Run();

 private:
  double Distance(double value) const { return std::fabs(value - path_.front().value); }
  double Target() const { return scale_.roots[order_[done_]]; }
  double Bound() const { return direction_ > 0 ? range_.highest : range_.lowest; }
  double FirstStep() const;
  double MostStep() const;
  double FarOff() const;
  bool HasInfluence() const;
  Array1<double> Predicted(double value) const;
  std::optional<Trial> Try(const Array1<double>& start, double value);
  std::optional<Trial> TryFromPath(double value);
  bool Leaps(const Trial& trial, double step) const;
  void Take(Trial trial);
  double Refined(Trial below, Trial above, double target);
  void ResolveCrossed();
  void EndRest(SideEnd end, double limit, double plateau);
  std::optional<double> Plateau() const;
  void DeadEnd();
  double NextStep(double step) const;

  const FitState& fit_;
  int j_;
  int direction_;
  const ProfileScale& scale_;
  ParameterRange range_;
  HeldFit held_;
  std::vector<std::size_t> order_;  // of the levels, rising
  std::size_t done_ = 0;            // of them
  std::vector<Trial> path_;         // outward; the fit itself first
  std::vector<double> octaves_;     // rises from octave to octave of the distance
  double octaveAt_ = 0.0;           // distance of the last one
  double octaveRise_ = 0.0;         // rise there
  ProfileSide side_;
};

// A first step that the curvature of the sum foretells, within what the value itself allows.
double Walk::FirstStep() const {
  constexpr double kShare = 0.1;  // of a value
  constexpr double kEFold = 0.5;
  constexpr double kAtZero = 1e-6;
  const double value = std::fabs(fit_.FitA(j_));
  const double usual = range_.logarithm ? kEFold : value > 0.0 ? kShare * value : kAtZero;
  const double variance = fit_.FitCovar(j_, j_) * scale_.variance;
  if (!(variance > 0.0) || !std::isfinite(variance)) return usual;
  const double step = kStep * std::sqrt(variance);
  const bool free =
      !range_.logarithm && j_ <= fit_.NumFitSets;  // a baseline, whose 0 means nothing
  return free ? step : std::min(step, 5.0 * usual);
}

double Walk::MostStep() const {
  constexpr double kEFolds = 4.0;
  if (!range_.logarithm) return std::numeric_limits<double>::infinity();
  const double toOrdinary = -direction_ * path_.back().value - kOrdinary;  // from far outside
  return HasInfluence() ? kEFolds : std::max(kEFolds, toOrdinary);
}

// Where the path leads to at `value`: by the covariance at its start, then by the line through the
// last two places or the parabola through three.
Array1<double> Walk::Predicted(double value) const {
  constexpr std::size_t kMostPlaces = 3;
  Array1<double> start = path_.back().rest.values;
  if (path_.size() == 1) {
    for (int l = 1; l <= fit_.FitMA; ++l) {
      const double slope = fit_.FitCovar(l, j_) / fit_.FitCovar(j_, j_);
      if (fit_.FitIA(l) != 0 && std::isfinite(slope)) start(l) += slope * (value - start(j_));
    }
  } else {
    const std::span<const Trial> places =
        std::span(path_).last(std::min(path_.size(), kMostPlaces));
    for (int l = 1; l <= fit_.FitMA; ++l) {
      if (fit_.FitIA(l) != 0) start(l) = Lagrange(places, l, value);
    }
  }
  start(j_) = value;
  return start;
}

std::optional<Trial> Walk::Try(const Array1<double>& start, double value) {
  std::optional<RestPoint> rest = held_.Rest(start);
  if (!rest) return std::nullopt;
  const double root = SignedRoot((rest->sum - scale_.sum) / scale_.variance);
  if (rest->sum < scale_.sum && (!side_.lowest || rest->sum < side_.lowest->sum)) {
    side_.lowest = rest;
  }
  return Trial{std::move(*rest), value, root};
}

// From where the path leads to, then from its end.
std::optional<Trial> Walk::TryFromPath(double value) {
  std::optional<Trial> trial = Try(Predicted(value), value);
  if (trial || held_.Stopped()) return trial;
  Array1<double> start = path_.back().rest.values;
  start(j_) = value;
  return Try(start, value);
}

// Whether the root has risen by so much more than aimed at that a shorter step has to tell.
bool Walk::Leaps(const Trial& trial, double step) const {
  constexpr double kLeap = 4.0;
  constexpr double kShortest = 1e-3;  // of the first step: there the sum itself leaps
  return trial.root - path_.back().root > kLeap * kStep && step > kShortest * FirstStep();
}

void Walk::Take(Trial trial) {
  constexpr double kEFolds = 2.0;
  const double distance = Distance(trial.value);
  const bool octave =
      range_.logarithm ? distance >= octaveAt_ + kEFolds : distance >= 2.0 * octaveAt_;
  if (octave) {
    const double rise = (trial.rest.sum - scale_.sum) / scale_.variance;
    octaves_.push_back(rise - octaveRise_);
    octaveRise_ = rise;
    octaveAt_ = distance;
  }
  side_.points.push_back({trial.value, trial.rest.sum});
  path_.push_back(std::move(trial));
}

// Whether the sum has moved at all so far.
bool Walk::HasInfluence() const {
  return std::any_of(octaves_.begin(), octaves_.end(),
                     [](double rise) { return std::fabs(rise) > kNothing; });
}

// How far a logarithm without influence is followed: past 0, if that lies ahead.
double Walk::FarOff() const {
  const double value = path_.front().value;
  return kOrdinary + (direction_ * value < 0.0 ? std::fabs(value) : 0.0);
}

// The rise that is still to come when its octaves fall geometrically: added to the sum, the
// plateau. Nothing as long as that is not shown.
std::optional<double> Walk::Plateau() const {
  constexpr std::size_t kWanted = 3;
  constexpr std::size_t kWantedFlat = 5;
  constexpr double kFalling = 0.7;  // from octave to octave at most
  constexpr double kOfGap = 0.05;   // what is left at most, of what is missing to the level
  if (octaves_.size() < kWanted + 1) return std::nullopt;
  const double target = Target() * Target();
  const double last = std::fabs(octaves_.back());
  double ratio = 0.0;
  for (std::size_t k = octaves_.size() - kWanted; k < octaves_.size(); ++k) {
    const double rise = std::fabs(octaves_[k]);
    if (rise <= kNothing) continue;
    const double before = std::fabs(octaves_[k - 1]);
    if (rise > kFalling * before) return std::nullopt;
    ratio = rise / before;
  }
  const double left = last * kFalling / (1.0 - kFalling);
  if (octaveRise_ + left > target || left > kOfGap * (target - octaveRise_)) return std::nullopt;
  if (!HasInfluence()) {
    const bool far = range_.logarithm ? octaveAt_ >= FarOff() : octaves_.size() >= kWantedFlat;
    if (!far) return std::nullopt;
  }
  const double rest = ratio < 1.0 ? octaves_.back() * ratio / (1.0 - ratio) : 0.0;
  return path_.back().rest.sum + rest * scale_.variance;
}

// The value between two trials where the root comes to `target`.
double Walk::Refined(Trial below, Trial above, double target) {
  constexpr int kMost = 40;
  constexpr double kNear = 1e-4;    // of the root; the line through the ends does the rest
  constexpr double kNarrow = 1e-7;  // of the distance from the best value
  const auto byLine = [&] {
    const double rise = above.root - below.root;
    const double share = rise > 0.0 ? (target - below.root) / rise : 0.5;
    return std::clamp(share, 0.0, 1.0);
  };
  for (int k = 1; k <= kMost; ++k) {
    if (target - below.root < kNear || above.root - target < kNear) break;
    if (std::fabs(above.value - below.value) <= kNarrow * Distance(above.value)) break;
    constexpr int kBisectEvery = 3;
    constexpr double kInside = 1e-3;
    const double share = k % kBisectEvery == 0 ? 0.5 : std::clamp(byLine(), kInside, 1.0 - kInside);
    const double value = below.value + share * (above.value - below.value);
    Array1<double> start = OnLine(below.rest.values, above.rest.values, share);
    start(j_) = value;
    std::optional<Trial> trial = Try(start, value);
    if (!trial && !held_.Stopped()) {
      start = below.rest.values;
      start(j_) = value;
      trial = Try(start, value);
    }
    if (!trial) break;
    side_.points.push_back({value, trial->rest.sum});
    (trial->root < target ? below : above) = std::move(*trial);
  }
  return below.value + byLine() * (above.value - below.value);
}

// The levels that lie between the last two places.
void Walk::ResolveCrossed() {
  while (done_ < order_.size() && path_.back().root >= Target()) {
    const double limit = Refined(path_[path_.size() - 2], path_.back(), Target());
    if (held_.Stopped()) return;
    const double inRange = std::clamp(limit, range_.lowest, range_.highest);
    side_.limits[order_[done_++]] = {.end = inRange == limit ? SideEnd::kFound : SideEnd::kBound,
                                     .limit = inRange};
  }
}

void Walk::EndRest(SideEnd end, double limit, double plateau) {
  while (done_ < order_.size()) {
    side_.limits[order_[done_++]] = {.end = end, .limit = limit, .plateau = plateau};
  }
}

// The model cannot be computed any further out.
void Walk::DeadEnd() {
  constexpr double kOfGap = 0.05;
  const Trial& last = path_.back();
  const double gap = Target() * Target() - last.root * std::fabs(last.root);
  const double lately = octaves_.empty() ? 0.0 : std::fabs(octaves_.back());
  if (octaves_.size() > 1 && lately < kOfGap * gap) {
    EndRest(SideEnd::kOpen, 0.0, last.rest.sum);
  } else {
    EndRest(SideEnd::kFound, last.value, 0.0);
  }
}

// The step that raises the root as wanted, if it goes on as it did in the last one; no further than
// to the next level.
double Walk::NextStep(double step) const {
  constexpr double kLeastGrowth = 0.2;
  const Trial& last = path_.back();
  const Trial& before = path_[path_.size() - 2];
  const double taken = std::fabs(last.value - before.value);
  const double slope = (last.root - before.root) / taken;
  double wanted = kStep;
  const double missing = Target() - last.root;
  if (missing < 1.5 * kStep) wanted = missing;
  double next = slope > 0.0 ? wanted / slope : kMostGrowth * taken;
  next = std::clamp(next, kLeastGrowth * step, kMostGrowth * taken);
  return std::min(next, MostStep());
}

ProfileSide Walk::Run() {
  constexpr double kShortest = 1e-6;  // of the first step
  constexpr double kShorter = 0.25;
  const double first = FirstStep();
  double step = first;
  octaveAt_ = range_.logarithm ? 0.0 : first;
  const double bound = Bound();
  const bool bounded = std::isfinite(bound);
  if (bounded && direction_ * (bound - path_.front().value) <= 0.0) {
    EndRest(SideEnd::kBound, bound, 0.0);
  }
  for (int k = 0; k < kMostTrials && done_ < order_.size() && !held_.Stopped(); ++k) {
    double value = path_.back().value + direction_ * step;
    const bool atBound = bounded && direction_ * (value - bound) >= 0.0;
    if (atBound) value = bound;
    std::optional<Trial> trial = TryFromPath(value);
    if (held_.Stopped()) break;
    if (!trial || Leaps(*trial, step)) {
      step = kShorter * std::fabs(value - path_.back().value);
      if (step < kShortest * first) break;
      continue;
    }
    Take(std::move(*trial));
    ResolveCrossed();
    if (done_ == order_.size() || held_.Stopped()) break;
    if (atBound) {
      EndRest(SideEnd::kBound, bound, 0.0);
    } else if (const std::optional<double> plateau = bounded ? std::nullopt : Plateau()) {
      EndRest(SideEnd::kOpen, 0.0, *plateau);
    } else {
      step = NextStep(step);
    }
  }
  if (!held_.Stopped() && done_ < order_.size()) DeadEnd();
  return std::move(side_);
}

}  // namespace

ParameterRange RangeOf(const FitState& fit, int parameter) {
  ParameterRange range;
  const int shared = parameter - fit.SharedBase() - 1;
  if (shared < 0) {
    range.logarithm = parameter > fit.NumFitSets;
    return range;
  }
  if (static_cast<std::size_t>(shared) >= fit.FitModel->parameters.size()) return range;
  switch (fit.FitModel->parameters[static_cast<std::size_t>(shared)].shared->kind) {
    case ParameterKind::kLnK:
      range.logarithm = true;
      break;
    case ParameterKind::kFraction:
      range.lowest = 0.0;
      range.highest = 1.0;
      break;
    case ParameterKind::kStoichiometry:
      range.lowest = 1.0;
      break;
    case ParameterKind::kWeight:
    case ParameterKind::kVirial:
      break;
  }
  return range;
}

ProfileSide WalkProfile(const FitState& fit, int j, int direction, const ProfileScale& scale,
                        const StopFlag& stop) {
  return Walk(fit, j, direction, scale, stop).Run();
}

}  // namespace quorvane
