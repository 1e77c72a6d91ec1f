#include "windows/controls/result_grid.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QTableWidget>

#include "windows/controls/control_names.h"
#include "windows/controls/grid_text.h"

namespace quorvane {

QTableWidget* ResultGrid(const char* name, const QString& what) {
  auto* grid = Named(new QTableWidget, name);
  grid->setAccessibleName(what);
  grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
  grid->setSelectionBehavior(QAbstractItemView::SelectRows);
  grid->setTabKeyNavigation(false);
  grid->verticalHeader()->hide();
  grid->verticalHeader()->setDefaultSectionSize(grid->fontMetrics().height() * 3 / 2);
  auto* copy = new QAction(QObject::tr("Copy"), grid);
  copy->setShortcut(QKeySequence::Copy);
  copy->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  grid->addAction(copy);
  grid->setContextMenuPolicy(Qt::ActionsContextMenu);
  QObject::connect(copy, &QAction::triggered, grid,
                   [grid] { QGuiApplication::clipboard()->setText(GridText(*grid)); });
  return grid;
}

void FillGrid(QTableWidget& grid, const QStringList& heads, const std::vector<QStringList>& rows,
              int firstNumber) {
  grid.clear();
  grid.setRowCount(static_cast<int>(rows.size()));
  grid.setColumnCount(static_cast<int>(heads.size()));
  grid.setHorizontalHeaderLabels(heads);
  for (int row = 0; row < grid.rowCount(); ++row) {
    const QStringList& cells = rows[static_cast<std::size_t>(row)];
    for (int column = 0; column < grid.columnCount(); ++column) {
      auto* cell = new QTableWidgetItem(cells[column]);
      if (column >= firstNumber) cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      grid.setItem(row, column, cell);
    }
  }
  grid.resizeColumnsToContents();
}

}  // namespace quorvane
