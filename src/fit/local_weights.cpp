#include "fit/local_weights.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

namespace quorvane {

namespace {

// A data point with its signals above the baseline.
struct Place {
  double x;  // (r^2 - R0^2)/2, cm^2
  double measured;
  double fitted;
};

using Signal = double Place::*;

std::vector<Place> PlacesOf(const FitState& fit, int d) {
  std::vector<Place> places;
  const double baseline = fit.FitA(d);
  const int first = fit.SetFirstPoint(d);
  for (int i = first; i < first + fit.SetPointCount(d); ++i) {
    if (fit.PointKind(i) != 0) continue;
    places.push_back({fit.FitX(i), fit.FitY(i) - baseline, fit.FitYCalc(i) - baseline});
  }
  std::stable_sort(places.begin(), places.end(),
                   [](const Place& one, const Place& other) { return one.x < other.x; });
  return places;
}

struct Line {
  double slope;
  double mean;  // of the logarithm
};

// The straight line through ln(signal) over x; nothing if a signal is not above 0.
std::optional<Line> LineThrough(std::span<const Place> window, Signal signal) {
  double weights = 0.0, meanX = 0.0, meanY = 0.0;
  for (const Place& place : window) {
    if (!(place.*signal > 0.0) || !(place.fitted > 0.0)) return std::nullopt;
    const double weight = place.fitted * place.fitted;
    weights += weight;
    meanX += weight * place.x;
    meanY += weight * std::log(place.*signal);
  }
  meanX /= weights;
  meanY /= weights;
  double across = 0.0, along = 0.0;
  for (const Place& place : window) {
    const double weight = place.fitted * place.fitted * (place.x - meanX);
    across += weight * (place.x - meanX);
    along += weight * (std::log(place.*signal) - meanY);
  }
  return Line{along / across, meanY};
}

// The averages of windows that move by `step` points; how many of them have none is returned.
int Collect(std::span<const Place> places, Signal signal, std::size_t window, std::size_t step,
            double perSlope, LocalAverages& averages) {
  int leftOut = 0;
  for (std::size_t k = 0; k + window <= places.size(); k += step) {
    const std::optional<Line> line = LineThrough(places.subspan(k, window), signal);
    const double weight = line ? line->slope * perSlope : NAN;
    if (!std::isfinite(weight)) {
      ++leftOut;
      continue;
    }
    averages.signal.push_back(std::exp(line->mean));
    averages.weight.push_back(weight);
  }
  return leftOut;
}

}  // namespace

int AutomaticWeightWindow(int points) {
  constexpr int kPart = 8;
  constexpr int kLeast = 9;
  constexpr int kGreatest = 51;
  return std::clamp(points / kPart, kLeast, kGreatest) | 1;
}

LocalWeights LocalWeightAverages(const FitState& fit, int d, int window) {
  constexpr std::size_t kStepPart = 4;
  const std::vector<Place> places = PlacesOf(fit, d);
  const auto length =
      static_cast<std::size_t>(std::clamp(window, kLeastWeightWindow, kGreatestWeightWindow));
  const double perSlope = 1.0 / fit.SetOmegaTerm(d);
  LocalWeights result;
  const std::size_t step = std::max<std::size_t>(length / kStepPart, 1);
  result.leftOut = Collect(places, &Place::measured, length, step, perSlope, result.data);
  Collect(places, &Place::fitted, length, 1, perSlope, result.model);
  return result;
}

}  // namespace quorvane
