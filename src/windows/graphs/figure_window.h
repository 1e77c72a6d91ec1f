// frmFigure: chosen datasets and their fit in one figure, as it will be on paper.
#pragma once

#include <QWidget>
#include <map>
#include <string>
#include <vector>

#include "base/figure.h"
#include "windows/session/printable.h"
#include "windows/session/session.h"

class QLabel;
class QListWidget;
class QPushButton;

namespace quorvane {

class FigureOptions;
class FigureWidget;

class FigureWindow : public QWidget, public Printable {
  Q_OBJECT
 public:
  explicit FigureWindow(Session& session, QWidget* parent = nullptr);  // outlived by `session`

  // Lists what the store holds now and draws it anew, while the window is shown. Datasets keep
  // their checks; of new ones all but the blanks are checked.
  void Refresh();

  PrintContent Printed() const override;
  QSize sizeHint() const override;

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;  // keeps the choices

 private:
  void BuildWidgets();
  QWidget* BuildSide();
  QWidget* BuildDatasets();
  QWidget* BuildButtons();
  void ConnectSignals();
  void ListDatasets();
  void CheckAll(bool on);
  void Draw();
  std::vector<int> Checked() const;  // places of datasets
  void KeepSetup();
  Figure Drawn() const;
  void ShowLooks(const Figure& figure);
  void Export();
  void SaveNumbers();
  void Copy();

  // Asks for a file and writes what `content` makes for it.
  template <class Content>
  void Save(const QString& filter, const QString& name, Content content);

  Session& session_;
  bool choicesTaken_ = false;                // those of the last session
  std::map<std::string, ChartArea> zoomed_;  // by the title of the cell
  FigureOptions* options_;
  FigureWidget* picture_;
  std::vector<FigureScan> listed_;  // by row of sets_
  QListWidget* sets_;
  QLabel* lblRemark_;
  QPushButton* cmdAll_;
  QPushButton* cmdNone_;
  QPushButton* cmdZoomOut_;
  QPushButton* cmdExport_;
  QPushButton* cmdCopy_;
  QPushButton* cmdNumbers_;
};

}  // namespace quorvane
