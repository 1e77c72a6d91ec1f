#include "windows/data/import_choices.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>

#include "base/text.h"
#include "windows/controls/control_names.h"

namespace quorvane {

namespace {

constexpr int kAsFound = -1;

std::optional<int> Chosen(const QComboBox& box) {
  const int value = box.currentData().toInt();
  return value == kAsFound ? std::nullopt : std::optional(value);
}

// A number that was typed; nothing if the box is empty or holds none.
std::optional<double> Typed(const QLineEdit& box) {
  return ParseNumeric(box.text().toStdString());
}

// What stands for the text's own word: "As found: TAB".
QString AsFound(const QString& found) {
  return found.isEmpty() ? QObject::tr("As found") : QObject::tr("As found: %1").arg(found);
}

QString ColumnText(const std::optional<int>& column) {
  return column ? QString::number(*column) : QObject::tr("none");
}

QString KindText(char kind) {
  if (kind == 'P') return QObject::tr("interference");
  if (kind == 'F') return QObject::tr("fluorescence");
  return QObject::tr("absorbance");
}

// The columns of the text with their headings, behind the entries that are there in any case.
void OfferColumns(QComboBox& box, int fixed, const TextImport& found) {
  constexpr int kMost = 40;
  const QVariant chosen = box.currentData();
  while (box.count() > fixed) box.removeItem(fixed);
  for (int column = 1; column <= std::min(std::max(found.width, 2), kMost); ++column) {
    const auto place = static_cast<std::size_t>(column) - 1;
    const bool headed = place < found.headings.size() && !found.headings[place].empty();
    box.addItem(headed ? QStringLiteral("%1: %2").arg(column).arg(
                             QString::fromStdString(found.headings[place]).left(20))
                       : QString::number(column),
                column);
  }
  if (box.findData(chosen) < 0) box.addItem(chosen.toString(), chosen);
  box.setCurrentIndex(box.findData(chosen));
}

}  // namespace

ImportChoicesPane::ImportChoicesPane(QWidget* parent) : QWidget(parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(BuildReading());
  layout->addWidget(BuildHeader());
  int width = 0;  // of the captions, so that the boxes of both groups stand in line
  for (const QLabel* caption : findChildren<QLabel*>()) {
    width = std::max(width, caption->sizeHint().width());
  }
  for (QLabel* caption : findChildren<QLabel*>()) caption->setMinimumWidth(width);
  for (QComboBox* box : findChildren<QComboBox*>()) {
    connect(box, &QComboBox::currentIndexChanged, this, &ImportChoicesPane::Changed);
  }
  for (QLineEdit* box : {txtSpeed_, txtWavelength_, txtTemperature_, txtComment_}) {
    connect(box, &QLineEdit::textChanged, this, &ImportChoicesPane::Changed);
  }
  connect(spnSkip_, &QSpinBox::valueChanged, this, &ImportChoicesPane::Changed);
}

QComboBox* ImportChoicesPane::AddBox(QGridLayout& grid, const QString& label, const char* name) {
  auto* box = Named(new QComboBox, name);
  box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  box->setMinimumContentsLength(19);
  box->addItem(AsFound({}), kAsFound);
  auto* caption = new QLabel(label);
  caption->setBuddy(box);
  const int row = grid.rowCount();
  grid.addWidget(caption, row, 0);
  grid.addWidget(box, row, 1);
  return box;
}

QLineEdit* ImportChoicesPane::AddEntry(QGridLayout& grid, const QString& label, const char* name,
                                       const QString& unit) {
  auto* box = Named(new QLineEdit, name);
  auto* caption = new QLabel(unit.isEmpty() ? label : QStringLiteral("%1, %2").arg(label, unit));
  caption->setBuddy(box);
  const int row = grid.rowCount();
  grid.addWidget(caption, row, 0);
  grid.addWidget(box, row, 1);
  return box;
}

QGroupBox* ImportChoicesPane::BuildReading() {
  auto* group = Named(new QGroupBox(tr("Reading")), "fraImportReading");
  auto* grid = new QGridLayout(group);
  grid->setVerticalSpacing(3);
  grid->setColumnStretch(1, 1);
  cmbSeparator_ = AddBox(*grid, tr("Separator"), "cmbImportSeparator");
  for (int k = 0; k < kSeparators; ++k) {
    cmbSeparator_->addItem(QString::fromLatin1(NameOf(static_cast<Separator>(k))), k);
  }
  cmbDecimal_ = AddBox(*grid, tr("Decimal sign"), "cmbImportDecimal");
  for (int k = 0; k < kDecimalSigns; ++k) {
    cmbDecimal_->addItem(QString::fromLatin1(NameOf(static_cast<DecimalSign>(k))), k);
  }
  spnSkip_ = Named(new QSpinBox, "spnImportSkip");
  spnSkip_->setRange(kAsFound, 100000);
  spnSkip_->setValue(kAsFound);
  spnSkip_->setSpecialValueText(AsFound({}));
  spnSkip_->setToolTip(tr("Lines before the first row"));
  auto* lines = new QLabel(tr("Lines to skip"));
  lines->setBuddy(spnSkip_);
  grid->addWidget(lines, grid->rowCount(), 0);
  grid->addWidget(spnSkip_, grid->rowCount() - 1, 1);
  cmbRadius_ = AddBox(*grid, tr("Column of radius"), "cmbImportRadius");
  cmbSignal_ = AddBox(*grid, tr("Column of signal"), "cmbImportSignal");
  cmbError_ = AddBox(*grid, tr("Standard deviation"), "cmbImportError");
  cmbError_->addItem(tr("none"), 0);
  cmbReference_ = AddBox(*grid, tr("Reference"), "cmbImportReference");
  cmbReference_->setItemText(0, tr("none"));
  cmbReference_->setToolTip(
      tr("With a reference both are intensities, and log10(reference / signal) is written"));
  return group;
}

QGroupBox* ImportChoicesPane::BuildHeader() {
  auto* group = Named(new QGroupBox(tr("Header of the scan")), "fraImportHeader");
  auto* grid = new QGridLayout(group);
  grid->setVerticalSpacing(3);
  grid->setColumnStretch(1, 1);
  cmbKind_ = AddBox(*grid, tr("Kind"), "cmbImportKind");
  for (const char kind : {'R', 'P', 'F'}) cmbKind_->addItem(KindText(kind), int{kind});
  cmbCell_ = AddBox(*grid, tr("Cell"), "cmbImportCell");
  for (int cell = 1; cell <= 8; ++cell) cmbCell_->addItem(QString::number(cell), cell);
  txtSpeed_ = AddEntry(*grid, tr("Speed"), "txtImportSpeed", tr("rpm"));
  txtWavelength_ = AddEntry(*grid, tr("Wavelength"), "txtImportWavelength", tr("nm"));
  txtTemperature_ = AddEntry(*grid, tr("Temperature"), "txtImportTemperature", tr("\u00B0C"));
  txtComment_ = AddEntry(*grid, tr("Comment"), "txtImportComment", {});
  return group;
}

ImportChoices ImportChoicesPane::Choices() const {
  ImportChoices choices;
  if (const auto k = Chosen(*cmbSeparator_)) choices.form.separator = static_cast<Separator>(*k);
  if (const auto k = Chosen(*cmbDecimal_)) choices.form.decimal = static_cast<DecimalSign>(*k);
  if (spnSkip_->value() != kAsFound) choices.skip = spnSkip_->value();
  choices.radius = Chosen(*cmbRadius_);
  choices.signal = Chosen(*cmbSignal_);
  choices.error = Chosen(*cmbError_);
  choices.reference = Chosen(*cmbReference_);
  if (const auto kind = Chosen(*cmbKind_)) choices.kind = static_cast<char>(*kind);
  choices.cell = Chosen(*cmbCell_);
  choices.speed = Typed(*txtSpeed_);
  choices.wavelength = Typed(*txtWavelength_);
  choices.temperature = Typed(*txtTemperature_);
  if (!txtComment_->text().isEmpty()) choices.comment = txtComment_->text().toStdString();
  return choices;
}

QString ImportChoicesPane::Fault() const {
  for (const QLineEdit* box : {txtSpeed_, txtWavelength_, txtTemperature_}) {
    if (!box->text().trimmed().isEmpty() && !Typed(*box)) {
      return tr("\"%1\" is no number").arg(box->text());
    }
  }
  return {};
}

void ImportChoicesPane::ShowFound(const TextImport& found) {
  const QSignalBlocker blockers[] = {QSignalBlocker(cmbRadius_), QSignalBlocker(cmbSignal_),
                                     QSignalBlocker(cmbError_), QSignalBlocker(cmbReference_)};
  const bool read = found.width > 0;
  const auto text = [read](const QString& value) { return AsFound(read ? value : QString()); };
  cmbSeparator_->setItemText(0, text(QString::fromLatin1(NameOf(found.form.separator))));
  cmbDecimal_->setItemText(0, text(QString::fromLatin1(NameOf(found.form.decimal))));
  spnSkip_->setSpecialValueText(text(QString::number(found.skipped)));
  OfferColumns(*cmbRadius_, 1, found);
  OfferColumns(*cmbSignal_, 1, found);
  OfferColumns(*cmbError_, 2, found);
  OfferColumns(*cmbReference_, 1, found);
  cmbRadius_->setItemText(0, text(QString::number(found.columns.radius)));
  cmbSignal_->setItemText(0, text(QString::number(found.columns.signal)));
  cmbError_->setItemText(0, text(ColumnText(found.columns.error)));
  cmbKind_->setItemText(0, text(KindText(found.header.kind)));
  cmbCell_->setItemText(0, text(QString::number(found.header.cell)));
  txtSpeed_->setPlaceholderText(QString::number(found.header.speed));
  txtWavelength_->setPlaceholderText(QString::number(found.header.wavelength));
  txtTemperature_->setPlaceholderText(QString::number(found.header.temperature));
  txtComment_->setPlaceholderText(QString::fromStdString(found.comment));
}

}  // namespace quorvane
