// The engine's Host inside a Python program: log and failures are kept, an interrupt stops.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/clock.h"
#include "base/host.h"
#include "base/stop_flag.h"
#include "base/time_limit.h"
#include "python/convert.h"

namespace quorvane {

// To be used while the interpreter is free (py::gil_scoped_release); what needs it takes it.
class PythonHost : public SessionHost {
 public:
  // `stop` is raised by a signal that Python turns into an exception, or when the limit is over.
  explicit PythonHost(StopFlag& stop) : stop_(stop) {}

  void PrintIt(std::string_view text) override;
  void ShowMessage(std::string_view title, std::string_view text, MessageIcon icon) override;
  bool AskYesNo(std::string_view title, std::string_view text) override;
  void RunPendingEvents() override;
  void SetStatus(std::string_view) override {}
  void ReportProgress(const Progress&) override {}
  void ReportFailure(std::string_view text) override;
  void SendPictureToLog(const Chart&) override {}
  std::string LogAsRtf() override;
  void LoadLog(std::string_view rtf) override;

  TimeLimit& Limit() { return limit_; }
  bool Late() const { return late_; }

  const std::string& Log() const { return log_; }  // lines ended by \n
  const std::vector<std::string>& Failures() const { return failures_; }
  std::string FailureText() const;  // all of them, a line each

  // Throws what Python made of a signal, if there was one. Needs the interpreter.
  void ThrowIfInterrupted();

 private:
  void Keep(std::string_view text);

  StopFlag& stop_;
  TimeLimit limit_;
  bool late_ = false;
  Stopwatch sinceSignals_;
  std::optional<py::error_already_set> interrupt_;
  std::string log_;
  std::string rtf_;  // what was loaded, as long as no line followed
  std::vector<std::string> failures_;
};

}  // namespace quorvane
