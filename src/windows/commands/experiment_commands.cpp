#include "windows/commands/experiment_commands.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>

#include "archive/experiment_session.h"
#include "archive/zip_file.h"
#include "base/text.h"
#include "core/new_experiment.h"
#include "core/settings/recent_files.h"
#include "fit/models.h"
#include "job/page_setup.h"
#include "windows/controls/busy_pointer.h"
#include "windows/data/data_window.h"
#include "windows/data/loaded_data_tab.h"
#include "windows/data/source_files_tab.h"
#include "windows/graphs/graphs_window.h"
#include "windows/log/log_window.h"
#include "windows/session/save_folder.h"
#include "windows/session/session.h"
#include "windows/session/window_host.h"

namespace quorvane {

namespace {

constexpr const char* kArchiveFilter =
    QT_TRANSLATE_NOOP("QObject", "Zipped Experiment File (*.exz)");

}  // namespace

ExperimentCommands::ExperimentCommands(WindowSet windows, QObject* parent)
    : QObject(parent), windows_(windows) {}

bool ExperimentCommands::MayDiscard(const QString& question, const QString& title) {
  return !windows_.session.Module.ExperimentOpen || AskToDiscard(question, title);
}

bool ExperimentCommands::AskToDiscard(const QString& question, const QString& title) {
  const Session& session = windows_.session;
  if (session.Calculating || session.Module.Store.Datasets.empty()) {
    return session.Ask.AskYesNo(&windows_.frame, title, question);
  }
  const DiscardChoice choice = session.Ask.AskDiscard(&windows_.frame, title, question);
  return choice == DiscardChoice::kSave ? Save() : choice == DiscardChoice::kYes;
}

QString ExperimentCommands::Name() const {
  return QFileInfo(file_).completeBaseName();
}

void ExperimentCommands::SetFile(const QString& path) {
  file_ = path;
  emit NameChanged();
}

std::shared_ptr<FileLock> ExperimentCommands::Lock(const QString& path, const QString& question) {
  if (!windows_.session.LockArchives) return std::make_shared<FileLock>();
  const bool ours = lock_ != nullptr && lock_->Held();
  if (ours && lock_->File() == ArchiveLockFile(ToPath(path))) return lock_;
  auto lock = std::make_shared<FileLock>(LockArchive(ToPath(path)));
  if (lock->Holder().empty()) return lock;
  const QString text = tr("%1 is open in another Quorvane:\n%2\n\n%3")
                           .arg(path, QString::fromStdString(lock->Holder()), question);
  if (!windows_.session.Ask.AskYesNo(&windows_.frame, tr("Experiment In Use"), text))
    return nullptr;
  return lock;
}

void ExperimentCommands::New() {
  if (!MayDiscard(tr("Discard current Log contents?"), QString())) return;
  Session& session = windows_.session;
  windows_.data.ClosePage();
  StartNewExperiment(session.Module);
  windows_.log.Clear();
  LogNewHead(session.CurrentFolder, windows_.host);
  session.Module.ExperimentOpen = false;  // the head lines are no work of the user
  windows_.data.ShowNewStore();
  lock_.reset();
  SetFile({});
  emit ExperimentChanged();
  emit NothingUnsaved();
}

void ExperimentCommands::LoadWithDialog() {
  if (!MayDiscard(tr("Discard Current Experiment?"), tr("Load Experiment?"))) {
    return;
  }
  const Session& session = windows_.session;
  const QString path = session.Ask.OpenFile(
      &windows_.frame,
      {tr("Open"), ToQString(session.CurrentFolder), QObject::tr(kArchiveFilter), {}});
  if (!path.isEmpty()) Load(path);
}

void ExperimentCommands::LoadAsked(const QString& path) {
  if (MayDiscard(tr("Discard Current Experiment?"), tr("Load Experiment?"))) {
    Load(path);
  }
}

void ExperimentCommands::Load(const QString& name) {
  const QString path = QDir::cleanPath(QFileInfo(name).absoluteFilePath());
  const auto lock = Lock(path, tr("Open it all the same? If both save it, the later save stays."));
  if (lock == nullptr) return;
  const BusyPointer busy;
  Session& session = windows_.session;
  session.Remark({});
  std::optional<ReadExperiment> read = OpenExperiment(ToPath(path), windows_.host);
  if (!read) return;
  const bool bare = read->experiment.comment.empty();
  windows_.data.ClosePage();
  const std::string remark =
      LoadReadExperiment(session.Module, std::move(*read), ToPath(path), windows_.host);
  lock_ = lock;
  ChangeFolder(QFileInfo(path).absolutePath());
  AddRecentFile(ToPath(path), session.Settings, windows_.host);
  ShowStore();
  SetFile(path);
  emit NothingUnsaved();
  session.Remark(bare ? tr("This experiment keeps no page: \"Setup Fit\" makes a new one.")
                      : QString::fromStdString(remark));
}

void ExperimentCommands::Resume(ReadExperiment&& read) {
  const BusyPointer busy;
  Session& session = windows_.session;
  const QString folder =
      ToQString(PathFromText(Cp1252ToUtf8(Trim(read.experiment.directory.View()))));
  windows_.data.ClosePage();
  const std::string remark = ResumeExperiment(session.Module, std::move(read), windows_.host);
  lock_.reset();
  SetFile({});
  if (QFileInfo(folder).isDir()) ChangeFolder(folder);
  ShowStore();
  session.Remark(QString::fromStdString(remark));
}

void ExperimentCommands::ShowStore() {
  windows_.data.ShowNewStore();
  windows_.data.LoadedData().ShowModel();
  windows_.log.MoveToEnd();
  if (QWidget* graphs = windows_.graphs.parentWidget()) graphs->hide();
  emit ExperimentChanged();
  windows_.log.TakeFocus();
}

bool ExperimentCommands::Save() {
  Session& session = windows_.session;
  if (session.Module.Store.Datasets.empty()) {  // says so before a name is asked for
    return SaveExperiment(session.Module, {}, windows_.host);
  }
  if (!session.CommitPending()) return false;
  const QString path = session.Ask.SaveFile(
      &windows_.frame, {tr("Save"), ToQString(session.CurrentFolder), QObject::tr(kArchiveFilter),
                        QFileInfo(file_).fileName()});
  if (path.isEmpty()) return false;
  const auto lock = Lock(path, tr("Save over it all the same?"));
  if (lock == nullptr) return false;
  const BusyPointer busy;
  if (!SaveExperiment(session.Module, ToPath(path), windows_.host)) return false;
  lock_ = lock;
  session.CurrentFolder = ToPath(QFileInfo(path).absolutePath());
  windows_.data.SourceFiles().FollowSave();
  AddRecentFile(ToPath(path), session.Settings, windows_.host);
  SetFile(path);
  emit NothingUnsaved();
  const int leftOut = SetupWithFits(session.Module, kLongestComment).fitsLeftOut;
  session.Remark(leftOut == 0
                     ? QString()
                     : tr("Saved; of the list of fits the %1 oldest found no room.").arg(leftOut));
  return true;
}

void ExperimentCommands::SaveLoadedData(SavedSignal signal) {
  Session& session = windows_.session;
  if (!session.CommitPending() || !NamesCanBeUsed(session.Module.Store, windows_.host)) return;
  const QString folder = session.Ask.ChooseFolder(&windows_.frame, tr("Save All Data Sets"),
                                                  SaveFolder(ToQString(session.CurrentFolder)));
  if (folder.isEmpty()) return;
  try {
    quorvane::SaveLoadedData(session.Module.Store, ToPath(folder), signal, ExistingFiles::kAsk,
                             windows_.host);
  } catch (const FileFault& fault) {
    windows_.host.ShowMessage("", fault.what(), MessageIcon::kExclamation);
  }
  windows_.data.SourceFiles().FollowSave();
}

void ExperimentCommands::OpenDropped(const QStringList& paths) {
  if (!windows_.session.CommitPending()) return;
  for (const QString& path : paths) {
    const bool job = path.endsWith(QStringLiteral(".toml"), Qt::CaseInsensitive);
    if (!job && !path.endsWith(QStringLiteral(".exz"), Qt::CaseInsensitive)) continue;
    if (job) emit JobDropped(path);
    if (!job) LoadAsked(path);
    return;
  }
  if (paths.size() == 1 && QFileInfo(paths.front()).isDir()) {
    ChangeFolder(QDir::cleanPath(paths.front()));
    emit FolderDropped();
    return;
  }
  windows_.data.SourceFiles().LoadFiles(paths);
}

void ExperimentCommands::OpenArgument(const QString& argument) {
  const QString path = QString(argument).remove('"');
  if (path.isEmpty() || path.right(3).toUpper() != QStringLiteral("EXZ")) return;
  if (!FileExists(ToPath(path))) {
    windows_.host.ShowMessage("", tr("%1 :: File Can't Be Loaded").arg(path).toStdString(),
                              MessageIcon::kNone);
  } else if (windows_.session.Module.ExperimentOpen) {
    // No question: no key may push aside what was just rescued.
    windows_.host.ShowMessage(tr("Unsaved Work").toStdString(),
                              tr("The unsaved work is open now, and this file is not:\n%1\n\nSave "
                                 "the work before you load the file.")
                                  .arg(path)
                                  .toStdString(),
                              MessageIcon::kInformation);
  } else {
    Load(path);
  }
}

void ExperimentCommands::ChangeFolder(const QString& folder) {
  windows_.session.CurrentFolder = ToPath(folder);
  windows_.data.SourceFiles().RefreshDirectory();
}

}  // namespace quorvane
