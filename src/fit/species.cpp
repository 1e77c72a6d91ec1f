#include "fit/species.h"

#include <cmath>

#include "base/arithmetic.h"
#include "fit/fit_state.h"
#include "fit/model_terms.h"
#include "fit/models.h"

namespace quorvane {

namespace {

double Power(double c, const Stoichiometry& count, double n) {
  if (count.parameter != 0) return std::pow(c, n);
  double power = 1.0;
  for (int k = 0; k < static_cast<int>(count.fixed); ++k) power *= c;
  return power;
}

}  // namespace

ReferenceState::ReferenceState(const FitState& fit, const Model& model, const Array1<double>& a,
                               int d)
    : rateA(a(fit.SharedBase() + 1) * fit.SetOmegaTerm(d)),
      extinctionA(fit.SetEpsA(d)),
      base(fit.SharedBase()),
      kRatios(model.kRatios && fit.ConstrainKRatios),
      a_(a) {
  if (!model.secondComponent) {
    lnA = a(fit.NumFitSets + d);
    return;
  }
  // Linked datasets share the reference concentrations of their target.
  const int owner = fit.RefLink[static_cast<std::size_t>(d - 1)] + 1;
  lnA = a(fit.NumFitSets + owner);
  lnB = a(2 * fit.NumFitSets + owner);
  rateB = a(base + 2) * fit.SetOmegaTerm(d);
  extinctionB = fit.SetEpsB(d);
}

double ReferenceState::Count(const Stoichiometry& count) const {
  return count.parameter == 0 ? count.fixed : a_(base + count.parameter);
}

double ReferenceState::Extinction(const Species& species) const {
  return CountA(species) * extinctionA + CountB(species) * extinctionB;
}

double ReferenceState::Rate(const Species& species) const {
  return CountA(species) * rateA + CountB(species) * rateB;
}

double ReferenceState::LnK(const Species& species) const {
  double sum = 0.0;
  for (const int parameter : species.lnK) {
    if (parameter == 0) break;
    const double value = a_(base + parameter);
    const bool ratio = kRatios && parameter != species.lnK[0];
    sum += ratio ? CheckedLog(value) + a_(base + species.lnK[0]) : value;
  }
  return sum;
}

void SpeciesTerms(const FitState& fit, const Model& model, const Array1<double>& a, int d,
                  SetTerms& out) {
  const ReferenceState state(fit, model, a, d);
  const double cA = std::exp(state.lnA);
  const double cB = model.secondComponent ? std::exp(state.lnB) : 1.0;
  out = {.baseline = a(d)};
  for (const Species& species : model.species) {
    const double countA = state.CountA(species);
    const double countB = state.CountB(species);
    const double c = Power(cA, species.a, countA) * Power(cB, species.b, countB);
    out.Add({.amplitude = c * state.Extinction(species),
             .rate = state.Rate(species),
             .shift = state.LnK(species),
             .totalA = countA * c,
             .totalB = countB * c});
  }
}

}  // namespace quorvane
