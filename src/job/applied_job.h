// Applying a job to datasets that are loaded already.
#pragma once

#include <string>
#include <vector>

#include "core/program_state.h"
#include "job/job.h"

namespace quorvane {

struct AppliedJob {
  bool setUp = false;                // whether there is a new page
  std::string summary;               // what was taken, one sentence
  std::vector<std::string> misfits;  // what was not, a sentence each
  std::vector<std::string> remarks;  // on constants from sequence and buffer, a line each
};

// Takes model, constants, values, checks, links, coefficients and ranges of the job for the loaded
// datasets, and sets up the page of its fit. `own` are the datasets that the job itself loads: its
// tables of a number are for datasets of that one's channel and speed, in whatever cell. Without
// `own` they are for the dataset of the same number. Names, blanks and speeds are left alone, and
// so are [confidence], [errors] and [output]. What changes in points and ends of a column can be
// undone, dataset by dataset.
// Throws JobFault, with nothing changed, if nothing of the job can be taken.
AppliedJob ApplyToLoaded(const Job& job, const std::vector<Dataset>& own, QuorvaneModule& module);

}  // namespace quorvane
