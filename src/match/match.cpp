#include "match/match.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/arithmetic.h"

namespace quorvane {

namespace {

// The part of a scan inside the fitting range.
struct RangeScan {
  std::vector<double> radius;  // cm
  std::vector<double> signal;
  std::vector<double> slope;  // signal units a cm
};

// Sums over the reference's radii of s, its slope, and d, the scan minus the reference.
struct MatchSums {
  double Ss = 0.0;
  double Sss = 0.0;
  double Sd = 0.0;
  double Sdd = 0.0;
  double Sds = 0.0;
};

// From the first point that passes `fromLow` to the last that passes `toHigh`.
template <class FromLow, class ToHigh>
RangeScan CutToRange(const RawScan& scan, FromLow&& fromLow, ToHigh&& toHigh) {
  const auto& r = scan.radius;
  const auto first = std::find_if(r.begin(), r.end(), fromLow);
  const auto end = std::find_if(r.rbegin(), r.rend(), toHigh).base();
  if (first >= end) throw SubscriptFault();
  RangeScan cut;
  cut.radius.assign(first, end);
  cut.signal.assign(scan.signal.begin() + (first - r.begin()),
                    scan.signal.begin() + (end - r.begin()));
  cut.slope = LocalSlopes(cut.radius, cut.signal);
  return cut;
}

// Slope of the line through the points by least squares, the abscissas taken from their mean.
double LineSlope(std::span<const double> x, std::span<const double> y) {
  double sx = 0.0;
  for (const double value : x) sx += value;
  const double mean = sx / static_cast<double>(x.size());
  double st2 = 0.0;
  double b = 0.0;
  for (std::size_t k = 0; k < x.size(); ++k) {
    const double t = x[k] - mean;
    st2 += t * t;
    b += t * y[k];
  }
  return b / st2;
}

// The scan's signal on the radii `rr`: outside its own radii by the slope at its end.
std::vector<double> Interpolate(const RangeScan& scan, std::span<const double> rr) {
  const auto from = [&scan](double x, std::size_t k) {
    return (x - scan.radius[k]) * scan.slope[k] + scan.signal[k];
  };
  const std::size_t last = scan.radius.size() - 1;
  std::vector<double> y;
  y.reserve(rr.size());
  std::size_t k = 1;
  for (const double x : rr) {
    if (x <= scan.radius[0]) {
      y.push_back(from(x, 0));
    } else if (x >= scan.radius[last]) {
      y.push_back(from(x, last));
    } else {
      while (scan.radius[k] < x) ++k;  // ends at the last one, which is beyond x
      y.push_back(from(x, k));
    }
  }
  return y;
}

MatchSums SumUp(std::span<const double> d, std::span<const double> s) {
  MatchSums sums;
  for (std::size_t j = 0; j < d.size(); ++j) {
    sums.Ss += s[j];
    sums.Sss += s[j] * s[j];
    sums.Sd += d[j];
    sums.Sdd += d[j] * d[j];
    sums.Sds += d[j] * s[j];
  }
  return sums;
}

// The determinant Ss^2 - m Sss. Equal slopes make it 0 but for the rounding of its two terms, which
// counts as 0 here.
double SlopeDeterminant(const MatchSums& sums, double m) {
  const double D = sums.Ss * sums.Ss - m * sums.Sss;
  const double rounding = m * std::numeric_limits<double>::epsilon() * m * sums.Sss;
  if (std::fabs(D) <= rounding) throw ArithmeticFault(FaultKind::kDivisionByZero);
  return D;
}

// Keeps what the shifts by `a` and `b` leave, and the sum of its squares.
void KeepDeviations(std::span<const double> d, std::span<const double> s, double a, double b,
                    Offsets offsets, ScanMatch& match) {
  const auto k = static_cast<std::size_t>(offsets);
  match.dev[k].resize(d.size());
  match.sse[k] = 0.0;
  for (std::size_t j = 0; j < d.size(); ++j) {
    const double dev = d[j] - a * s[j] - b;
    match.dev[k][j] = dev;
    match.sse[k] += dev * dev;
  }
}

// The rms values come from closed sums, whose rounding can fall below 0.
ScanMatch MatchDifferences(std::span<const double> d, std::span<const double> s) {
  const MatchSums sums = SumUp(d, s);
  const auto& [Ss, Sss, Sd, Sdd, Sds] = sums;
  const auto m = static_cast<double>(d.size());
  ScanMatch match;
  match.rms[0] = std::sqrt(std::fabs(Sdd) / (m - 1));
  KeepDeviations(d, s, 0.0, 0.0, Offsets::kNone, match);

  match.yoff[0] = Sd / m;
  match.rms[1] = std::sqrt(std::fabs((Sdd - Sd * Sd / m) / (m - 2)));
  KeepDeviations(d, s, 0.0, match.yoff[0], Offsets::kY, match);

  const double D = SlopeDeterminant(sums, m);
  const double a = (Sd * Ss - m * Sds) / D;
  const double b = (Sds * Ss - Sd * Sss) / D;
  const double sse = Sdd + a * a * Sss + m * b * b + 2 * a * b * Ss - 2 * a * Sds - 2 * b * Sd;
  match.xoff = a;
  match.yoff[1] = b;
  match.rms[2] = std::sqrt(std::fabs(sse / (m - 3)));
  KeepDeviations(d, s, a, b, Offsets::kXY, match);
  return match;
}

ScanMatch MatchScan(const RawScan& scan, const RangeScan& reference) {
  const auto& rr = reference.radius;
  const RangeScan cut = CutToRange(
      scan, [&rr](double r) { return r >= rr.front(); },
      [&rr](double r) { return r <= rr.back(); });
  std::vector<double> d = Interpolate(cut, rr);
  for (std::size_t j = 0; j < d.size(); ++j) d[j] -= reference.signal[j];
  ScanMatch match = MatchDifferences(d, reference.slope);
  match.time = scan.time;
  return match;
}

}  // namespace

FittingRange WholeRange(const MatchSeries& series) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  FittingRange range{kInfinity, -kInfinity};
  for (const RawScan& scan : series.scans) {
    for (const double r : scan.radius) {
      range.low = std::min(range.low, r);
      range.high = std::max(range.high, r);
    }
  }
  return {std::nextafter(range.low, -kInfinity), std::nextafter(range.high, kInfinity)};
}

