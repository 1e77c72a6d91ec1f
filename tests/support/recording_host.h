// A Host for tests: keeps all that it is told and answers questions from a list.
#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/chart.h"
#include "base/host.h"

namespace quorvane {

class RecordingHost : public SessionHost {
 public:
  struct Message {
    std::string title;
    std::string text;
    MessageIcon icon;
  };

  void PrintIt(std::string_view text) override { lines.emplace_back(text); }
  void ShowMessage(std::string_view title, std::string_view text, MessageIcon icon) override {
    messages.push_back({std::string(title), std::string(text), icon});
  }
  bool AskYesNo(std::string_view title, std::string_view text) override {
    questions.push_back({std::string(title), std::string(text), MessageIcon::kQuestion});
    if (answers.empty()) {
      ADD_FAILURE() << "unexpected question: " << text;
      return false;
    }
    const bool answer = answers.front();
    answers.pop_front();
    return answer;
  }
  void RunPendingEvents() override {
    ++eventRuns;
    if (onEvents) onEvents();
  }
  void SetStatus(std::string_view text) override { statuses.emplace_back(text); }
  void ReportProgress(const Progress& progress) override { lastIteration = progress.iteration; }
  void ReportFailure(std::string_view text) override { failures.emplace_back(text); }
  void SendPictureToLog(const Chart& chart) override { pictures.push_back(chart); }
  std::string LogAsRtf() override { return logBytes; }
  void LoadLog(std::string_view rtf) override { logBytes = rtf; }

  int CountLinesWith(std::string_view part) const {
    return static_cast<int>(std::count_if(lines.begin(), lines.end(), [&](const std::string& line) {
      return line.find(part) != std::string::npos;
    }));
  }

  std::vector<std::string> lines;
  std::vector<Message> messages;
  std::vector<Message> questions;
  std::deque<bool> answers;
  std::vector<std::string> statuses;
  std::vector<std::string> failures;
  std::vector<Chart> pictures;
  std::string logBytes;  // stands for the RTF of the log; PrintIt leaves it as it is
  std::function<void()> onEvents;
  int eventRuns = 0;
  int lastIteration = 0;
};

}  // namespace quorvane
