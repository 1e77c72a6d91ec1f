#include "windows/commands/report_commands.h"

#include "core/report/report_file.h"
#include "plot/report_pages.h"
#include "windows/controls/busy_pointer.h"
#include "windows/data/data_window.h"
#include "windows/session/session.h"

namespace quorvane {

ReportCommands::ReportCommands(WindowSet windows, QObject* parent)
    : QObject(parent), windows_(windows) {}

void ReportCommands::Save() {
  Session& session = windows_.session;
  if (session.Calculating || !session.Module.LastFit) return;
  const QString name = session.Ask.SaveFile(
      &windows_.frame, {tr("Save Report"), ToQString(session.CurrentFolder),
                        tr("Web page (*.html);;PDF document (*.pdf)"), QStringLiteral("report")});
  if (name.isEmpty()) return;
  try {
    const BusyPointer busy;
    emit Saving();
    WriteReport(session.Module, ToPath(name),
                {{RenderReportChart, RenderReportFigure}, RenderReportPages});
  } catch (const std::exception& fault) {
    session.Ask.ShowMessage(&windows_.frame, tr("Save Report"), QString::fromUtf8(fault.what()),
                            MessageIcon::kExclamation);
    return;
  }
  session.CurrentFolder = ToPath(name).parent_path();
  emit Saved();
}

}  // namespace quorvane
