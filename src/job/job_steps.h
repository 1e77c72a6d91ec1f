// The steps of a job on a session: constants, loading, edits of datasets, the page of the fit.
#pragma once

#include "core/program_state.h"
#include "job/job.h"

namespace quorvane {

class Host;

// The cell geometries of the job's file, or of the program's own. Throws FileFault.
void LoadGeometries(const Job& job, const std::filesystem::path& programFolder,
                    QuorvaneModule& module);

// Vbar, density and the like.
void ApplyConstants(const Job& job, QuorvaneModule& module);

// Loads one file as "Load" (or "Load Blank") would after a selection.
LoadResult LoadOne(const JobLoad& load, DatasetStore& store, Host& host);

// Loads all files in their order. Stops at the first that cannot be read or gives no dataset;
// otherwise kLoaded.
LoadOutcome ApplyLoads(const Job& job, QuorvaneModule& module, Host& host);

// Names, blanks, deleted points and values of the datasets. Hands back which datasets the tables
// chose, since names and speeds may be others now. Throws JobFault.
std::vector<ChosenDataset> ApplyDatasets(const Job& job, QuorvaneModule& module, Host& host);

// "Setup Fit" and what the job changes on the page. A page that stands already, as the archive of
// the job brought it, gives the defaults of what the job does not say. False, with a message, if no
// dataset is chosen. Throws JobFault, and SubscriptFault for more than 101 datasets.
bool ApplyFit(const Job& job, const std::vector<ChosenDataset>& datasets, QuorvaneModule& module,
              Host& host);

// The request of [confidence] for the fit that the job sets up. Throws JobFault for a parameter
// that the model does not have or that is held.
ConfidenceRequest ConfidenceOf(const Job& job, const FitSetup& setup);

}  // namespace quorvane
