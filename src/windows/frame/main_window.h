// frmMain: the frame around all windows, with its menus.
#pragma once

#include <QMainWindow>
#include <QPointer>
#include <chrono>
#include <filesystem>
#include <memory>

#include "windows/session/session.h"
#include "windows/session/window_set.h"

class QLabel;
class QMdiSubWindow;
class QShortcut;

namespace quorvane {

class Autosave;
class ChildArea;
class ChooseScansWindow;
class DataWindow;
class ErrorCommands;
class ExperimentCommands;
class FitCommands;
class GraphsWindow;
class HelpWindow;
class ImportWindow;
class PlanWindow;
class LogWindow;
class MainMenus;
class MatchWindow;
class OptionCommands;
class FigureWindow;
class PrintCommands;
class PreviewWindow;
class ReportCommands;
class JobCommands;
class SimWindow;
class SetRefConcWindow;
class RestJudge;
class UnsavedMark;
class WindowHost;
class CorrelationWindow;
class ErrorAnalysisWindow;
class QualityWindow;
class FitsWindow;
class ComparisonWindow;

class MainWindow : public QMainWindow {
  Q_OBJECT
 public:
  // Brings up the data window and the log, places the frame as the settings say.
  explicit MainWindow(Session& session, QWidget* parent = nullptr);
  ~MainWindow() override;

  ExperimentCommands& Experiments() { return *experiments_; }

  // Offers what crashed programs left in `folder`; from then on keeps unsaved work there, looking
  // for changes every `interval`. A folder that cannot be used is told in the status bar.
  void KeepUnsavedWork(const std::filesystem::path& folder, std::chrono::milliseconds interval);

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void showEvent(QShowEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  WindowSet AllWindows();
  void AddChildren();
  QMdiSubWindow* AddChild(QWidget* widget, bool closable);
  void ActivateShownChild();
  void OpenContextMenu();
  void ConnectMenus();
  void ConnectFrame();
  void ConnectKeys();
  void ShowTitle();
  void ArrangeFirst();
  bool HandleDrop(QEvent* event);
  void SetCalculating(bool on);
  void NewDocument();
  void ShowPlan();
  void TakeSeries(const QStringList& files, bool load);
  void ShowSimulation();
  void ShowMatch();
  void ShowImport();
  void ConnectSimulation();
  void ShowHelp(bool search);
  void ShowAbout();
  bool MayClose();
  bool CommitPending();
  void ShowRemark(const QString& text);

  Session& session_;
  ChildArea* area_;
  LogWindow* log_;
  std::unique_ptr<WindowHost> host_;
  DataWindow* data_;
  GraphsWindow* graphs_;
  CorrelationWindow* coefficients_;
  QualityWindow* quality_;
  FitsWindow* fitList_;
  ComparisonWindow* comparison_;
  ErrorAnalysisWindow* analysis_;
  PreviewWindow* preview_;
  FigureWindow* figure_;
  ChooseScansWindow* chooseScans_;
  SetRefConcWindow* setRefConc_;
  ExperimentCommands* experiments_ = nullptr;
  OptionCommands* options_ = nullptr;
  FitCommands* fits_ = nullptr;
  ErrorCommands* errors_ = nullptr;
  PrintCommands* prints_ = nullptr;
  ReportCommands* reports_ = nullptr;
  JobCommands* jobs_ = nullptr;
  MainMenus* menus_ = nullptr;
  Autosave* autosave_ = nullptr;
  UnsavedMark* unsaved_ = nullptr;
  RestJudge* judge_ = nullptr;
  QMdiSubWindow* dataChild_;
  QMdiSubWindow* logChild_;
  QMdiSubWindow* graphsChild_;
  QMdiSubWindow* coefficientsChild_;
  QLabel* status_;
  QShortcut* escape_;  // works while a calculation runs
  HelpWindow* help_ = nullptr;
  SimWindow* sim_ = nullptr;        // once it was opened
  PlanWindow* planning_ = nullptr;  // likewise
  ImportWindow* import_ = nullptr;  // likewise
  QPointer<MatchWindow> match_;     // while it is open
  int documents_ = 0;
  bool arranged_ = false;
  bool closeAfterStop_ = false;
};

}  // namespace quorvane
