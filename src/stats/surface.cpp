#include "stats/surface.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace quorvane {

namespace {

// A solution on the grid and where it holds its two parameters.
struct Place {
  double x = 0.0;
  double y = 0.0;
};

// A fit that goes from place to place of a grid.
class GridWalk {
 public:
  GridWalk(const FitState& fit, const SurfaceGrid& grid, const StopFlag& stop, RestPoint start)
      : fit_(fit), grid_(grid), held_(fit, {grid.x, grid.y}, stop), at_(std::move(start)) {
    const double xx = fit.FitCovar(grid.x, grid.x);
    const double yy = fit.FitCovar(grid.y, grid.y);
    const double xy = fit.FitCovar(grid.x, grid.y);
    const double determinant = xx * yy - xy * xy;
    inverse_ = {yy / determinant, -xy / determinant, xx / determinant};
  }

  // Goes to `to`, through places between if need be; false if it does not come there.
  bool Go(Place to) {
    for (int halvings = 0; halvings <= kMostHalvings && !held_.Stopped();) {
      const Place now{at_.values(grid_.x), at_.values(grid_.y)};
      const double share = std::ldexp(1.0, -halvings);
      const Place next =
          halvings == 0 ? to
                        : Place{now.x + share * (to.x - now.x), now.y + share * (to.y - now.y)};
      if (Step(now, next)) {
        if (halvings == 0) return true;
        --halvings;
      } else {
        ++halvings;
      }
    }
    return false;
  }

  const RestPoint& At() const { return at_; }

 private:
  static constexpr int kMostHalvings = 5;

  bool Step(Place now, Place next) {
    std::optional<RestPoint> rest = held_.Rest(Predicted(now, next));
    if (!rest && !held_.Stopped()) {
      Array1<double> plain = at_.values;
      plain(grid_.x) = next.x;
      plain(grid_.y) = next.y;
      rest = held_.Rest(plain);
    }
    if (!rest) return false;
    before_ = std::move(at_);
    at_ = std::move(*rest);
    return true;
  }

  // Along the line through the last two solutions, where these lie in the same direction; else as
  // the covariance of the fit foretells.
  Array1<double> Predicted(Place now, Place next) const {
    Array1<double> start = at_.values;
    if (before_) {
      const double dx = now.x - before_->values(grid_.x);
      const double dy = now.y - before_->values(grid_.y);
      const double along = dx != 0.0 ? (next.x - now.x) / dx : (next.y - now.y) / dy;
      start = OnLine(before_->values, at_.values, 1.0 + along);
    } else {
      const double u = inverse_[0] * (next.x - now.x) + inverse_[1] * (next.y - now.y);
      const double v = inverse_[1] * (next.x - now.x) + inverse_[2] * (next.y - now.y);
      for (int l = 1; l <= fit_.FitMA; ++l) {
        const double move = fit_.FitCovar(l, grid_.x) * u + fit_.FitCovar(l, grid_.y) * v;
        if (fit_.FitIA(l) != 0 && std::isfinite(move)) start(l) += move;
      }
    }
    start(grid_.x) = next.x;
    start(grid_.y) = next.y;
    return start;
  }

  const FitState& fit_;
  const SurfaceGrid& grid_;
  HeldFit held_;
  RestPoint at_;
  std::optional<RestPoint> before_;     // the solution that came before, in the same direction
  std::array<double, 3> inverse_ = {};  // of the covariance of x and y: xx, xy, yy
};

std::size_t Nearest(const std::vector<double>& places, double value) {
  std::size_t best = 0;
  for (std::size_t k = 1; k < places.size(); ++k) {
    if (std::fabs(places[k] - value) < std::fabs(places[best] - value)) best = k;
  }
  return best;
}

}  // namespace

std::vector<std::optional<RestPoint>> WalkSpine(const FitState& fit, const SurfaceGrid& grid,
                                                const StopFlag& stop) {
  std::vector<std::optional<RestPoint>> spine(grid.ys.size());
  const double x = grid.xs[Nearest(grid.xs, fit.FitA(grid.x))];
  const std::size_t middle = Nearest(grid.ys, fit.FitA(grid.y));
  GridWalk first(fit, grid, stop, {fit.FitA, fit.FitChiSq});
  if (!first.Go({x, grid.ys[middle]})) return spine;
  spine[middle] = first.At();
  GridWalk up(fit, grid, stop, first.At());
  for (std::size_t k = middle + 1; k < spine.size() && up.Go({x, grid.ys[k]}); ++k) {
    spine[k] = up.At();
  }
  GridWalk down(fit, grid, stop, first.At());
  for (std::size_t k = middle; k-- > 0 && down.Go({x, grid.ys[k]});) spine[k] = down.At();
  return spine;
}

std::vector<double> WalkRow(const FitState& fit, const SurfaceGrid& grid, std::size_t iy,
                            const RestPoint& spine, const StopFlag& stop) {
  std::vector<double> sums(grid.xs.size(), std::numeric_limits<double>::quiet_NaN());
  const std::size_t middle = Nearest(grid.xs, fit.FitA(grid.x));
  sums[middle] = spine.sum;
  const double y = grid.ys[iy];
  GridWalk up(fit, grid, stop, spine);
  for (std::size_t k = middle + 1; k < sums.size() && up.Go({grid.xs[k], y}); ++k) {
    sums[k] = up.At().sum;
  }
  GridWalk down(fit, grid, stop, spine);
  for (std::size_t k = middle; k-- > 0 && down.Go({grid.xs[k], y});) sums[k] = down.At().sum;
  return sums;
}

}  // namespace quorvane
