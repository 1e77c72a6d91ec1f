// The values of a row of the parameter page, which belong to one dataset, and the temperature:
// shown texts, entry, copying to the rows below. Rows count from 0, as positions in the fit do.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "core/page/page_entry.h"
#include "core/program_state.h"

namespace quorvane {

enum class RowTest { kAny, kAboveZero, kNotNegative };

struct RowValue {
  const char* control;  // "txtOffset"
  double Dataset::*field;
  RowTest test;
  bool spreads;  // whether Ctrl and a click copy it to the rows below
};

inline constexpr std::array<RowValue, 9> RowValues = {{
    {"txtOffset", &Dataset::Offset, RowTest::kAny, true},
    {"txtRefConc", &Dataset::RefConc, RowTest::kAboveZero, true},
    {"txtRefConc2", &Dataset::RefConc2, RowTest::kAboveZero, true},
    {"txtExtCoeff", &Dataset::ExtCoeff, RowTest::kAny, true},
    {"txtExtCoeff2", &Dataset::ExtCoeff2, RowTest::kAny, true},
    {"txtALoad", &Dataset::ALoad, RowTest::kNotNegative, true},
    {"txtBLoad", &Dataset::BLoad, RowTest::kNotNegative, true},
    {"txtRmen", &Dataset::Rmen, RowTest::kAny, false},
    {"txtRbase", &Dataset::Rbase, RowTest::kAny, false},
}};

// Whether every row of the page still has its dataset: not after datasets were unloaded.
bool RowsAreCurrent(const QuorvaneModule& module);

// The dataset of a row. Throws SubscriptFault if it was unloaded.
Dataset& DatasetOfRow(QuorvaneModule& module, int row);

std::string TextOf(const RowValue& value, const Dataset& dataset);
Refusal Enter(const RowValue& value, Dataset& dataset, std::string_view text);

// The numbers that the box takes.
std::string TakenBy(const RowValue& value);

// Rotor speed, rpm: a whole number above 0 once it is rounded.
std::string SpeedText(const Dataset& dataset);
Refusal EnterSpeed(Dataset& dataset, std::string_view text);

// Name of the dataset, cut to "..." and its last 14 characters if it has more than 17.
std::string FitDataText(const Dataset& dataset);

// Copies the value, or the state of a check box, of `row` to all rows below it.
void CopyToRowsBelow(const RowValue& value, QuorvaneModule& module, int row);
void CopyToRowsBelow(std::vector<CheckState>& states, int row);

// Temperature of the fit, deg C.
std::string TemperatureText(const FitSetup& setup);
Refusal EnterTemperature(FitSetup& setup, std::string_view text);

}  // namespace quorvane
