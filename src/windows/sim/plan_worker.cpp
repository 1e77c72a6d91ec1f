#include "windows/sim/plan_worker.h"

#include <functional>

#include "base/arithmetic.h"
#include "base/quiet_host.h"
#include "base/stop_flag.h"
#include "sim/plan_chart.h"

namespace quorvane {

namespace {

constexpr int kPlaces = 41;  // along an axis

// Hands the progress of a check on.
class ProgressHost : public QuietHost {
 public:
  explicit ProgressHost(std::function<void(int, int)> take) : take_(std::move(take)) {}
  void ReportProgress(const Progress& progress) override {
    take_(progress.iteration, static_cast<int>(progress.trial));
  }

 private:
  std::function<void(int, int)> take_;
};

PlanAnswer AnswerOf(const PlanTask& task, const StopFlag& stop, Host& host) {
  PlanAnswer answer;
  try {
    if (task.check) {
      answer.check = CheckPlan(task.plan, task.known, *task.check, stop, host);
      return answer;
    }
    answer.result = PlanExperiment(task.plan, &stop);
    if (!task.axis || stop.Raised()) return answer;
    answer.values = ValuesAlong(task.plan, *task.axis, kPlaces);
    answer.along = ErrorsAlong(task.plan, *task.axis, answer.values, &stop);
  } catch (const ArithmeticFault& fault) {
    answer.fault = fault.what();
  }
  return answer;
}

}  // namespace

// The thread reads the task and writes the answer; the window raises the flag, and reads the answer
// when the thread has ended.
struct PlanWorker::Case {
  PlanTask task;
  PlanAnswer answer;
  StopFlag stop;
};

PlanWorker::PlanWorker(QObject* parent) : QObject(parent) {
  thread_.setMaxThreadCount(1);
}

PlanWorker::~PlanWorker() {
  GiveUp();
  thread_.waitForDone();
}

void PlanWorker::Begin(PlanTask task) {
  GiveUp();
  case_ = std::make_shared<Case>();
  case_->task = std::move(task);
  thread_.start([this, begun = case_] {
    // Both calls arrive only while this lives: the destructor waits for the thread.
    ProgressHost host([this, begun](int done, int all) {
      QMetaObject::invokeMethod(
          this,
          [this, begun, done, all] {
            if (begun == case_) emit Progressed(done, all);
          },
          Qt::QueuedConnection);
    });
    begun->answer = AnswerOf(begun->task, begun->stop, host);
    QMetaObject::invokeMethod(
        this, [this, begun] { Finish(begun); }, Qt::QueuedConnection);
  });
}

void PlanWorker::GiveUp() {
  if (case_) case_->stop.Raise();
  case_.reset();
}

void PlanWorker::StopCheck() {
  if (case_ && case_->task.check) case_->stop.Raise();
}

void PlanWorker::Finish(const std::shared_ptr<Case>& done) {
  if (done != case_) return;  // given up meanwhile
  case_.reset();
  emit Answered(done->task, done->answer);
}

}  // namespace quorvane
