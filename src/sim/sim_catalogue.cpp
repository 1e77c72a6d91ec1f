#include "sim/sim_catalogue.h"

#include <initializer_list>
#include <optional>

#include "sim/hetero_loads.h"
#include "sim/sim_models.h"

namespace quorvane {

namespace {

constexpr std::uint32_t Bit(SimBox box) {
  return std::uint32_t{1} << static_cast<unsigned>(box);
}

constexpr std::uint32_t Bits(std::initializer_list<SimBox> boxes) {
  std::uint32_t bits = 0;
  for (const SimBox box : boxes) bits |= Bit(box);
  return bits;
}

constexpr std::uint32_t kAllModels =
    Bits({SimBox::kMW, SimBox::kLoadC, SimBox::kVbar, SimBox::kExtCoeff, SimBox::kDensity,
          SimBox::kSpeed, SimBox::kTemp, SimBox::kRmen, SimBox::kRbase, SimBox::kRMS});
constexpr std::uint32_t kNmerBoxes = Bits({SimBox::kN1mer, SimBox::kLnK1});
constexpr std::uint32_t kNmerMmerBoxes = kNmerBoxes | Bits({SimBox::kN2mer, SimBox::kLnK2});
constexpr std::uint32_t kIncompetentBoxes = kNmerBoxes | Bit(SimBox::kAlpha);
constexpr std::uint32_t kABBoxes =
    Bits({SimBox::kLnK1, SimBox::kMWB, SimBox::kLoadCB, SimBox::kVbarB, SimBox::kExtCoeffB});
constexpr std::uint32_t kAB2Boxes = kABBoxes | Bit(SimBox::kLnK2);
constexpr std::uint32_t kAB3Boxes = kAB2Boxes | Bit(SimBox::kLnK3);
constexpr std::uint32_t kAnBBoxes = kAB2Boxes | Bit(SimBox::kN1mer);

constexpr std::array<bool, 3> kK1 = {true, false, false};
constexpr std::array<bool, 3> kK2 = {false, true, false};
constexpr std::array<bool, 3> kK1K2 = {true, true, false};
constexpr std::array<bool, 3> kK1K2K3 = {true, true, true};

constexpr SimModelSpecies kMonomer = {"monomer", SimDegree::kOne};
constexpr SimModelSpecies kNmer = {"n-mer", SimDegree::kNmer, 0, kK1};
constexpr SimModelSpecies kMmer = {"m-mer", SimDegree::kMmer, 0, kK2};
constexpr SimModelSpecies kApartMonomer = {"inc.monomer", SimDegree::kOne, 0, {}, true};
constexpr SimModelSpecies kApartNmer = {"inc.n-mer", SimDegree::kNmer, 0, {}, true};
constexpr SimModelSpecies kFreeA = {"A", SimDegree::kOne};
constexpr SimModelSpecies kFreeB = {"B", SimDegree::kNone, 1};
constexpr SimModelSpecies kAB = {"AB", SimDegree::kOne, 1, kK1};
constexpr SimModelSpecies kAB2 = {"AB2", SimDegree::kOne, 2, kK1K2};
constexpr SimModelSpecies kAB3 = {"AB3", SimDegree::kOne, 3, kK1K2K3};
constexpr SimModelSpecies kAn = {"An", SimDegree::kNmer, 0, kK1};
constexpr SimModelSpecies kAnB = {"AnB", SimDegree::kNmer, 1, kK1K2};

constexpr std::array kNmerSpecies = {kMonomer, kNmer};
constexpr std::array kNmerMmerSpecies = {kMonomer, kNmer, kMmer};
constexpr std::array kApartMonomerSpecies = {kMonomer, kNmer, kApartMonomer};
constexpr std::array kApartNmerSpecies = {kMonomer, kNmer, kApartNmer};
constexpr std::array kABSpecies = {kFreeA, kFreeB, kAB};
constexpr std::array kAB2Species = {kFreeA, kFreeB, kAB, kAB2};
constexpr std::array kAB3Species = {kFreeA, kFreeB, kAB, kAB2, kAB3};
constexpr std::array kAnBSpecies = {kFreeA, kFreeB, kAn, kAnB};

constexpr std::array<SimModel, kSimModels> kModels = {{
    {.caption = "Ideal", .run = SimIdeal},
    {.caption = "Nonideal", .run = SimNonideal, .boxes = Bit(SimBox::kNonId)},
    {.caption = "Mon-Nmer", .run = SimNmer, .boxes = kNmerBoxes, .species = kNmerSpecies},
    {.caption = "Mon-Nmer-Mmer",
     .run = SimNmerMmer,
     .boxes = kNmerMmerBoxes,
     .species = kNmerMmerSpecies},
    {.caption = "Inc.Mon.- Mon.-Nmer",
     .run = SimIncompetent,
     .boxes = kIncompetentBoxes,
     .species = kApartMonomerSpecies},
    {.caption = "Mon.- Nmer - Inc.Nmer",
     .run = SimIncompetent,
     .boxes = kIncompetentBoxes,
     .species = kApartNmerSpecies},
    {.caption = "A+B<>AB",
     .run = SimTwoComponent,
     .boxes = kABBoxes,
     .species = kABSpecies,
     .secondComponent = true,
     .loads = FitCloadCs},
    {.caption = "A+B<>AB+B<>AB2",
     .run = SimTwoComponent,
     .boxes = kAB2Boxes,
     .species = kAB2Species,
     .secondComponent = true,
     .loads = FitCloadCs2,
     .k2ReplacesK1 = true},
    {.caption = "A+B<>AB+B<>AB2+B<>AB3",
     .run = SimTwoComponent,
     .boxes = kAB3Boxes,
     .species = kAB3Species,
     .secondComponent = true,
     .loads = FitCloadCs3},
    {.caption = "Isodesmic Association",
     .run = SimIsoD,
     .boxes = Bit(SimBox::kLnK1),
     .constants = {{{"Ki", "Kisodesmic"}, {"K2", "K2"}, {"K3", "K3"}}}},
    {.caption = "nA<>An+B<>AnB",
     .run = SimTwoComponent,
     .boxes = kAnBBoxes,
     .species = kAnBSpecies,
     .secondComponent = true,
     .loads = FitCloadCs4,
     .constants = {{{"Ks", "Kself-assoc."}, {"Kh", "Khetero-assoc."}, {"K3", "K3"}}}},
}};

// What the K of a box stands for in a model, where it is one.
std::optional<SimConstant> ConstantOf(SimBox box, int model) {
  const std::array<SimConstant, 3>& constants = SimModelOf(model).constants;
  if (box == SimBox::kLnK1) return constants[0];
  if (box == SimBox::kLnK2) return constants[1];
  if (box == SimBox::kLnK3) return constants[2];
  return std::nullopt;
}

}  // namespace

const SimModel& SimModelOf(int model) {
  return kModels.at(static_cast<std::size_t>(model));
}

int SimModelIndexOf(std::string_view caption) {
  for (int model = 0; model < kSimModels; ++model) {
    if (SimModelOf(model).caption == caption) return model;
  }
  return -1;
}

bool UsesBox(int model, SimBox box) {
  return ((kAllModels | SimModelOf(model).boxes) & Bit(box)) != 0;
}

std::string LabelOf(SimBox box, int model, KDisplay display) {
  const SimBoxInfo& info = InfoOf(box);
  if (const std::optional<SimConstant> constant = ConstantOf(box, model)) {
    return KLabel(constant->label, display);
  }
  const bool ofA = SimModelOf(model).secondComponent && !info.labelOfA.empty();
  return std::string(ofA ? info.labelOfA : info.label);
}

std::string ToolTipOf(SimBox box, int model, KDisplay display) {
  constexpr std::array<std::string_view, 3> kPrefix = {"natural log of ", "Base 10 log of ", ""};
  if (const std::optional<SimConstant> constant = ConstantOf(box, model)) {
    return std::string(kPrefix[static_cast<std::size_t>(display)]).append(constant->toolTip);
  }
  return std::string(InfoOf(box).toolTip);
}

}  // namespace quorvane
