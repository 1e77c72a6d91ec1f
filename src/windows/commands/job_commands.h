// The commands of the File menu that save the session as a job and apply a job to it.
#pragma once

#include <QObject>

#include "windows/session/window_set.h"

namespace quorvane {

class JobCommands : public QObject {
  Q_OBJECT
 public:
  explicit JobCommands(WindowSet windows, QObject* parent = nullptr);

  // "Save Job...": the scans with their ranges from their files; where these are not there any more
  // it offers to save the experiment beside the job, which then begins from it. `name` is proposed.
  void Save(const QString& name);

  // "Apply Job...": the page of a job for the loaded datasets. Asks for the job.
  void ApplyWithDialog();

  // The same for the job at `path`.
  void Apply(const QString& path);

 signals:
  void Saved();  // files were written

 private:
  // The session as an archive beside the job; its text, or an empty one after a No.
  std::string SaveWithArchive(const QString& path, const std::string& reason);

  WindowSet windows_;
};

}  // namespace quorvane
