#include "sim/plan_errors.h"

#include <algorithm>
#include <cmath>

#include "base/arithmetic.h"
#include "base/number_format.h"
#include "fit/figure_words.h"
#include "fit/settled_fit.h"
#include "sim/plan_traps.h"

namespace quorvane {

namespace {

bool Stopped(const StopFlag* stop) {
  return stop != nullptr && stop->Raised();
}

InformationRoot EmptyRoot(const ExperimentPlan& plan) {
  return {plan.Fitted().size(), {}};
}

InformationRoot InformationOfCell(const ExperimentPlan& plan, const PlannedCell& cell) {
  FitState fit = StateOf(plan, {&cell});
  return fit.NumFitSets == 0 ? EmptyRoot(plan) : InformationOf(fit);
}

// All columns at one speed.
struct SpeedPart {
  double speed = 0.0;
  std::vector<PlannedCell> cells;
  InformationRoot root;
};

SpeedPart PartOf(const ExperimentPlan& plan, double speed, const StopFlag* stop) {
  SpeedPart part{speed, {}, EmptyRoot(plan)};
  for (std::size_t column = 0; column < plan.loads.size() && !Stopped(stop); ++column) {
    try {
      part.cells.push_back(PlanCell(plan, speed, column));
      part.root = Joined(part.root, InformationOfCell(plan, part.cells.back()));
    } catch (const ArithmeticFault& fault) {
      throw ArithmeticFault(fault.kind(), "at " + SpeedText(static_cast<int>(speed)) + ", load " +
                                              FormatParam(plan.loads[column]));
    }
  }
  return part;
}

// The parts of all speeds, or of the candidates that can be worked out.
std::vector<SpeedPart> PartsOf(const ExperimentPlan& plan, const StopFlag* stop,
                               std::vector<double>& leftOut) {
  const std::vector<double>& offered = Chooses(plan) ? plan.candidates : plan.speeds;
  const auto most = Chooses(plan) ? offered.size() - static_cast<std::size_t>(plan.choose) : 0;
  std::vector<SpeedPart> parts;
  parts.reserve(offered.size());
  for (const double speed : offered) {
    try {
      parts.push_back(PartOf(plan, speed, stop));
    } catch (const ArithmeticFault&) {
      leftOut.push_back(speed);
      if (leftOut.size() > most) throw;
    }
  }
  return parts;
}

// Standard errors of a plan with that information.
class ErrorMaker {
 public:
  explicit ErrorMaker(const ExperimentPlan& plan) : noise_(plan.noise), parameters_(plan.Fitted()) {
    FitState fit;  // as far as GreatestError reads one
    fit.FitModel = plan.model;
    for (const ModelParameter& parameter : plan.model->parameters) {
      fit.FitA.Append(plan.truth.*parameter.shared->field);
      if (plan.Fits(*parameter.shared)) greatest_.push_back(GreatestError(fit, fit.FitA.size()));
    }
    for (const ModelParameter* parameter : parameters_) {
      values_.push_back(plan.truth.*parameter->shared->field);
    }
  }

  // Nothing for a parameter that is not determined, or by no number that makes sense.
  std::vector<std::optional<double>> ErrorsOf(const SharedCovariance& covariance) const {
    std::vector<std::optional<double>> errors;
    for (std::size_t k = 0; k < parameters_.size(); ++k) {
      std::optional<double>& error = errors.emplace_back();
      if (!covariance.variance[k]) continue;
      const double sd = noise_ * std::sqrt(*covariance.variance[k]);
      if (std::isfinite(sd) && sd <= greatest_[k]) error = sd;
    }
    return errors;
  }

  std::optional<double> ScoreOf(const std::vector<std::optional<double>>& errors) const {
    double score = 0.0;
    for (std::size_t k = 0; k < errors.size(); ++k) {
      if (!errors[k]) return std::nullopt;
      const bool relative = ErrorIsRelative(*parameters_[k]);
      if (relative && values_[k] == 0.0) continue;  // a relative error has no meaning there
      const double part = relative ? *errors[k] / values_[k] : *errors[k];
      score += part * part;
    }
    return score;
  }

