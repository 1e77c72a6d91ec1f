// Faults caught here: deleted points or a blank's curve in a figure, a curve given to the wrong
// dataset after others were unloaded, looks that two datasets share, residuals on several scales,
// words that say what nobody measured, logarithms of what has none, a text that cannot be changed.
#include "core/page/figure_sets.h"

#include <numeric>
#include <set>

#include "core/fit_run.h"
#include "fit/figure_words.h"
#include "fit/fit_plots.h"
#include "fit/models.h"
#include "support/recording_host.h"
#include "support/session.h"

using namespace quorvane;

namespace {

constexpr const char* kAbsorbance = "R 3 20.0 14000 0014400 1.0000E11 280 20";

// A fit of two channels at two speeds, of 40 points each; one of the last dataset is deleted.
class FigureTest : public testing::Test {
 protected:
  FigureTest() {
    const struct {
      const char* name;
      int speed;
      double first;
    } scans[] = {{"1_3B14280.dat", 14000, 6.4},
                 {"1_3A14280.dat", 14000, 5.9},
                 {"2_3B20280.dat", 20000, 6.4},
                 {"2_3A20280.dat", 20000, 5.9}};
    for (const auto& scan : scans) {
      Dataset& dataset = AddScan(module,
                                 {.name = scan.name,
                                  .points = 40,
                                  .speed = scan.speed,
                                  .first = scan.first,
                                  .last = scan.first + 0.2},
                                 [](double x, double w) { return 0.3 * std::exp(8000.0 * w * x); });
      dataset.FilePath.SetBytes(scan.name);
      dataset.Comment2.SetBytes(kAbsorbance);
      dataset.ExtCoeff = 40000.0;
    }
    module.Store.Datasets[3].Good[5] = kFalse;
    module.FitPage.ModelMW = 12000.0;
  }
  void Fit() {
    ASSERT_TRUE(SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(0), host));
    ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished);
  }
  Figure Make(const FigureChoices& choices = {}) {
    return MakeFigure(FigureSets(*module.LastFit), &module.LastFit->state, choices);
  }

  QuorvaneModule module;
  RecordingHost host;
};

TEST_F(FigureTest, ShowsAFitInPanelsWithResidualsOnOneScale) {
  Fit();
  const Figure figure = Make();
  EXPECT_EQ(figure.leftTitle, "Absorbance at 280 nm");
  EXPECT_EQ(figure.bottomTitle, "Radius (cm)");
  ASSERT_EQ(figure.cells.size(), 2U);
  EXPECT_EQ(figure.cells[0].title, "Channel A");
  EXPECT_EQ(figure.cells[1].title, "Channel B");
  ASSERT_EQ(figure.keys.size(), 4U);
  EXPECT_TRUE(figure.keys[0].text.starts_with("14,000 rpm, channel B, 7.")) << figure.keys[0].text;
  const FigureSeries& slow = figure.cells[0].series.at(0);
  const FigureSeries& fast = figure.cells[0].series.at(1);
  EXPECT_EQ(slow.data.x.size(), 40U);
  EXPECT_EQ(fast.data.x.size(), 39U);
  EXPECT_EQ(fast.curve.x, fast.data.x);
  EXPECT_NE(slow.look.color, fast.look.color);
  EXPECT_NE(slow.look.stroke, fast.look.stroke);
  EXPECT_EQ(slow.look.symbol, fast.look.symbol);
  EXPECT_NE(slow.look.symbol, figure.cells[1].series.at(0).look.symbol);
  double reach = 0.0;
  for (const FigureCell& cell : figure.cells) {
    for (const FigureSeries& series : cell.series) {
      for (std::size_t k = 0; k < series.residuals.y.size(); ++k) {
        EXPECT_DOUBLE_EQ(series.residuals.y[k], series.data.y[k] - series.curve.y[k]);
        reach = std::max(reach, std::abs(series.residuals.y[k]));
      }
    }
  }
  EXPECT_EQ(figure.residualReach, reach);
}

