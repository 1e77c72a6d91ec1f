#include "core/page_parts.h"

#include "fit/models.h"

namespace {

constexpr int kAB2 = 7;
constexpr int kAB3 = 8;

}  // namespace

PageParts PartsOf(const FitSetup& setup) {
  const bool two = setup.TwoComponentModel;
  PageParts parts;
  parts.componentB = two;
  parts.cellEnds = NeedsCellEnds(setup.ModelIndex);
  parts.loads = two && setup.UseMassConservation;
  parts.links = two && setup.NumFitSets >= 2;
  parts.calcConcs = !two;
  parts.massConservation = two;
  parts.constrain = setup.ModelIndex == kAB2 || setup.ModelIndex == kAB3;
  parts.cellGeometry = setup.UseMassConservation || setup.CalcLoadingConcs;
  return parts;
}

std::string ConstrainCaption(const FitSetup& setup) {
  return setup.ModelIndex == kAB3 ? "Constrain K2/K1 and K3/K1" : "Constrain K2/K1";
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
