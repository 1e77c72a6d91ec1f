#include "windows/commands/rest_judge.h"

#include "base/quiet_host.h"
#include "base/stop_flag.h"
#include "core/fit_run.h"
#include "stats/fit_rest.h"
#include "windows/session/session.h"

namespace quorvane {

// One fit that is judged. Its thread reads the fit and writes the verdict; the window raises the
// flag, and reads the verdict when the thread has ended.
struct RestJudge::Case {
  std::shared_ptr<const FinishedFit> fit;
  StopFlag stop;
  RestVerdict verdict;
};

RestJudge::RestJudge(Session& session, QObject* parent) : QObject(parent), session_(session) {
  thread_.setMaxThreadCount(1);
}

RestJudge::~RestJudge() {
  GiveUp();
  thread_.waitForDone();
}

void RestJudge::Judge() {
  GiveUp();
  if (!session_.Module.LastFit) return;
  case_ = std::make_shared<Case>();
  case_->fit = session_.Module.LastFit;
  emit Judging();
  thread_.start([this, judged = case_] {
    QuietHost quiet;
    judged->verdict = JudgeRest(judged->fit->state, judged->stop, quiet);
    // Arrives only while this lives: the destructor waits for the thread.
    QMetaObject::invokeMethod(
        this, [this, judged] { Finish(judged); }, Qt::QueuedConnection);
  });
}

void RestJudge::GiveUp() {
  if (case_) case_->stop.Raise();
  case_.reset();
}

void RestJudge::Await() {
  if (!case_) return;
  const std::shared_ptr<Case> judged = case_;
  thread_.waitForDone();
  Finish(judged);
}

void RestJudge::Finish(const std::shared_ptr<Case>& judged) {
  if (judged != case_) return;  // given up meanwhile, or told already
  case_.reset();
  if (ShareVerdict(session_.Module, *judged->fit, judged->verdict)) emit Judged();
}

}  // namespace quorvane
