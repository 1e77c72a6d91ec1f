// What the parameter page adds to the shared values: the model, the chosen datasets and their
// links, which parameters are checked, and the flags.
#pragma once

#include <cstdint>
#include <vector>

#include "fit/fit_page.h"
#include "scan/dataset_store.h"

namespace quorvane {

inline constexpr int kMaxFitSets = 101;

struct Model;

// The first of Models(), see fit/models.h.
const Model& FirstModel();

// A temperature as the page shows it, deg C: the shown text is what a fit reads.
double ShownDegC(float temperature);

enum class CheckState : std::int16_t { kUnchecked = 0, kChecked = 1, kGrey = 2 };

struct FitSetup {
  const Model* FitModel = &FirstModel();
  std::int16_t NumFitSets = 0;
  std::vector<std::int16_t> FitSetList;      // position in the fit, from 0 -> dataset, from 0
  std::vector<std::int16_t> RefLink;         // position whose reference concentrations are shared
  std::vector<std::int16_t> SetCellChannel;  // cell geometry of each position, from 0
  double DegC = 20.0;                        // temperature of the fit, deg C
  bool TwoComponentModel = false;
  bool UseMassConservation = false;  // for models with a second component
  bool CalcLoadingConcs = false;     // for models without
  bool ConstrainKRatios = false;

  std::vector<CheckState> chkOffset;  // by position
  std::vector<CheckState> chkRefC;
  std::vector<CheckState> chkRefC2;
  CheckState chkMWB = CheckState::kChecked;
  CheckState chkMWB2 = CheckState::kChecked;
  CheckState chkVirialC = CheckState::kChecked;
  CheckState chkN1mer = CheckState::kUnchecked;
  CheckState chkN2mer = CheckState::kUnchecked;
  CheckState chkLnK1 = CheckState::kChecked;
  CheckState chkLnK2 = CheckState::kChecked;
  CheckState chkLnK3 = CheckState::kChecked;
  CheckState chkAlpha = CheckState::kChecked;
  bool operator==(const FitSetup&) const = default;
};

// A page for `datasets` (positions in the store, rising, at least one, at most kMaxFitSets), its
// switches as after "Setup Fit".
FitSetup FreshSetup(std::vector<std::int16_t> datasets, const DatasetStore& store,
                    const Model& model);

// "Setup Fit": chooses the model and the datasets with UseData set, and brings
// every switch of the page to its state after the button. False, with a message and nothing
// changed, if no dataset is chosen. Throws SubscriptFault for more than 101 datasets.
// Constrained K ratios are turned back into ln K on `page` first.
bool SetupFit(FitSetup& setup, FitPage& page, const DatasetStore& store, const Model& model,
              Host& host);

// Forgets which datasets were chosen and how they are linked: after that a fit needs "Setup Fit".
void ForgetChosenSets(FitSetup& setup);

// Takes ModelLnK2 and ModelLnK3 for the ratios K2/K1 and K3/K1, which are then held.
void ConstrainRatios(FitSetup& setup);

// Turns constrained ratios on `page` back into ln K2 and ln K3; `lnK1` is the ln K1 that they are
// ratios to. Throws ArithmeticFault, with nothing changed, for a ratio of 0 or below.
void ReleaseRatios(FitSetup& setup, FitPage& page, double lnK1);

}  // namespace quorvane
