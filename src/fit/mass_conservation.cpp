#include "fit/mass_conservation.h"

#include "base/arithmetic.h"
#include "fit/models.h"

namespace quorvane {

namespace {

double MeanOfSet(const FitState& fit, int d, double baseline) {
  const int first = fit.SetFirstPoint(d);
  const int last = first + fit.SetPointCount(d) - 1;
  const auto c = [&](int j) { return (fit.FitYCalc(j) - baseline) / fit.SetEpsA(d); };
  double weighted = 0.0;
  double widths = 0.0;
  for (int j = first; j < last; ++j) {
    const double width = (fit.FitF(j) + fit.FitF(j + 1)) * (fit.FitR(j + 1) - fit.FitR(j));
    weighted += width * ((c(j + 1) + c(j)) / 2.0) / 2.0;
    widths += width / 2.0;
  }
  return weighted / widths;
}

// The mean concentration that the model gives at FitA. Without a rise of the signal the target of
// the mass conservation points is 0, and so is their value, which then tells nothing.
double MeanOfFlatSet(const FitState& fit, int d, int kind) {
  SetTerms terms;
  fit.FitModel->terms(fit, *fit.FitModel, fit.FitA, d, terms);
  return MeanConcentration(fit, terms, d, kind == 1 ? Component::kA : Component::kB);
}

}  // namespace

void CalcLoadConcs(FitState& fit, const std::vector<Dataset>& datasets) {
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    const auto place = static_cast<std::size_t>(fit.FitSetList[static_cast<std::size_t>(d - 1)]);
    CheckArithmetic([&] { fit.SetCalcLoad(d) = MeanOfSet(fit, d, datasets[place].Offset); });
  }
}

double CalculatedLoad(const FitState& fit, int d, int kind) {
  const int i = fit.SetFirstPoint(d) + fit.SetPointCount(d) - (kind == 1 ? 2 : 1);
  const double load = kind == 1 ? fit.SetALoad(d) : fit.SetBLoad(d);
  double result = 0.0;
  CheckArithmetic([&] {
    result =
        fit.FitY(i) == 0.0 ? MeanOfFlatSet(fit, d, kind) : load * fit.FitYCalc(i) / fit.FitY(i);
  });
  return result;
}

}  // namespace quorvane
