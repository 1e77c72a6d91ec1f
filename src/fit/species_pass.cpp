#include "fit/species_pass.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "fit/fit_state.h"
#include "fit/model_terms.h"
#include "fit/pass_plan.h"
#include "fit/pass_planner.h"

namespace quorvane {

namespace {

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

// For each point of a chunk the parameters that may need another than the least step, as bits.
using DoubtfulPoints = std::array<std::uint8_t, kChunk>;
static_assert(kMostColumns <= 8, "a bit of DoubtfulPoints for each parameter");

// Works the first step in each parameter out. False if no point is doubtful.
bool FindDoubtful(const PassPlan& plan, const PassKernel& kernel, std::size_t count, Chunk& chunk,
                  DoubtfulPoints& doubtful) {
  bool any = false;
  for (std::size_t l = 0; l < plan.parameters; ++l) {
    if (plan.parameter[l].step == 0.0) continue;
    if (kernel.testStep(plan.set, plan.FirstStepOf(l), chunk) < 0.0) continue;
    for (std::size_t j = 0; j < count; ++j) {
      if (chunk.doubt[j] < 0.0) continue;
      doubtful[j] |= static_cast<std::uint8_t>(1U << l);
      any = true;
    }
  }
  return any;
}

// Takes the points that need another than the least step out of the chunk and adds them to the
// sums by the rule as it is written.
void AddDoubtful(const PassPlan& plan, const PassKernel& kernel, std::size_t count, Chunk& chunk,
                 SetSums& sums) {
  DoubtfulPoints doubtful = {};
  if (!FindDoubtful(plan, kernel, count, chunk, doubtful)) return;
  for (std::size_t j = 0; j < count; ++j) {
    if (doubtful[j] == 0) continue;
    std::array<double, kMostColumns> derivatives = plan.DerivativesAt(chunk, j);
    for (std::size_t l = 0; l < plan.parameters; ++l) {
      if ((doubtful[j] >> l & 1U) != 0) derivatives[l] = plan.ByTheRule(chunk, j, l);
    }
    AddPoint(derivatives, chunk.residual[j], plan.parameters, sums);
    LeaveOut(plan.set, j, chunk);
  }
}

// Adds a mass conservation point, whose value is the mean concentration of its component times the
// target over the load. False if it may need another than the least step.
bool AddMassPoint(const PassPlan& plan, const SetPoints& points, std::size_t component,
                  const BasisSums& basis, SetSums& sums) {
  const double target = points.y[points.n + component];
  const double scale = target / (component == 0 ? points.aLoad : points.bLoad);
  double value = 0.0;
  double gross = 0.0;
  for (std::size_t k = 0; k < plan.set.species; ++k) {
    value += scale * plan.count[component][k] * basis.level[k];
    gross += std::fabs(scale * plan.count[component][k]) * basis.level[k];
  }
  if (!(plan.set.boundFactor * gross <= kSafeShare * std::fabs(value))) return false;
  std::array<double, kMostColumns> derivative = {};
  for (std::size_t l = 0; l < plan.parameters; ++l) {
    for (std::size_t k = 0; k < plan.set.species; ++k) {
      const ColumnTerm& term = plan.parameter[l].totals[component][k];
      double share = term.level * basis.level[k];
      if (term.move >= 0) {
        const auto m = static_cast<std::size_t>(term.move);
        share = term.sinh * basis.sinh[m][k] + term.cosh * basis.cosh[m][k];
      }
      derivative[l] += scale * share;
    }
  }
  AddPoint(derivative, target - value, plan.parameters, sums);
  return true;
}

// Adds the sums over the kernel's points: with the derivatives D = A B, B the basis, the products
// of the derivatives are A (B B^T) A^T and the gradient is A (B residual).
void AddBasis(const PassPlan& plan, const BasisSums& basis, SetSums& sums) {
  const std::size_t rows = 1 + plan.set.species + plan.set.columns;
  using Row = std::array<double, kMostBasis>;
  std::array<Row, kMostColumns> share = {};     // A, [parameter][row]
  std::array<Row, kMostColumns> combined = {};  // A (B B^T)
  for (std::size_t l = 0; l < plan.parameters; ++l) {
    const ParameterPlan& parameter = plan.parameter[l];
    share[l][0] = parameter.constant;
    for (std::size_t k = 0; k < plan.set.species; ++k) share[l][1 + k] = parameter.signal[k].level;
    if (parameter.column) share[l][plan.RowOfColumn(*parameter.column)] = 1.0;
    for (std::size_t i = 0; i < rows; ++i) {
      sums.gradient[l] += share[l][i] * basis.gradient[i];
      for (std::size_t k = 0; k < rows; ++k) {
        combined[l][k] += share[l][i] * basis.product[std::max(i, k)][std::min(i, k)];
      }
    }
  }
  for (std::size_t l = 0; l < plan.parameters; ++l) {
    for (std::size_t m = 0; m <= l; ++m) {
      for (std::size_t i = 0; i < rows; ++i) sums.product[l][m] += combined[l][i] * share[m][i];
    }
  }
  sums.squares += basis.squares;
}

}  // namespace

bool SumSpeciesSet(const FitState& fit, const SetPoints& points, int d, SetSums& sums) {
  if (fit.Workspace.facts[static_cast<std::size_t>(d - 1)].plain) return false;
  PassPlan plan;
  if (!PlanPass(fit, points, d, plan)) return false;
  const PassKernel& kernel = RunnableKernels().front();
  BasisSums basis;
  Chunk chunk;
  for (std::size_t first = 0; first < points.n; first += kChunk) {
    const std::size_t count = std::min(kChunk, points.n - first);
    FillPoints(fit, points, first, count, plan.set.weighted, chunk);
    const bool doubtful = kernel.evaluate(plan.set, chunk) > 0.0;
    if (plan.set.weighted) kernel.addWeighted(plan.set, chunk, basis);
    if (doubtful) AddDoubtful(plan, kernel, count, chunk, sums);
    for (std::size_t j = count; j < kChunk; ++j) LeaveOut(plan.set, j, chunk);
    kernel.addProducts(plan.set, chunk, basis);
  }
  AddBasis(plan, basis, sums);
  return points.extra == 0 ||
         (AddMassPoint(plan, points, 0, basis, sums) && AddMassPoint(plan, points, 1, basis, sums));
}

}  // namespace quorvane
