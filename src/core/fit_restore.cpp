#include "core/fit_restore.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/page/row_choices.h"
#include "fit/models.h"

namespace quorvane {

namespace {

// Where the scans of a fit stand now.
struct FoundScans {
  std::vector<std::int16_t> places;  // by position in the fit
  Refusal refusal;                   // one is missing
};

Refusal Missing(const ScanName& scan) {
  if (scan.name.empty()) {
    return Refusal{
        "The fit cannot be restored: one of its datasets was not loaded any more when "
        "the experiment was saved."};
  }
  return Refusal{"The fit cannot be restored: its dataset \"" + scan.name +
                 "\" is not loaded any more, or was renamed.\r\n" + scan.path};
}

FoundScans FindScans(const std::vector<ScanName>& scans, const std::vector<Dataset>& datasets) {
  FoundScans found;
  const std::vector<ScanName> names = ScanNames(datasets);
  for (const ScanName& scan : scans) {
    const auto place = std::find(names.begin(), names.end(), scan);
    if (place == names.end()) {
      found.refusal = Missing(scan);
      return found;
    }
    found.places.push_back(static_cast<std::int16_t>(place - names.begin()));
  }
  return found;
}

// A setup of the fit's datasets where they stand now, and the choice that goes with it.
void TakeSetup(FitSetup setup, QuorvaneModule& module) {
  std::fill(module.Store.UseData.begin(), module.Store.UseData.end(), false);
  for (const std::int16_t place : setup.FitSetList) {
    module.Store.UseData[static_cast<std::size_t>(place)] = true;
  }
  module.ChosenModel = setup.FitModel;
  module.Setup = std::move(setup);
}

void RestoreWhole(QuorvaneModule& module, const std::shared_ptr<const FinishedFit>& fit,
                  std::vector<std::int16_t> places) {
  for (std::size_t d = 0; d < places.size(); ++d) {
    const auto then = static_cast<std::size_t>(fit->setup.FitSetList[d]);
    module.Store.Datasets[static_cast<std::size_t>(places[d])] = fit->datasets[then];
  }
  FitSetup setup = fit->setup;
  setup.FitSetList = std::move(places);
  if (fit->state.UseMassConservation) module.Preferences.MCTolerance = fit->state.MCTolerance;
  module.FitPage = fit->page;
  module.ConstantsSet = fit->constantsSet;
  TakeSetup(std::move(setup), module);
  module.LastFit = fit;
}

CheckState Check(bool fitted) {
  return fitted ? CheckState::kChecked : CheckState::kUnchecked;
}

// Above 0, as the page wants it, even if it is too small for a number.
double Concentration(double logarithm) {
  return std::max(std::exp(logarithm), std::numeric_limits<double>::min());
}

// Values and checks of the rows. A row that shares concentrations has none of its own, so its
// checks stay those of a new page.
void TakeRows(const FitSummary& fit, FitSetup& setup, std::vector<Dataset>& datasets) {
  const auto sets = static_cast<std::size_t>(fit.Sets());
  for (std::size_t d = 0; d < sets; ++d) {
    Dataset& dataset = datasets[static_cast<std::size_t>(setup.FitSetList[d])];
    const bool linked = fit.model->secondComponent && fit.links[d] != static_cast<int>(d);
    dataset.Offset = fit.parameters[d].value;
    setup.chkOffset[d] = Check(fit.parameters[d].fitted);
    dataset.RefConc = Concentration(fit.parameters[sets + d].value);
    if (!linked) setup.chkRefC[d] = Check(fit.parameters[sets + d].fitted);
    if (fit.model->secondComponent) {
      dataset.RefConc2 = Concentration(fit.parameters[2 * sets + d].value);
      if (!linked) setup.chkRefC2[d] = Check(fit.parameters[2 * sets + d].fitted);
    }
    if (!fit.conditions) continue;
    const SetConditions& known = fit.conditions->sets[d];
    dataset.ExtCoeff = known.extCoeff;
    dataset.ExtCoeff2 = known.extCoeffB;
    if (fit.model->cellEnds) {
      dataset.Rmen = known.meniscus;
      dataset.Rbase = known.base;
    }
    if (fit.massConservation) {
      dataset.ALoad = known.loadA;
      dataset.BLoad = known.loadB;
    }
  }
}

void TakeShared(const FitSummary& fit, FitSetup& setup, FitPage& page) {
  for (const ModelParameter& parameter : fit.model->parameters) {
    const SummaryParameter& kept = *fit.Shared(*parameter.shared);
    page.*parameter.shared->field = kept.value;
    setup.*parameter.shared->check = Check(kept.fitted);
  }
  if (fit.constrainedRatios) ConstrainRatios(setup);
  if (!fit.conditions) return;
  page.Vbar = fit.conditions->vbar;
  page.Density = fit.conditions->density;
}

Refusal RestoreStart(QuorvaneModule& module, const KeptFit& kept,
                     std::vector<std::int16_t> places) {
  const FitSummary& fit = kept.summary;
  FitSetup setup = FreshSetup(std::move(places), module.Store, *fit.model);
  std::vector<RowLink> links;
  for (int d = 0; d < fit.Sets(); ++d) {
    const int target = fit.links[static_cast<std::size_t>(d)];
    if (target != d) links.push_back({d, target});
  }
  if (const auto refused = LinkRows(setup, links)) return refused->refusal;
  setup.DegC = kept.degC;
  setup.CalcLoadingConcs = kept.loadingConcs;
  setup.UseMassConservation = fit.massConservation;
  if (fit.massConservation && fit.conditions) {
    module.Preferences.MCTolerance = fit.conditions->tolerance;
  }
  TakeRows(fit, setup, module.Store.Datasets);
  TakeShared(fit, setup, module.FitPage);
  TakeSetup(std::move(setup), module);
  return {};
}

}  // namespace

Refusal RestoreFit(QuorvaneModule& module, std::size_t place) {
  const HistoryEntry& entry = module.Fits.Entries()[place];
  FoundScans found = FindScans(entry.kept->scans, module.Store.Datasets);
  if (found.refusal) return found.refusal;
  if (!entry.packed) return RestoreStart(module, *entry.kept, std::move(found.places));
  RestoreWhole(module, module.Fits.Fit(place), std::move(found.places));
  return {};
}

}  // namespace quorvane
