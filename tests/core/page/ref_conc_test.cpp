// Faults caught here: a bar with another scale or one that moves what it starts from, a last fit
// that is overwritten, plot options where they do not belong, a failure in other words or none at
// all.
#include "core/page/ref_conc.h"

#include <cmath>

#include "base/arithmetic.h"
#include "core/fit_run.h"
#include "fit/models.h"
#include "support/recording_host.h"
#include "support/session.h"

using namespace quorvane;

namespace {

constexpr double kBuoyant = 8000.0;

double Ideal(double x, double omega) {
  return 0.01 + 0.3 * std::exp(kBuoyant * omega * x);
}

class RefConc : public testing::Test {
 protected:
  void SetUpModel(int model) {
    for (const char* name : {"unused.dat", "slow.dat", "fast.dat"}) {
      AddScan(module, {.name = name, .speed = 14000}, Ideal).RefConc = 0.5;
    }
    module.Store.UseData[0] = false;
    module.FitPage.ModelMW = kBuoyant;
    module.Preferences.Plots = {.SubtractOffsets = true, .PlotUsingPSI = true};
    ASSERT_TRUE(SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(model), host));
  }

  QuorvaneModule module;
  RecordingHost host;
};

TEST_F(RefConc, BarsAreLogarithmic) {
  EXPECT_EQ(RefConcAtBar(0.123456789, 0), 0.123456789);
  EXPECT_NEAR(RefConcAtBar(0.3, 1000), 3.0, 1e-9);
  EXPECT_NEAR(RefConcAtBar(0.3, kBarEnd) / 3e9, 1.0, 1e-9);
  EXPECT_NEAR(RefConcAtBar(0.3, -kBarEnd) / 3e-11, 1.0, 1e-9);
  EXPECT_THROW(RefConcAtBar(1e-320, -kBarEnd), ArithmeticFault);
}

TEST_F(RefConc, MovesOneValueAndGivesBothBack) {
  SetUpModel(6);
  Dataset& dataset = module.Store.Datasets[2];
  dataset.RefConc2 = 0.25;
  RefConcAdjustment adjustment(module, 1);
  adjustment.Move(Component::kA, 1000);
  EXPECT_NEAR(dataset.RefConc, 5.0, 1e-8);
  EXPECT_EQ(dataset.RefConc2, 0.25);
  adjustment.Move(Component::kB, -1000);
  adjustment.Move(Component::kA, 0);
  EXPECT_EQ(dataset.RefConc, 0.5);
  EXPECT_NEAR(dataset.RefConc2, 0.025, 1e-10);
  adjustment.Restore();
  EXPECT_EQ(dataset.RefConc2, 0.25);
}

TEST_F(RefConc, EvaluatesWithoutTouchingTheLastFit) {
  SetUpModel(0);
  ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished);
  const auto last = module.LastFit;
  Dataset& dataset = module.Store.Datasets[2];
  dataset.RefConc = 0.3;
  dataset.Offset = 0.02;
  module.FitPage.ModelMW = kBuoyant;
  dataset.Good[0] = kFalse;
  const std::vector<Chart> preview = PreviewFit(module, host).charts;
  ASSERT_EQ(preview.size(), 2u);
  EXPECT_EQ(preview[0].title, "(2) slow.dat : Data Plot");
  EXPECT_EQ(preview[1].bottomTitle, "Radius (cm)");
  const ChartSeries& data = preview[1].panels[0].series[0];
  const ChartSeries& model = preview[1].panels[0].series[1];
  ASSERT_EQ(data.x.size(), 59u);
  EXPECT_EQ(data.x[0], dataset.R[1]);
  EXPECT_EQ(data.y[0], dataset.C[1]);
  for (std::size_t k = 0; k < model.x.size(); ++k) {
    const double x = (model.x[k] * model.x[k] - dataset.RefRadius * dataset.RefRadius) / 2.0;
    const double omega = 1.319007e-10 * 14000.0 * 14000.0 / 293.15;
    EXPECT_NEAR(model.y[k], 0.02 + 0.3 * std::exp(kBuoyant * omega * x), 1e-12);
  }
  EXPECT_EQ(RefConcAdjustment(module, 1).Begin(host).charts[0], preview[1]);
  EXPECT_EQ(module.LastFit, last);
}

TEST_F(RefConc, AnExtremeBarOverflowsWithItsMessage) {
  SetUpModel(2);
  module.FitPage.ModelLnK1 = 680.0;
  RefConcAdjustment adjustment(module, 1);
  EXPECT_FALSE(adjustment.Begin(host).charts.empty());
  const ModelCurves curves = adjustment.Move(Component::kA, kBarEnd);
  ASSERT_TRUE(curves.fault && curves.charts.empty());
  host.lines.clear();
  TellFault(*curves.fault, host);
  EXPECT_EQ(host.messages[0].title, "Fitting Error in SetRefC");
  EXPECT_EQ(host.messages[0].text, "Error while Fitting Data!  Error in FUNCS2.  Overflow");
  EXPECT_EQ(host.lines, (std::vector<std::string>{std::string(40, '=')}));
  EXPECT_NEAR(module.Store.Datasets[2].RefConc / 5e9, 1.0, 1e-9);
  EXPECT_EQ(PreviewFit(module, host).fault->title, "Fitting Error in cmdPreviewFit");
}

TEST_F(RefConc, AsksForTheEndsOfTheCellOnce) {
  SetUpModel(4);
  RefConcAdjustment adjustment(module, 1);
  host.answers = {true, false};
  EXPECT_TRUE(adjustment.Begin(host).charts.empty());
  EXPECT_FALSE(adjustment.Begin(host).charts.empty());
  EXPECT_FALSE(adjustment.Move(Component::kA, 10).charts.empty());
  module.Store.Datasets[2].Rmen = 7.0;
  EXPECT_EQ(adjustment.Move(Component::kA, 14).fault->title, "Parameter Value Error");
}

}  // namespace
