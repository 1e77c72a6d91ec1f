#include "fit/pass_planner.h"

#include <algorithm>
#include <cmath>

#include "fit/fit_state.h"
#include "fit/models.h"
#include "fit/pass_plan.h"
#include "fit/species.h"

namespace quorvane {

namespace {

// Well inside the range of VectorExp and of a double, also after a first step of 1 %.
constexpr double kMostExponent = 600.0;

// A complex of up to this many of a component is a product of concentrations: fewer operations
// than an exp(), and a rounding error of no more than as many units.
constexpr int kMostPower = 4;

constexpr int kNoMove = -1;

// A factor of c, and what the least step adds to it: f and g.
struct Factor {
  double value = 0.0;
  double change = 0.0;
};

// Of the signal, of the total of A and of the total of B.
using Factors = std::array<Factor, 3>;

// sinh d and cosh d by exp(d) - 1, so that a small d loses no digits.
void FillHyperbolic(SpeciesChange& change) {
  if (change.exponent == 0.0) return;
  const double up = std::expm1(change.exponent);
  const double down = -up / (1.0 + up);  // exp(-d) - 1
  change.sinh = (up - down) / 2.0;
  change.cosh = 1.0 + (up + down) / 2.0;
}

// No less than exp(t) - 1, for t >= 0: exp(t) <= 1 + t + t^2 up to t = 1.79.
double GrowthBound(double t) {
  return t <= 1.0 ? t * (1.0 + t) : std::expm1(t);
}

bool IsPower(double n) {
  return n >= 0.0 && n <= kMostPower && n == std::floor(n);
}

// How often the value of a shared parameter stands in the sum of ln K of a species. With
// constrained ratios the first ln K stands in each of its terms (ReferenceState::LnK).
int Occurrences(const Species& species, int parameter, bool kRatios) {
  int count = 0;
  for (const int lnK : species.lnK) {
    if (lnK == 0) break;
    count += lnK == parameter || (kRatios && parameter == species.lnK[0]);
  }
  return count;
}

class Planner {
 public:
  Planner(const FitState& fit, const SetPoints& points, int d, PassPlan& plan)
      : fit_(fit),
        model_(*fit.FitModel),
        d_(d),
        greatestX_(fit.Workspace.facts[static_cast<std::size_t>(d - 1)].greatestX),
        state_(fit, model_, fit.Workspace.work, d),
        plan_(plan) {
    plan_.rule = model_.steps;
    plan_.set.weighted = points.extra > 0;
    plan_.set.baseline = fit.Workspace.work(d);
  }

  bool Make() {
    const std::vector<int>& touching = fit_.Workspace.touching;
    if (touching.size() > kMostColumns || !(plan_.rule.RatioOfLeastStep() < kSafeRatio)) {
      return false;
    }
    for (const Species& species : model_.species) {
      if (!AddSpecies(species)) return false;
    }
    return std::all_of(touching.begin(), touching.end(), [&](int l) { return AddParameter(l); });
  }

 private:
  // The greatest |constant + rate x| of the dataset is no more than this.
  double Reach(double constant, double rate) const {
    return std::fabs(constant) + std::fabs(rate) * greatestX_;
  }

  bool AddSpecies(const Species& species) {
    const double countA = state_.CountA(species);
    const double countB = state_.CountB(species);
    const double lnK = state_.LnK(species);
    const double exponent = std::fabs(countA) * Reach(state_.lnA, state_.rateA) +
                            std::fabs(countB) * Reach(state_.lnB, state_.rateB) + std::fabs(lnK);
    if (!(exponent <= kMostExponent)) return false;
    const std::size_t k = plan_.set.species++;
    SpeciesPlan& part = plan_.set.parts[k];
    part.constant = countA * state_.lnA + countB * state_.lnB + lnK;
    part.slope = state_.Rate(species);
    part.signal = state_.Extinction(species);
    if (countA + countB != 1.0 && IsPower(countA) && IsPower(countB)) {
      part.powerA = static_cast<int>(countA);
      part.powerB = static_cast<int>(countB);
      part.factor = std::exp(lnK);
    }
    plan_.count[0][k] = countA;
    plan_.count[1][k] = countB;
    return true;
  }

  // Parameter l of the fit.
  bool AddParameter(int l) {
    ParameterPlan& parameter = plan_.parameter[plan_.parameters++];
    if (l == d_) {
      parameter.constant = 1.0;
      return true;
    }
    const double a0 = fit_.Workspace.work(l);
    if (a0 == 0.0) return false;
    parameter.step = StepRule::Least(a0);
    for (std::size_t k = 0; k < plan_.set.species; ++k) {
      if (IsRatio(l, model_.species[k]) || !AddChange(l, k, parameter)) return false;
    }
    if (parameter.column) plan_.set.terms[*parameter.column] = parameter.signal;
    return true;
  }

