// What the boxes of the parameter page, in which values are typed, have in common.
#pragma once

#include "base/text.h"
#include "core/page/refusal.h"

namespace quorvane {

inline constexpr const char* kEntryErrorTitle = "Parameter Entry Error";

// What an entry box takes, as a remark on a refused text says it.
inline constexpr const char* kTakesAnyNumber = "any number, such as 0.5 or 1.5E-6";
inline constexpr const char* kTakesAboveZero = "a number above 0";

}  // namespace quorvane
