#include "sim/sim_inputs.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "base/arithmetic.h"
#include "base/text.h"

namespace quorvane {

namespace {

constexpr std::array<SimBox, 3> kConstantBoxes = {SimBox::kLnK1, SimBox::kLnK2, SimBox::kLnK3};

double ConstantFrom(double entry, KDisplay display) {
  double K = entry;
  CheckArithmetic([&] {
    if (display == KDisplay::kLn) K = std::exp(entry);
    if (display == KDisplay::kLog10) K = PowerOfTen(entry);
  });
  return K;
}

double ConstantIn(const SimInputs& inputs, SimBox box) {
  return ConstantFrom(NumberIn(inputs, box), inputs.kDisplay);
}

// What a degree of association is told.
struct DegreeRefusals {
  std::string_view same;
  std::string_view notWhole;
  std::string_view notWholeBesideOther;
};

// N-mer or M-mer; the two must differ where the model uses both.
std::optional<std::string_view> DegreeRefusal(const SimInputs& inputs, SimBox box,
                                              std::optional<double> value) {
  constexpr DegreeRefusals kNmer = {"N-mer must be different from M-mer.",
                                    "N-mer must be an integer => 2.",
                                    "N-mer must be an integer => 2, and N-mer <> M-mer."};
  constexpr DegreeRefusals kMmer = {"M-mer must be different from N-mer.",
                                    "M-mer must be an integer => 2.",
                                    "M-mer must be an integer => 2, and M-mer <> N-mer."};
  const bool first = box == SimBox::kN1mer;
  const SimBox other = first ? SimBox::kN2mer : SimBox::kN1mer;
  const DegreeRefusals& refusals = first ? kNmer : kMmer;
  const bool besideOther = UsesBox(inputs.model, other);
  if (!value || *value != std::trunc(*value) || !InfoOf(box).bounds.Contain(*value)) {
    return besideOther ? refusals.notWholeBesideOther : refusals.notWhole;
  }
  if (besideOther && ParseNumeric(inputs.Text(other)) == value) return refusals.same;
  return std::nullopt;
}

// Whether a radius keeps the meniscus above the base in the tube.
bool KeepsColumn(const SimInputs& inputs, SimBox box, double radius) {
  const SimBox other = box == SimBox::kRmen ? SimBox::kRbase : SimBox::kRmen;
  const std::optional<double> end = ParseNumeric(inputs.Text(other));
  return end && (box == SimBox::kRmen ? radius < *end : radius > *end);
}

// Stores the K of a K box; other boxes have none.
void StoreConstant(SimInputs& inputs, SimBox box) {
  const auto* place = std::find(kConstantBoxes.begin(), kConstantBoxes.end(), box);
  if (place == kConstantBoxes.end()) return;
  try {
    inputs.K[static_cast<std::size_t>(place - kConstantBoxes.begin())] = ConstantIn(inputs, box);
  } catch (const ArithmeticFault&) {
    // A number is a valid entry; the run that needs this K reports the overflow.
  }
}

}  // namespace

SimInputs DefaultInputs() {
  SimInputs inputs;
  for (std::size_t k = 0; k < inputs.text.size(); ++k) {
    inputs.text[k] = InfoOf(static_cast<SimBox>(k)).defaultText;
  }
  for (const SimBox box : kConstantBoxes) StoreConstant(inputs, box);
  return inputs;
}

void SetKDisplay(SimInputs& inputs, KDisplay display) {
  inputs.kDisplay = display;
  for (const SimBox box : kConstantBoxes) StoreConstant(inputs, box);
}

double NumberIn(const SimInputs& inputs, SimBox box) {
  return ParseNumeric(inputs.Text(box)).value();
}

std::optional<std::string_view> RefusalOf(const SimInputs& inputs, SimBox box,
                                          std::string_view text) {
  const std::optional<double> value = ParseNumeric(text);
  if (box == SimBox::kN1mer || box == SimBox::kN2mer) return DegreeRefusal(inputs, box, value);
  const SimBoxInfo& info = InfoOf(box);
  if (!value || !info.bounds.Contain(*value)) return info.refusal;
  const bool radius = box == SimBox::kRmen || box == SimBox::kRbase;
  if (radius && !KeepsColumn(inputs, box, *value)) return info.refusal;
  return std::nullopt;
}

std::optional<std::string_view> StoreEntry(SimInputs& inputs, SimBox box, std::string_view text) {
  const std::optional<EntryRefusal> refusal = StoreEntries(inputs, {{box, std::string(text)}});
  if (refusal) return refusal->message;
  return std::nullopt;
}

std::optional<EntryRefusal> StoreEntries(SimInputs& inputs,
                                         const std::map<SimBox, std::string>& entries) {
  SimInputs trial = inputs;
  for (const auto& [box, text] : entries) trial.Text(box) = text;
  for (const auto& [box, text] : entries) {
    if (const auto message = RefusalOf(trial, box, text)) return EntryRefusal{box, *message};
    StoreConstant(trial, box);
  }
  inputs = trial;
  return std::nullopt;
}

std::optional<EntryRefusal> FirstRefusal(const SimInputs& inputs) {
  for (int k = 0; k < kSimBoxes; ++k) {
    const auto box = static_cast<SimBox>(k);
    if (!UsesBox(inputs.model, box)) continue;
    if (const auto message = RefusalOf(inputs, box, inputs.Text(box))) {
      return EntryRefusal{box, *message};
    }
  }
  return std::nullopt;
}

void ReadConstants(SimInputs& inputs) {
  for (std::size_t k = 0; k < kConstantBoxes.size(); ++k) {
    const SimBox box = kConstantBoxes[k];
    if (!UsesBox(inputs.model, box)) continue;
    const double K = ConstantIn(inputs, box);
    const bool replacesK1 = SimModelOf(inputs.model).k2ReplacesK1 && box == SimBox::kLnK2;
    inputs.K[replacesK1 ? 0 : k] = K;
  }
}

}  // namespace quorvane
