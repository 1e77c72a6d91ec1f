#include "core/page/figure_sets.h"

namespace quorvane {

namespace {

bool SameScan(const Dataset& a, const Dataset& b) {
  return a.FilePath == b.FilePath && a.NumPoints == b.NumPoints && a.R == b.R;
}

// The dataset at position d of the fit, from 1, as it was fitted.
const Dataset& FittedSet(const FinishedFit& fit, int d) {
  const std::int16_t place = fit.state.FitSetList[static_cast<std::size_t>(d - 1)];
  return fit.datasets[static_cast<std::size_t>(place)];
}

// Position of the dataset in the last finished fit, from 1; 0 if it had no part in it.
int FittedAs(const QuorvaneModule& module, const Dataset& dataset) {
  if (!module.LastFit) return 0;
  for (int d = 1; d <= module.LastFit->state.NumFitSets; ++d) {
    if (SameScan(FittedSet(*module.LastFit, d), dataset)) return d;
  }
  return 0;
}

}  // namespace

std::vector<FigureSet> FigureSets(const QuorvaneModule& module, const std::vector<int>& chosen,
                                  bool withFit) {
  std::vector<FigureSet> sets;
  for (const int position : chosen) {
    const auto place = static_cast<std::size_t>(position);
    const Dataset& dataset = module.Store.Datasets[place];
    const int fitted = withFit ? FittedAs(module, dataset) : 0;
    sets.push_back({.dataset = fitted > 0 ? &FittedSet(*module.LastFit, fitted) : &dataset,
                    .number = place,
                    .fitted = fitted});
  }
  return sets;
}

std::vector<FigureSet> FigureSets(const FinishedFit& fit, const std::set<FigureScan>& hidden) {
  std::vector<FigureSet> sets;
  for (int d = 1; d <= fit.state.NumFitSets; ++d) {
    const Dataset& dataset = FittedSet(fit, d);
    if (hidden.contains(FigureScan(dataset))) continue;
    const auto place = static_cast<std::size_t>(&dataset - fit.datasets.data());
    sets.push_back({.dataset = &dataset, .number = place, .fitted = d});
  }
  return sets.empty() && !hidden.empty() ? FigureSets(fit) : sets;
}

}  // namespace quorvane
