// Chooses between the two plots of a dataset of a fit.
#pragma once

#include <QWidget>

class QRadioButton;

namespace quorvane {

class PlotSwitch : public QWidget {
  Q_OBJECT
 public:
  // The buttons are named `name`(0), data and curve, and `name`(1), the deviations alone.
  explicit PlotSwitch(const char* name, QWidget* parent = nullptr);

  bool Deviations() const;

 signals:
  void Changed();

 private:
  QRadioButton* data_;
  QRadioButton* deviations_;
};

}  // namespace quorvane
