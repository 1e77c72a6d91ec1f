#include "fit/point_facts.h"

#include <algorithm>
#include <cmath>

#include "fit/fit_state.h"
#include "fit/model_terms.h"

namespace quorvane {

namespace {

// Fills in the weights of the trapezoid rule; they are 0 before. False if a width is below 0 or
// there is no area.
bool AddWeights(const SetPoints& points, double* weights) {
  double area = 0.0;
  for (std::size_t j = 0; j + 1 < points.n; ++j) {
    const double width = (points.f[j] + points.f[j + 1]) * (points.r[j + 1] - points.r[j]);
    if (!(width >= 0.0)) return false;
    weights[j] += width / 4.0;
    weights[j + 1] += width / 4.0;
    area += width / 2.0;
  }
  if (!(area > 0.0)) return false;
  for (std::size_t j = 0; j < points.n; ++j) weights[j] /= area;
  return true;
}

}  // namespace

void PreparePoints(const FitState& fit, std::vector<PointFacts>& facts,
                   std::vector<double>& weights) {
  facts.assign(static_cast<std::size_t>(fit.NumFitSets), {});
  const bool mass = fit.TwoComponentModel && fit.UseMassConservation;
  weights.assign(mass ? static_cast<std::size_t>(fit.FitNumPoints) : 0, 0.0);
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    const SetPoints points = PointsOf(fit, d);
    PointFacts& fact = facts[static_cast<std::size_t>(d - 1)];
    for (std::size_t j = 0; j < points.n; ++j) {
      fact.greatestX = std::max(fact.greatestX, std::fabs(points.x[j]));
    }
    if (points.extra == 0) continue;
    fact.plain = points.aLoad == 0.0 || points.bLoad == 0.0 ||
                 !AddWeights(points, weights.data() + (points.first - 1));
  }
}

}  // namespace quorvane
