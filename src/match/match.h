// Scan matching: how far each scan of a series is from the last one, as it stands, after a shift of
// the signal, and after shifts of signal and radius.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "match/match_series.h"

namespace quorvane {

// Which shifts are fitted; the index of every triple below.
enum class Offsets : std::size_t { kNone = 0, kY = 1, kXY = 2 };
inline constexpr std::array<Offsets, 3> kAllOffsets = {Offsets::kNone, Offsets::kY, Offsets::kXY};

// Limits of the fitting range, cm, in either order.
struct FittingRange {
  double low = 0.0;
  double high = 0.0;
};

// One scan against the reference. A shift of the radius by a and of the signal by b fits the
// difference d = scan - reference, on the reference's radii, as d = a s + b, s being its slope.
struct ScanMatch {
  std::int32_t time = 0;                   // s
  std::array<double, 3> rms{};             // signal units; over m - 1, m - 2, m - 3
  std::array<double, 3> sse{};             // sums of dev^2
  std::array<double, 2> yoff{};            // b of the Y match and of the X and Y match
  double xoff = 0.0;                       // a, cm
  std::array<std::vector<double>, 3> dev;  // what the shifts leave of d, along MatchResult::rr
};

// The time of the scan for plots and reports.
inline double TimeInHours(const ScanMatch& match) {
  return match.time / 3600.0;
}

struct MatchResult {
  std::vector<double> rr;        // radii of the reference in the range, cm; m of them
  std::vector<ScanMatch> scans;  // in the order of the series, without the reference
};

// The least range that holds every point of the series: its bounds lie just outside.
FittingRange WholeRange(const MatchSeries& series);

// Slope of the least-squares line through 7 points, each point in their middle; 5 and 3 near the
// ends of the scan, and at an end the last 2. A scan of one point gives 0/0. `radius` and `signal`
// are equally long.
std::vector<double> LocalSlopes(std::span<const double> radius, std::span<const double> signal);

// Matches the scans of a series of two or more. The reference counts with its points strictly
// inside `range`; the others with theirs between the reference's first and last, brought on to its
// radii by a first-order expansion from the next point with the local slope.
// Throws SubscriptFault if a scan has no point in range; ArithmeticFault (division by zero) if the
// reference has three or fewer or if all its slopes are equal, and for whatever else the arithmetic
// meets, such as a scan with a single point in range (invalid operation).
// Source: linear regression by its normal equations, Press et al., Numerical Recipes, 15.2.
MatchResult DoMatch(const MatchSeries& series, FittingRange range);

}  // namespace quorvane
