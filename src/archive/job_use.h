// A job as the window program uses it: beside datasets that are loaded already.
#pragma once

#include <filesystem>

#include "job/applied_job.h"

namespace quorvane {

// ApplyToLoaded for the job at `path`, whose own scans or archive tell what its numbers are. Where
// these are not there, it goes by the numbers alone, and says so.
// Throws FileFault, JobFault with nothing changed.
AppliedJob ApplyJob(const std::filesystem::path& path, QuorvaneModule& module);

}  // namespace quorvane
