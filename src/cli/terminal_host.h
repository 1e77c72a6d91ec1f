// The engine's Host on a terminal: the log to standard output, all else to standard error.
#pragma once

#include <optional>
#include <string>

#include "base/clock.h"
#include "base/host.h"
#include "base/stop_flag.h"
#include "base/time_limit.h"
#include "cli/command_line.h"
#include "cli/log_document.h"
#include "plot/offscreen.h"

namespace quorvane {

// From here on an interrupt (Ctrl-C, on Windows also Ctrl-Break) stops a running calculation
// instead of ending the program; a second one ends it.
void CatchInterrupts();

class TerminalHost : public SessionHost {
 public:
  // `stop` is raised by an interrupt or by the time limit; it and the streams outlive this.
  TerminalHost(const CommandStreams& streams, bool quiet, StopFlag& stop);

  void PrintIt(std::string_view text) override;
  void ShowMessage(std::string_view title, std::string_view text, MessageIcon icon) override;
  bool AskYesNo(std::string_view title, std::string_view text) override;
  void RunPendingEvents() override;
  void SetStatus(std::string_view text) override;
  void ReportProgress(const Progress& progress) override;
  void ReportFailure(std::string_view text) override;
  void SendPictureToLog(const Chart& chart) override;
  std::string LogAsRtf() override { return log_.Rtf(); }
  void LoadLog(std::string_view rtf) override;

  // Pictures go into the log from here on; without this they are left out, which is faster.
  void KeepPictures() { drawing_.emplace(); }

  // Stops the calculations that run when it is over.
  TimeLimit& Limit() { return limit_; }

  // All lines of the log, ended by \n.
  const std::string& Log() const { return log_.Text(); }

 private:
  void ClearProgressLine();
  void ErrorLine(std::string_view text);

  const CommandStreams& streams_;
  bool quiet_;
  StopFlag& stop_;
  LogDocument log_;
  std::optional<OffscreenDrawing> drawing_;  // while pictures are kept
  std::string lastFailure_;
  bool progressShown_ = false;
  Stopwatch sinceProgress_;
  TimeLimit limit_;
};

}  // namespace quorvane
