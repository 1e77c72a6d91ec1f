// frmPlan: an experiment that has not been made, and what it would tell.
#pragma once

#include <QWidget>
#include <optional>
#include <string>

#include "windows/session/printable.h"
#include "windows/sim/plan_worker.h"

class QComboBox;
class QLabel;
class QMenu;
class QProgressBar;
class QPushButton;
class QSpinBox;
class QTabWidget;
class QTableWidget;
class QTextEdit;

namespace quorvane {

class ChartWidget;
class Host;
class PlanEntries;
struct Session;

class PlanWindow : public QWidget, public Printable {
  Q_OBJECT
 public:
  PlanWindow(Session& session, Host& host, QWidget* parent = nullptr);  // both outlive it

  QSize sizeHint() const override;
  PrintContent Printed() const override;  // the picture

 signals:
  // A series was written; its files of `load` are to be loaded.
  void SeriesWritten(const QStringList& files, bool load);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void BuildWidgets();
  QWidget* BuildSide();
  QWidget* BuildResults();
  QWidget* BuildCheck();
  QWidget* BuildPicture();
  void ConnectSignals();
  void Follow();
  void Ask();
  void TakeAnswer(const PlanTask& task, const PlanAnswer& answer);
  void TakeCheck(const PlanCheck& check);
  void ShowFault(const QString& text);
  void ShowRemarks();
  void FillErrors();
  void FillRanking();
  void ListPictures();
  void ShowPicture();
  void TakeChosenSpeeds();
  void BeginCheck();
  void Open();
  void Save();
  void MakeSeries(std::size_t wavelength);
  void OfferWavelengths();
  void UpdateButtons();
  ExperimentPlan ShownPlan() const;
  std::optional<PlanAxis> ChosenAxis() const;

  Session& session_;
  Host& host_;
  bool choicesTaken_ = false;            // those of the last session
  std::optional<ExperimentPlan> plan_;   // as entered; nothing while a rule is broken
  std::optional<ExperimentPlan> shown_;  // that the answer is of
  PlanAnswer answer_;
  std::optional<PlanCheck> check_;
  bool current_ = false;  // the answer is of the plan as entered
  bool checking_ = false;
  PlanWorker* worker_;
  PlanEntries* entries_;
  QTabWidget* tabPlan_;
  QTableWidget* gridErrors_;
  QTableWidget* gridScans_;
  QTableWidget* gridSpeeds_;
  QTextEdit* txtRemarks_;
  QComboBox* cmbPicture_;
  ChartWidget* teePlan_;
  QSpinBox* spnCheck_;
  QPushButton* cmdCheck_;
  QPushButton* cmdStop_;
  QProgressBar* prgCheck_;
  QPushButton* cmdOpen_;
  QPushButton* cmdSave_;
  QPushButton* cmdSeries_;
  QMenu* mnuSeries_;
};

}  // namespace quorvane
