// Tables of results: to be read and copied, not edited.
#pragma once

#include <QStringList>
#include <vector>

class QString;
class QTableWidget;

namespace quorvane {

// An empty one with that object name; `what` it shows is for screen readers. Copies by Ctrl+C.
QTableWidget* ResultGrid(const char* name, const QString& what);

// Fills it anew; from column `firstNumber` on cells are flush right. Each row has as many cells as
// there are heads.
void FillGrid(QTableWidget& grid, const QStringList& heads, const std::vector<QStringList>& rows,
              int firstNumber);

}  // namespace quorvane
