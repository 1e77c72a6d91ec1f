// Printing: the way of a job from the dialog to the printer or the PDF file.
#pragma once

#include <QPageLayout>
#include <filesystem>

#include "windows/print/print_job.h"

class QPrinter;
class QRectF;
class QWidget;

namespace quorvane {

class Dialogs;

// Whether a printer of the system has exactly that device name.
bool HasPrinter(const QString& name);

// What a job's printer starts from: kept from the job before.
struct PrinterStart {
  QPageLayout layout;            // the first time A4 or what is usual here, 15 mm margins
  QString printer;               // name; empty before the first job and after a file
  std::filesystem::path folder;  // where a file is proposed
  PrinterStart();
};

// Brings `printer` to `start`. Where the system has no printer, a PDF file named by `title` is
// proposed.
void SetUpPrinter(QPrinter& printer, const PrinterStart& start, const QString& title);

// Asks for a printer, `printer` being what the dialog starts from, and prints. A cancel ends it
// silently; an error is told in a box. A PDF file is written whole or not at all. True if the
// dialog was not cancelled.
bool Print(Dialogs& ask, QWidget* parent, QPrinter& printer, const PrintJob& job);

// The part of a page within its margins, in the units of `device`, whose origin is its corner.
QRectF PrintableArea(const QPagedPaintDevice& device);

}  // namespace quorvane
