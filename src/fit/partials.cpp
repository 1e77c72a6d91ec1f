#include "fit/partials.h"

#include "fit/fit_state.h"

namespace quorvane {

namespace {

// Model value at point i with parameter j of `work` moved to `value`.
double ValueWith(FitState& fit, const Model& model, int j, double value, int i,
                 Array1<double>& work) {
  const double kept = work(j);
  work(j) = value;
  double result = 0.0;
  model.funcs(fit, i, work, result);
  work(j) = kept;
  return result;
}

}  // namespace

double DerivativeAt(FitState& fit, const Model& model, int j, int i, double f0,
                    Array1<double>& work) {
  if (model.secondComponent && fit.PointKind(i) != 0 && fit.FitY(i) == 0.0) return 0.0;
  const double a0 = work(j);
  return model.steps.Derivative(
      a0, f0, [&](double step) { return ValueWith(fit, model, j, a0 + step, i, work); });
}

double DerivativeByStep(FitState& fit, const Model& model, int j, int i, double step,
                        Array1<double>& work) {
  if (model.secondComponent && fit.PointKind(i) != 0 && fit.FitY(i) == 0.0) return 0.0;
  const double a0 = work(j);
  const double up = ValueWith(fit, model, j, a0 + step, i, work);
  const double down = ValueWith(fit, model, j, a0 - step, i, work);
  return StepRule::CentredDifference(up, down, step);
}

void PARTIALS(FitState& fit, const Array1<double>& a, Array1<double>& dyda, int ma, int i) {
  const Model& model = *fit.FitModel;
  fit.CurrentProc = model.partialsName;
  Array1<double> work = a;
  double f0 = 0.0;
  model.funcs(fit, i, a, f0);
  for (int j = 1; j <= ma; ++j) dyda(j) = DerivativeAt(fit, model, j, i, f0, work);
}

}  // namespace quorvane
