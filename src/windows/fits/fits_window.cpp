#include "windows/fits/fits_window.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "stats/comparison_table.h"
#include "windows/controls/control_names.h"
#include "windows/controls/grid_text.h"
#include "windows/controls/push_button.h"

namespace quorvane {

FitsWindow::FitsWindow(Session& session, QWidget* parent)
    : QWidget(parent), session_(session), rows_(session.Module) {
  BuildWidgets();
  ConnectSignals();
  Refresh();
}

void FitsWindow::BuildWidgets() {
  setObjectName("frmFits");
  setWindowTitle(tr("Fits"));
  gridFits_ = Named(new QTableView, "gridFits");
  gridFits_->setAccessibleName(tr("Finished fits"));
  gridFits_->setModel(&rows_);
  gridFits_->setTabKeyNavigation(false);
  gridFits_->setSelectionBehavior(QAbstractItemView::SelectRows);
  gridFits_->setEditTriggers(QAbstractItemView::EditKeyPressed |
                             QAbstractItemView::SelectedClicked);
  gridFits_->verticalHeader()->hide();
  gridFits_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
  gridFits_->setSortingEnabled(true);
  gridFits_->sortByColumn(FitsModel::kTime, Qt::DescendingOrder);
  mnuCopyFits_ = Named(new QAction(tr("Copy"), gridFits_), "mnuCopyFits");
  mnuCopyFits_->setShortcut(QKeySequence::Copy);
  mnuCopyFits_->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  gridFits_->addAction(mnuCopyFits_);
  gridFits_->setContextMenuPolicy(Qt::ActionsContextMenu);
  lblFits_ = Named(new QLabel, "lblFits");
  cmdRestoreFit_ = MakeButton("cmdRestoreFit", tr("&Restore"),
                              tr("Put page, choice of datasets and result back as they were"));
  cmdCompareFits_ =
      MakeButton("cmdCompareFits", tr("Co&mpare..."), tr("Show the selected fits side by side"));
  cmdDeleteFits_ =
      MakeButton("cmdDeleteFits", tr("&Delete"), tr("Take the selected fits off the list"));
  cmdSaveFits_ =
      MakeButton("cmdSaveFits", tr("Sa&ve Table..."), tr("Write all fits as a CSV file"));
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(lblFits_, 1);
  for (QPushButton* button : {cmdRestoreFit_, cmdCompareFits_, cmdDeleteFits_, cmdSaveFits_}) {
    buttons->addWidget(button);
  }
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addWidget(gridFits_);
  layout->addLayout(buttons);
}

void FitsWindow::ConnectSignals() {
  connect(mnuCopyFits_, &QAction::triggered, this, &FitsWindow::Copy);
  connect(cmdRestoreFit_, &QPushButton::clicked, this, &FitsWindow::Restore);
  connect(cmdCompareFits_, &QPushButton::clicked, this,
          [this] { emit CompareRequested(Selected()); });
  connect(cmdDeleteFits_, &QPushButton::clicked, this, &FitsWindow::Delete);
  connect(cmdSaveFits_, &QPushButton::clicked, this, &FitsWindow::Save);
  connect(gridFits_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &FitsWindow::UpdateButtons);
  connect(&rows_, &FitsModel::modelReset, this, &FitsWindow::UpdateButtons);
  // After the cell has been left: its editor must not wait for the answer to a box.
  connect(
      &rows_, &FitsModel::NameRefused, this,
      [this] {
        session_.Ask.ShowMessage(
            window(), tr("Fits"),
            tr("The name of a fit has 1 to %1 characters.").arg(kLongestFitName),
            MessageIcon::kExclamation);
      },
      Qt::QueuedConnection);
}

std::vector<std::size_t> FitsWindow::Selected() const {
  std::vector<std::size_t> places;
  for (const QModelIndex& row : gridFits_->selectionModel()->selectedRows()) {
    if (const auto place = rows_.PlaceOf(row.row())) places.push_back(*place);
  }
  std::sort(places.begin(), places.end());
  return places;
}

void FitsWindow::Refresh() {
  std::vector<std::uint64_t> selected;
  for (const QModelIndex& row : gridFits_->selectionModel()->selectedRows()) {
    selected.push_back(rows_.IdOf(row.row()));
  }
  const int before = rows_.rowCount();
  rows_.Refresh();
  for (int row = 0; row < rows_.rowCount(); ++row) {
    if (std::count(selected.begin(), selected.end(), rows_.IdOf(row)) == 0) continue;
    gridFits_->selectionModel()->select(rows_.index(row, 0),
                                        QItemSelectionModel::Select | QItemSelectionModel::Rows);
  }
  if (before != rows_.rowCount()) gridFits_->resizeColumnsToContents();
  UpdateButtons();
}

void FitsWindow::UpdateButtons() {
  const std::size_t selected = Selected().size();
  const bool free = !session_.Calculating;
  cmdRestoreFit_->setEnabled(free && selected == 1);
  cmdCompareFits_->setEnabled(selected >= 2);
  cmdDeleteFits_->setEnabled(free && selected >= 1);
  cmdSaveFits_->setEnabled(rows_.rowCount() > 0);
  if (rows_.rowCount() == 0) {
    lblFits_->setText(tr("No fit has finished yet."));
  } else if (selected < 2) {
    lblFits_->setText(tr("Ctrl and a click select more than one to compare."));
  } else {
    lblFits_->setText(tr("%1 fits are selected.").arg(selected));
  }
}

void FitsWindow::Restore() {
  const std::vector<std::size_t> selected = Selected();
  if (selected.size() == 1) emit RestoreRequested(selected.front());
}

// From the oldest, so that the other places stay.
void FitsWindow::Delete() {
  const std::vector<std::size_t> selected = Selected();
  for (auto place = selected.rbegin(); place != selected.rend(); ++place) {
    session_.Module.Fits.Delete(*place);
  }
  rows_.Refresh();
  emit Deleted();
}

void FitsWindow::Copy() const {
  QGuiApplication::clipboard()->setText(GridText(*gridFits_));
}

void FitsWindow::Save() {
  const QString path =
      session_.Ask.SaveFile(this, {tr("Save Table"), ToQString(session_.CurrentFolder),
                                   tr("Tables (*.csv)"), QStringLiteral("fits.csv")});
  if (path.isEmpty()) return;
  std::vector<NamedFit> fits;
  for (const HistoryEntry& entry : session_.Module.Fits.Entries()) {
    fits.push_back({entry.name, &entry.kept->summary});
  }
  try {
    WriteWholeFile(ToPath(path), FitsCsv(fits));
  } catch (const FileFault& fault) {
    session_.Ask.ShowMessage(window(), tr("Save Table"), QString::fromUtf8(fault.what()),
                             MessageIcon::kExclamation);
  }
}

PrintContent FitsWindow::Printed() const {
  if (rows_.rowCount() == 0) return {};
  return PrintedGrid{windowTitle(), &rows_};
}

QSize FitsWindow::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 185, fontMetrics().height() * 16};
}

}  // namespace quorvane
