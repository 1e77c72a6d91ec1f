#include "windows/page/set_ref_conc_window.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>

#include "plot/chart_widget.h"
#include "windows/controls/child_window.h"
#include "windows/controls/control_names.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

QScrollBar* MakeBar(const char* name, const QString& toolTip) {
  auto* bar = Named(new QScrollBar(Qt::Horizontal), name);
  bar->setRange(-kBarEnd, kBarEnd);
  bar->setSingleStep(2);
  bar->setPageStep(100);
  bar->setInvertedControls(false);  // right, up and a turn of the wheel upwards give more
  bar->setFocusPolicy(Qt::StrongFocus);
  bar->setToolTip(toolTip);
  return bar;
}

}  // namespace

SetRefConcWindow::SetRefConcWindow(Session& session, Host& host, QWidget* parent)
    : QWidget(parent), session_(session), host_(host) {
  BuildWidgets();
  ConnectSignals();
}

void SetRefConcWindow::BuildWidgets() {
  setObjectName("frmSetRefConc");
  setWindowTitle(tr("Reference Concentration"));
  teeSetRefC_ = Named(new ChartWidget, "teeSetRefC");
  lblCA_ = Named(new QLabel(tr("C(A)")), "lblCA");
  lblCB_ = Named(new QLabel(tr("C(B)")), "lblCB");
  hsSetRefC_ = MakeBar("hsSetRefC", tr("Reference concentration of A: 1000 steps a decade"));
  hsSetRefCB_ = MakeBar("hsSetRefCB", tr("Reference concentration of B: 1000 steps a decade"));
  lblCA_->setBuddy(hsSetRefC_);
  lblCB_->setBuddy(hsSetRefCB_);
  cmdDone_ = Named(new QPushButton(tr("Done")), "cmdDone");
  cmdDone_->setToolTip(tr("Keep the values"));
  cmdCancel_ = Named(new QPushButton(tr("Cancel")), "cmdCancel");
  cmdCancel_->setToolTip(tr("Go back to the values of before"));
  for (QPushButton* button : {cmdDone_, cmdCancel_})
    button->setAutoDefault(true);  // Enter is its own
  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addWidget(teeSetRefC_, 0, 0, 1, 4);
  layout->addWidget(lblCA_, 1, 0);
  layout->addWidget(hsSetRefC_, 1, 1);
  layout->addWidget(cmdDone_, 1, 2);
  layout->addWidget(cmdCancel_, 1, 3);
  layout->addWidget(lblCB_, 2, 0);
  layout->addWidget(hsSetRefCB_, 2, 1);
  layout->setRowStretch(0, 1);
  layout->setColumnStretch(1, 1);
}

void SetRefConcWindow::ConnectSignals() {
  connect(hsSetRefC_, &QScrollBar::valueChanged, this,
          [this](int bar) { Move(Component::kA, bar); });
  connect(hsSetRefCB_, &QScrollBar::valueChanged, this,
          [this](int bar) { Move(Component::kB, bar); });
  connect(cmdDone_, &QPushButton::clicked, this, &SetRefConcWindow::Keep);
  connect(cmdCancel_, &QPushButton::clicked, this, &SetRefConcWindow::Cancel);
}

QSize SetRefConcWindow::sizeHint() const {
  return FromTwips(*this, {8000, 7000});
}

void SetRefConcWindow::Adjust(int row) {
  emit Began();
  const RefConcAdjustment adjustment(session_.Module, row);
  host_.GoToEndOfLog();
  const ModelCurves curves = adjustment.Begin(host_);
  if (curves.fault) Tell(*curves.fault);
  if (curves.charts.empty()) return;
  teeSetRefC_->SetChart(curves.charts.front());
  adjustment_.emplace(adjustment);
  const bool second = session_.Module.Setup.TwoComponentModel;
  for (QWidget* part : {static_cast<QWidget*>(lblCB_), static_cast<QWidget*>(hsSetRefCB_)}) {
    part->setVisible(second);
  }
  for (QScrollBar* bar : {hsSetRefC_, hsSetRefCB_}) {
    const QSignalBlocker quiet(bar);
    bar->setValue(0);
  }
  ShowChild(*this);
  hsSetRefC_->setFocus();
}

void SetRefConcWindow::Move(Component component, int bar) {
  if (!adjustment_) return;
  const ModelCurves curves = adjustment_->Move(component, bar);
  emit Changed(adjustment_->Row());
  if (!curves.charts.empty()) teeSetRefC_->UpdateChart(curves.charts.front());
  if (curves.fault) Tell(*curves.fault);
}

void SetRefConcWindow::Redraw() {
  if (!adjustment_) return;
  const ModelCurves curves = adjustment_->Evaluate();
  if (!curves.charts.empty()) teeSetRefC_->UpdateChart(curves.charts.front());
}

// A bar whose button is held would run on behind the box; disabled it stops.
void SetRefConcWindow::Tell(const Notice& fault) {
  QWidget* focused = focusWidget();
  for (QScrollBar* bar : {hsSetRefC_, hsSetRefCB_}) bar->setEnabled(false);
  TellFault(fault, host_);
  for (QScrollBar* bar : {hsSetRefC_, hsSetRefCB_}) bar->setEnabled(true);
  if (focused != nullptr) focused->setFocus();
}

void SetRefConcWindow::Keep() {
  adjustment_.reset();
  CloseChild(*this);
}

void SetRefConcWindow::Cancel() {
  CloseChild(*this);
}

void SetRefConcWindow::closeEvent(QCloseEvent* event) {
  if (adjustment_) {
    const int row = adjustment_->Row();
    adjustment_->Restore();
    adjustment_.reset();
    emit Changed(row);
  }
  QWidget::closeEvent(event);
}

void SetRefConcWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    Cancel();
  } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    Keep();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace quorvane
