#include "windows/graphs/overlay_window.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <exception>
#include <map>

#include "core/page/overlay_sets.h"
#include "plot/chart_color.h"
#include "plot/chart_widget.h"
#include "windows/controls/child_window.h"
#include "windows/controls/control_names.h"
#include "windows/controls/dataset_tip.h"
#include "windows/graphs/chart_clipboard.h"
#include "windows/graphs/export_dialog.h"

namespace quorvane {

namespace {

// The colour of a dataset, on white as in the plot.
QIcon ColorIcon(ChartColor color) {
  constexpr int kSide = 16;  // pixels
  constexpr int kRim = 4;
  QPixmap picture(kSide, kSide);
  picture.fill(Qt::white);
  QPainter(&picture).fillRect(kRim, kRim, kSide - 2 * kRim, kSide - 2 * kRim, ToQColor(color));
  return picture;
}

}  // namespace

OverlayWindow::OverlayWindow(Session& session, QWidget* parent)
    : QWidget(parent), session_(session) {
  BuildWidgets();
  ConnectSignals();
}

void OverlayWindow::BuildWidgets() {
  setObjectName("frmOverlay");
  setWindowTitle(tr("Overlay"));
  chart_ = Named(new ChartWidget, "teeOverlay");
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addWidget(chart_, 1);
  layout->addWidget(BuildSide());
}

QWidget* OverlayWindow::BuildSide() {
  sets_ = Named(new QListWidget, "lisOverlay");
  sets_->setAccessibleName(tr("Datasets"));
  cmdAll_ = Named(new QPushButton(tr("&All")), "cmdOverlayAll");
  cmdNone_ = Named(new QPushButton(tr("&None")), "cmdOverlayNone");
  radius_ = Named(new QRadioButton(tr("&Radius")), "optOverlay(0)");
  radius_->setChecked(true);
  psi_ = Named(new QRadioButton(tr("(r^2 - r&0^2)/2")), "optOverlay(1)");
  chkCurves_ = Named(new QCheckBox(tr("Fitted c&urves")), "chkOverlayCurves");
  chkCurves_->setToolTip(tr("The curves of the last fit"));
  cmdZoomOut_ = Named(new QPushButton(tr("&Zoom Out")), "cmdOverlayZoomOut");
  cmdExport_ = Named(new QPushButton(tr("&Export...")), "cmdOverlayExport");
  cmdCopy_ = Named(new QPushButton(tr("&Copy Picture")), "cmdOverlayCopy");
  auto* choose = new QHBoxLayout;
  choose->addWidget(cmdAll_);
  choose->addWidget(cmdNone_);
  auto* against = Named(new QGroupBox(tr("Against")), "frOverlayAxis");
  auto* axis = new QVBoxLayout(against);
  axis->addWidget(radius_);
  axis->addWidget(psi_);
  auto* side = new QWidget;
  side->setMaximumWidth(fontMetrics().averageCharWidth() * 34);
  auto* layout = new QVBoxLayout(side);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(sets_, 1);
  layout->addLayout(choose);
  layout->addWidget(against);
  layout->addWidget(chkCurves_);
  for (QPushButton* button : {cmdZoomOut_, cmdExport_, cmdCopy_}) layout->addWidget(button);
  return side;
}

void OverlayWindow::ConnectSignals() {
  connect(sets_, &QListWidget::itemChanged, this, &OverlayWindow::Draw);
  connect(cmdAll_, &QPushButton::clicked, this, [this] { CheckAll(true); });
  connect(cmdNone_, &QPushButton::clicked, this, [this] { CheckAll(false); });
  // Another abscissa has no use for the zoom.
  connect(psi_, &QRadioButton::toggled, this, [this] { chart_->SetChart(Drawn()); });
  connect(chkCurves_, &QCheckBox::toggled, this, &OverlayWindow::Draw);
  connect(cmdZoomOut_, &QPushButton::clicked, chart_, &ChartWidget::ShowAll);
  connect(cmdExport_, &QPushButton::clicked, this, &OverlayWindow::Export);
  connect(cmdCopy_, &QPushButton::clicked, this, &OverlayWindow::Copy);
}

QSize OverlayWindow::sizeHint() const {
  return FromTwips(*this, {12000, 8000});
}

void OverlayWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Refresh();
}

void OverlayWindow::Refresh() {
  if (!isVisible()) return;
  ListDatasets();
  const bool fitted = session_.Module.LastFit != nullptr;
  chkCurves_->setEnabled(fitted);
  if (!fitted) chkCurves_->setChecked(false);
  Draw();
}

// A dataset is known again by its file and first radius, whatever its name and number become.
void OverlayWindow::ListDatasets() {
  const auto keyOf = [](const Dataset& dataset) {
    return QString::fromStdString(PathOf(dataset)) + '|' + QString::number(dataset.R[0], 'g', 17);
  };
  constexpr int kKey = Qt::UserRole;
  const QSignalBlocker quiet(sets_);
  std::map<QString, Qt::CheckState> checks;
  for (int k = 0; k < sets_->count(); ++k) {
    checks[sets_->item(k)->data(kKey).toString()] = sets_->item(k)->checkState();
  }
  sets_->clear();
  int number = 0;
  for (const Dataset& dataset : session_.Module.Store.Datasets) {
    const QString name = QString::fromStdString(NameOf(dataset));
    auto* item = new QListWidgetItem(QStringLiteral("%1: %2").arg(++number).arg(name), sets_);
    const QString key = keyOf(dataset);
    const auto known = checks.find(key);
    item->setIcon(ColorIcon(OverlayLookOf(static_cast<std::size_t>(number - 1)).color));
    item->setData(kKey, key);
    item->setToolTip(DatasetTip(dataset));
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(known != checks.end() ? known->second
                        : IsBlank(dataset)    ? Qt::Unchecked
                                              : Qt::Checked);
  }
}

void OverlayWindow::CheckAll(bool on) {
  {
    const QSignalBlocker quiet(sets_);
    for (int k = 0; k < sets_->count(); ++k) {
      sets_->item(k)->setCheckState(on ? Qt::Checked : Qt::Unchecked);
    }
  }
  Draw();
}

Chart OverlayWindow::Drawn() const {
  std::vector<int> chosen;
  for (int k = 0; k < sets_->count(); ++k) {
    if (sets_->item(k)->checkState() == Qt::Checked) chosen.push_back(k);
  }
  const QuorvaneModule& module = session_.Module;
  const FitState* fit = module.LastFit ? &module.LastFit->state : nullptr;
  return PlotOverlay(OverlaySets(module, chosen, chkCurves_->isChecked()), fit, psi_->isChecked());
}

void OverlayWindow::Draw() {
  chart_->UpdateChart(Drawn());
  const bool drawn = !chart_->GetChart().panels.front().series.empty();
  for (QPushButton* button : {cmdZoomOut_, cmdExport_, cmdCopy_}) button->setEnabled(drawn);
}

PrintContent OverlayWindow::Printed() const {
  return chart_;
}

void OverlayWindow::Export() {
  auto* dialog = new ExportDialog(session_, chart_->ShownChart(), tr("Overlay"), this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->open();
}

void OverlayWindow::Copy() {
  CopyChart(chart_->ShownChart(), {}, session_.Ask, this);
}

}  // namespace quorvane
