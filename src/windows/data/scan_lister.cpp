#include "windows/data/scan_lister.h"

#include "base/files.h"
#include "scan/file_list.h"

namespace quorvane {

ScanLister::ScanLister(QObject* parent) : QObject(parent) {
  listing_.setMaxThreadCount(1);
  measuring_.setMaxThreadCount(1);
}

ScanLister::~ScanLister() {
  Stop();
  listing_.waitForDone();
  measuring_.waitForDone();
}

void ScanLister::Stop() {
  list_->Raise();
  measure_->Raise();
}

ScanLister::Flag ScanLister::Renew(Flag& flag) {
  flag->Raise();
  flag = std::make_shared<StopFlag>();
  return flag;
}

// Arrives only while this lives: the destructor waits for the threads.
void ScanLister::Post(const Flag& flag, std::function<void()> tell) {
  QMetaObject::invokeMethod(
      this,
      [flag, tell = std::move(tell)] {
        if (!flag->Raised()) tell();
      },
      Qt::QueuedConnection);
}

void ScanLister::List(const std::filesystem::path& folder) {
  measure_->Raise();
  listing_.start([this, folder, flag = Renew(list_)] {
    try {
      RunList(folder, flag);
    } catch (const std::exception& fault) {  // a folder that cannot be read, or no memory
      Post(flag, [this, text = QString::fromUtf8(fault.what())] { emit Failed(text); });
    }
  });
}

// Reading the headers and finding the changes take about as long as each other.
void ScanLister::RunList(const std::filesystem::path& folder, const Flag& flag) {
  constexpr double kHalf = 50.0;  // percent
  int told = -1;
  const auto work = [&](double start) {
    return ListWork{.stop = *flag, .serve = [&, start](double share) {
                      const int percent = static_cast<int>(start + kHalf * share);
                      if (percent == told) return;
                      told = percent;
                      Post(flag, [this, percent] { emit Progress(percent); });
                    }};
  };
  ScanList list = ListScans(ScanFilesIn(folder), std::nullopt, work(0.0));
  if (flag->Raised()) return;
  Post(flag, [this, list] { emit Listed(list); });
  FindChanges(list.series, work(kHalf));
  Post(flag, [this, series = std::move(list.series)] { emit ChangesFound(series); });
}

void ScanLister::Measure(ScanSeries series, RadiusLimits limits) {
  measuring_.start([this, series = std::move(series), limits, flag = Renew(measure_)] {
    std::vector<ScanSeries> measured = {series};
    FindChanges(measured, {.stop = *flag}, limits);
    Post(flag, [this, one = std::move(measured.front()), limits] { emit Measured(one, limits); });
  });
}

}  // namespace quorvane
