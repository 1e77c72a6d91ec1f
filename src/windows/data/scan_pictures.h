// The preview of a scan, and below it how its series changes over time.
#pragma once

#include <QSplitter>
#include <optional>
#include <string>

#include "scan/loading.h"
#include "windows/data/scan_lister.h"

class QLabel;

namespace quorvane {

class ChartWidget;

// The change is that of the list; over the radii in sight alone once the user has zoomed the
// preview. The zoom stays from scan to scan.
class ScanPictures : public QSplitter {
  Q_OBJECT
 public:
  explicit ScanPictures(QWidget* parent = nullptr);

  // Shows `scan`, or the last one of `series` if it is null; nothing without a series. Channels are
  // marked as `settings` cut them.
  void Show(const ScanSeries* series, const ListedScan* scan, const ScanLoadSettings& settings);
  void Clear();  // the zoom too

  // The files may be others: the next Show reads them anew.
  void ReadAgain() { previewed_.clear(); }

 private:
  void BuildWidgets();
  void ShowPreview(const ScanFacts& facts, const ScanLoadSettings& settings);
  void ShowChanges();
  void DrawChanges(const ScanSeries& series, RadiusLimits limits);
  RadiusLimits LimitsInSight() const;

  ScanLister lister_;
  std::optional<ScanSeries> series_;
  std::optional<double> hours_;  // of the chosen scan
  std::string previewed_;        // the file that the preview shows, and how it is cut
  QLabel* lblScanPreview_;
  ChartWidget* TChartScan_;
  ChartWidget* TChartChange_;
};

}  // namespace quorvane
