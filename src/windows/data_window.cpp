#include "windows/data_window.h"

#include <QLabel>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include "base/number_format.h"
#include "plot/chart_widget.h"
#include "scan/point_plot.h"
#include "windows/fit_control_tab.h"
#include "windows/loaded_data_tab.h"
#include "windows/result_panel.h"
#include "windows/session.h"
#include "windows/source_files_tab.h"

namespace {

// Places of the tabs.
constexpr int kSourceFiles = 0;
constexpr int kLoadedData = 1;
constexpr int kFitControl = 2;
constexpr int kEdit = 3;

}  // namespace

DataWindow::DataWindow(Session& session, SessionHost& host, QWidget* parent)
    : QWidget(parent),
      session_(session),
      dataTab_(new QTabWidget),
      source_(new SourceFilesTab(session, host)),
      loaded_(new LoadedDataTab(session, host)),
      control_(new FitControlTab(session, host)),
      results_(new ResultPanel(session)),
      edit_(new ChartWidget),
      status_(new QLabel) {
  setObjectName("frmData");
  setWindowTitle(tr("Data"));
  dataTab_->setObjectName("dataTab");
  edit_->setObjectName("editTChart");
  status_->setObjectName("dataStatusBar");
  auto* control = new QSplitter(Qt::Vertical);
  control->addWidget(control_);
  control->addWidget(results_);
  control->setChildrenCollapsible(false);
  control->setStretchFactor(0, 3);
  control->setStretchFactor(1, 2);
  dataTab_->addTab(source_, tr("Source Files"));
  dataTab_->addTab(loaded_, tr("Loaded Data"));
  dataTab_->addTab(control, tr("Fit Control"));
  dataTab_->addTab(edit_, tr("Edit"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->addWidget(dataTab_, 1);
  layout->addWidget(status_);
  ConnectTabs();
  UpdateTabs();
}

void DataWindow::ConnectTabs() {
  connect(source_, &SourceFilesTab::DatasetsChanged, this, &DataWindow::AfterLoad);
  connect(loaded_, &LoadedDataTab::DatasetsChanged, this, &DataWindow::AfterStoreChange);
  connect(loaded_, &LoadedDataTab::EditRequested, this, &DataWindow::ShowDataset);
  connect(loaded_, &LoadedDataTab::SetupFitRequested, this, &DataWindow::SetUpFit);
  connect(control_, &FitControlTab::FitRequested, this, &DataWindow::FitRequested);
  connect(control_, &FitControlTab::CalcCIRequested, this, &DataWindow::CalcCIRequested);
  connect(control_, &FitControlTab::ShowCCCsRequested, this, &DataWindow::ShowCCCsRequested);
  connect(control_, &FitControlTab::FitOutdated, this, &DataWindow::FitOutdated);
  connect(control_, &FitControlTab::KDisplayChosen, this, &DataWindow::KDisplayChosen);
  connect(control_, &FitControlTab::MwDisplayChosen, this, &DataWindow::MwDisplayChosen);
  connect(edit_, &ChartWidget::PointerMoved, this, [this](double x, double y) {
    status_->setText(
        QString::fromStdString(FormatNumber(x, "##.####") + "," + FormatNumber(y, "##0.####")));
  });
  connect(dataTab_, &QTabWidget::currentChanged, status_, &QLabel::clear);
}

void DataWindow::ShowNewStore() {
  loaded_->Rebuild();
  results_->Clear();
  edit_->SetChart({});
  UpdateTabs();
  dataTab_->setCurrentIndex(kSourceFiles);
}

void DataWindow::RefreshDisplay() {
  control_->RefreshDisplay();
  results_->Redraw();
}

bool DataWindow::CommitPending() {
  return loaded_->CommitPending() &&
         (!dataTab_->isTabEnabled(kFitControl) || control_->CommitPending());
}

void DataWindow::SetCalculating(bool on) {
  dataTab_->tabBar()->setEnabled(!on);
  source_->setEnabled(!on);
  loaded_->SetCalculating(on);
  control_->SetCalculating(on);
  results_->setEnabled(!on);
}

// A new store needs "Setup Fit" before it can be fitted.
void DataWindow::UpdateTabs() {
  ForgetChosenSets(session_.Module.Setup);
  control_->SetFitDone(false);
  control_->ShowValues();  // a text that was not stored goes with the old page
  datasets_ = session_.Module.Store.NumDatasets();
  const bool any = datasets_ > 0;
  dataTab_->setTabEnabled(kLoadedData, any);
  dataTab_->setTabEnabled(kFitControl, false);
  dataTab_->setTabEnabled(kEdit, any);
  if (!any) dataTab_->setCurrentIndex(kSourceFiles);
}

void DataWindow::AfterLoad() {
  loaded_->Rebuild();
  AfterStoreChange();
}

// Unloading, renaming and subtracting a blank come here as well as loading.
void DataWindow::AfterStoreChange() {
  if (session_.Module.Store.NumDatasets() != datasets_) {
    results_->Clear();
    edit_->SetChart({});
    UpdateTabs();
  } else {
    control_->ShowValues();
    results_->Redraw();
  }
  emit DatasetsChanged();
}

void DataWindow::ShowDataset(int dataset) {
  QuorvaneModule& module = session_.Module;
  Dataset& shown = module.Store.Datasets[static_cast<std::size_t>(dataset)];
  if (!IsBlank(shown)) shown.Edited = 1.0;
  loaded_->Rebuild();
  edit_->SetChart(PlotPoints(shown, {module.GoodColor, module.DeletedColor}));
  dataTab_->setCurrentIndex(kEdit);
}

void DataWindow::SetUpFit(int model) {
  if (!control_->SetupFit(model)) return;
  results_->Clear();
  dataTab_->setTabEnabled(kFitControl, true);
  dataTab_->setCurrentIndex(kFitControl);
  GrowToPage();
}

// A sub-window does not follow when the parts of a model need more room.
void DataWindow::GrowToPage() {
  QWidget* child = parentWidget();
  if (child == nullptr || child->isMaximized() || child->isMinimized()) return;
  child->resize(child->size().expandedTo(child->minimumSizeHint()));
}
