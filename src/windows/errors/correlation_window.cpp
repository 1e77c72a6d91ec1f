#include "windows/errors/correlation_window.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include "windows/controls/control_names.h"
#include "windows/controls/grid_text.h"

namespace quorvane {

CorrelationWindow::CorrelationWindow(QWidget* parent) : QWidget(parent) {
  BuildWidgets();
  ConnectSignals();
}

void CorrelationWindow::BuildWidgets() {
  setObjectName("frmCCCs");
  setWindowTitle(tr("Cross-Correlation Coefficients"));
  gridCCC_ = Named(new QTableView, "gridCCC");
  gridCCC_->setAccessibleName(windowTitle());
  gridCCC_->setModel(&cells_);
  // Plain cells have the background of the data window.
  QPalette plain = gridCCC_->palette();
  plain.setColor(QPalette::Base, palette().color(QPalette::Window));
  plain.setColor(QPalette::Text, palette().color(QPalette::WindowText));
  gridCCC_->setPalette(plain);
  gridCCC_->setTabKeyNavigation(false);
  gridCCC_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
  mnuCopyCells_ = Named(new QAction(tr("Copy"), gridCCC_), "mnuCopyCells");
  mnuCopyCells_->setShortcut(QKeySequence::Copy);
  mnuCopyCells_->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  gridCCC_->addAction(mnuCopyCells_);
  gridCCC_->setContextMenuPolicy(Qt::ActionsContextMenu);
  cmdCopyMe_ = Named(new QPushButton(tr("Copy to Log")), "cmdCopyMe");
  cmdCopyMe_->setToolTip(tr("Copy the CCC table to the log"));
  cmdPrintMe_ = Named(new QPushButton(tr("Print")), "cmdPrintMe");
  cmdPrintMe_->setToolTip(tr("Print CCC table"));
  auto* foot = new QHBoxLayout;
  foot->addStretch();
  foot->addWidget(cmdCopyMe_);
  foot->addWidget(cmdPrintMe_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addWidget(gridCCC_, 1);
  layout->addLayout(foot);
}

void CorrelationWindow::ConnectSignals() {
  connect(mnuCopyCells_, &QAction::triggered, this, &CorrelationWindow::CopyCells);
  connect(cmdCopyMe_, &QPushButton::clicked, this, &CorrelationWindow::LogRequested);
  connect(cmdPrintMe_, &QPushButton::clicked, this, &CorrelationWindow::PrintRequested);
}

void CorrelationWindow::ShowFit(std::shared_ptr<const FinishedFit> fit, double critical) {
  cells_.Show(std::move(fit), critical);
  gridCCC_->resizeColumnsToContents();
}

PrintContent CorrelationWindow::Printed() const {
  return PrintedGrid{windowTitle(), &cells_};
}

void CorrelationWindow::CopyCells() const {
  QGuiApplication::clipboard()->setText(GridText(*gridCCC_));
}

}  // namespace quorvane
