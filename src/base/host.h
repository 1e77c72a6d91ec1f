// What the engine may ask of whoever runs it: a window, the command line or a test.
#pragma once

#include <string>
#include <string_view>

#include "base/progress.h"

namespace quorvane {

struct Chart;

enum class MessageIcon { kNone, kInformation, kQuestion, kExclamation, kStop };

class Host {
 public:
  virtual ~Host() = default;

  // Writes `text` to the log and ends the line. A CR LF inside `text` makes further lines.
  virtual void PrintIt(std::string_view text) = 0;

  // A message box; returns when the user has closed it.
  virtual void ShowMessage(std::string_view title, std::string_view text, MessageIcon icon) = 0;

  // A question with Yes and No; true for Yes.
  virtual bool AskYesNo(std::string_view title, std::string_view text) = 0;

  // Lets clicks and redraws through; called at fixed points of long loops.
  virtual void RunPendingEvents() = 0;

  // The text under the log; a single blank clears it.
  virtual void SetStatus(std::string_view text) = 0;

  virtual void ReportProgress(const Progress& progress) = 0;

  // Says what failed, and why, where the work is given up without a message box or a log line.
  virtual void ReportFailure(std::string_view text) = 0;

  // The next lines go to the end of the log, wherever the user's caret is. A log without a caret
  // has nothing to do.
  virtual void GoToEndOfLog() {}

  // The keyboard goes to the log, where there is one.
  virtual void FocusLog() {}

  // Puts a picture of `chart` at the end of the log.
  virtual void SendPictureToLog(const Chart& chart) = 0;
};

// A Host whose log goes into archives and comes out of them.
class SessionHost : public Host {
 public:
  // The whole log as the bytes of an RTF file.
  virtual std::string LogAsRtf() = 0;

  // Puts the log that the bytes of an RTF file hold in place of the present one. Bytes that are no
  // RTF file come in as plain text, with a message.
  virtual void LoadLog(std::string_view rtf) = 0;
};

}  // namespace quorvane
