#include "fit/species_pass.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

#include "fit/fit_state.h"
#include "fit/models.h"
#include "fit/species.h"

namespace {

constexpr double kMostExponent = 600.0;  // well inside the range of VectorExp and of a double
constexpr int kMostPower = 4;

// How a species answers to a parameter that grows by its common step.
struct Change {
  double exponent = 0.0;  // of c, at x = 0
  double rate = 0.0;      // 1/cm^2
  double countA = 0.0;
  double countB = 0.0;
  // Of the exponent.
  double sinh = 0.0;
  double cosh = 1.0;
};

void FillHyperbolic(Change& change) {
  if (change.exponent == 0.0) return;
  const double up = std::expm1(change.exponent);
  const double down = -up / (1.0 + up);  // expm1 of the negative exponent
  change.sinh = (up - down) / 2.0;
  change.cosh = 1.0 + (up + down) / 2.0;
}

// No less than exp(t) - 1, for t >= 0.
double GrowthBound(double t) {
  return t <= 1.0 ? t * (1.0 + t) : std::expm1(t);
}

// A factor of c, and what the step adds to it.
struct Factor {
  double value = 0.0;
  double change = 0.0;
};

int Occurrences(const Species& species, int parameter, bool kRatios) {
  int count = 0;
  for (const int lnK : species.lnK) {
    if (lnK == 0) break;
    count += lnK == parameter || (kRatios && parameter == species.lnK[0]);
  }
  return count;
}

// The derivative with respect to one parameter, by the common step.
struct Derivative {
  double step = 0.0;  // 0 for the baseline, whose step does not matter
  double constant = 0.0;
  std::array<Change, kMaxSpecies> changes = {};  // by the common step
  ColumnTerms terms = {};
  std::optional<std::size_t> column = {};  // of the kernel, for the terms with a move
};

// The plan of one dataset, built parameter by parameter.
class Planner {
 public:
  Planner(FitState& fit, const SetPoints& points, int d)
      : fit_(fit),
        model_(*fit.FitModel),
        points_(points),
        d_(d),
        greatestX_(fit.Workspace.facts[static_cast<std::size_t>(d - 1)].greatestX),
        state_(fit, model_, fit.Workspace.work, d) {
    plan.weighted = points.extra > 0;
    plan.baseline = fit.Workspace.work(d);
  }

  // False if the kernel cannot make the sums.
  bool Build() {
    if (!AddSpecies()) return false;
    for (const int l : fit_.Workspace.touching) {
      if (!AddColumn(l)) return false;
    }
    return true;
  }

  // The first step of the rule in one parameter.
  FirstStepPlan FirstStepOf(std::size_t parameter) const {
    const Derivative& derivative = signal[parameter];
    FirstStepPlan step;
    const double steps = model_.steps.firstStep / StepRule::kLeastStep;
    for (std::size_t k = 0; k < plan.species; ++k) {
      const Change& change = derivative.changes[k];
      step.parts[k] = {Stepped(k, change, steps) * std::exp(steps * change.exponent),
                       steps * change.rate, plan.parts[k].signal};
    }
    return step;
  }

  // The derivative at a point of the chunk by the rule as it is written.
  double ByTheRule(const Chunk& chunk, std::size_t j, std::size_t parameter) const {
    const Derivative& derivative = signal[parameter];
    const double a0 = derivative.step / StepRule::kLeastStep;
    return model_.steps.Derivative(a0, chunk.value[j],
                                   [&](double h) { return Moved(chunk, j, derivative, h); });
  }

  SetPlan plan;
  std::size_t parameters = 0;
  // Each derivative, of the signal and of the means of A and B, species by species.
  std::array<Derivative, kMostColumns> signal = {};
  std::array<std::array<Derivative, kMostColumns>, 2> mean = {};
  std::array<std::array<double, kMaxSpecies>, 2> count = {};  // of A and B

