#include "windows/commands/option_commands.h"

#include <QColor>
#include <QWidget>

#include "base/number_format.h"
#include "base/text.h"
#include "core/graph_store.h"
#include "core/settings/settings.h"
#include "plot/chart_color.h"
#include "windows/controls/child_window.h"
#include "windows/data/data_window.h"
#include "windows/data/edit_tab.h"
#include "windows/graphs/graphs_window.h"
#include "windows/session/session.h"
#include "windows/session/window_host.h"
#include "windows/solution/solution_window.h"

namespace quorvane {

OptionCommands::OptionCommands(WindowSet windows, QObject* parent)
    : QObject(parent), windows_(windows) {}

void OptionCommands::AskConstant(Constant constant) {
  QuorvaneModule& module = windows_.session.Module;
  const ConstantDialog& dialog = DialogOf(constant);
  const std::optional<QString> answer = windows_.session.Ask.AskText(
      &windows_.frame, QString::fromUtf8(dialog.title), QString::fromUtf8(dialog.prompt),
      QString::fromStdString(FormatNumber(ValueOf(module, constant), dialog.pattern)));
  if (!answer || answer->isEmpty()) return;
  const std::optional<double> value = ParseNumeric(answer->toStdString());
  const Refusal refusal = value ? SetConstant(module, constant, *value) : Refusal{kIllegalValue};
  if (!refusal) {
    windows_.data.RefreshDisplay();
    emit ConstantsChanged();
    return;
  }
  windows_.session.Remark(dialog.taken);
  windows_.host.ShowMessage(value ? dialog.outOfRangeTitle : dialog.notANumberTitle, refusal.text,
                            MessageIcon::kExclamation);
}

void OptionCommands::OpenSolution() {
  auto* solution = new SolutionWindow(windows_.session, &windows_.frame);
  solution->setAttribute(Qt::WA_DeleteOnClose);
  connect(solution, &SolutionWindow::Used, this, [this] {
    windows_.data.RefreshDisplay();
    emit ConstantsChanged();
  });
  solution->open();
}

void OptionCommands::SetKFormat(KDisplay display) {
  windows_.session.Module.Preferences.KFormat = display;
  windows_.data.RefreshDisplay();
  emit Changed();
}

void OptionCommands::SetBuoyant(bool buoyant) {
  windows_.session.Module.Preferences.UseBuoyantMW = buoyant;
  windows_.data.RefreshDisplay();
  emit Changed();
}

void OptionCommands::SetAlwaysFitToRest(bool on) {
  Session& session = windows_.session;
  session.Module.Preferences.AlwaysFitToRest = on;
  SaveOwnSettings(session.Module, session.Settings, windows_.host);
}

void OptionCommands::ChooseColor(bool deleted) {
  QuorvaneModule& module = windows_.session.Module;
  std::uint32_t& color = deleted ? module.Preferences.DeletedColor : module.Preferences.GoodColor;
  const std::optional<QColor> chosen =
      windows_.session.Ask.ChooseColor(&windows_.frame, ToQColor(color));
  if (!chosen) return;
  color = FromQColor(*chosen);
  windows_.data.Editing().Redraw();
}

void OptionCommands::ExportGraphs() {
  windows_.graphs.Refresh();
  if (windows_.session.Module.NumGraphs() > 0) windows_.graphs.ShowGraph(1);
  ShowChild(windows_.graphs);
}

void OptionCommands::DeleteGraphs() {
  if (!DeleteAllGraphs(windows_.session.Module, windows_.host)) return;
  windows_.graphs.Refresh();
  if (QWidget* child = windows_.graphs.parentWidget()) child->hide();
  emit Changed();
}

}  // namespace quorvane
