// Faults caught here: deleted points or a blank's curve in an overlay, a curve given to the wrong
// dataset after others were unloaded, looks that change with the choice or that two datasets share.
#include "core/page/overlay_sets.h"

#include <set>

#include "core/fit_run.h"
#include "fit/models.h"
#include "support/recording_host.h"
#include "support/session.h"

using namespace quorvane;

namespace {

TEST(Overlay, LooksDiffer) {
  std::set<std::pair<SeriesStyle, ChartColor>> looks;
  for (std::size_t k = 0; k < 84; ++k) {
    const OverlayLook look = OverlayLookOf(k);
    EXPECT_NE(look.style, SeriesStyle::kLine);
    EXPECT_TRUE(looks.emplace(look.style, look.color).second) << k;
  }
}

TEST(Overlay, DrawsGoodPointsAndFindsTheCurveAfterUnloading) {
  QuorvaneModule module;
  for (const int speed : {14000, 17000, 20000}) {
    Dataset& dataset =
        AddScan(module, {.name = "made.dat", .points = 40, .speed = speed},
                [](double x, double w) { return 0.01 + 0.3 * std::exp(8000.0 * w * x); });
    dataset.FilePath.SetBytes("scan" + std::to_string(speed));
  }
  module.Store.Datasets[2].Good[5] = kFalse;
  RecordingHost host;
  module.Store.UseData[0] = false;
  ASSERT_TRUE(SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(0), host));
  ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished);
  RemoveDataset(module.Store, 1, host);

  const std::vector<OverlaySet> sets = OverlaySets(module, {0, 1}, true);
  EXPECT_EQ(sets[0].fitted, 0);  // had no part in the fit
  EXPECT_EQ(sets[1].fitted, 2);
  EXPECT_EQ(OverlaySets(module, {1}, true)[0].look, sets[1].look);
  EXPECT_EQ(OverlaySets(module, {1}, false)[0].fitted, 0);

  for (const bool psi : {false, true}) {
    const Chart chart = PlotOverlay(sets, &module.LastFit->state, psi);
    const ChartPanel& panel = chart.panels.at(0);
    EXPECT_TRUE(panel.legend);
    ASSERT_EQ(panel.series.size(), 3U);
    const ChartSeries& data = panel.series[1];
    const ChartSeries& curve = panel.series[2];
    const Dataset& dataset = module.Store.Datasets[1];
    EXPECT_EQ(data.x.size(), 39U);
    EXPECT_EQ(data.y[5], dataset.C[6]);
    const double r0 = dataset.RefRadius;
    EXPECT_DOUBLE_EQ(data.x[5], psi ? (dataset.R[6] * dataset.R[6] - r0 * r0) / 2.0 : dataset.R[6]);
    EXPECT_EQ(curve.x, data.x);
    EXPECT_EQ(curve.color, data.color);
    EXPECT_NE(data.color, panel.series[0].color);
    for (std::size_t k = 0; k < curve.y.size(); ++k) EXPECT_NEAR(curve.y[k], data.y[k], 0.01);
  }
}

}  // namespace
