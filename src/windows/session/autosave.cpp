#include "windows/session/autosave.h"

#include <exception>

#include "archive/experiment_file.h"
#include "archive/experiment_session.h"
#include "base/arithmetic.h"
#include "base/files.h"
#include "windows/session/session.h"
#include "windows/session/unsaved_mark.h"

namespace quorvane {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kPiece{10};  // the window waits no longer for a piece of the log

}  // namespace

// One state of the session on its way to the disk. The window fills it and does not touch it while
// the other thread has it, but for `dropped`.
struct Autosave::Job {
  State state;
  Experiment experiment;
  std::function<std::string()> log;  // its RTF
  std::filesystem::path file;
  QString failure;                    // why it was not written
  std::atomic<bool> dropped = false;  // not wanted any more

  void Write();
};

void Autosave::Job::Write() {
  try {
    experiment.log = log();
    log = {};
    if (!dropped) WriteExperimentFile(file, experiment);
  } catch (const std::exception& fault) {
    failure = QString::fromUtf8(fault.what());
  }
}

Autosave::Autosave(const Session& session, SessionLog& log, QObject* parent)
    : QObject(parent), session_(session), log_(log.Follow()) {
  writer_.setMaxThreadCount(1);
  readLog_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this, &Autosave::Keep);
  connect(&readLog_, &QTimer::timeout, this, &Autosave::ReadLog);
}

Autosave::~Autosave() {
  if (job_) job_->dropped = true;
  writer_.waitForDone();
}

void Autosave::Start(std::filesystem::path folder, std::optional<UnsavedWork> resumed,
                     milliseconds interval) {
  folder_ = std::move(folder);
  work_ = std::move(resumed);
  kept_ = CurrentState();
  timer_.start(interval);
  HavePlace();
}

bool Autosave::HavePlace() {
  if (work_ && !work_->Lost()) return true;
  work_.reset();
  try {
    work_ = UnsavedWork::Claim(folder_);
  } catch (const FileFault& fault) {
    Fail(QString::fromUtf8(fault.what()));
  }
  return work_.has_value();
}

Autosave::State Autosave::CurrentState() const {
  return {SessionFingerprint(session_.Module), log_->Edits()};
}

void Autosave::Keep() {
  if (folder_.empty()) return;
  if (job_) {
    again_ = true;
    return;
  }
  const State state = CurrentState();
  if (state == kept_ || !HavePlace()) return;
  auto job = std::make_shared<Job>();
  job->state = state;
  job->file = work_->File();
  try {
    job->experiment = ExperimentOf(session_.Module, session_.CurrentFolder);
  } catch (const ArithmeticFault& fault) {
    Fail(QString::fromUtf8(fault.what()));
    return;
  }
  job_ = std::move(job);
  ReadLog();
}

void Autosave::ReadLog() {
  if (!job_) return;
  if (log_->Read(kPiece)) {
    Write();
  } else {
    readLog_.start(0);
  }
}

void Autosave::Write() {
  job_->log = log_->RtfOfNow();
  job_->state.logEdits = log_->Edits();
  writer_.start([this, job = job_] {
    job->Write();
    // Arrives only while this lives: the destructor waits for the thread.
    QMetaObject::invokeMethod(
        this, [this, job] { Finish(job); }, Qt::QueuedConnection);
  });
}

void Autosave::Finish(const std::shared_ptr<Job>& job) {
  if (job != job_) return;  // dropped meanwhile
  job_.reset();
  if (job->failure.isEmpty()) {
    kept_ = job->state;
    failure_.clear();
    emit Kept();
  } else {
    Fail(job->failure);
  }
  if (std::exchange(again_, false)) Keep();
}

void Autosave::Fail(const QString& text) {
  if (text == failure_) return;
  failure_ = text;
  emit Failed(text);
}

void Autosave::Forget() {
  readLog_.stop();
  again_ = false;
  if (job_) job_->dropped = true;
  job_.reset();
}

void Autosave::Clean() {
  Forget();
  kept_ = CurrentState();
  if (!work_) return;
  work_->Discard();
  // And behind the write that may be under way.
  writer_.start([file = work_->File()] {
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
  });
}

void Autosave::End() {
  timer_.stop();
  folder_.clear();
  Forget();
  writer_.waitForDone();
  if (work_) work_->Discard();
  work_.reset();
}

}  // namespace quorvane
