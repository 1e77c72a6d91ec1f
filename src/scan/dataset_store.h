// All loaded scans of a session.
#pragma once

#include <string>
#include <vector>

#include "scan/dataset.h"
#include "scan/edit_history.h"

namespace quorvane {

class Host;

struct DatasetStore {
  std::vector<Dataset> Datasets;  // positions from 0; the user counts from 1
  std::vector<bool> UseData;      // "Fit this dataset?", one a dataset; a blank never is
  EditHistory Edits;              // of this session; not saved
  std::string HeaderLine;         // second line of the file last selected, one byte a character

  int NumDatasets() const { return static_cast<int>(Datasets.size()); }
};

// "Dataset #3:: name", number and name of the dataset at `position` (from 0).
std::string DatasetTitle(const DatasetStore& store, int position);

// Unloads the dataset at `position` (from 0) and logs it. Later datasets move up.
void RemoveDataset(DatasetStore& store, int position, Host& host);

// Unloads all datasets and logs it.
void RemoveAllDatasets(DatasetStore& store, Host& host);

// Gives a dataset the name `text` (UTF-8), trimmed and cut to 32 characters. An empty name or one
// with an illegal character is refused with a message; then the old one stays. True if taken.
bool RenameDataset(Dataset& dataset, const std::string& text, Host& host);

// The same for the dataset at `position` (from 0). A name that makes a blank of it takes it out of
// the fit, one that makes it a sample again takes it in.
bool RenameDataset(DatasetStore& store, int position, const std::string& text, Host& host);

// "Fit this dataset?" for the datasets from `first` (from 0) to the last; blanks are passed over.
void ChooseFrom(DatasetStore& store, int first, bool use);

}  // namespace quorvane
