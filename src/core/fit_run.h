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
  kFailed,    // an error, reported; datasets and page as they were, unless it came in the report
};

struct FitOutcome {
  FitEnding ending = FitEnding::kRefused;
  int iterations = 0;    // of a finished fit
  double seconds = 0.0;  // assembly and minimisation, steady clock
  std::string error;     // text of the refusal, or description of the error
  std::string where;     // title of the box, or the routine last entered
};

// "Fit": fits module.Setup from the values of datasets and page. A failure is shown in a message
// box and logged, never thrown. LastFit is the record of this fit, or none unless it finished.
FitOutcome RunFit(QuorvaneModule& module, Host& host);

// CalcConfidence around module.Fit. LastFit keeps the request and the intervals found.
ConfidenceOutcome SearchIntervals(QuorvaneModule& module, const ConfidenceRequest& request,
                                  Host& host);

// Puts other values of the parameters of module.Fit, in the order of FitA, into page and datasets,
// as a fit that ended there would: the start of the next one. module.Fit stays as it is.
// Throws ArithmeticFault for a reference concentration beyond all bounds; then nothing changed.
void TakeAsStart(QuorvaneModule& module, const Array1<double>& values);

}  // namespace quorvane
