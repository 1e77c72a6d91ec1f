// Faults caught here: species that do not add up to the curve or bear another's name, a local
// weight off the law it comes from, windows at the baseline that throw or invent a weight, normal
// scores of another formula.
#include <gtest/gtest.h>

#include "fit/local_weights.h"
#include "fit/normal_scores.h"
#include "fit/species_curves.h"
#include "support/fit_problem.h"

using namespace quorvane;

namespace {

FitState Exact(int modelIndex, std::vector<double> shared, int points = 120) {
  FitState fit = MakeProblem({.modelIndex = modelIndex, .sets = 2, .points = points}, shared);
  FillSignal(fit, [](int) { return 0.0; });
  fit.FitYCalc = fit.FitY;
  return fit;
}

TEST(SpeciesCurves, AddUpToTheCurveInEveryModel) {
  for (const int index : AllModels()) {
    const FitState fit = Exact(index, TypicalShared(index));
    for (int d = 1; d <= 2; ++d) {
      const std::vector<SpeciesCurve> curves = SpeciesCurves(fit, d);
      if (curves.empty()) continue;  // of a single species
      const int first = fit.SetFirstPoint(d);
      for (int k = 0; k < 120; ++k) {
        double sum = fit.FitA(d);
        for (const SpeciesCurve& curve : curves) sum += curve.signal.at(std::size_t(k));
        EXPECT_NEAR(sum, fit.FitYCalc(first + k), 1e-13 * std::fabs(sum)) << index;
      }
    }
  }
}

TEST(SpeciesCurves, AreNamedByWhatTheyHold) {
  const struct {
    int model;
    std::vector<double> shared;
    std::vector<std::string> names;
  } cases[] = {{0, {7500.0}, {}},
               {1, {7500.0, 8e-6}, {}},
               {2, {7500.0, 2.0, 1.0}, {"Monomer", "Dimer"}},
               {2, {7500.0, 1.0, 1.0}, {"Monomer", "Monomer"}},
               {2, {0.0, 2.0, 1.0}, {"Species 1", "Species 2"}},
               {3, {7500.0, 2.47, 1.0, 6.0, 3.0}, {"Monomer", "2.47-mer", "6-mer"}},
               {4, {7500.0, 4.0, 3.0, 0.15}, {"Monomer", "Tetramer", "Incompetent monomer"}},
               {5, {7500.0, 4.0, 3.0, 0.15}, {"Monomer", "Tetramer", "Incompetent tetramer"}},
               {8, TypicalShared(8), {"A", "B", "AB", "AB\xE2\x82\x82", "AB\xE2\x82\x83"}},
               {9, TypicalShared(9), {"Monomer", "Dimer", "Trimer", "Longer chains"}},
               {10, {7500.0, 5200.0, 2.5, 1.0, 0.6}, {"A", "B", "A(2.5)", "A(2.5)B"}}};
  for (const auto& one : cases) {
    std::vector<std::string> names;
    for (const SpeciesCurve& curve : SpeciesCurves(Exact(one.model, one.shared), 1)) {
      names.push_back(curve.name);
    }
    EXPECT_EQ(names, one.names) << one.model;
  }
}

TEST(LocalWeights, FollowTheLawOfTheModel) {
  // One ideal species has its weight everywhere.
  for (const double weight : LocalWeightAverages(Exact(0, {7500.0}), 2, 15).data.weight) {
    EXPECT_NEAR(weight, 7500.0, 1e-6);
  }
  // Of monomer and dimer the average by mass, (M c1 + 2 M 2 K c1^2) / (c1 + 2 K c1^2); a window of
  // a real signal is no point, so that it agrees to the curvature within one.
  constexpr double kM = 7500.0;
  const double k = std::exp(1.0);
  const FitState fit = Exact(2, {kM, 2.0, 1.0});
  const LocalWeights weights = LocalWeightAverages(fit, 2, 9);
  ASSERT_EQ(weights.data.weight.size(), 56U);  // every second of 112 places
  ASSERT_EQ(weights.model.weight.size(), 112U);
  EXPECT_EQ(weights.data.weight[3], weights.model.weight[6]);
  for (std::size_t w = 0; w < weights.data.weight.size(); ++w) {
    const double total = weights.data.signal[w];
    const double monomer = (std::sqrt(1.0 + 8.0 * k * total) - 1.0) / (4.0 * k);
    const double dimer = total - monomer;
    EXPECT_NEAR(weights.data.weight[w], kM * (monomer + 2.0 * dimer) / total, 2.0);
  }
}

TEST(LocalWeights, AreLeftOutWhereThereIsNoLogarithm) {
  FitState fit = Exact(0, {7500.0});
  fit.FitY(1) = fit.FitA(1);  // the first point lies in one window of the data
  const LocalWeights weights = LocalWeightAverages(fit, 1, 9);
  EXPECT_EQ(weights.leftOut, 1);
  EXPECT_EQ(weights.data.weight.size(), 55U);
  EXPECT_EQ(weights.model.weight.size(), 112U);
  EXPECT_TRUE(LocalWeightAverages(fit, 1, 121).data.weight.empty());
  for (const int points : {1, 60, 200, 9999}) {
    const int window = AutomaticWeightWindow(points);
    EXPECT_TRUE(window % 2 == 1 && window >= 9 && window <= 51) << window;
  }
}

TEST(NormalScores, AreThoseOfBlom) {
  const std::vector<double> scores = NormalScores(5);  // with SciPy's quantiles
  const double expected[] = {-1.1797611176118612, -0.49720057068155404, 0.0, 0.49720057068155404,
                             1.1797611176118612};
  for (std::size_t k = 0; k < 5; ++k) EXPECT_NEAR(scores.at(k), expected[k], 1e-14);
  EXPECT_TRUE(NormalScores(0).empty());
}

}  // namespace
