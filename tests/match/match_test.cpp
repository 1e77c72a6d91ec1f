// Faults caught here: a slope window of the wrong width, interpolation by chords or from the point
// below, a divisor or sign of the offsets, bounds that let the wrong points in, faults unseen.
#include "match/match.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace quorvane;

namespace {

const FittingRange kEverything{-1e9, 1e9};

template <class Signal>
RawScan MakeScan(double first, double step, int count, Signal&& signal) {
  RawScan scan;
  for (int k = 0; k < count; ++k) {
    scan.radius.push_back(first + step * k);
    scan.signal.push_back(signal(scan.radius.back()));
  }
  return scan;
}

double Square(double r) {
  return r * r;
}
double Cube(double r) {
  return r * r * r;
}

MatchResult MatchTwo(const RawScan& scan, const RawScan& reference, FittingRange range) {
  return DoMatch(MatchSeries{"", {"1", "2"}, {scan, reference}}, range);
}

// The line through points 1 apart about x has, for r^3, the slope 3 x^2 + q with q = 1/4, 1, 3.4
// and 7 for 2, 3, 5 and 7 points (sum t^4 / sum t^2).
TEST(LocalSlopes, OfACubicShowEachWindow) {
  const RawScan scan = MakeScan(0, 1, 8, Cube);
  constexpr double middles[] = {0.5, 1, 2, 3, 4, 5, 6, 6.5},
                   q[] = {0.25, 1, 3.4, 7, 7, 3.4, 1, 0.25};
  const std::vector<double> slopes = LocalSlopes(scan.radius, scan.signal);
  for (std::size_t j = 0; j < 8; ++j) {
    EXPECT_NEAR(slopes[j], 3 * Square(middles[j]) + q[j], 1e-12) << j;
  }
}

// r^2 has the slope 2 r but at its ends, so the expansion misses it by the squared distance.
TEST(DoMatch, ExpandsFromTheNextPointAtOrAbove) {
  const RawScan reference = MakeScan(10, 0.25, 60, Cube);
  const MatchResult result = MatchTwo(MakeScan(10.5, 0.5, 26, Square), reference, kEverything);
  for (std::size_t j = 0; j < 60; ++j) {
    const double x = result.rr[j];
    const double next = std::clamp(std::ceil(x * 2) / 2, 10.5, 23.0);
    const double slope = next == 10.5 ? 21.5 : next == 23.0 ? 45.5 : 2 * next;
    EXPECT_NEAR(result.scans[0].dev[0][j], Square(next) + (x - next) * slope - Cube(x), 1e-8) << x;
  }
}

// The slopes s of r^2 at 0 to 7 have the mean 7 and the squared distances 142 from it; e has the
// mean 0 and is orthogonal to them, its squares sum to 0.08.
TEST(DoMatch, FitsOffsetsAsReckonedByHand) {
  const RawScan reference = MakeScan(0, 1, 8, Square);
  constexpr double s[] = {1, 2, 4, 6, 8, 10, 12, 13}, e[] = {1, -1, -1, 1, 1, -1, -1, 1};
  RawScan scan = reference;
  for (std::size_t j = 0; j < 8; ++j) scan.signal[j] += 2 * s[j] + 3 + 0.1 * e[j];
  const ScanMatch match = MatchTwo(scan, reference, kEverything).scans[0];
  constexpr double squares[] = {4 * 142 + 8 * 17 * 17 + 0.08, 4 * 142 + 0.08, 0.08};
  constexpr double first[] = {5.1, 5.1 - 17, 0.1};
  for (std::size_t k = 0; k < 3; ++k) {
    EXPECT_NEAR(match.rms[k], std::sqrt(squares[k] / static_cast<double>(7 - k)), 1e-11);
    EXPECT_NEAR(match.sse[k], squares[k], 1e-11);
    EXPECT_NEAR(match.dev[k][0], first[k], 1e-12);
  }
  EXPECT_NEAR(match.yoff[0], 17, 1e-12);
  EXPECT_NEAR(match.yoff[1], 3, 1e-12);
  EXPECT_NEAR(match.xoff, 2, 1e-12);
  const ScanMatch same = MatchTwo(reference, reference, kEverything).scans[0];
  EXPECT_EQ(same.rms, (std::array<double, 3>{0, 0, 0}));
}

TEST(DoMatch, RangeIsOpenForTheReferenceAndClosedForTheOthers) {
  const RawScan scan = MakeScan(1, 1, 20, [](double r) { return std::sin(r); });
  const RawScan reference = MakeScan(1, 1, 20, Square);
  const MatchResult result = MatchTwo(scan, reference, {12, 3});
  EXPECT_EQ(result.rr, (std::vector<double>{4, 5, 6, 7, 8, 9, 10, 11}));
  EXPECT_EQ(result.scans[0].dev[0].front(), std::sin(4.0) - 16);  // not extrapolated
  EXPECT_EQ(result.scans[0].dev[0].back(), std::sin(11.0) - 121);
  const FittingRange whole = WholeRange(MatchSeries{"", {"1", "2"}, {scan, reference}});
  EXPECT_EQ(MatchTwo(scan, reference, whole).rr.size(), 20U);
}

TEST(DoMatch, Faults) {
  const RawScan curve = MakeScan(6, 0.01, 50, Square);
  struct Row {
    RawScan scan, reference;
    const char* fault;
  };
  for (const auto& [scan, reference, fault] : std::initializer_list<Row>{
           {curve, MakeScan(6, 0.01, 3, Square), "Division by zero"},
           {curve, MakeScan(6, 0.01, 50, [](double r) { return 0.3 * r; }), "Division by zero"},
           {MakeScan(5, 0.01, 50, Square), curve, "Subscript out of range"},
           {MakeScan(6.2, 1, 2, Square), curve, "Invalid operation"},  // one point in range
           {MakeScan(6, 0.01, 50, [](double) { return 1e300; }), curve, "Overflow"}}) {
    try {
      MatchTwo(scan, reference, kEverything);
      ADD_FAILURE() << fault;
    } catch (const std::exception& thrown) {
      EXPECT_STREQ(thrown.what(), fault);
    }
  }
}

}  // namespace
