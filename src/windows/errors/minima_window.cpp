#include "windows/errors/minima_window.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QVBoxLayout>
#include <limits>

#include "base/number_format.h"
#include "base/text.h"
#include "core/finished_fit.h"
#include "fit/models.h"
#include "stats/confidence.h"
#include "windows/controls/control_names.h"

namespace quorvane {

namespace {

QTableWidgetItem* Cell(const QString& text) {
  auto* cell = new QTableWidgetItem(text);
  cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  return cell;
}

QString Number(double value, const char* pattern) {
  return QString::fromStdString(FormatNumber(value, pattern));
}

}  // namespace

MinimaWindow::MinimaWindow(QWidget* parent) : QDialog(parent) {
  BuildWidgets();
  ConnectSignals();
}

void MinimaWindow::BuildWidgets() {
  setObjectName("frmMinima");
  setWindowTitle(tr("Check Minimum"));
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(BuildHead());
  lblMinima_ =
      Named(new QLabel(tr("Repeats the fit from start values scattered around its result.")),
            "lblMinima");
  lblMinima_->setWordWrap(true);
  layout->addWidget(lblMinima_);
  gridMinima_ = Named(new QTableWidget, "gridMinima");
  gridMinima_->setAccessibleName(tr("Minima found"));
  gridMinima_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  gridMinima_->setSelectionBehavior(QAbstractItemView::SelectRows);
  gridMinima_->setSelectionMode(QAbstractItemView::SingleSelection);
  gridMinima_->setTabKeyNavigation(false);
  gridMinima_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
  layout->addWidget(gridMinima_, 1);
  layout->addLayout(BuildFoot());
  resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 20);
}

// The choices and what runs with them.
QLayout* MinimaWindow::BuildHead() {
  const MinimumRequest defaults;
  spnStarts_ = Named(new QSpinBox, "spnStarts");
  spnStarts_->setRange(1, 1000);
  spnStarts_->setValue(defaults.starts);
  spnSeed_ = Named(new QSpinBox, "spnSeed");
  spnSeed_->setRange(0, std::numeric_limits<int>::max());
  spnSeed_->setValue(static_cast<int>(defaults.seed));
  spnSeed_->setToolTip(tr("The same seed gives the same starts"));
  cmdCheckMinimum_ = Named(new QPushButton(tr("Check")), "cmdCheckMinimum");
  cmdCheckMinimum_->setDefault(true);
  cmdStopMinima_ = Named(new QPushButton(tr("Stop")), "cmdStopMinima");
  cmdStopMinima_->setEnabled(false);
  auto* startsLabel = new QLabel(tr("S&tarts"));
  startsLabel->setBuddy(spnStarts_);
  auto* seedLabel = new QLabel(tr("S&eed"));
  seedLabel->setBuddy(spnSeed_);
  auto* head = new QHBoxLayout;
  for (QWidget* part : {static_cast<QWidget*>(startsLabel), static_cast<QWidget*>(spnStarts_),
                        static_cast<QWidget*>(seedLabel), static_cast<QWidget*>(spnSeed_)}) {
    head->addWidget(part);
  }
  head->addStretch();
  head->addWidget(cmdCheckMinimum_);
  head->addWidget(cmdStopMinima_);
  return head;
}

QLayout* MinimaWindow::BuildFoot() {
  cmdUseAsStart_ = Named(new QPushButton(tr("Use as Start")), "cmdUseAsStart");
  cmdUseAsStart_->setToolTip(
      tr("Puts the values of the selected minimum into the page; then press \"Fit\""));
  cmdUseAsStart_->setAutoDefault(false);
  cmdUseAsStart_->setEnabled(false);
  cmdClose_ = Named(new QPushButton(tr("Close")), "cmdClose");
  cmdClose_->setAutoDefault(false);
  auto* foot = new QHBoxLayout;
  foot->addStretch();
  foot->addWidget(cmdUseAsStart_);
  foot->addWidget(cmdClose_);
  return foot;
}

