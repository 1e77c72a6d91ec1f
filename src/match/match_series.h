// The series of scans that matching compares: which files, in which order.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "match/match_reader.h"

namespace quorvane {

class Host;

// Scans of one cell in rising order of their file names; the last is the reference.
struct MatchSeries {
  std::string folder;              // of the reference, UTF-8
  std::vector<std::string> names;  // file names, UTF-8
  std::vector<RawScan> scans;      // as many as names
};

// "18000 rpm, 12.50 h" as the scan's header has it; the time alone without a speed.
std::string FactsOf(const RawScan& scan);

// One sentence with the speeds, if the scans were not all taken at one; otherwise empty. Scans
// without a speed do not count.
std::string SpeedRemark(const MatchSeries& series);

struct MatchLoadSettings {
  TimeField timeField = TimeField::kCentrifuge;
  std::size_t every = 1;  // load every Nth file, the first included
};

enum class MatchLoadOutcome {
  kLoaded,
  kTooFewFiles,  // fewer than two were named
  kTooFewScans,  // fewer than two had the 10 points that a scan needs
  kUnreadable,   // one file could not be read
};

// The places 0, N, 2N ... below `count`; an N of 0 counts as 1.
std::vector<std::size_t> EveryNth(std::size_t count, std::size_t n);

// Sorts the files by name (plain comparison of bytes), takes every Nth of them and reads those.
// A scan of fewer than 10 points is left out with a message. `series` is replaced by a load that
// succeeds and stays as it was after any other, which has shown a message.
MatchLoadOutcome LoadMatchFiles(std::vector<std::filesystem::path> paths,
                                const MatchLoadSettings& settings, MatchSeries& series, Host& host);

}  // namespace quorvane
