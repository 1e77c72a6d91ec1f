// Loading scan files.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "base/quiet_host.h"
#include "scan/file_list.h"
#include "scan/loading.h"
#include "scan/scan_series.h"

using namespace quorvane;

namespace {

// Writes `count` scans of `rows` rows into a folder of their own.
std::vector<std::filesystem::path> WriteScans(int count, int rows) {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / "quorvane-scan-bench";
  std::filesystem::create_directories(folder);
  std::vector<std::filesystem::path> files;
  for (int k = 0; k < count; ++k) {
    char name[32];
    std::snprintf(name, sizeof name, "%05d.RA1", k + 1);
    files.push_back(folder / name);
    std::ofstream out(files.back(), std::ios::binary);
    out << "bench\r\nR 1 20.0 20000 0099999 1.0000E12 280 21\r\n";
    for (int row = 0; row < rows; ++row) {
      char line[64];
      std::snprintf(line, sizeof line, "   %.4f   1.23456E-001   4.00000E-003\r\n",
                    5.8 + 1.4 * row / rows);
      out << line;
    }
  }
  return files;
}

void LoadScans(benchmark::State& state) {
  const std::vector<std::filesystem::path> files = WriteScans(100, 1000);
  QuietHost host;
  for (auto _ : state) {
    DatasetStore store;
    for (const std::filesystem::path& file : files) {
      GetCommentLines(store, file, host);
      LoadSelectedFile(store, ScanLoadSettings{}, file, host);
    }
    if (store.NumDatasets() != 100) state.SkipWithError("not all scans were loaded");
  }
  std::filesystem::remove_all(files.front().parent_path());
}

// Listed as the command line and the window do: headers, groups, then changes; the files are in the
// page cache.
void ListFolder(benchmark::State& state) {
  const auto count = static_cast<int>(state.range(0));
  const std::vector<std::filesystem::path> files = WriteScans(count, 1000);
  const StopFlag stop;
  for (auto _ : state) {
    ScanList list =
        ListScans(ScanFilesIn(files.front().parent_path()), std::nullopt, {.stop = stop});
    if (state.range(1) != 0) FindChanges(list.series, {.stop = stop});
    if (list.series.empty()) state.SkipWithError("no scan was listed");
  }
  std::filesystem::remove_all(files.front().parent_path());
}

}  // namespace

BENCHMARK(ListFolder)
    ->ArgNames({"files", "changes"})
    ->ArgsProduct({{1000, 10000}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(LoadScans)->Unit(benchmark::kMillisecond);
