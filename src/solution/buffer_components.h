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
  std::vector<std::string> otherNames;  // "NaCl": short names, and the formula if it has no other
  double greatest = 0.0;                // mol/l
  std::array<double, 6> increments{};   // a to f of the table, at 20 deg C
  std::optional<double> molarMass;      // g/mol, without water of crystallisation
  std::optional<double> liquidDensity;  // g/ml of the pure liquid at 20 deg C
  bool hydration = false;               // much of it gives a protein another vbar
  bool detergent = false;
  std::string setsPh;    // what mostly sets the pH of a buffer of it; empty for most
  std::string unusable;  // why the row is not used; empty for most
};

// All, by name.
const std::vector<BufferComponent>& BufferComponents();

// Those with `text` in one of their names, those first that are called so and then those whose name
// begins so. In this and the next function capital and small letters,
// "ph" and "f" of sulphates, blanks and signs make no difference: "tris hcl" is "Tris-HCl".
std::vector<const BufferComponent*> ComponentsLike(std::string_view text);

// The component of that name or other name.
// Throws SolutionFault, with the nearest names or what to take in its place, if there is none.
const BufferComponent& FindComponent(std::string_view name);

}  // namespace quorvane
