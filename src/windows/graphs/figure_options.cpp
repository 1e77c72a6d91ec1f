#include "windows/graphs/figure_options.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTableWidget>
#include <QVBoxLayout>

#include "fit/local_weights.h"
#include "windows/controls/control_names.h"

namespace quorvane {

namespace {

enum WidthChoice { kColumnWidth, kPageWidth, kOwnWidth };

constexpr int kMostMarksForEach = 50;  // that is shown

constexpr FigureFile kFiles[] = {{PictureFormat::kPdf, 300},
                                 {PictureFormat::kSvg, 300},
                                 {PictureFormat::kPng, 300},
                                 {PictureFormat::kPng, 600}};

QDoubleSpinBox* NewLength(const char* name) {
  auto* box = Named(new QDoubleSpinBox, name);
  box->setRange(kLeastFigureSide, kGreatestFigureSide);
  box->setDecimals(0);
  box->setSuffix(QObject::tr(" mm"));
  box->setKeyboardTracking(false);
  return box;
}

QComboBox* NewChoice(const char* name, const QStringList& entries) {
  auto* box = Named(new QComboBox, name);
  box->addItems(entries);
  return box;
}

}  // namespace

FigureOptions::FigureOptions(QObject* parent) : QObject(parent) {
  BuildParts();
  BuildLayout();
  BuildTexts();
  cmbFormat_ =
      NewChoice("cmbFigureFormat", {tr("PDF"), tr("SVG"), tr("PNG, 300 dpi"), tr("PNG, 600 dpi")});
  ConnectSignals();
}

void FigureOptions::BuildParts() {
  parts_ = new QWidget;
  chkCurves_ = Named(new QCheckBox(tr("Fitted c&urves")), "chkFigureCurves");
  chkCurves_->setToolTip(tr("The curves of the last fit"));
  chkResiduals_ = Named(new QCheckBox(tr("Resi&duals")), "chkFigureResiduals");
  chkResiduals_->setToolTip(tr("Data minus curve, all panels on one scale"));
  chkLeftOut_ = Named(new QCheckBox(tr("Points &left out")), "chkFigureLeftOut");
  chkLeftOut_->setToolTip(tr("Hollow marks for the points that are not in use"));
  chkSpecies_ = Named(new QCheckBox(tr("Species")), "chkFigureSpecies");
  chkSpecies_->setToolTip(tr("What each species of the model adds to the curve"));
  chkCurves_->setChecked(true);
  chkResiduals_->setChecked(true);
  auto* column = new QVBoxLayout(parts_);
  column->setContentsMargins(0, 0, 0, 0);
  for (QCheckBox* box : {chkCurves_, chkSpecies_, chkResiduals_, chkLeftOut_}) {
    column->addWidget(box);
  }
}

void FigureOptions::BuildLayout() {
  layout_ = new QWidget;
  cmbContent_ = NewChoice("cmbFigureContent", {tr("Data and fit"), tr("Local molecular weights"),
                                               tr("All residuals"), tr("Normal quantiles")});
  cmbContent_->setToolTip(tr("The last three judge the last fit"));
  txtWindow_ = Named(new QSpinBox, "txtFigureWindow");
  txtWindow_->setRange(kLeastWeightWindow - 1, kGreatestWeightWindow);
  txtWindow_->setSpecialValueText(tr("to suit"));
  txtWindow_->setSuffix(tr(" points"));
  txtWindow_->setKeyboardTracking(false);
  txtWindow_->setToolTip(tr("Neighbouring points whose slope gives one weight"));
  txtEvery_ = Named(new QSpinBox, "txtFigureEvery");
  txtEvery_->setRange(1, kMostMarksForEach);
  txtEvery_->setSpecialValueText(tr("all"));
  txtEvery_->setPrefix(tr("one in "));
  txtEvery_->setKeyboardTracking(false);
  txtEvery_->setToolTip(
      tr("Fewer marks, so that they do not hide the curves; curves and the scale "
         "of the residuals stay those of all points"));
  cmbPanels_ = NewChoice("cmbFigurePanels", {tr("By channel"), tr("By speed"), tr("All in one")});
  cmbSignal_ = NewChoice("cmbFigureSignal", {tr("As measured"), tr("ln(signal - baseline)")});
  cmbLooks_ = NewChoice("cmbFigureLooks", {tr("Speed and channel"), tr("Dataset")});
  cmbLooks_->setToolTip(tr("What colours and symbols tell apart"));
  auto* form = new QFormLayout;
  form->addRow(tr("Co&ntent:"), cmbContent_);
  form->addRow(tr("Win&dow:"), txtWindow_);
  form->addRow(tr("Pane&ls:"), cmbPanels_);
  form->addRow(tr("S&ignal:"), cmbSignal_);
  form->addRow(tr("Loo&ks by:"), cmbLooks_);
  form->addRow(tr("Marks:"), txtEvery_);
  radius_ = Named(new QRadioButton(tr("&Radius")), "optFigureAxis(0)");
  radius_->setChecked(true);
  psi_ = Named(new QRadioButton(tr("(r^2 - r&0^2)/2")), "optFigureAxis(1)");
  against_ = Named(new QGroupBox(tr("Against")), "frFigureAxis");
  auto* axis = new QVBoxLayout(against_);
  axis->addWidget(radius_);
  axis->addWidget(psi_);
  auto* column = new QVBoxLayout(layout_);
  column->addLayout(form);
  column->addWidget(against_);
  column->addWidget(BuildSize());
  column->addStretch(1);
}

QWidget* FigureOptions::BuildSize() {
  cmbWidth_ = NewChoice("cmbFigureWidth", {tr("One column"), tr("Page"), tr("Own width")});
  cmbWidth_->setCurrentIndex(kPageWidth);
  txtWidth_ = NewLength("txtFigureWidth");
  txtWidth_->setAccessibleName(tr("Width"));
  txtWidth_->setValue(kFigurePageWidth);
  txtWidth_->setEnabled(false);
  chkHeight_ = Named(new QCheckBox(tr("Height &to suit")), "chkFigureHeight");
  chkHeight_->setChecked(true);
  txtHeight_ = NewLength("txtFigureHeight");
  txtHeight_->setAccessibleName(tr("Height"));
  txtHeight_->setEnabled(false);
  auto* size = Named(new QGroupBox(tr("Size")), "frFigureSize");
  auto* grid = new QGridLayout(size);
  grid->addWidget(cmbWidth_, 0, 0);
  grid->addWidget(txtWidth_, 0, 1);
  grid->addWidget(chkHeight_, 1, 0);
  grid->addWidget(txtHeight_, 1, 1);
  grid->setColumnStretch(0, 1);
  cmbWidth_->setAccessibleName(tr("Width"));
  return size;
}

void FigureOptions::BuildTexts() {
  texts_ = new QWidget;
  txtTitle_ = Named(new QLineEdit, "txtFigureTitle");
  txtTitle_->setPlaceholderText(tr("none"));
  gridTexts_ = Named(new QTableWidget(0, 1), "gridFigureTexts");
  gridTexts_->setAccessibleName(tr("Texts of the figure"));
  gridTexts_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  gridTexts_->horizontalHeader()->hide();
  gridTexts_->verticalHeader()->hide();
  gridTexts_->verticalHeader()->setDefaultSectionSize(gridTexts_->fontMetrics().height() * 3 / 2);
  auto* reset = Named(new QPushButton(tr("Automatic &Texts")), "cmdFigureTexts");
  connect(reset, &QPushButton::clicked, this, &FigureOptions::TakeAutomaticTexts);
  auto* form = new QFormLayout;
  form->addRow(tr("T&itle:"), txtTitle_);
  auto* column = new QVBoxLayout(texts_);
  column->addLayout(form);
  column->addWidget(new QLabel(tr("Type what is to stand instead:")));
  column->addWidget(gridTexts_, 1);
  column->addWidget(reset);
}

void FigureOptions::ConnectSignals() {
  for (QCheckBox* box : {chkCurves_, chkSpecies_, chkResiduals_, chkLeftOut_, chkHeight_}) {
    connect(box, &QCheckBox::toggled, this, &FigureOptions::Changed);
  }
  connect(cmbLooks_, &QComboBox::currentIndexChanged, this, &FigureOptions::Changed);
  connect(cmbContent_, &QComboBox::currentIndexChanged, this, &FigureOptions::EnableChoices);
  for (QSpinBox* box : {txtWindow_, txtEvery_}) {
    connect(box, &QSpinBox::valueChanged, this, &FigureOptions::Changed);
  }
  for (QComboBox* box : {cmbContent_, cmbPanels_, cmbSignal_}) {
    connect(box, &QComboBox::currentIndexChanged, this, &FigureOptions::TellAxes);
  }
  connect(psi_, &QRadioButton::toggled, this, &FigureOptions::TellAxes);
  connect(chkHeight_, &QCheckBox::toggled, txtHeight_, &QWidget::setDisabled);
  connect(cmbWidth_, &QComboBox::currentIndexChanged, this, [this](int choice) {
    txtWidth_->setEnabled(choice == kOwnWidth);
    if (choice != kOwnWidth) {
      const QSignalBlocker quiet(txtWidth_);
      txtWidth_->setValue(choice == kColumnWidth ? kFigureColumnWidth : kFigurePageWidth);
    }
    emit Changed();
  });
  for (QDoubleSpinBox* box : {txtWidth_, txtHeight_}) {
    connect(box, &QDoubleSpinBox::valueChanged, this, &FigureOptions::Changed);
  }
  connect(txtTitle_, &QLineEdit::textChanged, this, &FigureOptions::Changed);
  connect(gridTexts_, &QTableWidget::cellChanged, this, &FigureOptions::TakeText);
}

void FigureOptions::TellAxes() {
  emit AxesChanged();
  emit Changed();
}

// Choices that change nothing in the figure as it is are grey.
void FigureOptions::EnableChoices() {
  const FigureContent content = Content();
  const bool data = content == FigureContent::kData;
  const bool weights = content == FigureContent::kLocalWeights;
  cmbContent_->setEnabled(fitted_);
  txtWindow_->setEnabled(weights);
  txtEvery_->setEnabled(data || weights);
  cmbPanels_->setEnabled(data || weights);
  cmbSignal_->setEnabled(data);
  against_->setEnabled(data || content == FigureContent::kResiduals);
  chkCurves_->setEnabled(fitted_ && (data || weights));
  chkSpecies_->setEnabled(fitted_ && data);
  chkResiduals_->setEnabled(fitted_ && data);
  chkLeftOut_->setEnabled(data);
}

FigureContent FigureOptions::Content() const {
  return fitted_ ? static_cast<FigureContent>(cmbContent_->currentIndex()) : FigureContent::kData;
}

FigureChoices FigureOptions::Choices() const {
  const int window = txtWindow_->value();
  return {.content = Content(),
          .panels = static_cast<FigurePanels>(cmbPanels_->currentIndex()),
          .abscissa = psi_->isChecked() ? FigureAbscissa::kPsi : FigureAbscissa::kRadius,
          .signal = static_cast<FigureSignal>(cmbSignal_->currentIndex()),
          .looks = static_cast<FigureLooks>(cmbLooks_->currentIndex()),
          .curves = chkCurves_->isChecked(),
          .residuals = chkResiduals_->isChecked(),
          .leftOut = chkLeftOut_->isChecked(),
          .species = chkSpecies_->isChecked(),
          .every = txtEvery_->value(),
          .window = window < kLeastWeightWindow ? 0 : window,
          .title = txtTitle_->text().simplified().toStdString(),
          .texts = replaced_,
          .width = txtWidth_->value(),
          .height = chkHeight_->isChecked() ? std::nullopt : std::optional(txtHeight_->value())};
}

FigureFile FigureOptions::File() const {
  return kFiles[cmbFormat_->currentIndex()];
}

void FigureOptions::ShowHeight(double millimetres) {
  if (!chkHeight_->isChecked()) return;
  const QSignalBlocker quiet(txtHeight_);
  txtHeight_->setValue(millimetres);
}

void FigureOptions::ListTexts(const Figure& figure) {
  if (figure.texts == listed_) return;
  listed_ = figure.texts;
  const QSignalBlocker quiet(gridTexts_);
  gridTexts_->setRowCount(int(listed_.size()));
  for (int row = 0; row < gridTexts_->rowCount(); ++row) {
    const std::string& automatic = listed_[static_cast<std::size_t>(row)];
    const auto found = replaced_.find(automatic);
    const std::string& shown = found == replaced_.end() ? automatic : found->second;
    auto* item = new QTableWidgetItem(QString::fromStdString(shown));
    item->setToolTip(tr("Automatic: %1").arg(QString::fromStdString(automatic)));
    gridTexts_->setItem(row, 0, item);
  }
}

void FigureOptions::TakeText(int row) {
  const std::string& automatic = listed_[static_cast<std::size_t>(row)];
  const std::string shown = gridTexts_->item(row, 0)->text().simplified().toStdString();
  if (shown == automatic) {
    replaced_.erase(automatic);
  } else {
    replaced_[automatic] = shown;
  }
  emit Changed();
}

void FigureOptions::TakeAutomaticTexts() {
  replaced_.clear();
  listed_.clear();
  emit Changed();
}

void FigureOptions::ForgetTexts() {
  const QSignalBlocker quiet(this);
  txtTitle_->clear();
  TakeAutomaticTexts();
}

void FigureOptions::SetFitted(bool fitted) {
  fitted_ = fitted;
  EnableChoices();
}

QString FigureOptions::Line() const {
  const int numbers[] = {
      cmbPanels_->currentIndex(), cmbSignal_->currentIndex(),  cmbLooks_->currentIndex(),
      psi_->isChecked(),          chkCurves_->isChecked(),     chkResiduals_->isChecked(),
      chkLeftOut_->isChecked(),   cmbWidth_->currentIndex(),   int(txtWidth_->value()),
      cmbFormat_->currentIndex(), cmbContent_->currentIndex(), txtWindow_->value(),
      chkSpecies_->isChecked(),   txtEvery_->value()};
  QStringList words;
  for (const int number : numbers) words += QString::number(number);
  return words.join(u' ');
}

void FigureOptions::TakeLine(const QString& line) {
  const QStringList words = line.split(u' ');
  int next = 0;
  // A word that is no number within the bounds changes nothing.
  const auto take = [&](int count, auto&& set) {
    bool known = false;
    const int number = words.value(next++).toInt(&known);
    if (known && number >= 0 && number < count) set(number);
  };
  const auto choose = [&](QComboBox* box) {
    take(box->count(), [box](int number) { box->setCurrentIndex(number); });
  };
  const auto check = [&](QCheckBox* box) {
    take(2, [box](int number) { box->setChecked(number == 1); });
  };
  choose(cmbPanels_);
  choose(cmbSignal_);
  choose(cmbLooks_);
  take(2, [this](int number) { (number == 1 ? psi_ : radius_)->setChecked(true); });
  check(chkCurves_);
  check(chkResiduals_);
  check(chkLeftOut_);
  choose(cmbWidth_);
  take(int(kGreatestFigureSide) + 1, [this](int number) { txtWidth_->setValue(number); });
  choose(cmbFormat_);
  choose(cmbContent_);
  take(kGreatestWeightWindow + 1, [this](int number) { txtWindow_->setValue(number); });
  check(chkSpecies_);
  take(kMostMarksForEach + 1, [this](int number) { txtEvery_->setValue(number); });
}

}  // namespace quorvane
