// The fit of a job: the page set up as it says, the presses of "Fit", the verdict of rest.
#pragma once

#include "base/time_limit.h"
#include "core/fit_run.h"
#include "job/job.h"

namespace quorvane {

class Host;

// The temperature of a session without a fit: the job's, or that of the first dataset.
void TakeTemperature(const Job& job, QuorvaneModule& module);

// The constants that sequence and buffer of the job stand for; what they do not know is reported.
void TakeSolution(const Job& job, QuorvaneModule& module, Host& host);

// "Setup Fit", then "Fit" as [fit] says, and whether the fit is at rest. `datasets` are those that
// ApplyDatasets chose. `limit` is set to the time limit of the job while the fit runs; `host` is to
// raise module.Stop when it is over. Why there is no result, or no rest, is reported to `host`.
// Throws JobFault.
FitOutcome RunJobFit(const Job& job, const std::vector<ChosenDataset>& datasets,
                     QuorvaneModule& module, Host& host, TimeLimit& limit);

}  // namespace quorvane
