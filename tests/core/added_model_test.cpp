// Faults caught here: a fact about a model that stands outside its entry in the catalogue. The
// model is one of the test's own, known to nothing but that entry.
#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "core/fit_run.h"
#include "core/page/shared_values.h"
#include "core/report/paper_report.h"
#include "fit/fit_state.h"
#include "fit/fit_statistics.h"
#include "fit/models.h"
#include "support/recording_host.h"
#include "support/session.h"

using namespace quorvane;

namespace {

// Two ideal species that do not exchange, one three times as heavy as the other and a fraction
// Alpha of the signal at the reference radius.
void PairTerms(const FitState& fit, const Model&, const Array1<double>& a, int d, SetTerms& out) {
  const double signal = std::exp(a(fit.NumFitSets + d)) * fit.SetEpsA(d);
  const double rate = a(fit.SharedBase() + 1) * fit.SetOmegaTerm(d);
  const double alpha = a(fit.SharedBase() + 2);
  out = {.baseline = a(d)};
  out.Add({.amplitude = signal * (1.0 - alpha), .rate = rate});
  out.Add({.amplitude = signal * alpha, .rate = 3.0 * rate});
}

constexpr std::array kPairParameters = {
    ModelParameter{.shared = &shared::kMW, .name = "MW", .caption = " Buoyant MW ", .tag = ""},
    ModelParameter{.shared = &shared::kAlpha, .name = "Alpha", .caption = " Alpha", .tag = "Alpha"},
};

constexpr Model kPair = {.index = 11,
                         .name = "Monomer and trimer apart",
                         .reaction = {"A, and a fraction Alpha as A_3"},
                         .funcsName = "FUNCS12",
                         .partialsName = "PARTIALS12",
                         .parameters = kPairParameters,
                         .terms = PairTerms};

constexpr double kWeight = 6000.0;
constexpr double kFraction = 0.3;

}  // namespace

TEST(AddedModel, IsFittedReportedAndSearchedByItsEntryAlone) {
  QuorvaneModule module;
  for (const int speed : {16000, 24000}) {
    AddScan(module, {.points = 200, .speed = speed}, [](double x, double omega) {
      const double rate = kWeight * omega;
      return 0.4 * ((1.0 - kFraction) * std::exp(rate * x) + kFraction * std::exp(3.0 * rate * x));
    });
  }
  RecordingHost host;
  ASSERT_TRUE(SetupFit(module.Setup, module.FitPage, module.Store, kPair, host));
  EXPECT_TRUE(HasValue(module.Setup, shared::kAlpha));
  EXPECT_FALSE(HasValue(module.Setup, shared::kLnK1));
  for (int press = 0; press < 5; ++press) {  // the end rule is absolute, the signals are small
    ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished);
  }
  const FitState& fit = module.LastFit->state;
  const FitStatistics statistics = CalcFitStatistics(fit);
  const int weight = fit.SharedBase() + 1;
  EXPECT_NEAR(module.FitPage.ModelMW, kWeight, 3.0 * StandardError(fit, statistics, weight));
  EXPECT_NEAR(module.FitPage.ModelAlpha, kFraction,
              3.0 * StandardError(fit, statistics, weight + 1));
  EXPECT_EQ(host.CountLinesWith("Model :: Monomer and trimer apart"), 5);
  EXPECT_EQ(host.CountLinesWith("Sigma at Max. Speed of 24000 RPM"), 5);
  EXPECT_EQ(host.CountLinesWith("Alpha = 0.3"), 5);
  const ConfidenceOutcome found =
      SearchIntervals(module, {.percent = 68.27, .chosen = {true, true}}, host);
  ASSERT_EQ(found.intervals.size(), 2U) << found.error;
  for (const ConfidenceInterval& interval : found.intervals) {
    EXPECT_TRUE(interval.lower < interval.value && interval.value < interval.upper);
    EXPECT_EQ(host.CountLinesWith(interval.name + " = "), 6);  // in five reports and here
  }
  std::string cells;  // of the report's tables
  for (const ReportSection& section : MakePaperReport(module).sections) {
    for (const ReportTable& table : section.tables) {
      for (const auto& row : table.rows) cells += row.front().text + "\n";
    }
  }
  EXPECT_NE(cells.find("\nMolecular weight\n"), std::string::npos);
  EXPECT_NE(cells.find("\nAlpha\n"), std::string::npos);
}
