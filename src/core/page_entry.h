// What the entry boxes of the parameter page have in common.
#pragma once

#include <string>
#include <string_view>

#include "base/text.h"

inline constexpr const char* kEntryErrorTitle = "Parameter Entry Error";
inline constexpr const char* kIllegalValue = "Illegal Value Entered";

// Why a text was not stored, as the message says it; empty if it was stored.
using Refusal = std::string;
