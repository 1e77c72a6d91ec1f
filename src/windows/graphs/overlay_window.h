// frmOverlay: chosen datasets in one plot, each with its own symbol and colour.
#pragma once

#include <QWidget>
#include <vector>

#include "base/chart.h"
#include "windows/session/printable.h"
#include "windows/session/session.h"

class QCheckBox;
class QListWidget;
class QPushButton;
class QRadioButton;

namespace quorvane {

class ChartWidget;

class OverlayWindow : public QWidget, public Printable {
  Q_OBJECT
 public:
  explicit OverlayWindow(Session& session, QWidget* parent = nullptr);  // outlived by `session`

  // Lists what the store holds now and draws it anew, while the window is shown. Datasets keep
  // their checks; of new ones all but the blanks are checked.
  void Refresh();

  PrintContent Printed() const override;
  QSize sizeHint() const override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void BuildWidgets();
  QWidget* BuildSide();
  void ConnectSignals();
  void ListDatasets();
  void CheckAll(bool on);
  void Draw();
  Chart Drawn() const;
  void Export();
  void Copy();

  Session& session_;
  ChartWidget* chart_;
  QListWidget* sets_;
  QPushButton* cmdAll_;
  QPushButton* cmdNone_;
  QRadioButton* radius_;
  QRadioButton* psi_;
  QCheckBox* chkCurves_;
  QPushButton* cmdZoomOut_;
  QPushButton* cmdExport_;
  QPushButton* cmdCopy_;
};

}  // namespace quorvane
