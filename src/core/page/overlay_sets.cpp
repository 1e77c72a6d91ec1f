#include "core/page/overlay_sets.h"

namespace quorvane {

namespace {

bool SameScan(const Dataset& a, const Dataset& b) {
  return a.FilePath == b.FilePath && a.NumPoints == b.NumPoints && a.R == b.R;
}

// Position of the dataset in the last finished fit, from 1; 0 if it had no part in it.
int FittedAs(const QuorvaneModule& module, const Dataset& dataset) {
  if (!module.LastFit) return 0;
  const FitState& fit = module.LastFit->state;
  for (int d = 1; d <= fit.NumFitSets; ++d) {
    const auto place = static_cast<std::size_t>(d - 1);
    const std::int16_t fitted = fit.FitSetList[place];
    if (SameScan(module.LastFit->datasets[static_cast<std::size_t>(fitted)], dataset)) return d;
  }
  return 0;
}

}  // namespace

std::vector<OverlaySet> OverlaySets(const QuorvaneModule& module, const std::vector<int>& chosen,
                                    bool curves) {
  std::vector<OverlaySet> sets;
  for (const int position : chosen) {
    const auto place = static_cast<std::size_t>(position);
    const Dataset& dataset = module.Store.Datasets[place];
    sets.push_back(
        {.dataset = &dataset, .look = place, .fitted = curves ? FittedAs(module, dataset) : 0});
  }
  return sets;
}

}  // namespace quorvane
