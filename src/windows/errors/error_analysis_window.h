// frmErrorAnalysis: limits of the parameters of the last fit by profiles and replicates, surfaces
// of its sum of squares, derived quantities.
#pragma once

#include <QElapsedTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/chart.h"
#include "core/finished_fit.h"
#include "windows/session/printable.h"

class QAction;
class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QTabWidget;
class QTableWidget;

namespace quorvane {

class ChartWidget;
class ErrorChoices;
struct ReportTable;
struct Session;

class ErrorAnalysisWindow : public QWidget, public Printable {
  Q_OBJECT
 public:
  explicit ErrorAnalysisWindow(Session& session, QWidget* parent = nullptr);

  // The last fit of the session is what "Calculate" works on.
  void TakeFit();

  // There is no such fit any more; what was found of it stays in sight.
  void Outdate();

  // An analysis runs: only "Stop" can be pressed.
  void SetRunning(bool on);

  // How far it has come, 0 to 1.
  void ShowShare(double share);

  // What the analysis of the last fit of the session has found.
  void ShowErrors(const ErrorAnalysis& found);

  PrintContent Printed() const override;  // the picture

 signals:
  void CalculateRequested(const ErrorRequest& request);
  void StopRequested();

 private:
  // A picture of what was found, by its name in the list.
  struct Picture {
    QString name;
    int parameter;  // index in FitA; 0 for a surface
    std::function<Chart()> draw;
  };

  void BuildWidgets();
  QWidget* BuildRun();
  QWidget* BuildResults();
  void ConnectSignals();
  void FillTables();
  void FillPictures();
  void AddPicture(const ParameterErrors& errors, const std::optional<ParameterReplicates>& found,
                  const QString& name);
  void ShowPicture();
  void FollowRow();
  void SaveTables();
  void ExportPicture();
  void UpdateButtons();

  Session& session_;
  std::shared_ptr<const FinishedFit> fit_;  // that "Calculate" works on; null: there is none
  ErrorAnalysis found_;
  std::vector<Picture> pictures_;
  bool running_ = false;
  QElapsedTimer sinceStart_;
  ErrorChoices* choices_;
  QPushButton* cmdCalcErrors_;
  QPushButton* cmdStopErrors_;
  QProgressBar* prgErrors_;
  QLabel* lblErrors_;
  QTabWidget* tabErrors_;
  QTableWidget* gridErrors_;
  QTableWidget* gridDerived_;
  QComboBox* cmbErrorPicture_;
  ChartWidget* teeErrors_;
  QPushButton* cmdCopyErrors_;
  QPushButton* cmdExportErrors_;
  QPushButton* cmdSaveErrors_;
};

}  // namespace quorvane
