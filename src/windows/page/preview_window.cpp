#include "windows/page/preview_window.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "core/page/ref_conc.h"
#include "plot/chart_widget.h"
#include "windows/controls/child_window.h"
#include "windows/controls/control_names.h"
#include "windows/page/plot_switch.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

// A scroll bar left to itself takes left for onward, as it takes down.
class PageBar : public QScrollBar {
 public:
  using QScrollBar::QScrollBar;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
      triggerAction(event->key() == Qt::Key_Left ? SliderSingleStepSub : SliderSingleStepAdd);
      return;
    }
    QScrollBar::keyPressEvent(event);
  }
};

}  // namespace

PreviewWindow::PreviewWindow(Session& session, Host& host, QWidget* parent)
    : QWidget(parent),
      session_(session),
      host_(host),
      plots_(new PlotSwitch("optPreviewPlot")),
      teePreview_(Named(new ChartWidget, "teePreview")),
      hsPreview_(Named(new PageBar(Qt::Horizontal), "hsPreview")) {
  setObjectName("frmPreview");
  setWindowTitle(tr("Preview Fit"));
  hsPreview_->setToolTip(tr("Step through the datasets of the fit"));
  hsPreview_->setAccessibleName(tr("Dataset of the fit"));
  hsPreview_->setFocusPolicy(Qt::StrongFocus);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addWidget(plots_, 0, Qt::AlignLeft);
  layout->addWidget(teePreview_, 1);
  layout->addWidget(hsPreview_);
  connect(hsPreview_, &QScrollBar::valueChanged, this, &PreviewWindow::ShowPage);
  connect(plots_, &PlotSwitch::Changed, this, &PreviewWindow::ShowPage);
}

QSize PreviewWindow::sizeHint() const {
  return FromTwips(*this, {8000, 7000});
}

void PreviewWindow::Preview() {
  host_.GoToEndOfLog();
  ModelCurves curves = PreviewFit(session_.Module, host_);
  if (curves.fault) TellFault(*curves.fault, host_);
  if (curves.charts.empty()) return;
  charts_ = std::move(curves.charts);
  deviations_ = std::move(curves.deviations);
  {
    const QSignalBlocker quiet(hsPreview_);
    hsPreview_->setRange(0, static_cast<int>(charts_.size()) - 1);
    hsPreview_->setPageStep(1);
    hsPreview_->setValue(0);
  }
  ShowPage();
  ShowChild(*this);
  hsPreview_->setFocus();
}

void PreviewWindow::ShowPage() {
  const std::vector<Chart>& charts = plots_->Deviations() ? deviations_ : charts_;
  const auto page = static_cast<std::size_t>(hsPreview_->value());
  if (page < charts.size()) teePreview_->SetChart(charts[page]);
}

}  // namespace quorvane
