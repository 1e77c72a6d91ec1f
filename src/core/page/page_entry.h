// What the entry boxes of the parameter page have in common.
#pragma once

#include <string>
#include <string_view>

#include "base/text.h"

namespace quorvane {

inline constexpr const char* kEntryErrorTitle = "Parameter Entry Error";
inline constexpr const char* kIllegalValue = "Illegal Value Entered";

// What an entry box takes, as a remark on a refused text says it.
inline constexpr const char* kTakesAnyNumber = "any number, such as 0.5 or 1.5E-6";
inline constexpr const char* kTakesAboveZero = "a number above 0";

// Why a text was not stored, as the message says it; empty if it was stored.
using Refusal = std::string;

}  // namespace quorvane
