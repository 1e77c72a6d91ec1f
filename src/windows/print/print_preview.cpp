#include "windows/print/print_preview.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <exception>

#include "windows/controls/control_names.h"

namespace quorvane {

PreviewPane::PreviewPane(QPrinter& printer, Paint paint, QWidget* parent)
    : QWidget(parent), paint_(std::move(paint)) {
  BuildWidgets(printer);
  connect(pages_, &QPrintPreviewWidget::paintRequested, this, [this](QPrinter* device) {
    try {
      paint_(*device);
    } catch (const std::exception&) {  // printing it will say why
    }
  });
  connect(pages_, &QPrintPreviewWidget::previewChanged, this, &PreviewPane::ShowPlace);
  connect(previous_, &QToolButton::clicked, this, [this] { ShowPage(pages_->currentPage() - 1); });
  connect(next_, &QToolButton::clicked, this, [this] { ShowPage(pages_->currentPage() + 1); });
}

void PreviewPane::BuildWidgets(QPrinter& printer) {
  pages_ = Named(new QPrintPreviewWidget(&printer), "prvPages");
  pages_->setZoomMode(QPrintPreviewWidget::FitInView);
  const auto button = [](const char* name, const QString& text, const QString& toolTip) {
    auto* made = Named(new QToolButton, name);
    made->setText(text);
    made->setToolTip(toolTip);
    return made;
  };
  previous_ = button("cmdPreviousPage", tr("<"), tr("Previous page"));
  previous_->setArrowType(Qt::LeftArrow);
  next_ = button("cmdNextPage", tr(">"), tr("Next page"));
  next_->setArrowType(Qt::RightArrow);
  place_ = Named(new QLabel, "lblPage");
  QToolButton* whole = button("cmdWholePage", tr("Whole Page"), tr("Show the whole page"));
  QToolButton* wide = button("cmdPageWidth", tr("Page Width"), tr("Show the page in full width"));
  connect(whole, &QToolButton::clicked, pages_, &QPrintPreviewWidget::fitInView);
  connect(wide, &QToolButton::clicked, pages_, &QPrintPreviewWidget::fitToWidth);
  auto* bar = new QHBoxLayout;
  for (QWidget* each : {static_cast<QWidget*>(previous_), static_cast<QWidget*>(place_),
                        static_cast<QWidget*>(next_)}) {
    bar->addWidget(each);
  }
  bar->addStretch();
  bar->addWidget(whole);
  bar->addWidget(wide);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(pages_, 1);
  layout->addLayout(bar);
}

void PreviewPane::Refresh() {
  pages_->updatePreview();
}

void PreviewPane::ShowPage(int page) {
  pages_->setCurrentPage(page);
  ShowPlace();
}

void PreviewPane::ShowPlace() {
  const int page = pages_->currentPage();
  const int count = pages_->pageCount();
  place_->setText(tr("Page %1 of %2").arg(page).arg(count));
  previous_->setEnabled(page > 1);
  next_->setEnabled(page < count);
}

PrintPreview::PrintPreview(QPrinter& printer, const PrintJob& job, QWidget* parent)
    : QDialog(parent) {
  setObjectName("frmPrintPreview");
  setWindowTitle(tr("Preview - %1").arg(job.title));
  const bool selectionOnly = job.selection && printer.printRange() == QPrinter::Selection;
  auto* pane = new PreviewPane(printer, [&job, selectionOnly](QPagedPaintDevice& device) {
    job.paint(device, selectionOnly);
  });
  auto* buttons = new QDialogButtonBox;
  const auto add = [&](const char* name, const QString& caption, int result) {
    QPushButton* made = Named(buttons->addButton(caption, QDialogButtonBox::ActionRole), name);
    connect(made, &QPushButton::clicked, this, [this, result] { done(result); });
    return made;
  };
  add("cmdPrint", tr("&Print"), kPrint)->setDefault(true);
  add("cmdBack", tr("&Back"), kBack);
  add("cmdCancel", tr("Cancel"), kCancel);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(pane, 1);
  layout->addWidget(buttons);
  resize(fontMetrics().averageCharWidth() * 100, fontMetrics().height() * 46);
}

}  // namespace quorvane
