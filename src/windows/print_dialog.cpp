#include "windows/print_dialog.h"

#include <QDialogButtonBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>

#include "windows/control_names.h"
#include "windows/print_preview.h"

namespace {

enum class Choice { kCancel, kPrint, kPreview };

// The dialog once. Page numbers are not offered: jobs that have pages ask for them themselves.
Choice Ask(QWidget* parent, QPrinter& printer, const PrintJob& job) {
  QPrintDialog dialog(&printer, parent);
  dialog.setWindowTitle(QObject::tr("Print %1").arg(job.title));
  dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
  dialog.setOption(QAbstractPrintDialog::PrintSelection, job.selection);
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

bool RunPrintDialog(QWidget* parent, QPrinter& printer, const PrintJob& job) {
  for (;;) {
    const Choice choice = Ask(parent, printer, job);
    if (choice != Choice::kPreview) return choice == Choice::kPrint;
    const int result = PrintPreview(printer, job, parent).exec();
    if (result != PrintPreview::kBack) return result == PrintPreview::kPrint;
  }
}
