#include "scan/scan_series.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <map>
#include <tuple>
#include <utility>

#include "base/files.h"
#include "base/number_format.h"
#include "base/work_pool.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

auto TimeOrder(const ListedScan& scan) {
  return std::make_pair(scan.facts.hours, PathText(scan.facts.path));
}

int MostFrequentWavelength(const std::vector<ListedScan>& scans) {
  std::map<int, int> counts;
  for (const ListedScan& scan : scans) ++counts[scan.facts.wavelength];
  return std::max_element(counts.begin(), counts.end(),
                          [](const auto& a, const auto& b) {
                            return a.second < b.second;  // the first of equal ones
                          })
      ->first;
}

ScanSeries SeriesOf(std::vector<ListedScan> scans) {
  std::stable_sort(scans.begin(), scans.end(), [](const ListedScan& a, const ListedScan& b) {
    return TimeOrder(a) < TimeOrder(b);
  });
  const ScanFacts& first = scans.front().facts;
  ScanSeries series{first.cell, MostFrequentWavelength(scans), first.speed, {}};
  series.scans = std::move(scans);
  return series;
}

// Counts the tasks that have ended, for whoever serves the user.
class Share {
 public:
  Share(std::size_t count, const ListWork& work) : count_(count), work_(work) {}
  void Step() { ++done_; }
  void Serve() const {
    work_.serve(count_ == 0 ? 1.0 : static_cast<double>(done_) / static_cast<double>(count_));
  }

 private:
  std::size_t count_;
  const ListWork& work_;
  std::atomic<std::size_t> done_ = 0;
};

// Scans `first` to `end` (not included) of a series, one thread's work.
struct Stretch {
  std::vector<ListedScan>& scans;
  std::size_t first;
  std::size_t end;
};

std::optional<ScanPoints> PointsOf(const ListedScan& scan) {
  try {
    return ReadScanPoints(scan.facts.path, scan.facts.kind);
  } catch (const FileFault&) {
    return std::nullopt;
  }
}

void FindChanges(const Stretch& stretch, RadiusLimits limits, const StopFlag& stop) {
  std::optional<ScanPoints> before = PointsOf(stretch.scans[stretch.first - 1]);
  for (std::size_t k = stretch.first; k < stretch.end && !stop.Raised(); ++k) {
    std::optional<ScanPoints> after = PointsOf(stretch.scans[k]);
    std::optional<double>& change = stretch.scans[k].change;
    change = before && after ? RmsChange(*before, *after, limits) : std::nullopt;
    before = std::move(after);
  }
}

}  // namespace

std::vector<ScanSeries> GroupScans(std::vector<ListedScan> scans) {
  const auto place = [](const ListedScan& scan) {
    return std::make_tuple(scan.facts.cell, scan.facts.speed, scan.facts.wavelength);
  };
  std::sort(scans.begin(), scans.end(),
            [&](const ListedScan& a, const ListedScan& b) { return place(a) < place(b); });
  std::vector<ScanSeries> series;
  std::vector<ListedScan> open;
  for (ListedScan& scan : scans) {
    const bool joins = !open.empty() && open.front().facts.cell == scan.facts.cell &&
                       open.front().facts.speed == scan.facts.speed &&
                       scan.facts.wavelength - open.front().facts.wavelength <= kSameWavelength;
    if (!joins && !open.empty()) series.push_back(SeriesOf(std::exchange(open, {})));
    open.push_back(std::move(scan));
  }
  if (!open.empty()) series.push_back(SeriesOf(std::move(open)));
  std::sort(series.begin(), series.end(), [](const ScanSeries& a, const ScanSeries& b) {
    return std::tie(a.cell, a.wavelength, a.speed) < std::tie(b.cell, b.wavelength, b.speed);
  });
  return series;
}

