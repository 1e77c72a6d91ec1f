#include "fit/models.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "fit/fit_state.h"

namespace quorvane {

namespace {

// The models with a second component have steps of their own.
constexpr StepRule kStepsB = {.firstStep = 0.003, .stepAtZero = 0.003};

constexpr ModelParameter Weight(std::string_view name, std::string_view caption) {
  return {.shared = &shared::kMW, .name = name, .caption = caption, .tag = ""};
}
constexpr ModelParameter WeightA() {
  return {.shared = &shared::kMW, .name = "MWA", .caption = "BuoyantMW A", .tag = "-A"};
}
constexpr ModelParameter WeightB(bool sigma) {
  return {.shared = &shared::kMWB,
          .name = "MWB",
          .caption = "BuoyantMW B",
          .tag = "-B",
          .sigma = sigma};
}
constexpr ModelParameter Virial(std::string_view caption) {
  return {.shared = &shared::kVirialC, .name = "VirialC", .caption = caption, .tag = ""};
}
constexpr ModelParameter Nmer(std::string_view name, std::string_view caption,
                              std::string_view tag = "Stoichiometry") {
  return {.shared = &shared::kN1, .name = name, .caption = caption, .tag = tag};
}
constexpr ModelParameter Mmer() {
  return {.shared = &shared::kN2, .name = "N2", .caption = " N2", .tag = "Stoichiometry M"};
}
constexpr ModelParameter K1(std::string_view caption, std::string_view tag,
                            std::string_view symbol) {
  return {
      .shared = &shared::kLnK1, .name = "LnK1", .caption = caption, .tag = tag, .symbol = symbol};
}
constexpr ModelParameter K2(std::string_view caption) {
  return {
      .shared = &shared::kLnK2, .name = "LnK2", .caption = caption, .tag = "K2", .symbol = "K_2"};
}
constexpr ModelParameter K3() {
  return {
      .shared = &shared::kLnK3, .name = "LnK3", .caption = "LnK3", .tag = "K3", .symbol = "K_3"};
}
// A constant that bears its reaction's name on the page too.
constexpr ModelParameter NamedK(const SharedParameter& shared, std::string_view name,
                                std::string_view caption, std::string_view k,
                                std::string_view symbol) {
  return {.shared = &shared, .name = name, .caption = caption, .tag = k, .symbol = symbol, .k = k};
}
constexpr ModelParameter Alpha() {
  return {.shared = &shared::kAlpha, .name = "Alpha", .caption = " Alpha", .tag = "Alpha"};
}

constexpr std::string_view kBuoyant = " Buoyant MW ";
constexpr std::array kIdeal = {Weight("MW", kBuoyant)};
constexpr std::array kNonideal = {Weight("MW", kBuoyant), Virial(" B*M, Virial Coef. ")};
constexpr std::array kMonomerNmer = {Weight("MW", kBuoyant), Nmer("N", " N1"),
                                     K1(" LnK1", "K", "K")};
constexpr std::array kMonomerNmerMmer = {Weight("MW", kBuoyant),
                                         Nmer("N1", " N1", "Stoichiometry N"),
                                         K1(" LnK1", "K1", "K_1"), Mmer(), K2(" LnK2")};
constexpr std::array kIncompetent = {Weight("MW", kBuoyant), Nmer("N", " N1"),
                                     K1(" LnK1", "K", "K"), Alpha()};
constexpr std::array kAB = {WeightA(), WeightB(true), K1("LnK", "K1", "K_1")};
constexpr std::array kAB2 = {WeightA(), WeightB(true), K1("LnK1", "K1", "K_1"), K2("LnK2")};
constexpr std::array kAB3 = {WeightA(), WeightB(true), K1("LnK1", "K1", "K_1"), K2("LnK2"), K3()};
constexpr std::array kIsodesmic = {Weight("MWA", kBuoyant),
                                   NamedK(shared::kLnK1, "LnKi", "LnKi", "Ki", "K_i")};
constexpr std::array kNmerHetero = {WeightA(), WeightB(false), Nmer("N", "N1"),
                                    NamedK(shared::kLnK1, "LnK1", "LnKs", "Ks", "K_s"),
                                    NamedK(shared::kLnK2, "LnK2", "LnKh", "Kh", "K_h")};
constexpr std::array kMonomerNmerVirial = {Weight("MW", kBuoyant), Nmer("N", " N1"),
                                           K1(" LnK1", "K", "K"), Virial(" B*M, Virial Coef. ")};

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

// What a model becomes without a reaction: ln K runs to minus infinity.
constexpr SimplerModel Without(const SharedParameter& lnK, std::string_view name) {
  return {name, &lnK, -std::numeric_limits<double>::infinity()};
}
constexpr std::array kNonidealSimpler = {SimplerModel{"Ideal", &shared::kVirialC, 0.0}};
constexpr std::array kMonomerNmerSimpler = {Without(shared::kLnK1, "Ideal")};
constexpr std::array kMonomerNmerMmerSimpler = {Without(shared::kLnK2, "Monomer-Nmer"),
                                                Without(shared::kLnK1, "Ideal")};
constexpr std::array kIncompetentSimpler = {SimplerModel{"Monomer-Nmer", &shared::kAlpha, 0.0},
                                            Without(shared::kLnK1, "Ideal")};
constexpr std::array kAB2Simpler = {Without(shared::kLnK2, "A+B<>AB")};
constexpr std::array kAB3Simpler = {Without(shared::kLnK3, "A+B<>AB+B<>AB2"),
                                    Without(shared::kLnK2, "A+B<>AB")};

constexpr std::array kModels = {
    Model{.index = 0,
          .name = "Ideal",
          .reaction = {"A (one ideal species)"},
          .funcsName = "FUNCS0",
          .partialsName = "PARTIALS0",
          .parameters = kIdeal,
          .species = kIdealSpecies},
    Model{.index = 1,
          .name = "Nonideal",
          .reaction = {"A (one species with second virial coefficient B)"},
          .funcsName = "FUNCS1",
          .partialsName = "PARTIALS1",
          .parameters = kNonideal,
          .terms = NonidealTerms,
          .simpler = kNonidealSimpler},
    Model{.index = 2,
          .name = "Monomer-Nmer",
          .reaction = {"n A <-> A_n", "K = [A_n]/[A]^n"},
          .funcsName = "FUNCS2",
          .partialsName = "PARTIALS2",
          .parameters = kMonomerNmer,
          .species = kMonomerNmerSpecies,
          .simpler = kMonomerNmerSimpler},
    Model{.index = 3,
          .name = "Monomer-Nmer-Mmer",
          .reaction = {"n A <-> A_n, m A <-> A_m", "K_1 = [A_n]/[A]^n, K_2 = [A_m]/[A]^m"},
          .funcsName = "FUNCS3",
          .partialsName = "PARTIALS3",
          .parameters = kMonomerNmerMmer,
          .species = kMonomerNmerMmerSpecies,
          .simpler = kMonomerNmerMmerSimpler},
    Model{.index = 4,
          .name = "Inc.Monomer & Monomer-Nmer",
          .reaction = {"n A <-> A_n, and a fraction Alpha of A that cannot associate",
                       "K = [A_n]/[A]^n"},
          .funcsName = "FUNCS5",
          .partialsName = "PARTIALS5",
          .parameters = kIncompetent,
          .cellEnds = true,
          .terms = IncompetentMonomerTerms,
          .simpler = kIncompetentSimpler},
    Model{.index = 5,
          .name = "Monomer-Nmer & Inc.Nmer",
          .reaction = {"n A <-> A_n, and a fraction Alpha as A_n that cannot dissociate",
                       "K = [A_n]/[A]^n"},
          .funcsName = "FUNCS6",
          .partialsName = "PARTIALS6",
          .parameters = kIncompetent,
          .cellEnds = true,
          .terms = IncompetentNmerTerms,
          .simpler = kIncompetentSimpler},
    Model{.index = 6,
          .name = "A+B<>AB",
          .reaction = {"A + B <-> AB", "K_1 = [AB]/[A][B]"},
          .funcsName = "FUNCS7",
          .partialsName = "PARTIALS7",
          .parameters = kAB,
          .secondComponent = true,
          .species = kABSpecies,
          .steps = kStepsB},
    Model{.index = 7,
          .name = "A+B<>AB+B<>AB2",
          .reaction = {"A + B <-> AB, AB + B <-> AB_2", "K_1 = [AB]/[A][B], K_2 = [AB_2]/[AB][B]"},
          .funcsName = "FUNCS8",
          .partialsName = "PARTIALS8",
          .parameters = kAB2,
          .secondComponent = true,
          .kRatios = true,
          .species = kAB2Species,
          .steps = kStepsB,
          .simpler = kAB2Simpler},
    Model{.index = 8,
          .name = "A+B<>AB+B<>AB2+B<>AB3",
          .reaction = {"A + B <-> AB, AB + B <-> AB_2, AB_2 + B <-> AB_3",
                       "K_1 = [AB]/[A][B], K_2 = [AB_2]/[AB][B], K_3 = [AB_3]/[AB_2][B]"},
          .funcsName = "FUNCS9",
          .partialsName = "PARTIALS9",
          .parameters = kAB3,
          .secondComponent = true,
          .kRatios = true,
          .species = kAB3Species,
          .steps = kStepsB,
          .simpler = kAB3Simpler},
    Model{.index = 9,
          .name = "Isodesmic Self-association",
          .reaction = {"A_i + A <-> A_(i+1), i = 1, 2, 3 ...",
                       "K_i = [A_(i+1)]/[A_i][A], alike for all i"},
          .funcsName = "FUNCS10",
          .partialsName = "PARTIALS10",
          .parameters = kIsodesmic,
          .terms = IsodesmicTerms,
          .simpler = kMonomerNmerSimpler},
    Model{.index = 10,
          .name = "nA<>An , An+B<>AnB",
          .reaction = {"n A <-> A_n, A_n + B <-> A_nB", "K_s = [A_n]/[A]^n, K_h = [A_nB]/[A_n][B]"},
          .funcsName = "FUNCS11",
          .partialsName = "PARTIALS11",
          .parameters = kNmerHetero,
          .secondComponent = true,
          .species = kNmerHeteroSpecies,
          .steps = kStepsB},
};

// No list offers it.
constexpr Model kReserved = {.index = 14,
                             .name = "Monomer-Nmer, nonideal",
                             .funcsName = "FUNCS4",
                             .partialsName = "PARTIALS4",
                             .parameters = kMonomerNmerVirial,
                             .species = kMonomerNmerSpecies};

}  // namespace

void FUNCS(FitState& fit, int i, const Array1<double>& a, double& result) {
  const Model& model = *fit.FitModel;
  fit.CurrentProc = model.funcsName;
  SetTerms set;
  model.terms(fit, model, a, fit.FitSet(i), set);
  result = EvaluatePoint(fit, set, i);
}

std::span<const Model> Models() {
  return kModels;
}

const std::vector<std::string_view>& ModelNames() {
  static const std::vector<std::string_view> names = [] {
    std::vector<std::string_view> list;
    for (const Model& model : Models()) list.push_back(model.name);
    return list;
  }();
  return names;
}

const Model* FindModel(int modelIndex) {
  if (modelIndex == kReserved.index) return &kReserved;
  if (modelIndex < 0 || modelIndex >= static_cast<int>(kModels.size())) return nullptr;
  return &kModels[static_cast<std::size_t>(modelIndex)];
}

const Model* FindModel(std::string_view name) {
  const auto found = std::find_if(kModels.begin(), kModels.end(),
                                  [&](const Model& model) { return model.name == name; });
  return found == kModels.end() ? nullptr : &*found;
}

const ModelParameter* FindParameter(const Model& model, const SharedParameter& shared) {
  for (const ModelParameter& parameter : model.parameters) {
    if (parameter.shared == &shared) return &parameter;
  }
  return nullptr;
}

bool SimplerModel::LimitOnly() const {
  return std::isinf(value);
}

const SimplerModel* FindSimpler(const Model& model, const Model& other) {
  for (const SimplerModel& simpler : model.simpler) {
    if (simpler.name == other.name) return &simpler;
  }
  return nullptr;
}

}  // namespace quorvane
