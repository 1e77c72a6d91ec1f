#include "core/page/row_values.h"

#include <algorithm>
#include <limits>

#include "base/arithmetic.h"
#include "base/number_format.h"
#include "core/page/display_form.h"

namespace quorvane {

namespace {

constexpr std::size_t kLongestName = 17;
constexpr std::size_t kNameEnd = 14;

bool Passes(RowTest test, double value) {
  switch (test) {
    case RowTest::kAboveZero:
      return value > 0.0;
    case RowTest::kNotNegative:
      return value >= 0.0;
    case RowTest::kAny:
      break;
  }
  return true;
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

std::string TextOf(const RowValue& value, const Dataset& dataset) {
  return ParamText(dataset.*value.field);
}

Refusal Enter(const RowValue& value, Dataset& dataset, std::string_view text) {
  const std::optional<double> entered = ParseNumeric(text);
  if (!entered || !Passes(value.test, *entered)) return kIllegalValue;
  dataset.*value.field = *entered;
  return {};
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

std::string SpeedText(const Dataset& dataset) {
  return FormatNumber(dataset.Speed, "#####");
}

Refusal EnterSpeed(Dataset& dataset, std::string_view text) {
  const std::optional<double> entered = ParseNumeric(text);
  if (!entered || !(*entered > 0.0)) return kIllegalValue;
  try {
    const auto speed = static_cast<std::int32_t>(
        RoundHalfEven(*entered, 0, std::numeric_limits<std::int32_t>::max()));
    // Without a rotation there is no gradient that could be fitted.
    if (speed == 0) return kIllegalValue;
    dataset.Speed = speed;
  } catch (const ArithmeticFault& fault) {
    return fault.what();
  }
  return {};
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

std::string TemperatureText(const FitSetup& setup) {
  return FormatNumber(setup.DegC, "##.0##");
}

Refusal EnterTemperature(FitSetup& setup, std::string_view text) {
  const std::optional<double> entered = ParseNumeric(text);
  if (!entered) return kIllegalValue;
  setup.DegC = *entered;
  return {};
}

}  // namespace quorvane
