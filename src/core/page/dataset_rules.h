// What may be done with a loaded dataset: a blank is subtracted from samples, and is neither fitted
// nor edited. Positions in the store count from 0; one that it does not have throws SubscriptFault.
#pragma once

#include "core/page/refusal.h"
#include "scan/dataset_store.h"

namespace quorvane {

class Host;

// "Fit this dataset?"
Refusal RefusalOfFitting(const Dataset& dataset);
Refusal ChooseForFit(DatasetStore& store, int position, bool use);

// Editing of points, meniscus and base. The dataset is marked as opened for it.
Refusal RefusalOfEditing(const Dataset& dataset);
Refusal OpenForEditing(Dataset& dataset);

// Whether a blank can still be subtracted from the dataset: once, from a sample.
Refusal RefusalOfBlanking(const Dataset& dataset);

// Subtracts the blank at position `blank` and logs it. Refused too if that is no blank.
Refusal TakeOffBlank(DatasetStore& store, int position, int blank, Host& host);

}  // namespace quorvane
