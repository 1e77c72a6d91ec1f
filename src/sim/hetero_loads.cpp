#include "sim/hetero_loads.h"

#include <cmath>

#include "base/arithmetic.h"
#include "base/host.h"
#include "fit/levmarq.h"
#include "fit/step_rule.h"

namespace quorvane {

namespace {

constexpr int kParameters = 2;
constexpr int kComponentA = 1;

double MeanOfComponent(const SimProblem& problem, int i, double cA, double cB) {
  const SimParameters& p = problem.p;
  const GridArray<double>& r = problem.column->r;
  std::array<double, 6> scale = {};
  const std::size_t count = problem.species.size();
  for (std::size_t k = 0; k < count; ++k) {
    const SimSpecies& species = problem.species[k];
    scale[k] = (i == kComponentA ? species.a : species.b) * species.AtReference(cA, cB);
  }
  const auto total = [&](int at) {
    double sum = 0.0;
    for (std::size_t k = 0; k < count; ++k) {
      sum += scale[k] * problem.species[k].exponential[static_cast<std::size_t>(at)];
    }
    return sum;
  };
  double sum = 0.0;
  double here = total(0);
  for (int at = 0; at + 1 < p.n; ++at) {
    const double next = total(at + 1);
    sum += (here + next) * r[at] / 2.0;
    here = next;
  }
  return 2.0 * kRadialStep * sum / (p.Rb * p.Rb - p.Rm * p.Rm);
}

void FromLogarithms(const SimProblem& problem, int i, const Array1<double>& a, double& y) {
  y = MeanOfComponent(problem, i, std::exp(a(1)), std::exp(a(2)));
}

constexpr StepRule kSteps = {.leastStepForNaN = true};

template <class Funcs>
void CentralDifferences(Funcs&& funcs, const Array1<double>& a, Array1<double>& dyda, int ma) {
  double y0 = 0.0;
  funcs(a, y0);
  for (int j = 1; j <= ma; ++j) {
    Array1<double> t = a;
    dyda(j) = kSteps.Derivative(a(j), y0, [&](double step) {
      double y = 0.0;
      t(j) = a(j) + step;
      funcs(t, y);
      return y;
    });
  }
}

void Initialise(LoadFit& fit) {
  fit.mfit = kParameters;
  fit.alamda = 0.001;
  CheckArithmetic([&] { MRQCOFCT(fit, fit.a, fit.alpha, fit.beta, fit.chisq); });
  fit.ochisq = fit.chisq;
  fit.atry = fit.a;
}

void SetUpStep(LoadFit& fit) {
  CheckArithmetic([&] {
    fit.covar = fit.alpha;
    for (int j = 1; j <= fit.mfit; ++j) fit.covar(j, j) = fit.alpha(j, j) * (1.0 + fit.alamda);
    fit.da = fit.beta;
  });
}

void TakeTrial(LoadFit& fit) {
  CheckArithmetic([&] {
    for (int j = 1; j <= fit.mfit; ++j) fit.atry(j) = fit.a(j) + fit.da(j, 1);
    MRQCOFCT(fit, fit.atry, fit.covar, fit.da, fit.chisq);
  });
}

// The passes that count for the end so far, after one that took the sum from `before` to `now`.
int CountPass(const SimParameters& p, int passes, double before, double now) {
  constexpr double kSameSum = 0.0001;
  if (now > before) return 0;
  double change = 0.0;
  CheckArithmetic([&] { change = std::fabs(before - now) / p.LA / p.LB; });
  return change < kSameSum ? passes + 1 : passes;
}

// Fits from the parameters `a` on; returns the best ones.
Array1<double> FitLoads(const SimProblem& problem, const HeteroModel& model,
                        const Array1<double>& a, Host& host, int& count) {
  constexpr int kPassesToEnd = 3;
  LoadFit fit = {.problem = problem, .model = model, .a = a};
  MRQMINCT(fit, host);
  count = 0;
  for (int passes = 0; passes < kPassesToEnd;) {
    ++count;
    const double before = fit.chisq;
    MRQMINCT(fit, host);
    passes = CountPass(problem.p, passes, before, fit.chisq);
  }
  fit.alamda = 0.0;
  MRQMINCT(fit, host);
  return fit.a;
}

Array1<double> Pair(double first, double second) {
  Array1<double> pair;
  pair.Append(first);
  pair.Append(second);
  return pair;
}

SimReference FitLogarithms(const SimProblem& problem, const HeteroModel& model, Host& host,
                           int& count) {
  const SimParameters& p = problem.p;
  const Array1<double> a =
      FitLoads(problem, model, Pair(CheckedLog(p.LA / 3.0), CheckedLog(p.LB / 3.0)), host, count);
  SimReference free;
  CheckArithmetic([&] { free = {std::exp(a(1)), std::exp(a(2))}; });
  return free;
}

}  // namespace

void FUNCSCT(const SimProblem& problem, int i, const Array1<double>& a, double& y) {
  FromLogarithms(problem, i, a, y);
}

void FUNCSCT2(const SimProblem& problem, int i, const Array1<double>& a, double& y) {
  FromLogarithms(problem, i, a, y);
}

void FUNCSCT3(const SimProblem& problem, int i, const Array1<double>& a, double& y) {
  FromLogarithms(problem, i, a, y);
}

void FUNCSCT4(const SimProblem& problem, int i, const Array1<double>& a, double& y) {
  y = MeanOfComponent(problem, i, a(1), a(2));
}

void PARTIALSCT(const SimProblem& problem, int i, const Array1<double>& a, Array1<double>& dyda,
                int ma) {
  CentralDifferences([&](const auto& t, double& y) { FUNCSCT(problem, i, t, y); }, a, dyda, ma);
}

void PARTIALSCT2(const SimProblem& problem, int i, const Array1<double>& a, Array1<double>& dyda,
                 int ma) {
  CentralDifferences([&](const auto& t, double& y) { FUNCSCT2(problem, i, t, y); }, a, dyda, ma);
}

void PARTIALSCT3(const SimProblem& problem, int i, const Array1<double>& a, Array1<double>& dyda,
                 int ma) {
  CentralDifferences([&](const auto& t, double& y) { FUNCSCT3(problem, i, t, y); }, a, dyda, ma);
}

void PARTIALSCT4(const SimProblem& problem, int i, const Array1<double>& a, Array1<double>& dyda,
                 int ma) {
  CentralDifferences([&](const auto& t, double& y) { FUNCSCT4(problem, i, t, y); }, a, dyda, ma);
}

void MRQCOFCT(const LoadFit& fit, const Array1<double>& a, Matrix1<double>& alpha,
              Matrix1<double>& beta, double& chisq) {
  alpha = Matrix1<double>(kParameters, kParameters);
  beta = Matrix1<double>(kParameters, 1);
  chisq = 0.0;
  Array1<double> dyda(kParameters);
  for (int k = 1; k <= kParameters; ++k) {
    double y = 0.0;
    fit.model.funcs(fit.problem, k, a, y);
    const double dy = (k == kComponentA ? fit.problem.p.LA : fit.problem.p.LB) - y;
    fit.model.partials(fit.problem, k, a, dyda, kParameters);
    for (int j = 1; j <= kParameters; ++j) {
      for (int l = 1; l <= j; ++l) alpha(j, l) += dyda(j) * dyda(l);
      beta(j, 1) += dy * dyda(j);
    }
    chisq += dy * dy;
  }
  alpha(1, 2) = alpha(2, 1);
}

void SIMCOVSRT(Matrix1<double>& covar, int ma, int mfit) {
  for (int i = mfit + 1; i <= ma; ++i) {
    for (int j = 1; j <= i; ++j) covar(i, j) = covar(j, i) = 0.0;
  }
}

void MRQMINCT(LoadFit& fit, Host& host) {
  if (fit.alamda < 0.0) Initialise(fit);
  host.RunPendingEvents();
  SetUpStep(fit);
  std::string currentProc;
  GAUSSJ(fit.covar, fit.mfit, fit.da, 1, currentProc, host);
  if (fit.alamda == 0.0) {
    SIMCOVSRT(fit.covar, kParameters, fit.mfit);
    SIMCOVSRT(fit.alpha, kParameters, fit.mfit);
    return;
  }
  TakeTrial(fit);
  if (fit.chisq < fit.ochisq) {
    fit.alamda /= 10.0;
    fit.ochisq = fit.chisq;
    fit.alpha = fit.covar;
    fit.beta = fit.da;
    fit.a = fit.atry;
  } else {
    CheckArithmetic([&] { fit.alamda *= 10.0; });
  }
}

SimReference FitCloadCs(const SimProblem& problem, Host& host, int& count) {
  return FitLogarithms(problem, {FUNCSCT, PARTIALSCT}, host, count);
}

SimReference FitCloadCs2(const SimProblem& problem, Host& host, int& count) {
  return FitLogarithms(problem, {FUNCSCT2, PARTIALSCT2}, host, count);
}

SimReference FitCloadCs3(const SimProblem& problem, Host& host, int& count) {
  return FitLogarithms(problem, {FUNCSCT3, PARTIALSCT3}, host, count);
}

SimReference FitCloadCs4(const SimProblem& problem, Host& host, int& count) {
  const SimParameters& p = problem.p;
  const Array1<double> a =
      FitLoads(problem, {FUNCSCT4, PARTIALSCT4}, Pair(p.LA / 3.0, p.LB / 3.0), host, count);
  return {a(1), a(2)};
}

}  // namespace quorvane
