#include "sim/sim_models.h"

#include <cmath>
#include <optional>

#include "base/arithmetic.h"
#include "sim/hetero_loads.h"
#include "sim/load_root.h"

namespace quorvane {

namespace {

double Noise(SimRun& run) {
  return GaussDeviate(run.uniform) * run.p.RMS;
}

void WritePoint(SimRun& run, int i, double signal) {
  run.column.signal[i] = signal;
  run.file.AddPoint(run.column.r[i], signal);
}

// Takes and writes point i of a model with one component; `profile(i)` is its concentration.
template <class Profile>
void TakePoint(SimRun& run, int i, Profile&& profile) {
  double conc = 0.0;
  double signal = 0.0;
  CheckArithmetic([&] {
    const double e = Noise(run);
    conc = profile(i) + e / run.p.EA;
    signal = conc * run.p.EA;
  });
  run.column.conc[i] = conc;
  WritePoint(run, i, signal);
}

// The second pass of the models that first fill conc.
void AddNoise(SimRun& run) {
  for (int i = 0; i < run.p.n; ++i) {
    TakePoint(run, i, [&](int k) { return run.column.conc[k]; });
  }
}

// Concentration at the meniscus of a species of degree `degree` whose load is `share` of LA. Its
// numerator has no factor `degree`, so that the share counts in monomer units: kept on purpose.
double ClosedFormMeniscus(const SimParameters& p, double degree, double share) {
  const double height = p.Rb * p.Rb - p.Rm * p.Rm;
  double c0 = 0.0;
  CheckArithmetic([&] {
    c0 = height * p.LA * p.sA * share / (2.0 * (std::exp(height * degree * p.sA / 2.0) - 1.0));
  });
  return c0;
}

double FromEnd(const SimRun& run, double degree, double c0, int i) {
  const double r = run.column.r[i];
  return std::exp((r * r - run.p.Rm * run.p.Rm) * degree * run.p.sA / 2.0) * c0;
}

// The march of the nonideal profile down the column.
class NonidealMarch {
 public:
  NonidealMarch(const SimProblem& problem, double c0) : problem_(problem), c0_(c0) {
    x_ = problem_.column->r[0] + kFineStep;
    u_ = c0_ * std::exp(IdealExponent(x_));
    x_ += kFineStep;
  }

  // The concentration at radius r; nothing if the march is past the last grid point.
  std::optional<double> To(double r) {
    const double last = problem_.column->r[problem_.p.n - 1];
    while (x_ <= last) {
      const double w = Beside(x_, u_);
      u_ = Beside(x_ + kFineStep, w);
      if (std::fabs(x_ - r) <= kFineStep) return u_;
      x_ += kFineStep;
    }
    return std::nullopt;
  }

 private:
  static constexpr double kFineStep = 0.0002;  // cm

  double IdealExponent(double x) const {
    const double r0 = problem_.column->r[0];
    return (x * x - r0 * r0) * problem_.p.sA / 2.0;
  }
  double Beside(double x, double neighbour) const {
    const double beta = 2.0 * problem_.p.BM * problem_.p.MWA;
    return c0_ * std::exp(IdealExponent(x) - beta * (neighbour - c0_));
  }