  std::vector<ExpectedError> Expected(const SharedCovariance& covariance) const {
    const std::vector<std::optional<double>> errors = ErrorsOf(covariance);
    std::vector<ExpectedError> expected;
    for (std::size_t k = 0; k < errors.size(); ++k) {
      ExpectedError& one = expected.emplace_back();
      one = {parameters_[k], values_[k], errors[k], {}};
      if (one.sd && one.value != 0.0) one.relative = *one.sd / std::fabs(one.value);
    }
    return expected;
  }

 private:
  double noise_;
  std::vector<const ModelParameter*> parameters_;
  std::vector<double> values_;
  std::vector<double> greatest_;
};

bool Better(const SpeedChoice& one, const SpeedChoice& other) {
  if (one.score.has_value() != other.score.has_value()) return one.score.has_value();
  if (one.score && *one.score != *other.score) return *one.score < *other.score;
  return one.speeds < other.speeds;
}

// Ranks all choices of `choose` parts by walking through them in order.
class Ranker {
 public:
  Ranker(const ExperimentPlan& plan, const std::vector<SpeedPart>& parts, const StopFlag* stop)
      : plan_(plan), parts_(parts), stop_(stop), maker_(plan) {}

  std::vector<SpeedChoice> Run() {
    Choose(0, EmptyRoot(plan_));
    Keep();
    return std::move(kept_);
  }

  std::size_t Count() const { return count_; }

 private:
  void Choose(std::size_t from, const InformationRoot& root) {
    const std::size_t missing = static_cast<std::size_t>(plan_.choose) - speeds_.size();
    if (missing == 0) {
      Take(root);
      return;
    }
    for (std::size_t k = from; k + missing <= parts_.size() && !Stopped(stop_); ++k) {
      speeds_.push_back(parts_[k].speed);
      Choose(k + 1, Joined(root, parts_[k].root));
      speeds_.pop_back();
    }
  }

  void Take(const InformationRoot& root) {
    ++count_;
    const auto errors = maker_.ErrorsOf(CovarianceOf(root));
    kept_.push_back({speeds_, errors, maker_.ScoreOf(errors)});
    if (kept_.size() >= 8 * kMostRanked) Keep();
  }

  void Keep() {
    std::sort(kept_.begin(), kept_.end(), Better);
    if (kept_.size() > kMostRanked) kept_.resize(kMostRanked);
  }

