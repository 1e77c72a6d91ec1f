// The scans of a folder as series: those of one cell, speed and wavelength, in the order of time.
#pragma once

#include <filesystem>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "base/chart.h"
#include "base/stop_flag.h"
#include "scan/scan_facts.h"

namespace quorvane {

struct ListedScan {
  ScanFacts facts;
  std::optional<double> change = {};  // RmsChange since the scan before it in its series
};

// Scans of one cell and speed whose wavelengths lie within kSameWavelength, by rising time, then by
// name.
struct ScanSeries {
  int cell = 0;
  int wavelength = 0;  // nm, the most frequent of its scans; the lower one of two
  int speed = 0;       // rpm
  std::vector<ListedScan> scans;
};

inline constexpr int kSameWavelength = 5;  // nm; instruments do not come back to the nanometre

// A file that is no scan, and why.
struct ForeignFile {
  std::filesystem::path path;
  std::string reason;  // names the file
};

struct ScanList {
  std::vector<ScanSeries> series;  // by rising cell, wavelength and speed
  std::vector<ForeignFile> foreign;
};

// How a long list is made: on `threads` threads (0: one a core), until `stop` is raised; `serve` is
// called on this thread with the share that is done, 0 to 1.
struct ListWork {
  const StopFlag& stop;
  std::function<void(double share)> serve = [](double) {};
  int threads = 0;
};

// Series from scans in any order. Going up, a series begins at the lowest wavelength that is left
// and takes what lies at most kSameWavelength above it.
std::vector<ScanSeries> GroupScans(std::vector<ListedScan> scans);

// The files as series; their changes are not yet known. Files are read as `kind`, by default as
// their extensions say. Never throws for what a file is. Incomplete after a stop.
ScanList ListScans(const std::vector<std::filesystem::path>& files, std::optional<FileKind> kind,
                   const ListWork& work);

// The radii that a change is taken over, cm, both inclusive; all at first.
struct RadiusLimits {
  double low = 0.0;
  double high = std::numeric_limits<double>::infinity();
  bool operator==(const RadiusLimits&) const = default;
};

// Sets the changes. A file that cannot be read any more leaves its own and the next one empty.
void FindChanges(std::vector<ScanSeries>& series, const ListWork& work, RadiusLimits limits = {});

// Root of the mean square of the difference of two scans at the radii of `after` that lie between
// the first and the last of `before`, which is interpolated linearly, and between the limits;
// signal units. Nothing where there is no such radius, or the sum is not finite.
std::optional<double> RmsChange(const ScanPoints& before, const ScanPoints& after,
                                RadiusLimits limits = {});

// Each series with its last scan alone.
std::vector<ScanSeries> LastOfEach(std::vector<ScanSeries> series);

// "Cell 2, 280 nm, 10000 rpm"
std::string SeriesTitle(const ScanSeries& series);

// Change over the radii within `limits` against hours; `hours`, if given, is marked.
Chart PlotChanges(const ScanSeries& series, std::optional<double> hours, RadiusLimits limits = {});

}  // namespace quorvane
