#include "python/python_host.h"

#include "base/text.h"
#include "rtf/log_text.h"
#include "rtf/rtf_writer.h"

namespace quorvane {

void PythonHost::PrintIt(std::string_view text) {
  log_ += WithUnixLines(text);
  log_ += '\n';
  rtf_.clear();
}

void PythonHost::ShowMessage(std::string_view title, std::string_view text, MessageIcon) {
  Keep(title.empty() ? std::string(text) : std::string(title) + ": " + std::string(text));
}

bool PythonHost::AskYesNo(std::string_view, std::string_view) {
  return false;
}

void PythonHost::RunPendingEvents() {
  constexpr double kPause = 0.02;  // seconds: taking the interpreter may have to wait for others
  if (limit_.Over()) {
    late_ = true;
    stop_.Raise();
  }
  if (interrupt_ || sinceSignals_.Seconds() < kPause) return;
  const py::gil_scoped_acquire interpreter;
  if (PyErr_CheckSignals() != 0) {
    interrupt_.emplace();
    stop_.Raise();
  }
  sinceSignals_ = Stopwatch();
}

void PythonHost::ReportFailure(std::string_view text) {
  Keep(text);
}

std::string PythonHost::LogAsRtf() {
  if (!rtf_.empty()) return rtf_;
  RichText rich;
  AppendText(rich, log_, CharFormat());
  return WriteRtf(rich);
}

void PythonHost::LoadLog(std::string_view rtf) {
  const LoadedLog loaded = ReadLog(rtf, CharFormat());
  if (!loaded.understood) Keep("The log is no rich text; it is taken as plain text.");
  log_ = PlainText(loaded.text);
  rtf_ = rtf;
}

std::string PythonHost::FailureText() const {
  std::string text;
  for (const std::string& failure : failures_) text += (text.empty() ? "" : "\n") + failure;
  return text;
}

void PythonHost::ThrowIfInterrupted() {
  if (interrupt_) throw py::error_already_set(std::move(*interrupt_));
}

void PythonHost::Keep(std::string_view text) {
  const std::string line = WithUnixLines(text);
  if (failures_.empty() || failures_.back() != line) failures_.push_back(line);
}

}  // namespace quorvane