void MinimaWindow::ConnectSignals() {
  connect(cmdCheckMinimum_, &QPushButton::clicked, this, [this] {
    emit CheckRequested(
        {.starts = spnStarts_->value(), .seed = static_cast<std::uint64_t>(spnSeed_->value())});
  });
  connect(cmdStopMinima_, &QPushButton::clicked, this, &MinimaWindow::StopRequested);
  connect(gridMinima_, &QTableWidget::itemSelectionChanged, this, &MinimaWindow::UpdateUse);
  connect(cmdUseAsStart_, &QPushButton::clicked, this, [this] {
    emit UseRequested(
        outcome_.minima[static_cast<std::size_t>(gridMinima_->currentRow())].parameters);
  });
  connect(cmdClose_, &QPushButton::clicked, this, &QDialog::reject);
}

void MinimaWindow::SetRunning(bool on) {
  running_ = on;
  for (QWidget* part : {static_cast<QWidget*>(spnStarts_), static_cast<QWidget*>(spnSeed_),
                        static_cast<QWidget*>(cmdCheckMinimum_), static_cast<QWidget*>(gridMinima_),
                        static_cast<QWidget*>(cmdClose_)}) {
    part->setEnabled(!on);
  }
  cmdStopMinima_->setEnabled(on);
  if (on) {
    lblMinima_->setText(tr("Fitting from scattered starts. Esc or \"Stop\" ends it."));
    cmdUseAsStart_->setEnabled(false);
    cmdStopMinima_->setFocus();
  }
}

void MinimaWindow::ShowOutcome(std::shared_ptr<const FinishedFit> fit,
                               const MinimumRequest& request, const MinimumOutcome& outcome) {
  outcome_ = outcome;
  fit_ = std::move(fit);
  lblMinima_->setText(QString::fromStdString(MinimumSummary(outcome, request)));
  FillRows(fit_->state);
  if (outcome.better) gridMinima_->selectRow(static_cast<int>(*outcome.better));
  UpdateUse();
}

void MinimaWindow::FillRows(const FitState& fit) {
  QStringList heads = {tr("Sum of squares"), tr("rms"), tr("Starts"), tr("This fit")};
  for (const ModelParameter& parameter : fit.FitModel->parameters) {
    const std::string_view name = Trim(parameter.caption);
    heads << QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
  }
  gridMinima_->clear();
  gridMinima_->setRowCount(static_cast<int>(outcome_.minima.size()));
  gridMinima_->setColumnCount(static_cast<int>(heads.size()));
  gridMinima_->setHorizontalHeaderLabels(heads);
  int row = 0;
  for (const FoundMinimum& minimum : outcome_.minima) {
    int column = 0;
    const auto add = [&](const QString& text) { gridMinima_->setItem(row, column++, Cell(text)); };
    add(Number(minimum.sum, "0.000000E+00"));
    add(Number(minimum.rms, "0.0000E+00"));
    add(QString::number(minimum.starts));
    add(minimum.current ? tr("yes") : QString());
    for (int l = fit.SharedBase() + 1; l <= fit.FitMA && column < heads.size(); ++l) {
      add(QString::fromStdString(FormatParam(minimum.parameters(l))));
    }
    ++row;
  }
  gridMinima_->resizeColumnsToContents();
}

// Only what is better is worth a new start.
void MinimaWindow::UpdateUse() {
  const QModelIndexList rows = gridMinima_->selectionModel()->selectedRows();
  const bool better =
      !running_ && !rows.isEmpty() && fit_ != nullptr &&
      IsLowerSum(fit_->state, outcome_.minima[static_cast<std::size_t>(rows.first().row())].sum,
                 outcome_.currentSum);
  cmdUseAsStart_->setEnabled(better);
}

void MinimaWindow::reject() {
  if (running_) {
    emit StopRequested();
    return;
  }
  QDialog::reject();
}

}  // namespace quorvane
