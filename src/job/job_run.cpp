#include "job/job_run.h"

#include "base/arithmetic.h"
#include "base/host.h"
#include "job/job_steps.h"
#include "job/require.h"

namespace quorvane {

namespace {

// "Fit" so often; stops at the first press that does not finish.
FitOutcome FitRepeatedly(int presses, QuorvaneModule& module, Host& host) {
  FitOutcome outcome;
  for (int press = 0; press < presses; ++press) {
    outcome = RunFit(module, host);
    if (outcome.ending != FitEnding::kFinished) break;
  }
  return outcome;
}

// "Fit to Rest"; says why if there is no rest.
FitOutcome FitOnceAtRest(QuorvaneModule& module, Host& host) {
  FitOutcome outcome = FitToRest(module, host);
  const bool without = outcome.ending == FitEnding::kNoRest ||
                       (outcome.ending == FitEnding::kStopped && !outcome.error.empty());
  if (without) host.ReportFailure(outcome.error);
  return outcome;
}

// Whether the finished fit is at rest, into the last fit; told if it is not.
void TellRest(QuorvaneModule& module, Host& host) {
  const std::shared_ptr<const FinishedFit> fit = module.LastFit;
  const RestVerdict verdict = JudgeRest(fit->state, module.Stop, host);
  ShareVerdict(module, *fit, verdict);
  module.Stop.Lower();  // a time limit ends the verdict, not what comes after the fit
  if (!verdict.atRest.value_or(false)) host.ReportFailure(verdict.reason);
}

}  // namespace

void TakeTemperature(const Job& job, QuorvaneModule& module) {
  const bool kept = module.Setup.NumFitSets > 0;  // by the archive
  if (!module.Store.Datasets.empty() && !kept) {
    module.Setup.DegC = static_cast<double>(module.Store.Datasets.front().Temperature);
  }
  if (job.temperature) Require(SetTemperature(module.Setup, *job.temperature));
}

void TakeSolution(const Job& job, QuorvaneModule& module, Host& host) {
  if (!job.solution) return;
  const SolutionValues values = ValuesAt(*job.solution, TemperatureOf(job, module));
  TakeValues(values, module);
  Remember(*job.solution, module);
  for (const std::string& remark : values.remarks) host.ReportFailure(remark);
}

FitOutcome RunJobFit(const Job& job, const std::vector<ChosenDataset>& datasets,
                     QuorvaneModule& module, Host& host, TimeLimit& limit) {
  try {
    if (!ApplyFit(job, datasets, module, host)) {
      return {.error = "No datasets were chosen to be fitted!", .where = "No Sets Chosen"};
    }
  } catch (const SubscriptFault& fault) {
    host.ReportFailure("At most 101 datasets can be fitted at once.");
    return {.ending = FitEnding::kFailed, .error = fault.what(), .where = "cmdSetFit"};
  }
  TakeSolution(job, module, host);
  if (job.confidence) ConfidenceOf(job, module.Setup);  // a bad name is told before the work
  if (job.errors) CheckNames(*job.errors, module.Setup);
  if (job.fit->timeLimit) limit.Set(*job.fit->timeLimit);
  FitOutcome outcome =
      job.fit->toRest ? FitOnceAtRest(module, host) : FitRepeatedly(job.fit->repeat, module, host);
  if (outcome.ending == FitEnding::kFinished) TellRest(module, host);
  limit.Clear();
  return outcome;
}

}  // namespace quorvane
