#include "core/page/dataset_rules.h"

#include "scan/blank.h"

namespace quorvane {

Refusal RefusalOfFitting(const Dataset& dataset) {
  return IsBlank(dataset) ? Refusal{"a blank is never fitted"} : Refusal{};
}

Refusal ChooseForFit(DatasetStore& store, int position, bool use) {
  const auto place = static_cast<std::size_t>(position);
  if (Refusal refusal = RefusalOfFitting(store.Datasets.at(place)); refusal && use) return refusal;
  store.UseData[place] = use;
  return {};
}

Refusal RefusalOfEditing(const Dataset& dataset) {
  return IsBlank(dataset) ? Refusal{"a blank cannot be edited"} : Refusal{};
}

Refusal OpenForEditing(Dataset& dataset) {
  Refusal refusal = RefusalOfEditing(dataset);
  if (!refusal) dataset.Edited = 1.0;
  return refusal;
}

Refusal RefusalOfBlanking(const Dataset& dataset) {
  if (IsBlank(dataset)) return Refusal{"a blank cannot be blanked"};
  return IsBlanked(dataset) ? Refusal{"a blank was subtracted already"} : Refusal{};
}

Refusal TakeOffBlank(DatasetStore& store, int position, int blank, Host& host) {
  const Dataset& sample = store.Datasets.at(static_cast<std::size_t>(position));
  if (!IsBlank(store.Datasets.at(static_cast<std::size_t>(blank)))) {
    return Refusal{"that dataset is no blank"};
  }
  if (Refusal refusal = RefusalOfBlanking(sample)) return refusal;
  BlankDataset(store, position, blank, host);
  return {};
}

}  // namespace quorvane