 private:
  // Signal factor of a species after some common steps.
  double Stepped(std::size_t k, const Change& change, double steps) const {
    return plan.parts[k].signal +
           steps * (change.countA * state_.extinctionA + change.countB * state_.extinctionB);
  }

  // Signal of a point with a parameter moved by h.
  double Moved(const Chunk& chunk, std::size_t j, const Derivative& derivative, double h) const {
    const double steps = h / derivative.step;
    double value = plan.baseline;
    for (std::size_t k = 0; k < plan.species; ++k) {
      const Change& change = derivative.changes[k];
      value += Stepped(k, change, steps) * chunk.C(k)[j] *
               std::exp(steps * (change.exponent + change.rate * chunk.x[j]));
    }
    return value;
  }

  bool AddSpecies() {
    for (const Species& species : model_.species) {
      const double countA = state_.CountA(species);
      const double countB = state_.CountB(species);
      const double lnK = state_.LnK(species);
      const double exponent = std::fabs(countA) * Reach(state_.lnA, state_.rateA) +
                              std::fabs(countB) * Reach(state_.lnB, state_.rateB) + std::fabs(lnK);
      if (!(exponent <= kMostExponent)) return false;
      SpeciesPlan& part = plan.parts[plan.species];
      part.constant = countA * state_.lnA + countB * state_.lnB + lnK;
      part.slope = state_.Rate(species);
      part.signal = state_.Extinction(species);
      if (countA + countB != 1.0 && IsPower(countA) && IsPower(countB)) {
        part.powerA = static_cast<int>(countA);
        part.powerB = static_cast<int>(countB);
        part.factor = std::exp(lnK);
      }
      count[0][plan.species] = countA;
      count[1][plan.species] = countB;
      ++plan.species;
    }
    return true;
  }

  double Reach(double constant, double rate) const {
    return std::fabs(constant) + std::fabs(rate) * greatestX_;
  }

  static bool IsPower(double n) { return n >= 0.0 && n <= kMostPower && n == std::floor(n); }

  bool AddColumn(int l) {
    const double a0 = fit_.Workspace.work(l);
    if (l == d_) {
      plan.boundConstant = std::fabs(model_.steps.First(a0));
      signal[parameters++].constant = 1.0;  // the signal is linear in it, whatever the step
      return true;
    }
    if (a0 == 0.0) return false;
    const double h = StepRule::Least(a0);
    signal[parameters].step = h;
    for (std::size_t k = 0; k < plan.species; ++k) {
      if (!AddTerms(l, k, h)) return false;
    }
    if (signal[parameters].column)
      plan.terms[*signal[parameters].column] = signal[parameters].terms;
    ++parameters;
    return true;
  }

  bool AddTerms(int l, std::size_t k, double h) {
    Change& change = signal[parameters].changes[k];
    change = ChangeOf(l, model_.species[k], h);
    FillHyperbolic(change);
    int move = -1;
    if (change.rate != 0.0) {
      move = MoveOf(change.rate);
      if (move < 0) return false;
      plan.move[static_cast<std::size_t>(move)].species[k] = true;
      if (!signal[parameters].column) signal[parameters].column = plan.columns++;
    }
    const std::array<Factor, 3> factors = {
        {{plan.parts[k].signal,
          change.countA * state_.extinctionA + change.countB * state_.extinctionB},
         {count[0][k], change.countA},
         {count[1][k], change.countB}}};
    signal[parameters].terms[k] = TermOf(factors[0], change, h, move);
    if (plan.weighted) {
      mean[0][parameters].terms[k] = TermOf(factors[1], change, h, move);
      mean[1][parameters].terms[k] = TermOf(factors[2], change, h, move);
    }
    return Bound(factors, change);
  }

