// The commands of the File menu: new, load, save, recent files.
#pragma once

#include <QObject>
#include <QString>
#include <memory>

#include "archive/experiment_file.h"
#include "base/file_lock.h"
#include "scan/dataset_files.h"
#include "windows/session/window_set.h"

namespace quorvane {

class ExperimentCommands : public QObject {
  Q_OBJECT
 public:
  explicit ExperimentCommands(WindowSet windows, QObject* parent = nullptr);

  void New();
  void LoadWithDialog();
  // Asks whether the open experiment may go, then loads.
  void LoadAsked(const QString& path);
  void Load(const QString& path);
  // True if it is saved.
  bool Save();
  // A file a dataset, the fitted baseline taken off or not.
  void SaveLoadedData(SavedSignal signal);
  // Takes up an experiment that a crash left behind. It counts as changed and has no file.
  void Resume(ReadExperiment&& read);
  // Loads scans as "Load Multiple" would, or the first archive among the paths; hands on the first
  // job, and a folder that comes alone.
  void OpenDropped(const QStringList& paths);
  // Loads the path that the command line named, if it ends in "exz" and no unsaved work is open.
  void OpenArgument(const QString& argument);

  // Asks whether the session may go, and offers to save it first if there is something to save.
  // True after a Yes, or once it is saved.
  bool AskToDiscard(const QString& question, const QString& title);

  // Of the archive that was loaded or saved last; empty if the experiment has none.
  QString Name() const;

 signals:
  void JobDropped(const QString& path);
  void FolderDropped();  // it is the session's folder now
  // Datasets, graphs or the log were replaced.
  void ExperimentChanged();
  void NameChanged();
  // The session is as it was saved, or as it begins: there is nothing to lose.
  void NothingUnsaved();

 private:
  bool MayDiscard(const QString& question, const QString& title);
  // The lock of an archive; not held if another program has it and the user answers `question` with
  // Yes. Null after a No.
  std::shared_ptr<FileLock> Lock(const QString& path, const QString& question);
  void SetFile(const QString& path);
  void ChangeFolder(const QString& folder);
  void ShowStore();

  WindowSet windows_;
  std::shared_ptr<FileLock> lock_;  // of the archive that is open
  QString file_;                    // its path; empty for a new experiment
};

}  // namespace quorvane
