// The files that a fit was made from, as a report names them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "scan/dataset.h"

namespace quorvane {

struct SourceFile {
  std::string path;          // as loaded, UTF-8
  std::vector<int> numbers;  // of the datasets of the fit that came from it, from 1
  std::string state;  // its SHA-256; with " (changed since it was loaded)" if it no longer holds
                      // the data; "not found", or why it cannot be read
                      // or was not looked for
};

// The files of the datasets at the positions `fitted` (from 0), in their order, then those of the
// loaded blanks.
std::vector<SourceFile> SourceFiles(const std::vector<Dataset>& datasets,
                                    const std::vector<std::int16_t>& fitted);

// The file of cell geometries.
SourceFile CellFile(const std::filesystem::path& path);

}  // namespace quorvane
