#include "core/page/dataset_rules.h"

#include "base/arithmetic.h"
#include "scan/blank.h"

namespace quorvane {

namespace {

const Dataset& DatasetAt(const DatasetStore& store, int position) {
  const auto place = static_cast<std::size_t>(position);
  if (place >= store.Datasets.size()) throw SubscriptFault();
  return store.Datasets[place];
}

}  // namespace

Refusal RefusalOfFitting(const Dataset& dataset) {
  return IsBlank(dataset) ? Refusal{"a blank is never fitted"} : Refusal{};
}

Refusal ChooseForFit(DatasetStore& store, int position, bool use) {
  Refusal refusal = RefusalOfFitting(DatasetAt(store, position));
  if (refusal && use) return refusal;
  store.UseData[static_cast<std::size_t>(position)] = use;
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
  if (!IsBlank(DatasetAt(store, blank))) return Refusal{"that dataset is no blank"};
  if (Refusal refusal = RefusalOfBlanking(DatasetAt(store, position))) return refusal;
  BlankDataset(store, position, blank, host);
  return {};
}

}  // namespace quorvane