  const SimProblem& problem_;
  double c0_;
  double x_ = 0.0;
  double u_ = 0.0;
};

void FillNonideal(SimRun& run, const SimProblem& problem, double c0) {
  run.column.conc[0] = c0;
  std::optional<NonidealMarch> march;
  CheckArithmetic([&] { march.emplace(problem, c0); });
  for (int j = 1; j < run.p.n; ++j) {
    std::optional<double> u;
    CheckArithmetic([&] { u = march->To(run.column.r[j]); });
    if (u) run.column.conc[j] = *u;
  }
}

// Concentration of each species at the reference radius, in the order of the problem.
std::vector<double> AtReference(const SimProblem& problem, const SimReference& c) {
  std::vector<double> values;
  CheckArithmetic([&] {
    for (const SimSpecies& species : problem.species) {
      values.push_back(species.AtReference(c.a, c.b));
    }
  });
  return values;
}

// conc and species of the monomer and its oligomers. A species of degree `apart` (0 for none) that
// takes no part in the equilibrium stands in its column already.
void FillSelfAssociation(SimRun& run, const SimProblem& problem, double c, int apart) {
  const std::vector<double> atReference = AtReference(problem, {c, 0.0});
  const std::size_t count = problem.species.size();
  for (int i = 0; i < run.p.n; ++i) {
    std::array<double, 6> row = run.column.species[i];
    double total = 0.0;
    CheckArithmetic([&] {
      if (apart > 0) total = apart * row[count];
      for (std::size_t k = 0; k < count; ++k) {
        const SimSpecies& species = problem.species[k];
        row[k] = atReference[k] * species.exponential[static_cast<std::size_t>(i)];
        total += species.a * row[k];
      }
    });
    run.column.species[i] = row;
    run.column.conc[i] = total;
  }
}

// The free monomer at the reference radius that gives the load, to `accuracy` of it.
double SolveMonomer(LoadRoutine load, SolveRoutine solve, const SimProblem& problem, double start,
                    double accuracy) {
  const LoadBracket bracket = BracketLoad(load, problem, start);
  return solve(problem, bracket.low, bracket.high, problem.p.LA * accuracy);
}

SimReference SelfAssociation(SimRun& run, const SimModel& model, LoadRoutine load,
                             SolveRoutine solve) {
  const SimProblem problem = MakeProblemOf(model, run.p, run.column);
  const double c = SolveMonomer(load, solve, problem, run.p.LA, 1.0e-6);
  FillSelfAssociation(run, problem, c, 0);
  AddNoise(run);
  return {c, 0.0};
}

}  // namespace

SimReference SimIdeal(SimRun& run, const SimModel&) {
  const double c0 = ClosedFormMeniscus(run.p, 1.0, 1.0);
  for (int i = 0; i < run.p.n; ++i) {
    TakePoint(run, i, [&](int k) { return FromEnd(run, 1.0, c0, k); });
  }
  return {c0, 0.0};
}

SimReference SimNonideal(SimRun& run, const SimModel&) {
  const SimProblem problem = {run.p, &run.column, {}};
  const LoadBracket bracket = BracketLoadBelow(LoadNonideal, problem, run.p.LA);
  const double c0 = SolveLoadNonideal(problem, bracket.low, bracket.high, run.p.LA * 1.0e-5);
  FillNonideal(run, problem, c0);
  AddNoise(run);
  return {c0, 0.0};
}

SimReference SimNmer(SimRun& run, const SimModel& model) {
  return SelfAssociation(run, model, LoadNmer, SolveLoadNmer);
}

SimReference SimNmerMmer(SimRun& run, const SimModel& model) {
  return SelfAssociation(run, model, LoadNmerMmer, SolveLoadNmerMmer);
}

SimReference SimIncompetent(SimRun& run, const SimModel& model) {
  const int m = DegreeOf(model.species.back().a, run.p);
  const double cInc = ClosedFormMeniscus(run.p, m, run.p.alpha);
  SimProblem problem = MakeProblemOf(model, run.p, run.column);
  for (int i = 0; i < run.p.n; ++i) {
    double conc = 0.0;
    CheckArithmetic([&] { conc = FromEnd(run, m, cInc, i); });
    run.column.species[i][problem.species.size()] = conc;
  }
  problem.p.LA = (1.0 - run.p.alpha) * run.p.LA;
  const double c = SolveMonomer(LoadNmer, SolveLoadNmer, problem, problem.p.LA, 1.0e-7);
  FillSelfAssociation(run, problem, c, m);
  AddNoise(run);
  return {c, 0.0};
}

SimReference SimIsoD(SimRun& run, const SimModel&) {
  const SimProblem problem = {run.p, &run.column, {}};
  const double c = SolveMonomer(LoadIso, SolveLoadIso, problem, run.p.LA / 100.0, 1.0e-6);
  for (int i = 0; i < run.p.n; ++i) {
    double total = 0.0;
    CheckArithmetic([&] { total = IsodesmicTotal(run.p, FromMeniscus(problem, c, i)); });
    run.column.conc[i] = total;
  }
  AddNoise(run);
  return {c, 0.0};
}

SimReference SimTwoComponent(SimRun& run, const SimModel& model) {
  const SimProblem problem = MakeProblemOf(model, run.p, run.column);
  int count = 0;
  const SimReference c = model.loads(problem, run.host, count);
  const std::vector<double> atReference = AtReference(problem, c);
  for (int i = 0; i < run.p.n; ++i) {
    std::array<double, 6> row = run.column.species[i];
    double signal = 0.0;
    CheckArithmetic([&] {
      for (std::size_t k = 0; k < problem.species.size(); ++k) {
        const SimSpecies& species = problem.species[k];
        row[k] = atReference[k] * species.exponential[static_cast<std::size_t>(i)] *
                 (species.a * run.p.EA + species.b * run.p.EB);
        signal += row[k];
      }
      signal += Noise(run);
    });
    run.column.species[i] = row;
    WritePoint(run, i, signal);
  }
  return c;
}

}  // namespace quorvane
