// Saving and loading an experiment of 100 datasets of 2000 noisy points, with log and graphs.
#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>
#include <random>

#include "archive/experiment_file.h"
#include "base/chart.h"

using namespace quorvane;

namespace {

Experiment ManyDatasets() {
  std::mt19937_64 random(1);
  std::normal_distribution<double> noise(0.0, 0.004);
  Experiment experiment;
  experiment.directory.SetBytes("/lab");
  experiment.log = "{\\rtf1 " + std::string(100'000, 'x') + "}";
  experiment.Datasets.assign(100, EmptyDataset());
  for (Dataset& dataset : experiment.Datasets) {
    dataset.NumPoints = 2000;
    for (std::size_t k = 0; k < 2000; ++k) {
      dataset.R[k] = 6.0 + 0.0005 * static_cast<double>(k);
      dataset.C[k] = 0.1 * std::exp(static_cast<double>(k) / 500.0) + noise(random);
      dataset.Err[k] = 0.004;
      dataset.Good[k] = kTrue;
    }
    Chart chart{"data", "radius", {ChartPanel()}};
    chart.panels[0].series.push_back({"",
                                      SeriesStyle::kCross,
                                      kChartRed,
                                      {dataset.R.begin(), dataset.R.end()},
                                      {dataset.C.begin(), dataset.C.end()}});
    experiment.GraphStreams.push_back(SerializeChart(chart));
  }
  return experiment;
}

std::filesystem::path BenchFile() {
  return std::filesystem::temp_directory_path() / "quorvane-bench.exz";
}

void SaveArchive(benchmark::State& state) {
  const Experiment experiment = ManyDatasets();
  for (auto _ : state) WriteExperimentFile(BenchFile(), experiment);
  state.counters["MB"] = static_cast<double>(std::filesystem::file_size(BenchFile())) / 1e6;
}
BENCHMARK(SaveArchive)->Unit(benchmark::kMillisecond)->UseRealTime();

void LoadArchive(benchmark::State& state) {
  WriteExperimentFile(BenchFile(), ManyDatasets());
  for (auto _ : state) benchmark::DoNotOptimize(ReadExperimentFile(BenchFile()));
}
BENCHMARK(LoadArchive)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
