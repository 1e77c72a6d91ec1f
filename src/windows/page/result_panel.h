// The result of a fit, one dataset at a time.
#pragma once

#include <QWidget>
#include <memory>

class QCheckBox;
class QLabel;
class QToolButton;

namespace quorvane {

struct Chart;
class ChartWidget;
struct FinishedFit;
class PlotSwitch;
struct Session;

// TChartFitting with its steps: data, curve and deviations of a position of the last fit, or the
// deviations alone.
class ResultPanel : public QWidget {
  Q_OBJECT
 public:
  explicit ResultPanel(Session& session, QWidget* parent = nullptr);

  // Opens the list of fits.
  QToolButton& FitsButton() { return *fits_; }

  // Appears with the first dataset of the last fit.
  void ShowFit();

  // Draws again with changed plot options.
  void Redraw();

  // Forgets the result and disappears.
  void Clear();

 private:
  void StepTo(int position);
  Chart Drawn() const;

  Session& session_;
  std::shared_ptr<const FinishedFit> fit_;  // null: nothing is shown
  int position_ = -1;                       // in the fit, from 0; -1: nothing is shown
  ChartWidget* chart_;
  QToolButton* back_;
  QToolButton* forward_;
  QLabel* which_;
  QCheckBox* species_;
  PlotSwitch* plots_;
  QToolButton* fits_;
};

}  // namespace quorvane
