// The pages of a print job before they are printed.
#pragma once

#include <QDialog>
#include <functional>

#include "windows/print/print_job.h"

class QLabel;
class QPrintPreviewWidget;
class QPrinter;
class QToolButton;

namespace quorvane {

// The pages of a job, one at a time, as large as there is room for them or as wide.
class PreviewPane : public QWidget {
  Q_OBJECT
 public:
  using Paint = std::function<void(QPagedPaintDevice& device)>;

  // Paints with `paint` for `printer`, which outlives this.
  PreviewPane(QPrinter& printer, Paint paint, QWidget* parent = nullptr);

  // The job or the page has changed.
  void Refresh();

 private:
  void BuildWidgets(QPrinter& printer);
  void ShowPage(int page);
  void ShowPlace();

  Paint paint_;
  QPrintPreviewWidget* pages_;
  QToolButton* previous_;
  QToolButton* next_;
  QLabel* place_;
};

// The preview behind the print dialog.
class PrintPreview : public QDialog {
  Q_OBJECT
 public:
  enum Result { kCancel = Rejected, kPrint = Accepted, kBack };  // of exec(); back to the dialog

  PrintPreview(QPrinter& printer, const PrintJob& job, QWidget* parent = nullptr);
};

}  // namespace quorvane
