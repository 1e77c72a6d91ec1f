// What the session asks of its log, whatever shows it.
#pragma once

#include <QString>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace quorvane {

// Follows a log and copies it a little at a time, so that the window does not wait.
class LogFollower {
 public:
  virtual ~LogFollower() = default;

  // Changes of the log so far.
  virtual int Edits() const = 0;

  // Copies what has changed until nothing is left or so much time has passed. True if nothing is
  // left.
  virtual bool Read(std::chrono::milliseconds most) = 0;

  // Gives the log as it is now as the bytes of an RTF file. What comes back may be called by any
  // thread, at any time.
  virtual std::function<std::string()> RtfOfNow() = 0;
};

class SessionLog {
 public:
  virtual ~SessionLog() = default;

  // Puts `text` and a line end at the caret, in the caret's format. A selection stays, unselected.
  virtual void AppendLogText(const QString& text) = 0;

  // The caret goes to the end, and the view with it.
  virtual void MoveToEnd() = 0;

  // What is typed in the frame comes here. Another program, or a dialog that is open, keeps the
  // keys as long as it is in front.
  virtual void TakeFocus() = 0;

  // A picture file behind all text; the caret goes there too. Throws PictureFault for other bytes.
  virtual void InsertPictureAtEnd(const std::string& png) = 0;

  virtual std::string ToRtf() const = 0;

  // Replaces the log. False if `bytes` were no RTF: then they came in as plain text.
  virtual bool LoadRtf(std::string_view bytes) = 0;

  // The line at the foot.
  virtual void SetStatus(const QString& text) = 0;

  virtual std::unique_ptr<LogFollower> Follow() = 0;
};

}  // namespace quorvane
