// The menu "Print": the open part of the active window goes to the printer.
#pragma once

#include <QObject>
#include <optional>

#include "windows/print/printing.h"
#include "windows/session/printable.h"
#include "windows/session/window_set.h"

class QMdiArea;
class QPrinter;

namespace quorvane {

class PrintCommands : public QObject {
  Q_OBJECT
 public:
  PrintCommands(WindowSet windows, QMdiArea& area, QObject* parent = nullptr);

  // mnuPrint: what the active window shows, or the message that there is nothing to print.
  void PrintActive();

  // Charts and texts by the print dialog, `title` being the document's name; a grid by P001.
  void Print(const PrintContent& content, const QString& title);

 private:
  void RunJob(const PrintJob& job);
  void OpenGridForm(const PrintedGrid& grid);
  const PrinterStart& Start();
  void Remember(const QPrinter& printer);

  WindowSet windows_;
  QMdiArea& area_;
  std::optional<PrinterStart> start_;  // made when it is needed: printers take a while to answer
};

}  // namespace quorvane
