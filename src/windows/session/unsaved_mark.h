// Whether the session holds anything that was not saved.
#pragma once

#include <QObject>
#include <QTimer>
#include <cstdint>

namespace quorvane {

struct QuorvaneModule;
struct Session;

// A number that goes with what an archive of the session would hold, but for the log.
std::uint64_t SessionFingerprint(const QuorvaneModule& module);

// Compares the session with what it was when it was saved, loaded or begun: at each change of the
// log, which tells of nearly all that happens, and once a second for the rest.
class UnsavedMark : public QObject {
  Q_OBJECT
 public:
  explicit UnsavedMark(const Session& session, QObject* parent = nullptr);  // which outlives it

  bool Unsaved() const { return unsaved_; }

  // The session is as it was saved, or as it begins.
  void Clean();

  // Something was done.
  void Look();

  // The text of the log has changed.
  void LogChanged();

 signals:
  void Changed();

 private:
  void Set(bool unsaved);

  const Session& session_;
  QTimer timer_;
  std::uint64_t clean_ = 0;
  bool logClean_ = true;
  bool unsaved_ = false;
};

}  // namespace quorvane
