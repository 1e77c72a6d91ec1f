#include "windows/controls/grid_text.h"

#include <QAbstractItemModel>
#include <QItemSelectionModel>
#include <QTableView>
#include <set>

namespace quorvane {

namespace {

QString WholeGrid(const QAbstractItemModel& cells) {
  QString text;
  for (int column = 0; column < cells.columnCount(); ++column) {
    text += '\t' + cells.headerData(column, Qt::Horizontal).toString();
  }
  text += '\n';
  for (int row = 0; row < cells.rowCount(); ++row) {
    text += cells.headerData(row, Qt::Vertical).toString();
    for (int column = 0; column < cells.columnCount(); ++column) {
      text += '\t' + cells.index(row, column).data().toString().trimmed();
    }
    text += '\n';
  }
  return text;
}

}  // namespace

QString GridText(const QTableView& grid) {
  const QItemSelectionModel& selection = *grid.selectionModel();
  const QModelIndexList chosen = selection.selectedIndexes();
  if (chosen.isEmpty()) return WholeGrid(*grid.model());
  std::set<int> rows;
  std::set<int> columns;
  for (const QModelIndex& cell : chosen) {
    rows.insert(cell.row());
    columns.insert(cell.column());
  }
  QString text;
  for (const int row : rows) {
    QStringList line;
    for (const int column : columns) {
      const QModelIndex cell = grid.model()->index(row, column);
      line << (selection.isSelected(cell) ? cell.data().toString().trimmed() : QString());
    }
    text += line.join('\t') + '\n';
  }
  return text;
}

}  // namespace quorvane
