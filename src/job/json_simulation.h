// Simulated scans as JSON, as the contract of the command line lays them out.
#pragma once

#include "job/json_text.h"
#include "sim/sim_models.h"
#include "sim/sim_series.h"
#include "sim/simulate.h"

namespace quorvane {

// Head and model of a document.
Json SimModelJson(int index);

// Adds the profile of a run to `json`.
void AddSimColumn(const Simulator& simulator, const SimReference& reference, Json& json);

// What tells a scan of a series from the others.
Json SimScanJson(const SeriesScan& scan);

}  // namespace quorvane
