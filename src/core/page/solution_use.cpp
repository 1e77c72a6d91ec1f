#include "core/page/solution_use.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "core/page/constants.h"
#include "core/page/row_values.h"

namespace quorvane {

namespace {

constexpr int kProteinWavelength = 280;  // nm
constexpr int kNear = 2;

Refusal RefusalOfUse(const QuorvaneModule& module, const SolutionUse& use,
                     const SolutionConstants& constants) {
  if (use.vbar) {
    if (!constants.protein) return {"There is no sequence for vbar."};
    if (Refusal refusal = RefusalOfConstant(Constant::kVbar, constants.protein->vbar)) {
      return refusal;
    }
  }
  if (use.density) {
    if (!constants.density) return {"There is no buffer for the density."};
    if (Refusal refusal = RefusalOfConstant(Constant::kDensity, *constants.density)) return refusal;
  }
  if (!use.extinction) return {};
  if (!constants.protein || !(constants.protein->extinction280 > 0.0)) {
    return {"There is no extinction at 280 nm to take."};
  }
  if (RowsAt280(module).empty()) return {"No dataset of the page was scanned at 280 nm."};
  return {};
}

}  // namespace

double ExperimentDegC(const QuorvaneModule& module) {
  const DatasetStore& store = module.Store;
  if (module.Setup.NumFitSets > 0 || store.Datasets.empty()) return module.Setup.DegC;
  const auto used = std::find(store.UseData.begin(), store.UseData.end(), true);
  const auto first = static_cast<std::size_t>(
      used == store.UseData.end() ? 0 : std::distance(store.UseData.begin(), used));
  return ShownDegC(store.Datasets[first].Temperature);
}

double SolutionDegC(const QuorvaneModule& module) {
  return module.Solution.degC ? *module.Solution.degC : ExperimentDegC(module);
}

std::vector<int> RowsAt280(const QuorvaneModule& module) {
  std::vector<int> places;
  if (!RowsAreCurrent(module)) return places;
  for (const std::int16_t place : module.Setup.FitSetList) {
    const Dataset& dataset = module.Store.Datasets[static_cast<std::size_t>(place)];
    if (std::abs(dataset.Wavelength - kProteinWavelength) <= kNear) places.push_back(place);
  }
  return places;
}

Refusal UseSolution(QuorvaneModule& module, const SolutionUse& use,
                    const SolutionConstants& constants) {
  if (Refusal refusal = RefusalOfUse(module, use, constants)) return refusal;
  if (use.vbar) {
    const Constant vbar = use.ofB ? Constant::kVbarB : Constant::kVbar;
    if (Refusal refusal = SetConstant(module, vbar, constants.protein->vbar)) return refusal;
  }
  if (use.density) {
    if (Refusal refusal = SetConstant(module, Constant::kDensity, *constants.density)) {
      return refusal;
    }
  }
  if (!use.extinction) return {};
  const double coefficient = constants.protein->extinction280 * module.Solution.path;
  for (const int place : RowsAt280(module)) {
    Dataset& dataset = module.Store.Datasets[static_cast<std::size_t>(place)];
    const RowValue& value = use.ofB ? row::kExtCoeff2 : row::kExtCoeff;
    if (Refusal refusal = SetValue(value, dataset, coefficient)) return refusal;
  }
  return {};
}

FitPage PageWith(const FitPage& page, const SolutionUse& use, const SolutionConstants& constants) {
  FitPage changed = page;
  if (use.vbar && constants.protein) {
    (use.ofB ? changed.VbarB : changed.Vbar) = constants.protein->vbar;
  }
  if (use.density && constants.density) changed.Density = *constants.density;
  return changed;
}

}  // namespace quorvane
