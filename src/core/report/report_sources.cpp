#include "core/report/report_sources.h"

#include <algorithm>

#include "base/files.h"
#include "base/sha256.h"
#include "base/text.h"
#include "scan/source_check.h"

namespace quorvane {

namespace {

constexpr std::size_t kGreatestFile = std::size_t{256} << 20U;  // bytes

// One file and the datasets that it should hold.
struct Source {
  SourceFile file;
  std::vector<const Dataset*> datasets;
};

void AddDataset(std::vector<Source>& sources, const Dataset& dataset, int number) {
  const std::string path = PathOf(dataset);
  auto source = std::find_if(sources.begin(), sources.end(),
                             [&](const Source& known) { return known.file.path == path; });
  if (source == sources.end()) {
    sources.push_back({.file = {.path = path, .numbers = {}, .state = {}}, .datasets = {}});
    source = sources.end() - 1;
  }
  if (number > 0) source->file.numbers.push_back(number);
  source->datasets.push_back(&dataset);
}

// Whether a dataset can name the file: its record holds a limited number of one-byte characters,
// and '?' for all others.
bool IsKeptWhole(const std::string& path) {
  return path.find('?') == std::string::npos &&
         Utf8ToCp1252(path).size() < sizeof(Dataset::FilePath);
}

std::string StateOf(const std::filesystem::path& path,
                    const std::vector<const Dataset*>& datasets) {
  if (path.empty() || !FileExists(path)) {
    return IsKeptWhole(PathText(path)) ? "not found"
                                       : "not checked: a dataset cannot hold this path";
  }
  try {
    const std::string bytes = ReadWholeFile(path, kGreatestFile);
    const bool same = std::all_of(datasets.begin(), datasets.end(), [&](const Dataset* dataset) {
      return HoldsPoints(bytes, *dataset);
    });
    return Sha256(bytes) + (same ? "" : " (changed since it was loaded)");
  } catch (const FileFault& fault) {
    return fault.what();
  }
}

}  // namespace

std::vector<SourceFile> SourceFiles(const std::vector<Dataset>& datasets,
                                    const std::vector<std::int16_t>& fitted) {
  std::vector<Source> sources;
  int number = 0;
  for (const std::int16_t place : fitted) {
    AddDataset(sources, datasets[static_cast<std::size_t>(place)], ++number);
  }
  for (const Dataset& dataset : datasets) {
    if (IsBlank(dataset)) AddDataset(sources, dataset, 0);
  }
  std::vector<SourceFile> files;
  for (Source& source : sources) {
    source.file.state = StateOf(PathFromText(source.file.path), source.datasets);
    files.push_back(std::move(source.file));
  }
  return files;
}

SourceFile CellFile(const std::filesystem::path& path) {
  return {.path = PathText(path), .numbers = {}, .state = StateOf(path, {})};
}

}  // namespace quorvane
