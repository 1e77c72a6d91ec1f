// The line of the parameter page that says whether the last fit stands at rest.
#pragma once

#include <QWidget>

class QLabel;

namespace quorvane {

struct RestVerdict;

class RestLine : public QWidget {
  Q_OBJECT
 public:
  explicit RestLine(QWidget* parent = nullptr);

  // There is no fit to judge.
  void Clear();

  // The fit is being judged.
  void ShowJudging();

  void ShowVerdict(const RestVerdict& verdict);

 private:
  void ShowMark(const QIcon& mark);

  QLabel* mark_;
  QLabel* lblRest_;
};

}  // namespace quorvane
