// A series: one simulated scan for each combination of speeds and loads, in files named as an
// instrument names those of a run.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/simulate.h"

namespace quorvane {

// Entries as typed. Each load has a cell of its own, and each speed a scan of every cell. Loads of
// A and B belong together by their place; a single one counts for all cells.
struct SeriesLists {
  std::vector<std::string> speeds;
  std::vector<std::string> loads;   // of A, at most 8
  std::vector<std::string> loadsB;  // of B; without a component B one at most, which does not count
};

// The entries of a list such as "10000, 14000 20000": commas, semicolons or blanks part them.
std::vector<std::string> ListedEntries(std::string_view typed);

struct SeriesScan {
  std::string file;  // "00002.RA1": number and cell
  int number = 1;    // of the speed, from 1
  int cell = 1;      // of the load, 1 to 8
  SimInputs inputs;  // all entries of this scan
};

struct SeriesPlan {
  std::vector<SeriesScan> scans;  // by speed, then by cell; none if the lists are refused
  std::string refusal;            // in a sentence
  std::optional<SimBox> box;      // whose list is refused
};

// The scans that the lists make of `inputs`, whose other entries have passed their checks.
SeriesPlan PlanSeries(const SimInputs& inputs, const SeriesLists& lists);

// What is made of a scan of the series.
using SeriesTaker = std::function<void(const SeriesScan& scan, const Simulator& run,
                                       const SimReference& reference)>;

// Simulates all scans, each with noise of its own made of `seed`, number and cell, and gives each
// to `take`. Ends at the first that fails, or whose loads no concentration gives, and says which
// and why; empty if none does.
std::string RunSeries(const SeriesPlan& plan, std::uint64_t seed, Host& host,
                      const SeriesTaker& take);

struct SeriesFile {
  std::string name;
  std::string text;
};

// Names of the plan that already stand in `folder`.
std::vector<std::string> StandingFiles(const SeriesPlan& plan, const std::filesystem::path& folder);

// Writes all files into `folder`, which is made if need be, in the place of files of these names.
// Throws FileFault; then nothing was written, unless the system refused a rename half-way.
void WriteSeries(const std::filesystem::path& folder, const std::vector<SeriesFile>& files);

}  // namespace quorvane
