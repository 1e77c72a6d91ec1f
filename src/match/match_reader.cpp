#include "match/match_reader.h"

#include <string>

#include "base/arithmetic.h"
#include "base/files.h"
#include "scan/dataset.h"
#include "scan/fields.h"

namespace quorvane {

namespace {

// Matching does not need it, so it refuses no scan.
std::int32_t SpeedOf(const LineBuffer& header, TimeField timeField) {
  if (timeField == TimeField::kElectrophoresis) return 0;
  try {
    return FieldInt32(header.Columns(9, 14));
  } catch (const ArithmeticFault&) {
    return 0;
  }
}

bool IsBlankLine(std::string_view line) {
  return line.find_first_not_of(" \t\r") == std::string_view::npos;
}

void TakePoint(const LineBuffer& row, RawScan& scan) {
  const double radius = FieldVal(row.Columns(1, 11));
  scan.signal.push_back(FieldVal(row.Columns(12, 26)));
  scan.radius.push_back(radius);
}

}  // namespace

RawScan ReadRawScan(std::istream& in, TimeField timeField, std::string_view source) {
  RawScan scan;
  std::string text;
  int line = 0;
  try {
    while (scan.radius.size() < kMaxPoints && ReadLine(in, text)) {
      ++line;
      if (line == 2) {
        const LineBuffer header(text);
        scan.time = FieldInt32(TimeColumns(header, timeField));
        scan.speed = SpeedOf(header, timeField);
      } else if (line > 2 && !IsBlankLine(text)) {
        TakePoint(LineBuffer(text), scan);
      }
    }
  } catch (const ArithmeticFault&) {
    throw FileFault(std::string(source) + ", line " + std::to_string(line) +
                    ": a number is out of range");
  }
  if (in.bad()) throw FileFault(std::string(source) + ": a read failed");
  return scan;
}

RawScan ReadMatchFile(const std::filesystem::path& path, TimeField timeField) {
  std::ifstream in = OpenScan(path);
  return ReadRawScan(in, timeField, PathText(path));
}

}  // namespace quorvane
