// What the sections of a report share: the fit as they see it, and how they write.
#pragma once

#include <string>
#include <vector>

#include "base/arithmetic.h"
#include "core/program_state.h"
#include "core/report/report_section.h"
#include "fit/fit_statistics.h"

namespace quorvane {

// A finished fit, which outlives it. Datasets d are numbered from 1, by position in
// the fit.
struct ReportView {
  // Of module.LastFit. Throws ArithmeticFault where it has no variance.
  explicit ReportView(const QuorvaneModule& shownModule);

  std::string ModelName() const;
  const Dataset& DatasetOf(int d) const;
  // Position whose reference concentrations dataset d uses.
  int LinkOf(int d) const;
  bool Two() const { return fit.TwoComponentModel; }
  // Whether the loads that were entered have a part in the fit.
  bool LoadsCount() const { return Two() && fit.UseMassConservation; }
  bool NeedsWidth() const { return Two() ? fit.UseMassConservation : fit.CalcLoadingConcs; }

  const QuorvaneModule& module;
  const FinishedFit& record;
  const FitState& fit;
  FitStatistics statistics;  // of the values that the fit ended with
};

using ReportRow = std::vector<ReportText>;

inline const std::string kReportNone = "\u2013";  // a dash

// What `work` writes, "n/a" where its arithmetic fails.
template <class Work>
std::string WrittenOrNa(Work&& work) {
  try {
    return work();
  } catch (const ArithmeticFault&) {
    return "n/a";
  }
}

// FormatNumber, or "n/a".
std::string ReportNumber(double value, const char* pattern);

// "1, 3-5, 9"
std::string NumberList(const std::vector<int>& numbers);

}  // namespace quorvane
