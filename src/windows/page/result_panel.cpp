#include "windows/page/result_panel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/finished_fit.h"
#include "fit/fit_plots.h"
#include "plot/chart_widget.h"
#include "windows/controls/dataset_tip.h"
#include "windows/page/plot_switch.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

QToolButton* StepButton(const char* name, Qt::ArrowType arrow, const QString& toolTip) {
  auto* button = new QToolButton;
  button->setObjectName(QString::fromLatin1(name));
  button->setArrowType(arrow);
  button->setToolTip(toolTip);
  button->setAccessibleName(toolTip);
  return button;
}

}  // namespace

ResultPanel::ResultPanel(Session& session, QWidget* parent)
    : QWidget(parent),
      session_(session),
      chart_(new ChartWidget),
      back_(StepButton("cmdResultBack", Qt::LeftArrow, tr("Previous dataset of the fit"))),
      forward_(StepButton("cmdResultForward", Qt::RightArrow, tr("Next dataset of the fit"))),
      which_(new QLabel),
      plots_(new PlotSwitch("optResultPlot")),
      fits_(new QToolButton) {
  chart_->setObjectName("TChartFitting");
  which_->setObjectName("lblResult");
  fits_->setObjectName("cmdShowFits");
  fits_->setText(tr("Fits..."));
  fits_->setToolTip(tr("All fits of this session: go back to one, compare some"));
  auto* steps = new QHBoxLayout;
  steps->addWidget(back_);
  steps->addWidget(forward_);
  steps->addWidget(which_);
  steps->addStretch();
  steps->addWidget(plots_);
  steps->addWidget(fits_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(steps);
  layout->addWidget(chart_, 1);
  connect(back_, &QToolButton::clicked, this, [this] { StepTo(position_ - 1); });
  connect(forward_, &QToolButton::clicked, this, [this] { StepTo(position_ + 1); });
  connect(plots_, &PlotSwitch::Changed, this, &ResultPanel::Redraw);
  Clear();
}

void ResultPanel::ShowFit() {
  fit_ = session_.Module.LastFit;
  StepTo(0);
  show();
}

void ResultPanel::Redraw() {
  StepTo(position_);
}

void ResultPanel::Clear() {
  position_ = -1;
  fit_.reset();
  chart_->SetChart({});
  which_->clear();
  back_->setEnabled(false);
  forward_->setEnabled(false);
  hide();
}

void ResultPanel::StepTo(int position) {
  if (!fit_) return;
  const FitState& fit = fit_->state;
  const int count = fit.NumFitSets;
  if (position < 0 || position >= count) return;
  const QuorvaneModule& module = session_.Module;
  position_ = position;
  const std::vector<Dataset>& datasets = module.Store.Datasets;
  chart_->SetChart(plots_->Deviations()
                       ? PlotDeviations(fit, datasets, position)
                       : PlotDataFit(fit, datasets, position, module.Preferences.Plots));
  const auto place = static_cast<std::size_t>(position);
  which_->setToolTip(DatasetTip(datasets[static_cast<std::size_t>(fit.FitSetList[place])]));
  which_->setText(tr("Dataset %1 of %2 in the fit").arg(position + 1).arg(count));
  back_->setEnabled(position > 0);
  forward_->setEnabled(position + 1 < count);
}

}  // namespace quorvane
