#include "fit/settled_fit.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/arithmetic.h"
#include "base/host.h"
#include "fit/fit_state.h"
#include "fit/fit_statistics.h"
#include "fit/levmarq.h"
#include "fit/model_pass.h"
#include "fit/models.h"

namespace quorvane {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The forecast of a Newton step bounds every move: (move / standard error)^2 <= fall / variance.
constexpr double kSettledMove = 1e-4;  // standard errors
constexpr double kSmallMove = 3e-3;    // enough where the sum cannot be lowered any more
// Relative to the sum: what its rounding hides, and what stands still.
constexpr double kRounding = 1e-11;
constexpr double kSameSum = 1e-10;
// Relative to the squared signal: a sum that is rounding as a whole.
constexpr double kPerfect = 1e-24;

// A step that forecasts so small a fall promises nothing worth a pass.
constexpr double kNothing = 1e-13;

constexpr double kFar = 2.0;  // longest moves: an undamped step or a way that leads nowhere near
constexpr double kNewton = 1e-9;      // the least damping; a step of Newton for all that shows
constexpr double kLeastAgain = 1e-7;  // after a step of Newton that failed
constexpr double kFirstLambda = 1e-3;
constexpr double kMostLambda = 1e14;
constexpr double kHopeless = 4.0;  // times the sum of flat lines
constexpr int kMostAlone = 50;     // steps of the datasets alone
constexpr double kFirstGrowth = 4.0;

// How far one step may take a parameter: the signal is exponential in most of them, and the
// linear forecast is worth nothing further out.
double LongestMove(const FitState& fit, int l) {
  if (fit.FitModel == nullptr || fit.FitModel->parameters.empty()) return kInfinity;
  if (l <= fit.NumFitSets) return kInfinity;  // a baseline is linear
  if (l <= fit.SharedBase()) return 1.5;      // ln reference concentrations
  const auto place = static_cast<std::size_t>(l - fit.SharedBase() - 1);
  const SharedParameter& shared = *fit.FitModel->parameters[place].shared;
  switch (shared.kind) {
    case ParameterKind::kWeight:
      return std::max(0.5 * std::fabs(fit.FitA(l)), 1.0);
    case ParameterKind::kStoichiometry:
      return 0.5;
    case ParameterKind::kLnK:
      return fit.ConstrainKRatios && MayBeRatio(shared) ? 0.5 : 2.0;
    case ParameterKind::kFraction:
      return 0.25;
    case ParameterKind::kVirial:
      break;
  }
  return kInfinity;
}

class Descent {
 public:
  Descent(FitState& fit, Host& host);

  // The pass at the start values.
  void Begin();
  double StartSum() const { return end_.startSum; }
  RestEnd Run(int mostSteps);

 private:
  enum class Trial { kAccepted, kRejected, kNothingToGain };

  bool Pass(const Array1<double>& a, double& sum);
  FitRest Descend(int mostSteps);
  Trial TryStep();
  double Damped();
  double DampedWithinLimits();
  double Forecast(double share) const;
  double TimesTooLong() const;
  void Accept(double sum, double forecast);
  void Reject();
  bool FactorWhatIsKnown();
  void LeaveOut(int place);
  double NewtonForecast();
  bool Settled(double move) const;
  bool LeadsAway() const;
  bool IsStuck() const;
  bool TakeFineSteps();
  bool FindVague();
  void InvertWhatIsKnown();
  void FindRunaway();
  void Close();

  double Best() const { return fit_.Memory.bestChiSq; }

