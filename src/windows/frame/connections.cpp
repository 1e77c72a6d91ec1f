#include "windows/frame/connections.h"

#include <QToolButton>

#include "windows/commands/error_commands.h"
#include "windows/commands/experiment_commands.h"
#include "windows/commands/fit_commands.h"
#include "windows/commands/job_commands.h"
#include "windows/commands/option_commands.h"
#include "windows/commands/print_commands.h"
#include "windows/commands/report_commands.h"
#include "windows/commands/rest_judge.h"
#include "windows/controls/child_window.h"
#include "windows/data/data_window.h"
#include "windows/data/edit_tab.h"
#include "windows/data/source_files_tab.h"
#include "windows/errors/correlation_window.h"
#include "windows/errors/error_analysis_window.h"
#include "windows/errors/quality_window.h"
#include "windows/fits/comparison_window.h"
#include "windows/fits/fits_window.h"
#include "windows/frame/main_menus.h"
#include "windows/graphs/figure_window.h"
#include "windows/graphs/graphs_window.h"
#include "windows/log/log_window.h"
#include "windows/page/fit_control_tab.h"
#include "windows/page/preview_window.h"
#include "windows/page/rest_line.h"
#include "windows/page/result_panel.h"
#include "windows/page/set_ref_conc_window.h"
#include "windows/session/autosave.h"
#include "windows/session/session.h"
#include "windows/session/unsaved_mark.h"

