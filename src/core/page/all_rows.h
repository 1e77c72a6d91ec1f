// One entry for all rows of the parameter page. A row whose own entry would not be open to it is
// passed over: a linked one has the reference concentrations of its target.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/page/row_values.h"

namespace quorvane {

// The value of every row at once. Refused, with no row changed, if one row would refuse it.
Refusal SetInAllRows(const RowValue& value, QuorvaneModule& module, double number);
Refusal EnterInAllRows(const RowValue& value, QuorvaneModule& module, std::string_view text);

void CheckInAllRows(const RowCheck& check, FitSetup& setup, bool checked);

// The text that all rows show, none if they differ.
std::optional<std::string> TextOfAllRows(const RowValue& value, QuorvaneModule& module);

// What all rows show, grey if they differ.
CheckState StateOfAllRows(const RowCheck& check, const FitSetup& setup);

}  // namespace quorvane
