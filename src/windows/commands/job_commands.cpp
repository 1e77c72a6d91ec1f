#include "windows/commands/job_commands.h"

#include <QFileInfo>
#include <stdexcept>

#include "archive/experiment_session.h"
#include "archive/job_use.h"
#include "job/job_text.h"
#include "windows/controls/busy_pointer.h"
#include "windows/data/data_window.h"
#include "windows/session/session.h"
#include "windows/session/window_host.h"

namespace quorvane {

namespace {

constexpr const char* kJobFilter = QT_TRANSLATE_NOOP("QObject", "Job of an analysis (*.toml)");

}  // namespace

JobCommands::JobCommands(WindowSet windows, QObject* parent) : QObject(parent), windows_(windows) {}

void JobCommands::Save(const QString& name) {
  Session& session = windows_.session;
  const QString path = session.Ask.SaveFile(
      &windows_.frame, {tr("Save Job"), ToQString(session.CurrentFolder), QObject::tr(kJobFilter),
                        name.isEmpty() ? QStringLiteral("job") : name});
  if (path.isEmpty()) return;
  try {
    const BusyPointer busy;
    const std::filesystem::path folder = ToPath(QFileInfo(path).absolutePath());
    JobText job = JobFromScans(session.Module, folder);
    if (!job.reason.empty()) job.text = SaveWithArchive(path, job.reason);
    if (job.text.empty()) return;
    WriteWholeFile(ToPath(path), job.text);
    session.CurrentFolder = folder;
  } catch (const FileFault& fault) {
    session.Ask.ShowMessage(&windows_.frame, tr("Save Job"), QString::fromUtf8(fault.what()),
                            MessageIcon::kExclamation);
    return;
  }
  emit Saved();
  session.Remark(tr("Saved. \"quorvane-cli analyze %1\" runs it.").arg(QFileInfo(path).fileName()));
}

std::string JobCommands::SaveWithArchive(const QString& path, const std::string& reason) {
  Session& session = windows_.session;
  const QFileInfo job(path);
  const QString archive = job.absolutePath() + '/' + job.completeBaseName() + ".exz";
  QString question =
      tr("%1\n\nThe job can begin from an archive instead. Save the experiment beside it, as %2?")
          .arg(QString::fromStdString(reason), QFileInfo(archive).fileName());
  if (QFileInfo::exists(archive)) {
    question += '\n' + tr("A file of that name is there already; it would be replaced.");
  }
  const std::filesystem::path file = ToPath(archive);
  if (!session.Ask.AskYesNo(&windows_.frame, tr("Save Job"), question)) return {};
  if (!SaveExperiment(session.Module, file, windows_.host)) return {};
  return JobFromArchive(session.Module, file, file.parent_path());
}

void JobCommands::ApplyWithDialog() {
  const Session& session = windows_.session;
  const QString path = session.Ask.OpenFile(
      &windows_.frame,
      {tr("Apply Job"), ToQString(session.CurrentFolder), QObject::tr(kJobFilter), {}});
  if (!path.isEmpty()) Apply(path);
}

void JobCommands::Apply(const QString& path) {
  Session& session = windows_.session;
  std::string refused;
  AppliedJob applied;
  try {
    const BusyPointer busy;
    windows_.data.ClosePage();
    applied = ApplyJob(ToPath(path), session.Module);
  } catch (const std::runtime_error& fault) {  // JobFault, FileFault
    refused = fault.what();
  }
  if (!refused.empty()) {
    session.Ask.ShowMessage(&windows_.frame, tr("Apply Job"), QString::fromStdString(refused),
                            MessageIcon::kExclamation);
    return;
  }
  windows_.data.ShowChangedPage(applied.setUp);
  session.Remark(QString::fromStdString(applied.summary));
  if (applied.misfits.empty() && applied.remarks.empty()) return;
  QString text = applied.misfits.empty() ? QString() : tr("What did not fit:");
  for (const std::string& misfit : applied.misfits) text += '\n' + QString::fromStdString(misfit);
  if (!applied.remarks.empty()) {
    text += (text.isEmpty() ? "" : "\n\n") + tr("Constants from sequence and buffer:");
  }
  for (const std::string& remark : applied.remarks) text += '\n' + QString::fromStdString(remark);
  session.Ask.ShowMessage(&windows_.frame, tr("Apply Job"), text, MessageIcon::kInformation);
}

}  // namespace quorvane
