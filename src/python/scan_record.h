// A dataset as Python holds it: the record of the engine, and a mask of the points in use that
// numpy may write into.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/byte_stream.h"
#include "scan/dataset.h"
#include "scan/point_edits.h"

namespace quorvane {

class ScanRecord {
 public:
  explicit ScanRecord(const Dataset& dataset);

  // The record, with the points in use that the mask says; a change sets its reference radius anew.
  const Dataset& Get();
  // The same, to be changed; the mask follows at Taken().
  Dataset& Change();
  void Taken();

  // One byte a point, 0 or 1; it stays where it is as long as this lives.
  std::vector<unsigned char>& Mask() { return mask_; }
  std::size_t Points() const { return static_cast<std::size_t>(dataset_.NumPoints); }

 private:
  Dataset dataset_;
  std::vector<unsigned char> mask_;
};

// What a scan is made of that comes from no file. Signals, errors and radii have equal lengths.
struct ScanValues {
  std::vector<double> r;  // cm, rising
  std::vector<double> signal;
  std::vector<double> error;  // standard deviations, not negative
  double speed = 0.0;         // rpm
  double wavelength = 280.0;  // nm
  double temperature = 20.0;  // deg C
};

// A dataset of these values, its reference radius and column ends as after a load. Throws
// JobFault for values that no scan has.
Dataset DatasetOf(const ScanValues& values, const std::string& name);

// Appends the record, without places behind its last point.
void WriteDataset(const Dataset& dataset, ByteWriter& out);

// Throws ByteFault for bytes that are no such record.
Dataset ReadDataset(ByteReader& in);

// A record in bytes of its own, and back: a head with a version, a digest, then `body`. Throws
// ByteFault for what is damaged or of another version.
std::string Sealed(std::string_view kind, const Bytes& body);
std::span<const std::byte> Unsealed(std::string_view kind, std::string_view sealed);

}  // namespace quorvane
