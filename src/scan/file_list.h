// The scan files of a folder, by kind.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "scan/dataset_names.h"

namespace quorvane {

// Whether a file of that name (no folder) is listed for the kind, without regard to case:
// *.IP* and *.RA*, *.DAT, *.FI*, *.EL*.
bool IsNameOfKind(const std::string& fileName, FileKind kind);

// The kind that the extension of a file stands for, without regard to case: .IP* and .RA*, .DAT,
// .FI* and .FL*, .EL*; nothing for any other.
std::optional<FileKind> KindOfExtension(const std::filesystem::path& file);

// The files in `folder`, not below it, that bear such an extension, `folder` in front, in rising
// order of their names. Throws FileFault if the folder cannot be read.
std::vector<std::filesystem::path> ScanFilesIn(const std::filesystem::path& folder);

// Names of the files of the kind in `folder`, UTF-8, in rising order by plain comparison of
// characters; without a kind of all files but hidden ones. Throws FileFault if the folder cannot be
// read.
std::vector<std::string> ListScanFiles(const std::filesystem::path& folder,
                                       std::optional<FileKind> kind);

}  // namespace quorvane
