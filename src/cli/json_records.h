// Datasets and fits as JSON, as the contract of the command line lays them out.
#pragma once

#include "cli/json_text.h"
#include "core/fit_run.h"
#include "stats/confidence.h"

// {"program", "version"}: the start of every document.
Json DocumentHead();

Json ConstantsJson(const QuorvaneModule& module);

// All datasets, "number" from 1.
Json DatasetsJson(const std::vector<Dataset>& datasets);

// The fit that module.Fit holds, or {"error", "where"} for one that was refused or failed.
// Throws ArithmeticFault.
Json FitJson(const QuorvaneModule& module, const FitOutcome& outcome);

Json ConfidenceJson(const ConfidenceRequest& request, const ConfidenceOutcome& outcome);

// The coefficients of the fit that module.Fit holds. Throws ArithmeticFault.
Json CrossCorrelationJson(const QuorvaneModule& module);
