// From which file, and how, a loaded dataset came.
#pragma once

#include <optional>
#include <vector>

#include "job/job.h"
#include "scan/dataset_store.h"

namespace quorvane {

// The load that gives the radii (and, unless a blank was subtracted, the signals) of `dataset` from
// its file as that is now; of several the one that gives its name, then one like `like`. One
// channel of one file. Nothing if the file is gone, cannot be read or has changed.
std::optional<JobLoad> SourceOf(const Dataset& dataset, const ScanLoadSettings& like);

// Loads one after the other, those of the channels of one file together.
std::vector<JobLoad> JoinChannels(const std::vector<JobLoad>& loads);

}  // namespace quorvane