std::vector<double> LocalSlopes(std::span<const double> radius, std::span<const double> signal) {
  constexpr std::array<std::size_t, 4> kWindow = {2, 3, 5,
                                                  7};  // points, by distance to the nearer end
  const std::size_t count = radius.size();
  std::vector<double> slopes(count);
  for (std::size_t j = 0; j < count; ++j) {
    const std::size_t distance = std::min({j, count - 1 - j, kWindow.size() - 1});
    const std::size_t points = std::min(kWindow[distance], count);
    const std::size_t first = std::min(j - distance, count - points);
    slopes[j] = LineSlope(radius.subspan(first, points), signal.subspan(first, points));
  }
  return slopes;
}

MatchResult DoMatch(const MatchSeries& series, FittingRange range) {
  if (range.low > range.high) std::swap(range.low, range.high);
  MatchResult result;
  CheckArithmetic([&] {
    RangeScan reference = CutToRange(
        series.scans.back(), [&](double r) { return r > range.low; },
        [&](double r) { return r < range.high; });
    if (reference.radius.size() <= 3) throw ArithmeticFault(FaultKind::kDivisionByZero);
    for (std::size_t i = 0; i + 1 < series.scans.size(); ++i) {
      result.scans.push_back(MatchScan(series.scans[i], reference));
    }
    result.rr = std::move(reference.radius);
  });
  return result;
}

}  // namespace quorvane
