#include "windows/errors/confidence_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "base/text.h"
#include "core/page/confidence_level.h"
#include "windows/controls/control_names.h"
#include "windows/controls/page_controls.h"
#include "windows/controls/value_box.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

// Rows serve the parameters by position, whatever their names say.
constexpr std::array<const char*, 8> kNameLabels = {"lblMWBname",  "lblVirialname", "lblN1name",
                                                    "lblLnK1name", "lblN2name",     "lblLnK2name",
                                                    "lblLnK3name", "lblAlphaname"};
constexpr std::array<const char*, 8> kValueLabels = {"lblMWBval",  "lblVirialval", "lblN1val",
                                                     "lblLnK1val", "lblN2val",     "lblLnK2val",
                                                     "lblLnK3val", "lblAlphaval"};

QString ToText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

ConfidenceWindow::ConfidenceWindow(Session& session, QWidget* parent)
    : QDialog(parent), session_(session) {
  BuildWidgets();
  ShowRows();
  cmbFStat_->setCurrentIndex(1);
  ShowLevel();
  ShowMeaning();
  ConnectSignals();
}

void ConfidenceWindow::BuildWidgets() {
  setObjectName("frmConfInterval");
  setWindowTitle(tr("Confidence Intervals"));
  cmdCalcCI_ = Named(new QPushButton(tr("Calculate")), "cmdCalcCI");
  cmdCalcCI_->setDefault(true);
  cmdClose_ = Named(new QPushButton(tr("Close")), "cmdClose");
  cmdClose_->setAutoDefault(false);
  auto* foot = new QHBoxLayout;
  foot->addStretch();
  foot->addWidget(cmdCalcCI_);
  foot->addWidget(cmdClose_);
  auto* layout = new QVBoxLayout(this);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addWidget(BuildLevel());
  layout->addWidget(BuildParameters());
  layout->addLayout(foot);
}

QWidget* ConfidenceWindow::BuildLevel() {
  cmbFStat_ = Named(new QComboBox, "cmbFStat");
  cmbFStat_->addItems({tr("1 SD"), tr("2 SD"), tr("UserDefined!")});
  cmbFStat_->setAccessibleName(tr("Probability"));
  txtConfPercent_ = Named(new ValueBox, "txtConfPercent");
  txtConfPercent_->setAccessibleName(tr("Probability in percent"));
  ShapeNumberBox(*txtConfPercent_, QStringLiteral("00.0000"));
  // A level that cannot be typed is still read.
  QPalette legible = txtConfPercent_->palette();
  legible.setColor(QPalette::Disabled, QPalette::Text, legible.color(QPalette::WindowText));
  legible.setColor(QPalette::Disabled, QPalette::Base, legible.color(QPalette::Window));
  txtConfPercent_->setPalette(legible);
  optVRmethod_ = {new QRadioButton(tr("F(NDF,NDF,1-Prob)")),
                  new QRadioButton(tr("1 + (Nparm/NDF)*F(Nparm,NDF,1-P)"))};
  optVRmethod_[1]->setChecked(true);
  auto* heading = Named(new QLabel(tr(" Confidence Interval ")), "Label1");
  auto* level = new QHBoxLayout;
  level->addWidget(heading);
  level->addWidget(cmbFStat_);
  level->addWidget(txtConfPercent_);
  level->addWidget(new QLabel(tr("%")));
  level->addStretch();
  auto* box = new QWidget;
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(level);
  auto* ratio = new QGroupBox(tr("Variance ratio"));
  auto* ratios = new QVBoxLayout(ratio);
  for (int k = 0; k < 2; ++k) {
    ratios->addWidget(
        Named(optVRmethod_[static_cast<std::size_t>(k)], ElementName("optVRmethod", k)));
  }
  layout->addWidget(ratio);
  lblMeaning_ = Named(new QLabel, "lblMeaning");
  lblMeaning_->setWordWrap(true);
  lblMeaning_->setMinimumWidth(fontMetrics().averageCharWidth() * 52);
  layout->addWidget(lblMeaning_);
  return box;
}

