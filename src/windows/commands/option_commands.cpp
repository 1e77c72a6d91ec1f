#include "windows/commands/option_commands.h"

#include <QColor>
#include <QWidget>

#include "base/number_format.h"
#include "base/text.h"
#include "core/graph_store.h"
#include "plot/chart_color.h"
#include "windows/controls/child_window.h"
#include "windows/data/data_window.h"
#include "windows/data/edit_tab.h"
#include "windows/graphs/graphs_window.h"
#include "windows/session/session.h"
#include "windows/session/window_host.h"

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
  if (!value || !InRange(constant, *value)) windows_.session.Remark(dialog.taken);
  if (!value) {
    windows_.host.ShowMessage(dialog.notANumberTitle, tr("Illegal Value Entered").toStdString(),
                              MessageIcon::kExclamation);
  } else if (!InRange(constant, *value)) {
    windows_.host.ShowMessage(dialog.outOfRangeTitle,
                              tr("Out-of-range Value Entered").toStdString(),
                              MessageIcon::kExclamation);
  } else {
    SetConstant(module, constant, *value);
    windows_.data.RefreshDisplay();
    emit ConstantsChanged();
  }
}

void OptionCommands::SetKFormat(KDisplay display) {
  windows_.session.Module.KFormat = display;
  windows_.data.RefreshDisplay();
  emit Changed();
}

void OptionCommands::SetBuoyant(bool buoyant) {
  windows_.session.Module.UseBuoyantMW = buoyant;
  windows_.data.RefreshDisplay();
  emit Changed();
}

void OptionCommands::ChooseColor(bool deleted) {
  QuorvaneModule& module = windows_.session.Module;
  std::uint32_t& color = deleted ? module.DeletedColor : module.GoodColor;
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
