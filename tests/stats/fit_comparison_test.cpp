// Faults caught here: a criterion with another k or n, a test of fits of which none is the other
// with parameters held, a link or a held value overlooked, a lower sum of the restricted fit that
// passes for an F of 0, fits of other points compared.
#include "stats/fit_comparison.h"

#include <cmath>
#include <functional>
#include <numeric>

#include <gtest/gtest.h>

#include "fit/levmarq.h"
#include "stats/nesting.h"
#include "support/fit_problem.h"
#include "support/recording_host.h"

using namespace quorvane;

namespace {

constexpr double kDigits = 1e-10;  // relative

void ExpectClose(double found, double expected) {
  EXPECT_NEAR(found, expected, kDigits * std::fabs(expected));
}

// Two datasets, every parameter fitted but the stoichiometries.
FitSummary Fit(const char* model) {
  FitSummary fit;
  fit.model = FindModel(model);
  const auto add = [&fit](std::string name, double value, bool fitted) {
    fit.parameters.push_back({std::move(name), value, {}, fitted});
  };
  for (int d = 1; d <= 2; ++d) add("Offset" + std::to_string(d), 0.01 * d, true);
  for (int d = 1; d <= 2; ++d) add("RefCA" + std::to_string(d), -d, true);
  for (int d = 1; d <= 2 && fit.model->secondComponent; ++d) {
    add("RefCB" + std::to_string(d), -2.0 * d, true);
  }
  for (const ModelParameter& parameter : fit.model->parameters) {
    const bool n = parameter.shared->kind == ParameterKind::kStoichiometry;
    add(std::string(parameter.name), n ? 2.0 : 0.5, !n);
  }
  fit.links = {0, 1};
  fit.points = 60;
  fit.sum = 1.5;
  fit.atRest = true;
  return fit;
}

void Hold(FitSummary& fit, const SharedParameter& shared, double value) {
  auto& parameter = const_cast<SummaryParameter&>(*fit.Shared(shared));
  parameter.value = value;
  parameter.fitted = false;
}

// The summary with so many fitted parameters, points and such a sum.
FitSummary Counted(int fitted, int points, double sum) {
  FitSummary fit = Fit("Ideal");
  fit.parameters.assign(29, {"p", 1.0, {}, false});
  for (int k = 0; k < fitted; ++k) fit.parameters[static_cast<std::size_t>(k)].fitted = true;
  fit.links.resize(14);
  std::iota(fit.links.begin(), fit.links.end(), 0);
  fit.points = points;
  fit.sum = sum;
  fit.atRest = true;
  return fit;
}

FitPair PairOf(const FitSummary& a, const FitSummary& b) {
  const NamedFit fits[] = {{"one", &a}, {"two", &b}};
  return CompareFits(fits).pairs.at(0);
}

// The numbers come from NumPy 1.24 by the formulas in the header.
TEST(FitSummary, HasTheCriteriaOfNumPy) {
  const struct {
    int points, fitted;
    double sum, aicc, bic;
  } cases[] = {{1809, 20, 0.0272664934648254, -20042.133658628187, -19927.139607146131},
               {60, 7, 1.5, -202.50923783507147, -188.57801074905936},
               {9, 6, 0.25, 93.748329553895019, -16.871098404751454}};
  for (const auto& test : cases) {
    const FitSummary fit = Counted(test.fitted, test.points, test.sum);
    ExpectClose(*fit.AICc(), test.aicc);
    ExpectClose(*fit.BIC(), test.bic);
    ExpectClose(*fit.Rms(), std::sqrt(test.sum / (test.points - test.fitted)));
  }
  EXPECT_FALSE(Counted(6, 8, 0.25).AICc());  // n - k - 1 = 0
  EXPECT_FALSE(Counted(6, 9, 0.0).BIC());
  EXPECT_FALSE(Counted(8, 8, 0.1).Rms());
}

// Against scipy.stats.f.sf of SciPy 1.10.1.
TEST(CompareFits, HasTheTestOfSciPy) {
  const struct {
    int points, fewer, more;
    double restricted, full, f, probability;
  } cases[] = {
      {1809, 20, 21, 0.02726649346482546, 0.02723818, 1.8585850856378359, 0.17295982609475849},
      {60, 6, 9, 1.75, 1.5, 2.833333333333333, 0.04732870771907903},
      {60, 6, 7, 1.5, 1.5, 0.0, 1.0},
      {12, 2, 10, 5.0, 0.001, 1249.75, 0.00079976003199839997},
      {1809, 19, 20, 0.112042175, 0.045022115, 2663.1109475865355, 0.0}};
  for (const auto& test : cases) {
    const FitSummary restricted = Counted(test.fewer, test.points, test.restricted);
    const FitSummary full = Counted(test.more, test.points, test.full);
    const FitPair pair = PairOf(full, restricted);
    ASSERT_TRUE(pair.test) << pair.sentence;
    EXPECT_EQ(pair.restricted, 1U);
    EXPECT_EQ(pair.test->numerator, test.more - test.fewer);
    EXPECT_EQ(pair.test->denominator, test.points - test.more);
    ExpectClose(pair.test->f, test.f);
    ExpectClose(pair.test->probability, test.probability);
    EXPECT_EQ(pair.sentence.find("does not hold") != std::string::npos, test.probability < 0.05);
  }
}

TEST(CompareFits, WeighsByAICc) {
  const FitSummary low = Counted(6, 60, 1.5);
  const FitSummary high = Counted(7, 60, 1.5);
  FitSummary none = Counted(7, 60, 0.0);
  const NamedFit fits[] = {{"low", &low}, {"high", &high}, {"none", &none}};
  const FitComparison found = CompareFits(fits);
  const double difference = *high.AICc() - *low.AICc();
  ExpectClose(*found.ranks[1].difference, difference);
  ExpectClose(*found.ranks[0].weight, 1.0 / (1.0 + std::exp(-difference / 2.0)));
  EXPECT_FALSE(found.ranks[2].weight);
  EXPECT_TRUE(found.remarks[0].starts_with("low has the lowest AICc"));
  EXPECT_EQ(found.pairs.size(), 3U);
}

TEST(NestingOf, FollowsModelsHeldValuesAndLinks) {
  using Change = std::function<void(FitSummary & restricted, FitSummary & full)>;
  const struct {
    const char* restricted;
    const char* full;
    Change change;
    std::vector<std::string> restrictions;  // none: not nested
  } cases[] = {{"Ideal", "Nonideal", [](auto&, auto&) {}, {"VirialC = 0"}},
               {"Monomer-Nmer", "Monomer-Nmer & Inc.Nmer", [](auto&, auto&) {}, {"Alpha = 0"}},
               {"Monomer-Nmer",
                "Inc.Monomer & Monomer-Nmer",
                [](auto& r, auto&) { Hold(r, shared::kMW, 7500.0); },
                {"MW = 7500", "Alpha = 0"}},
               {"Monomer-Nmer",
                "Inc.Monomer & Monomer-Nmer",
                [](auto&, auto& f) { Hold(f, shared::kAlpha, 0.1); },
                {}},
               {"Monomer-Nmer",
                "Inc.Monomer & Monomer-Nmer",
                [](auto& r, auto&) { Hold(r, shared::kN1, 3.0); },
                {}},
               {"Nonideal", "Ideal", [](auto&, auto&) {}, {}},
               {"Ideal", "Monomer-Nmer", [](auto&, auto&) {}, {}},
               {"Ideal",
                "Ideal",
                [](auto& r, auto&) { r.parameters[1].fitted = false; },
                {"Offset2 = 0.02"}},
               {"Ideal",
                "Ideal",
                [](auto& r, auto& f) { r.parameters[0].fitted = f.parameters[1].fitted = false; },
                {}},
               {"Ideal",
                "Ideal",
                [](auto& r, auto&) {
                  r.parameters[0].fitted = false;
                  r.links = {0, 0};
                },
                {}},
               {"A+B<>AB",
                "A+B<>AB",
                [](auto& r, auto&) {
                  r.links = {0, 0};
                  r.parameters[3].fitted = r.parameters[5].fitted = false;
                },
                {"RefCA2 linked to 1", "RefCB2 linked to 1"}},
               {"A+B<>AB",
                "A+B<>AB",
                [](auto& r, auto& f) {
                  r.links = {0, 0};
                  f.parameters[3].fitted = false;
                },
                {}},
               {"A+B<>AB",
                "A+B<>AB",
                [](auto& r, auto& f) {
                  Hold(r, shared::kMW, 1.0);
                  f.links = {0, 0};
                },
                {}},
               {"A+B<>AB",
                "A+B<>AB",
                [](auto& r, auto& f) {
                  Hold(r, shared::kMW, 1.0);
                  r.links = {1, 1};  // the same, told from the other end
                  f.links = {0, 0};
                  r.parameters[2].fitted = r.parameters[4].fitted = false;
                  f.parameters[3].fitted = f.parameters[5].fitted = false;
                },
                {"RefCA1 linked to 2", "RefCB1 linked to 2", "MWA = 1"}},
               {"A+B<>AB+B<>AB2",
                "A+B<>AB+B<>AB2",
                [](auto& r, auto&) {
                  r.constrainedRatios = true;
                  Hold(r, shared::kLnK2, 0.25);
                },
                {"K2/K1 = 0.2500"}},
               {"A+B<>AB+B<>AB2",
                "A+B<>AB+B<>AB2",
                [](auto& r, auto& f) {
                  f.constrainedRatios = true;
                  Hold(f, shared::kLnK2, 0.25);
                  Hold(r, shared::kLnK2, 0.25);
                  Hold(r, shared::kLnK1, 0.0);
                },
                {}},
               {"Ideal",
                "Nonideal",
                [](auto& r, auto& f) {
                  r.conditions = f.conditions = FitConditions{293.15, 0.73, 1.0, 0.25, {{}, {}}};
                  r.conditions->sets[0].meniscus = 6.0;
                },
                {"VirialC = 0"}},
               {"Ideal",
                "Nonideal",
                [](auto& r, auto& f) {
                  r.conditions = f.conditions = FitConditions{293.15, 0.73, 1.0, 0.25, {{}, {}}};
                  r.conditions->vbar = 0.72;
                },
                {}}};
  for (const auto& test : cases) {
    FitSummary restricted = Fit(test.restricted);
    FitSummary full = Fit(test.full);
    test.change(restricted, full);
    const Nesting found = NestingOf(restricted, full);
    const std::string pair = std::string(test.restricted) + " in " + test.full;
    EXPECT_EQ(found.nested, !test.restrictions.empty()) << pair << ": " << found.reason;
    EXPECT_EQ(found.restrictions, test.restrictions) << pair;
    EXPECT_EQ(found.reason.empty(), found.nested) << pair;
  }
}

TEST(CompareFits, SaysWhyThereIsNoTest) {
  const FitSummary ideal = Fit("Ideal");
  FitSummary better = Fit("Nonideal");
  better.sum = 1.6;
  EXPECT_NE(PairOf(better, ideal).sentence.find("come to rest in another minimum"),
            std::string::npos);
  better.atRest = false;
  EXPECT_NE(PairOf(ideal, better).sentence.find("one has the lower sum of squares"),
            std::string::npos);
  better.sum = 1.4;
  const FitPair unrested = PairOf(ideal, better);
  EXPECT_TRUE(unrested.test);
  EXPECT_NE(unrested.sentence.find("two is not at rest"), std::string::npos);
  EXPECT_EQ(PairOf(Fit("Isodesmic Self-association"), ideal).kinship, Kinship::kLimit);
  EXPECT_EQ(PairOf(Fit("Monomer-Nmer"), better).kinship, Kinship::kUnrelated);
  EXPECT_EQ(PairOf(ideal, ideal).kinship, Kinship::kAlike);
  // However many parameters of its own the simpler model has.
  FitSummary poor = Fit("Monomer-Nmer");
  for (SummaryParameter& parameter : poor.parameters) parameter.fitted = false;
  EXPECT_EQ(PairOf(ideal, poor).kinship, Kinship::kLimit);
}

TEST(RefusalOfComparison, TellsFitsOfOtherPoints) {
  using Change = void (*)(FitSummary&);
  const struct {
    Change change;
    const char* part;
  } cases[] = {
      {[](FitSummary&) {}, ""},
      {[](FitSummary& fit) { fit.points = 59; }, "60 points and 59"},
      {[](FitSummary& fit) { fit.digest = "f"; }, "other radii or signals"},
      {[](FitSummary& fit) { fit.massConservation = true; }, "points of mass conservation"}};
  for (const auto& test : cases) {
    const FitSummary first = Fit("A+B<>AB");
    FitSummary second = first;
    test.change(second);
    const NamedFit fits[] = {{"one", &first}, {"two", &second}};
    const std::string found = RefusalOfComparison(fits);
    EXPECT_EQ(found.empty(), *test.part == '\0') << found;
    EXPECT_NE(found.find(test.part), std::string::npos) << found;
  }
}

TEST(Summarise, TakesTheFitAsItEnded) {
  FitState fit =
      MakeProblem({.modelIndex = 6, .sets = 2, .massConservation = true}, TypicalShared(6));
  NormalNoise noise(3, 0.002);
  FillSignal(fit, [&](int) { return noise(); });
  fit.FitIA(2) = 0;
  RecordingHost host;
  int iterations = 0;
  FitData(fit, host, iterations);
  CalcModelValues(fit);
  RestVerdict verdict;
  verdict.atRest = false;
  const FitSummary found = Summarise(fit, verdict);
  EXPECT_EQ(found.points, 44);
  EXPECT_EQ(found.Fitted(), fit.FitMA - 1);
  EXPECT_EQ(found.sum, AcceptedSum(fit));
  EXPECT_EQ(found.atRest, false);
  EXPECT_EQ(found.Shared(shared::kLnK1)->value, fit.FitA(fit.FitMA));
  EXPECT_GT(found.Shared(shared::kLnK1)->error, 0.0);
  EXPECT_EQ(found.conditions->sets[1].loadB, 0.3);
  EXPECT_EQ(found.massConservation, true);
  // One bit of one signal of the second dataset.
  FitState other = fit;
  other.FitY(30) = std::nextafter(other.FitY(30), 1.0);
  EXPECT_NE(Summarise(other, std::nullopt).digest, found.digest);
}

// By hand: p = n = 3 has expected 4 and variance 1.2; a dataset of one sign adds nothing.
TEST(PooledRunsZ, AddsUpTheDatasets) {
  const auto curve = [](std::vector<double> y) {
    FittedCurve made;
    for (std::size_t k = 0; k < y.size(); ++k) made.r.push_back(static_cast<double>(k));
    made.calculated.assign(y.size(), 0.0);
    made.y = std::move(y);
    return made;
  };
  std::vector<FittedCurve> curves = {curve({1, 1, 1, -1, -1, -1}), curve({1, -1, 1, 1, -1, -1}),
                                     curve({1, 1, 1})};
  EXPECT_NEAR(*PooledRunsZ(curves), (2.0 + 4.0 - 8.0) / std::sqrt(2.4), 1e-12);
  std::swap(curves[0].r[0], curves[0].r[5]);  // along the radius: -1 1 1 -1 -1 1
  EXPECT_NEAR(*PooledRunsZ(curves), 0.0, 1e-12);
  EXPECT_FALSE(PooledRunsZ(std::span(curves).last(1)));
  // The digest of radius and signal 1 and 2: SHA-256 of 000000000000f03f0000000000000040.
  EXPECT_EQ(PointsDigest(std::vector<FittedCurve>{{{1.0}, {2.0}, {9.0}}}),
            "dc91ce9a50ddc828740aa26743716897fdb2bb64f1db662fe263a59be56145ae");
}

}  // namespace
