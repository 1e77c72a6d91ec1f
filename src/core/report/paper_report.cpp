#include "core/report/paper_report.h"

#include "base/clock.h"
#include "core/report/report_errors.h"
#include "core/report/report_files.h"
#include "core/report/report_methods.h"
#include "core/report/report_quality.h"
#include "core/report/report_results.h"
#include "core/report/report_solution.h"
#include "core/report/report_view.h"

namespace quorvane {

PaperReport MakePaperReport(const QuorvaneModule& module) {
  const ReportView view(module);
  PaperReport report;
  report.title = "Analysis of sedimentation equilibrium: " + view.ModelName();
  report.origin = "Quorvane " + std::string(ProgramVersion()) + ", " + DateAndTimeText();
  report.sections = {MethodsSection(view), ResultsSection(view), QualitySection(view),
                     FilesSection(view)};
  if (std::optional<ReportSection> solution = SolutionSection(view)) {
    report.sections.insert(report.sections.begin() + 1, std::move(*solution));  // behind methods
  }
  for (int set = 0; set < view.fit.NumFitSets; ++set) {
    report.charts.push_back(
        PlotDataFit(view.fit, view.record.datasets, set, module.Preferences.Plots));
  }
  if (view.record.errors) AddErrorCharts(*view.record.errors, report.charts);
  return report;
}

}  // namespace quorvane
