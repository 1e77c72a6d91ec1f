// The tab "Set Range" of the match window: the loaded scans, one over the other. The stretch of
// radii that is zoomed to is the fitting range.
#pragma once

#include <QWidget>

#include "match/match.h"

class QLabel;
class QPushButton;

namespace quorvane {

class ChartWidget;

class MatchRangeTab : public QWidget {
  Q_OBJECT
 public:
  explicit MatchRangeTab(QWidget* parent = nullptr);

  // All of the scans; they can be matched now.
  void ShowSeries(const MatchSeries& series);

  FittingRange Range() const;
  const ChartWidget* Plot() const { return teeMatch_; }

 signals:
  void MatchRequested();
  void PointerMoved(const QString& place);  // radius and signal under the pointer

 private:
  void BuildWidgets();
  void ConnectSignals();
  void ShowRange();

  ChartWidget* teeMatch_;
  QLabel* lblFittingRange_;
  QPushButton* cmdDoMatch_;
};

}  // namespace quorvane
