#include "windows/print/printing.h"

#include <QBuffer>
#include <QPageLayout>
#include <QPdfWriter>
#include <QPrinter>
#include <QPrinterInfo>
#include <cerrno>

#include "base/files.h"
#include "windows/controls/busy_pointer.h"
#include "windows/session/dialogs.h"
#include "windows/session/save_folder.h"

namespace quorvane {

namespace {

// Into memory first: a PDF painter does not say when the disk is full.
void WritePdf(QPrinter& printer, const PrintJob& job, bool selectionOnly) {
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&bytes);
    writer.setTitle(job.title);
    writer.setCreator(QStringLiteral("Quorvane"));
    writer.setResolution(printer.resolution());
    writer.setPageLayout(printer.pageLayout());
    job.paint(writer, selectionOnly);
  }
  WriteWholeFile(PathFromText(printer.outputFileName().toStdString()),
                 {bytes.data().constData(), static_cast<std::size_t>(bytes.data().size())});
}

void ShowError(Dialogs& ask, QWidget* parent, int number, const char* description) {
  ask.ShowMessage(parent, {},
                  QObject::tr("Error %1\r\n%2").arg(number).arg(QString::fromUtf8(description)),
                  MessageIcon::kStop);
}

}  // namespace

bool HasPrinter(const QString& name) {
  return QPrinterInfo::availablePrinterNames().contains(name, Qt::CaseSensitive);
}

PrinterStart::PrinterStart() : layout(QPrinter().pageLayout()) {
  constexpr double kMargin = 15.0;
  layout.setUnits(QPageLayout::Millimeter);
  layout.setMargins({kMargin, kMargin, kMargin, kMargin});
}

void SetUpPrinter(QPrinter& printer, const PrinterStart& start, const QString& title) {
  if (HasPrinter(start.printer)) printer.setPrinterName(start.printer);
  if (QPrinterInfo::availablePrinterNames().isEmpty()) {
    QString name = title;
    for (const char c : {'/', '\\', ':', '*', '?', '"', '<', '>', '|'}) name.replace(c, '_');
    const QString folder = SaveFolder(QString::fromStdString(PathText(start.folder)));
    printer.setOutputFileName(folder + '/' + name + ".pdf");
  }
  printer.setPageLayout(start.layout);
}

bool Print(Dialogs& ask, QWidget* parent, QPrinter& printer, const PrintJob& job) {
  printer.setDocName(job.title);
  printer.setPrintRange(job.selection ? QPrinter::Selection : QPrinter::AllPages);
  if (!ask.AskPrinter(parent, printer, job)) return false;
  const bool selectionOnly = job.selection && printer.printRange() == QPrinter::Selection;
  try {
    const BusyPointer busy;
    if (printer.outputFormat() == QPrinter::PdfFormat) {
      WritePdf(printer, job, selectionOnly);
    } else {
      job.paint(printer, selectionOnly);
    }
  } catch (const FileFault& fault) {
    ShowError(ask, parent, fault.number(), fault.what());
  } catch (const std::exception& fault) {
    ShowError(ask, parent, EIO, fault.what());
  }
  return true;
}

QRectF PrintableArea(const QPagedPaintDevice& device) {
  const QRect area = device.pageLayout().paintRectPixels(device.logicalDpiX());
  return {QPointF(), QSizeF(area.size())};
}

}  // namespace quorvane
