#include "windows/match/match_window.h"

#include <QLabel>
#include <QStatusBar>
#include <QStyle>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include "base/arithmetic.h"
#include "base/clock.h"
#include "match/match_report.h"
#include "windows/controls/busy_pointer.h"
#include "windows/controls/control_names.h"
#include "windows/match/match_deviation_tab.h"
#include "windows/match/match_load_tab.h"
#include "windows/match/match_range_tab.h"
#include "windows/match/match_report_tab.h"
#include "windows/match/match_rms_tab.h"

namespace quorvane {

namespace {

// Places of the tabs.
constexpr int kSetRange = 1;
constexpr int kResults = 2;
constexpr int kDeviations = 3;
constexpr int kRms = 4;

}  // namespace

MatchWindow::MatchWindow(Session& session, Host& host, QWidget* parent)
    : QWidget(parent), session_(session), host_(host) {
  BuildWidgets();
  ConnectSignals();
  OpenResults(false);
  save_->setEnabled(false);
}

void MatchWindow::BuildWidgets() {
  setObjectName("frmMatch");
  setWindowTitle(tr("Match"));
  SSTab1_ = Named(new QTabWidget, "SSTab1");
  load_ = new MatchLoadTab(session_);
  range_ = new MatchRangeTab;
  report_ = new MatchReportTab(session_);
  deviations_ = new MatchDeviationTab(series_, result_, session_.Ask);
  rms_ = new MatchRmsTab(result_);
  SSTab1_->addTab(load_, tr("Load Files"));
  SSTab1_->addTab(range_, tr("Set Range"));
  SSTab1_->addTab(report_, tr("Results"));
  SSTab1_->addTab(deviations_, tr("Dev. Plots"));
  SSTab1_->addTab(rms_, tr("RMS vs Time"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 0);
  layout->setSpacing(0);
  layout->addWidget(SSTab1_, 1);
  layout->addWidget(BuildStatusBar());
}

QStatusBar* MatchWindow::BuildStatusBar() {
  status_ = Named(new QLabel, "matchStatusPanel");
  status_->setTextFormat(Qt::PlainText);
  save_ = Named(new QToolButton, "matchSavePanel");
  save_->setText(tr("Save"));
  save_->setToolTip(tr("Save the report"));
  save_->setIcon(style()->standardIcon(QStyle::SP_DialogSaveButton));
  save_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  save_->setAutoRaise(true);
  auto* bar = Named(new QStatusBar, "matchStatusBar");
  bar->setSizeGripEnabled(false);
  bar->addWidget(status_, 1);
  bar->addPermanentWidget(save_);
  return bar;
}

void MatchWindow::ConnectSignals() {
  connect(load_, &MatchLoadTab::LoadRequested, this, [this] { LoadSeries(load_->ChooseFiles()); });
  connect(range_, &MatchRangeTab::MatchRequested, this, &MatchWindow::Match);
  connect(range_, &MatchRangeTab::PointerMoved, status_, &QLabel::setText);
  connect(SSTab1_, &QTabWidget::currentChanged, status_, &QLabel::clear);
  connect(save_, &QToolButton::clicked, this, &MatchWindow::SaveReport);
}

QSize MatchWindow::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 150, fontMetrics().height() * 40};
}

void MatchWindow::OpenResults(bool open) {
  for (const int tab : {kResults, kDeviations, kRms}) SSTab1_->setTabEnabled(tab, open);
}

void MatchWindow::LoadSeries(std::vector<std::filesystem::path> paths) {
  const BusyPointer busy;
  const MatchLoadOutcome outcome =
      LoadMatchFiles(std::move(paths), load_->Settings(), series_, host_);
  if (outcome != MatchLoadOutcome::kLoaded) return;
  result_ = {};
  load_->ShowSeries(series_);
  range_->ShowSeries(series_);
  deviations_->Clear();
  rms_->Clear();
  OpenResults(false);
  SSTab1_->setCurrentIndex(kSetRange);
  status_->setText(QString::fromStdString(SpeedRemark(series_)));
}

void MatchWindow::Match() {
  const BusyPointer busy;
  const FittingRange range = range_->Range();
  const auto refuse = [&](const std::exception& fault) {
    host_.ShowMessage("", WhyNotMatched(fault.what(), range), MessageIcon::kExclamation);
  };
  try {
    MatchResult result = DoMatch(series_, range);
    const MatchReport report = WriteMatchReport(series_, result, DateAndTimeText());
    result_ = std::move(result);
    report_->Append(report);
    ShowMatch();
  } catch (const ArithmeticFault& fault) {
    refuse(fault);
  } catch (const SubscriptFault& fault) {
    refuse(fault);
  }
}

void MatchWindow::ShowMatch() {
  deviations_->ShowMatch();
  rms_->ShowMatch();
  save_->setEnabled(true);
  OpenResults(true);
  SSTab1_->setCurrentIndex(kResults);
  status_->setText(QString::fromStdString(SpeedRemark(series_)));
}

void MatchWindow::SaveReport() {
  const QString name = session_.Ask.SaveFile(
      this, {tr("Save"), load_->Folder(), tr("Rich Text File (*.rtf)"), "Match.rtf"});
  if (name.isEmpty()) return;
  try {
    const BusyPointer busy;
    WriteWholeFile(ToPath(name), report_->ToRtf());
    status_->setText(tr("Saved %1").arg(name));
  } catch (const FileFault& fault) {
    session_.Ask.ShowMessage(this, {}, QString::fromUtf8(fault.what()), MessageIcon::kExclamation);
  }
}

PrintContent MatchWindow::Printed() const {
  switch (SSTab1_->currentIndex()) {
    case kSetRange:
      return range_->Plot();
    case kResults:
      return report_->Text();
    case kDeviations:
      return deviations_->Plot();
    default:
      return {};
  }
}

}  // namespace quorvane
