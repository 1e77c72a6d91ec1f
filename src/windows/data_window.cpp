#include "windows/data_window.h"

#include <QAbstractButton>
#include <QLabel>
#include <QShortcut>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "base/number_format.h"
#include "plot/chart_widget.h"
#include "scan/dataset.h"
#include "windows/edit_tab.h"
#include "windows/fit_control_tab.h"
#include "windows/hint_window.h"
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

std::vector<bool> BlanksOf(const std::vector<Dataset>& datasets) {
  std::vector<bool> blanks;
  for (const Dataset& dataset : datasets) blanks.push_back(IsBlank(dataset));
  return blanks;
}

}  // namespace

DataWindow::DataWindow(Session& session, SessionHost& host, QWidget* parent)
    : QWidget(parent),
      session_(session),
      host_(host),
      dataTab_(new QTabWidget),
      source_(new SourceFilesTab(session, host)),
      loaded_(new LoadedDataTab(session, host)),
      control_(new FitControlTab(session, host)),
      results_(new ResultPanel(session)),
      edit_(new EditTab(session, host)),
      status_(new QLabel) {
  setObjectName("frmData");
  setWindowTitle(tr("Data"));
  dataTab_->setObjectName("dataTab");
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
  addActions(edit_->actions());  // their keys work on the bar of the tabs too
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->addWidget(dataTab_, 1);
  layout->addWidget(status_);
  ConnectTabs();
  ConnectKeys();
  UpdateTabs();
}

void DataWindow::ConnectTabs() {
  connect(source_, &SourceFilesTab::DatasetsChanged, this, &DataWindow::AfterLoad);
  connect(loaded_, &LoadedDataTab::DatasetsChanged, this, &DataWindow::AfterStoreChange);
  connect(loaded_, &LoadedDataTab::EditRequested, this, &DataWindow::EditDataset);
  connect(loaded_, &LoadedDataTab::Unloading, this, &DataWindow::PageClosing);
  connect(loaded_, &LoadedDataTab::SetupFitRequested, this, &DataWindow::SetUpFit);
  connect(control_, &FitControlTab::FitRequested, this, &DataWindow::FitRequested);
  connect(control_, &FitControlTab::CalcCIRequested, this, &DataWindow::CalcCIRequested);
  connect(control_, &FitControlTab::ShowCCCsRequested, this, &DataWindow::ShowCCCsRequested);
  connect(control_, &FitControlTab::FitOutdated, this, &DataWindow::FitOutdated);
  connect(control_, &FitControlTab::PageClosing, this, &DataWindow::PageClosing);
  connect(control_, &FitControlTab::KDisplayChosen, this, &DataWindow::KDisplayChosen);
  connect(control_, &FitControlTab::MwDisplayChosen, this, &DataWindow::MwDisplayChosen);
  connect(edit_, &EditTab::Edited, control_, &FitControlTab::ShowValues);
  connect(edit_, &EditTab::PointerMoved, this, [this](double x, double y) {
    status_->setText(
        QString::fromStdString(FormatNumber(x, "##.####") + "," + FormatNumber(y, "##0.####")));
  });
  connect(this, &DataWindow::DatasetsChanged, source_, &SourceFilesTab::CheckSoon);
  connect(dataTab_, &QTabWidget::currentChanged, status_, &QLabel::clear);
  connect(dataTab_, &QTabWidget::currentChanged, this, [this](int tab) {
    if (tab == kFitControl) ShowHint();
  });
}

// Ctrl and a digit open a tab, others press a button of a tab, whichever window is active.
void DataWindow::ConnectKeys() {
  const auto bind = [this](const QKeySequence& key, auto action) {
    auto* shortcut = new QShortcut(key, this);
    shortcut->setContext(Qt::ApplicationShortcut);
    connect(shortcut, &QShortcut::activated, this, [this, action] {
      if (session_.CommitPending()) action();
    });
  };
  for (int tab = 0; tab < dataTab_->count(); ++tab) {
    bind(QKeySequence(QStringLiteral("Ctrl+%1").arg(tab + 1)), [this, tab] {
      if (dataTab_->isTabEnabled(tab) && dataTab_->tabBar()->isEnabled()) {
        dataTab_->setCurrentIndex(tab);
      }
    });
  }
  const auto press = [this, &bind](const char* button, int tab, const QKeySequence& key) {
    bind(key, [this, button, tab] {
      if (!dataTab_->isTabEnabled(tab)) return;
      findChild<QAbstractButton*>(QLatin1String(button))->click();  // none while it is disabled
    });
  };
  press("cmdMultiLoad", kSourceFiles, Qt::CTRL | Qt::Key_M);
  press("cmdSetFit", kLoadedData, Qt::Key_F6);
  press("cmdFitMe", kFitControl, Qt::Key_F5);
  press("cmdPreviewFit", kFitControl, Qt::Key_F7);
}

