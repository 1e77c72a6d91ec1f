// Keeps the session's unsaved work on the disk, so that a crash does not cost it.
#pragma once

#include <QObject>
#include <QThreadPool>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>

#include "archive/unsaved_work.h"
#include "windows/session/session_log.h"

namespace quorvane {

struct Session;

// Looks at the session at even intervals and, if it has changed since it was last kept or saved,
// writes it as an archive. The window copies the session (datasets, page, graphs) at once and the
// log in short pieces; all else is done by another thread.
class Autosave : public QObject {
  Q_OBJECT
 public:
  // Both outlive this.
  Autosave(const Session& session, SessionLog& log, QObject* parent = nullptr);
  // Without End() what is kept stays, as after a crash.
  ~Autosave() override;

  // Begins to keep the session in a place of its own below `folder`, looking for changes every
  // `interval`. In `resumed`, if given, the session as it is now is kept already. A folder that
  // cannot be used is tried again whenever there is something to keep.
  void Start(std::filesystem::path folder, std::optional<UnsavedWork> resumed,
             std::chrono::milliseconds interval);

  // Keeps the session now if it has changed.
  void Keep();

  // Nothing is unsaved: the session was saved, loaded or begun anew. What was kept goes.
  void Clean();

  // The same for good, at the normal end of the program. Waits for a write under way.
  void End();

  // Why it could not be kept the last time; empty if it was.
  const QString& Failure() const { return failure_; }

 signals:
  void Kept();                       // it is on the disk
  void Failed(const QString& text);  // why it could not be kept; told once a cause

 private:
  // What distinguishes one state of the session from the next.
  struct State {
    std::uint64_t module = 0;  // fingerprint
    int logEdits = 0;
    bool operator==(const State&) const = default;
  };
  struct Job;

  bool HavePlace();
  State CurrentState() const;
  void ReadLog();
  void Write();
  void Finish(const std::shared_ptr<Job>& job);
  void Fail(const QString& text);
  void Forget();

  const Session& session_;
  std::unique_ptr<LogFollower> log_;
  QTimer timer_;
  QTimer readLog_;                   // the next piece of it
  std::filesystem::path folder_;     // empty until Start
  std::optional<UnsavedWork> work_;  // its place there, once it could be had
  State kept_;
  std::shared_ptr<Job> job_;  // the one under way
  bool again_ = false;        // the session was to be kept while a job was under way
  QString failure_;
  QThreadPool writer_;  // one thread, in order
};

}  // namespace quorvane
