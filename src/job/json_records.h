// Datasets and fits as JSON, as the contract of the command line lays them out.
#pragma once

#include "core/fit_run.h"
#include "job/json_text.h"
#include "stats/confidence.h"
#include "stats/minimum_check.h"

namespace quorvane {

// {"program", "version"}: the start of every document.
Json DocumentHead();

// Other values of the parameters of `fit`, with their names.
Json ValuesJson(const FitState& fit, const Array1<double>& values);

Json ConstantsJson(const QuorvaneModule& module);

// All datasets, "number" from 1.
Json DatasetsJson(const std::vector<Dataset>& datasets);

Json RestJson(const RestVerdict& rest);

// The run that ended so, or {"error", "where"} for one without a result. `last` is the
// finished fit of a run that finished. Throws ArithmeticFault.
Json FitJson(const FitOutcome& outcome, const FinishedFit* last);

// The quality of a finished fit, correlations counting as strong above `critical`; what cannot be
// computed is absent. Throws ArithmeticFault.
Json QualityJson(const FinishedFit& last, double critical);

Json ConfidenceJson(const FitState& fit, const ConfidenceRequest& request,
                    const ConfidenceOutcome& outcome);

// The check of the minimum of `fit`.
Json MinimaJson(const FitState& fit, const MinimumRequest& request, const MinimumOutcome& outcome);

// The coefficients of a finished fit. Throws ArithmeticFault.
Json CrossCorrelationJson(const FitState& fit, double critical);

}  // namespace quorvane
