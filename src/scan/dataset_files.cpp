#include "scan/dataset_files.h"

#include <set>

#include "base/files.h"
#include "base/host.h"
#include "base/number_format.h"
#include "base/text.h"
#include "scan/scan_writer.h"

namespace quorvane {

bool NamesCanBeUsed(const DatasetStore& store, Host& host) {
  std::set<std::string> seen;
  for (const Dataset& dataset : store.Datasets) {
    const std::string name = NameOf(dataset);
    if (!seen.insert(ToLower(name)).second) {
      host.ShowMessage("Duplicate File Names!",
                       "There are duplicate names in the loaded data files!\r\nPlease rename "
                       "before attempting to save data files.",
                       MessageIcon::kExclamation);
      return false;
    }
    if (!ValidFileName(name) || name == "." || name == "..") {
      host.ShowMessage("Filename Error",
                       "Illegal Filename!  The following characters can not be used\r\n"
                       "in filenames  \\  /  :  *  ?  \"  <  >  |",
                       MessageIcon::kExclamation);
      return false;
    }
  }
  return true;
}

std::string DatasetText(const Dataset& dataset, SavedSignal signal) {
  const double baseline = signal == SavedSignal::kBaselineSubtracted ? dataset.Offset : 0.0;
  std::string text(Trim(dataset.Comment1.View()));
  text += kLineBreak;
  text += Trim(dataset.Comment2.View());
  text += kLineBreak;
  for (std::size_t k = 0; k < static_cast<std::size_t>(dataset.NumPoints); ++k) {
    text += FormatNumber(dataset.R[k], "0.0000 ") + "   ";
    text += FormatNumber(dataset.C[k] - baseline, kSignalPattern);
    text += FormatNumber(dataset.Err[k], kErrorPattern);
    text += kLineBreak;
  }
  return text;
}

bool SaveLoadedData(const DatasetStore& store, const std::filesystem::path& folder,
                    SavedSignal signal, ExistingFiles existing, Host& host) {
  if (!NamesCanBeUsed(store, host)) return false;
  for (const Dataset& dataset : store.Datasets) {
    const std::filesystem::path path = folder / PathFromText(NameOf(dataset));
    if (existing == ExistingFiles::kAsk && FileExists(path) &&
        !host.AskYesNo("", PathText(path) + " already exists!  Overwrite?")) {
      continue;
    }
    WriteWholeFile(path, DatasetText(dataset, signal));
  }
  return true;
}

}  // namespace quorvane
