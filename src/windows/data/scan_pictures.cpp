#include "windows/data/scan_pictures.h"

#include <QLabel>
#include <QVBoxLayout>

#include "base/files.h"
#include "base/quiet_host.h"
#include "plot/chart_widget.h"
#include "scan/preview.h"
#include "windows/controls/control_names.h"
#include "windows/data/channel_bands.h"

namespace quorvane {

ScanPictures::ScanPictures(QWidget* parent) : QSplitter(Qt::Vertical, parent) {
  BuildWidgets();
  connect(TChartScan_, &ChartWidget::BottomRangeChanged, this, &ScanPictures::ShowChanges,
          Qt::QueuedConnection);  // a new chart has its range before its zoom
  connect(&lister_, &ScanLister::Measured, this, &ScanPictures::DrawChanges);
}

void ScanPictures::BuildWidgets() {
  setObjectName("spltScanPictures");
  setChildrenCollapsible(false);
  lblScanPreview_ = Named(new QLabel, "lblScanPreview");
  lblScanPreview_->setTextFormat(Qt::PlainText);
  lblScanPreview_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  TChartScan_ = Named(new ChartWidget, "TChartScan");
  TChartScan_->setToolTip(tr("Drag to the right: the change is then taken over these radii alone"));
  TChartChange_ = Named(new ChartWidget, "TChartChange");
  auto* preview = new QWidget;
  auto* layout = new QVBoxLayout(preview);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(lblScanPreview_);
  layout->addWidget(TChartScan_, 1);
  addWidget(preview);
  addWidget(TChartChange_);
}

void ScanPictures::Clear() {
  series_.reset();
  previewed_.clear();
  lblScanPreview_->clear();
  TChartScan_->SetChart({});
  ShowChanges();
}

void ScanPictures::Show(const ScanSeries* series, const ListedScan* scan,
                        const ScanLoadSettings& settings) {
  if (series == nullptr) {
    Clear();
    return;
  }
  series_ = *series;
  hours_.reset();
  if (scan != nullptr) hours_ = scan->facts.hours;
  ShowPreview((scan != nullptr ? *scan : series->scans.back()).facts, settings);
  ShowChanges();
}

void ScanPictures::ShowPreview(const ScanFacts& facts, const ScanLoadSettings& settings) {
  const std::vector<ChartBand> bands =
      IsCut(settings) ? ChannelBands(settings.centerpiece) : std::vector<ChartBand>();
  const std::string shown = std::to_string(bands.size()) + PathText(facts.path);
  if (shown == previewed_) return;
  previewed_ = shown;
  QuietHost quiet;
  const std::optional<Chart> chart = PreviewFile(facts.path, quiet);
  if (chart && !TChartScan_->GetChart().panels.empty()) {
    TChartScan_->UpdateChart(*chart);
  } else {
    TChartScan_->SetChart(chart.value_or(Chart()));
  }
  if (chart) TChartScan_->SetBands(bands);
  const QString name = QString::fromStdString(PathText(facts.path.filename()));
  lblScanPreview_->setText(chart ? name : tr("%1 has no preview").arg(name));
  lblScanPreview_->setToolTip(lblScanPreview_->text());
}

RadiusLimits ScanPictures::LimitsInSight() const {
  const std::optional<ChartArea> view = TChartScan_->ShownChart().view;
  return view ? RadiusLimits{view->x1, view->x2} : RadiusLimits();
}

void ScanPictures::ShowChanges() {
  lister_.StopMeasuring();
  if (!series_) {
    TChartChange_->SetChart({});
  } else if (const RadiusLimits limits = LimitsInSight(); limits != RadiusLimits()) {
    lister_.Measure(*series_, limits);
  } else {
    DrawChanges(*series_, limits);
  }
}

void ScanPictures::DrawChanges(const ScanSeries& series, RadiusLimits limits) {
  TChartChange_->SetChart(PlotChanges(series, hours_, limits));
}

}  // namespace quorvane
