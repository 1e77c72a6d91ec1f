// The shape of a solution column: a width-like factor F against radius, from channels.txt; and the
// reference radius of a dataset.
#pragma once

#include <cstdint>
#include <filesystem>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

#include "scan/dataset.h"

namespace quorvane {

struct CellGeometry {
  std::int16_t number = 0;  // first number of the entry; kept, never used
  std::string name;         // UTF-8, as in the file; menus show it trimmed
  std::vector<float> r;     // cm, rising, up to 501 entries
  std::vector<float> f;     // no unit; f[j] belongs to r[j], from j = 0
  bool operator==(const CellGeometry&) const = default;
};

inline constexpr int kMaxCellGeometries = 11;
inline constexpr int kMaxGeometryPairs = 501;

// The geometries of a channels.txt: comma, blank or line end between fields, double quotes round a
// text. Empty when its count is 0 or less. `source` is only for messages.
// Throws FileFault with source, line and field; SubscriptFault past 11 geometries or 501 pairs. No
// half-read table comes back.
std::vector<CellGeometry> ReadCellGeometries(std::istream& in, std::string_view source);

// The geometries of the file, empty if it does not exist. Throws as ReadCellGeometries.
std::vector<CellGeometry> LoadCellGeometries(const std::filesystem::path& path);

// Factor at radius r (cm) by linear interpolation in geometry number `geometry`, from 0. Outside
// the table its end value, and the flag of that side 1; otherwise both flags 0.
// Throws SubscriptFault for a geometry that is not there or has no pairs.
double getFofR(double r, int geometry, const std::vector<CellGeometry>& geometries,
               std::int32_t& outBelow, std::int32_t& outAbove);

// Radius two thirds down the good points, cm, in single precision: from the first to the last point
// with Err above 0. 0 if there is none.
float CalcRefRadius(const Dataset& dataset);

}  // namespace quorvane