  // Whether parameter l is a ratio of constants in the ln K of a species.
  bool IsRatio(int l, const Species& species) const {
    const int shared = l - state_.base;
    return state_.kRatios && shared > 0 && shared != species.lnK[0] &&
           std::find(species.lnK.begin(), species.lnK.end(), shared) != species.lnK.end();
  }

  bool AddChange(int l, std::size_t k, ParameterPlan& parameter) {
    SpeciesChange& change = parameter.changes[k];
    change = ChangeOf(l, model_.species[k], parameter.step);
    FillHyperbolic(change);
    int move = kNoMove;
    if (change.rate != 0.0) {
      move = MoveOf(change.rate);
      if (move == kNoMove) return false;
      plan_.set.move[static_cast<std::size_t>(move)].species[k] = true;
      if (!parameter.column) parameter.column = plan_.set.columns++;
    }
    const Factors factors = {{{plan_.set.parts[k].signal, change.signal},
                              {plan_.count[0][k], change.countA},
                              {plan_.count[1][k], change.countB}}};
    parameter.signal[k] = TermOf(factors[0], change, parameter.step, move);
    if (plan_.set.weighted) {
      parameter.totals[0][k] = TermOf(factors[1], change, parameter.step, move);
      parameter.totals[1][k] = TermOf(factors[2], change, parameter.step, move);
    }
    return WidenBound(factors, change);
  }

  // d, m and the changes of the counts when parameter l grows by h: the table of pass_kernel.h.
  SpeciesChange ChangeOf(int l, const Species& species, double h) const {
    const double countA = state_.CountA(species);
    const double countB = state_.CountB(species);
    const double omega = fit_.SetOmegaTerm(d_);
    const int shared = l - state_.base;
    if (shared <= 0) return {.exponent = (l <= 2 * fit_.NumFitSets ? countA : countB) * h};
    if (shared == 1) return {.rate = countA * omega * h};
    if (shared == 2 && model_.secondComponent) return {.rate = countB * omega * h};
    SpeciesChange change;
    change.exponent = Occurrences(species, shared, state_.kRatios) * h;
    if (species.a.parameter == shared) {
      change.countA = h;
      change.exponent += h * state_.lnA;
      change.rate += h * state_.rateA;
    }
    if (species.b.parameter == shared) {
      change.countB = h;
      change.exponent += h * state_.lnB;
      change.rate += h * state_.rateB;
    }
    change.signal = change.countA * state_.extinctionA + change.countB * state_.extinctionB;
    return change;
  }

  // Index of the move with that rate, a new one if need be; kNoMove if the kernel cannot do it.
  int MoveOf(double rate) {
    SetPlan& set = plan_.set;
    for (std::size_t m = 0; m < set.moves; ++m) {
      if (set.move[m].rate == rate) return static_cast<int>(m);
    }
    if (set.moves == kMostMoves || !(std::fabs(rate) * greatestX_ <= kMostMove)) return kNoMove;
    set.move[set.moves].rate = rate;
    return static_cast<int>(set.moves++);
  }

  // P and Q of one factor.
  ColumnTerm TermOf(const Factor& factor, const SpeciesChange& change, double h, int move) {
    const double q = (factor.value * change.sinh + factor.change * change.cosh) / h;
    if (move == kNoMove) return {.level = q};
    const double p = (factor.value * change.cosh + factor.change * change.sinh) / h;
    if (q != 0.0) plan_.set.move[static_cast<std::size_t>(move)].cosh = true;
    return {.move = move, .sinh = p, .cosh = q};
  }

  // Makes the bound hold for what the first step of the rule can do to one species. False if that
  // has no bound.
  bool WidenBound(const Factors& factors, const SpeciesChange& change) {
    const double steps = plan_.rule.FirstInLeastSteps();
    const double growth = GrowthBound(steps * Reach(change.exponent, change.rate));
    double share = 0.0;  // the greatest relative change of a factor
    for (const Factor& factor : factors) {
      if (factor.change == 0.0) continue;
      if (factor.value == 0.0) return false;
      share = std::max(share, std::fabs(steps * factor.change / factor.value));
    }
    double& bound = plan_.set.boundFactor;
    bound = std::max(bound, growth + (1.0 + growth) * share);
    return true;
  }

  const FitState& fit_;
  const Model& model_;
  int d_;
  double greatestX_;
  ReferenceState state_;
  PassPlan& plan_;
};

}  // namespace

bool PlanPass(const FitState& fit, const SetPoints& points, int d, PassPlan& plan) {
  return Planner(fit, points, d, plan).Make();
}

}  // namespace quorvane
