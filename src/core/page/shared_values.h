// The values of the parameter page that all datasets of a fit share: labels, rules, shown
// texts, entry.
#pragma once

#include <string>
#include <string_view>

#include "core/page/page_entry.h"
#include "core/program_state.h"
#include "fit/model_parameters.h"

namespace quorvane {

// Whether the model of the page has the value.
bool HasValue(const FitSetup& setup, const SharedParameter& value);

// The caption of its label in the display modes of `module`.
std::string LabelOf(const SharedParameter& value, const QuorvaneModule& module);

// The text of its box. A value without a display form (a K beyond double, a weight where vbar rho
// is 1) shows the description of the fault.
std::string TextOf(const SharedParameter& value, const QuorvaneModule& module);

// Why a constrained constant cannot have that ratio to K1: it must be above 0.
Refusal RefusalOfRatio(const SharedParameter& value, double ratio);

// Stores what FitPage holds (buoyant weight, ln K), or the ratio while it is constrained. Refused
// for what is not finite, and for such a ratio.
Refusal SetShared(const SharedParameter& value, QuorvaneModule& module, double number);

// Why the value cannot be chosen for fitting: while K ratios are `constrained` those are held.
Refusal RefusalOfFitting(const SharedParameter& value, bool constrained);
Refusal SetCheck(const SharedParameter& value, FitSetup& setup, bool checked);

// Takes the text of its box. A value that could not be shown is refused too.
Refusal Enter(const SharedParameter& value, QuorvaneModule& module, std::string_view text);

// The numbers that its box takes in the display modes of `module`.
std::string TakenBy(const SharedParameter& value, const QuorvaneModule& module);

// Why the ratios of a model cannot be constrained: it has none.
Refusal RefusalOfConstraint(const Model& model);

// Takes what is stored for K2 and K3 as the ratios K2/K1 and K3/K1, held. Refused unless they are
// above 0.
Refusal ConstrainStoredRatios(QuorvaneModule& module);

// Switches K2 and K3 to the ratios K2/K1 and K3/K1 of what the boxes show, held, and back. Both are
// refused with nothing changed if a value is beyond double.
Refusal ConstrainShownRatios(QuorvaneModule& module);
Refusal ReleaseShownRatios(QuorvaneModule& module);

}  // namespace quorvane
