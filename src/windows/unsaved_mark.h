// Whether the session holds anything that was not saved.
#pragma once

#include <QObject>
#include <QTimer>
#include <cstdint>

#include "windows/window_set.h"

// A number that goes with what an archive of the session would hold, but for the log.
std::uint64_t SessionFingerprint(const WindowSet& windows);

// Compares the session with what it was when it was saved, loaded or begun: at each change of the
// log, which tells of nearly all that happens, and once a second for the rest.
class UnsavedMark : public QObject {
  Q_OBJECT
 public:
  explicit UnsavedMark(WindowSet windows, QObject* parent = nullptr);

  bool Unsaved() const { return unsaved_; }

  // The session is as it was saved, or as it begins.
  void Clean();

  // Something was done.
  void Look();

 signals:
  void Changed();

 private:
  void LogChanged();
  void Set(bool unsaved);

  WindowSet windows_;
  QTimer timer_;
  std::uint64_t clean_ = 0;
  bool logClean_ = true;
  bool unsaved_ = false;
};