  FitState& fit_;
  Host& host_;
  Matrix1<double> alpha_;         // curvature at the accepted point
  Matrix1<double> known_;         // the same without what is not determined; empty while all is
  std::vector<int> unknown_;      // places that are not determined
  std::vector<int> parameter_;    // [place from 0] index of FitA
  std::vector<double> damping_;   // [place from 0] what the last step added to the curvature
  std::vector<double> start_;     // [place from 0] where it began
  std::vector<double> lastMove_;  // [place from 0] of the last accepted step
  double freedom_ = 1.0;
  double perfect_ = 0.0;  // a sum that is rounding as a whole
  double lambda_ = kNewton;
  double growth_ = kFirstGrowth;  // of lambda at the next rejection
  std::vector<double> newton_;    // [place from 0] at the end, the undamped step
  double newtonTimesTooLong_ = 0.0;
  double newtonForecast_ = 0.0;  // the fall that an undamped step promises
  RestEnd end_;
};

Descent::Descent(FitState& fit, Host& host) : fit_(fit), host_(host), alpha_(fit.FitMA, fit.FitMA) {
  if (fit.FitMA > kMaxParameters) throw SubscriptFault();
  fit.FitCovar = Matrix1<double>(fit.FitMA, fit.FitMA);
  StepMemory& memory = fit.Memory;
  memory.mfit = fit.NumFitted();
  memory.solver = ArrowSolver(ShapeOf(fit));
  for (int l = 1; l <= fit.FitMA; ++l) {
    if (fit.FitIA(l) == 0) continue;
    parameter_.push_back(l);
    start_.push_back(fit.FitA(l));
  }
  damping_.assign(parameter_.size(), 0.0);
  lastMove_ = damping_;
  freedom_ = std::max(1, fit.FitNumPoints - memory.mfit);
  perfect_ = kPerfect * SquaredSignal(fit);
}

// The sums at `a`: FitCovar and trialStep take curvature and gradient. False after a fault.
bool Descent::Pass(const Array1<double>& a, double& sum) {
  try {
    MRQCOF(fit_, a, fit_.FitCovar, fit_.Memory.trialStep, sum);
  } catch (const ArithmeticFault&) {
    return false;
  }
  return std::isfinite(sum);
}

void Descent::Begin() {
  StepMemory& memory = fit_.Memory;
  fit_.CurrentProc = "SettleFit";
  PreparePass(fit_);
  MRQCOF(fit_, fit_.FitA, alpha_, memory.beta, memory.bestChiSq);
  end_.startSum = memory.bestChiSq;
  for (int l = 1; l <= fit_.FitMA; ++l) memory.trialA(l) = fit_.FitA(l);
}

// Factors the curvature without the parameters in unknown_ and without those that the data do not
// determine beside the others, which join them; they get a row of the unit matrix. False if there
// is nothing to factor.
bool Descent::FactorWhatIsKnown() {
  StepMemory& memory = fit_.Memory;
  if (unknown_.empty() && memory.solver.Factor(alpha_, 0.0)) return true;
  known_ = alpha_;
  for (const int place : unknown_) LeaveOut(place);
  while (unknown_.empty() || !memory.solver.Factor(known_, 0.0)) {
    const int place = memory.solver.DoubtfulPlace();
    if (std::find(unknown_.begin(), unknown_.end(), place) != unknown_.end()) return false;
    unknown_.push_back(place);
    LeaveOut(place);
  }
  return true;
}

void Descent::LeaveOut(int place) {
  for (int k = 1; k <= fit_.Memory.mfit; ++k) known_(place, k) = known_(k, place) = 0.0;
  known_(place, place) = 1.0;
}

// The fall that an undamped step promises; the step is left in trialStep.
double Descent::NewtonForecast() {
  StepMemory& memory = fit_.Memory;
  double forecast = kInfinity;
  unknown_.clear();
  const FaultFlags faults = FaultsRaisedBy([&] {
    if (!FactorWhatIsKnown()) return;
    std::copy_n(memory.beta.Row(1), memory.mfit, memory.trialStep.Row(1));
    for (const int place : unknown_) memory.trialStep(place, 1) = 0.0;
    memory.solver.Solve(memory.trialStep);
    forecast = 0.0;
    for (int j = 1; j <= memory.mfit; ++j) forecast += memory.trialStep(j, 1) * memory.beta(j, 1);
  });
  newtonTimesTooLong_ = TimesTooLong();
  if (faults.Any() || !(forecast >= 0.0)) return kInfinity;
  return forecast;
}

// A step damped by lambda_, into trialStep; the fall that it promises, below 0 where there is none.
double Descent::Damped() {
  StepMemory& memory = fit_.Memory;
  double forecast = -1.0;
  const FaultFlags faults = FaultsRaisedBy([&] {
    for (std::size_t k = 0; k < damping_.size(); ++k) {
      double& diagonal = alpha_(static_cast<int>(k) + 1, static_cast<int>(k) + 1);
      damping_[k] = diagonal;  // kept for the way back
      diagonal += lambda_ * (diagonal > 0.0 ? diagonal : 1.0);
    }
    const bool solved = memory.solver.Factor(alpha_, 0.0);
    for (std::size_t k = 0; k < damping_.size(); ++k) {
      double& diagonal = alpha_(static_cast<int>(k) + 1, static_cast<int>(k) + 1);
      std::swap(damping_[k], diagonal);
      damping_[k] -= diagonal;
    }
    if (!solved) return;
    std::copy_n(memory.beta.Row(1), memory.mfit, memory.trialStep.Row(1));
    memory.solver.Solve(memory.trialStep);
    forecast = Forecast(1.0);
  });
  return faults.Any() || !std::isfinite(forecast) ? -1.0 : forecast;
}

// The fall that a share of the step in trialStep promises.
double Descent::Forecast(double share) const {
  double slope = 0.0;
  double damped = 0.0;
  for (std::size_t k = 0; k < damping_.size(); ++k) {
    const int j = static_cast<int>(k) + 1;
    const double step = fit_.Memory.trialStep(j, 1);
    slope += step * fit_.Memory.beta(j, 1);
    damped += step * step * damping_[k];
  }
  return 2.0 * share * slope - share * share * (slope - damped);
}

// The longest move of the step in trialStep over what is allowed.
double Descent::TimesTooLong() const {
  double times = 0.0;
  for (std::size_t k = 0; k < parameter_.size(); ++k) {
    const double step = std::fabs(fit_.Memory.trialStep(static_cast<int>(k) + 1, 1));
    times = std::max(times, step / LongestMove(fit_, parameter_[k]));
  }
  return times;
}

// More damping turns a step that is too long; what is left of its length is cut.
double Descent::DampedWithinLimits() {
  constexpr int kTurns = 8;
  double forecast = Damped();
  for (int turn = 0; turn < kTurns; ++turn) {
    if (forecast >= 0.0 && TimesTooLong() <= 1.0) return forecast;
    lambda_ = std::max(10.0 * lambda_, kFirstLambda / 10.0);
    forecast = Damped();
  }
  const double times = TimesTooLong();
  if (forecast < 0.0 || times <= 1.0) return forecast;
  forecast = Forecast(1.0 / times);
  for (int j = 1; j <= fit_.Memory.mfit; ++j) fit_.Memory.trialStep(j, 1) /= times;
  return forecast;
}

void Descent::Accept(double sum, double forecast) {
  constexpr double kGood = 0.75;
  constexpr double kPoor = 0.25;
  constexpr double kEasing = 5.0;
  constexpr double kTightening = 3.0;
  StepMemory& memory = fit_.Memory;
  const double quality = (memory.bestChiSq - sum) / forecast;
  if (quality > kGood) lambda_ /= kEasing;
  if (quality < kPoor) lambda_ *= kTightening;
  lambda_ = std::max(lambda_, kNewton);
  growth_ = kFirstGrowth;
  memory.bestChiSq = sum;
  std::swap(alpha_, fit_.FitCovar);
  std::copy_n(memory.trialStep.Row(1), memory.mfit, memory.beta.Row(1));
  for (std::size_t k = 0; k < parameter_.size(); ++k) {
    const int l = parameter_[k];
    lastMove_[k] = memory.trialA(l) - fit_.FitA(l);
    fit_.FitA(l) = memory.trialA(l);
  }
}

void Descent::Reject() {
  lambda_ = std::max(lambda_ * growth_, kLeastAgain);
  growth_ *= 2.0;
}

// One step from the accepted point, and a pass at its end.
Descent::Trial Descent::TryStep() {
  StepMemory& memory = fit_.Memory;
  const double forecast = DampedWithinLimits();
  if (lambda_ > kMostLambda) return Trial::kNothingToGain;
  if (forecast < 0.0) {
    Reject();
    return Trial::kRejected;
  }
  if (forecast <= kNothing * Best() + perfect_) return Trial::kNothingToGain;
  for (std::size_t k = 0; k < parameter_.size(); ++k) {
    const int l = parameter_[k];
    memory.trialA(l) = fit_.FitA(l) + memory.trialStep(static_cast<int>(k) + 1, 1);
  }
  double sum = 0.0;
  if (Pass(memory.trialA, sum) && sum < Best()) {
    Accept(sum, forecast);
    return Trial::kAccepted;
  }
  Reject();
  return Trial::kRejected;
}

// The forecast of a Newton step bounds every move: (move / standard error)^2 <= fall / variance.
bool Descent::Settled(double move) const {
  const double enough = std::max(move * move / freedom_, kRounding);
  return newtonForecast_ <= enough * Best() + perfect_;
}

FitRest Descent::Descend(int mostSteps) {
  constexpr int kStillToEnd = 3;
  constexpr int kWindow = 40;
  constexpr double kSlow = 1e-6;  // fall in a window, relative, that ends a way to nowhere
  int still = 0;
  double windowSum = Best();
  newtonForecast_ = NewtonForecast();
  if (LeadsAway()) lambda_ = kFirstLambda;
  while (true) {
    if (unknown_.empty() && Settled(kSettledMove)) return FitRest::kSettled;
    if (still >= kStillToEnd && (LeadsAway() || Settled(kSmallMove))) return FitRest::kSettled;
    if (end_.steps % kWindow == 0) {
      if (end_.steps > 0 && LeadsAway() && windowSum - Best() <= kSlow * Best()) {
        return FitRest::kSettled;
      }
      windowSum = Best();
    }
    if (end_.steps == mostSteps) return FitRest::kTooLong;
    const double before = Best();
    const Trial trial = TryStep();
    if (trial == Trial::kNothingToGain) {
      if (IsStuck() && TakeFineSteps()) continue;
      return FitRest::kSettled;
    }
    ++end_.steps;
    host_.ReportProgress({.what = "Fit", .iteration = end_.steps, .sumOfSquares = Best()});
    host_.RunPendingEvents();
    if (!fit_.FitKeepGoing()) return FitRest::kStopped;
    if (trial != Trial::kAccepted) continue;
    still = before - Best() <= kSameSum * before + perfect_ ? still + 1 : 0;
    newtonForecast_ = NewtonForecast();
  }
}

// Whether what is left to gain lies far away, or in what the data do not determine.
bool Descent::LeadsAway() const {
  return !unknown_.empty() || newtonTimesTooLong_ > kFar;
}

// Whether the derivatives promise a fall that no step has brought: then it is they that are wrong.
bool Descent::IsStuck() const {
  return fit_.Workspace.ownSteps.empty() && !LeadsAway() && !Settled(kSmallMove);
}

// The step of the rule is a share of the parameter, so that a logarithm far from 0 is moved far,
// and points where the signal crosses 0 take other steps than their neighbours. From here on steps
// are a small share of what changes the signal. False if these do not work either.
bool Descent::TakeFineSteps() {
  constexpr double kFine = 1e-4;
  std::vector<double>& steps = fit_.Workspace.ownSteps;
  steps.assign(static_cast<std::size_t>(fit_.FitMA) + 1, fit_.FitModel->steps.stepAtZero);
  for (const int l : parameter_) {
    const double longest = LongestMove(fit_, l);
    const double scale = std::isfinite(longest) ? longest : std::fabs(fit_.FitA(l));
    if (scale > 0.0) steps[static_cast<std::size_t>(l)] = kFine * scale;
  }
  StepMemory& memory = fit_.Memory;
  double sum = 0.0;
  if (!Pass(fit_.FitA, sum)) return false;
  memory.bestChiSq = sum;
  std::swap(alpha_, fit_.FitCovar);
  std::copy_n(memory.trialStep.Row(1), memory.mfit, memory.beta.Row(1));
  growth_ = kFirstGrowth;
  newtonForecast_ = NewtonForecast();
  lambda_ = LeadsAway() ? kFirstLambda : kNewton;
  return true;
}

bool Descent::FindVague() {
  const double variance = Best() / freedom_;
  bool found = false;
  for (std::size_t k = 0; k < parameter_.size(); ++k) {
    const int place = static_cast<int>(k) + 1;
    const double limit = GreatestError(fit_, parameter_[k]);
    if (!(fit_.FitCovar(place, place) * variance > limit * limit)) continue;
    if (std::find(unknown_.begin(), unknown_.end(), place) != unknown_.end()) continue;
    unknown_.push_back(place);
    found = true;
  }
  return found;
}

// The inverse of the curvature of what is determined; zeros elsewhere.
void Descent::InvertWhatIsKnown() {
  fit_.FitCovar = Matrix1<double>(fit_.FitMA, fit_.FitMA);
  const FaultFlags faults = FaultsRaisedBy([&] {
    if (FactorWhatIsKnown()) fit_.Memory.solver.Invert(fit_.FitCovar);
  });
  if (faults.Any()) fit_.FitCovar = Matrix1<double>(fit_.FitMA, fit_.FitMA);
  for (const int place : unknown_) fit_.FitCovar(place, place) = 0.0;
}

// A parameter that has come far and would go on the same way. `newton_` is the undamped step.
void Descent::FindRunaway() {
  double most = kFar;
  for (std::size_t k = 0; k < parameter_.size(); ++k) {
    const int place = static_cast<int>(k) + 1;
    const double limit = LongestMove(fit_, parameter_[k]);
    const double way = (fit_.FitA(parameter_[k]) - start_[k]) / limit;
    if (std::fabs(way) <= most || lastMove_[k] * way <= 0.0) continue;
    const bool unknown = std::find(unknown_.begin(), unknown_.end(), place) != unknown_.end();
    if (!unknown && newton_[k] * way <= kFar * limit * std::fabs(way)) continue;
    most = std::fabs(way);
    end_.runaway = parameter_[k];
    end_.upwards = way > 0.0;
  }
}

// Names what stands in the way of a rest, and leaves the covariance in parameter order.
void Descent::Close() {
  fit_.FitChiSq = Best();
  if (end_.rest == FitRest::kStopped) return;
  newtonForecast_ = NewtonForecast();
  newton_.assign(fit_.Memory.trialStep.Row(1), fit_.Memory.trialStep.Row(1) + fit_.Memory.mfit);
  InvertWhatIsKnown();
  if (FindVague()) InvertWhatIsKnown();
  FindRunaway();
  if (end_.rest == FitRest::kSettled) {
    if (!unknown_.empty()) end_.rest = FitRest::kUndetermined;
    if (end_.runaway != 0) end_.rest = FitRest::kRunaway;
  }
  for (const int place : unknown_) {
    end_.undetermined.push_back(parameter_[static_cast<std::size_t>(place - 1)]);
  }
  std::sort(end_.undetermined.begin(), end_.undetermined.end());
  COVSRT(fit_, fit_.FitCovar, fit_.FitMA, fit_.Memory.mfit);
}

RestEnd Descent::Run(int mostSteps) {
  end_.rest = Descend(mostSteps);
  Close();
  return end_;
}

// Baselines and reference concentrations alone, the shared parameters held: from a start that is
// worse than no model, the shared ones would go astray to make up for these. The steps taken.
int FitDatasetsAlone(FitState& fit, Host& host, int mostSteps) {
  const Array1<std::int16_t> chosen = fit.FitIA;
  for (int l = fit.SharedBase() + 1; l <= fit.FitMA; ++l) fit.FitIA(l) = 0;
  int steps = 0;
  if (fit.NumFitted() > 0) {
    Descent alone(fit, host);
    alone.Begin();
    steps = alone.Run(mostSteps).steps;
  }
  fit.FitIA = chosen;
  return steps;
}

}  // namespace

double GreatestError(const FitState& fit, int l) {
  constexpr double kVague = 100.0;  // longest moves
  return kVague * LongestMove(fit, l);
}

RestEnd BringToRest(FitState& fit, Host& host, int mostSteps) {
  Descent descent(fit, host);
  descent.Begin();
  if (descent.StartSum() <= kHopeless * FlatSum(fit)) return descent.Run(mostSteps);
  const double startSum = descent.StartSum();
  const int before = FitDatasetsAlone(fit, host, std::min(mostSteps, kMostAlone));
  Descent whole(fit, host);
  whole.Begin();
  RestEnd end = whole.Run(mostSteps - before);
  end.startSum = startSum;
  end.steps += before;
  return end;
}

FitRest SettleFit(FitState& fit, Host& host, int mostSteps) {
  return BringToRest(fit, host, mostSteps).rest;
}

}  // namespace quorvane