void DataWindow::ShowNewStore() {
  loaded_->Rebuild();
  source_->CheckSoon();
  results_->Clear();
  edit_->Clear();
  UpdateTabs();
  dataTab_->setCurrentIndex(kSourceFiles);
}

void DataWindow::RefreshDisplay() {
  control_->RefreshDisplay();
  results_->Redraw();
}

// A new name comes last, because it shows the page anew.
bool DataWindow::CommitPending() {
  return (!dataTab_->isTabEnabled(kFitControl) || control_->CommitPending()) &&
         loaded_->CommitPending();
}

void DataWindow::SetCalculating(bool on) {
  dataTab_->tabBar()->setEnabled(!on);
  source_->setEnabled(!on);
  loaded_->SetCalculating(on);
  control_->SetCalculating(on);
  results_->setEnabled(!on);
  edit_->SetCalculating(on);
}

PrintContent DataWindow::Printed() const {
  const ChartWidget& chart = edit_->ShownChart();
  if (dataTab_->currentIndex() != kEdit || chart.GetChart().panels.empty()) return {};
  return &chart;
}

// A new store needs "Setup Fit" before it can be fitted.
void DataWindow::UpdateTabs() {
  ForgetChosenSets(session_.Module.Setup);
  control_->SetFitDone(false);
  control_->ShowValues();  // a text that was not stored goes with the old page
  blanks_ = BlanksOf(session_.Module.Store.Datasets);
  const bool any = !blanks_.empty();
  dataTab_->setTabEnabled(kLoadedData, any);
  if (any && dataTab_->currentIndex() == kFitControl) dataTab_->setCurrentIndex(kLoadedData);
  dataTab_->setTabEnabled(kFitControl, false);
  dataTab_->setTabEnabled(kEdit, any);
  if (!any) dataTab_->setCurrentIndex(kSourceFiles);
}

void DataWindow::AfterLoad() {
  loaded_->Rebuild();
  AfterStoreChange();
}

// Unloading, renaming and subtracting a blank come here as well as loading. A dataset that became a
// blank, or is none any more, changes what can be fitted as one that came or went does.
void DataWindow::AfterStoreChange() {
  const std::vector<bool> blanks = BlanksOf(session_.Module.Store.Datasets);
  if (blanks.size() < blanks_.size()) edit_->Clear();  // positions have moved
  edit_->Redraw();
  if (blanks != blanks_) {
    emit PageClosing();
    results_->Clear();
    UpdateTabs();
  } else {
    control_->ShowValues();
    results_->Redraw();
  }
  emit DatasetsChanged();
}

void DataWindow::EditDataset(int dataset) {
  edit_->ShowDataset(dataset);
  loaded_->Rebuild();  // its button tells that it was opened
  dataTab_->setCurrentIndex(kEdit);
}

void DataWindow::ShowHint() {
  if (hintShown_ || !session_.Module.ShowHints) return;
  hintShown_ = true;
  auto* hint = new HintWindow(session_, host_, this);
  hint->setAttribute(Qt::WA_DeleteOnClose);
  hint->adjustSize();
  const int left = (width() - hint->width()) / 2;
  hint->move(mapToGlobal(QPoint(left, height() - 2 * hint->height())));  // below the table
  hint->show();
}

void DataWindow::SetUpFit(int model) {
  if (!session_.CommitPending() || !control_->SetupFit(model)) return;
  results_->Clear();
  dataTab_->setTabEnabled(kFitControl, true);
  dataTab_->setCurrentIndex(kFitControl);
  QTimer::singleShot(0, this, &DataWindow::GrowToPage);  // its size is known once it is laid out
}

// A sub-window does not follow when the parts of a model need more room.
void DataWindow::GrowToPage() {
  QWidget* child = parentWidget();
  if (child == nullptr || child->isMaximized() || child->isMinimized()) return;
  child->resize(child->size().expandedTo(child->minimumSizeHint()));
}
