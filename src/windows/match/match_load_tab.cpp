#include "windows/match/match_load_tab.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QSpinBox>
#include <algorithm>

#include "match/match_filters.h"
#include "windows/controls/control_names.h"
#include "windows/match/match_controls.h"

namespace quorvane {

namespace {

constexpr std::array<const char*, 5> kFilterCaptions = {
    QT_TRANSLATE_NOOP("QObject", "Absorbance (*.RAx)"),
    QT_TRANSLATE_NOOP("QObject", "Interference (*.IPx)"),
    QT_TRANSLATE_NOOP("QObject", "Fluorescence (*.FIx)"),
    QT_TRANSLATE_NOOP("QObject", "Electrophoresis (*.EL*)"),
    QT_TRANSLATE_NOOP("QObject", "All Files (*.*)")};
constexpr std::size_t kElectrophoresis = 3;  // its place
constexpr int kCells = 8;
constexpr int kArrowWidth = 20;  // pixels

}  // namespace

MatchLoadTab::MatchLoadTab(Session& session, QWidget* parent) : QWidget(parent), session_(session) {
  BuildWidgets();
  ConnectSignals();
}

void MatchLoadTab::BuildWidgets() {
  auto* choices = new QVBoxLayout;
  choices->setSpacing(10);
  choices->addWidget(BuildOptionBox());
  choices->addWidget(BuildCellBox());
  choices->addWidget(BuildFilterBox());
  cmdLoadFiles_ =
      MakeButton("cmdLoadFiles", tr("Load Files"), tr("Choose the scans to compare"), "Alt+L");
  choices->addWidget(cmdLoadFiles_);
  choices->addStretch();
  txtMatchDir_ = Named(new QLineEdit, "txtMatchDir");
  txtMatchDir_->setReadOnly(true);
  lisMatchFiles_ = Named(new QListWidget, "lisMatchFiles");
  auto* folderLabel = Named(new QLabel(tr("Folder")), "lblMatchDir");
  folderLabel->setBuddy(txtMatchDir_);
  auto* filesLabel = Named(new QLabel(tr("Loaded Files")), "lblMatchFiles");
  filesLabel->setBuddy(lisMatchFiles_);
  lisMatchFiles_->setAccessibleName(tr("Loaded files"));
  auto* layout = new QGridLayout(this);
  layout->addLayout(choices, 0, 0, 4, 1);
  layout->addWidget(folderLabel, 0, 1);
  layout->addWidget(txtMatchDir_, 1, 1);
  layout->addWidget(filesLabel, 2, 1);
  layout->addWidget(lisMatchFiles_, 3, 1);
  layout->setColumnStretch(1, 1);
  layout->setRowStretch(3, 1);
  layout->setHorizontalSpacing(12);
}

QGroupBox* MatchLoadTab::BuildOptionBox() {
  chkLoadByN_ = Named(new QCheckBox(tr("Load Every Nth File")), "chkLoadByN");
  updownLoadByN_ = MakeStepBox("updownLoadByN", "txtLoadByN", 2);
  updownLoadByN_->setEnabled(false);
  auto* label = Named(new QLabel(tr("N = ")), "lblLoadByN");
  label->setBuddy(updownLoadByN_);
  auto* box = Named(new QGroupBox(tr("Loading Options")), "frameOptions");
  auto* layout = new QHBoxLayout(box);
  layout->addWidget(chkLoadByN_);
  layout->addStretch();
  layout->addWidget(label);
  layout->addWidget(updownLoadByN_);
  return box;
}

// The text stands in the combo box, whose list the arrows step through.
QGroupBox* MatchLoadTab::BuildCellBox() {
  cmbCellNum_ = Named(new QComboBox, "cmbCellNum");
  cmbCellNum_->setEditable(true);
  cmbCellNum_->setInsertPolicy(QComboBox::NoInsert);
  cmbCellNum_->setMinimumContentsLength(4);
  cmbCellNum_->setValidator(
      new QRegularExpressionValidator(QRegularExpression("[1-8*]"), cmbCellNum_));
  cmbCellNum_->addItem("*");
  for (int cell = 1; cell <= kCells; ++cell) cmbCellNum_->addItem(QString::number(cell));
  cmbCellNum_->setAccessibleName(tr("Cell Number"));
  Named(cmbCellNum_->lineEdit(), "txtCellNumber");
  updownCellNumber_ = Named(new QSpinBox, "updownCellNumber");
  updownCellNumber_->setRange(0, kCells);
  updownCellNumber_->setAccessibleName(tr("Cell Number"));
  updownCellNumber_->setFocusPolicy(Qt::NoFocus);
  updownCellNumber_->findChild<QLineEdit*>()->hide();  // the arrows alone
  updownCellNumber_->setFixedWidth(kArrowWidth);
  auto* box = Named(new QGroupBox(tr("Cell Number")), "frameCellNumber");
  auto* layout = new QHBoxLayout(box);
  layout->setSpacing(2);
  layout->addWidget(cmbCellNum_);
  layout->addWidget(updownCellNumber_);
  layout->addSpacing(8);
  layout->addWidget(new QLabel(tr("* stands for any cell")), 1);
  return box;
}

QGroupBox* MatchLoadTab::BuildFilterBox() {
  auto* box = Named(new QGroupBox(tr("File Filter")), "frameFileFilter");
  auto* layout = new QVBoxLayout(box);
  for (std::size_t k = 0; k < optFileFilter_.size(); ++k) {
    optFileFilter_[k] = Named(new QRadioButton(QObject::tr(kFilterCaptions[k])),
                              ElementName("optFileFilter", static_cast<int>(k)));
    layout->addWidget(optFileFilter_[k]);
  }
  optFileFilter_[0]->setChecked(true);
  optFileFilter_[kElectrophoresis]->setVisible(ShowElectrophoresis);
  return box;
}

void MatchLoadTab::ConnectSignals() {
  connect(chkLoadByN_, &QCheckBox::toggled, updownLoadByN_, &QSpinBox::setEnabled);
  connect(updownCellNumber_, &QSpinBox::valueChanged, cmbCellNum_, &QComboBox::setCurrentIndex);
  connect(cmbCellNum_, &QComboBox::currentTextChanged, this, [this](const QString& text) {
    if (const int cell = cmbCellNum_->findText(text); cell >= 0) updownCellNumber_->setValue(cell);
  });
  connect(cmdLoadFiles_, &QPushButton::clicked, this, &MatchLoadTab::LoadRequested);
}

std::size_t MatchLoadTab::ChosenFilter() const {
  const auto chosen = std::find_if(optFileFilter_.begin(), optFileFilter_.end(),
                                   [](const QRadioButton* option) { return option->isChecked(); });
  return static_cast<std::size_t>(chosen - optFileFilter_.begin());
}

std::vector<std::filesystem::path> MatchLoadTab::ChooseFiles() {
  QStringList filters;
  for (const std::string& filter :
       MatchFilters(cmbCellNum_->currentText().toStdString(), ShowElectrophoresis)) {
    filters << QString::fromStdString(filter);
  }
  // The list is shorter while electrophoresis is not offered: "All Files" stays the last.
  const auto chosen = std::min(static_cast<qsizetype>(ChosenFilter()), filters.size() - 1);
  const QStringList names = session_.Ask.OpenFiles(
      this, {tr("Load Files For Matching"), Folder(), filters.join(";;"), {}, filters[chosen]});
  std::vector<std::filesystem::path> paths;
  for (const QString& name : names) paths.push_back(ToPath(name));
  return paths;
}

MatchLoadSettings MatchLoadTab::Settings() const {
  MatchLoadSettings settings;
  if (ChosenFilter() == kElectrophoresis) settings.timeField = TimeField::kElectrophoresis;
  if (chkLoadByN_->isChecked()) settings.every = static_cast<std::size_t>(updownLoadByN_->value());
  return settings;
}

void MatchLoadTab::ShowSeries(const MatchSeries& series) {
  txtMatchDir_->setText(QString::fromStdString(series.folder));
  txtMatchDir_->setToolTip(txtMatchDir_->text());
  ListScans(*lisMatchFiles_, series);
}

QString MatchLoadTab::Folder() const {
  return txtMatchDir_->text().isEmpty() ? ToQString(session_.CurrentFolder) : txtMatchDir_->text();
}

}  // namespace quorvane
