#include "fit/model_pass.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "base/arithmetic.h"
#include "fit/fit_state.h"
#include "fit/partials.h"
#include "fit/point_facts.h"
#include "fit/species_pass.h"

namespace quorvane {

namespace {

// Four sums side by side hide the latency of the additions; the rows of derivatives are filled up
// with zeros to a multiple of that.
constexpr std::size_t kTogether = 4;

std::size_t PaddedColumns(std::size_t columns) {
  return (columns + kTogether - 1) / kTogether * kTogether;
}

// The fitted parameters that touch dataset d, in rising order. A model without species terms is
// taken to depend on all parameters everywhere.
void FindTouching(FitState& fit, int d) {
  std::vector<int>& touching = fit.Workspace.touching;
  const std::vector<int>& ordinal = fit.Workspace.ordinal;
  touching.clear();
  const auto take = [&](int l) {
    if (ordinal[static_cast<std::size_t>(l)] != 0) touching.push_back(l);
  };
  if (fit.FitModel->terms == nullptr) {
    for (int l = 1; l <= fit.FitMA; ++l) take(l);
    return;
  }
  const int n = fit.NumFitSets;
  const int owner =
      fit.FitModel->secondComponent ? fit.RefLink[static_cast<std::size_t>(d - 1)] + 1 : d;
  take(d);
  take(n + owner);
  if (fit.FitModel->secondComponent) take(2 * n + owner);
  for (int l = fit.SharedBase() + 1; l <= fit.FitMA; ++l) take(l);
}

// How many parameters may touch one dataset: its own and the shared ones.
std::size_t MostTouching(const FitState& fit) {
  return static_cast<std::size_t>(fit.ParamsPerSet + fit.FitMA - fit.SharedBase());
}

// The model at dataset d, at the parameters of a pass: values and what moved values share.
struct BaseValues {
  int d;
  SetTerms terms;
  Exponentials exponentials;
};

// Values of the dataset of `base` with parameter l moved to `value`, into `out`.
void MovedValues(FitState& fit, const SetPoints& points, const BaseValues& base, int l,
                 double value, std::span<double> out) {
  PassWorkspace& work = fit.Workspace;
  const double kept = work.work(l);
  work.work(l) = value;
  SetTerms terms;
  fit.FitModel->terms(fit, *fit.FitModel, work.work, base.d, terms);
  work.work(l) = kept;
  const Exponentials exponentials = ComputeExponentials(
      terms, points, &base.terms, &base.exponentials, work.stepExp, work.stride);
  EvaluateSet(terms, points, exponentials, out);
}

// Chooses the step of each point for parameter l, whose value is a0, by the values after the first
// step, and says whether some point takes the least one.
bool ChooseSteps(FitState& fit, std::size_t total, double a0) {
  PassWorkspace& work = fit.Workspace;
  const StepRule rule = fit.FitModel->steps;
  const double first = rule.First(a0);
  bool anyLeast = false;
  for (std::size_t j = 0; j < total; ++j) {
    const double r = StepRule::Ratio(work.value[j], work.firstValue[j]);
    work.step[j] = StepRule::Keeps(r) ? first : rule.Second(a0, first, r);
    anyLeast = anyLeast || work.step[j] == StepRule::Least(a0);
  }
  return anyLeast;
}

// Derivatives of all points of the dataset of `base` with respect to parameter l, into column
// `column` of the work space. Nearly every point ends at the least step of the rule; those values
// are found for the whole dataset at once. Other points take the plain road.
void SetDerivatives(FitState& fit, const SetPoints& points, const BaseValues& base, int l,
                    std::size_t column) {
  PassWorkspace& work = fit.Workspace;
  const std::size_t stride = PaddedColumns(work.touching.size());
  const std::size_t all = points.n + points.extra;
  const bool flat = points.extra > 0 && points.y[points.n] == 0.0;  // targets that nothing touches
  const std::size_t total = flat ? points.n : all;
  const double a0 = work.work(l);
  const double least = StepRule::Least(a0);
  MovedValues(fit, points, base, l, a0 + fit.FitModel->steps.First(a0), work.firstValue);
  if (ChooseSteps(fit, total, a0)) {
    MovedValues(fit, points, base, l, a0 + least, work.upValue);
    MovedValues(fit, points, base, l, a0 - least, work.downValue);
  }
  for (std::size_t j = 0; j < total; ++j) {
    double& derivative = work.derivative[j * stride + column];
    if (work.step[j] == least) {
      derivative = StepRule::CentredDifference(work.upValue[j], work.downValue[j], least);
    } else {
      derivative = DerivativeAt(fit, *fit.FitModel, l, points.first + static_cast<int>(j),
                                work.value[j], work.work);
    }
  }
  for (std::size_t j = total; j < all; ++j) work.derivative[j * stride + column] = 0.0;
}

// Values and derivatives of dataset d, the whole dataset at a time.
void SetPass(FitState& fit, const SetPoints& points, int d) {
  PassWorkspace& work = fit.Workspace;
  BaseValues base;
  base.d = d;
  fit.FitModel->terms(fit, *fit.FitModel, work.work, d, base.terms);
  base.exponentials =
      ComputeExponentials(base.terms, points, nullptr, nullptr, work.baseExp, work.stride);
  EvaluateSet(base.terms, points, base.exponentials, work.value);
  for (std::size_t k = 0; k < work.touching.size(); ++k) {
    SetDerivatives(fit, points, base, work.touching[k], k);
  }
}

// The same, point by point: for models without species terms, and after a fault, to find the point
// that raised it. Each point is checked by itself, with the squares that its sums will take.
void PointwisePass(FitState& fit, const SetPoints& points) {
  PassWorkspace& work = fit.Workspace;
  const std::size_t columns = work.touching.size();
  const std::size_t stride = PaddedColumns(columns);
  for (std::size_t j = 0; j < points.n + points.extra; ++j) {
    const int i = points.first + static_cast<int>(j);
    CheckArithmetic([&] {
      fit.FitModel->funcs(fit, i, work.work, work.value[j]);
      double squares = 0.0;
      for (std::size_t k = 0; k < columns; ++k) {
        double& derivative = work.derivative[j * stride + k];
        const int l = work.touching[k];
        derivative = work.ownSteps.empty()
                         ? DerivativeAt(fit, *fit.FitModel, l, i, work.value[j], work.work)
                         : DerivativeByStep(fit, *fit.FitModel, l, i,
                                            work.ownSteps[static_cast<std::size_t>(l)], work.work);
        squares += derivative * derivative;
      }
      const double residual = points.y[j] - work.value[j];
      work.step[j] = squares + residual * residual;
    });
  }
}

using FourSums = std::array<double, kTogether>;

// Adds left[j * leftStride] * right[j * rightStride + k] over the points, in their order.
void AddProducts(const double* left, std::size_t leftStride, const double* right,
                 std::size_t rightStride, std::size_t points, FourSums& sums) {
  FourSums local = sums;
  for (std::size_t j = 0; j < points; ++j) {
    for (std::size_t k = 0; k < kTogether; ++k) {
      local[k] += left[j * leftStride] * right[j * rightStride + k];
    }
  }
  sums = local;
}

// Adds to an element of alpha and to its mirror image.
void AddSymmetric(Matrix1<double>& alpha, int row, int column, double sum) {
  alpha(row, column) += sum;
  if (row != column) alpha(column, row) += sum;
}

// The sums of one dataset from the work space, each element in the order of the points.
void Accumulate(FitState& fit, std::size_t points, Matrix1<double>& alpha, Matrix1<double>& beta,
                double& chisq) {
  const PassWorkspace& work = fit.Workspace;
  const std::size_t columns = work.touching.size();
  const std::size_t stride = PaddedColumns(columns);
  const double* derivative = work.derivative.data();
  const double* residual = work.residual.data();
  for (std::size_t j = 0; j < points; ++j) chisq += residual[j] * residual[j];
  for (std::size_t m = 0; m < columns; m += kTogether) {
    const std::size_t last = std::min(m + kTogether, columns);
    FourSums sums{};
    AddProducts(residual, 1, derivative + m, stride, points, sums);
    for (std::size_t k = m; k < last; ++k) beta(work.Place(k), 1) += sums[k - m];
    for (std::size_t l = m; l < columns; ++l) {
      sums = {};
      AddProducts(derivative + l, stride, derivative + m, stride, points, sums);
      for (std::size_t k = m; k < std::min(last, l + 1); ++k) {
        AddSymmetric(alpha, work.Place(l), work.Place(k), sums[k - m]);
      }
    }
  }
}

// The same from sums that the kernel has made.
void Accumulate(FitState& fit, const SetSums& sums, Matrix1<double>& alpha, Matrix1<double>& beta,
                double& chisq) {
  const PassWorkspace& work = fit.Workspace;
  chisq += sums.squares;
  for (std::size_t l = 0; l < work.touching.size(); ++l) {
    beta(work.Place(l), 1) += sums.gradient[l];
    for (std::size_t k = 0; k <= l; ++k) {
      AddSymmetric(alpha, work.Place(l), work.Place(k), sums.product[l][k]);
    }
  }
}

// Zeros behind the columns in use, so that what an earlier dataset left there is not multiplied.
void ClearPadding(PassWorkspace& work, std::size_t points) {
  const std::size_t columns = work.touching.size();
  const std::size_t stride = PaddedColumns(columns);
  for (std::size_t j = 0; j < points; ++j) {
    for (std::size_t k = columns; k < stride; ++k) work.derivative[j * stride + k] = 0.0;
  }
}

void NumberFitted(FitState& fit) {
  int count = 0;
  for (int l = 1; l <= fit.FitMA; ++l) {
    fit.Workspace.ordinal[static_cast<std::size_t>(l)] = fit.FitIA(l) != 0 ? ++count : 0;
  }
}

// The dataset at once by the vector kernel. False, with nothing added, if that cannot be.
bool AddByKernel(FitState& fit, const SetPoints& points, int d, Matrix1<double>& alpha,
                 Matrix1<double>& beta, double& chisq) {
  if (fit.FitModel->species.empty() || !fit.Workspace.ownSteps.empty()) return false;
  SetSums sums;
  bool made = false;
  if (FaultsRaisedBy([&] { made = SumSpeciesSet(fit, points, d, sums); }).Any() || !made) {
    return false;
  }
  CheckArithmetic([&] { Accumulate(fit, sums, alpha, beta, chisq); });
  return true;
}

// The dataset by columns of values, or point by point where a fault has to be named.
void AddByColumns(FitState& fit, const SetPoints& points, int d, Matrix1<double>& alpha,
                  Matrix1<double>& beta, double& chisq) {
  PassWorkspace& work = fit.Workspace;
  const std::size_t total = points.n + points.extra;
  ClearPadding(work, total);
  if (fit.FitModel->terms == nullptr || !work.ownSteps.empty() ||
      FaultsRaisedBy([&] { SetPass(fit, points, d); }).Any()) {
    PointwisePass(fit, points);
  }
  CheckArithmetic([&] {
    for (std::size_t j = 0; j < total; ++j) work.residual[j] = points.y[j] - work.value[j];
    Accumulate(fit, total, alpha, beta, chisq);
  });
}

}  // namespace

void PreparePass(FitState& fit) {
  PassWorkspace& work = fit.Workspace;
  std::size_t largest = 0;
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    largest = std::max(largest, static_cast<std::size_t>(fit.SetPointCount(d)));
  }
  const auto parameters = static_cast<std::size_t>(fit.FitMA);
  const bool species = fit.FitModel != nullptr && fit.FitModel->terms != nullptr;
  const std::size_t touching = species ? MostTouching(fit) : parameters;
  work.stride = largest;
  work.baseExp.resize(kMaxSpecies * largest);
  work.stepExp.resize(kMaxSpecies * largest);
  for (std::vector<double>* column : {&work.value, &work.firstValue, &work.upValue, &work.downValue,
                                      &work.step, &work.residual}) {
    column->resize(largest);
  }
  work.derivative.resize(PaddedColumns(touching) * largest);
  work.ordinal.resize(parameters + 1);
  work.touching.reserve(touching);
  work.work = fit.FitA;
  work.ownSteps.clear();
  PreparePoints(fit, work.facts, work.weights);
}