  const ExperimentPlan& plan_;
  const std::vector<SpeedPart>& parts_;
  const StopFlag* stop_;
  ErrorMaker maker_;
  std::vector<double> speeds_;
  std::vector<SpeedChoice> kept_;
  std::size_t count_ = 0;
};

// Apparent sigma over the whole column; 0 where a signal is 0.
double SigmaOf(const Dataset& scan) {
  const auto last = static_cast<std::size_t>(scan.NumPoints - 1);
  if (!(scan.C[0] > 0.0) || !(scan.C[last] > 0.0)) return 0.0;
  const double width = (scan.R[last] * scan.R[last] - scan.R[0] * scan.R[0]) / 2.0;
  return std::log(scan.C[last] / scan.C[0]) / width;
}

PlannedScan SeenScan(const ExperimentPlan& plan, const PlannedCell& cell, std::size_t wavelength) {
  const Dataset& scan = cell.scans[wavelength];
  PlannedScan seen{.speed = cell.speed,
                   .load = plan.loads[cell.column],
                   .column = cell.column,
                   .wavelength = wavelength,
                   .sigma = SigmaOf(scan)};
  if (plan.TwoComponents()) seen.loadB = plan.LoadB(cell.column);
  for (std::size_t k = 0; k < static_cast<std::size_t>(scan.NumPoints); ++k) {
    const bool good = scan.Good[k] != kFalse;
    seen.r.push_back(scan.R[k]);
    seen.signal.push_back(scan.C[k]);
    seen.good.push_back(good);
    if (!good) continue;
    seen.lowest = seen.points == 0 ? scan.C[k] : std::min(seen.lowest, scan.C[k]);
    seen.highest = seen.points == 0 ? scan.C[k] : std::max(seen.highest, scan.C[k]);
    ++seen.points;
  }
  return seen;
}

// Correlations without those of parameters that have no error.
void BlankUndetermined(PlanResult& result) {
  for (std::size_t i = 0; i < result.errors.size(); ++i) {
    for (std::size_t j = 0; j < result.errors.size(); ++j) {
      if (!result.errors[i].sd || !result.errors[j].sd) result.correlations[i][j].reset();
    }
  }
}

// The list that an axis moves in.
std::vector<double>& ListOf(ExperimentPlan& plan, PlanAxis::Kind kind) {
  if (kind == PlanAxis::Kind::kSpeed) return plan.speeds;
  return kind == PlanAxis::Kind::kLoad ? plan.loads : plan.loadsB;
}

// What the cells tell that the axis moves, or those that it leaves as they are.
InformationRoot Told(const ExperimentPlan& plan, const PlanAxis& axis, bool moved) {
  InformationRoot root = EmptyRoot(plan);
  const bool all = axis.kind == PlanAxis::Kind::kLoadB && plan.loadsB.size() == 1;
  for (std::size_t s = 0; s < plan.speeds.size(); ++s) {
    for (std::size_t column = 0; column < plan.loads.size(); ++column) {
      const bool touched = all || (axis.kind == PlanAxis::Kind::kSpeed ? s : column) == axis.place;
      if (touched != moved) continue;
      root = Joined(root, InformationOfCell(plan, PlanCell(plan, plan.speeds[s], column)));
    }
  }
  return root;
}

}  // namespace

bool ErrorIsRelative(const ModelParameter& parameter) {
  const ParameterKind kind = parameter.shared->kind;
  return kind != ParameterKind::kLnK && kind != ParameterKind::kFraction;
}

std::optional<double> PercentOf(const ExpectedError& error) {
  if (!error.relative || !ErrorIsRelative(*error.parameter)) return std::nullopt;
  return 100.0 * *error.relative;
}

PlanResult PlanExperiment(const ExperimentPlan& plan, const StopFlag* stop) {
  PlanResult result;
  const std::vector<SpeedPart> parts = PartsOf(plan, stop, result.leftOut);
  if (Stopped(stop)) return {};
  result.speeds = plan.speeds;
  if (Chooses(plan)) {
    Ranker ranker(plan, parts, stop);
    result.ranking = ranker.Run();
    if (Stopped(stop)) return {};
    result.choices = ranker.Count();
    result.speeds = result.ranking.front().speeds;
  }
  InformationRoot root = EmptyRoot(plan);
  for (const SpeedPart& part : parts) {
    const auto& taken = result.speeds;
    if (std::find(taken.begin(), taken.end(), part.speed) == taken.end()) continue;
    root = Joined(root, part.root);
    for (const PlannedCell& cell : part.cells) {
      for (std::size_t w = 0; w < cell.scans.size(); ++w) {
        result.scans.push_back(SeenScan(plan, cell, w));
      }
    }
  }
  const SharedCovariance covariance = CovarianceOf(root);
  result.errors = ErrorMaker(plan).Expected(covariance);
  result.correlations = covariance.correlation;
  BlankUndetermined(result);
  result.remarks = TrapsOf(plan, result);
  result.remarks.insert(result.remarks.end(), plan.notes.begin(), plan.notes.end());
  return result;
}

FitState FitOf(const ExperimentPlan& plan, const std::vector<double>& speeds) {
  std::vector<PlannedCell> cells;
  for (const double speed : speeds) {
    for (std::size_t column = 0; column < plan.loads.size(); ++column) {
      cells.push_back(PlanCell(plan, speed, column));
    }
  }
  std::vector<const PlannedCell*> all;
  all.reserve(cells.size());
  for (const PlannedCell& cell : cells) all.push_back(&cell);
  return StateOf(plan, all);
}

std::vector<std::vector<std::optional<double>>> ErrorsAlong(const ExperimentPlan& plan,
                                                            const PlanAxis& axis,
                                                            const std::vector<double>& values,
                                                            const StopFlag* stop) {
  const ErrorMaker maker(plan);
  const InformationRoot kept = Told(plan, axis, false);
  std::vector<std::vector<std::optional<double>>> errors;
  for (const double value : values) {
    ExperimentPlan moved = plan;
    ListOf(moved, axis.kind)[axis.place] = value;
    auto& here = errors.emplace_back(plan.Fitted().size());
    if (Stopped(stop) || RefusalOf(moved)) continue;
    try {
      here = maker.ErrorsOf(CovarianceOf(Joined(kept, Told(moved, axis, true))));
    } catch (const ArithmeticFault&) {  // beyond all numbers
    }
  }
  return errors;
}

}  // namespace quorvane
