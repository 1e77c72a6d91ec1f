#include "windows/page/result_panel.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/finished_fit.h"
#include "fit/fit_plots.h"
#include "fit/species_curves.h"
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
      species_(new QCheckBox(tr("Species"))),
      plots_(new PlotSwitch("optResultPlot")),
      fits_(new QToolButton) {
  chart_->setObjectName("TChartFitting");
  which_->setObjectName("lblResult");
  species_->setObjectName("chkResultSpecies");
  species_->setToolTip(tr("What each species of the model adds to the curve"));
  fits_->setObjectName("cmdShowFits");
  fits_->setText(tr("Fits..."));
  fits_->setToolTip(tr("All fits of this session: go back to one, compare some"));
  auto* steps = new QHBoxLayout;
  steps->addWidget(back_);
  steps->addWidget(forward_);
  steps->addWidget(which_);
  steps->addStretch();
  steps->addWidget(species_);
  steps->addWidget(plots_);
  steps->addWidget(fits_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(steps);
  layout->addWidget(chart_, 1);
  connect(back_, &QToolButton::clicked, this, [this] { StepTo(position_ - 1); });
  connect(forward_, &QToolButton::clicked, this, [this] { StepTo(position_ + 1); });
  connect(plots_, &PlotSwitch::Changed, this, &ResultPanel::Redraw);
  connect(species_, &QCheckBox::toggled, this, &ResultPanel::Redraw);
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
  position_ = position;
  species_->setVisible(!SpeciesCurves(fit, position + 1).empty());
  species_->setEnabled(!plots_->Deviations());
  chart_->SetChart(Drawn());
  const auto place = static_cast<std::size_t>(fit.FitSetList[static_cast<std::size_t>(position)]);
  which_->setToolTip(DatasetTip(session_.Module.Store.Datasets[place]));
  which_->setText(tr("Dataset %1 of %2 in the fit").arg(position + 1).arg(count));
  back_->setEnabled(position > 0);
  forward_->setEnabled(position + 1 < count);
}

Chart ResultPanel::Drawn() const {
  const FitState& fit = fit_->state;
  const QuorvaneModule& module = session_.Module;
  const std::vector<Dataset>& datasets = module.Store.Datasets;
  if (plots_->Deviations()) return PlotDeviations(fit, datasets, position_);
  const PlotOptions& options = module.Preferences.Plots;
  Chart chart = PlotDataFit(fit, datasets, position_, options);
  if (species_->isChecked()) AddSpeciesCurves(chart, fit, position_, options);
  return chart;
}

}  // namespace quorvane
