#include "windows/print/print_dialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>

#include "windows/controls/control_names.h"
#include "windows/print/print_preview.h"
#include "windows/session/dialogs.h"

namespace quorvane {

namespace {

enum class Choice { kCancel, kPrint, kPreview };

// All or the selection: jobs that have pages ask for their numbers themselves. The dialog shows its
// boxes for numbers whatever its options say.
void OfferNoPageNumbers(QPrintDialog& dialog, bool selection) {
  dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
  dialog.setOption(QAbstractPrintDialog::PrintSelection, selection);
  const auto* range = dialog.findChild<QWidget*>(QStringLiteral("gbPrintRange"));
  if (range == nullptr) return;
  for (auto* part : range->findChildren<QWidget*>()) {
    const QString name = part->objectName();
    if (name != QStringLiteral("printAll") && name != QStringLiteral("printSelection")) {
      part->hide();
    }
  }
}

// Whether the file that `printer` writes, if any, may be. The print dialog asks that itself, but
// not on the way to the preview.
bool MayWrite(Dialogs& ask, QWidget* parent, const QPrinter& printer) {
  const QString name = printer.outputFileName();
  return name.isEmpty() || !QFileInfo(name).isFile() ||
         ask.AskYesNo(
             parent, {},
             QObject::tr("%1 already exists!  Overwrite?").arg(QDir::toNativeSeparators(name)));
}

// The dialog once.
Choice Ask(QWidget* parent, QPrinter& printer, const PrintJob& job) {
  QPrintDialog dialog(&printer, parent);
  dialog.setWindowTitle(QObject::tr("Print %1").arg(job.title));
  OfferNoPageNumbers(dialog, job.selection);
  bool preview = false;
  if (auto* buttons = dialog.findChild<QDialogButtonBox*>()) {
    auto* button = Named(
        buttons->addButton(QObject::tr("Pre&view..."), QDialogButtonBox::ActionRole), "cmdPreview");
    QObject::connect(button, &QPushButton::clicked, &dialog, [&] {
      preview = true;
      dialog.accept();
      preview = !dialog.isVisible();  // the dialog may refuse its own entries
    });
  }
  if (dialog.exec() != QDialog::Accepted) return Choice::kCancel;
  return preview ? Choice::kPreview : Choice::kPrint;
}

}  // namespace

#if defined(Q_OS_WIN)

// The dialog is the system's and takes no buttons of ours, so the pages are shown before it. It
// does not know files either: without a printer the preview writes one.
bool RunPrintDialog(Dialogs& ask, QWidget* parent, QPrinter& printer, const PrintJob& job) {
  const bool file = printer.outputFormat() == QPrinter::PdfFormat;
  while (PrintPreview(printer, job, parent).exec() == PrintPreview::kPrint) {
    if (file ? MayWrite(ask, parent, printer) : Ask(parent, printer, job) == Choice::kPrint) {
      return true;
    }
  }
  return false;
}

#else

bool RunPrintDialog(Dialogs& ask, QWidget* parent, QPrinter& printer, const PrintJob& job) {
  for (;;) {
    const Choice choice = Ask(parent, printer, job);
    if (choice != Choice::kPreview) return choice == Choice::kPrint;
    const int result = PrintPreview(printer, job, parent).exec();
    if (result == PrintPreview::kCancel) return false;
    if (result == PrintPreview::kPrint && MayWrite(ask, parent, printer)) return true;
  }
}

#endif

}  // namespace quorvane