  Change ChangeOf(int l, const Species& species, double h) const {
    const double countA = state_.CountA(species);
    const double countB = state_.CountB(species);
    const int n = fit_.NumFitSets;
    const double omega = fit_.SetOmegaTerm(d_);
    const int shared = l - fit_.SharedBase();
    if (shared <= 0 && l <= 2 * n) return {.exponent = countA * h};
    if (shared <= 0) return {.exponent = countB * h};
    if (shared == 1) return {.rate = countA * omega * h};
    if (shared == 2 && model_.secondComponent) return {.rate = countB * omega * h};
    Change change;
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
    return change;
  }

  // Index of the change of rate, a new one if need be; -1 if the kernel cannot do it.
  int MoveOf(double rate) {
    for (std::size_t m = 0; m < plan.moves; ++m) {
      if (plan.move[m].rate == rate) return static_cast<int>(m);
    }
    if (plan.moves == kMostMoves || !(std::fabs(rate) * greatestX_ <= kMostMove)) return -1;
    plan.move[plan.moves].rate = rate;
    return static_cast<int>(plan.moves++);
  }

  // (F(a0 + h) - F(a0 - h)) / 2 / h of factor times c: with f the factor, g its change, e and m
  // the changes of the exponent at x = 0 and of the rate,
  //   ((f + g) exp(e + m x) - (f - g) exp(-e - m x)) c / 2h.
  ColumnTerm TermOf(const Factor& factor, const Change& change, double h, int move) {
    const double difference = (factor.value * change.sinh + factor.change * change.cosh) / h;
    if (move < 0) return {.level = difference};
    const double sum = (factor.value * change.cosh + factor.change * change.sinh) / h;
    if (difference != 0.0) plan.move[static_cast<std::size_t>(move)].cosh = true;
    return {.move = move, .sinh = sum, .cosh = difference};
  }

  // Widens the bound by what the first step of the rule can do to one species. False if that has
  // no bound.
  bool Bound(const std::array<Factor, 3>& factors, const Change& change) {
    const double steps = model_.steps.firstStep / StepRule::kLeastStep;
    const double growth = GrowthBound(steps * Reach(change.exponent, change.rate));
    double share = 0.0;  // the greatest relative change of a factor
    for (const Factor& factor : factors) {
      if (factor.change == 0.0) continue;
      if (factor.value == 0.0) return false;
      share = std::max(share, std::fabs(steps * factor.change / factor.value));
    }
    plan.boundFactor = std::max(plan.boundFactor, growth + (1.0 + growth) * share);
    return true;
  }

