// The forms in which association constants are shown and typed.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quorvane {

// Numbered as the settings keep it.
enum class KDisplay : std::int16_t { kLn = 0, kLog10 = 1, kPlain = 2 };

// `name` ("K1") as the label of a box: "LnK1", "LogK1" or "K1".
inline std::string KLabel(std::string_view name, KDisplay display) {
  const char* prefix = display == KDisplay::kPlain   ? ""
                       : display == KDisplay::kLog10 ? "Log"
                                                     : "Ln";
  return prefix + std::string(name);
}

}  // namespace quorvane
