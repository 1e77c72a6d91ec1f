// What a list of scan files tells of each without loading it.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "scan/dataset_names.h"

namespace quorvane {

// The header of a scan as loading reads it, and how many rows it heads.
struct ScanFacts {
  std::filesystem::path path;
  FileKind kind = FileKind::kIpRa;
  char letter = ' ';         // in front of the header; ' ' for "EL"
  int cell = 0;              // 1 for "EL"
  int speed = 0;             // rpm
  int wavelength = 0;        // nm
  double temperature = 0.0;  // deg C
  double hours = 0.0;        // since the start of the run; 0 where the header has no time
  double omega2t = 0.0;      // integral of omega^2 over time, rad^2/s; 0 where it has none
  int points = 0;            // rows with a radius above 0, at least kMinPoints
};

// Radii and signals of all rows of a scan with a radius above 0, by rising radius.
struct ScanPoints {
  std::vector<double> r;  // cm
  std::vector<double> c;  // as many as r
};

// What its header measures ("absorbance"), or the caption of its file kind.
std::string_view SignalOf(const ScanFacts& facts);

// Reads a file as `kind`, by default as its extension says. Throws FileFault with the reason if it
// is no scan: it cannot be read, is longer than 4 MB or binary, has no header in line 2 or fewer
// than 10 rows, or a number in it is out of range.
ScanFacts ReadScanFacts(const std::filesystem::path& path, std::optional<FileKind> kind);

// The rows of such a file. Throws FileFault in the same way.
ScanPoints ReadScanPoints(const std::filesystem::path& path, FileKind kind);

}  // namespace quorvane
