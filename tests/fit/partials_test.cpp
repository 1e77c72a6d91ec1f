// Faults caught here: a derivative that belongs to another model or parameter, or is no centred
// difference; a step rule with its signed comparisons or its answer to no number tidied away. The
// whole rule stands written out in literal_pass_test.cpp.
#include "fit/partials.h"

#include <array>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "fit/fit_state.h"
#include "fit/step_rule.h"
#include "support/fit_problem.h"

using namespace quorvane;

namespace {

double ValueMoved(FitState& fit, int j, int i, double h) {
  Array1<double> moved = fit.FitA;
  moved(j) += h;
  double value = 0.0;
  fit.FitModel->funcs(fit, i, moved, value);
  return value;
}

double Centred(FitState& fit, int j, int i, double h) {
  return (ValueMoved(fit, j, i, h) - ValueMoved(fit, j, i, -h)) / (2.0 * h);
}

// Centred differences over steps halved three times, extrapolated to a step of 0 (Richardson).
double Derivative(FitState& fit, int j, int i, double h) {
  std::array<double, 4> t{};
  for (std::size_t k = 0; k < t.size(); ++k) {
    t[k] = Centred(fit, j, i, h / std::pow(2.0, static_cast<double>(k)));
  }
  for (double factor = 4.0; factor < 100.0; factor *= 4.0) {
    for (std::size_t k = 0; k + 1 < t.size(); ++k) t[k] = (factor * t[k + 1] - t[k]) / (factor - 1);
  }
  return t[0];
}

}  // namespace

// A centred difference of step h is off by h^2/6 times the third derivative, and by rounding.
TEST(PARTIALS, AreCentredDifferencesOfTheirOwnModel) {
  for (const int index : AllModels()) {
    FitState fit =
        MakeProblem({.modelIndex = index, .sets = 3, .points = 8, .massConservation = true},
                    TypicalShared(index));
    fit.RefLink = {0, 0, 2};
    FillSignal(fit, [](int i) { return 0.01 * std::cos(3.0 * i); });
    for (int i = 1; i <= fit.FitNumPoints; ++i) {
      Array1<double> dyda(fit.FitMA);
      PARTIALS(fit, fit.FitA, dyda, fit.FitMA, i);
      EXPECT_EQ(fit.CurrentProc, FindModel(index)->funcsName);
      const double value = ValueMoved(fit, 1, i, 0.0);
      for (int j = 1; j <= fit.FitMA; ++j) {
        const double size = std::fabs(fit.FitA(j));
        const double wide = 0.02 * size;
        const double exact = Derivative(fit, j, i, wide);
        const double third =
            (Centred(fit, j, i, 2.0 * wide) - Centred(fit, j, i, wide)) * 2.0 / (wide * wide);
        const double r = std::fabs(ValueMoved(fit, j, i, 0.01 * fit.FitA(j)) / value);
        const double step = r < 0.03 && r > 0.0003 ? 0.01 * size : 0.001 * size;
        const double rounding = 1e-12 * std::fabs(value) / step;
        EXPECT_NEAR(dyda(j), exact, 1.5 * step * step / 6.0 * std::fabs(third) + rounding)
            << "model " << index << ", point " << i << ", parameter " << j;
      }
    }
  }
}

// The steps that a value sees: the first, then the one that its derivative is taken with.
TEST(StepRule, ChoosesByTheRatioToTheUnmovedValue) {
  struct Case {
    const char* what;
    double a0;
    double f1;  // after the first step, of a value that is 1
    double step;
  };
  for (const Case& c :
       {Case{"keeps a ratio in the window", 2.0, 0.02, 0.02},
        Case{"little effect: the least step", 2.0, 1.01, 0.002},
        Case{"below the window", 2.0, 2e-4, 0.2}, Case{"just outside the window", 2.0, 0.05, 0.004},
        Case{"flat", 2.0, 1e-6, 0.2}, Case{"flat, of a negative parameter", -2.0, 1e-6, -0.2},
        Case{"a negative parameter never has more", -2.0, 2e-4, -0.002},
        Case{"from 0 without limits", 0.0, 1e-6, 10.0}}) {
    double last = 0.0;
    StepRule().Derivative(c.a0, 1.0, [&](double step) {
      last = step;
      return step == StepRule().First(c.a0) ? c.f1 : 0.0;
    });
    EXPECT_DOUBLE_EQ(last, -c.step) << c.what;
  }
  EXPECT_TRUE(std::isnan(StepRule().Second(2.0, 0.02, NAN)));
  EXPECT_EQ(StepRule{.leastStepForNaN = true}.Second(2.0, 0.02, NAN), 0.002);
}
