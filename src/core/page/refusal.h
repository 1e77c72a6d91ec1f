// What the procedures that keep the rules of a session hand back.
#pragma once

#include <string>

namespace quorvane {

// Why a rule refused what was asked for, which then changed nothing. True if it did:
//   if (const Refusal refusal = SetSpeed(dataset, rpm)) Tell(refusal.text);
// A procedure RefusalOf... only asks, for a front that must know before it can act.
struct [[nodiscard]] Refusal {
  std::string text = {};  // as a message box says it; empty if nothing was refused
  std::string need = {};  // what would have been taken, where the text does not say it

  explicit operator bool() const { return !text.empty(); }
};

// Both in one line, for a front that has no room beside a box.
inline std::string LineOf(const Refusal& refusal) {
  return refusal.need.empty() ? refusal.text : refusal.text + ": " + refusal.need;
}

inline constexpr const char* kIllegalValue = "Illegal Value Entered";

}  // namespace quorvane