QWidget* ConfidenceWindow::BuildParameters() {
  auto* box = new QGroupBox;
  auto* grid = new QGridLayout(box);
  grid->addWidget(Named(new QLabel(tr(" Parameter ")), "lblParam"), 0, 0);
  grid->addWidget(Named(new QLabel(tr(" Value ")), "lblValue"), 0, 1, Qt::AlignRight);
  grid->addWidget(Named(new QLabel(tr(" [calculate] ")), "lblCalcIt"), 0, 2, Qt::AlignHCenter);
  for (std::size_t k = 0; k < kRows; ++k) {
    names_[k] = Named(new QLabel, kNameLabels[k]);
    values_[k] = Named(new QLabel, kValueLabels[k]);
    chkParam_[k] = Named(new QCheckBox, ElementName("chkParam", static_cast<int>(k)));
    const int row = static_cast<int>(k) + 1;
    grid->addWidget(names_[k], row, 0);
    grid->addWidget(values_[k], row, 1, Qt::AlignRight);
    grid->addWidget(chkParam_[k], row, 2, Qt::AlignHCenter);
  }
  grid->setColumnStretch(0, 1);
  grid->setHorizontalSpacing(24);
  return box;
}

void ConfidenceWindow::ConnectSignals() {
  connect(cmbFStat_, &QComboBox::activated, this, &ConfidenceWindow::ShowLevel);
  txtConfPercent_->SetStore([this](const QString& text) { return StoreLevel(text); });
  connect(optVRmethod_[0], &QRadioButton::toggled, this, &ConfidenceWindow::ShowMeaning);
  connect(cmdClose_, &QPushButton::clicked, this, &QDialog::reject);
  connect(cmdCalcCI_, &QPushButton::clicked, this, &ConfidenceWindow::Calculate);
}

void ConfidenceWindow::ShowRows() {
  const std::vector<ConfidenceRow> rows = ConfidenceRows(session_.Module.LastFit->state);
  for (std::size_t k = 0; k < kRows; ++k) {
    const bool used = k < rows.size();
    for (QWidget* part : {static_cast<QWidget*>(names_[k]), static_cast<QWidget*>(values_[k]),
                          static_cast<QWidget*>(chkParam_[k])}) {
      part->setVisible(used);
    }
    chkParam_[k]->setChecked(used && rows[k].fitted);
    if (!used) continue;
    names_[k]->setText(ToText(rows[k].caption));
    values_[k]->setText(ToText(rows[k].value));
    chkParam_[k]->setEnabled(rows[k].fitted);
    chkParam_[k]->setAccessibleName(tr("Calculate %1").arg(ToText(Trim(rows[k].caption))));
    if (!rows[k].fitted) chkParam_[k]->setToolTip(tr("Held in the fit"));
  }
}

void ConfidenceWindow::ShowLevel() {
  const int place = cmbFStat_->currentIndex();
  txtConfPercent_->ShowStored(QString::fromStdString(
      ConfidenceLevelText(session_.Module, static_cast<std::size_t>(place))));
  txtConfPercent_->setEnabled(place == static_cast<int>(kUserLevel));
}

void ConfidenceWindow::ShowMeaning() {
  const int fitted = session_.Module.LastFit->state.NumFitted();
  QString text = fitted > 1
                     ? tr("The interval is joint for all %1 fitted parameters (baselines and "
                          "reference concentrations count): it allows for errors of all of "
                          "them at once, and is several times wider than the interval of "
                          "one parameter alone.")
                           .arg(fitted)
                     : tr("One parameter was fitted: the interval is its own.");
  if (optVRmethod_[0]->isChecked()) {
    text += ' ' + tr("This ratio compares two variances as if they came from two experiments; its "
                     "intervals are as a rule wider still.");
  }
  lblMeaning_->setText(text);
}

bool ConfidenceWindow::StoreLevel(const QString& text) {
  if (!isVisible()) return true;  // the window was closed with an entry that nobody needs
  const std::optional<double> level = ParseNumeric(text.toStdString());
  const Refusal refusal =
      level ? SetConfidenceLevel(session_.Module, *level) : Refusal{kIllegalValue};
  if (level) ShowLevel();
  if (!refusal) return true;
  cmbFStat_->hidePopup();
  session_.Remark(tr("The probability takes a number between 50 and 100."));
  session_.Ask.ShowMessage(this,
                           level ? tr("Parameter Out of Range!") : tr("Parameter Entry Error!"),
                           QString::fromStdString(refusal.text), MessageIcon::kExclamation);
  return false;
}

void ConfidenceWindow::Calculate() {
  if (!txtConfPercent_->Commit()) return;
  ConfidenceRequest request;
  request.percent = ParseNumeric(txtConfPercent_->text().toStdString()).value();
  request.method =
      optVRmethod_[0]->isChecked() ? RatioMethod::kEqualFreedom : RatioMethod::kParameters;
  for (const QCheckBox* box : chkParam_) request.chosen.push_back(box->isChecked());
  emit CalculateRequested(request);
}

}  // namespace quorvane
