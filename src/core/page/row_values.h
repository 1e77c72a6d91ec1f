// The values of a row of the parameter page, which belong to one dataset, and the temperature:
// rules,
// shown texts, entry, copying to the rows below. Rows count from 0, as positions in the fit do.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/page/page_entry.h"
#include "core/program_state.h"

namespace quorvane {

enum class RowTest { kAny, kAboveZero, kNotNegative };

struct RowValue {
  const char* name;     // in a job
  const char* control;  // "txtOffset"
  double Dataset::*field;
  RowTest test;
  bool spreads;  // whether Ctrl and a click copy it to the rows below
};

inline constexpr std::array<RowValue, 9> RowValues = {{
    {"baseline", "txtOffset", &Dataset::Offset, RowTest::kAny, true},
    {"ref_conc", "txtRefConc", &Dataset::RefConc, RowTest::kAboveZero, true},
    {"ref_conc_b", "txtRefConc2", &Dataset::RefConc2, RowTest::kAboveZero, true},
    {"ext_coeff", "txtExtCoeff", &Dataset::ExtCoeff, RowTest::kAny, true},
    {"ext_coeff_b", "txtExtCoeff2", &Dataset::ExtCoeff2, RowTest::kAny, true},
    {"load_a", "txtALoad", &Dataset::ALoad, RowTest::kNotNegative, true},
    {"load_b", "txtBLoad", &Dataset::BLoad, RowTest::kNotNegative, true},
    {"meniscus", "txtRmen", &Dataset::Rmen, RowTest::kAny, false},
    {"base", "txtRbase", &Dataset::Rbase, RowTest::kAny, false},
}};

namespace row {

inline constexpr const RowValue& kRefConc = RowValues[1];
inline constexpr const RowValue& kRefConc2 = RowValues[2];
inline constexpr const RowValue& kExtCoeff = RowValues[3];
inline constexpr const RowValue& kExtCoeff2 = RowValues[4];
inline constexpr const RowValue& kRmen = RowValues[7];
inline constexpr const RowValue& kRbase = RowValues[8];

}  // namespace row

// What of a row is fitted, a check box each.
struct RowCheck {
  const char* name;  // in a job
  std::vector<CheckState> FitSetup::*states;
};

inline constexpr std::array<RowCheck, 3> RowChecks = {{{"fit_baseline", &FitSetup::chkOffset},
                                                       {"fit_ref_conc", &FitSetup::chkRefC},
                                                       {"fit_ref_conc_b", &FitSetup::chkRefC2}}};

// Whether every row of the page still has its dataset: not after datasets were unloaded.
bool RowsAreCurrent(const QuorvaneModule& module);

// The dataset of a row. Throws SubscriptFault if it was unloaded.
Dataset& DatasetOfRow(QuorvaneModule& module, int row);

// The row of the dataset at position `dataset` (from 0) of the store; none if it is not fitted.
std::optional<int> RowOfDataset(const FitSetup& setup, int dataset);

// Why the value cannot be `number`: its test; no value takes what is not finite.
Refusal RefusalOfValue(const RowValue& value, double number);
Refusal SetValue(const RowValue& value, Dataset& dataset, double number);

// Throws SubscriptFault for a row that the page does not have.
void SetCheck(const RowCheck& check, FitSetup& setup, int row, bool checked);

std::string TextOf(const RowValue& value, const Dataset& dataset);
Refusal Enter(const RowValue& value, Dataset& dataset, std::string_view text);

// The numbers that the box takes.
std::string TakenBy(const RowValue& value);

// Rotor speed, rpm: a whole number above 0 once it is rounded, since without a rotation there is no
// gradient that could be fitted.
Refusal RefusalOfSpeed(double rpm);
Refusal SetSpeed(Dataset& dataset, double rpm);
std::string SpeedText(const Dataset& dataset);
Refusal EnterSpeed(Dataset& dataset, std::string_view text);

// Name of the dataset, cut to "..." and its last 14 characters if it has more than 17.
std::string FitDataText(const Dataset& dataset);

// Copies the value, or the state of a check box, of `row` to all rows below it.
void CopyToRowsBelow(const RowValue& value, QuorvaneModule& module, int row);
void CopyToRowsBelow(std::vector<CheckState>& states, int row);

// Temperature of the fit, deg C: any finite number.
Refusal SetTemperature(FitSetup& setup, double degC);
std::string TemperatureText(const FitSetup& setup);
Refusal EnterTemperature(FitSetup& setup, std::string_view text);

}  // namespace quorvane
