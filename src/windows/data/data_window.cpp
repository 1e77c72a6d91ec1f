#include "windows/data/data_window.h"

#include <QLabel>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "base/number_format.h"
#include "plot/chart_widget.h"
#include "scan/dataset.h"
#include "windows/controls/child_area.h"
#include "windows/controls/child_window.h"
#include "windows/controls/page_scroll.h"
#include "windows/data/edit_tab.h"
#include "windows/data/loaded_data_tab.h"
#include "windows/data/source_files_tab.h"
#include "windows/page/fit_control_tab.h"
#include "windows/page/hint_window.h"
#include "windows/page/result_panel.h"
#include "windows/session/session.h"

namespace quorvane {

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
  control->setStretchFactor(0, 2);
  control->setStretchFactor(1, 1);
  dataTab_->addTab(new PageScroll(source_), tr("Source Files"));
  dataTab_->addTab(new PageScroll(loaded_), tr("Loaded Data"));
  dataTab_->addTab(new PageScroll(control), tr("Fit Control"));
  dataTab_->addTab(new PageScroll(edit_), tr("Edit"));
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
  connect(control_, &FitControlTab::FitToRestRequested, this, &DataWindow::FitToRestRequested);
  connect(control_, &FitControlTab::CalcCIRequested, this, &DataWindow::CalcCIRequested);
  connect(control_, &FitControlTab::ShowCCCsRequested, this, &DataWindow::ShowCCCsRequested);
  connect(control_, &FitControlTab::FitOutdated, this, &DataWindow::FitOutdated);
  connect(control_, &FitControlTab::PageClosing, this, &DataWindow::PageClosing);
  connect(control_, &FitControlTab::KDisplayChosen, this, &DataWindow::KDisplayChosen);
  connect(control_, &FitControlTab::MwDisplayChosen, this, &DataWindow::MwDisplayChosen);
  connect(edit_, &EditTab::Edited, control_, &FitControlTab::ShowValues);
  connect(edit_, &EditTab::Opened, loaded_, &LoadedDataTab::ShowEditStates);
  connect(edit_, &EditTab::PointerMoved, this, [this](double x, double y) {
    status_->setText(
        QString::fromStdString(FormatNumber(x, "##.####") + "," + FormatNumber(y, "##0.####")));
  });
  connect(this, &DataWindow::DatasetsChanged, source_, &SourceFilesTab::CheckSoon);
  connect(dataTab_, &QTabWidget::currentChanged, status_, &QLabel::clear);
  connect(dataTab_, &QTabWidget::currentChanged, this, &DataWindow::FollowTab);
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
      if (!dataTab_->isTabEnabled(tab) || !dataTab_->tabBar()->isEnabled()) return;
      dataTab_->setCurrentIndex(tab);
      ShowChild(*this);  // the log may stand before it
    });
  }
  const auto press = [this, &bind](QPushButton& button, int tab, const QKeySequence& key) {
    bind(key, [this, &button, tab] {
      if (dataTab_->isTabEnabled(tab)) button.click();  // nothing while it is disabled
    });
  };
  press(source_->LoadButton(), kSourceFiles, Qt::CTRL | Qt::Key_M);
  press(loaded_->SetupButton(), kLoadedData, Qt::Key_F6);
  press(control_->FitButton(), kFitControl, Qt::Key_F5);
  press(control_->PreviewButton(), kFitControl, Qt::Key_F7);
}

void DataWindow::ShowNewStore() {
  loaded_->Rebuild();
  source_->ShowSettings();
  source_->CheckSoon();
  results_->Clear();
  edit_->Clear();
  FitSetup page = session_.Module.Setup;
  UpdateTabs();
  if (page.NumFitSets == 0) {
    dataTab_->setCurrentIndex(kSourceFiles);
    return;
  }
  session_.Module.Setup = std::move(page);
  control_->ShowPage();
  OpenPage();
}

void DataWindow::ShowChangedPage(bool setUp) {
  loaded_->Rebuild();
  loaded_->ShowModel();
  AfterStoreChange();
  if (!setUp) return;
  results_->Clear();
  control_->ShowPage();
  OpenPage();
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
  // Unless the pictures of the fit, or the user, have taken it to another window.
  const QWidget* focus = window()->focusWidget();
  if (!on && (focus == nullptr || isAncestorOf(focus))) control_->RestoreFocus();
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
  dataTab_->setCurrentIndex(kEdit);
}

// The hint comes and goes with its tab until it is closed.
void DataWindow::FollowTab(int tab) {
  if (tab == kFitControl && hint_ == nullptr) ShowHint();
  if (hint_ != nullptr) hint_->setVisible(tab == kFitControl);
}

void DataWindow::ShowHint() {
  if (hintShown_ || !session_.Module.Preferences.ShowHints) return;
  hintShown_ = true;
  hint_ = new HintWindow(session_, host_, this);
  hint_->setAttribute(Qt::WA_DeleteOnClose);
  hint_->adjustSize();
  const int left = (width() - hint_->width()) / 2;
  hint_->move(mapToGlobal(QPoint(left, height() - 2 * hint_->height())));  // below the table
}

void DataWindow::SetUpFit() {
  if (!session_.CommitPending() || !control_->SetupFit(*session_.Module.ChosenModel)) return;
  results_->Clear();
  OpenPage();
}

void DataWindow::OpenPage() {
  dataTab_->setTabEnabled(kFitControl, true);
  dataTab_->setCurrentIndex(kFitControl);
  QTimer::singleShot(0, this, &DataWindow::GrowToPage);  // its size is known once it is laid out
}

// A sub-window does not follow when the parts of a model need more room; there may be some.
void DataWindow::GrowToPage() {
  auto* child = qobject_cast<QMdiSubWindow*>(parentWidget());
  if (child == nullptr || child->isMaximized() || child->isMinimized()) return;
  if (auto* area = qobject_cast<ChildArea*>(child->mdiArea())) {
    area->Grow(*child, Page(kFitControl)->Lack());
  }
}

PageScroll* DataWindow::Page(int tab) const {
  return qobject_cast<PageScroll*>(dataTab_->widget(tab));
}

QSize DataWindow::WholeSize() const {
  QSize need;
  for (int tab = 0; tab < dataTab_->count(); ++tab) need = need.expandedTo(Page(tab)->Need());
  return minimumSizeHint() - Page(0)->minimumSizeHint() + need;
}

}  // namespace quorvane
