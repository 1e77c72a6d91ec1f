#include "windows/session/unsaved_mark.h"

#include <chrono>
#include <span>
#include <string>

#include "archive/zip_file.h"
#include "base/fingerprint.h"
#include "fit/models.h"
#include "job/page_setup.h"
#include "windows/session/session.h"

namespace quorvane {

std::uint64_t SessionFingerprint(const QuorvaneModule& module) {
  Fingerprint print;
  print.Add(std::as_bytes(std::span(&module.FitPage, 1)));
  print.Add(std::as_bytes(std::span(module.Store.Datasets)));
  for (const auto& graph : module.GraphStreams) print.Add(graph);
  const int model = module.ChosenModel->index;
  print.Add(std::as_bytes(std::span(&model, 1)));
  const std::string setup = SetupWithFits(module, kLongestComment).text;
  print.Add(std::as_bytes(std::span(setup)));
  return print.Value();
}

UnsavedMark::UnsavedMark(const Session& session, QObject* parent)
    : QObject(parent), session_(session) {
  connect(&timer_, &QTimer::timeout, this, &UnsavedMark::Look);
  timer_.start(std::chrono::seconds(1));
  Clean();
}

void UnsavedMark::Clean() {
  clean_ = SessionFingerprint(session_.Module);
  logClean_ = true;
  Set(false);
}

void UnsavedMark::LogChanged() {
  logClean_ = false;
  Look();
}

void UnsavedMark::Look() {
  const QuorvaneModule& module = session_.Module;
  if (module.Store.Datasets.empty()) {  // then the log is all that can be saved
    Set(!logClean_ && module.ExperimentOpen);
  } else if (!unsaved_) {  // what was changed stays so until it is saved
    Set(!logClean_ || SessionFingerprint(session_.Module) != clean_);
  }
}

void UnsavedMark::Set(bool unsaved) {
  if (unsaved == unsaved_) return;
  unsaved_ = unsaved;
  emit Changed();
}

}  // namespace quorvane
