#include "match/match_series.h"

#include <algorithm>
#include <set>
#include <system_error>

#include "base/files.h"
#include "base/host.h"
#include "base/number_format.h"
#include "base/paths.h"
#include "scan/dataset.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

std::string NameOfFile(const fs::path& path) {
  return PathText(path.filename());
}

std::string FolderOfFile(const fs::path& path) {
  return PathText(WholePath(path).parent_path());
}

}  // namespace

std::string FactsOf(const RawScan& scan) {
  constexpr double kSecondsAnHour = 3600.0;
  const std::string time = FormatNumber(scan.time / kSecondsAnHour, "0.00 h");
  return scan.speed == 0 ? time : std::to_string(scan.speed) + " rpm, " + time;
}

std::string SpeedRemark(const MatchSeries& series) {
  std::set<std::int32_t> speeds;
  for (const RawScan& scan : series.scans) {
    if (scan.speed != 0) speeds.insert(scan.speed);
  }
  if (speeds.size() < 2) return {};
  std::string list;
  for (const std::int32_t speed : speeds)
    list += (list.empty() ? "" : ", ") + std::to_string(speed);
  return "The scans were taken at different speeds: " + list +
         " rpm. Each speed has an equilibrium of its own.";
}

std::vector<std::size_t> EveryNth(std::size_t count, std::size_t n) {
  std::vector<std::size_t> places;
  const std::size_t step = std::max<std::size_t>(n, 1);
  for (std::size_t k = 0; k < count; ++k) {
    if (k % step == 0) places.push_back(k);
  }
  return places;
}

MatchLoadOutcome LoadMatchFiles(std::vector<fs::path> paths, const MatchLoadSettings& settings,
                                MatchSeries& series, Host& host) {
  if (paths.size() < 2) {
    host.ShowMessage("", "You must select at least two files!  Try Again!", MessageIcon::kNone);
    return MatchLoadOutcome::kTooFewFiles;
  }
  std::stable_sort(paths.begin(), paths.end(), [](const fs::path& a, const fs::path& b) {
    return NameOfFile(a) < NameOfFile(b);
  });
  MatchSeries loaded;
  for (const std::size_t k : EveryNth(paths.size(), settings.every)) {
    const std::string name = NameOfFile(paths[k]);
    RawScan scan;
    try {
      scan = ReadMatchFile(paths[k], settings.timeField);
    } catch (const FileFault& fault) {
      host.ShowMessage("", fault.what(), MessageIcon::kExclamation);
      return MatchLoadOutcome::kUnreadable;
    }
    if (scan.radius.size() < kMinPoints) {
      host.ShowMessage("",
                       "Fewer than 10 points were found for the dataset " + name +
                           ".  This dataset will not be loaded",
                       MessageIcon::kNone);
      continue;
    }
    loaded.folder = FolderOfFile(paths[k]);
    loaded.names.push_back(name);
    loaded.scans.push_back(std::move(scan));
  }
  if (loaded.scans.size() < 2) {
    host.ShowMessage("",
                     "There were less than two datasets with enough\r\n"
                     "points for matching.  Please try again!",
                     MessageIcon::kNone);
    return MatchLoadOutcome::kTooFewScans;
  }
  series = std::move(loaded);
  return MatchLoadOutcome::kLoaded;
}

}  // namespace quorvane
