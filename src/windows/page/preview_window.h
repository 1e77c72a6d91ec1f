// frmPreview: the datasets of a fit against the curves of the present values.
#pragma once

#include <QWidget>
#include <vector>

#include "base/chart.h"

class QScrollBar;

namespace quorvane {

class ChartWidget;
class Host;
class PlotSwitch;
struct Session;

class PreviewWindow : public QWidget {
  Q_OBJECT
 public:
  PreviewWindow(Session& session, Host& host, QWidget* parent = nullptr);  // both outlive it

  // Evaluates the datasets of the fit and shows the first one. If that fails nothing changes here.
  void Preview();

  QSize sizeHint() const override;

 private:
  void ShowPage();

  Session& session_;
  Host& host_;
  std::vector<Chart> charts_;      // a page each
  std::vector<Chart> deviations_;  // the same pages
  PlotSwitch* plots_;
  ChartWidget* teePreview_;
  QScrollBar* hsPreview_;
};

}  // namespace quorvane
