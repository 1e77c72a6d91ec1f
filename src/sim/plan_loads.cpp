#include "sim/plan_loads.h"

#include <boost/math/tools/roots.hpp>
#include <cmath>
#include <limits>

#include "base/arithmetic.h"
#include "fit/model_terms.h"
#include "fit/models.h"

namespace quorvane {

namespace {

// The ends of a column in x = (r^2 - R0^2)/2.
struct ColumnEnds {
  double low = 0.0;
  double high = 0.0;
  double Width() const { return high - low; }
};

ColumnEnds EndsOf(const FitState& fit, int d) {
  const auto half = [](double r) { return r * r / 2.0; };
  const double reference = half(fit.SetRefRadius(d));
  return {half(fit.SetCellTopR(d)) - reference, half(fit.SetCellBottomR(d)) - reference};
}

// Mean of exp(rate x + shift) over the column.
double MeanExponential(double rate, double shift, const ColumnEnds& ends) {
  const double rise = rate * ends.Width();
  const double start = std::exp(rate * ends.low + shift);
  return rise == 0.0 ? start : start * (std::expm1(rise) / rise);
}

// Mean of u / (1 - K u)^2 with u = c exp(rate x), whose integral over ln u is u / (1 - K u).
double IsodesmicMean(const SetTerms& terms, const ColumnEnds& ends) {
  const SpeciesTerm& monomer = terms.species[0];
  const double low = monomer.amplitude * std::exp(monomer.rate * ends.low);
  const double high = monomer.amplitude * std::exp(monomer.rate * ends.high);
  if (terms.association * high >= 1.0) return std::numeric_limits<double>::infinity();
  // The difference of u / (1 - K u) at the ends, without cancellation.
  const double difference = low * std::expm1(monomer.rate * ends.Width()) /
                            ((1.0 - terms.association * low) * (1.0 - terms.association * high));
  return difference / (monomer.rate * ends.Width());
}

double BetaOf(const SetTerms& terms) {
  return 2.0 * terms.virial * terms.molecularWeight;
}

double NonidealMean(const SetTerms& terms, const ColumnEnds& ends) {
  constexpr int kSteps = 64;  // even
  double sum = 0.0;
  for (int k = 0; k <= kSteps; ++k) {
    const double weight = k == 0 || k == kSteps ? 1.0 : k % 2 == 1 ? 4.0 : 2.0;
    sum += weight * NonidealConcentration(terms.concentration, terms.species[0].rate, BetaOf(terms),
                                          ends.low + ends.Width() * k / kSteps);
  }
  return sum / (3.0 * kSteps);
}

MeanLoads SpeciesMeans(const FitState& fit, const SetTerms& terms, int d, const ColumnEnds& ends) {
  MeanLoads means;
  for (int k = 0; k < terms.count; ++k) {
    const SpeciesTerm& term = terms.species[static_cast<std::size_t>(k)];
    const double mean = MeanExponential(term.rate, term.shift, ends);
    if (fit.TwoComponentModel) {
      means.a += term.totalA * mean;
      means.b += term.totalB * mean;
    } else {
      means.a += term.amplitude / fit.SetEpsA(d) * mean;  // an n-mer absorbs as n monomers
    }
  }
  return means;
}

// The ln c at which `mean`, which rises with c, is `load`.
template <class Mean>
double BalancedLog(double load, Mean&& mean) {
  constexpr int kBits = 42;
  constexpr double kFirstFactor = 2.0;
  constexpr double kFarTooMuch = 100.0;  // also where the mean is infinite
  std::uintmax_t most = 300;
  const auto difference = [&](double c) {
    const double times = std::log(mean(std::log(c)) / load);
    return times < kFarTooMuch ? times : kFarTooMuch;
  };
  const auto [low, high] = boost::math::tools::bracket_and_solve_root(
      difference, load, kFirstFactor, true, boost::math::tools::eps_tolerance<double>(kBits), most);
  return std::log((low + high) / 2.0);
}

void Balance(FitState& fit, int d) {
  const int a = fit.NumFitSets + d;
  const int b = 2 * fit.NumFitSets + d;
  const auto meanOfA = [&](double lnA) {
    fit.FitA(a) = lnA;
    return MeanLoadsOf(fit, d).a;
  };
  if (!fit.TwoComponentModel) {
    fit.FitA(a) = BalancedLog(fit.SetALoad(d), meanOfA);
    return;
  }
  const auto meanOfB = [&](double lnB) {
    fit.FitA(b) = lnB;
    return MeanLoadsOf(fit, d).b;
  };
  fit.FitA(a) = BalancedLog(fit.SetALoad(d), [&](double lnA) {
    fit.FitA(a) = lnA;
    fit.FitA(b) = BalancedLog(fit.SetBLoad(d), meanOfB);
    return MeanLoadsOf(fit, d).a;
  });
  fit.FitA(b) = BalancedLog(fit.SetBLoad(d), meanOfB);
}

}  // namespace

double NonidealConcentration(double c0, double rate, double beta, double x) {
  constexpr int kMostPasses = 100;
  constexpr double kSame = 1e-15;
  const double target = std::log(c0) + rate * x + beta * c0;
  double z = std::log(c0);
  for (int pass = 0; pass < kMostPasses; ++pass) {
    const double c = std::exp(z);
    const double step = (z + beta * c - target) / (1.0 + beta * c);
    z -= step;
    if (std::fabs(step) <= kSame * (1.0 + std::fabs(z))) return std::exp(z);
  }
  throw ArithmeticFault(FaultKind::kInvalidOperation);
}

MeanLoads MeanLoadsOf(const FitState& fit, int d) {
  const ColumnEnds ends = EndsOf(fit, d);
  SetTerms terms;
  fit.FitModel->terms(fit, *fit.FitModel, fit.FitA, d, terms);
  switch (terms.form) {
    case SignalForm::kNonideal:
      return {NonidealMean(terms, ends), 0.0};
    case SignalForm::kIsodesmic:
      return {IsodesmicMean(terms, ends), 0.0};
    case SignalForm::kSpeciesSum:
      break;
  }
  return SpeciesMeans(fit, terms, d, ends);
}

void BalanceLoads(FitState& fit, int d) {
  // Trial concentrations may overflow on the way; what counts is where the search ends.
  try {
    static_cast<void>(FaultsRaisedBy([&] { Balance(fit, d); }));
  } catch (const std::exception&) {  // of the root finder: no end of the bracket in double range
    throw ArithmeticFault(FaultKind::kOverflow);
  }
  MeanLoads means;
  CheckArithmetic([&] { means = MeanLoadsOf(fit, d); });
  constexpr double kClose = 1e-6;
  const auto missed = [](double mean, double load) {
    return !(std::fabs(mean / load - 1.0) <= kClose);
  };
  if (missed(means.a, fit.SetALoad(d)) ||
      (fit.TwoComponentModel && missed(means.b, fit.SetBLoad(d)))) {
    throw ArithmeticFault(FaultKind::kOverflow);
  }
}

void FillCurves(FitState& fit) {
  const Model& model = *fit.FitModel;
  for (int i = 1; i <= fit.FitNumPoints; ++i) {
    CheckArithmetic([&] {
      SetTerms terms;
      const int d = fit.FitSet(i);
      model.terms(fit, model, fit.FitA, d, terms);
      if (terms.form == SignalForm::kNonideal) {
        fit.FitY(i) =
            terms.baseline + terms.extinction * NonidealConcentration(terms.concentration,
                                                                      terms.species[0].rate,
                                                                      BetaOf(terms), fit.FitX(i));
      } else {
        fit.FitY(i) = EvaluatePoint(fit, terms, i);
      }
    });
  }
}

}  // namespace quorvane
