// A Host that hears nothing and stops nothing.
#pragma once

#include "base/host.h"

namespace quorvane {

class QuietHost : public Host {
 public:
  void PrintIt(std::string_view) override {}
  void ShowMessage(std::string_view, std::string_view, MessageIcon) override {}
  bool AskYesNo(std::string_view, std::string_view) override { return false; }
  void RunPendingEvents() override {}
  void SetStatus(std::string_view) override {}
  void ReportProgress(const Progress&) override {}
  void ReportFailure(std::string_view) override {}
  void SendPictureToLog(const Chart&) override {}
};

}  // namespace quorvane
