// The components of buffers whose densities are known.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

// A row of data/buffers.csv with what data/components.csv says of it; data/README.md names the
// sources.
struct BufferComponent {
  std::string name;                     // "Sodium chloride"
  std::vector<std::string> shortNames;  // "NaCl"
  std::string unit;                     // "mM", or of the number itself: "%", "mg/ml"
  double greatest = 0.0;                // M, or in the unit if that is another
  std::array<double, 6> increments{};   // a to f of the table, at 20 deg C
  std::optional<double> hydration;      // M, above which vbar is another one
  bool detergent = false;
  std::string unusable;  // why the row is not used; empty for most
};

// All, by name.
const std::vector<BufferComponent>& BufferComponents();

// Those with `text` in one of their names, capital or small.
std::vector<const BufferComponent*> ComponentsLike(std::string_view text);

// The component of that name or short name, capital or small.
// Throws SolutionFault, with the nearest names, if there is none.
const BufferComponent& FindComponent(std::string_view name);

// "6.741 M", "721 mM": the greatest concentration.
std::string RangeText(const BufferComponent& component);

// An amount of a component as it is shown: "20 mM", "1.5 M", "5 %".
std::string AmountText(const BufferComponent& component, double amount);

}  // namespace quorvane
