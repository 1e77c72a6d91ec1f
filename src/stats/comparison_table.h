// Finished fits side by side as texts: what windows, the command line and a report show of them.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "stats/fit_comparison.h"

namespace quorvane {

// The figures of one fit; "-" where it has none.
struct FitTexts {
  std::string model;
  std::string varied;  // "MW, LnK1; 9 baselines, 9 concentrations"
  std::string points;
  std::string fitted;  // count of parameters, baselines and concentrations included
  std::string freedom;
  std::string sum;
  std::string rms;
  std::string aicc;
  std::string bic;
  std::string runsZ;
  std::string rest;  // "yes", "no"
};
FitTexts TextsOf(const FitSummary& fit);

// The pattern by which a value with the error `error` shows two digits of that; empty where both
// are better written with an exponent.
std::string PatternOfError(double value, double error);

// The pattern by which a value with the error `error` shows two digits of that, or its whole part
// if that has more; empty where both are better written with an exponent.
std::string PatternOfError(double value, double error);

// "8106 +- 20", "2 (held)"; in UTF-8 with a plus-minus sign.
std::string ValueText(const SummaryParameter& parameter);

struct ComparisonRow {
  std::string name;
  std::vector<std::string> cells;  // one a fit
};

// The figures of the fits, then their shared parameters, a row each; differences of AICc and
// weights from `comparison`, which may be null: fits of different points have none.
std::vector<ComparisonRow> ComparisonRows(std::span<const NamedFit> fits,
                                          const FitComparison* comparison);

// The same as a CSV file with all digits, a fit a line.
std::string FitsCsv(std::span<const NamedFit> fits);

}  // namespace quorvane
