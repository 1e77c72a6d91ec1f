// Lists the scans of a folder, and measures how a series changes, on threads of their own.
#pragma once

#include <QObject>
#include <QThreadPool>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "scan/scan_series.h"

namespace quorvane {

// Every signal comes on the thread of this object. A later request of the same kind takes the place
// of an earlier one, of which nothing is heard any more.
class ScanLister : public QObject {
  Q_OBJECT
 public:
  explicit ScanLister(QObject* parent = nullptr);
  ~ScanLister() override;

  // Emits Listed as soon as the headers are read, then ChangesFound; or Failed.
  void List(const std::filesystem::path& folder);

  // The changes of a series over the radii within `limits`; emits Measured.
  void Measure(ScanSeries series, RadiusLimits limits);

  // Ends what is under way, or the measuring alone.
  void Stop();
  void StopMeasuring() { measure_->Raise(); }

 signals:
  void Progress(int percent);
  void Listed(const quorvane::ScanList& list);
  void ChangesFound(const std::vector<quorvane::ScanSeries>& series);
  void Measured(const quorvane::ScanSeries& series, const quorvane::RadiusLimits& limits);
  void Failed(const QString& reason);

 private:
  using Flag = std::shared_ptr<StopFlag>;
  Flag Renew(Flag& flag);
  void Post(const Flag& flag, std::function<void()> tell);
  void RunList(const std::filesystem::path& folder, const Flag& flag);

  QThreadPool listing_;
  QThreadPool measuring_;
  Flag list_ = std::make_shared<StopFlag>();
  Flag measure_ = std::make_shared<StopFlag>();
};

}  // namespace quorvane
