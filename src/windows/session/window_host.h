// The engine's Host in the window program: the log, message boxes, the status bar.
#pragma once

#include <QObject>

#include "base/clock.h"
#include "base/host.h"

class QWidget;

namespace quorvane {

class SessionLog;
struct Session;

class WindowHost : public QObject, public SessionHost {
  Q_OBJECT
 public:
  // `parent` is the window that boxes stand on; all outlive this.
  WindowHost(Session& session, SessionLog& log, QWidget& parent);

  void PrintIt(std::string_view text) override;
  void ShowMessage(std::string_view title, std::string_view text, MessageIcon icon) override;
  bool AskYesNo(std::string_view title, std::string_view text) override;
  // At most every 20 ms: handling events costs more than a pass of a small fit.
  void RunPendingEvents() override;
  void SetStatus(std::string_view text) override;
  void ReportProgress(const Progress& progress) override;
  void ReportFailure(std::string_view text) override;
  void GoToEndOfLog() override;
  void FocusLog() override;
  void SendPictureToLog(const Chart& chart) override;
  std::string LogAsRtf() override;
  void LoadLog(std::string_view rtf) override;

 signals:
  // For the status bar of the main window: what a calculation does, or why something failed.
  void ProgressReported(const QString& text);
  void ShareReported(double share);  // that is done, 0 to 1, where it is known
  void FailureReported(const QString& text);

 private:
  Session& session_;
  SessionLog& log_;
  QWidget& parent_;
  Stopwatch sinceEvents_;
  Stopwatch sinceProgress_;
};

}  // namespace quorvane
