// The menu entry "Save Report": the last finished fit as a document for a paper.
#pragma once

#include <QObject>

#include "windows/session/window_set.h"

namespace quorvane {

class ReportCommands : public QObject {
  Q_OBJECT
 public:
  explicit ReportCommands(WindowSet windows, QObject* parent = nullptr);

  // Asks for a file, HTML or PDF, and writes the report of the last finished fit. A failure is told
  // in a box and leaves an old file as it was.
  void Save();

 signals:
  void Saving();  // is about to look at the last fit
  void Saved();   // a file

 private:
  WindowSet windows_;
};

}  // namespace quorvane
