#include "core/page/row_values.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/arithmetic.h"
#include "base/number_format.h"
#include "core/page/display_form.h"

namespace quorvane {

namespace {

constexpr std::size_t kLongestName = 17;
constexpr std::size_t kNameEnd = 14;

Refusal NotAboveZero() {
  return Refusal{kIllegalValue, "it must be greater than 0"};
}

// The whole number of rpm next to it. Throws ArithmeticFault for one that no dataset can hold.
std::int32_t WholeSpeed(double rpm) {
  return static_cast<std::int32_t>(RoundHalfEven(rpm, 0, std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

bool RowsAreCurrent(const QuorvaneModule& module) {
  return std::all_of(module.Setup.FitSetList.begin(), module.Setup.FitSetList.end(),
                     [&](std::int16_t place) { return place < module.Store.NumDatasets(); });
}

Dataset& DatasetOfRow(QuorvaneModule& module, int row) {
  const auto& list = module.Setup.FitSetList;
  const auto position = static_cast<std::size_t>(row);
  if (position >= list.size() || list[position] >= module.Store.NumDatasets()) {
    throw SubscriptFault();
  }
  return module.Store.Datasets[static_cast<std::size_t>(list[position])];
}

std::optional<int> RowOfDataset(const FitSetup& setup, int dataset) {
  const auto& list = setup.FitSetList;
  const auto found = std::find(list.begin(), list.end(), dataset);
  if (found == list.end()) return std::nullopt;
  return static_cast<int>(found - list.begin());
}

Refusal RefusalOfValue(const RowValue& value, double number) {
  if (!std::isfinite(number)) return {kIllegalValue};
  if (value.test == RowTest::kAboveZero && !(number > 0.0)) return NotAboveZero();
  if (value.test == RowTest::kNotNegative && number < 0.0) {
    return Refusal{kIllegalValue, "it must not be negative"};
  }
  return {};
}

Refusal SetValue(const RowValue& value, Dataset& dataset, double number) {
  Refusal refusal = RefusalOfValue(value, number);
  if (!refusal) dataset.*value.field = number;
  return refusal;
}

void SetCheck(const RowCheck& check, FitSetup& setup, int row, bool checked) {
  std::vector<CheckState>& states = setup.*check.states;
  const auto place = static_cast<std::size_t>(row);
  if (place >= states.size()) throw SubscriptFault();
  states[place] = checked ? CheckState::kChecked : CheckState::kUnchecked;
}

std::string TextOf(const RowValue& value, const Dataset& dataset) {
  return ParamText(dataset.*value.field);
}

Refusal Enter(const RowValue& value, Dataset& dataset, std::string_view text) {
  const std::optional<double> entered = ParseNumeric(text);
  return entered ? SetValue(value, dataset, *entered) : Refusal{kIllegalValue};
}

std::string TakenBy(const RowValue& value) {
  switch (value.test) {
    case RowTest::kAboveZero:
      return kTakesAboveZero;
    case RowTest::kNotNegative:
      return "0 or a number above it";
    case RowTest::kAny:
      break;
  }
  return kTakesAnyNumber;
}

Refusal RefusalOfSpeed(double rpm) {
  if (!(rpm > 0.0)) return NotAboveZero();
  try {
    return WholeSpeed(rpm) == 0 ? NotAboveZero() : Refusal{};
  } catch (const ArithmeticFault& fault) {
    return {fault.what()};
  }
}

Refusal SetSpeed(Dataset& dataset, double rpm) {
  Refusal refusal = RefusalOfSpeed(rpm);
  if (!refusal) dataset.Speed = WholeSpeed(rpm);
  return refusal;
}

std::string SpeedText(const Dataset& dataset) {
  return FormatNumber(dataset.Speed, "#####");
}

Refusal EnterSpeed(Dataset& dataset, std::string_view text) {
  const std::optional<double> entered = ParseNumeric(text);
  return entered ? SetSpeed(dataset, *entered) : Refusal{kIllegalValue};
}

std::string FitDataText(const Dataset& dataset) {
  const std::string_view name = Trim(dataset.FileName.View());
  if (name.size() <= kLongestName) return Cp1252ToUtf8(name);
  return "..." + Cp1252ToUtf8(name.substr(name.size() - kNameEnd));
}

void CopyToRowsBelow(const RowValue& value, QuorvaneModule& module, int row) {
  const double source = DatasetOfRow(module, row).*value.field;
  for (int below = row + 1; below < module.Setup.NumFitSets; ++below) {
    DatasetOfRow(module, below).*value.field = source;
  }
}

void CopyToRowsBelow(std::vector<CheckState>& states, int row) {
  const auto source = states.begin() + row;
  std::fill(source, states.end(), *source);
}

Refusal SetTemperature(FitSetup& setup, double degC) {
  if (!std::isfinite(degC)) return {kIllegalValue};
  setup.DegC = degC;
  return {};
}

std::string TemperatureText(const FitSetup& setup) {
  return FormatNumber(setup.DegC, "##.0##");
}

Refusal EnterTemperature(FitSetup& setup, std::string_view text) {
  const std::optional<double> entered = ParseNumeric(text);
  return entered ? SetTemperature(setup, *entered) : Refusal{kIllegalValue};
}

}  // namespace quorvane
