// Faults caught here: an exponential that is off in the last digits or beyond its range, kernels
// that give other bits on other processors, sums by a formula that does not hold for the dataset, a
// solver by groups that mistakes who meets whom.
#include "fit/pass_kernel.h"

#include <cmath>
#include <functional>
#include <iostream>
#include <optional>
#include <span>
#include <string>

#include <gtest/gtest.h>

#include "fit/arrow_solve.h"
#include "fit/levmarq.h"
#include "fit/species_pass.h"
#include "fit/vector_exp.h"
#include "support/fit_problem.h"
#include "support/recording_host.h"

using namespace quorvane;

TEST(VectorExp, IsExpToTwoUnitsInTheLastPlace) {
  NormalNoise random(3, 1.0);
  for (int k = 0; k < 200000; ++k) {
    const double range = k % 2 == 0 ? 2.0 : kVectorExpRange;
    const double v = range * (2.0 * random.Uniform() - 1.0);
    const double exact = std::exp(v);
    const double unit = std::nextafter(exact, INFINITY) - exact;
    ASSERT_LE(std::fabs(VectorExp(v) - exact), 2.0 * unit) << v;
  }
  EXPECT_EQ(VectorExp(0.0), 1.0);
}

TEST(PassKernel, GivesTheSameBitsOnEveryProcessor) {
  SetPlan plan{.species = 3, .moves = 2, .columns = 2, .weighted = true, .baseline = 0.02};
  plan.parts[0] = {.constant = -1.5, .slope = 1.2, .signal = 1.0};
  plan.parts[1] = {.constant = -2.5, .slope = 0.7, .signal = 0.6};
  plan.parts[2] = {.factor = 3.0, .powerA = 1, .powerB = 2, .signal = -2.2};
  plan.move[0] = {.rate = 0.01, .cosh = true, .species = {true, true, true}};
  plan.move[1] = {.rate = -0.03, .species = {false, true, true}};
  plan.terms[0][0] = {.move = 0, .sinh = 3.0, .cosh = 0.1};
  plan.terms[0][2] = {.move = 1, .sinh = 2.0};
  plan.terms[1][1] = {.move = 1, .sinh = 1.0};
  plan.boundFactor = 0.1;
  Chunk chunk;
  NormalNoise random(4, 1.0);
  for (std::size_t j = 0; j < kChunk; ++j) {
    chunk.x[j] = 2.0 * random.Uniform() - 1.0;
    chunk.y[j] = random();
    chunk.weight[j] = random.Uniform();
  }
  FirstStepPlan step;
  for (std::size_t k = 0; k < plan.species; ++k) {
    step.parts[k] = {.factor = 1.1, .rate = k == 1 ? 0.0 : 0.2, .signal = plan.parts[k].signal};
  }
  const std::span<const PassKernel> kernels = RunnableKernels();
  std::optional<std::pair<double, double>> doubts;
  BasisSums first;
  std::string compared;
  for (const PassKernel& kernel : kernels) {
    SCOPED_TRACE(kernel.name);
    compared += std::string(" ") + kernel.name;
    BasisSums sums;
    const double doubt = kernel.evaluate(plan, chunk);
    kernel.addProducts(plan, chunk, sums);
    kernel.addWeighted(plan, chunk, sums);
    const std::pair found = {doubt, kernel.testStep(plan, step, chunk)};
    if (!doubts) {
      doubts = found;
      first = sums;
    }
    EXPECT_EQ(found, doubts);
    EXPECT_EQ(sums.product, first.product);
    EXPECT_EQ(sums.gradient, first.gradient);
    EXPECT_EQ(sums.squares, first.squares);
    EXPECT_EQ(sums.level, first.level);
    EXPECT_EQ(sums.sinh, first.sinh);
    EXPECT_EQ(sums.cosh, first.cosh);
  }
  std::cout << "Compared:" << compared << '\n';  // a machine without AVX-512 compares fewer
}

