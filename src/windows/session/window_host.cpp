#include "windows/session/window_host.h"

#include <QCoreApplication>
#include <QString>

#include "plot/chart_export.h"
#include "windows/controls/busy_pointer.h"
#include "windows/session/session.h"
#include "windows/session/session_log.h"

namespace quorvane {

namespace {

QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

WindowHost::WindowHost(Session& session, SessionLog& log, QWidget& parent)
    : session_(session), log_(log), parent_(parent) {}

void WindowHost::PrintIt(std::string_view text) {
  log_.AppendLogText(Text(text));
}

void WindowHost::ShowMessage(std::string_view title, std::string_view text, MessageIcon icon) {
  const PlainPointer plain;
  session_.Ask.ShowMessage(&parent_, Text(title), Text(text), icon);
}

bool WindowHost::AskYesNo(std::string_view title, std::string_view text) {
  const PlainPointer plain;
  return session_.Ask.AskYesNo(&parent_, Text(title), Text(text));
}

void WindowHost::RunPendingEvents() {
  constexpr double kPause = 0.02;  // seconds
  if (sinceEvents_.Seconds() >= kPause) {
    QCoreApplication::processEvents();
    sinceEvents_ = Stopwatch();
  }
}

void WindowHost::SetStatus(std::string_view text) {
  log_.SetStatus(Text(text));
}

void WindowHost::ReportProgress(const Progress& progress) {
  constexpr double kPause = 0.05;  // seconds
  if (progress.iteration > 1 && sinceProgress_.Seconds() < kPause) return;
  sinceProgress_ = Stopwatch();
  emit ProgressReported(QString::fromStdString(ProgressText(progress)));
  if (const std::optional<double> share = ShareDone(progress)) emit ShareReported(*share);
}

void WindowHost::ReportFailure(std::string_view text) {
  emit FailureReported(Text(text));
}

void WindowHost::GoToEndOfLog() {
  log_.MoveToEnd();
}

void WindowHost::FocusLog() {
  log_.TakeFocus();
}

void WindowHost::SendPictureToLog(const Chart& chart) {
  constexpr PictureSize kSize = {400, 360};
  log_.InsertPictureAtEnd(RenderChart(chart, PictureFormat::kPng, kSize));
}

std::string WindowHost::LogAsRtf() {
  return log_.ToRtf();
}

void WindowHost::LoadLog(std::string_view rtf) {
  if (!log_.LoadRtf(rtf)) {
    ShowMessage(tr("Log").toStdString(),
                tr("The log is no rich text; it is taken as plain text.").toStdString(),
                MessageIcon::kExclamation);
  }
  log_.MoveToEnd();
}

}  // namespace quorvane
