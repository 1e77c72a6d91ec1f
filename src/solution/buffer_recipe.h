// What a buffer is made of, as a text says it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "solution/buffer_components.h"

namespace quorvane {

struct BufferPart {
  const BufferComponent* component = nullptr;  // of BufferComponents()
  double amount = 0.0;                         // M, or in the component's unit if that is another
  bool operator==(const BufferPart&) const = default;
};

using BufferRecipe = std::vector<BufferPart>;  // empty: water

// An amount of the component: "20 mM", "0.1 M", "50 uM", or a number with the component's own unit.
// Throws SolutionFault, naming the component, for what is no such amount, not above 0, or beyond
// the component's range.
BufferPart ReadAmount(const BufferComponent& component, std::string_view text);

// "NaCl = 0.1 M, Tris = 20 mM"; "water" is no component at all.
// Throws SolutionFault, naming the part, for an empty text, a part that is not NAME = AMOUNT, an
// unknown or unusable component or one that is named twice, and as ReadAmount.
BufferRecipe ReadBuffer(std::string_view text);

// The text that ReadBuffer gives the recipe back for.
std::string BufferText(const BufferRecipe& recipe);

}  // namespace quorvane