// What is refused takes the plain road, whose numbers the kernel would not give.
TEST(SumSpeciesSet, RefusesWhereItsFormulasDoNotHold) {
  static const Model longSteps = [] {
    Model model = *FindModel(7);
    model.steps.firstStep = 0.02;
    return model;
  }();
  struct Case {
    const char* what;
    std::function<void(FitState&, int)> change;  // `base`: the shared parameters stand behind it
    bool made;
  };
  const std::vector<Case> cases = {
      {"nothing special", [](FitState&, int) {}, true},
      {"a held ratio of constants",
       [](FitState& fit, int base) {
         fit.ConstrainKRatios = true;
         fit.FitIA(base + 4) = 0;
       },
       true},
      {"a fitted one", [](FitState& fit, int) { fit.ConstrainKRatios = true; }, false},
      {"a parameter of 0", [](FitState& fit, int base) { fit.FitA(base + 3) = 0.0; }, false},
      {"a large ln K", [](FitState& fit, int base) { fit.FitA(base + 3) = 590.0; }, false},
      {"a large weight", [](FitState& fit, int base) { fit.FitA(base + 1) *= 500.0; }, false},
      {"a load of 0", [](FitState& fit, int) { fit.SetALoad(1) = 0.0; }, false},
      {"long first steps", [](FitState& fit, int) { fit.FitModel = &longSteps; }, false}};
  for (const Case& c : cases) {
    FitState fit = MakeProblem({.modelIndex = 7, .sets = 1, .points = 30, .massConservation = true},
                               TypicalShared(7));
    FillSignal(fit, [](int) { return 0.0; });
    c.change(fit, fit.SharedBase());
    PreparePass(fit);
    fit.Workspace.touching.clear();
    for (int l = 1; l <= fit.FitMA; ++l) {
      if (fit.FitIA(l) != 0) fit.Workspace.touching.push_back(l);
    }
    SetSums sums;
    EXPECT_EQ(SumSpeciesSet(fit, PointsOf(fit, 1), 1, sums), c.made) << c.what;
  }
}

// Five datasets, of which 1, 3 and 4 share the reference concentrations of 3, and one held.
TEST(ArrowSolver, SolvesAndInvertsAsTheEliminationOfAll) {
  constexpr double kClose = 1e-9;  // condition of the matrix times rounding
  FitState fit = MakeProblem({.modelIndex = 7, .sets = 5, .points = 60, .massConservation = true},
                             TypicalShared(7));
  fit.RefLink = {2, 1, 2, 2, 4};
  for (const int held : {6, 9, 11, 14, 17}) fit.FitIA(held) = 0;
  FillSignal(fit, [](int) { return 0.0; });
  int n = 0;
  for (int l = 1; l <= fit.FitMA; ++l) n += fit.FitIA(l);
  Matrix1<double> alpha(fit.FitMA, fit.FitMA);
  Matrix1<double> beta(kMaxParameters, 1);
  double chisq = 0.0;
  PreparePass(fit);
  MRQCOF(fit, fit.FitA, alpha, beta, chisq);
  for (int j = 1; j <= n; ++j) beta(j, 1) = std::sin(j);

  const ArrowShape shape = ShapeOf(fit);
  EXPECT_EQ(shape.border.size(), 3U);  // without MWB
  EXPECT_EQ(shape.groups.size(), 3U);
  for (const double lambda : {0.0, 0.5}) {
    ArrowSolver solver(shape);
    ASSERT_TRUE(solver.Factor(alpha, lambda));
    Matrix1<double> solution = beta;
    Matrix1<double> inverse(n, n);
    solver.Solve(solution);
    solver.Invert(inverse);
    Matrix1<double> all = alpha;
    for (int j = 1; j <= n; ++j) all(j, j) *= 1.0 + lambda;
    Matrix1<double> expected = beta;
    RecordingHost host;
    GAUSSJ(all, n, expected, 1, fit.CurrentProc, host);
    for (int j = 1; j <= n; ++j) {
      EXPECT_NEAR(solution(j, 1), expected(j, 1), kClose * std::fabs(expected(j, 1))) << j;
      for (int k = 1; k <= n; ++k) {
        EXPECT_NEAR(inverse(j, k), all(j, k), kClose * std::sqrt(all(j, j) * all(k, k)));
      }
    }
  }
}

TEST(ArrowSolver, LeavesADoubtfulMatrixToTheElimination) {
  Matrix1<double> alpha(2, 2, 1.0);
  alpha(2, 2) = 1.0 + 1e-12;
  ArrowSolver solver({.groups = {{1}}, .border = {2}});
  EXPECT_FALSE(solver.Factor(alpha, 0.0));
  EXPECT_TRUE(solver.Factor(alpha, 0.01));
}
