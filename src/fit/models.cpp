#include "fit/models.h"

#include "fit/fit_state.h"

namespace {

// Steps of the derivative: the models with a second component have their own.
constexpr double kFirstStep = 0.01;
constexpr double kStepAtZero = 0.001;
constexpr double kFirstStepB = 0.003;
constexpr double kStepAtZeroB = 0.003;

constexpr SharedParameter Mw(std::string_view name) {
  return {name, &FitPage::ModelMW, &FitSetup::chkMWB};
}
constexpr SharedParameter MwB() {
  return {"MWB", &FitPage::ModelMWB, &FitSetup::chkMWB2};
}
constexpr SharedParameter Virial() {
  return {"VirialC", &FitPage::ModelVirial, &FitSetup::chkVirialC};
}
constexpr SharedParameter N1(std::string_view name) {
  return {name, &FitPage::ModelN1, &FitSetup::chkN1mer};
}
constexpr SharedParameter N2() {
  return {"N2", &FitPage::ModelN2, &FitSetup::chkN2mer};
}
constexpr SharedParameter LnK1(std::string_view name) {
  return {name, &FitPage::ModelLnK1, &FitSetup::chkLnK1};
}
constexpr SharedParameter LnK2() {
  return {"LnK2", &FitPage::ModelLnK2, &FitSetup::chkLnK2};
}
constexpr SharedParameter LnK3() {
  return {"LnK3", &FitPage::ModelLnK3, &FitSetup::chkLnK3};
}
constexpr SharedParameter Alpha() {
  return {"Alpha", &FitPage::ModelAlpha, &FitSetup::chkAlpha};
}

constexpr std::array kIdeal = {Mw("MW")};
constexpr std::array kNonideal = {Mw("MW"), Virial()};
constexpr std::array kMonomerNmer = {Mw("MW"), N1("N"), LnK1("LnK1")};
constexpr std::array kMonomerNmerMmer = {Mw("MW"), N1("N1"), LnK1("LnK1"), N2(), LnK2()};
constexpr std::array kIncompetent = {Mw("MW"), N1("N"), LnK1("LnK1"), Alpha()};
constexpr std::array kAB = {Mw("MWA"), MwB(), LnK1("LnK1")};
constexpr std::array kAB2 = {Mw("MWA"), MwB(), LnK1("LnK1"), LnK2()};
constexpr std::array kAB3 = {Mw("MWA"), MwB(), LnK1("LnK1"), LnK2(), LnK3()};
constexpr std::array kIsodesmic = {Mw("MWA"), LnK1("LnKi")};
constexpr std::array kNmerHetero = {Mw("MWA"), MwB(), N1("N"), LnK1("LnK1"), LnK2()};
constexpr std::array kMonomerNmerVirial = {Mw("MW"), N1("N"), LnK1("LnK1"), Virial()};

// Places among the shared parameters: a second component comes with the weight of B.
constexpr Species kA = {.a = {1.0}};
constexpr Species kB = {.b = {1.0}};
constexpr std::array kIdealSpecies = {kA};
constexpr std::array kMonomerNmerSpecies = {kA, Species{.a = {.parameter = 2}, .lnK = {3}}};
constexpr std::array kMonomerNmerMmerSpecies = {kA, Species{.a = {.parameter = 2}, .lnK = {3}},
                                                Species{.a = {.parameter = 4}, .lnK = {5}}};
constexpr Species kABComplex = {.a = {1.0}, .b = {1.0}, .lnK = {3}};
constexpr Species kAB2Complex = {.a = {1.0}, .b = {2.0}, .lnK = {3, 4}};
constexpr Species kAB3Complex = {.a = {1.0}, .b = {3.0}, .lnK = {3, 4, 5}};
constexpr std::array kABSpecies = {kA, kB, kABComplex};
constexpr std::array kAB2Species = {kA, kB, kABComplex, kAB2Complex};
constexpr std::array kAB3Species = {kA, kB, kABComplex, kAB2Complex, kAB3Complex};
constexpr std::array kNmerHeteroSpecies = {
    kA, kB, Species{.a = {.parameter = 3}, .lnK = {4}},
    Species{.a = {.parameter = 3}, .b = {1.0}, .lnK = {4, 5}}};

Model OneComponentModel(std::string_view funcs, std::string_view partials, FuncsRoutine routine,
                        TermsBuilder terms, std::span<const SharedParameter> parameters,
                        std::span<const Species> species = {}) {
  return {funcs, partials, routine, terms, kFirstStep, kStepAtZero, false, parameters, species};
}

Model TwoComponentModel(std::string_view funcs, std::string_view partials, FuncsRoutine routine,
                        std::span<const SharedParameter> parameters,
                        std::span<const Species> species, bool kRatios) {
  return {funcs,        partials, routine,    SpeciesTerms, kFirstStepB,
          kStepAtZeroB, true,     parameters, species,      kRatios};
}

const std::array<Model, 11>& Catalogue() {
  static const std::array<Model, 11> models = {
      OneComponentModel("FUNCS0", "PARTIALS0", FUNCS0, SpeciesTerms, kIdeal, kIdealSpecies),
      OneComponentModel("FUNCS1", "PARTIALS1", FUNCS1, NonidealTerms, kNonideal),
      OneComponentModel("FUNCS2", "PARTIALS2", FUNCS2, SpeciesTerms, kMonomerNmer,
                        kMonomerNmerSpecies),
      OneComponentModel("FUNCS3", "PARTIALS3", FUNCS3, SpeciesTerms, kMonomerNmerMmer,
                        kMonomerNmerMmerSpecies),
      OneComponentModel("FUNCS5", "PARTIALS5", FUNCS5, IncompetentMonomerTerms, kIncompetent),
      OneComponentModel("FUNCS6", "PARTIALS6", FUNCS6, IncompetentNmerTerms, kIncompetent),
      TwoComponentModel("FUNCS7", "PARTIALS7", FUNCS7, kAB, kABSpecies, false),
      TwoComponentModel("FUNCS8", "PARTIALS8", FUNCS8, kAB2, kAB2Species, true),
      TwoComponentModel("FUNCS9", "PARTIALS9", FUNCS9, kAB3, kAB3Species, true),
      OneComponentModel("FUNCS10", "PARTIALS10", FUNCS10, IsodesmicTerms, kIsodesmic),
      TwoComponentModel("FUNCS11", "PARTIALS11", FUNCS11, kNmerHetero, kNmerHeteroSpecies, false)};
  return models;
}

constexpr int kReserved = 14;  // index of the model that no list offers

// Value of the model with this index at flat point i.
void Evaluate(int modelIndex, FitState& fit, int i, const Array1<double>& a, double& result) {
  const Model& model = *FindModel(modelIndex);
  fit.CurrentProc = model.funcsName;
  SetTerms set;
  model.terms(fit, model, a, fit.FitSet(i), set);
  result = EvaluatePoint(fit, set, i);
}

}  // namespace

