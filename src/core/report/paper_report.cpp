#include "core/report/paper_report.h"

#include "base/clock.h"
#include "core/report/report_comparison.h"
#include "core/report/report_errors.h"
#include "core/report/report_figure.h"
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
  report.sections = {MethodsSection(view)};
  const auto addIfAny = [&report](std::optional<ReportSection> section) {
    if (section) report.sections.push_back(std::move(*section));
  };
  addIfAny(SolutionSection(view));
  report.sections.push_back(ResultsSection(view));
  report.sections.push_back(QualitySection(view));
  addIfAny(ComparisonSection(view));
  report.sections.push_back(FilesSection(view));
  AddFigure(view, report);
  if (view.record.errors) AddErrorCharts(*view.record.errors, report.charts);
  return report;
}

}  // namespace quorvane
