// frmSetRefConc: reference concentrations set by eye, one dataset against the model's curve.
#pragma once

#include <QWidget>
#include <optional>

#include "core/page/ref_conc.h"

class QLabel;
class QPushButton;
class QScrollBar;

namespace quorvane {

class ChartWidget;
class Host;
struct Session;

class SetRefConcWindow : public QWidget {
  Q_OBJECT
 public:
  SetRefConcWindow(Session& session, Host& host, QWidget* parent = nullptr);  // both outlive it

  // Begins with row `row` (from 0) of the parameter page. What another row was moved to is kept.
  void Adjust(int row);

  // The name or the points of its dataset may have changed.
  void Redraw();

  // Closes, with the values in effect kept or the saved ones given back.
  void Keep();
  void Cancel();

  QSize sizeHint() const override;

 signals:
  void Began();           // start values are about to change: the last fit's errors are out of date
  void Changed(int row);  // its reference concentrations

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void BuildWidgets();
  void ConnectSignals();
  void Move(Component component, int bar);
  void Tell(const Notice& fault);

  Session& session_;
  Host& host_;
  std::optional<RefConcAdjustment> adjustment_;  // while the window is open
  ChartWidget* teeSetRefC_;
  QScrollBar* hsSetRefC_;
  QScrollBar* hsSetRefCB_;
  QLabel* lblCA_;
  QLabel* lblCB_;
  QPushButton* cmdDone_;
  QPushButton* cmdCancel_;
};

}  // namespace quorvane
