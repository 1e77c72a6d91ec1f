#include "windows/errors/error_choices.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>

#include "fit/fit_state.h"
#include "windows/controls/control_names.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

constexpr int kIndex = Qt::UserRole;       // of a listed parameter: its place in FitA
constexpr int kShared = Qt::UserRole + 1;  // whether it is shared by all datasets

QSpinBox* Spin(const char* name, int least, int most, int value) {
  auto* spin = Named(new QSpinBox, name);
  spin->setRange(least, most);
  spin->setValue(value);
  return spin;
}

QString NameOf(const FitState& fit, int l) {
  return QString::fromStdString(ParameterName(fit, l));
}

}  // namespace

ErrorChoices::ErrorChoices(Session& session, QWidget* parent) : QWidget(parent), session_(session) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(BuildParameters(), 1);
  layout->addWidget(BuildLevels());
  layout->addWidget(BuildMethods());
  layout->addWidget(BuildSurface());
  ConnectSignals();
}

QWidget* ErrorChoices::BuildParameters() {
  lisErrorParameters_ = Named(new QListWidget, "lisErrorParameters");
  lisErrorParameters_->setAccessibleName(tr("Parameters to analyse"));
  cmdErrorShared_ = Named(new QPushButton(tr("Sha&red")), "cmdErrorShared");
  cmdErrorShared_->setToolTip(tr("Check the parameters that all datasets share"));
  cmdErrorAll_ = Named(new QPushButton(tr("&All")), "cmdErrorAll");
  cmdErrorNone_ = Named(new QPushButton(tr("&None")), "cmdErrorNone");
  auto* buttons = new QHBoxLayout;
  for (QPushButton* button : {cmdErrorShared_, cmdErrorAll_, cmdErrorNone_}) {
    button->setAutoDefault(false);
    button->setMinimumWidth(fontMetrics().averageCharWidth() * 8);
    buttons->addWidget(button);
  }
  auto* box = new QGroupBox(tr("Parameters"));
  auto* layout = new QVBoxLayout(box);
  layout->addWidget(lisErrorParameters_, 1);
  layout->addLayout(buttons);
  return box;
}

QWidget* ErrorChoices::BuildLevels() {
  txtErrorLevels_ = Named(new QLineEdit(QStringLiteral("68.27, 95.45")), "txtErrorLevels");
  txtErrorLevels_->setToolTip(
      tr("Probabilities of one parameter alone, in percent, parted by commas"));
  auto* row = new QWidget;
  auto* layout = new QFormLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addRow(tr("&Levels (%)"), txtErrorLevels_);
  return row;
}

QWidget* ErrorChoices::BuildMethods() {
  const ErrorRequest defaults;
  chkProfile_ = Named(new QCheckBox(tr("&Profile")), "chkErrorProfile");
  chkProfile_->setChecked(defaults.profile);
  chkProfile_->setToolTip(
      tr("Holds the parameter at values around its best one and fits the rest"));
  chkMonteCarlo_ = Named(new QCheckBox(tr("&Monte Carlo")), "chkErrorMonteCarlo");
  chkMonteCarlo_->setToolTip(tr("Fits the curves again with new normal noise"));
  chkBootstrap_ = Named(new QCheckBox(tr("&Bootstrap")), "chkErrorBootstrap");
  chkBootstrap_->setToolTip(tr("Fits the curves again with residuals drawn anew"));
  spnReplicates_ = Spin("spnReplicates", 2, 100000, defaults.replicates);
  spnErrorSeed_ =
      Spin("spnErrorSeed", 0, std::numeric_limits<int>::max(), static_cast<int>(defaults.seed));
  spnErrorSeed_->setToolTip(tr("The same seed gives the same replicates"));
  auto* box = new QGroupBox(tr("Methods"));
  auto* layout = new QFormLayout(box);
  for (QCheckBox* method : {chkProfile_, chkMonteCarlo_, chkBootstrap_}) layout->addRow(method);
  layout->addRow(tr("Repl&icates"), spnReplicates_);
  layout->addRow(tr("S&eed"), spnErrorSeed_);
  return box;
}

QWidget* ErrorChoices::BuildSurface() {
  chkSurface_ = Named(new QCheckBox(tr("S&urface over two parameters")), "chkErrorSurface");
  chkSurface_->setToolTip(tr("The sum of squares over both, all others fitted anew"));
  cmbSurfaceX_ = Named(new QComboBox, "cmbSurfaceX");
  cmbSurfaceX_->setAccessibleName(tr("Parameter to the right"));
  cmbSurfaceY_ = Named(new QComboBox, "cmbSurfaceY");
  cmbSurfaceY_->setAccessibleName(tr("Parameter upwards"));
  spnSurfacePoints_ = Spin("spnSurfacePoints", 2, 201, ErrorRequest().surfacePoints);
  auto* pair = new QHBoxLayout;
  pair->addWidget(cmbSurfaceX_, 1);
  pair->addWidget(cmbSurfaceY_, 1);
  auto* box = new QWidget;
  auto* layout = new QFormLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addRow(chkSurface_);
  layout->addRow(pair);
  layout->addRow(tr("Points a si&de"), spnSurfacePoints_);
  return box;
}

