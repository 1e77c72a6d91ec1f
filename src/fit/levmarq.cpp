#include "fit/levmarq.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/arithmetic.h"
#include "base/host.h"
#include "base/number_format.h"
#include "fit/fit_state.h"
#include "fit/model_pass.h"

namespace quorvane {

namespace {

// Why an elimination was given up.
struct Singular {
  bool pivotTwice = false;  // a column was chosen a second time
  int column = 0;           // of a zero pivot
};

struct PivotPlace {
  int row = 0;
  int column = 0;
};

// The largest element outside the rows done; on a tie the later one wins. Nothing if a column has
// been chosen twice.
std::optional<PivotPlace> FindPivot(const Matrix1<double>& a, int n,
                                    const std::vector<int>& timesChosen) {
  PivotPlace place;
  double big = 0.0;
  for (int j = 1; j <= n; ++j) {
    if (timesChosen[static_cast<std::size_t>(j)] == 1) continue;
    const double* row = a.Row(j) - 1;
    for (int k = 1; k <= n; ++k) {
      const int times = timesChosen[static_cast<std::size_t>(k)];
      if (times == 0) {
        const double magnitude = std::fabs(row[k]);
        if (magnitude >= big) {
          big = magnitude;
          place = {j, k};
        }
      } else if (times > 1) {
        return std::nullopt;
      }
    }
  }
  return place;
}

void SwapRows(Matrix1<double>& matrix, int columns, int i, int j) {
  for (int l = 1; l <= columns; ++l) std::swap(matrix(i, l), matrix(j, l));
}

void ScaleRow(double* row, int columns, double factor) {
  for (int l = 0; l < columns; ++l) row[l] *= factor;
}

void SubtractRow(double* row, const double* pivotRow, int columns, double factor) {
  for (int l = 0; l < columns; ++l) row[l] -= pivotRow[l] * factor;
}

// Takes column `icol` out of all rows but its own.
void EliminateColumn(Matrix1<double>& a, int n, Matrix1<double>& b, int m, int icol) {
  const double inverse = 1.0 / a(icol, icol);
  a(icol, icol) = 1.0;
  ScaleRow(a.Row(icol), n, inverse);
  ScaleRow(b.Row(icol), m, inverse);
  for (int ll = 1; ll <= n; ++ll) {
    if (ll == icol) continue;
    const double factor = a(ll, icol);
    a(ll, icol) = 0.0;
    SubtractRow(a.Row(ll), a.Row(icol), n, factor);
    SubtractRow(b.Row(ll), b.Row(icol), m, factor);
  }
}

std::optional<Singular> Eliminate(Matrix1<double>& a, int n, Matrix1<double>& b, int m) {
  std::vector<int> timesChosen(static_cast<std::size_t>(n) + 1, 0);
  std::vector<PivotPlace> pivots;
  pivots.reserve(static_cast<std::size_t>(n));
  PivotPlace place;
  for (int i = 1; i <= n; ++i) {
    const std::optional<PivotPlace> found = FindPivot(a, n, timesChosen);
    if (!found) return Singular{true, 0};
    if (found->row != 0) place = *found;           // nothing found keeps the last place
    if (place.row == 0) return Singular{true, 0};  // a matrix without numbers; the flags say so
    ++timesChosen[static_cast<std::size_t>(place.column)];
    if (place.row != place.column) {
      SwapRows(a, n, place.row, place.column);
      SwapRows(b, m, place.row, place.column);
    }
    pivots.push_back(place);
    if (IsZeroInSingle(a(place.column, place.column))) return Singular{false, place.column};
    EliminateColumn(a, n, b, m, place.column);
  }
  for (auto pivot = pivots.rbegin(); pivot != pivots.rend(); ++pivot) {
    if (pivot->row == pivot->column) continue;
    for (int k = 1; k <= n; ++k) std::swap(a(k, pivot->row), a(k, pivot->column));
  }
  return std::nullopt;
}

void Initialise(FitState& fit, Matrix1<double>& alpha, double& lambda) {
  constexpr double kFirstLambda = 0.001;
  StepMemory& memory = fit.Memory;
  if (fit.FitMA > kMaxParameters) throw SubscriptFault();
  memory.mfit = fit.NumFitted();
  memory.solver = ArrowSolver(ShapeOf(fit));
  lambda = kFirstLambda;
  MRQCOF(fit, fit.FitA, alpha, memory.beta, fit.FitChiSq);
  memory.bestChiSq = fit.FitChiSq;
  for (int l = 1; l <= fit.FitMA; ++l) memory.trialA(l) = fit.FitA(l);
}

// The damped curvature, into FitCovar, and the gradient, ready to be solved.
void SetUpStep(FitState& fit, const Matrix1<double>& alpha, double lambda) {
  StepMemory& memory = fit.Memory;
  Matrix1<double>& covar = fit.FitCovar;
  for (int j = 1; j <= memory.mfit; ++j) {
    std::copy_n(alpha.Row(j), memory.mfit, covar.Row(j));
    covar(j, j) = alpha(j, j) * (1.0 + lambda);
    memory.trialStep(j, 1) = memory.beta(j, 1);
  }
}

// The step by groups; with lambda 0 also the inverse. False if that cannot be trusted; then
// trialStep is spoilt.
bool SolveByGroups(FitState& fit, const Matrix1<double>& alpha, double lambda) {
  StepMemory& memory = fit.Memory;
  bool solved = false;
  const FaultFlags faults = FaultsRaisedBy([&] {
    solved = memory.solver.Factor(alpha, lambda);
    if (!solved) return;
    std::copy_n(memory.beta.Row(1), memory.mfit, memory.trialStep.Row(1));
    memory.solver.Solve(memory.trialStep);
    if (IsZeroInSingle(lambda)) memory.solver.Invert(fit.FitCovar);
  });
  return solved && !faults.Any();
}

// Solves for the step, in trialStep; where a closing call comes, FitCovar becomes the inverse.
// Where the groups leave a doubt, all is eliminated as it stands, with the messages of that.
void SolveStep(FitState& fit, Host& host, const Matrix1<double>& alpha, double lambda) {
  StepMemory& memory = fit.Memory;
  fit.CurrentProc = "GAUSSJ";
  if (SolveByGroups(fit, alpha, lambda)) return;
  CheckArithmetic([&] { SetUpStep(fit, alpha, lambda); });
  GAUSSJ(fit.FitCovar, memory.mfit, memory.trialStep, 1, fit.CurrentProc, host);
}

void TakeTrial(FitState& fit) {
  int j = 0;
  for (int l = 1; l <= fit.FitMA; ++l) {
    if (fit.FitIA(l) != 0) fit.Memory.trialA(l) = fit.FitA(l) + fit.Memory.trialStep(++j, 1);
  }
}

// The trial was better: it becomes the point to go on from.
void Accept(FitState& fit, Matrix1<double>& alpha) {
  StepMemory& memory = fit.Memory;
  memory.bestChiSq = fit.FitChiSq;
  std::swap(alpha, fit.FitCovar);  // the next step fills it anew
  std::copy_n(memory.trialStep.Row(1), memory.mfit, memory.beta.Row(1));
  for (int l = 1; l <= fit.FitMA; ++l) fit.FitA(l) = memory.trialA(l);
}

// The passes of the convergence rule so far, after a step that took the sum from `before` to `now`.
int CountPass(int passes, double before, double now) {
  constexpr double kSameSum = 0.001;
  if (now > before) return 0;
  return std::fabs(now - before) < kSameSum ? passes + 1 : passes;
}

}  // namespace

void GAUSSJ(Matrix1<double>& a, int n, Matrix1<double>& b, int m, std::string& currentProc,
            Host& host) {
  currentProc = "GAUSSJ";
  std::optional<Singular> singular;
  CheckArithmetic([&] { singular = Eliminate(a, n, b, m); });
  if (!singular) return;
  if (singular->pivotTwice) {
    host.PrintIt("GAUSSJ - IPIV(k) > 1 :: Singular matrix");
    return;
  }
  const std::string column = FormatNumber(singular->column, "##");
  host.PrintIt("GAUSSJ - aa(" + column + "," + column + ")=0 :: Singular matrix.");
}

void COVSRT(FitState& fit, Matrix1<double>& covar, int ma, int mfit) {
  fit.CurrentProc = "COVSRT";
  for (int i = mfit + 1; i <= ma; ++i) {
    for (int j = 1; j <= i; ++j) {
      covar(i, j) = 0.0;
      covar(j, i) = 0.0;
    }
  }
  int k = mfit;
  for (int j = ma; j >= 1; --j) {
    if (fit.FitIA(j) == 0) continue;
    for (int i = 1; i <= ma; ++i) std::swap(covar(i, k), covar(i, j));
    for (int i = 1; i <= ma; ++i) std::swap(covar(k, i), covar(j, i));
    --k;
  }
}

void MRQCOF(FitState& fit, const Array1<double>& a, Matrix1<double>& alpha, Matrix1<double>& beta,
            double& chisq) {
  fit.CurrentProc = "MRQCOF";
  const int nfit = fit.NumFitted();
  for (int j = 1; j <= nfit; ++j) {
    std::fill_n(alpha.Row(j), nfit, 0.0);
    beta(j, 1) = 0.0;
  }
  chisq = 0.0;
  if (fit.FitModel != nullptr) AddPass(fit, a, alpha, beta, chisq);
}

void MRQMIN1(FitState& fit, Host& host, Matrix1<double>& alpha, double& lambda) {
  fit.CurrentProc = "MRQMIN1";
  StepMemory& memory = fit.Memory;
  if (lambda < 0.0 && !IsZeroInSingle(lambda)) Initialise(fit, alpha, lambda);
  host.RunPendingEvents();
  SolveStep(fit, host, alpha, lambda);
  if (IsZeroInSingle(lambda)) {
    COVSRT(fit, fit.FitCovar, fit.FitMA, memory.mfit);
    COVSRT(fit, alpha, fit.FitMA, memory.mfit);
    return;
  }
  CheckArithmetic([&] { TakeTrial(fit); });
  MRQCOF(fit, memory.trialA, fit.FitCovar, memory.trialStep, fit.FitChiSq);
  host.RunPendingEvents();
  if (fit.FitChiSq < memory.bestChiSq) {
    lambda /= 10.0;
    Accept(fit, alpha);
  } else {
    CheckArithmetic([&] { lambda *= 10.0; });
  }
}

double AcceptedSum(const FitState& fit) {
  return fit.Memory.bestChiSq;
}

void FitData(FitState& fit, Host& host, int& iterations) {
  constexpr int kPassesToEnd = 2;
  fit.FitCovar = Matrix1<double>(fit.FitMA, fit.FitMA);
  Matrix1<double> alpha(fit.FitMA, fit.FitMA);
  fit.CurrentProc = "FitDATA";
  PreparePass(fit);
  double lambda = -1.0;
  MRQMIN1(fit, host, alpha, lambda);
  iterations = 1;
  for (int passes = 0; passes < kPassesToEnd;) {
    ++iterations;
    const double before = fit.FitChiSq;
    MRQMIN1(fit, host, alpha, lambda);
    passes = CountPass(passes, before, fit.FitChiSq);
    host.ReportProgress({.what = "Fit", .iteration = iterations, .sumOfSquares = fit.FitChiSq});
    host.RunPendingEvents();
    if (!fit.FitKeepGoing()) {
      iterations = 0;
      return;
    }
  }
  lambda = 0.0;
  MRQMIN1(fit, host, alpha, lambda);
  host.RunPendingEvents();
}

}  // namespace quorvane
