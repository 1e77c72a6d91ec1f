#include "fit/partials.h"

#include "fit/fit_state.h"

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

void AllDerivatives(FitState& fit, int modelIndex, const Array1<double>& a, Array1<double>& dyda,
                    int ma, int i) {
  const Model& model = *FindModel(modelIndex);
  fit.CurrentProc = model.partialsName;
  Array1<double> work = a;
  double f0 = 0.0;
  model.funcs(fit, i, a, f0);
  for (int j = 1; j <= ma; ++j) dyda(j) = DerivativeAt(fit, model, j, i, f0, work);
}

}  // namespace

double DerivativeAt(FitState& fit, const Model& model, int j, int i, double f0,
                    Array1<double>& work) {
  if (model.secondComponent && fit.PointKind(i) != 0 && fit.FitY(i) == 0.0) return 0.0;
  const double a0 = work(j);
  double h = FirstStep(model, a0);
  double up = ValueWith(fit, model, j, a0 + h, i, work);
  const double r = StepRatio(f0, up);
  if (!KeepsFirstStep(r)) {
    h = SecondStep(a0, h, r);
    up = ValueWith(fit, model, j, a0 + h, i, work);
  }
  const double down = ValueWith(fit, model, j, a0 - h, i, work);
  return CentredDifference(up, down, h);
}

void PARTIALS0(FitState& fit, const Array1<double>& a, Array1<double>& dyda, int ma, int i) {
  AllDerivatives(fit, 0, a, dyda, ma, i);
}
void PARTIALS1(FitState& fit, const Array1<double>& a, Array1<double>& dyda, int ma, int i) {
  AllDerivatives(fit, 1, a, dyda, ma, i);
}
void PARTIALS2(FitState& fit, const Array1<double>& a, Array1<double>& dyda, int ma, int i) {
  AllDerivatives(fit, 2, a, dyda, ma, i);
}
void PARTIALS3(FitState& fit, const Array1<double>& a, Array1<double>& dyda, int ma, int i) {
  AllDerivatives(fit, 3, a, dyda, ma, i);
}
void PARTIALS4(FitState& fit, const Array1<double>& a, Array1<double>& dyda, int ma, int i) {
  AllDerivatives(fit, 14, a, dyda, ma, i);
}
void PARTIALS5(FitState& fit, const Array1<double>& a, Array1<double>& dyda, int ma, int i) {
  AllDerivatives(fit, 4, a, dyda, ma, i);
}
void PARTIALS6(FitState& fit, const Array1<double>& a, Array1<double>& dyda, int ma, int i) {
  AllDerivatives(fit, 5, a, dyda, ma, i);
}
void PARTIALS7(FitState& fit, const Array1<double>& a, Array1<double>& dyda, int ma, int i) {
  AllDerivatives(fit, 6, a, dyda, ma, i);
}
void PARTIALS8(FitState& fit, const Array1<double>& a, Array1<double>& dyda, int ma, int i) {
  AllDerivatives(fit, 7, a, dyda, ma, i);
}
void PARTIALS9(FitState& fit, const Array1<double>& a, Array1<double>& dyda, int ma, int i) {
  AllDerivatives(fit, 8, a, dyda, ma, i);
}
void PARTIALS10(FitState& fit, const Array1<double>& a, Array1<double>& dyda, int ma, int i) {
  AllDerivatives(fit, 9, a, dyda, ma, i);
}
void PARTIALS11(FitState& fit, const Array1<double>& a, Array1<double>& dyda, int ma, int i) {
  AllDerivatives(fit, 10, a, dyda, ma, i);
}
