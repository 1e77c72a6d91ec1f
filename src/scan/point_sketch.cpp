#include "scan/point_sketch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace quorvane {

namespace {

struct Bounds {
  double low = std::numeric_limits<double>::infinity();
  double high = -std::numeric_limits<double>::infinity();

  void Take(double value) {
    low = std::min(low, value);
    high = std::max(high, value);
  }
  // From 0 to 1; in the middle where there is no width.
  double Share(double value) const {
    return high > low ? std::clamp((value - low) / (high - low), 0.0, 1.0) : 0.5;
  }
};

// Of the signals in use with some room round them, in which deleted ones near them keep their
// place; of all where none is in use.
Bounds SignalBounds(const Dataset& dataset) {
  Bounds good;
  Bounds all;
  for (std::size_t k = 0; k < static_cast<std::size_t>(dataset.NumPoints); ++k) {
    if (!std::isfinite(dataset.C[k])) continue;
    all.Take(dataset.C[k]);
    if (dataset.Good[k] != kFalse) good.Take(dataset.C[k]);
  }
  if (good.high < good.low) return all;
  const double room = (good.high - good.low) / 4.0;
  return {std::max(all.low, good.low - room), std::min(all.high, good.high + room)};
}

}  // namespace

std::vector<SketchPoint> SketchOf(const Dataset& dataset, int most) {
  std::vector<SketchPoint> sketch;
  const int pieces = std::max(1, most / 2);
  const int count = dataset.NumPoints;
  const int length = std::max(1, (count + pieces - 1) / pieces);
  const Bounds signal = SignalBounds(dataset);
  const Bounds radius = {FirstRadius(dataset), LastRadius(dataset)};
  for (int first = 0; first < count; first += length) {
    std::array<bool, 2> taken = {false, false};
    for (int k = first; k < std::min(first + length, count); ++k) {
      const auto place = static_cast<std::size_t>(k);
      const bool good = dataset.Good[place] != kFalse;
      if (taken[good ? 1 : 0] || !std::isfinite(dataset.C[place])) continue;
      taken[good ? 1 : 0] = true;
      sketch.push_back({radius.Share(dataset.R[place]), signal.Share(dataset.C[place]), good});
    }
  }
  return sketch;
}

}  // namespace quorvane
