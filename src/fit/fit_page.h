// The values of the parameter page that all datasets of a fit share.
#pragma once

#include <array>
#include <type_traits>

namespace quorvane {

// Buoyant molecular weights are M(1 - vbar rho), in Da; association constants are held as natural
// logarithms, whatever the page shows.
struct FitPage {
  double ModelMW = 7500.0;   // buoyant molecular weight (of A)
  double ModelMWB = 7500.0;  // buoyant molecular weight of B
  double ModelVirial = 0.0;  // second virial coefficient
  double ModelN1 = 2.0;      // stoichiometry
  double ModelN2 = 4.0;      // second stoichiometry
  double ModelLnK1 = 14.0;
  double ModelLnK2 = 20.0;  // the ratio K2/K1 while K ratios are constrained
  double ModelAlpha = 0.1;  // fraction of incompetent material
  double ModelLnK3 = 24.0;  // the ratio K3/K1 likewise
  double Vbar = 0.73;       // partial specific volume (of A), ml/g
  double VbarB = 0.73;      // of B
  double Density = 1.0;     // of the solvent, g/ml
  double ModelIndex = 0.0;  // index of the Model; set by a save
  std::array<double, 508> FitPageSpare{};
  bool operator==(const FitPage&) const = default;
};

// Which constants of a page somebody has set, if only to the value that they begin with.
struct ConstantsSet {
  bool Vbar = false;
  bool VbarB = false;
  bool Density = false;
};

static_assert(std::is_trivially_copyable_v<FitPage> && sizeof(FitPage) == 4168);

}  // namespace quorvane