TEST_F(FigureTest, ChoicesAndTextsAreTheUsers) {
  Fit();
  Dataset& low = module.Store.Datasets[0];
  FigureChoices choices{.panels = FigurePanels::kBySpeed,
                        .abscissa = FigureAbscissa::kPsi,
                        .signal = FigureSignal::kLogarithm,
                        .residuals = false,
                        .leftOut = true,
                        .texts = {{"14,000 rpm", "slow"}, {"Radius (cm)", "r"}}};
  Figure figure = Make(choices);
  EXPECT_FALSE(figure.residuals);
  EXPECT_EQ(figure.cells.at(0).title, "slow");
  EXPECT_EQ(figure.cells.at(1).series.at(1).leftOut.x.size(), 1U);
  const double baseline = module.LastFit->state.FitA(1);
  const FigurePoints& data = figure.cells[0].series.at(0).data;
  EXPECT_DOUBLE_EQ(data.y.at(7), std::log(low.C[7] - baseline));
  EXPECT_DOUBLE_EQ(data.x[7], (low.R[7] * low.R[7] - low.RefRadius * low.RefRadius) / 2.0);
  EXPECT_TRUE(figure.remarks.empty());
  low.Offset = low.C[20];  // without the fit the logarithm goes by the dataset's own baseline
  figure = MakeFigure(FigureSets(module, {0}, false), nullptr, choices);
  ASSERT_EQ(figure.remarks.size(), 1U);
  EXPECT_EQ(figure.cells.at(0).series.at(0).data.x.size(), 19U);

  choices = {.panels = FigurePanels::kOne, .texts = {{"Radius (cm)", "r"}}};
  const std::string first = Make(choices).keys.at(0).text;
  choices.texts[first] = "";
  figure = Make(choices);
  EXPECT_EQ(figure.bottomTitle, "r");
  EXPECT_EQ(figure.keys.size(), 3U);
  EXPECT_EQ(std::count(figure.texts.begin(), figure.texts.end(), first), 1);
}

TEST_F(FigureTest, ShowsSomeMarksOfSomeDatasets) {
  Fit();
  const Figure whole = Make();
  const Figure figure =
      MakeFigure(FigureSets(*module.LastFit, {FigureScan(module.Store.Datasets[1])}),
                 &module.LastFit->state, {.every = 3, .width = 85.0});
  EXPECT_EQ(figure.cells.at(0).series.size(), 1U);
  const FigureSeries& series = figure.cells[0].series[0];
  EXPECT_EQ(series.number, 3U);
  EXPECT_EQ(series.data.x.size(), 13U);  // of 39
  EXPECT_EQ(series.residuals.x, series.data.x);
  EXPECT_EQ(series.data.x[1], whole.cells[0].series[1].data.x[3]);
  EXPECT_EQ(series.curve, whole.cells[0].series[1].curve);
  EXPECT_EQ(figure.remarks.at(0), "One point in 3 is shown; the fit used all points.");
  EXPECT_EQ(figure.width, 85.0);
  std::set<FigureScan> all;
  for (const Dataset& dataset : module.Store.Datasets) all.emplace(dataset);
  EXPECT_EQ(FigureSets(*module.LastFit, all).size(), 4U);  // rather than none
}

