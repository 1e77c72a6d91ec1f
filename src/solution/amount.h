// Amounts of components, in the units in which recipes tell them.
#pragma once

#include <string>
#include <string_view>

#include "solution/buffer_components.h"

namespace quorvane {

enum class AmountUnit {
  kMolar,           // mol/l
  kGramsPerLitre,   // g/l, by the formula of the component: without water of crystallisation
  kMassInVolume,    // % w/v, g in 100 ml, by the same formula
  kVolumeInVolume,  // % v/v, ml of the pure liquid at 20 deg C in 100 ml
};

struct BufferPart {
  const BufferComponent* component = nullptr;  // of BufferComponents()
  double molar = 0.0;                          // mol/l
  AmountUnit unit = AmountUnit::kMolar;        // in which it was told
  bool operator==(const BufferPart&) const = default;
};

// An amount of the component: "20 mM", "0.1 M", "50 uM", "10 g/l", "5 % w/v", "5 % (v/v)".
// Throws SolutionFault, naming the component, for what is no such amount, a percentage that does
// not say of what, one that the component has no molar mass or density for, and for an amount that
// is not above 0 or beyond the component's range.
BufferPart ReadAmount(const BufferComponent& component, std::string_view text);

// The amount in the unit in which it was told: "20 mM", "1.5 M", "5 % w/v".
std::string AmountText(const BufferPart& part);

// "6.741 M", "721 mM": the greatest concentration.
std::string RangeText(const BufferComponent& component);

// The length of the amount at the front of `text`, its number and unit, as in "5 % w/v glycerol";
// 0 if it does not begin with a number and a blank or a unit.
std::size_t LengthOfAmount(std::string_view text);

}  // namespace quorvane