void ErrorChoices::ConnectSignals() {
  connect(cmdErrorShared_, &QPushButton::clicked, this, [this] { Check(true, false); });
  connect(cmdErrorAll_, &QPushButton::clicked, this, [this] { Check(true, true); });
  connect(cmdErrorNone_, &QPushButton::clicked, this, [this] { Check(false, false); });
  const auto replicates = [this] {
    const bool drawn = chkMonteCarlo_->isChecked() || chkBootstrap_->isChecked();
    spnReplicates_->setEnabled(drawn);
    spnErrorSeed_->setEnabled(drawn);
  };
  connect(chkMonteCarlo_, &QCheckBox::toggled, this, replicates);
  connect(chkBootstrap_, &QCheckBox::toggled, this, replicates);
  replicates();
  const auto surface = [this](bool on) {
    for (QWidget* part : {static_cast<QWidget*>(cmbSurfaceX_), static_cast<QWidget*>(cmbSurfaceY_),
                          static_cast<QWidget*>(spnSurfacePoints_)}) {
      part->setEnabled(on);
    }
  };
  connect(chkSurface_, &QCheckBox::toggled, this, surface);
  surface(false);
}

void ErrorChoices::ShowFit(const FitState& fit) {
  QStringList before;
  for (int k = 0; k < lisErrorParameters_->count(); ++k) {
    before << lisErrorParameters_->item(k)->text();
  }
  std::vector<int> fitted = AllFitted(fit);
  QStringList names;
  // The shared ones come first: they are what one looks at.
  std::stable_partition(fitted.begin(), fitted.end(), [&](int l) { return l > fit.SharedBase(); });
  for (const int l : fitted) names << NameOf(fit, l);
  if (names == before) return;
  lisErrorParameters_->clear();
  cmbSurfaceX_->clear();
  cmbSurfaceY_->clear();
  for (const int l : fitted) {
    auto* item = new QListWidgetItem(NameOf(fit, l), lisErrorParameters_);
    const bool shared = l > fit.SharedBase();
    item->setData(kIndex, l);
    item->setData(kShared, shared);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(shared ? Qt::Checked : Qt::Unchecked);
    cmbSurfaceX_->addItem(item->text(), l);
    cmbSurfaceY_->addItem(item->text(), l);
  }
  if (cmbSurfaceY_->count() > 1) cmbSurfaceY_->setCurrentIndex(1);
}

void ErrorChoices::Check(bool shared, bool perDataset) {
  for (int k = 0; k < lisErrorParameters_->count(); ++k) {
    QListWidgetItem* item = lisErrorParameters_->item(k);
    const bool on = item->data(kShared).toBool() ? shared : perDataset;
    item->setCheckState(on ? Qt::Checked : Qt::Unchecked);
  }
}

void ErrorChoices::Refuse(const QString& text, QWidget& box) {
  session_.Ask.ShowMessage(this, tr("Error Analysis"), text, MessageIcon::kExclamation);
  box.setFocus();
}

bool ErrorChoices::ReadLevels(ErrorRequest& request) {
  request.levels.clear();
  for (const QString& part : txtErrorLevels_->text().split(',')) {
    const std::optional<double> level = ParseNumeric(part.toStdString());
    if (!level || !(*level > 0.0 && *level < 100.0)) {
      Refuse(tr("\"%1\" is no level: numbers above 0 and below 100 are wanted, parted by commas.")
                 .arg(part.trimmed()),
             *txtErrorLevels_);
      return false;
    }
    request.levels.push_back(*level);
  }
  return true;
}

bool ErrorChoices::ReadSurface(ErrorRequest& request) {
  if (!chkSurface_->isChecked()) return true;
  const int x = cmbSurfaceX_->currentData().toInt();
  const int y = cmbSurfaceY_->currentData().toInt();
  if (x == y) {
    Refuse(tr("A surface stands over two different parameters."), *cmbSurfaceY_);
    return false;
  }
  request.surfaces = {{x, y}};
  request.surfacePoints = spnSurfacePoints_->value();
  return true;
}

std::optional<ErrorRequest> ErrorChoices::Request() {
  ErrorRequest request;
  for (int k = 0; k < lisErrorParameters_->count(); ++k) {
    const QListWidgetItem* item = lisErrorParameters_->item(k);
    if (item->checkState() == Qt::Checked) request.parameters.push_back(item->data(kIndex).toInt());
  }
  request.profile = chkProfile_->isChecked();
  request.monteCarlo = chkMonteCarlo_->isChecked();
  request.bootstrap = chkBootstrap_->isChecked();
  request.replicates = spnReplicates_->value();
  request.seed = static_cast<std::uint64_t>(spnErrorSeed_->value());
  const bool methods = request.profile || request.monteCarlo || request.bootstrap;
  if (!chkSurface_->isChecked() && request.parameters.empty()) {
    Refuse(tr("No parameter is checked."), *lisErrorParameters_);
    return std::nullopt;
  }
  if (!chkSurface_->isChecked() && !methods) {
    Refuse(tr("No method is checked."), *chkProfile_);
    return std::nullopt;
  }
  if (!ReadLevels(request) || !ReadSurface(request)) return std::nullopt;
  return request;
}

}  // namespace quorvane
