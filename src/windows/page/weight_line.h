// The line of the parameter page that says which molecular weights its buoyant weights are, with
// which vbar and density.
#pragma once

#include <QWidget>
#include <array>

#include "core/page/constants.h"

class QLabel;
class QToolButton;

namespace quorvane {

struct Session;

class WeightLine : public QWidget {
  Q_OBJECT
 public:
  explicit WeightLine(Session& session, QWidget* parent = nullptr);  // outlived by `session`

  // The weights as page and constants now stand.
  void ShowWeights();

  // The controls that take the focus, in order.
  std::array<QToolButton*, 3> Buttons() const { return buttons_; }

 signals:
  void ConstantRequested(Constant constant);  // its dialog is wanted

 private:
  Session& session_;
  QLabel* lblWeight_;
  std::array<QToolButton*, 3> buttons_{};  // vbar, vbar(B), density
  QLabel* lblWeightRemark_;
};

}  // namespace quorvane
