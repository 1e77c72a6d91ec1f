// What a buffer is made of, as a text says it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "solution/amount.h"

namespace quorvane {

using BufferRecipe = std::vector<BufferPart>;  // empty: water

// "NaCl = 0.1 M, Tris = 20 mM", or as recipes are written, "20 mM Tris, 5 % v/v glycerol"; "water"
// is no component at all. Throws SolutionFault, naming the part, for an empty text, a part without
// name or amount, an unknown or unusable component or one that is named twice, and as ReadAmount.
BufferRecipe ReadBuffer(std::string_view text);

// The text that ReadBuffer gives the recipe back for.
std::string BufferText(const BufferRecipe& recipe);

}  // namespace quorvane
