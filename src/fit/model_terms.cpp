#include "fit/model_terms.h"

#include <cmath>

#include "fit/fit_state.h"

namespace quorvane {

namespace {

double TotalFactor(const SpeciesTerm& term, Component component) {
  return component == Component::kA ? term.totalA : term.totalB;
}

// Signal of one data point from the exponentials of its species.
template <class ExponentialOf>
double SignalFrom(const SetTerms& terms, double x, double y, ExponentialOf&& exponentialOf) {
  switch (terms.form) {
    case SignalForm::kNonideal: {
      const double observed = (y - terms.baseline) / terms.extinction;
      const double t =
          2.0 * terms.virial *
          (terms.molecularWeight * observed - terms.molecularWeight * terms.concentration);
      return terms.species[0].amplitude * std::exp(terms.species[0].rate * x - t) + terms.baseline;
    }
    case SignalForm::kIsodesmic: {
      const double u = exponentialOf(0) * terms.species[0].amplitude;
      const double rest = 1.0 - terms.association * u;
      return u * terms.extinction / (rest * rest) + terms.baseline;
    }
    case SignalForm::kSpeciesSum:
      break;
  }
  double sum = 0.0;
  for (int k = 0; k < terms.count; ++k) {
    sum += terms.species[static_cast<std::size_t>(k)].amplitude * exponentialOf(k);
  }
  return sum + terms.baseline;
}

template <class ExponentialOf>
double TotalFrom(const SetTerms& terms, Component component, ExponentialOf&& exponentialOf) {
  double sum = 0.0;
  for (int k = 0; k < terms.count; ++k) {
    sum += TotalFactor(terms.species[static_cast<std::size_t>(k)], component) * exponentialOf(k);
  }
  return sum;
}

// Mean concentration of a component over the data points, weighted with the sector width: a
// trapezoid rule. `totalAt(j)` is its total concentration at data point j.
template <class TotalAt>
double MeanConcentration(const SetPoints& points, TotalAt&& totalAt) {
  double weighted = 0.0;
  double widths = 0.0;
  double here = totalAt(std::size_t{0});
  for (std::size_t j = 0; j + 1 < points.n; ++j) {
    const double next = totalAt(j + 1);
    const double width = (points.f[j] + points.f[j + 1]) * (points.r[j + 1] - points.r[j]);
    weighted += width * ((next + here) / 2.0) / 2.0;
    widths += width / 2.0;
    here = next;
  }
  return weighted / widths;
}

// Value of a mass conservation point: the mean concentration over the loading concentration, times
// the target of the point.
double MassPointValue(const SetPoints& points, Component component, double mean) {
  const std::size_t at = points.n + (component == Component::kA ? 0 : 1);
  const double load = component == Component::kA ? points.aLoad : points.bLoad;
  return mean * points.y[at] / load;
}

double Exponential(const SpeciesTerm& term, double x) {
  return std::exp(term.rate * x + term.shift);
}

bool SameExponential(const SpeciesTerm& a, const SpeciesTerm& b) {
  return a.rate == b.rate && a.shift == b.shift;
}

// Mass conservation points behind the data points of a dataset.
std::size_t ExtraPoints(const FitState& fit) {
  return fit.TwoComponentModel && fit.UseMassConservation ? 2 : 0;
}

// What the models without a second component start from.
struct OneComponent {
  OneComponent(const FitState& fit, const Array1<double>& a, int d)
      : base(fit.SharedBase()),
        c(std::exp(a(fit.NumFitSets + d))),
        extinction(fit.SetEpsA(d)),
        rate(a(base + 1) * fit.SetOmegaTerm(d)) {}
  SpeciesTerm Monomer() const { return {.amplitude = c * extinction, .rate = rate}; }
  SpeciesTerm Nmer(double n, double lnK) const {
    return {.amplitude = std::pow(c, n) * (n * extinction), .rate = n * rate, .shift = lnK};
  }
  int base;
  double c;
  double extinction;
  double rate;
};

// The integrals over the column behind the models with incompetent material.
struct ColumnMeans {
  ColumnMeans(const FitState& fit, const OneComponent& own, int d, double n, double lnK) {
    const double hb = fit.SetCellBottomR(d) * fit.SetCellBottomR(d) / 2.0;
    const double hm = fit.SetCellTopR(d) * fit.SetCellTopR(d) / 2.0;
    const double h0 = fit.SetRefRadius(d) * fit.SetRefRadius(d) / 2.0;
    const double nRate = n * own.rate;
    height = hb - hm;
    monomerIntegral = std::exp((hb - h0) * own.rate) - std::exp((hm - h0) * own.rate);
    nmerIntegral = std::exp((hb - h0) * nRate) - std::exp((hm - h0) * nRate);
    monomer = own.c / (height * own.rate) * monomerIntegral;
    nmer = std::exp(lnK) * std::pow(own.c, n) / (height * nRate) * nmerIntegral;
  }
  double height;
  double monomerIntegral;
  double nmerIntegral;
  double monomer;  // mean concentration
  double nmer;     // mean concentration
};

// What the two models with a fraction of incompetent material share.
struct WithIncompetent {
  WithIncompetent(const FitState& fit, const Array1<double>& a, int d)
      : own(fit, a, d),
        n(a(own.base + 2)),
        lnK(a(own.base + 3)),
        fraction(a(own.base + 4)),
        means(fit, own, d, n, lnK) {}

  // Mean concentration, as monomer, of what can associate.
  double CompetentMass() const { return n * means.nmer + means.monomer; }

  void AddCompetent(double baseline, SetTerms& out) const {
    out = {.baseline = baseline};
    out.Add(own.Monomer());
    out.Add(own.Nmer(n, lnK));
  }

