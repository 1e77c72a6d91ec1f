// The arrow keys in a table of controls: Up and Down go to the same control of the nearest row that
// has it to offer.
#pragma once

#include <QObject>
#include <vector>

class QScrollArea;
class QWidget;

namespace quorvane {

class RowKeys : public QObject {
  Q_OBJECT
 public:
  // `view` scrolls to where the focus goes.
  explicit RowKeys(QScrollArea& view);

  // All rows have the same controls in the same order. The last row is removed before its controls
  // go.
  void AddRow(std::vector<QWidget*> controls);
  void RemoveLastRow();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Step(const QObject* from, int by);

  QScrollArea& view_;
  std::vector<std::vector<QWidget*>> rows_;
};

}  // namespace quorvane