TEST_F(FigureTest, ManyDatasetsHaveALegendOfWhatThePanelsDoNotSay) {
  for (int copy = 1; copy <= 6; ++copy) {
    for (int set = 0; set < 4; ++set) {
      module.Store.Datasets.push_back(module.Store.Datasets[static_cast<std::size_t>(set)]);
      module.Store.Datasets.back().Speed += 1000 * copy;
    }
  }
  std::vector<int> chosen(module.Store.Datasets.size());
  std::iota(chosen.begin(), chosen.end(), 0);
  const struct {
    FigurePanels panels;
    std::size_t entries;
  } cases[] = {
      {FigurePanels::kByChannel, 13}, {FigurePanels::kBySpeed, 2}, {FigurePanels::kOne, 15}};
  for (const auto& one : cases) {
    const Figure figure =
        MakeFigure(FigureSets(module, chosen, false), nullptr, {.panels = one.panels});
    EXPECT_EQ(figure.keys.size(), one.entries);
  }
  const Figure none =
      MakeFigure(FigureSets(module, chosen, false), nullptr, {.looks = FigureLooks::kByDataset});
  EXPECT_TRUE(none.keys.empty());
  EXPECT_EQ(none.remarks.at(0),
            "There is no legend, as it would have 28 entries; the most are 24.");
}

TEST_F(FigureTest, JudgesTheFitByWeightsAndResiduals) {
  Fit();
  const FitState& fit = module.LastFit->state;
  FigureChoices choices{.content = FigureContent::kLocalWeights, .window = 9};
  Figure figure = Make(choices);
  EXPECT_EQ(figure.leftTitle, "Local weight-average buoyant M (Da)");
  EXPECT_EQ(figure.bottomTitle, "Concentration as monomer (\xC2\xB5M)");
  EXPECT_FALSE(figure.residuals);
  ASSERT_EQ(figure.cells.size(), 2U);
  const FigureSeries& buoyant = figure.cells[0].series.at(0);
  EXPECT_EQ(buoyant.curve.x.size(), 32U);
  EXPECT_NEAR(buoyant.curve.y[7], fit.FitA(fit.SharedBase() + 1), 1e-6);
  choices.trueWeights = true;
  EXPECT_NEAR(Make(choices).cells[0].series.at(0).data.y[2], buoyant.data.y[2] / (1.0 - 0.73),
              1e-6);

  choices = {.content = FigureContent::kResiduals};
  figure = Make(choices);
  ASSERT_EQ(figure.cells.size(), 1U);  // all together, whatever was chosen
  ASSERT_EQ(figure.cells[0].series.size(), 4U);
  EXPECT_EQ(figure.cells[0].guides.at(0).y, (std::vector<double>{0.0, 0.0}));
  EXPECT_EQ(figure.cells[0].series[3].data.y[0],
            fit.FitY(fit.SetFirstPoint(4)) - fit.FitYCalc(fit.SetFirstPoint(4)));
  EXPECT_FALSE(figure.keys.at(0).line);

  choices.content = FigureContent::kQuantiles;
  figure = Make(choices);
  std::vector<std::pair<double, double>> points;
  for (const FigureSeries& series : figure.cells.at(0).series) {
    double squares = 0.0;
    for (std::size_t k = 0; k < series.data.x.size(); ++k) {
      points.emplace_back(series.data.x[k], series.data.y[k]);
      squares += series.data.y[k] * series.data.y[k];
    }
    EXPECT_NEAR(squares, double(series.data.x.size()), 1e-9);  // each over its own rms
  }
  std::sort(points.begin(), points.end());
  EXPECT_EQ(points.size(), 159U);
  for (std::size_t k = 1; k < points.size(); ++k) EXPECT_LE(points[k - 1].second, points[k].second);
  EXPECT_NEAR(points.front().first, -2.65848461, 1e-8);

  module.LastFit.reset();  // nothing to judge
  EXPECT_TRUE(MakeFigure(FigureSets(module, {0, 1}, true), nullptr, choices).keys.empty());
}