ScanList ListScans(const std::vector<fs::path>& files, std::optional<FileKind> kind,
                   const ListWork& work) {
  std::vector<std::optional<ScanFacts>> facts(files.size());
  std::vector<std::string> reasons(files.size());
  Share share(files.size(), work);
  const auto read = [&](std::size_t k) {
    if (work.stop.Raised()) return;
    try {
      facts[k] = ReadScanFacts(files[k], kind);
    } catch (const FileFault& fault) {
      reasons[k] = fault.what();
    }
    share.Step();
  };
  RunTasks(files.size(), work.threads, read, [&] { share.Serve(); });
  ScanList list;
  std::vector<ListedScan> scans;
  for (std::size_t k = 0; k < files.size(); ++k) {
    if (facts[k]) {
      scans.push_back({std::move(*facts[k])});
    } else {
      list.foreign.push_back({files[k], std::move(reasons[k])});
    }
  }
  list.series = GroupScans(std::move(scans));
  return list;
}

void FindChanges(std::vector<ScanSeries>& series, const ListWork& work, RadiusLimits limits) {
  constexpr std::size_t kLongest = 64;  // scans; the first of a stretch is read twice
  std::vector<Stretch> stretches;
  for (ScanSeries& one : series) {
    for (std::size_t first = 1; first < one.scans.size(); first += kLongest) {
      stretches.push_back({one.scans, first, std::min(first + kLongest, one.scans.size())});
    }
  }
  Share share(stretches.size(), work);
  const auto find = [&](std::size_t k) {
    FindChanges(stretches[k], limits, work.stop);
    share.Step();
  };
  RunTasks(stretches.size(), work.threads, find, [&] { share.Serve(); });
}

std::optional<double> RmsChange(const ScanPoints& before, const ScanPoints& after,
                                RadiusLimits limits) {
  double sum = 0.0;
  int count = 0;
  std::size_t next = 0;  // the first radius of `before` above that of `after`
  for (std::size_t k = 0; k < after.r.size(); ++k) {
    const double r = after.r[k];
    while (next < before.r.size() && before.r[next] <= r) ++next;
    if (next == 0 || r < limits.low || r > limits.high) continue;
    double signal = before.c[next - 1];
    if (before.r[next - 1] < r) {
      if (next == before.r.size()) break;
      const double share = (r - before.r[next - 1]) / (before.r[next] - before.r[next - 1]);
      signal += share * (before.c[next] - signal);
    }
    sum += (after.c[k] - signal) * (after.c[k] - signal);
    ++count;
  }
  if (count == 0 || !std::isfinite(sum)) return std::nullopt;
  return std::sqrt(sum / count);
}

std::vector<ScanSeries> LastOfEach(std::vector<ScanSeries> series) {
  for (ScanSeries& one : series) one.scans.erase(one.scans.begin(), one.scans.end() - 1);
  return series;
}

std::string SeriesTitle(const ScanSeries& series) {
  return "Cell " + std::to_string(series.cell) + ", " + std::to_string(series.wavelength) +
         " nm, " + std::to_string(series.speed) + " rpm";
}

Chart PlotChanges(const ScanSeries& series, std::optional<double> hours, RadiusLimits limits) {
  ChartSeries line{"", SeriesStyle::kLine, kChartBlue, {}, {}};
  for (const ListedScan& scan : series.scans) {
    if (!scan.change) continue;
    line.x.push_back(scan.facts.hours);
    line.y.push_back(*scan.change);
  }
  ChartSeries dots = line;
  dots.style = SeriesStyle::kDot;
  std::string title = SeriesTitle(series);
  if (limits != RadiusLimits()) {
    title += ", " + FormatNumber(limits.low, "0.00") + " to " + FormatNumber(limits.high, "0.00") +
             " cm";
  }
  Chart chart{std::move(title), "time (hrs)", {}};
  chart.panels.push_back({"rms change", 1.0, {}, {}});
  chart.panels.front().series = {std::move(line), std::move(dots)};
  if (hours) chart.panels.front().marks = {{*hours, kChartRed, ""}};
  return chart;
}

}  // namespace quorvane
