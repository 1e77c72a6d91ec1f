#include "windows/print/grid_print_form.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include "windows/controls/control_names.h"
#include "windows/print/print_preview.h"

namespace quorvane {

namespace {

constexpr double kLargestMargin = 100.0;  // mm; the paper may allow less
constexpr int kLeastScale = 10;           // percent
constexpr int kGreatestScale = 400;

}  // namespace

P001::P001(Dialogs& ask, PrintedGrid grid, const PrinterStart& start, QWidget* parent)
    : QDialog(parent), ask_(ask), grid_(std::move(grid)), printer_(QPrinter::HighResolution) {
  SetUpPrinter(printer_, start, grid_.title);
  BuildWidgets();
  ShowMargins();
  TakeGrid();
  ConnectSignals();
}

void P001::BuildWidgets() {
  setObjectName("P001");
  setWindowTitle(tr("Print %1").arg(grid_.title));
  txtTitle_ = Named(new QLineEdit(grid_.title), "txtTitle");
  txtTitle_->setMinimumWidth(fontMetrics().averageCharWidth() * 36);
  preview_ = new PreviewPane(printer_, [this](QPagedPaintDevice& device) {
    GridJob(grid_, Options()).paint(device, false);
  });
  auto* title = new QFormLayout;
  title->addRow(tr("&Title:"), txtTitle_);
  auto* buttons = new QDialogButtonBox;
  QPushButton* print =
      Named(buttons->addButton(tr("&Print..."), QDialogButtonBox::ActionRole), "cmdPrint");
  print->setDefault(true);
  QPushButton* close = Named(buttons->addButton(QDialogButtonBox::Close), "cmdClose");
  connect(print, &QPushButton::clicked, this, &P001::Print);
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  auto* side = new QVBoxLayout;
  side->addLayout(title);
  side->addWidget(BuildPage());
  side->addWidget(BuildRange());
  side->addStretch(1);
  side->addWidget(buttons);
  auto* layout = new QHBoxLayout(this);
  layout->addLayout(side);
  layout->addWidget(preview_, 1);
  txtTitle_->setFocus();
  resize(fontMetrics().averageCharWidth() * 150, fontMetrics().height() * 40);
}

QWidget* P001::BuildPage() {
  auto* box = new QGroupBox(tr("Page"));
  cboOrientation_ = Named(new QComboBox, "cboOrientation");
  cboOrientation_->addItems({tr("Portrait"), tr("Landscape")});
  txtScale_ = Named(new QSpinBox, "txtScale");
  txtScale_->setRange(kLeastScale, kGreatestScale);
  txtScale_->setSingleStep(10);
  txtScale_->setValue(100);
  txtScale_->setSuffix(tr(" %"));
  chkFitWidth_ = Named(new QCheckBox(tr("&Fit all columns on one page")), "chkFitWidth");
  txtMarginLeft_ = AddMargin("txtMarginLeft");
  txtMarginTop_ = AddMargin("txtMarginTop");
  txtMarginRight_ = AddMargin("txtMarginRight");
  txtMarginBottom_ = AddMargin("txtMarginBottom");
  auto* form = new QFormLayout(box);
  form->addRow(tr("&Orientation:"), cboOrientation_);
  form->addRow(tr("&Left margin:"), txtMarginLeft_);
  form->addRow(tr("&Right margin:"), txtMarginRight_);
  form->addRow(tr("Top &margin:"), txtMarginTop_);
  form->addRow(tr("&Bottom margin:"), txtMarginBottom_);
  form->addRow(tr("&Scaling:"), txtScale_);
  form->addRow(chkFitWidth_);
  return box;
}

QDoubleSpinBox* P001::AddMargin(const char* name) {
  auto* box = Named(new QDoubleSpinBox, name);
  box->setDecimals(1);
  box->setRange(0.0, kLargestMargin);
  box->setSuffix(tr(" mm"));
  return box;
}

QWidget* P001::BuildRange() {
  auto* box = new QGroupBox(tr("Pages"));
  optAllPages_ = Named(new QRadioButton(tr("&All")), "optAllPages");
  optAllPages_->setChecked(true);
  optPages_ = Named(new QRadioButton(tr("Fro&m")), "optPages");
  txtFromPage_ = Named(new QSpinBox, "txtFromPage");
  txtToPage_ = Named(new QSpinBox, "txtToPage");
  lblPages_ = Named(new QLabel, "lblPages");
  for (QSpinBox* page : {txtFromPage_, txtToPage_}) {
    page->setRange(1, 1);
    page->setEnabled(false);
  }
  auto* range = new QHBoxLayout;
  range->addWidget(optPages_);
  range->addWidget(txtFromPage_);
  range->addWidget(new QLabel(tr("to")));
  range->addWidget(txtToPage_);
  range->addStretch();
  auto* layout = new QVBoxLayout(box);
  layout->addWidget(optAllPages_);
  layout->addLayout(range);
  layout->addWidget(lblPages_);
  return box;
}

void P001::ConnectSignals() {
  connect(txtTitle_, &QLineEdit::textChanged, this, &P001::TakeGrid);
  connect(cboOrientation_, &QComboBox::currentIndexChanged, this, &P001::TakePage);
  for (QDoubleSpinBox* box : {txtMarginLeft_, txtMarginTop_, txtMarginRight_, txtMarginBottom_}) {
    connect(box, &QDoubleSpinBox::valueChanged, this, &P001::TakePage);
  }
  for (QSpinBox* box : {txtScale_, txtFromPage_, txtToPage_}) {
    connect(box, &QSpinBox::valueChanged, this, &P001::TakeGrid);
  }
  connect(chkFitWidth_, &QCheckBox::toggled, this, &P001::TakeGrid);
  connect(optPages_, &QRadioButton::toggled, this, [this](bool on) {
    txtFromPage_->setEnabled(on);
    txtToPage_->setEnabled(on);
    TakeGrid();
  });
}

void P001::TakePage() {
  const bool landscape = cboOrientation_->currentIndex() == 1;
  printer_.setPageOrientation(landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
  const QMarginsF margins(txtMarginLeft_->value(), txtMarginTop_->value(), txtMarginRight_->value(),
                          txtMarginBottom_->value());
  if (!printer_.setPageMargins(margins, QPageLayout::Millimeter)) ShowMargins();  // no room left
  TakeGrid();
}

void P001::TakeGrid() {
  grid_.title = txtTitle_->text();
  const int pages = CountGridPages(grid_, Options(), printer_);
  for (QSpinBox* page : {txtFromPage_, txtToPage_}) {
    const QSignalBlocker quiet(page);
    const bool last = page == txtToPage_ && page->value() == page->maximum();
    page->setMaximum(pages);
    if (last) page->setValue(pages);
  }
  const QSignalBlocker quiet(txtToPage_);
  txtToPage_->setMinimum(txtFromPage_->value());
  lblPages_->setText(pages == 1 ? tr("The grid takes 1 page.")
                                : tr("The grid takes %1 pages.").arg(pages));
  preview_->Refresh();
}

// The printer's dialog has a page of its own for them.
void P001::ShowMargins() {
  const QPageLayout layout = printer_.pageLayout();
  const QMarginsF margins = layout.margins(QPageLayout::Millimeter);
  const QSignalBlocker quiet(cboOrientation_);
  cboOrientation_->setCurrentIndex(layout.orientation() == QPageLayout::Landscape ? 1 : 0);
  const std::pair<QDoubleSpinBox*, double> boxes[] = {{txtMarginLeft_, margins.left()},
                                                      {txtMarginTop_, margins.top()},
                                                      {txtMarginRight_, margins.right()},
                                                      {txtMarginBottom_, margins.bottom()}};
  for (const auto& [box, value] : boxes) {
    const QSignalBlocker alsoQuiet(box);
    box->setValue(value);
  }
}

GridPrintOptions P001::Options() const {
  GridPrintOptions options{.scale = txtScale_->value(), .fitWidth = chkFitWidth_->isChecked()};
  if (optPages_->isChecked()) {
    options.fromPage = txtFromPage_->value();
    options.toPage = txtToPage_->value();
  }
  return options;
}

void P001::Print() {
  if (!quorvane::Print(ask_, this, printer_, GridJob(grid_, Options()))) return;
  emit PrinterChosen(printer_);
  accept();
}

}  // namespace quorvane
