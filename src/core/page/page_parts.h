// Which parts of the parameter page the model and its switches show.
#pragma once

#include <string>

#include "fit/fit_setup.h"

namespace quorvane {

struct PageParts {
  bool componentB = false;        // reference concentration and extinction coefficient of B
  bool cellEnds = false;          // radii of meniscus and base
  bool loads = false;             // loading concentrations of A and B
  bool links = false;             // shared reference concentrations
  bool calcConcs = false;         // chkCalcConcs
  bool massConservation = false;  // chkUseMC
  bool constrain = false;         // chkConstrainKratios
  bool cellGeometry = false;      // whether the cell's shape matters and can be chosen
};

PageParts PartsOf(const FitSetup& setup);

// Captions that depend on the model.
std::string ConstrainCaption(const FitSetup& setup);
std::string HeadOfRefConc(const FitSetup& setup);
std::string HeadOfExtCoeff(const FitSetup& setup);
std::string HeadOfRmen(const FitSetup& setup);   // over txtRmen or txtALoad
std::string HeadOfRbase(const FitSetup& setup);  // over txtRbase or txtBLoad

}  // namespace quorvane