namespace quorvane {

namespace {

void ConnectWindows(const FrameParts& parts) {
  auto& [session, host, log, data, graphs, frame] = parts.windows;
  MainMenus* menus = &parts.menus;
  FitCommands* fits = &parts.commands.fits;
  OptionCommands* options = &parts.commands.options;
  QObject::connect(&log, &LogWindow::Clicked, fits, &FitCommands::Stop);
  QObject::connect(&log, &LogWindow::Changed, menus, [&module = session.Module, menus] {
    module.ExperimentOpen = true;
    menus->SetLogWritten(true);
  });
  QObject::connect(&data, &DataWindow::FitRequested, fits, &FitCommands::RunFit);
  QObject::connect(&data, &DataWindow::FitToRestRequested, fits, &FitCommands::FitToRest);
  QObject::connect(&data, &DataWindow::DatasetsChanged, menus, &MainMenus::Update);
  QObject::connect(&data, &DataWindow::KDisplayChosen, options, &OptionCommands::SetKFormat);
  QObject::connect(&data, &DataWindow::MwDisplayChosen, options, &OptionCommands::SetBuoyant);
  QObject::connect(&data.FitControl(), &FitControlTab::ConstantRequested, options,
                   &OptionCommands::AskConstant);
  QObject::connect(&parts.commands.experiments, &ExperimentCommands::ExperimentChanged, menus,
                   [&session = session, &graphs = graphs, menus] {
                     graphs.Refresh();
                     if (session.Module.NumGraphs() == 0) graphs.parentWidget()->hide();
                     menus->Update();
                   });
}

void ConnectErrorAnalysis(const FrameParts& parts) {
  DataWindow* data = &parts.windows.data;
  ErrorCommands* errors = &parts.commands.errors;
  FitCommands* fits = &parts.commands.fits;
  CorrelationWindow* coefficients = &parts.coefficients;
  QObject::connect(data, &DataWindow::CalcCIRequested, errors, &ErrorCommands::OpenConfidence);
  QObject::connect(data, &DataWindow::ShowCCCsRequested, errors, &ErrorCommands::ShowCoefficients);
  QObject::connect(data, &DataWindow::FitOutdated, errors, &ErrorCommands::CloseForFit);
  QObject::connect(fits, &FitCommands::FitFinished, errors, &ErrorCommands::FollowFit);
  QObject::connect(data, &DataWindow::FitOutdated, &parts.quality, &QualityWindow::Clear);
  QObject::connect(data, &DataWindow::FitOutdated, &parts.analysis, &ErrorAnalysisWindow::Outdate);
  QObject::connect(data, &DataWindow::DatasetsChanged, errors, &ErrorCommands::RefreshQuality);
  QObject::connect(&parts.commands.options, &OptionCommands::ConstantsChanged, errors,
                   &ErrorCommands::RefreshQuality);
  QObject::connect(fits, &FitCommands::CalculatingChanged, errors, &ErrorCommands::CloseForFit);
  QObject::connect(data, &DataWindow::FitOutdated, &parts.menus, &MainMenus::Update);
  QObject::connect(&parts.commands.experiments, &ExperimentCommands::ExperimentChanged,
                   coefficients->parentWidget(), &QWidget::hide);
  QObject::connect(coefficients, &CorrelationWindow::LogRequested, errors,
                   &ErrorCommands::LogCoefficients);
  QObject::connect(coefficients, &CorrelationWindow::PrintRequested, &parts.commands.prints,
                   [coefficients, prints = &parts.commands.prints] {
                     prints->Print(coefficients->Printed(), coefficients->windowTitle());
                   });
}

// Every finished fit is judged: is it at rest?
void ConnectJudge(const FrameParts& parts) {
  RestJudge* judge = &parts.judge;
  DataWindow* data = &parts.windows.data;
  RestLine* line = &data->FitControl().Rest();
  QObject::connect(&parts.commands.fits, &FitCommands::FitFinished, judge, &RestJudge::Judge);
  QObject::connect(data, &DataWindow::FitOutdated, judge, &RestJudge::GiveUp);
  QObject::connect(judge, &RestJudge::Judging, line, &RestLine::ShowJudging);
  QObject::connect(judge, &RestJudge::Judged, line, [line, &module = parts.windows.session.Module] {
    line->ShowVerdict(*module.LastFit->rest);
  });
  QObject::connect(judge, &RestJudge::Judged, &parts.commands.errors,
                   &ErrorCommands::RefreshQuality);
  QObject::connect(&parts.commands.reports, &ReportCommands::Saving, judge, &RestJudge::Await);
}

// What looks at the models without a fit, and is closed before the page loses its datasets.
void ConnectEvaluations(const FrameParts& parts) {
  DataWindow* data = &parts.windows.data;
  FitControlTab* page = &data->FitControl();
  PreviewWindow* preview = &parts.preview;
  SetRefConcWindow* setRefConc = &parts.setRefConc;
  QObject::connect(page, &FitControlTab::PreviewRequested, preview, &PreviewWindow::Preview);
  QObject::connect(page, &FitControlTab::RefConcRequested, setRefConc, &SetRefConcWindow::Adjust);
  QObject::connect(setRefConc, &SetRefConcWindow::Began, page, [page] { page->SetFitDone(false); });
  QObject::connect(setRefConc, &SetRefConcWindow::Changed, page, &FitControlTab::ShowRow);
  QObject::connect(&parts.commands.fits, &FitCommands::CalculatingChanged, setRefConc,
                   [setRefConc](bool on) {
                     if (on) setRefConc->Keep();  // the fit starts from the values of the page
                   });
  QObject::connect(data, &DataWindow::PageClosing, setRefConc, &SetRefConcWindow::Cancel);
  QObject::connect(&data->Editing(), &EditTab::Edited, setRefConc, &SetRefConcWindow::Redraw);
  QObject::connect(data, &DataWindow::DatasetsChanged, setRefConc, &SetRefConcWindow::Redraw);
  QObject::connect(data, &DataWindow::PageClosing, preview, [preview] { CloseChild(*preview); });
}

// The report of a fit, and the plot of datasets that follows all that happens to them.
void ConnectReports(const FrameParts& parts) {
  DataWindow* data = &parts.windows.data;
  FigureWindow* figure = &parts.figure;
  QObject::connect(&parts.commands.reports, &ReportCommands::Saved, data,
                   [data] { data->SourceFiles().FollowSave(); });
  QObject::connect(&parts.menus, &MainMenus::FigureChosen, figure,
                   [figure] { ShowChild(*figure); });
  QObject::connect(data, &DataWindow::DatasetsChanged, figure, &FigureWindow::Refresh);
  QObject::connect(&data->Editing(), &EditTab::Edited, figure, &FigureWindow::Refresh);
  QObject::connect(&parts.commands.fits, &FitCommands::CalculationEnded, figure,
                   &FigureWindow::Refresh);
  QObject::connect(&parts.commands.experiments, &ExperimentCommands::ExperimentChanged, figure,
                   [figure, &module = parts.windows.session.Module] {
                     figure->Refresh();
                     if (module.Store.Datasets.empty()) CloseChild(*figure);
                   });
}

void ConnectJobs(const FrameParts& parts) {
  const JobCommands* jobs = &parts.commands.jobs;
  DataWindow* data = &parts.windows.data;
  QObject::connect(jobs, &JobCommands::Saved, data, [data] { data->SourceFiles().FollowSave(); });
  QObject::connect(&parts.commands.experiments, &ExperimentCommands::JobDropped, jobs,
                   &JobCommands::Apply);
}

// The list of fits follows all that makes or changes one.
void ConnectFits(const FrameParts& parts) {
  FitsWindow* list = &parts.fits;
  ComparisonWindow* comparison = &parts.comparison;
  FitCommands* fits = &parts.commands.fits;
  QObject::connect(&parts.menus, &MainMenus::FitsChosen, list, [list] { ShowChild(*list); });
  QObject::connect(&parts.windows.data.Results().FitsButton(), &QToolButton::clicked, list,
                   [list] { ShowChild(*list); });
  QObject::connect(fits, &FitCommands::FitFinished, list, &FitsWindow::Refresh);
  QObject::connect(fits, &FitCommands::CalculatingChanged, list, &FitsWindow::Refresh);
  QObject::connect(fits, &FitCommands::CalculationEnded, list, &FitsWindow::Refresh);
  QObject::connect(&parts.judge, &RestJudge::Judged, list, &FitsWindow::Refresh);
  QObject::connect(&parts.commands.experiments, &ExperimentCommands::ExperimentChanged, list,
                   [list, comparison] {
                     list->Refresh();
                     CloseChild(*comparison);
                   });
  QObject::connect(list, &FitsWindow::RestoreRequested, fits, &FitCommands::Restore);
  QObject::connect(list, &FitsWindow::CompareRequested, comparison,
                   [comparison](const std::vector<std::size_t>& places) {
                     comparison->Compare(places);
                     ShowChild(*comparison);
                   });
}

void ConnectAutosave(const FrameParts& parts) {
  const ExperimentCommands* experiments = &parts.commands.experiments;
  Autosave* autosave = &parts.autosave;
  UnsavedMark* unsaved = &parts.unsaved;
  QObject::connect(experiments, &ExperimentCommands::NothingUnsaved, autosave, &Autosave::Clean);
  QObject::connect(&parts.commands.fits, &FitCommands::CalculatingChanged, autosave,
                   [autosave](bool on) {
                     if (on) autosave->Keep();
                   });
  QObject::connect(experiments, &ExperimentCommands::NothingUnsaved, unsaved, &UnsavedMark::Clean);
  QObject::connect(&parts.windows.log, &LogWindow::Changed, unsaved, &UnsavedMark::LogChanged);
  QObject::connect(&parts.windows.data, &DataWindow::DatasetsChanged, unsaved, &UnsavedMark::Look);
}

}  // namespace

void ConnectParts(const FrameParts& parts) {
  ConnectWindows(parts);
  ConnectErrorAnalysis(parts);
  ConnectJudge(parts);
  ConnectEvaluations(parts);
  ConnectReports(parts);
  ConnectAutosave(parts);
  ConnectJobs(parts);
  ConnectFits(parts);
}

}  // namespace quorvane
