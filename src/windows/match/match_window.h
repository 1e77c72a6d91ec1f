// frmMatch: scans of one cell compared with the last of them, a tab for each step. It shares
// nothing with the datasets of the program; what it holds goes when it is closed.
#pragma once

#include <QWidget>
#include <filesystem>
#include <vector>

#include "match/match.h"
#include "windows/session/printable.h"
#include "windows/session/session.h"

class QLabel;
class QStatusBar;
class QTabWidget;
class QToolButton;

namespace quorvane {

class MatchDeviationTab;
class MatchLoadTab;
class MatchRangeTab;
class MatchReportTab;
class MatchRmsTab;

class MatchWindow : public QWidget, public Printable {
  Q_OBJECT
 public:
  MatchWindow(Session& session, Host& host, QWidget* parent = nullptr);  // both outlive it

  // Compares these scans, as if they had been chosen by "Load Files".
  void LoadSeries(std::vector<std::filesystem::path> paths);

  PrintContent Printed() const override;

  QSize sizeHint() const override;

 private:
  void BuildWidgets();
  QStatusBar* BuildStatusBar();
  void ConnectSignals();
  void OpenResults(bool open);
  void Match();
  void ShowMatch();
  void SaveReport();

  Session& session_;
  Host& host_;
  MatchSeries series_;
  MatchResult result_;  // of the series, since its last match
  QTabWidget* SSTab1_;
  MatchLoadTab* load_;
  MatchRangeTab* range_;
  MatchReportTab* report_;
  MatchDeviationTab* deviations_;
  MatchRmsTab* rms_;
  QLabel* status_;
  QToolButton* save_;
};

}  // namespace quorvane
