// The physical constants of an experiment and the bounds within which they are accepted.
#pragma once

#include <string>

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

// Whether `value` lies within the bounds: vbar above 0.25, density above 0.5, MC tolerance above 0
// and up to 10, critical coefficient between 0 and 1.
bool InRange(Constant constant, double value);

double ValueOf(const QuorvaneModule& module, Constant constant);

// Takes a value that is in range; vbar and density for this experiment and for new ones.
void SetConstant(QuorvaneModule& module, Constant constant, double value);

}  // namespace quorvane
