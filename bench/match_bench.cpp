// Scan matching: loading a series and matching it.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

#include "base/quiet_host.h"
#include "match/match.h"

using namespace quorvane;

namespace {

// A series of 100 scans of 1000 points that closes in on its last.
MatchSeries LongSeries() {
  MatchSeries series;
  for (int i = 0; i < 100; ++i) {
    RawScan scan;
    scan.time = 600 * i;
    for (int k = 0; k < 1000; ++k) {
      const double r = 5.8 + 0.0014 * k;
      const double rise = 2.5 * (1 - std::exp(-0.05 * i));
      scan.radius.push_back(r);
      scan.signal.push_back(0.05 + 0.1 * std::exp(rise * (r - 6.4)) +
                            0.004 * std::sin(12.9898 * k));
    }
    series.names.push_back(std::to_string(i));
    series.scans.push_back(std::move(scan));
  }
  return series;
}

std::vector<std::filesystem::path> WriteSeries(const MatchSeries& series) {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / "quorvane-match-bench";
  std::filesystem::create_directories(folder);
  std::vector<std::filesystem::path> files;
  for (std::size_t i = 0; i < series.scans.size(); ++i) {
    files.push_back(folder / (series.names[i] + ".RA1"));
    std::ofstream out(files.back(), std::ios::binary);
    out << "bench\r\nR 1 20.0 20000 0099999 1.0000E12 280 21\r\n";
    for (std::size_t k = 0; k < series.scans[i].radius.size(); ++k) {
      char line[64];
      std::snprintf(line, sizeof line, "   %.4f   %12.5E   4.00000E-003\r\n",
                    series.scans[i].radius[k], series.scans[i].signal[k]);
      out << line;
    }
  }
  return files;
}

void MatchScans(benchmark::State& state) {
  const MatchSeries series = LongSeries();
  const FittingRange range = WholeRange(series);
  for (auto _ : state) benchmark::DoNotOptimize(DoMatch(series, range));
}

void LoadMatchSeries(benchmark::State& state) {
  const std::vector<std::filesystem::path> files = WriteSeries(LongSeries());
  QuietHost host;
  for (auto _ : state) {
    MatchSeries series;
    if (LoadMatchFiles(files, {}, series, host) != MatchLoadOutcome::kLoaded) {
      state.SkipWithError("the series was not loaded");
    }
  }
  std::filesystem::remove_all(files.front().parent_path());
}

}  // namespace

BENCHMARK(MatchScans)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadMatchSeries)->Unit(benchmark::kMillisecond);
