// Faults caught here: a formula mistyped, points of mass conservation or of another dataset among
// the residuals, bounds off by one, a parameter judged by the rule of another.
#include "stats/fit_quality.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "support/fit_problem.h"

using namespace quorvane;

namespace {

constexpr double kDigits = 1e-12;

// A sequence from its signs, such as "++-0".
std::vector<double> Signs(std::string_view text) {
  std::vector<double> residuals;
  for (const char c : text) residuals.push_back(c == '+' ? 0.5 : c == '-' ? -2.0 : 0.0);
  return residuals;
}

TEST(CountRuns, AgreesWithExamplesByHand) {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  const struct {
    const char* signs;
    int positive, negative, runs;
    double expected, z;
  } cases[] = {// p = n = 3: 2 p n = 18, expected 4, variance 18 (18 - 6) / (36 * 5) = 1.2.
               {"+++---", 3, 3, 2, 4.0, -2.0 / std::sqrt(1.2)},
               {"+-+-+-", 3, 3, 6, 4.0, 2.0 / std::sqrt(1.2)},
               // p = 5, n = 4: expected 49/9, variance 40 * 31 / (81 * 8); zeros do not end a run.
               {"++0+--0+-+-", 5, 4, 6, 49.0 / 9.0, (6.0 - 49.0 / 9.0) / std::sqrt(1240.0 / 648.0)},
               // 30 men and 20 women in a queue: Siegel (1956), chapter 4, has z = 2.98.
               {"+++++++++++++----+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+", 30, 20, 35, 25.0,
                10.0 / std::sqrt(1200.0 * 1150.0 / (2500.0 * 49.0))},
               {"+-", 1, 1, 2, 2.0, kNone},
               {"++++", 4, 0, 1, 1.0, kNone},
               {"000", 0, 0, 0, 0.0, kNone},
               {"", 0, 0, 0, 0.0, kNone}};
  for (const auto& test : cases) {
    const RunsTest found = CountRuns(Signs(test.signs));
    EXPECT_EQ(found.positive, test.positive) << test.signs;
    EXPECT_EQ(found.negative, test.negative) << test.signs;
    EXPECT_EQ(found.runs, test.runs) << test.signs;
    EXPECT_NEAR(found.expected, test.expected, kDigits) << test.signs;
    EXPECT_EQ(found.z.has_value(), !std::isnan(test.z)) << test.signs;
    if (found.z) {
      EXPECT_NEAR(*found.z, test.z, kDigits) << test.signs;
    }
  }
}

TEST(DurbinWatson, AgreesWithExamplesByHand) {
  EXPECT_NEAR(*DurbinWatson(std::vector<double>{1, -1, 1, -1}), 12.0 / 4.0, kDigits);
  EXPECT_NEAR(*DurbinWatson(std::vector<double>{1, 2, 3}), 2.0 / 14.0, kDigits);
  EXPECT_NEAR(*DurbinWatson(std::vector<double>{3, 3}), 0.0, kDigits);
  EXPECT_FALSE(DurbinWatson(std::vector<double>{1}));
  EXPECT_FALSE(DurbinWatson(std::vector<double>{0, 0, 0}));
}

// FitYCalc 0, so that residuals are the signals; 6 points in each of two datasets.
FitState QuietFit(int model, bool massConservation) {
  FitState fit = MakeProblem(
      {.modelIndex = model, .sets = 2, .points = 6, .massConservation = massConservation},
      TypicalShared(model));
  fit.TwoComponentModel = fit.FitModel->secondComponent;
  fit.FitYCalc = Array1<double>(fit.FitNumPoints, 0.0);
  fit.FitCovar = Matrix1<double>(fit.FitMA, fit.FitMA);
  for (int i = 1; i <= fit.FitMA; ++i) fit.FitCovar(i, i) = 4.0;
  return fit;
}

TEST(CalcFitQuality, TakesEachDatasetByItselfAlongTheRadius) {
  FitState fit = QuietFit(6, true);
  fit.FitSetList = {4, 2};
  const double first[] = {0.3, 0.3, 0.3, -0.3, -0.3, -0.3};
  for (int k = 0; k < 6; ++k) {
    fit.FitY(fit.SetFirstPoint(1) + k) = first[k];
    fit.FitY(fit.SetFirstPoint(2) + k) = 0.1;
  }
  for (int i = 1; i <= fit.FitNumPoints; ++i) {
    if (fit.PointKind(i) != 0) fit.FitY(i) = 1000.0;
  }
  // The same scan from its base to its meniscus, its points in no order.
  std::swap(fit.FitR(fit.SetFirstPoint(1)), fit.FitR(fit.SetFirstPoint(1) + 4));
  std::swap(fit.FitY(fit.SetFirstPoint(1)), fit.FitY(fit.SetFirstPoint(1) + 4));
  const FitQuality quality = CalcFitQuality(fit, {}, {}, 0.95);
  ASSERT_EQ(quality.sets.size(), 2U);
  const SetQuality& set = quality.sets[0];
  EXPECT_EQ(set.dataset, 5);
  EXPECT_EQ(set.points, 6);
  EXPECT_NEAR(set.rms, 0.3, kDigits);
  EXPECT_NEAR(set.share, 0.9, kDigits);
  EXPECT_EQ(set.runs.runs, 2);
  EXPECT_NEAR(*set.durbinWatson, 0.36 / 0.54, kDigits);
  EXPECT_FALSE(set.OutOfRandomRuns());  // Z -1.83
  EXPECT_TRUE(set.OutOfRandomDurbin());
  EXPECT_TRUE(quality.sets[1].OutOfRandomRuns());  // all of one sign
  EXPECT_EQ(quality.atDefault, (std::vector<std::string>{"vbar", "vbar(B)", "density"}));
  const ConstantsSet toTheSame{.Vbar = true, .Density = true};
  EXPECT_EQ(CalcFitQuality(fit, {}, toTheSame, 0.95).atDefault,
            std::vector<std::string>{"vbar(B)"});
  const std::vector<std::string> remarks = QualityRemarks(quality);
  ASSERT_EQ(remarks.size(), 4U);
  EXPECT_TRUE(remarks[0].starts_with("Still at the default: vbar, vbar(B) and density."));
  EXPECT_EQ(remarks[1], "Dataset #5: Durbin-Watson 0.67, neighbouring residuals are alike.");
  EXPECT_TRUE(remarks[2].starts_with("Dataset #3: all residuals have one sign"));
  EXPECT_TRUE(remarks[3].starts_with("Dataset #3: Durbin-Watson 0.00"));
}

TEST(QualityRemarks, PointToADatasetThatOutweighsTheOthers) {
  FitQuality quality;
  quality.sets.resize(2);
  quality.sets[0].dataset = 1;
  quality.sets[0].points = 30;
  quality.sets[1].dataset = 2;
  quality.sets[1].points = 10;
  for (const double share : {0.50, 0.51}) {  // of the second; twice its points' is 0.5
    quality.sets[0].share = 1.0 - share;
    quality.sets[1].share = share;
    EXPECT_EQ(QualityRemarks(quality),
              share > 0.5 ? (std::vector<std::string>{"Dataset #2 makes 51 % of the sum of squares "
                                                      "with 25 % of the points."})
                          : std::vector<std::string>{});
  }
}

TEST(CalcFitQuality, NamesStrongPairsTheStrongestFirst) {
  FitState fit = QuietFit(2, false);
  const auto set = [&](int i, int j, double c) {
    fit.FitCovar(i, j) = fit.FitCovar(j, i) = 4.0 * c;
  };
  set(1, 2, 0.95);  // not above
  set(1, 3, 0.951);
  set(5, 7, -1.0);
  FitQuality quality = CalcFitQuality(fit, {}, {}, 0.95);
  ASSERT_EQ(quality.correlations.size(), 2U);
  EXPECT_EQ(quality.correlations[0].first + quality.correlations[0].second, "p5p7");
  EXPECT_EQ(quality.correlations[0].coefficient, -1.0);
  EXPECT_EQ(quality.correlations[1].first + quality.correlations[1].second, "p1p3");
  fit.FitCovar(5, 5) = -1.0;
  quality = CalcFitQuality(fit, {}, {}, 0.95);
  EXPECT_FALSE(quality.correlationsKnown);
  EXPECT_TRUE(QualityRemarks(quality)[0].starts_with("The covariance matrix gives no"));
}

TEST(CalcFitQuality, JudgesEachParameterByItsOwnRule) {
  const struct {
    int model;
    int place;  // among the shared parameters, from 1
    double value;
    double density;
    const char* remark;  // "" if the value can be
  } cases[] = {
      {4, 1, 0.0, 1.0, "p5 = 0.0000 is not positive."},
      {4, 1, -1.0, 1.0, "p5 = -1.0000 is not positive."},
      {4, 1, -7000.0, 1.4, ""},  // it floats
      {4, 1, 7000.0, 1.4, "p5 = 7.000E+3 is not negative, though vbar times density is above 1."},
      {6, 2, -1.0, 1.0, "p8 = -1.0000 is not positive."},
      {4, 2, 0.99, 1.0, "p6 = 0.9900 is below 1."},
      {4, 2, 1.0, 1.0, ""},
      {3, 4, 0.5, 1.0, "p8 = 0.5000 is below 1."},
      {4, 3, -30.0, 1.0, ""},  // a ln K may be anything
      {4, 4, 1.01, 1.0, "p8 = 1.0100 lies outside 0 to 1."},
      {4, 4, -0.01, 1.0, "p8 = -1.000E-2 lies outside 0 to 1."},
      {4, 4, 1.0, 1.0, ""}};
  for (const auto& test : cases) {
    FitState fit = QuietFit(test.model, false);
    FitPage page;
    page.Density = test.density;
    page.Vbar = page.VbarB = 0.74;
    if (test.density > 1.0) fit.FitA(fit.SharedBase() + 1) = -7000.0;
    fit.FitA(fit.SharedBase() + test.place) = test.value;
    const FitQuality quality = CalcFitQuality(fit, page, {true, true, true}, 0.95);
    const std::vector<std::string> remarks = QualityRemarks(quality);
    EXPECT_EQ(remarks, test.remark[0] == '\0' ? std::vector<std::string>{}
                                              : std::vector<std::string>{test.remark})
        << "model " << test.model << ", parameter " << test.place;
  }
}

}  // namespace
