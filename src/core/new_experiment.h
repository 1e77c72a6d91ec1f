// Leaving an experiment for an empty one.
#pragma once

#include "core/program_state.h"

namespace quorvane {

class Host;

// Forgets datasets and fit; kept graphs go too if the log was changed since it was saved
// (ExperimentOpen). The parameter page's values and the preferences stay.
void StartNewExperiment(QuorvaneModule& module);

// The lines that head a new log and name the current folder.
void LogNewHead(const std::filesystem::path& currentFolder, Host& host);

}  // namespace quorvane
