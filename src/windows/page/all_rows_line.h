// The line over the rows of the parameter page, on which a whole column is entered at once.
#pragma once

#include <QWidget>
#include <vector>

#include "core/page/row_values.h"
#include "windows/page/fit_row.h"

class QLabel;

namespace quorvane {

class FocusMarker;
class RowHeads;
struct Session;

class AllRowsLine : public QWidget {
  Q_OBJECT
 public:
  // `heads` name the columns; both outlive the line.
  AllRowsLine(Session& session, FocusMarker& marker, const RowHeads& heads, QWidget* parent);

  QSize sizeHint() const override;

  // What the rows have in common: grey in the boxes, the third state of a check where they differ.
  void ShowValues();

  // Puts each control over that of the first row in `grid`, whose content begins at `offset` of the
  // view, and shows those that the rows show.
  void Place(const FitRow& first, const QGridLayout& grid, int offset);

  std::vector<QWidget*> InTabOrder() const;

 signals:
  // The rows have taken an entry.
  void Entered();

 private:
  struct Box {
    const RowValue* value;
    ValueBox* box;
  };
  struct Check {
    const RowCheck* check;
    PageCheckBox* box;
  };

  void AddBox(const RowValue& value);
  void AddCheck(const RowCheck& check, FocusMarker& marker);

  Session& session_;
  const RowHeads& heads_;
  QLabel* lblAllRows_;
  std::vector<Box> boxes_;
  std::vector<Check> checks_;
};

}  // namespace quorvane