  FitState& fit_;
  const Model& model_;
  const SetPoints& points_;
  int d_;
  double greatestX_;
  ReferenceState state_;
};

// Copies points into the chunk; those behind the last get x and weight 0.
void FillPoints(const FitState& fit, const SetPoints& points, std::size_t first, std::size_t count,
                bool weighted, Chunk& chunk) {
  std::copy_n(points.x + first, count, chunk.x.begin());
  std::copy_n(points.y + first, count, chunk.y.begin());
  std::fill(chunk.x.begin() + static_cast<std::ptrdiff_t>(count), chunk.x.end(), 0.0);
  std::fill(chunk.y.begin() + static_cast<std::ptrdiff_t>(count), chunk.y.end(), 0.0);
  if (!weighted) return;
  const double* weights =
      fit.Workspace.weights.data() + static_cast<std::size_t>(points.first - 1) + first;
  std::copy_n(weights, count, chunk.weight.begin());
  std::fill(chunk.weight.begin() + static_cast<std::ptrdiff_t>(count), chunk.weight.end(), 0.0);
}

// Takes point j out of the sums of the chunk.
void LeaveOut(const SetPlan& plan, std::size_t j, Chunk& chunk) {
  chunk.residual[j] = 0.0;
  for (std::size_t row = 0; row < 1 + plan.species + plan.columns; ++row) chunk.basis[row][j] = 0.0;
}

void AddPoint(const std::array<double, kMostColumns>& derivative, double residual,
              std::size_t parameters, SetSums& sums) {
  sums.squares += residual * residual;
  for (std::size_t l = 0; l < parameters; ++l) {
    sums.gradient[l] += residual * derivative[l];
    for (std::size_t m = 0; m <= l; ++m) sums.product[l][m] += derivative[l] * derivative[m];
  }
}

// The derivatives at a point of the chunk, which are combinations of the basis.
std::array<double, kMostColumns> DerivativesAt(const Planner& planner, const Chunk& chunk,
                                               std::size_t j) {
  const SetPlan& plan = planner.plan;
  std::array<double, kMostColumns> result = {};
  for (std::size_t l = 0; l < planner.parameters; ++l) {
    const Derivative& derivative = planner.signal[l];
    result[l] = derivative.constant;
    for (std::size_t k = 0; k < plan.species; ++k) {
      result[l] += derivative.terms[k].level * chunk.C(k)[j];
    }
    if (derivative.column) result[l] += chunk.basis[1 + plan.species + *derivative.column][j];
  }
  return result;
}

// Takes the points that need another than the common step out of the chunk and adds them to the
// sums by the rule as it is written.
void AddDoubtful(const Planner& planner, const PassKernel& kernel, std::size_t count, Chunk& chunk,
                 SetSums& sums) {
  std::array<std::uint8_t, kChunk> doubtful = {};  // bits of the parameters
  bool any = false;
  for (std::size_t l = 0; l < planner.parameters; ++l) {
    if (planner.signal[l].step == 0.0) continue;
    if (kernel.testStep(planner.plan, planner.FirstStepOf(l), chunk) < 0.0) continue;
    for (std::size_t j = 0; j < count; ++j) {
      if (chunk.doubt[j] < 0.0) continue;
      doubtful[j] |= static_cast<std::uint8_t>(1U << l);
      any = true;
    }
  }
  for (std::size_t j = 0; any && j < count; ++j) {
    if (doubtful[j] == 0) continue;
    std::array<double, kMostColumns> derivatives = DerivativesAt(planner, chunk, j);
    for (std::size_t l = 0; l < planner.parameters; ++l) {
      if ((doubtful[j] >> l & 1U) != 0) derivatives[l] = planner.ByTheRule(chunk, j, l);
    }
    AddPoint(derivatives, chunk.residual[j], planner.parameters, sums);
    LeaveOut(planner.plan, j, chunk);
  }
}

// Adds a mass conservation point, whose value is the mean concentration of its component times the
// target over the load. False if it may need another than the common step.
bool AddMassPoint(const Planner& planner, const SetPoints& points, std::size_t component,
                  const BasisSums& basis, SetSums& sums) {
  const SetPlan& plan = planner.plan;
  const double target = points.y[points.n + component];
  const double scale = target / (component == 0 ? points.aLoad : points.bLoad);
  double value = 0.0;
  double gross = 0.0;
  for (std::size_t k = 0; k < plan.species; ++k) {
    value += scale * planner.count[component][k] * basis.level[k];
    gross += std::fabs(scale * planner.count[component][k]) * basis.level[k];
  }
  if (!(plan.boundFactor * gross <= kSafeShare * std::fabs(value))) return false;
  std::array<double, kMostColumns> derivative = {};
  for (std::size_t l = 0; l < planner.parameters; ++l) {
    for (std::size_t k = 0; k < plan.species; ++k) {
      const ColumnTerm& term = planner.mean[component][l].terms[k];
      double share = term.level * basis.level[k];
      if (term.move >= 0) {
        const auto m = static_cast<std::size_t>(term.move);
        share = term.sinh * basis.sinh[m][k] + term.cosh * basis.cosh[m][k];
      }
      derivative[l] += scale * share;
    }
  }
  AddPoint(derivative, target - value, planner.parameters, sums);
  return true;
}

// Adds the sums over the kernel's points: each derivative is a combination of the basis.
void AddBasis(const Planner& planner, const BasisSums& basis, SetSums& sums) {
  const SetPlan& plan = planner.plan;
  const std::size_t rows = 1 + plan.species + plan.columns;
  using Row = std::array<double, kMostBasis>;
  std::array<Row, kMostColumns> share = {};     // [parameter][row]
  std::array<Row, kMostColumns> combined = {};  // share times the products
  for (std::size_t l = 0; l < planner.parameters; ++l) {
    const Derivative& derivative = planner.signal[l];
    share[l][0] = derivative.constant;
    for (std::size_t k = 0; k < plan.species; ++k) share[l][1 + k] = derivative.terms[k].level;
    if (derivative.column) share[l][1 + plan.species + *derivative.column] = 1.0;
    for (std::size_t i = 0; i < rows; ++i) {
      sums.gradient[l] += share[l][i] * basis.gradient[i];
      for (std::size_t k = 0; k < rows; ++k) {
        combined[l][k] += share[l][i] * basis.product[std::max(i, k)][std::min(i, k)];
      }
    }
  }
  for (std::size_t l = 0; l < planner.parameters; ++l) {
    for (std::size_t m = 0; m <= l; ++m) {
      for (std::size_t i = 0; i < rows; ++i) sums.product[l][m] += combined[l][i] * share[m][i];
    }
  }
  sums.squares += basis.squares;
}

// Adds the weights of a trapezoid rule, with the sector width as weight. False if some are below 0
// or there is no area: then nothing is known of a sum's sign.
bool AddWeights(const SetPoints& points, double* weights) {
  double area = 0.0;
  for (std::size_t j = 0; j + 1 < points.n; ++j) {
    const double width = (points.f[j] + points.f[j + 1]) * (points.r[j + 1] - points.r[j]);
    if (!(width >= 0.0)) return false;
    weights[j] += width / 4.0;
    weights[j + 1] += width / 4.0;
    area += width / 2.0;
  }
  if (!(area > 0.0)) return false;
  for (std::size_t j = 0; j < points.n; ++j) weights[j] /= area;
  return true;
}

}  // namespace