TEST_F(FigureTest, ShowsSpeciesInTheColourOfTheirDataset) {
  Fit();
  const FigureChoices choices{.residuals = false, .species = true};
  EXPECT_TRUE(Make(choices).cells.at(0).series.at(0).species.empty());  // there is one
  module.FitPage.ModelN1 = 2.0;
  ASSERT_TRUE(SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(2), host));
  ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished);
  const Figure figure = Make(choices);
  const std::vector<FigureSpecies>& species = figure.cells.at(0).series.at(0).species;
  ASSERT_EQ(species.size(), 2U);
  EXPECT_NE(species[0].stroke, species[1].stroke);
  EXPECT_EQ(species[0].curve.x, figure.cells[0].series[0].curve.x);
  EXPECT_TRUE(figure.keys.back().thin);
  Chart chart = PlotDataFit(module.LastFit->state, module.Store.Datasets, 0, {});
  AddSpeciesCurves(chart, module.LastFit->state, 0, {});
  const std::vector<ChartSeries>& series = chart.panels.at(0).series;
  ASSERT_EQ(series.size(), 4U);
  EXPECT_NEAR(series[1].y[7], series[2].y[7] + series[3].y[7], 1e-12);
  EXPECT_EQ(figure.keys.back().text, species[1].name);
  EXPECT_EQ(NumbersOf(figure).panels.at(0).series.at(3).name,
            figure.cells[0].series[0].name + ": " + species[1].name);
}

TEST_F(FigureTest, FindsTheFitAfterUnloadingAndShowsWhatWasFitted) {
  module.Store.UseData[0] = false;
  Fit();
  RemoveDataset(module.Store, 1, host);
  const std::vector<FigureSet> sets = FigureSets(module, {0, 1, 2}, true);
  EXPECT_EQ(sets[0].fitted, 0);  // had no part in the fit
  EXPECT_EQ(sets[1].fitted, 2);
  EXPECT_EQ(sets[2].fitted, 3);
  EXPECT_EQ(FigureSets(module, {1}, false)[0].fitted, 0);
  module.Store.Datasets[1].C[0] = 99.0;
  const Figure figure = MakeFigure(sets, &module.LastFit->state, {});
  EXPECT_TRUE(figure.cells.at(1).series.at(0).curve.x.empty());
  for (const FigureSeries& series : figure.cells[1].series) {
    for (const double y : series.data.y) EXPECT_LT(y, 2.0);
  }
}

TEST_F(FigureTest, WordsAndLooksTellDatasetsApart) {
  std::vector<Dataset>& datasets = module.Store.Datasets;
  const auto title = [&] { return SignalTitle({&datasets[0], &datasets[1]}); };
  datasets[1].Wavelength = 279;  // what the instrument came to
  EXPECT_EQ(CommonWavelength({&datasets[0], &datasets[1], &datasets[2]}), 280);
  datasets[1].Wavelength = 250;
  EXPECT_EQ(title(), "Absorbance");
  const struct {
    char letter;
    const char* title;
  } cases[] = {{'P', "Fringes"}, {'F', "Fluorescence"}, {'I', "Intensity"}, {'W', "Signal"}};
  for (const auto& one : cases) {
    datasets[1].Comment2.bytes[0] = one.letter;
    EXPECT_EQ(title(), "Signal") << one.letter;
    datasets[0].Comment2.bytes[0] = one.letter;
    EXPECT_EQ(title(), one.title);
    datasets[0].Comment2.bytes[0] = 'R';
  }
  datasets[2].FileName = datasets[0].FileName;  // alike in all that the words say
  datasets[2].Speed = datasets[0].Speed;
  datasets[3].FileName.SetBytes("lysozyme");
  const Figure figure = MakeFigure(FigureSets(module, {0, 1, 2, 3}, true), nullptr, {});
  EXPECT_EQ(figure.keys.at(0).text, "14,000 rpm, channel B, 280 nm (1_3B14280.dat)");
  EXPECT_EQ(figure.keys.at(3).text, "20,000 rpm, lysozyme, 280 nm");
  std::set<std::tuple<FigureSymbol, ChartColor>> looks;
  for (std::size_t k = 0; k < 112; ++k) {
    const FigureLook look = FigureLookOf(k);
    EXPECT_TRUE(looks.emplace(look.symbol, look.color).second) << k;
  }
}

}  // namespace
