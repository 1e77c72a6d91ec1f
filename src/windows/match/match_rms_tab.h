// The tab "RMS vs Time" of the match window: how the deviations fall in the course of time.
#pragma once

#include <QWidget>

#include "match/match.h"

class QPushButton;

namespace quorvane {

class ChartWidget;
class OffsetChoice;

class MatchRmsTab : public QWidget {
  Q_OBJECT
 public:
  explicit MatchRmsTab(const MatchResult& result, QWidget* parent = nullptr);  // the window's

  // After a match: the deviations that both shifts leave.
  void ShowMatch();

  // There is no match any more.
  void Clear();

 private:
  void BuildWidgets();
  void ConnectSignals();
  void ShowPlot();

  const MatchResult& result_;
  ChartWidget* TChartMatchFit2_;
  OffsetChoice* frRMSPlot_;
  QPushButton* cmdZoomOutRMS_;
};

}  // namespace quorvane
