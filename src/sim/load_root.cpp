#include "sim/load_root.h"

#include <cmath>
#include <utility>

#include "base/arithmetic.h"

namespace quorvane {

namespace {

// 2 (r_1 - r_0) `sum` over r_(n-1)^2 - r_0^2: a sum over the grid as a mean over the sector.
double SectorMean(const SimProblem& problem, double sum) {
  const GridArray<double>& r = problem.column->r;
  const double last = r[problem.p.n - 1];
  return 2.0 * (r[1] - r[0]) * sum / (last * last - r[0] * r[0]);
}

// `total(i)`: concentration at grid point i.
template <class Total>
double MeanOver(const SimProblem& problem, Total&& total) {
  const GridArray<double>& r = problem.column->r;
  double sum = 0.0;
  double before = total(0);
  for (int i = 1; i < problem.p.n; ++i) {
    const double here = total(i);
    sum += (here + before) * r[i] / 2.0;
    before = here;
  }
  return SectorMean(problem, sum);
}

double SelfAssociationLoad(const SimProblem& problem, double c) {
  std::vector<double> scale;
  for (const SimSpecies& species : problem.species) {
    scale.push_back(species.a * species.AtReference(c, 0.0));
  }
  return MeanOver(problem, [&](int i) {
    double total = 0.0;
    for (std::size_t k = 0; k < scale.size(); ++k) {
      total += scale[k] * problem.species[k].exponential[static_cast<std::size_t>(i)];
    }
    return total;
  });
}

double Load(LoadRoutine load, const SimProblem& problem, double c) {
  double value = 0.0;
  CheckArithmetic([&] { value = load(problem, c); });
  return value;
}

// Halves bracket.low until its load is below LA.
LoadBracket GoDown(LoadRoutine load, const SimProblem& problem, LoadBracket bracket) {
  while (!(Load(load, problem, bracket.low) < problem.p.LA)) {
    bracket.high = bracket.low;
    bracket.low /= 2.0;
  }
  return bracket;
}

// Doubles bracket.high until its load is above LA.
LoadBracket GoUp(LoadRoutine load, const SimProblem& problem, LoadBracket bracket) {
  while (!(Load(load, problem, bracket.high) > problem.p.LA)) {
    bracket.low = bracket.high;
    CheckArithmetic([&] { bracket.high *= 2.0; });
  }
  return bracket;
}

// The ends of Brent's method: b the best so far, a the one before, the root between b and c.
struct RootEnds {
  double a, b, c;
  double fa, fb, fc;
  double d, e;  // the last step and the one before
};

double Sign(double x) {
  return x > 0.0 ? 1.0 : x < 0.0 ? -1.0 : 0.0;
}

// Chooses the step d: by interpolation where that falls well inside, otherwise by bisection (xm).
void ChooseStep(RootEnds& s, double tol1, double xm) {
  if (!(std::fabs(s.e) >= tol1 && std::fabs(s.fa) > std::fabs(s.fb))) {
    s.d = s.e = xm;
    return;
  }
  const double ratio = s.fb / s.fa;
  double p = 2.0 * xm * ratio;
  double q = 1.0 - ratio;
  if (s.a != s.c) {
    const double r = s.fb / s.fc;
    q = s.fa / s.fc;
    p = ratio * (2.0 * xm * q * (q - r) - (s.b - s.a) * (r - 1.0));
    q = (q - 1.0) * (r - 1.0) * (ratio - 1.0);
  }
  if (p > 0.0) q = -q;
  p = std::fabs(p);
  const double min1 = 3.0 * xm * q - std::fabs(tol1 * q);
  const double bound = std::fabs(s.e * q) < min1 ? s.e * q : min1;
  if (2.0 * p < bound) {
    s.e = s.d;
    s.d = p / q;
  } else {
    s.d = s.e = xm;
  }
}

// Keeps the root between b and c, with b the better end.
void OrderEnds(RootEnds& s) {
  if (s.fb * s.fc > 0.0) {
    s.c = s.a;
    s.fc = s.fa;
    s.d = s.e = s.b - s.a;
  }
  if (std::fabs(s.fc) < std::fabs(s.fb)) {
    s.a = s.b;
    s.b = s.c;
    s.c = s.a;
    s.fa = s.fb;
    s.fb = s.fc;
    s.fc = s.fa;
  }
}

double FindRoot(LoadRoutine load, const SimProblem& problem, double x1, double x2, double tol) {
  constexpr int kMostIterations = 100;
  constexpr double kPrecision = 6.0e-8;
  const auto f = [&](double x) { return load(problem, x) - problem.p.LA; };
  RootEnds s = {x1, x2, 0.0, f(x1), f(x2), 0.0, 0.0, 0.0};
  if (s.fa * s.fb > 0.0) return 0.0;
  s.fc = s.fb;
  for (int iteration = 1; iteration <= kMostIterations; ++iteration) {
    OrderEnds(s);
    const double tol1 = kPrecision * std::fabs(s.b) + 0.5 * tol;
    const double xm = 0.5 * (s.c - s.b);
    if (std::fabs(xm) <= tol1 || s.fb == 0.0) return s.b;
    ChooseStep(s, tol1, xm);
    s.a = s.b;
    s.fa = s.fb;
    s.b += std::fabs(s.d) > tol1 ? s.d : std::fabs(tol1) * Sign(xm);
    s.fb = f(s.b);
  }
  return s.b;
}

double SolveLoad(LoadRoutine load, const SimProblem& problem, double x1, double x2, double tol) {
  double root = 0.0;
  CheckArithmetic([&] { root = FindRoot(load, problem, x1, x2, tol); });
  return root;
}

}  // namespace

double FromMeniscus(const SimProblem& problem, double c, int i) {
  const GridArray<double>& r = problem.column->r;
  return std::exp((r[i] * r[i] - r[0] * r[0]) * problem.p.sA / 2.0) * c;
}

double IsodesmicTotal(const SimParameters& p, double u) {
  const double rest = 1.0 - p.K[0] * u;
  return u / (rest * rest);
}

double LoadNonideal(const SimProblem& problem, double c) {
  const SimParameters& p = problem.p;
  const GridArray<double>& r = problem.column->r;
  const double beta = 2.0 * p.BM * p.MWA;
  const auto beside = [&](int i, double neighbour) {
    return c * std::exp((r[i] * r[i] - r[0] * r[0]) * p.sA / 2.0 - beta * (neighbour - c));
  };
  double c1 = FromMeniscus(problem, c, 1);
  double sum = (c1 + c) * r[1] / 2.0;
  for (int i = 2; i < p.n; ++i) {
    const double u = beside(i, c1);
    c1 = beside(i - 1, u);
    sum += (c1 + u) * r[i] / 2.0;
  }
  return SectorMean(problem, sum);
}

double LoadNmer(const SimProblem& problem, double c) {
  return SelfAssociationLoad(problem, c);
}

double LoadNmerMmer(const SimProblem& problem, double c) {
  return SelfAssociationLoad(problem, c);
}

double LoadIso(const SimProblem& problem, double c) {
  return MeanOver(problem,
                  [&](int i) { return IsodesmicTotal(problem.p, FromMeniscus(problem, c, i)); });
}

double SolveLoadNonideal(const SimProblem& problem, double x1, double x2, double tol) {
  return SolveLoad(LoadNonideal, problem, x1, x2, tol);
}

double SolveLoadNmer(const SimProblem& problem, double x1, double x2, double tol) {
  return SolveLoad(LoadNmer, problem, x1, x2, tol);
}

double SolveLoadNmerMmer(const SimProblem& problem, double x1, double x2, double tol) {
  return SolveLoad(LoadNmerMmer, problem, x1, x2, tol);
}

double SolveLoadIso(const SimProblem& problem, double x1, double x2, double tol) {
  return SolveLoad(LoadIso, problem, x1, x2, tol);
}

LoadBracket BracketLoadBelow(LoadRoutine load, const SimProblem& problem, double start) {
  return GoDown(load, problem, {start, start});
}

LoadBracket BracketLoad(LoadRoutine load, const SimProblem& problem, double start) {
  if (Load(load, problem, start) <= problem.p.LA) return GoUp(load, problem, {start, start});
  return BracketLoadBelow(load, problem, start);
}

}  // namespace quorvane
