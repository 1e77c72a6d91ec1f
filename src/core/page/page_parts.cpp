#include "core/page/page_parts.h"

#include "fit/models.h"

namespace quorvane {

PageParts PartsOf(const FitSetup& setup) {
  const bool two = setup.TwoComponentModel;
  PageParts parts;
  parts.componentB = two;
  parts.cellEnds = setup.FitModel->cellEnds;
  parts.loads = two && setup.UseMassConservation;
  parts.links = two && setup.NumFitSets >= 2;
  parts.calcConcs = !two;
  parts.massConservation = two;
  parts.constrain = setup.FitModel->kRatios;
  parts.cellGeometry = setup.UseMassConservation || setup.CalcLoadingConcs;
  return parts;
}

std::string ConstrainCaption(const FitSetup& setup) {
  const bool third = FindParameter(*setup.FitModel, shared::kLnK3) != nullptr;
  return third ? "Constrain K2/K1 and K3/K1" : "Constrain K2/K1";
}

std::string HeadOfRefConc(const FitSetup& setup) {
  return setup.TwoComponentModel ? "Ref.Conc.A" : "Ref.Conc.";
}

std::string HeadOfExtCoeff(const FitSetup& setup) {
  return setup.TwoComponentModel ? "Ext.Coef.A" : "Ext.Coef.";
}

std::string HeadOfRmen(const FitSetup& setup) {
  return setup.TwoComponentModel ? "[A]load" : "R[men.]";
}

std::string HeadOfRbase(const FitSetup& setup) {
  return setup.TwoComponentModel ? "[B]load" : "R[base]";
}

}  // namespace quorvane
