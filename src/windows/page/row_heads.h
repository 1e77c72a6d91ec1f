// The heads over the rows of the parameter page.
#pragma once

#include <QWidget>
#include <vector>

#include "core/page/page_parts.h"

class QGridLayout;
class QLabel;

namespace quorvane {

class RowHeads : public QWidget {
  Q_OBJECT
 public:
  explicit RowHeads(QWidget* parent);

  QSize sizeHint() const override;

  // Captions and visibility by model and switches; the columns of `grid` follow them.
  void Show(const FitSetup& setup, QGridLayout& grid);

  // The caption of the head over `control`, which stands in `grid`.
  QString CaptionOver(const QWidget& control, const QGridLayout& grid) const;

  // Puts each head over its columns in `grid`, whose content begins at `offset` of the view.
  void Place(const QGridLayout& grid, int offset);

 private:
  QLabel* HeadOver(int column) const;  // null: the column has none

  std::vector<QLabel*> heads_;  // in the order of the table of heads
};

}  // namespace quorvane
