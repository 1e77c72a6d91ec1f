// The run of a fit: checks, assembly, minimisation, and the report in the log.
#pragma once

#include <string>

#include "core/program_state.h"

namespace quorvane {

class Host;

enum class FitEnding {
  kFinished,  // reported; datasets and page hold the new values
  kStopped,   // by the user; datasets and page as they were
  kRefused,   // a check of the page failed, `where` is the title of its box; nothing changed
  kNoRest,    // of FitToRest: `error` says why, and nothing was changed
  kFailed,    // an error, reported; datasets and page as they were, unless it came in the report
};

struct FitOutcome {
  FitEnding ending = FitEnding::kRefused;
  int iterations = 0;                          // of a finished fit
  double seconds = 0.0;                        // assembly and minimisation, steady clock
  std::string error;                           // text of the refusal, description of the error, or
                                               // why there is no rest
  std::string where;                           // title of the box, or the routine last entered
  std::shared_ptr<const FitState> state = {};  // where a finished or stopped run ended; else null
};

// "Fit": fits module.Setup from the values of datasets and page, until it ends or module.Stop is
// raised. A failure is shown in a message box and logged, never thrown. Works on a state of its own
// and hands it over as module.LastFit when it has finished; a stopped or refused one leaves the
// last fit as it is, a failed one leaves none.
FitOutcome RunFit(QuorvaneModule& module, Host& host);

// Steps after which FitToRest gives up.
inline constexpr int kMostRestSteps = 1000;

// "Fit to Rest": brings the start values to rest, by BringToRest on a state of its own, and then
// runs one RunFit from there. Where no rest is found, or module.Stop is raised before, and where
// the fit that follows does not finish, datasets and page stay as they were; without a rest the
// last fit stays too. A stop on the way to the rest is kStopped, with the state that it had come
// to.
FitOutcome FitToRest(QuorvaneModule& module, Host& host);

// Puts what JudgeRest has said of `judged` into module.LastFit, if that is still the same fit: the
// same model, points, flags and values. False if it is not.
bool ShareVerdict(QuorvaneModule& module, const FinishedFit& judged, RestVerdict verdict);

// CalcConfidence around module.LastFit, which must be there. LastFit becomes one that knows the
// request and the intervals found.
ConfidenceOutcome SearchIntervals(QuorvaneModule& module, const ConfidenceRequest& request,
                                  Host& host);

// AnalyseErrors of module.LastFit, which must be there, with the derived quantities. LastFit
// becomes one that knows the analysis, if that could begin.
ErrorAnalysis SearchErrors(QuorvaneModule& module, const ErrorRequest& request, Host& host);

// Puts other values of the parameters of module.LastFit, in the order of FitA, into page and
// datasets, as a fit that ended there would: the start of the next one.
// Throws ArithmeticFault for a reference concentration beyond all bounds; then nothing changed.
void TakeAsStart(QuorvaneModule& module, const Array1<double>& values);

}  // namespace quorvane
