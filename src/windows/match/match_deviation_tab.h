// The tab "Dev. Plots" of the match window: what the shifts leave of each scan's difference from
// the reference, along the radius.
#pragma once

#include <QWidget>
#include <cstddef>
#include <optional>
#include <vector>

#include "match/match.h"

class QGroupBox;
class QListWidget;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace quorvane {

class ChartWidget;
class Dialogs;
class OffsetChoice;

class MatchDeviationTab : public QWidget {
  Q_OBJECT
 public:
  // `series` and `result` are the window's; all outlive this.
  MatchDeviationTab(const MatchSeries& series, const MatchResult& result, Dialogs& ask,
                    QWidget* parent = nullptr);

  // After a match: lists the scans; nothing is plotted yet.
  void ShowMatch();

  // There is no match any more.
  void Clear();

  const ChartWidget* Plot() const { return TChartDevs_; }

 private:
  void BuildWidgets();
  QGroupBox* BuildFileBox();
  void ConnectSignals();
  std::vector<std::size_t> ChosenScans() const;
  void MakePlot();
  void ClearPlot();

  const MatchSeries& series_;
  const MatchResult& result_;
  Dialogs& ask_;
  ChartWidget* TChartDevs_;
  OffsetChoice* frDevPlot_;
  QRadioButton* plotSelected_;  // optPlotChoice(0)
  QRadioButton* plotEvery_;     // optPlotChoice(1)
  QSpinBox* upDownPlotBy_;
  QListWidget* lisPlotDevs_;
  QPushButton* cmdMakePlot_;
  QPushButton* cmdZoomOut_;
};

}  // namespace quorvane
