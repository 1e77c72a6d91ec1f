#include "core/packed_fit.h"

#include <cstring>
#include <utility>

#include "core/page/row_values.h"

namespace quorvane {

PackedFit::PackedFit(const FinishedFit& fit, const PackedFit* like) : fit_(fit) {
  FitState& state = fit_.state;
  Points points{std::exchange(state.FitR, {}),   std::exchange(state.FitY, {}),
                std::exchange(state.FitX, {}),   std::exchange(state.FitF, {}),
                std::exchange(state.FitSet, {}), std::exchange(state.PointKind, {})};
  const bool samePoints = like != nullptr && *like->points_ == points;
  points_ = samePoints ? like->points_ : std::make_shared<const Points>(std::move(points));
  static_assert(std::tuple_size_v<RowNumbers> == RowValues.size());
  for (Dataset& scan : fit_.datasets) {
    RowNumbers& numbers = numbers_.emplace_back();
    for (std::size_t k = 0; k < RowValues.size(); ++k) {
      numbers[k] = std::exchange(scan.*RowValues[k].field, 0.0);
    }
    const std::size_t place = scans_.size();
    const bool sameScan = like != nullptr && place < like->scans_.size() &&
                          std::memcmp(&scan, like->scans_[place].get(), sizeof(Dataset)) == 0;
    scans_.push_back(sameScan ? like->scans_[place] : std::make_shared<const Dataset>(scan));
  }
  std::vector<Dataset>().swap(fit_.datasets);
}

std::shared_ptr<const FinishedFit> PackedFit::Unpacked() const {
  auto fit = std::make_shared<FinishedFit>(fit_);
  FitState& state = fit->state;
  state.FitR = points_->r;
  state.FitY = points_->y;
  state.FitX = points_->x;
  state.FitF = points_->f;
  state.FitSet = points_->set;
  state.PointKind = points_->kind;
  fit->datasets.reserve(scans_.size());
  for (std::size_t place = 0; place < scans_.size(); ++place) {
    Dataset& dataset = fit->datasets.emplace_back(*scans_[place]);
    for (std::size_t k = 0; k < RowValues.size(); ++k) {
      dataset.*RowValues[k].field = numbers_[place][k];
    }
  }
  return fit;
}

}  // namespace quorvane
