// A job that loads scans.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "job/load_words.h"

namespace quorvane {

// The text of a job that stands in `folder` and loads the files in their order as `words` say. A
// file in that folder or below it is named from there, any other by its whole path.
// Throws FileFault for a name that is no UTF-8: no job can hold it.
std::string ScanJobText(const std::vector<std::filesystem::path>& files, const LoadWords& words,
                        const std::filesystem::path& folder);

}  // namespace quorvane
