// Reader of scans for matching: fixed columns, no checks of what they hold.
#pragma once

#include <cstdint>
#include <filesystem>
#include <istream>
#include <string_view>
#include <vector>

#include "scan/scan_file.h"

namespace quorvane {

// One scan as it stands in its file.
struct RawScan {
  std::int32_t time = 0;       // s, from the header line; 0 if it has none
  std::vector<double> radius;  // cm, in the order of the file, at most kMaxPoints
  std::vector<double> signal;  // as many as radius
  std::int32_t speed = 0;      // rpm, from the header line; 0 if it has none
  bool operator==(const RawScan&) const = default;
};

// Reads line 2 for the time, rounded to whole seconds, and the speed (columns 9 to 14, none for
// electrophoresis; what is no speed does no harm), and from line 3 on a radius (columns 1 to
// 11) and a signal (columns 12 to 26) a line, each as FieldVal reads it: what is no number is 0.
// Blank lines are passed over; lines behind the point kMaxPoints are not read. A file that ends
// early gives what it has. `source` is for messages.
// Throws FileFault with source and line for a number beyond double range or a time beyond 32 bits,
// and if a read fails.
RawScan ReadRawScan(std::istream& in, TimeField timeField, std::string_view source);

// ReadRawScan of a file. Throws FileFault also if it cannot be opened or is no regular file.
RawScan ReadMatchFile(const std::filesystem::path& path, TimeField timeField);

}  // namespace quorvane