void PreparePoints(const FitState& fit, std::vector<PointFacts>& facts,
                   std::vector<double>& weights) {
  facts.assign(static_cast<std::size_t>(fit.NumFitSets), {});
  const bool mass = fit.TwoComponentModel && fit.UseMassConservation;
  weights.assign(mass ? static_cast<std::size_t>(fit.FitNumPoints) : 0, 0.0);
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    const SetPoints points = PointsOf(fit, d);
    PointFacts& fact = facts[static_cast<std::size_t>(d - 1)];
    for (std::size_t j = 0; j < points.n; ++j) {
      fact.greatestX = std::max(fact.greatestX, std::fabs(points.x[j]));
    }
    if (points.extra == 0) continue;
    fact.plain = points.aLoad == 0.0 || points.bLoad == 0.0 ||
                 !AddWeights(points, weights.data() + (points.first - 1));
  }
}

bool SumSpeciesSet(FitState& fit, const SetPoints& points, int d, SetSums& sums) {
  if (fit.Workspace.facts[static_cast<std::size_t>(d - 1)].plain) return false;
  Planner planner(fit, points, d);
  if (!planner.Build()) return false;
  const SetPlan& plan = planner.plan;
  const PassKernel& kernel = BestKernel();
  BasisSums basis;
  Chunk chunk;
  for (std::size_t first = 0; first < points.n; first += kChunk) {
    const std::size_t count = std::min(kChunk, points.n - first);
    FillPoints(fit, points, first, count, plan.weighted, chunk);
    const bool doubtful = kernel.evaluate(plan, chunk) > 0.0;
    if (plan.weighted) kernel.addWeighted(plan, chunk, basis);
    if (doubtful) AddDoubtful(planner, kernel, count, chunk, sums);
    for (std::size_t j = count; j < kChunk; ++j) LeaveOut(plan, j, chunk);
    kernel.addProducts(plan, chunk, basis);
  }
  AddBasis(planner, basis, sums);
  return points.extra == 0 || (AddMassPoint(planner, points, 0, basis, sums) &&
                               AddMassPoint(planner, points, 1, basis, sums));
}
