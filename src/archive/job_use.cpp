#include "archive/job_use.h"

#include "archive/experiment_file.h"
#include "base/files.h"
#include "base/quiet_host.h"
#include "job/job_steps.h"

namespace quorvane {

namespace {

// The datasets that the job begins from and loads; none if one of its files is not there.
std::vector<Dataset> OwnDatasets(const Job& job) {
  QuorvaneModule own;
  QuietHost host;
  try {
    if (job.archive) own.Store.Datasets = ReadExperimentFile(*job.archive).experiment.Datasets;
    own.Store.UseData.assign(own.Store.Datasets.size(), true);
    if (ApplyLoads(job, own, host) != LoadOutcome::kLoaded) return {};
  } catch (const FileFault&) {
    return {};
  } catch (const ArchiveFault&) {
    return {};
  }
  return std::move(own.Store.Datasets);
}

}  // namespace

AppliedJob ApplyJob(const std::filesystem::path& path, QuorvaneModule& module) {
  const std::unique_ptr<ParsedJob> parsed = ReadJob(path);
  const Job& job = parsed->job;
  const std::vector<Dataset> own = OwnDatasets(job);
  AppliedJob applied = ApplyToLoaded(job, own, module);
  if (own.empty() && (job.archive || !job.loads.empty()) && !job.datasets.empty()) {
    applied.misfits.insert(applied.misfits.begin(),
                           "The scans of the job are not there, so its datasets were taken by "
                           "their numbers.");
  }
  return applied;
}

}  // namespace quorvane
