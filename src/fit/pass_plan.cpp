#include "fit/pass_plan.h"

#include <cmath>

namespace quorvane {

namespace {

// Signal factor of species k after `steps` least steps: f + t g.
double SteppedSignal(const PassPlan& plan, const ParameterPlan& parameter, std::size_t k,
                     double steps) {
  return plan.set.parts[k].signal + steps * parameter.changes[k].signal;
}

// Signal at point j of the chunk with the parameter moved by h.
double MovedSignal(const PassPlan& plan, const ParameterPlan& parameter, const Chunk& chunk,
                   std::size_t j, double h) {
  const double steps = h / parameter.step;
  double value = plan.set.baseline;
  for (std::size_t k = 0; k < plan.set.species; ++k) {
    const SpeciesChange& change = parameter.changes[k];
    value += SteppedSignal(plan, parameter, k, steps) * chunk.C(k)[j] *
             std::exp(steps * (change.exponent + change.rate * chunk.x[j]));
  }
  return value;
}

}  // namespace

FirstStepPlan PassPlan::FirstStepOf(std::size_t l) const {
  FirstStepPlan first;
  const double steps = rule.FirstInLeastSteps();
  for (std::size_t k = 0; k < set.species; ++k) {
    const SpeciesChange& change = parameter[l].changes[k];
    first.parts[k] = {
        SteppedSignal(*this, parameter[l], k, steps) * std::exp(steps * change.exponent),
        steps * change.rate, set.parts[k].signal};
  }
  return first;
}

std::array<double, kMostColumns> PassPlan::DerivativesAt(const Chunk& chunk, std::size_t j) const {
  std::array<double, kMostColumns> result = {};
  for (std::size_t l = 0; l < parameters; ++l) {
    result[l] = parameter[l].constant;
    for (std::size_t k = 0; k < set.species; ++k) {
      result[l] += parameter[l].signal[k].level * chunk.C(k)[j];
    }
    if (parameter[l].column) result[l] += chunk.basis[RowOfColumn(*parameter[l].column)][j];
  }
  return result;
}

double PassPlan::ByTheRule(const Chunk& chunk, std::size_t j, std::size_t l) const {
  const double a0 = parameter[l].step / StepRule::kLeastStep;
  return rule.Derivative(a0, chunk.value[j],
                         [&](double h) { return MovedSignal(*this, parameter[l], chunk, j, h); });
}

}  // namespace quorvane