void AddPass(FitState& fit, const Array1<double>& a, Matrix1<double>& alpha, Matrix1<double>& beta,
             double& chisq) {
  PassWorkspace& work = fit.Workspace;
  for (int l = 1; l <= fit.FitMA; ++l) work.work(l) = a(l);
  NumberFitted(fit);
  fit.CurrentProc = fit.FitModel->funcsName;
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    const SetPoints points = PointsOf(fit, d);
    FindTouching(fit, d);
    if (!AddByKernel(fit, points, d, alpha, beta, chisq)) {
      AddByColumns(fit, points, d, alpha, beta, chisq);
    }
  }
}

void CalcModelValues(FitState& fit) {
  if (fit.FitModel == nullptr) return;
  fit.CurrentProc = fit.FitModel->funcsName;
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    const int first = fit.SetFirstPoint(d);
    const int end = first + fit.SetPointCount(d);
    const auto atOnce = [&] {
      SetTerms terms;
      fit.FitModel->terms(fit, *fit.FitModel, fit.FitA, d, terms);
      for (int i = first; i < end; ++i) fit.FitYCalc(i) = EvaluatePoint(fit, terms, i);
    };
    if (fit.FitModel->terms != nullptr && !FaultsRaisedBy(atOnce).Any()) continue;
    // One by one, to name the fault that came first.
    for (int i = first; i < end; ++i) {
      CheckArithmetic([&] { fit.FitModel->funcs(fit, i, fit.FitA, fit.FitYCalc(i)); });
    }
  }
}

}  // namespace quorvane
