// The arrow keys in a table of controls whose names are "txtOffset(3)": Up and Down go to the same
// control of the nearest row that has it to offer.
#pragma once

#include <QObject>

class QScrollArea;

class RowKeys : public QObject {
  Q_OBJECT
 public:
  // `rows` scrolls to where the focus goes.
  explicit RowKeys(QScrollArea& rows);

  void Watch(QWidget* control);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Step(const QString& name, int by);

  QScrollArea& rows_;
};
