// Finished fits in little room, so that a session can keep all of them: what many of them have in
// common, the scans and the flat points, is held once.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "core/finished_fit.h"

namespace quorvane {

class PackedFit {
 public:
  // Shares with `like`, a fit packed before or null, the scans and points that are equal.
  PackedFit(const FinishedFit& fit, const PackedFit* like);

  // The fit as it was, bit by bit.
  std::shared_ptr<const FinishedFit> Unpacked() const;

  // Whether the two share their points.
  bool SamePoints(const PackedFit& other) const { return points_ == other.points_; }

 private:
  // The arrays of FitState over all points that a fit only reads.
  struct Points {
    Array1<double> r, y, x, f;
    Array1<std::int16_t> set, kind;
    bool operator==(const Points&) const = default;
  };
  // Of one dataset, what the rows of the page hold; the scan has zeros there.
  using RowNumbers = std::array<double, 9>;

  FinishedFit fit_;  // without datasets and those arrays
  std::shared_ptr<const Points> points_;
  std::vector<std::shared_ptr<const Dataset>> scans_;
  std::vector<RowNumbers> numbers_;  // one a scan
};

}  // namespace quorvane
