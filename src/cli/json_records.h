// Datasets and fits as JSON, as the contract of the command line lays them out.
#pragma once

#include "cli/json_text.h"
#include "core/fit_run.h"
#include "stats/confidence.h"
#include "stats/minimum_check.h"

namespace quorvane {

// {"program", "version"}: the start of every document.
Json DocumentHead();

Json ConstantsJson(const QuorvaneModule& module);

// All datasets, "number" from 1.
Json DatasetsJson(const std::vector<Dataset>& datasets);

// The fit that module.Fit holds, or {"error", "where"} for one that was refused or failed.
// Throws ArithmeticFault.
Json FitJson(const QuorvaneModule& module, const FitOutcome& outcome);

// The quality of the fit that module.Fit holds; what cannot be computed is absent.
// Throws ArithmeticFault.
Json QualityJson(const QuorvaneModule& module);

Json ConfidenceJson(const FitState& fit, const ConfidenceRequest& request,
                    const ConfidenceOutcome& outcome);

// The check of the minimum of `fit`.
Json MinimaJson(const FitState& fit, const MinimumRequest& request, const MinimumOutcome& outcome);

// The coefficients of the fit that module.Fit holds. Throws ArithmeticFault.
Json CrossCorrelationJson(const QuorvaneModule& module);

}  // namespace quorvane
