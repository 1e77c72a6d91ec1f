#include "windows/commands/print_commands.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPrinter>

#include "plot/chart_widget.h"
#include "plot/figure_widget.h"
#include "windows/print/grid_print_form.h"
#include "windows/print/printing.h"
#include "windows/print/text_printing.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

PrintJob ChartJob(const ChartWidget& chart, const QString& title) {
  return {.title = title, .paint = [&chart](QPagedPaintDevice& device, bool) {
            chart.Paint(device, PrintableArea(device));
          }};
}

PrintJob FigureJob(const FigureWidget& figure, const QString& title) {
  return {.title = title, .paint = [&figure](QPagedPaintDevice& device, bool) {
            PaintFigure(figure.GetFigure(), figure.PageSize(), device, PrintableArea(device));
          }};
}

}  // namespace

PrintCommands::PrintCommands(WindowSet windows, QMdiArea& area, QObject* parent)
    : QObject(parent), windows_(windows), area_(area) {}

void PrintCommands::PrintActive() {
  const QMdiSubWindow* child = area_.activeSubWindow();
  const QWidget* widget = child == nullptr ? nullptr : child->widget();
  const auto* printable = dynamic_cast<const Printable*>(widget);
  if (printable == nullptr) {
    Print({}, {});
  } else {
    Print(printable->Printed(), widget->windowTitle());
  }
}

void PrintCommands::Print(const PrintContent& content, const QString& title) {
  if (const auto* const* chart = std::get_if<const ChartWidget*>(&content)) {
    RunJob(ChartJob(**chart, title));
  } else if (const auto* const* figure = std::get_if<const FigureWidget*>(&content)) {
    RunJob(FigureJob(**figure, title));
  } else if (const auto* const* text = std::get_if<const QTextEdit*>(&content)) {
    RunJob(TextJob(**text, title));
  } else if (const auto* grid = std::get_if<PrintedGrid>(&content)) {
    OpenGridForm(*grid);
  } else {
    windows_.session.Ask.ShowMessage(&windows_.frame, {}, tr("No printing from this tab!"),
                                     MessageIcon::kNone);
  }
}

void PrintCommands::RunJob(const PrintJob& job) {
  QPrinter printer(QPrinter::HighResolution);
  SetUpPrinter(printer, Start(), job.title);
  if (quorvane::Print(windows_.session.Ask, &windows_.frame, printer, job)) Remember(printer);
}

void PrintCommands::OpenGridForm(const PrintedGrid& grid) {
  auto* form = new P001(windows_.session.Ask, grid, Start(), &windows_.frame);
  form->setAttribute(Qt::WA_DeleteOnClose);
  connect(form, &P001::PrinterChosen, this, &PrintCommands::Remember);
  form->open();
}

const PrinterStart& PrintCommands::Start() {
  if (!start_) start_.emplace();
  start_->folder = windows_.session.CurrentFolder;
  return *start_;
}

void PrintCommands::Remember(const QPrinter& printer) {
  start_->layout = printer.pageLayout();
  start_->printer = printer.outputFileName().isEmpty() ? printer.printerName() : QString();
}

}  // namespace quorvane
