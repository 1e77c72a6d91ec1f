#include "windows/unsaved_mark.h"

#include <chrono>
#include <span>

#include "base/fingerprint.h"
#include "windows/data_window.h"
#include "windows/loaded_data_tab.h"
#include "windows/log_window.h"
#include "windows/session.h"

std::uint64_t SessionFingerprint(const WindowSet& windows) {
  const QuorvaneModule& module = windows.session.Module;
  Fingerprint print;
  print.Add(std::as_bytes(std::span(&module.FitPage, 1)));
  print.Add(std::as_bytes(std::span(module.Store.Datasets)));
  for (const auto& graph : module.GraphStreams) print.Add(graph);
  const int choices[] = {windows.data.LoadedData().ModelIndex(),
                         module.Setup.ConstrainKRatios ? 1 : 0};
  print.Add(std::as_bytes(std::span(choices)));
  return print.Value();
}

UnsavedMark::UnsavedMark(WindowSet windows, QObject* parent) : QObject(parent), windows_(windows) {
  connect(&windows.log, &LogWindow::Changed, this, &UnsavedMark::LogChanged);
  connect(&timer_, &QTimer::timeout, this, &UnsavedMark::Look);
  timer_.start(std::chrono::seconds(1));
  Clean();
}

void UnsavedMark::Clean() {
  clean_ = SessionFingerprint(windows_);
  logClean_ = true;
  Set(false);
}

void UnsavedMark::LogChanged() {
  logClean_ = false;
  Look();
}

void UnsavedMark::Look() {
  const QuorvaneModule& module = windows_.session.Module;
  if (module.Store.Datasets.empty()) {  // then the log is all that can be saved
    Set(!logClean_ && module.ExperimentOpen);
  } else if (!unsaved_) {  // what was changed stays so until it is saved
    Set(!logClean_ || SessionFingerprint(windows_) != clean_);
  }
}

void UnsavedMark::Set(bool unsaved) {
  if (unsaved == unsaved_) return;
  unsaved_ = unsaved;
  emit Changed();
}
