#include "core/page/all_rows.h"

#include "core/page/row_choices.h"

namespace quorvane {

namespace {

bool IsOwn(const RowValue& value, const FitSetup& setup, int row) {
  if (&value == &row::kRefConc) return OwnRefConcsOf(setup, row).a;
  if (&value == &row::kRefConc2) return OwnRefConcsOf(setup, row).b;
  return true;
}

bool IsOwn(const RowCheck& check, const FitSetup& setup, int row) {
  if (check.states == &FitSetup::chkRefC) return OwnRefConcsOf(setup, row).a;
  if (check.states == &FitSetup::chkRefC2) return OwnRefConcsOf(setup, row).b;
  return true;
}

}  // namespace

Refusal SetInAllRows(const RowValue& value, QuorvaneModule& module, double number) {
  if (Refusal refusal = RefusalOfValue(value, number)) return refusal;
  for (int row = 0; row < module.Setup.NumFitSets; ++row) {
    if (!IsOwn(value, module.Setup, row)) continue;
    static_cast<void>(SetValue(value, DatasetOfRow(module, row), number));  // was asked before
  }
  return {};
}

Refusal EnterInAllRows(const RowValue& value, QuorvaneModule& module, std::string_view text) {
  const std::optional<double> entered = ParseNumeric(text);
  return entered ? SetInAllRows(value, module, *entered) : Refusal{kIllegalValue};
}

void CheckInAllRows(const RowCheck& check, FitSetup& setup, bool checked) {
  for (int row = 0; row < setup.NumFitSets; ++row) {
    if (IsOwn(check, setup, row)) SetCheck(check, setup, row, checked);
  }
}

std::optional<std::string> TextOfAllRows(const RowValue& value, QuorvaneModule& module) {
  std::optional<std::string> shown;
  for (int row = 0; row < module.Setup.NumFitSets; ++row) {
    if (!IsOwn(value, module.Setup, row)) continue;
    std::string text = TextOf(value, DatasetOfRow(module, row));
    if (shown && *shown != text) return std::nullopt;
    shown = std::move(text);
  }
  return shown;
}

CheckState StateOfAllRows(const RowCheck& check, const FitSetup& setup) {
  std::optional<CheckState> shown;
  for (int row = 0; row < setup.NumFitSets; ++row) {
    if (!IsOwn(check, setup, row)) continue;
    const CheckState state = (setup.*check.states)[static_cast<std::size_t>(row)];
    if (shown && *shown != state) return CheckState::kGrey;
    shown = state;
  }
  return shown.value_or(CheckState::kGrey);
}

}  // namespace quorvane
