// Names of the scan files that delimited texts become.
#pragma once

#include <filesystem>
#include <vector>

#include "scan/scan_writer.h"

namespace quorvane {

// A text, and what its scan file will say.
struct NamedText {
  std::filesystem::path source;
  ScanHeader header;
};

// A file name for each text, by its kind and cell: "data.RA1" of data.csv. Of two alike, and where
// a text itself lies in `folder` under that name, the later one is numbered: "data-2.RA1".
std::vector<std::filesystem::path> ScanNamesFor(const std::vector<NamedText>& texts,
                                                const std::filesystem::path& folder);

}  // namespace quorvane
