// Judges every finished fit off the window's thread: does it stand at rest?
#pragma once

#include <QObject>
#include <QThreadPool>
#include <memory>

namespace quorvane {

struct Session;

class RestJudge : public QObject {
  Q_OBJECT
 public:
  explicit RestJudge(Session& session, QObject* parent = nullptr);
  ~RestJudge() override;  // waits for the thread, which is told to stop

  // Begins to judge the last fit of the session; one that is still being judged is given up.
  void Judge();

  // Gives up what is being judged.
  void GiveUp();

  // Waits for the verdict that is on its way, if there is one.
  void Await();

 signals:
  void Judging();
  void Judged();  // the last fit of the session knows its verdict

 private:
  struct Case;

  void Finish(const std::shared_ptr<Case>& judged);

  Session& session_;
  std::shared_ptr<Case> case_;  // that is being judged; the thread keeps its own hold of it
  QThreadPool thread_;
};

}  // namespace quorvane
