// The print dialog with a way to the preview.
#pragma once

#include "windows/print/print_job.h"

class QPrinter;
class QWidget;

namespace quorvane {

class Dialogs;

// Lets the user choose printer, page and selection for `job`, look at the pages, and print or
// cancel; false on a cancel. `printer` is then set up as chosen. An existing file is only replaced
// when the user says so.
bool RunPrintDialog(Dialogs& ask, QWidget* parent, QPrinter& printer, const PrintJob& job);

}  // namespace quorvane
