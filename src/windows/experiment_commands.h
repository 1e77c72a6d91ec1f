// The commands of the File menu: new, load, save, recent files.
#pragma once

#include <QObject>
#include <QString>

#include "scan/dataset_files.h"
#include "windows/window_set.h"

class ExperimentCommands : public QObject {
  Q_OBJECT
 public:
  explicit ExperimentCommands(WindowSet windows, QObject* parent = nullptr);

  void New();
  void LoadWithDialog();
  // Asks whether the open experiment may go, then loads.
  void LoadAsked(const QString& path);
  void Load(const QString& path);
  void Save();
  // A file a dataset, the fitted baseline taken off or not.
  void SaveLoadedData(SavedSignal signal);
  // Loads scans as "Load Multiple" would, or the first archive among the paths.
  void OpenDropped(const QStringList& paths);
  // Loads the path that the command line named, if it ends in "exz".
  void OpenArgument(const QString& argument);

 signals:
  // Datasets, graphs or the log were replaced.
  void ExperimentChanged();

 private:
  bool MayDiscard(const QString& question, const QString& title);
  void ChangeFolder(const QString& path);

  WindowSet windows_;
};