const Model* FindModel(int modelIndex) {
  static const Model reserved = OneComponentModel("FUNCS4", "PARTIALS4", FUNCS4, SpeciesTerms,
                                                  kMonomerNmerVirial, kMonomerNmerSpecies);
  const auto& models = Catalogue();
  if (modelIndex == kReserved) return &reserved;
  if (modelIndex < 0 || modelIndex >= static_cast<int>(models.size())) return nullptr;
  return &models[static_cast<std::size_t>(modelIndex)];
}

bool HasSecondComponent(int modelIndex) {
  const Model* model = FindModel(modelIndex);
  return model != nullptr && model->secondComponent;
}

int ModelIndexOf(std::string_view name) {
  for (std::size_t k = 0; k < ModelNames.size(); ++k) {
    if (ModelNames[k] == name) return static_cast<int>(k);
  }
  return -1;
}

bool NeedsCellEnds(int modelIndex) {
  return modelIndex == 4 || modelIndex == 5;
}

void FUNCS0(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(0, fit, i, a, result);
}
void FUNCS1(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(1, fit, i, a, result);
}
void FUNCS2(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(2, fit, i, a, result);
}
void FUNCS3(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(3, fit, i, a, result);
}
void FUNCS4(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(kReserved, fit, i, a, result);
}
void FUNCS5(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(4, fit, i, a, result);
}
void FUNCS6(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(5, fit, i, a, result);
}
void FUNCS7(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(6, fit, i, a, result);
}
void FUNCS8(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(7, fit, i, a, result);
}
void FUNCS9(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(8, fit, i, a, result);
}
void FUNCS10(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(9, fit, i, a, result);
}
void FUNCS11(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(10, fit, i, a, result);
}
