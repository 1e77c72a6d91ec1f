#include "core/report/report_errors.h"

#include <algorithm>

#include "base/number_format.h"
#include "core/report/report_view.h"
#include "stats/comparison_table.h"
#include "stats/error_plots.h"

namespace quorvane {

namespace {

std::string PercentText(double level) {
  return FormatNumber(level, "##.0#") + " %";
}

// Writes a value and its limits with as many digits as its error bears.
class Writer {
 public:
  Writer(double value, double error) : pattern_(PatternOfError(value, error)) {}
  std::string operator()(double number) const {
    return pattern_.empty() ? FormatParam(number) : FormatNumber(number, pattern_);
  }

 private:
  std::string pattern_;
};

std::string SideText(const SideLimit& side, const Writer& write) {
  switch (side.end) {
    case SideEnd::kFound:
      return write(side.limit);
    case SideEnd::kOpen:
      return "open";
    case SideEnd::kBound:
      return write(side.limit) + " (bound)";
    case SideEnd::kStopped:
      break;
  }
  return "stopped";
}

std::string Span(const std::string& low, const std::string& high) {
  return "[" + low + ", " + high + "]";
}

std::string DerivedText(const std::optional<double>& limit, SideEnd end, const Writer& write) {
  if (limit) return write(*limit);
  return end == SideEnd::kStopped ? "stopped" : "open";
}

void AddReplicates(const ParameterErrors& errors, const char* method,
                   const std::optional<ParameterReplicates>& replicates, ReportTable& table) {
  if (!replicates || replicates->limits.empty()) return;
  const Writer write(replicates->mean, replicates->deviation);
  ReportRow row = {errors.name, method, write(replicates->mean), write(replicates->deviation)};
  for (const PercentileLimits& limits : replicates->limits) {
    row.emplace_back(Span(write(limits.lower), write(limits.upper)));
  }
  table.rows.push_back(std::move(row));
}

// The standard error, or half the width of the first limits where these are closer together.
double SmallestError(const ParameterErrors& errors) {
  if (errors.profile->limits.empty()) return errors.error;
  const auto& [level, ratio, lower, upper] = errors.profile->limits.front();
  if (lower.end != SideEnd::kFound || upper.end != SideEnd::kFound) return errors.error;
  const double half = (upper.limit - lower.limit) / 2.0;
  return errors.error > 0.0 ? std::min(errors.error, half) : half;
}

ReportTable LimitsTable(const ErrorAnalysis& analysis) {
  ReportTable table{.title = "Limits of single parameters",
                    .head = {"Parameter", "Method", "Value or mean", "Std. error"},
                    .rows = {}};
  for (const double level : analysis.request.levels) table.head.push_back(PercentText(level));
  for (const ParameterErrors& errors : analysis.parameters) {
    if (errors.profile) {
      const Writer write(errors.value, SmallestError(errors));
      ReportRow row = {errors.name, "profile", write(errors.value),
                       errors.error > 0.0 ? write(errors.error) : kReportNone};
      for (const ProfileLimits& limits : errors.profile->limits) {
        row.emplace_back(Span(SideText(limits.lower, write), SideText(limits.upper, write)));
      }
      table.rows.push_back(std::move(row));
    }
    AddReplicates(errors, "Monte Carlo", errors.monteCarlo, table);
    AddReplicates(errors, "bootstrap", errors.bootstrap, table);
  }
  return table;
}

// Half the width of the first limits. 0, for an exponent, where there are none, and of a constant,
// which may be of any size.
double DerivedError(const DerivedQuantity& quantity) {
  const bool constant = quantity.name.starts_with('K');
  if (constant || quantity.limits.empty()) return 0.0;
  const DerivedLimits& limits = quantity.limits.front();
  return limits.lower && limits.upper ? (*limits.upper - *limits.lower) / 2.0 : 0.0;
}

ReportTable DerivedTable(const ErrorAnalysis& analysis) {
  ReportTable table{
      .title = "Derived quantities", .head = {"Quantity", "Unit", "Value"}, .rows = {}};
  for (const double level : analysis.request.levels) table.head.push_back(PercentText(level));
  for (const DerivedQuantity& quantity : analysis.derived) {
    const Writer write(quantity.value, DerivedError(quantity));
    ReportRow row = {quantity.name, quantity.unit.empty() ? kReportNone : quantity.unit,
                     write(quantity.value)};
    for (const DerivedLimits& limits : quantity.limits) {
      row.emplace_back(Span(DerivedText(limits.lower, limits.lowerEnd, write),
                            DerivedText(limits.upper, limits.upperEnd, write)));
    }
    row.resize(table.head.size(), kReportNone);
    table.rows.push_back(std::move(row));
  }
  return table;
}

}  // namespace

std::vector<std::string> ErrorParagraphs(const ErrorAnalysis& analysis) {
  const ErrorRequest& request = analysis.request;
  std::string text =
      "The limits of single parameters are those of the fit at rest, whose sum of squares is " +
      ReportNumber(analysis.sum, "0.0000E+00") + " at " + std::to_string(analysis.freedom) +
      " degrees of freedom (NDF).";
  if (request.profile) {
    text +=
        " A profile has its limits where the sum of squares, minimised over all other parameters, "
        "is that of the fit times 1 + F(1, NDF) / NDF; a side is open where the sum stays below "
        "that for good.";
  }
  if (request.monteCarlo || request.bootstrap) {
    text += " Replicates have theirs at percentiles of " + std::to_string(request.replicates) +
            " fits of the curve with new noise (" +
            (request.monteCarlo ? "Monte Carlo: normal, with the rms of each dataset" : "") +
            (request.monteCarlo && request.bootstrap ? "; " : "") +
            (request.bootstrap ? "bootstrap: the residuals of each dataset, drawn again" : "") +
            "), seed " + std::to_string(request.seed) + ".";
  }
  if (analysis.stopped) text += " The analysis was stopped before its end.";
  std::vector<std::string> paragraphs = {std::move(text)};
  if (analysis.better) paragraphs.push_back(BetterSumText(analysis));
  if (!analysis.scaleRemark.empty()) paragraphs.push_back(analysis.scaleRemark);
  return paragraphs;
}

std::vector<ReportTable> ErrorTables(const ErrorAnalysis& analysis) {
  std::vector<ReportTable> tables = {LimitsTable(analysis)};
  if (!analysis.derived.empty()) tables.push_back(DerivedTable(analysis));
  return tables;
}

void AddErrorCharts(const ErrorAnalysis& analysis, std::vector<Chart>& charts) {
  for (const ParameterErrors& errors : analysis.parameters) {
    if (errors.profile && !errors.profile->curve.empty()) {
      charts.push_back(PlotProfile(analysis, errors));
    }
  }
  for (const ErrorSurface& surface : analysis.surfaces) {
    charts.push_back(PlotSurface(analysis, surface));
  }
}

}  // namespace quorvane
