#include "fit/fit_setup.h"

#include "base/arithmetic.h"
#include "base/host.h"
#include "base/number_format.h"
#include "base/text.h"
#include "fit/models.h"

namespace quorvane {

namespace {

std::vector<std::int16_t> ChosenDatasets(const DatasetStore& store) {
  std::vector<std::int16_t> chosen;
  for (std::size_t k = 0; k < store.Datasets.size(); ++k) {
    if (!store.UseData[k]) continue;
    if (chosen.size() == static_cast<std::size_t>(kMaxFitSets)) throw SubscriptFault();
    chosen.push_back(static_cast<std::int16_t>(k));
  }
  return chosen;
}

}  // namespace

double ShownDegC(float temperature) {
  const std::string shown = FormatNumber(static_cast<double>(temperature), "##.0##");
  return ParseNumeric(shown).value_or(0.0);
}

const Model& FirstModel() {
  return Models().front();
}

FitSetup FreshSetup(std::vector<std::int16_t> datasets, const DatasetStore& store,
                    const Model& model) {
  FitSetup fresh;
  fresh.FitSetList = std::move(datasets);
  const std::size_t n = fresh.FitSetList.size();
  fresh.FitModel = &model;
  fresh.NumFitSets = static_cast<std::int16_t>(n);
  fresh.TwoComponentModel = model.secondComponent;
  fresh.RefLink.resize(n);
  for (std::size_t i = 0; i < n; ++i) fresh.RefLink[i] = static_cast<std::int16_t>(i);
  fresh.SetCellChannel.assign(n, 0);
  const auto first = static_cast<std::size_t>(fresh.FitSetList.front());
  fresh.DegC = ShownDegC(store.Datasets[first].Temperature);
  fresh.chkOffset.assign(n, CheckState::kChecked);
  fresh.chkRefC.assign(n, CheckState::kChecked);
  fresh.chkRefC2.assign(n, CheckState::kChecked);
  return fresh;
}

bool SetupFit(FitSetup& setup, FitPage& page, const DatasetStore& store, const Model& model,
              Host& host) {
  std::vector<std::int16_t> chosen = ChosenDatasets(store);
  if (chosen.empty()) {
    host.ShowMessage("No Sets Chosen", "No datasets were chosen to be fitted!", MessageIcon::kNone);
    return false;
  }
  FitSetup fresh = FreshSetup(std::move(chosen), store, model);
  if (setup.ConstrainKRatios) ReleaseRatios(setup, page, page.ModelLnK1);
  setup = std::move(fresh);
  return true;
}

void ForgetChosenSets(FitSetup& setup) {
  setup.NumFitSets = 0;
  setup.FitSetList.clear();
  setup.RefLink.clear();
  setup.SetCellChannel.clear();
  setup.chkOffset.clear();
  setup.chkRefC.clear();
  setup.chkRefC2.clear();
}

void ConstrainRatios(FitSetup& setup) {
  setup.ConstrainKRatios = true;
  setup.chkLnK2 = CheckState::kGrey;
  setup.chkLnK3 = CheckState::kGrey;
}

void ReleaseRatios(FitSetup& setup, FitPage& page, double lnK1) {
  const double lnK2 = CheckedLog(page.ModelLnK2) + lnK1;
  const double lnK3 = CheckedLog(page.ModelLnK3) + lnK1;
  page.ModelLnK2 = lnK2;
  page.ModelLnK3 = lnK3;
  setup.ConstrainKRatios = false;
  setup.chkLnK2 = setup.chkLnK1;
  setup.chkLnK3 = setup.chkLnK1;
}

}  // namespace quorvane
