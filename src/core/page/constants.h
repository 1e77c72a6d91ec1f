// The physical constants of an experiment and the bounds within which they are accepted.
#pragma once

#include "core/page/refusal.h"
#include "core/program_state.h"

namespace quorvane {

enum class Constant { kVbar, kVbarB, kDensity, kMCTolerance, kCriticalCCC };

// Title, prompt and number pattern of the dialog of a constant, the titles of its refusals, and
// what a remark says that it takes.
struct ConstantDialog {
  const char* title;
  const char* prompt;
  const char* pattern;
  const char* outOfRangeTitle;
  const char* notANumberTitle;
  const char* taken;  // "vbar(B) takes a number above 0.25."
};

const ConstantDialog& DialogOf(Constant constant);

// Why the constant cannot be `value`; the bounds are: vbar above 0.25, density above 0.5, MC
// tolerance above 0 and up to 10, critical coefficient between 0 and 1.
Refusal RefusalOfConstant(Constant constant, double value);

double ValueOf(const QuorvaneModule& module, Constant constant);

// Takes a value within the bounds; vbar and density for this experiment and for new ones.
Refusal SetConstant(QuorvaneModule& module, Constant constant, double value);

}  // namespace quorvane
