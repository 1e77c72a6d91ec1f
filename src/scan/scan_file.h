// Reader of scan files: fixed columns, one Dataset for each radial window.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "scan/dataset.h"
#include "scan/dataset_names.h"
#include "scan/dataset_store.h"
#include "scan/fields.h"

namespace quorvane {

class Host;

// From the best to the worst.
enum class LoadOutcome {
  kLoaded,
  kTooFewPoints,  // fewer than 10 in the window; a message was shown
  kBinary,        // refused; a message was shown
  kUnreadable,    // given up; host.ReportFailure says why
};

// The two lines above the data of a scan file, one byte a character.
struct CommentLines {
  std::string comment;
  std::string header;
};

// Where the header line keeps the time of the scan, in seconds.
enum class TimeField {
  kCentrifuge,       // columns 16 to 22
  kElectrophoresis,  // columns 14 to 23
};
std::string_view TimeColumns(const LineBuffer& header, TimeField timeField);

// The file, opened for reading its lines. Throws FileFault if it cannot be opened or is no regular
// file.
std::ifstream OpenScan(const std::filesystem::path& path);

// Lines 1 and 2 of the file. Throws FileFault if it cannot be read or ends before.
CommentLines ReadCommentLines(const std::filesystem::path& path);

// Shows lines 1 and 2 of the selected file and remembers line 2 in HeaderLine: gives trimmed
// line 1, CR LF, trimmed line 2 as UTF-8. If the file cannot be read: an empty text, HeaderLine
// stays, host.ReportFailure says why.
std::string GetCommentLines(DatasetStore& store, const std::filesystem::path& path, Host& host);

// The record of one radial window of the scan in `in`, bounds as for LoadDataFile; it may hold
// fewer points than a load takes. `path` names the source in messages and in Comment1. Throws
// FileFault with the reason if the scan must be given up.
Dataset ReadDataset(FileKind kind, std::istream& in, const std::filesystem::path& path, float low,
                    float high);

// Bounds of the first column, both inclusive: cm, for "EL" r^2/2 in cm^2.
struct RadialWindow {
  float low;
  float high;
};

// Reads the rows whose first column, in single precision, lies in `window` and appends one Dataset
// named `datasetName` (one byte a character), or none. Logs the source and the dataset's number.
// The store is changed only by a load that succeeds.
LoadOutcome LoadDataFile(DatasetStore& store, FileKind kind, const std::filesystem::path& path,
                         const std::string& datasetName, RadialWindow window, Host& host);

}  // namespace quorvane
