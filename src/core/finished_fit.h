// FinishedFit: a fit that has ended, as it was made. Edits, unloading and changes of the page that
// come later do not touch it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fit/fit_page.h"
#include "fit/fit_setup.h"
#include "fit/fit_state.h"
#include "scan/dataset.h"
#include "stats/confidence.h"
#include "stats/error_analysis.h"
#include "stats/fit_rest.h"

namespace quorvane {

// Ratios of a report at the second level of the confidence search.
struct CIRatios {
  double FRatio = 0.0;         // F(NDF, NDF, P)
  double VarianceRatio = 0.0;  // 1 + nFit/NDF F(nFit, NDF, P)
};

// A search of confidence intervals that has ended, and what it was asked.
struct IntervalSearch {
  ConfidenceRequest request;
  ConfidenceOutcome outcome;
};

// Shared and constant once the run has handed it over: windows, report and error analysis look at
// the same one.
struct FinishedFit {
  FitState state;                           // its arrays, values and covariance
  int iterations = 0;                       // of the fit
  FitSetup setup;                           // what the page chose
  struct FitPage page;                      // with the fitted values
  struct ConstantsSet constantsSet;         // of that page
  std::vector<Dataset> datasets;            // the whole store, with the fitted values
  std::vector<std::string> cells;           // name of the cell geometry, by position in the fit
  CIRatios ratios;                          // of its report
  std::optional<IntervalSearch> intervals;  // the last search around this fit that found one
  std::optional<ErrorAnalysis> errors;      // the last analysis of this fit that found something
  std::optional<RestVerdict> rest;          // once it has been judged
};

}  // namespace quorvane
