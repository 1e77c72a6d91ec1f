// The finished fits of a session as tables [[fitted]] behind its setup: values without arrays,
// which can be listed, compared and taken as start values.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "core/fit_history.h"
#include "job/toml_reader.h"

namespace quorvane {

struct FittedTables {
  std::string text;  // at most as long as asked for
  int leftOut = 0;   // fits for which there was no room, the oldest ones
};

// The fits, the newest first, as far as they fit into `room` bytes. Their datasets are named by
// their numbers in `datasets`, 0 for one that is not there.
FittedTables WriteFitted(const FitHistory& fits, const std::vector<Dataset>& datasets,
                         std::size_t room);

// A fit as a table holds it.
struct FittedEntry {
  std::string name;
  std::chrono::system_clock::time_point time;
  KeptFit kept;
};

// The tables [[fitted]] of `root`, in their order; datasets by number are those of `datasets`.
// Throws JobFault for one that is damaged.
std::vector<FittedEntry> ReadFitted(TableReader& root, const std::vector<Dataset>& datasets);

}  // namespace quorvane
