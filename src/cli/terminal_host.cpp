#include "cli/terminal_host.h"

#include <csignal>
#include <ostream>

#include "base/text.h"

namespace quorvane {

namespace {

volatile std::sig_atomic_t interrupted = 0;

extern "C" void OnInterrupt(int signal) {
  interrupted = 1;
  std::signal(signal, SIG_DFL);
}

}  // namespace

void CatchInterrupts() {
  std::signal(SIGINT, OnInterrupt);
#if defined(SIGBREAK)
  std::signal(SIGBREAK, OnInterrupt);  // Ctrl-Break
#endif
}

TerminalHost::TerminalHost(const CommandStreams& streams, bool quiet, StopFlag& stop)
    : streams_(streams), quiet_(quiet), stop_(stop) {}

void TerminalHost::PrintIt(std::string_view text) {
  ClearProgressLine();
  log_.AddLine(text);
  if (!quiet_) streams_.out << WithUnixLines(text) << '\n' << std::flush;
}

void TerminalHost::ShowMessage(std::string_view title, std::string_view text, MessageIcon) {
  ErrorLine(title.empty() ? std::string(text) : std::string(title) + ": " + std::string(text));
}

bool TerminalHost::AskYesNo(std::string_view title, std::string_view text) {
  ShowMessage(title, text, MessageIcon::kQuestion);
  ErrorLine("Going on: No.");
  return false;
}

void TerminalHost::RunPendingEvents() {
  if (interrupted != 0 || limit_.Over()) stop_.Raise();
}

void TerminalHost::SetStatus(std::string_view) {}

void TerminalHost::ReportProgress(const Progress& progress) {
  constexpr double kPause = 0.1;  // seconds
  if (!streams_.showProgress || (progressShown_ && sinceProgress_.Seconds() < kPause)) return;
  ClearProgressLine();
  streams_.err << ProgressText(progress) << std::flush;
  progressShown_ = true;
  sinceProgress_ = Stopwatch();
}

void TerminalHost::ReportFailure(std::string_view text) {
  if (text == lastFailure_) return;
  lastFailure_ = text;
  ErrorLine(text);
}

void TerminalHost::SendPictureToLog(const Chart& chart) {
  if (drawing_) log_.AddPicture(chart);
}

void TerminalHost::LoadLog(std::string_view rtf) {
  ClearProgressLine();
  if (!log_.Load(rtf)) ErrorLine("The log is no rich text; it is taken as plain text.");
  if (!quiet_) streams_.out << log_.Text() << std::flush;
}

void TerminalHost::ClearProgressLine() {
  if (!progressShown_) return;
  streams_.err << "\r\x1b[K" << std::flush;
  progressShown_ = false;
}

void TerminalHost::ErrorLine(std::string_view text) {
  ClearProgressLine();
  streams_.err << WithUnixLines(text) << '\n' << std::flush;
}

}  // namespace quorvane
