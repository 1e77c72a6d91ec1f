// The parameters that all datasets of a fit share, a record each. What a model, the page, a job or
// a statistic says of one of them is a view of its record.
#pragma once

#include <array>
#include <string_view>

#include "fit/fit_setup.h"

namespace quorvane {

enum class ParameterKind {
  kWeight,         // buoyant molecular weight, Da
  kVirial,         // second virial coefficient
  kStoichiometry,  // number of monomers in an oligomer
  kLnK,            // natural logarithm of an association constant, or a ratio while constrained
  kFraction,       // from 0 to 1
};

struct SharedParameter {
  std::string_view name;   // in a job and in JSON
  const char* control;     // "MWB": lblMWB, txtMWB and chkMWB
  std::string_view label;  // on the page and in its messages; of a constant its K
  ParameterKind kind;
  int place;  // among those of its kind, from 1; of a weight 1 is A and 2 is B
  double FitPage::*field;
  CheckState FitSetup::*check;
};

// In the order in which FitPage holds them.
inline constexpr std::array<SharedParameter, 9> SharedParameters = {{
    {"MW", "MWB", "MW", ParameterKind::kWeight, 1, &FitPage::ModelMW, &FitSetup::chkMWB},
    {"MWB", "MWB2", "MW", ParameterKind::kWeight, 2, &FitPage::ModelMWB, &FitSetup::chkMWB2},
    {"VirialC", "VirialC", "B*M, Virial Coef.", ParameterKind::kVirial, 1, &FitPage::ModelVirial,
     &FitSetup::chkVirialC},
    {"N1", "N1mer", "N-mer", ParameterKind::kStoichiometry, 1, &FitPage::ModelN1,
     &FitSetup::chkN1mer},
    {"N2", "N2mer", "M-mer", ParameterKind::kStoichiometry, 2, &FitPage::ModelN2,
     &FitSetup::chkN2mer},
    {"LnK1", "LnK1", "K1", ParameterKind::kLnK, 1, &FitPage::ModelLnK1, &FitSetup::chkLnK1},
    {"LnK2", "LnK2", "K2", ParameterKind::kLnK, 2, &FitPage::ModelLnK2, &FitSetup::chkLnK2},
    {"Alpha", "Alpha", "Alpha", ParameterKind::kFraction, 1, &FitPage::ModelAlpha,
     &FitSetup::chkAlpha},
    {"LnK3", "LnK3", "K3", ParameterKind::kLnK, 3, &FitPage::ModelLnK3, &FitSetup::chkLnK3},
}};

namespace shared {

inline constexpr const SharedParameter& kMW = SharedParameters[0];
inline constexpr const SharedParameter& kMWB = SharedParameters[1];
inline constexpr const SharedParameter& kVirialC = SharedParameters[2];
inline constexpr const SharedParameter& kN1 = SharedParameters[3];
inline constexpr const SharedParameter& kN2 = SharedParameters[4];
inline constexpr const SharedParameter& kLnK1 = SharedParameters[5];
inline constexpr const SharedParameter& kLnK2 = SharedParameters[6];
inline constexpr const SharedParameter& kAlpha = SharedParameters[7];
inline constexpr const SharedParameter& kLnK3 = SharedParameters[8];

}  // namespace shared

// Whether constrained K ratios turn it into a ratio to K1.
constexpr bool MayBeRatio(const SharedParameter& parameter) {
  return parameter.kind == ParameterKind::kLnK && parameter.place > 1;
}

// The record with that name in a job, or null.
constexpr const SharedParameter* FindParameter(std::string_view name) {
  for (const SharedParameter& parameter : SharedParameters) {
    if (parameter.name == name) return &parameter;
  }
  return nullptr;
}

}  // namespace quorvane
