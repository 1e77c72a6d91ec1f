#include "windows/graphs/export_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <exception>

#include "plot/chart_csv.h"
#include "windows/controls/busy_pointer.h"
#include "windows/graphs/chart_clipboard.h"

namespace quorvane {

namespace {

struct FormatChoice {
  PictureFormat format;
  const char* caption;
  const char* filter;
  const char* suffix;
};

constexpr FormatChoice kFormats[] = {
    {PictureFormat::kPng, QT_TRANSLATE_NOOP("QObject", "PNG (pixels)"),
     QT_TRANSLATE_NOOP("QObject", "PNG picture (*.png)"), ".png"},
    {PictureFormat::kSvg, QT_TRANSLATE_NOOP("QObject", "SVG (drawing)"),
     QT_TRANSLATE_NOOP("QObject", "SVG drawing (*.svg)"), ".svg"},
    {PictureFormat::kPdf, QT_TRANSLATE_NOOP("QObject", "PDF (page)"),
     QT_TRANSLATE_NOOP("QObject", "PDF document (*.pdf)"), ".pdf"}};

}  // namespace

void PicturePreview::SetPicture(const QImage& picture) {
  picture_ = picture;
  update();
}

void PicturePreview::paintEvent(QPaintEvent*) {
  if (picture_.isNull()) return;
  QImage fitted =
      picture_.scaled(size() * devicePixelRatio(), Qt::KeepAspectRatio, Qt::SmoothTransformation);
  fitted.setDevicePixelRatio(devicePixelRatio());
  QRectF place(QPointF(), fitted.deviceIndependentSize());
  place.moveCenter(QRectF(rect()).center());
  QPainter(this).drawImage(place.topLeft(), fitted);
}

ExportDialog::ExportDialog(Session& session, Chart chart, QString name, QWidget* parent)
    : QDialog(parent), session_(session), chart_(std::move(chart)), name_(std::move(name)) {
  BuildWidgets();
  ConnectSignals();
  TakeFormat();
}

void ExportDialog::BuildWidgets() {
  setObjectName("frmExport");
  setWindowTitle(tr("Export %1").arg(name_));
  preview_ = new PicturePreview;
  preview_->setObjectName("picPreview");
  preview_->setAccessibleName(tr("Preview"));
  const auto button = [this](const char* name, const QString& caption) {
    auto* made = new QPushButton(caption, this);
    made->setObjectName(name);
    made->setAutoDefault(false);
    return made;
  };
  cmdSave_ = button("cmdSavePicture", tr("&Save Picture..."));
  cmdSave_->setDefault(true);
  cmdCopy_ = button("cmdCopyPicture", tr("&Copy Picture"));
  cmdNumbers_ = button("cmdSaveNumbers", tr("Save &Numbers..."));
  cmdNumbers_->setToolTip(tr("All plotted numbers as a table (CSV)"));
  cmdClose_ = button("cmdClose", tr("Close"));
  auto* side = new QVBoxLayout;
  side->addWidget(BuildOptions());
  side->addStretch(1);
  for (QPushButton* each : {cmdSave_, cmdCopy_, cmdNumbers_, cmdClose_}) side->addWidget(each);
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(preview_, 1);
  layout->addLayout(side);
}

QWidget* ExportDialog::BuildOptions() {
  auto* options = new QWidget;
  cboFormat_ = new QComboBox;
  cboFormat_->setObjectName("cboFormat");
  for (const FormatChoice& choice : kFormats) cboFormat_->addItem(QObject::tr(choice.caption));
  txtWidth_ = new QSpinBox;
  txtWidth_->setObjectName("txtWidth");
  txtHeight_ = new QSpinBox;
  txtHeight_->setObjectName("txtHeight");
  chkProportion_ = new QCheckBox(tr("Keep &proportion"));
  chkProportion_->setObjectName("chkProportion");
  chkProportion_->setChecked(true);
  auto* form = new QFormLayout(options);
  form->setContentsMargins(0, 0, 0, 0);
  form->addRow(tr("&Format:"), cboFormat_);
  form->addRow(tr("&Width:"), txtWidth_);
  form->addRow(tr("&Height:"), txtHeight_);
  form->addRow(QString(), chkProportion_);
  return options;
}

void ExportDialog::ConnectSignals() {
  connect(cboFormat_, &QComboBox::currentIndexChanged, this, &ExportDialog::TakeFormat);
  connect(txtWidth_, &QSpinBox::valueChanged, this, &ExportDialog::TakeWidth);
  connect(txtHeight_, &QSpinBox::valueChanged, this, &ExportDialog::TakeHeight);
  connect(chkProportion_, &QCheckBox::toggled, this, [this] { shape_ = EnteredSize(); });
  connect(cmdSave_, &QPushButton::clicked, this, &ExportDialog::SavePicture);
  connect(cmdCopy_, &QPushButton::clicked, this, &ExportDialog::CopyPicture);
  connect(cmdNumbers_, &QPushButton::clicked, this, &ExportDialog::SaveNumbers);
  connect(cmdClose_, &QPushButton::clicked, this, &QDialog::reject);
}

PictureFormat ExportDialog::Format() const {
  return kFormats[cboFormat_->currentIndex()].format;
}

PictureSize ExportDialog::EnteredSize() const {
  return {txtWidth_->value(), txtHeight_->value()};
}

PictureSize ExportDialog::Size() const {
  return ToPictureSize(Format(), EnteredSize());
}

void ExportDialog::SetSize(PictureSize size) {
  const QSignalBlocker width(txtWidth_);
  const QSignalBlocker height(txtHeight_);
  txtWidth_->setValue(size.width);
  txtHeight_->setValue(size.height);
  ShowPreview();
}

void ExportDialog::TakeFormat() {
  const ExportUnit& unit = UnitOf(Format());
  for (QSpinBox* box : {txtWidth_, txtHeight_}) {
    const QSignalBlocker quiet(box);
    box->setSuffix(QObject::tr(unit.suffix));
    box->setRange(unit.least, unit.greatest);
  }
  shape_ = unit.standard;
  SetSize(unit.standard);
}

void ExportDialog::TakeWidth() {
  PictureSize size = EnteredSize();
  if (chkProportion_->isChecked()) size.height = HeightFor(size.width, shape_, UnitOf(Format()));
  SetSize(size);
}

void ExportDialog::TakeHeight() {
  PictureSize size = EnteredSize();
  if (chkProportion_->isChecked()) size.width = WidthFor(size.height, shape_, UnitOf(Format()));
  SetSize(size);
}

void ExportDialog::ShowPreview() {
  try {
    const std::string png = RenderChart(chart_, PictureFormat::kPng, LayoutSize(Size()));
    preview_->SetPicture(QImage::fromData(QByteArray::fromStdString(png)));
  } catch (const std::exception&) {  // saving it will say why
    preview_->SetPicture({});
  }
}

template <class Content>
void ExportDialog::Save(const QString& filter, const QString& suffix, Content content) {
  const QString file = session_.Ask.SaveFile(
      this, {tr("Save"), ToQString(session_.CurrentFolder), filter, name_ + suffix});
  if (file.isEmpty()) return;
  try {
    const BusyPointer busy;
    WriteWholeFile(ToPath(file), content());
  } catch (const std::exception& fault) {
    ShowFailure(fault);
    return;
  }
  session_.CurrentFolder = ToPath(file).parent_path();
  accept();
}

void ExportDialog::SavePicture() {
  const FormatChoice& choice = kFormats[cboFormat_->currentIndex()];
  Save(QObject::tr(choice.filter), choice.suffix,
       [&] { return RenderChart(chart_, choice.format, Size()); });
}

void ExportDialog::SaveNumbers() {
  Save(tr("Comma-separated values (*.csv)"), ".csv", [this] { return ChartCsv(chart_); });
}

void ExportDialog::CopyPicture() {
  CopyChart(chart_, Size(), session_.Ask, this);
}

void ExportDialog::ShowFailure(const std::exception& fault) {
  session_.Ask.ShowMessage(this, "", QString::fromUtf8(fault.what()), MessageIcon::kExclamation);
}

}  // namespace quorvane
