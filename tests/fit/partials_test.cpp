// Faults caught here: a routine of derivatives that is another model's. The rule of a derivative
// stands written out in literal_pass_test.cpp.
#include "fit/partials.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "fit/fit_state.h"
#include "support/fit_problem.h"

namespace {

using PartialsRoutine = void (*)(FitState&, const Array1<double>&, Array1<double>&, int, int);

// In the order of AllModels.
const std::vector<PartialsRoutine> kRoutines = {PARTIALS0, PARTIALS1,  PARTIALS2,  PARTIALS3,
                                                PARTIALS5, PARTIALS6,  PARTIALS7,  PARTIALS8,
                                                PARTIALS9, PARTIALS10, PARTIALS11, PARTIALS4};

}  // namespace

TEST(PARTIALS, AreTheDerivativesOfTheirOwnModel) {
  for (std::size_t k = 0; k < kRoutines.size(); ++k) {
    const int index = AllModels()[k];
    const Model& model = *FindModel(index);
    FitState fit =
        MakeProblem({.modelIndex = index, .sets = 3, .points = 8, .massConservation = true},
                    TypicalShared(index));
    FillSignal(fit, [](int i) { return 0.01 * std::cos(3.0 * i); });
    for (int i = 1; i <= fit.FitNumPoints; ++i) {
      Array1<double> dyda(fit.FitMA);
      kRoutines[k](fit, fit.FitA, dyda, fit.FitMA, i);
      EXPECT_EQ(fit.CurrentProc, model.funcsName);
      double value = 0.0;
      model.funcs(fit, i, fit.FitA, value);
      Array1<double> work = fit.FitA;
      for (int j = 1; j <= fit.FitMA; ++j) {
        EXPECT_EQ(dyda(j), DerivativeAt(fit, model, j, i, value, work)) << "model " << index;
      }
    }
  }
}
