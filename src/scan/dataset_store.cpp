#include "scan/dataset_store.h"

#include "base/files.h"
#include "base/host.h"
#include "base/number_format.h"
#include "base/text.h"

namespace quorvane {

std::string DatasetTitle(const DatasetStore& store, int position) {
  return "Dataset #" + FormatNumber(position + 1, "##") +
         ":: " + NameOf(store.Datasets[static_cast<std::size_t>(position)]);
}

void RemoveDataset(DatasetStore& store, int position, Host& host) {
  const std::string removed = "Removed " + DatasetTitle(store, position);
  store.Datasets.erase(store.Datasets.begin() + position);
  store.UseData.erase(store.UseData.begin() + position);
  store.Edits.Forget(position);
  if (store.Datasets.empty()) {
    host.PrintIt(removed);
    host.PrintIt("\r\nNo datasets are currently loaded.");
    return;
  }
  host.PrintIt(removed + "\r\n");
  host.PrintIt("Dataset(s) currently loaded ::");
  for (int k = 0; k < store.NumDatasets(); ++k) host.PrintIt(DatasetTitle(store, k));
  host.PrintIt(" ");
}

void RemoveAllDatasets(DatasetStore& store, Host& host) {
  host.PrintIt("\r\n*** Removed All Datasets. ***\r\n");
  store.Datasets.clear();
  store.UseData.clear();
  store.Edits.Clear();
}

bool RenameDataset(Dataset& dataset, const std::string& text, Host& host) {
  const std::string name = Utf8ToCp1252(Trim(text));
  if (name.empty()) {
    host.ShowMessage("Filename Error", "Zero-length Filename Entered!", MessageIcon::kNone);
    return false;
  }
  if (!ValidFileName(name)) {
    host.ShowMessage("Filename Error",
                     "Illegal Filename!  The following characters can not be used\r\n"
                     "in filenames  \\  /  :  *  ?  \"  <  >  |",
                     MessageIcon::kNone);
    return false;
  }
  dataset.FileName.SetBytes(name);
  return true;
}

bool RenameDataset(DatasetStore& store, int position, const std::string& text, Host& host) {
  const auto place = static_cast<std::size_t>(position);
  const bool wasBlank = IsBlank(store.Datasets[place]);
  if (!RenameDataset(store.Datasets[place], text, host)) return false;
  const bool isBlank = IsBlank(store.Datasets[place]);
  if (isBlank != wasBlank) store.UseData[place] = !isBlank;
  return true;
}

void ChooseFrom(DatasetStore& store, int first, bool use) {
  for (auto k = static_cast<std::size_t>(first); k < store.Datasets.size(); ++k) {
    if (!IsBlank(store.Datasets[k])) store.UseData[k] = use;
  }
}

}  // namespace quorvane
