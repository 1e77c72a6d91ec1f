// Rich text on pages.
#pragma once

#include "windows/print/print_job.h"

class QTextEdit;

namespace quorvane {

// The text of `box`, or its selection, black on white, pictures included. Lines are as wide as the
// tables of a report need: where the page is narrower, all is printed smaller. The job copies
// nothing; `box` outlives it.
PrintJob TextJob(const QTextEdit& box, const QString& title);

}  // namespace quorvane
