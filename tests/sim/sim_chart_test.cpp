// Faults caught here: species under each other's names or with the wrong scale, a graph offered
// that has no data.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "sim/sim_chart.h"
#include "sim_runs.h"

using namespace quorvane;

TEST(SimChart, ShowsSpeciesThatAddUpToTheSignal) {
  const std::vector<std::vector<std::string>> names = {{},
                                                       {},
                                                       {"monomer", "n-mer"},
                                                       {"monomer", "n-mer", "m-mer"},
                                                       {"monomer", "n-mer", "inc.monomer"},
                                                       {"monomer", "n-mer", "inc.n-mer"},
                                                       {"A", "B", "AB"},
                                                       {"A", "B", "AB", "AB2"},
                                                       {"A", "B", "AB", "AB2", "AB3"},
                                                       {},
                                                       {"A", "B", "An", "AnB"}};
  for (int model = 0; model < kSimModels; ++model) {
    const SimulatedRun run = RunOf(model, {{SimBox::kRMS, "0"}, {SimBox::kExtCoeffB, "5E5"}});
    const auto& expected = names[static_cast<std::size_t>(model)];
    EXPECT_EQ(SimGraphEnabled(model, SimGraph::kSpeciesSignal), !expected.empty()) << model;
    EXPECT_FALSE(SimGraphEnabled(model, SimGraph::kSpeciesConc)) << model;
    if (expected.empty()) continue;
    const Chart species = SimChart(run.simulator, SimGraph::kSpeciesSignal);
    std::vector<std::string> found;
    double sum = 0.0;
    for (const ChartSeries& series : species.panels[0].series) {
      found.push_back(series.name);
      sum += series.y[150];
    }
    EXPECT_EQ(found, expected);
    const Chart total = SimChart(run.simulator, SimGraph::kTotalSignal);
    EXPECT_NEAR(total.panels[0].series[0].y[150], sum, 1.0e-12) << model;
    EXPECT_EQ(total.panels[0].series[0].x[150], run.Column().r[150]);
  }
}

TEST(SimChart, ShowsTheConcentrationOfOneComponentOnly) {
  const SimulatedRun one = RunOf(9, {});
  const Chart chart = SimChart(one.simulator, SimGraph::kTotalConc);
  EXPECT_EQ(chart.title, "Total Conc.");
  EXPECT_EQ(chart.panels[0].leftTitle, "concentration");
  EXPECT_EQ(chart.panels[0].series[0].y[300], one.Column().conc[300]);
  EXPECT_THROW(SimChart(RunOf(6, {}).simulator, SimGraph::kTotalConc), std::invalid_argument);
}

TEST(SimAxisPattern, ChangesBelowOneHundredthAndAboveOneThousand) {
  for (const double fixed : {0.01, -0.01, 1000.0, -1000.0}) {
    EXPECT_EQ(SimAxisPattern(fixed), "#,##0.00") << fixed;
  }
  for (const double scientific : {0.0, 0.00999, -1000.1}) {
    EXPECT_EQ(SimAxisPattern(scientific), "0.00E+00") << scientific;
  }
}
