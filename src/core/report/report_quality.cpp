#include "core/report/report_quality.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/arithmetic.h"
#include "core/report/report_view.h"
#include "fit/levmarq.h"
#include "stats/fit_quality.h"

namespace quorvane {

namespace {

ReportTable WholeFit(const ReportView& view) {
  ReportTable table{.title = "The whole fit", .head = {}, .rows = {}};
  const auto count = [&](const char* name, int number) {
    table.rows.push_back({name, std::to_string(number)});
  };
  count(view.LoadsCount() ? "Points, two a dataset of mass conservation" : "Points",
        view.fit.FitNumPoints);
  count("Fitted parameters", view.statistics.fitted);
  count("Parameters held or linked", view.fit.FitMA - view.statistics.fitted);
  count("Degrees of freedom", view.statistics.freedom);
  count("Iterations", view.record.iterations);
  table.rows.push_back(
      {"Sum of squared residuals", ReportNumber(AcceptedSum(view.fit), "0.0000E+00")});
  table.rows.push_back({"Variance", ReportNumber(view.statistics.variance, "0.0000E+00")});
  table.rows.push_back(
      {"Root mean square deviation",
       ReportNumber(std::sqrt(view.statistics.variance), "0.000E+00") + " signal units"});
  if (const auto& rest = view.record.rest) {
    table.rows.push_back({"At rest", !rest->atRest ? "not known" : *rest->atRest ? "yes" : "no"});
  }
  return table;
}

double LargestResidual(const ReportView& view, int d) {
  double largest = 0.0;
  const int first = view.fit.SetFirstPoint(d);
  for (int i = first; i < first + view.fit.SetPointCount(d); ++i) {
    if (view.fit.PointKind(i) != 0) continue;
    largest = std::max(largest, std::fabs(view.fit.FitY(i) - view.fit.FitYCalc(i)));
  }
  return largest;
}

// Everything that is said of the fit of a single dataset stands in this table.
ReportTable QualityOfSets(const ReportView& view, const FitQuality& quality) {
  ReportTable table{.title = "Each dataset",
                    .head = {"No.", "Dataset", "Points", "RMS residual", "Largest residual",
                             "Share of squares", "Runs", "Z of runs", "Durbin\u2013Watson"},
                    .rows = {}};
  const auto known = [](const std::optional<double>& value) {
    return value.has_value() ? ReportNumber(*value, "0.00") : kReportNone;
  };
  for (const SetQuality& set : quality.sets) {
    table.rows.push_back({std::to_string(set.dataset), NameOf(view.DatasetOf(set.dataset)),
                          std::to_string(set.points), ReportNumber(set.rms, "0.000E+00"),
                          ReportNumber(LargestResidual(view, set.dataset), "0.000E+00"),
                          ReportNumber(100.0 * set.share, "0.0") + " %",
                          std::to_string(set.runs.runs), known(set.runs.z),
                          known(set.durbinWatson)});
  }
  return table;
}

}  // namespace

ReportSection QualitySection(const ReportView& view) {
  ReportSection section{
      .title = "Quality of the fit", .paragraphs = {}, .tables = {WholeFit(view)}};
  try {
    FitQuality quality = CalcFitQuality(view.fit, view.record.page, view.record.constantsSet,
                                        view.module.Preferences.CriticalCCCValue);
    for (int d = 1; d <= view.fit.NumFitSets; ++d) {  // as they are numbered here
      quality.sets[static_cast<std::size_t>(d - 1)].dataset = d;
    }
    section.list = QualityRemarks(quality, view.record.rest);
    section.tables.push_back(QualityOfSets(view, quality));
  } catch (const ArithmeticFault&) {
    section.paragraphs = {"The quality of the datasets cannot be computed from this fit."};
  }
  return section;
}

}  // namespace quorvane