  OneComponent own;
  double n;
  double lnK;
  double fraction;
  ColumnMeans means;
};

}  // namespace

SetPoints PointsOf(const FitState& fit, int d) {
  SetPoints points;
  points.first = fit.SetFirstPoint(d);
  points.extra = ExtraPoints(fit);
  points.n = static_cast<std::size_t>(fit.SetPointCount(d)) - points.extra;
  const auto offset = static_cast<std::size_t>(points.first - 1);
  points.r = fit.FitR.data() + offset;
  points.x = fit.FitX.data() + offset;
  points.f = fit.FitF.data() + offset;
  points.y = fit.FitY.data() + offset;
  points.aLoad = fit.SetALoad(d);
  points.bLoad = fit.SetBLoad(d);
  return points;
}

Exponentials ComputeExponentials(const SetTerms& terms, const SetPoints& points,
                                 const SetTerms* base, const Exponentials* baseExponentials,
                                 std::span<double> storage, std::size_t stride) {
  Exponentials result{};
  for (std::size_t k = 0; k < static_cast<std::size_t>(terms.count); ++k) {
    const SpeciesTerm& term = terms.species[k];
    if (terms.form == SignalForm::kNonideal) break;  // its exponent differs from point to point
    if (base != nullptr && SameExponential(term, base->species[k])) {
      result[k] = (*baseExponentials)[k];
      continue;
    }
    for (std::size_t m = 0; m < k && result[k] == nullptr; ++m) {
      if (SameExponential(term, terms.species[m])) result[k] = result[m];
    }
    if (result[k] != nullptr) continue;
    double* out = storage.data() + k * stride;
    for (std::size_t j = 0; j < points.n; ++j) out[j] = Exponential(term, points.x[j]);
    result[k] = out;
  }
  return result;
}

void EvaluateSet(const SetTerms& terms, const SetPoints& points, const Exponentials& exponentials,
                 std::span<double> values) {
  const auto at = [&](std::size_t j) {
    return [&exponentials, j](int k) { return exponentials[static_cast<std::size_t>(k)][j]; };
  };
  for (std::size_t j = 0; j < points.n; ++j) {
    values[j] = SignalFrom(terms, points.x[j], points.y[j], at(j));
  }
  if (points.extra == 0) return;
  for (const Component component : {Component::kA, Component::kB}) {
    const std::size_t place = points.n + (component == Component::kA ? 0 : 1);
    const double mean = MeanConcentration(
        points, [&](std::size_t j) { return TotalFrom(terms, component, at(j)); });
    values[place] = MassPointValue(points, component, mean);
  }
}

double MeanConcentration(const FitState& fit, const SetTerms& terms, int d, Component component) {
  const SetPoints points = PointsOf(fit, d);
  return MeanConcentration(points, [&](std::size_t j) {
    return TotalFrom(terms, component, [&](int k) {
      return Exponential(terms.species[static_cast<std::size_t>(k)], points.x[j]);
    });
  });
}

double EvaluatePoint(const FitState& fit, const SetTerms& terms, int i) {
  if (ExtraPoints(fit) > 0 && fit.PointKind(i) != 0) {
    const int d = fit.FitSet(i);
    const Component component = fit.PointKind(i) == 1 ? Component::kA : Component::kB;
    return MassPointValue(PointsOf(fit, d), component, MeanConcentration(fit, terms, d, component));
  }
  const double x = fit.FitX(i);
  return SignalFrom(terms, x, fit.FitY(i), [&terms, x](int k) {
    return Exponential(terms.species[static_cast<std::size_t>(k)], x);
  });
}

void NonidealTerms(const FitState& fit, const Model&, const Array1<double>& a, int d,
                   SetTerms& out) {
  const OneComponent own(fit, a, d);
  out = {.form = SignalForm::kNonideal,
         .baseline = a(d),
         .extinction = own.extinction,
         .concentration = own.c,
         .molecularWeight = a(own.base + 1) / (1.0 - fit.Density * fit.Vbar),
         .virial = a(own.base + 2)};
  out.Add(own.Monomer());
}

void IncompetentMonomerTerms(const FitState& fit, const Model&, const Array1<double>& a, int d,
                             SetTerms& out) {
  const WithIncompetent all(fit, a, d);
  const double mean = all.CompetentMass() * all.fraction / (1.0 - all.fraction);
  const double incompetent = all.means.height * (mean * all.own.rate) / all.means.monomerIntegral;
  all.AddCompetent(a(d), out);
  out.Add({.amplitude = incompetent * all.own.extinction, .rate = all.own.rate});
}

void IncompetentNmerTerms(const FitState& fit, const Model&, const Array1<double>& a, int d,
                          SetTerms& out) {
  const WithIncompetent all(fit, a, d);
  const double mean = all.CompetentMass() * all.fraction / ((1.0 - all.fraction) * all.n);
  const double incompetent =
      mean * all.n * all.own.rate * all.means.height / all.means.nmerIntegral;
  all.AddCompetent(a(d), out);
  out.Add({.amplitude = all.n * all.own.extinction * incompetent, .rate = all.n * all.own.rate});
}

void IsodesmicTerms(const FitState& fit, const Model&, const Array1<double>& a, int d,
                    SetTerms& out) {
  const OneComponent own(fit, a, d);
  out = {.form = SignalForm::kIsodesmic,
         .baseline = a(d),
         .extinction = own.extinction,
         .association = std::exp(a(own.base + 2))};
  out.Add({.amplitude = own.c, .rate = own.rate});
}

}  // namespace quorvane
