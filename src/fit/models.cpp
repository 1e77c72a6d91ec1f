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

Model OneComponentModel(std::string_view funcs, std::string_view partials, FuncsRoutine routine,
                        TermsBuilder terms, std::span<const SharedParameter> parameters) {
  return {funcs, partials, routine, terms, kFirstStep, kStepAtZero, false, parameters};
}

Model TwoComponentModel(std::string_view funcs, std::string_view partials, FuncsRoutine routine,
                        TermsBuilder terms, std::span<const SharedParameter> parameters) {
  return {funcs, partials, routine, terms, kFirstStepB, kStepAtZeroB, true, parameters};
}

const std::array<Model, 11>& Catalogue() {
  static const std::array<Model, 11> models = {
      OneComponentModel("FUNCS0", "PARTIALS0", FUNCS0, IdealTerms, kIdeal),
      OneComponentModel("FUNCS1", "PARTIALS1", FUNCS1, NonidealTerms, kNonideal),
      OneComponentModel("FUNCS2", "PARTIALS2", FUNCS2, MonomerNmerTerms, kMonomerNmer),
      OneComponentModel("FUNCS3", "PARTIALS3", FUNCS3, MonomerNmerMmerTerms, kMonomerNmerMmer),
      OneComponentModel("FUNCS5", "PARTIALS5", FUNCS5, IncompetentMonomerTerms, kIncompetent),
      OneComponentModel("FUNCS6", "PARTIALS6", FUNCS6, IncompetentNmerTerms, kIncompetent),
      TwoComponentModel("FUNCS7", "PARTIALS7", FUNCS7, ABTerms, kAB),
      TwoComponentModel("FUNCS8", "PARTIALS8", FUNCS8, AB2Terms, kAB2),
      TwoComponentModel("FUNCS9", "PARTIALS9", FUNCS9, AB3Terms, kAB3),
      OneComponentModel("FUNCS10", "PARTIALS10", FUNCS10, IsodesmicTerms, kIsodesmic),
      TwoComponentModel("FUNCS11", "PARTIALS11", FUNCS11, NmerHeteroTerms, kNmerHetero)};
  return models;
}

void Evaluate(FitState& fit, std::string_view name, TermsBuilder terms, int i,
              const Array1<double>& a, double& result) {
  fit.CurrentProc = name;
  SetTerms set;
  terms(fit, a, fit.FitSet(i), set);
  result = EvaluatePoint(fit, set, i);
}

}  // namespace

const Model* FindModel(int modelIndex) {
  constexpr int kReserved = 14;
  static const Model reserved =
      OneComponentModel("FUNCS4", "PARTIALS4", FUNCS4, MonomerNmerTerms, kMonomerNmerVirial);
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
  Evaluate(fit, "FUNCS0", IdealTerms, i, a, result);
}
void FUNCS1(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(fit, "FUNCS1", NonidealTerms, i, a, result);
}
void FUNCS2(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(fit, "FUNCS2", MonomerNmerTerms, i, a, result);
}
void FUNCS3(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(fit, "FUNCS3", MonomerNmerMmerTerms, i, a, result);
}
void FUNCS4(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(fit, "FUNCS4", MonomerNmerTerms, i, a, result);
}
void FUNCS5(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(fit, "FUNCS5", IncompetentMonomerTerms, i, a, result);
}
void FUNCS6(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(fit, "FUNCS6", IncompetentNmerTerms, i, a, result);
}
void FUNCS7(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(fit, "FUNCS7", ABTerms, i, a, result);
}
void FUNCS8(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(fit, "FUNCS8", AB2Terms, i, a, result);
}
void FUNCS9(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(fit, "FUNCS9", AB3Terms, i, a, result);
}
void FUNCS10(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(fit, "FUNCS10", IsodesmicTerms, i, a, result);
}
void FUNCS11(FitState& fit, int i, const Array1<double>& a, double& result) {
  Evaluate(fit, "FUNCS11", NmerHeteroTerms, i, a, result);
}
