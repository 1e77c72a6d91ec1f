// Loaded data written back as text files, one a dataset.
#pragma once

#include <filesystem>

#include "scan/dataset_store.h"

namespace quorvane {

enum class SavedSignal { kAsLoaded, kBaselineSubtracted };
enum class ExistingFiles { kAsk, kReplace };

// The text of one dataset: both comment lines, then a line a point with radius, signal and
// standard deviation in fixed columns, lines ended by CR LF; one byte a character.
std::string DatasetText(const Dataset& dataset, SavedSignal signal);

// Whether every dataset has a name of its own that a file can bear; otherwise a message says why
// not.
bool NamesCanBeUsed(const DatasetStore& store, Host& host);

// Writes every dataset to a file of its name in `folder`, each whole or not at all. Duplicate names
// and names that no file can bear are refused with a message before anything is written.
// True if all files were written or skipped by the user's word; throws FileFault.
bool SaveLoadedData(const DatasetStore& store, const std::filesystem::path& folder,
                    SavedSignal signal, ExistingFiles existing, Host& host);

}  // namespace quorvane
