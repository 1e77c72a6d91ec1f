// The tab "Results" of the match window: the reports of all matches since the window was opened.
#pragma once

#include <QTimer>
#include <QWidget>
#include <string>

#include "match/match_report.h"
#include "windows/session/session.h"

class QTextEdit;

namespace quorvane {

class ChartWidget;
class LogEdit;

class MatchReportTab : public QWidget {
  Q_OBJECT
 public:
  explicit MatchReportTab(Session& session, QWidget* parent = nullptr);  // outlived by `session`

  // Adds a report at the end, where the caret goes; its first line comes to the top of the box.
  void Append(const MatchReport& report);

  std::string ToRtf() const;
  const QTextEdit* Text() const;

 private:
  void BuildWidgets(Session& session);
  void ConnectSignals();
  void AppendLine(const std::string& text);
  void AppendPicture(const Chart& chart);
  void ShowFrom(int position);

  LogEdit* rtMatchBox_;
  ChartWidget* TChartMatchFit_;  // never shown: the chart whose picture goes into the report
  int head_ = 0;                 // where the last report begins
  QTimer follow_;
};

}  // namespace quorvane
