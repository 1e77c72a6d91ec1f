// A simulation as a job says it.
#pragma once

#include <optional>

#include "job/toml_reader.h"
#include "sim/sim_inputs.h"
#include "sim/sim_series.h"

namespace quorvane {

struct SimJob {
  SimInputs inputs;
  std::optional<SeriesLists> lists;  // of a series
};

// Reads a whole job. Throws JobFault, also for an input outside the bounds of its box.
SimJob ReadSimJob(TableReader& job);

// The plan of the series of `read`, which has lists. Throws JobFault for a list that cannot be.
SeriesPlan PlanOf(const SimJob& read, const TableReader& job);

}  // namespace quorvane
