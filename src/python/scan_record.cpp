#include "python/scan_record.h"

#include <algorithm>
#include <cmath>

#include "base/quiet_host.h"
#include "base/sha256.h"
#include "core/page/row_values.h"
#include "job/require.h"
#include "scan/cell_geometry.h"
#include "scan/dataset_store.h"

namespace quorvane {

namespace {

constexpr std::size_t kDigest = 64;  // hexadecimal digits
constexpr std::string_view kVersion = "1";

// The numbers of a record that are no arrays, in the order of the bytes.
constexpr std::array kNumbers = {&Dataset::RefRadius, &Dataset::RefConc,  &Dataset::RefConc2,
                                 &Dataset::Offset,    &Dataset::ExtCoeff, &Dataset::ExtCoeff2,
                                 &Dataset::Rbase,     &Dataset::Rmen,     &Dataset::ALoad,
                                 &Dataset::BLoad,     &Dataset::Edited};

template <std::size_t N>
void ReadText(FixedText<N>& text, ByteReader& in) {
  text.SetBytes(TextOf(in.Raw(N, "text of a dataset")));
}

double FiniteIn(ByteReader& in) {
  const double value = in.Double("number of a dataset");
  if (!std::isfinite(value)) in.Fail("number, which is not finite,");
  return value;
}

void RequireValues(const ScanValues& values) {
  const std::size_t n = values.r.size();
  const auto require = [](bool kept, const char* rule) {
    if (!kept) throw JobFault(rule);
  };
  require(n >= kMinPoints && n <= kMaxPoints, "a scan has 10 to 2048 points");
  require(values.signal.size() == n, "signal: as many numbers as radii are wanted");
  require(values.error.size() == n, "error: as many numbers as radii are wanted");
  require(values.r.front() > 0.0, "r: radii are above 0");
  require(std::adjacent_find(values.r.begin(), values.r.end(), std::greater_equal<>()) ==
              values.r.end(),
          "r: rising radii are wanted");
  require(std::all_of(values.error.begin(), values.error.end(), [](double e) { return e >= 0.0; }),
          "error: standard deviations are not negative");
  require(values.wavelength >= 0.0 && values.wavelength <= 32767.0 &&
              values.wavelength == std::floor(values.wavelength),
          "wavelength: a whole number of nm is wanted");
  require(std::fabs(values.temperature) < 1000.0, "temperature: deg C are wanted");
}

}  // namespace

ScanRecord::ScanRecord(const Dataset& dataset) : dataset_(dataset), mask_(Points()) {
  Taken();
}

const Dataset& ScanRecord::Get() {
  bool changed = false;
  for (std::size_t k = 0; k < Points(); ++k) {
    const bool good = mask_[k] != 0;
    if (good == (dataset_.Good[k] != kFalse)) continue;
    changed = true;
    const double magnitude = std::fabs(dataset_.Err[k]);
    dataset_.Err[k] = good ? magnitude : -magnitude;
    dataset_.Good[k] = good ? kTrue : kFalse;
  }
  if (changed) dataset_.RefRadius = CalcRefRadius(dataset_);
  return dataset_;
}

Dataset& ScanRecord::Change() {
  Get();
  return dataset_;
}

void ScanRecord::Taken() {
  for (std::size_t k = 0; k < Points(); ++k) mask_[k] = dataset_.Good[k] != kFalse ? 1 : 0;
}

Dataset DatasetOf(const ScanValues& values, const std::string& name) {
  RequireValues(values);
  Dataset dataset = EmptyDataset();
  QuietHost host;
  if (!RenameDataset(dataset, name, host)) throw JobFault("name: it is not one that a scan takes");
  const std::size_t n = values.r.size();
  dataset.NumPoints = static_cast<std::int16_t>(n);
  std::copy(values.r.begin(), values.r.end(), dataset.R.begin());
  std::copy(values.signal.begin(), values.signal.end(), dataset.C.begin());
  std::copy(values.error.begin(), values.error.end(), dataset.Err.begin());
  std::fill_n(dataset.Good.begin(), n, kTrue);
  Require(SetSpeed(dataset, values.speed));
  dataset.Wavelength = static_cast<std::int16_t>(values.wavelength);
  dataset.Temperature = static_cast<float>(values.temperature);
  SetMeniscusAndBase(dataset, FirstRadius(dataset), LastRadius(dataset));
  dataset.RefRadius = CalcRefRadius(dataset);
  return dataset;
}

void WriteDataset(const Dataset& dataset, ByteWriter& out) {
  out.Raw(dataset.FileName.View());
  out.Raw(dataset.FilePath.View());
  out.Raw(dataset.Comment1.View());
  out.Raw(dataset.Comment2.View());
  out.Int32(dataset.Speed);
  out.Int16(dataset.Wavelength);
  out.Float(dataset.Temperature);
  for (double Dataset::*const number : kNumbers) out.Double(dataset.*number);
  out.Int16(dataset.NumPoints);
  const auto n = static_cast<std::size_t>(dataset.NumPoints);
  out.Doubles(std::span(dataset.R).first(n));
  out.Doubles(std::span(dataset.C).first(n));
  out.Doubles(std::span(dataset.Err).first(n));
  for (std::size_t k = 0; k < n; ++k) out.Int16(dataset.Good[k]);
}

Dataset ReadDataset(ByteReader& in) {
  Dataset dataset = EmptyDataset();
  ReadText(dataset.FileName, in);
  ReadText(dataset.FilePath, in);
  ReadText(dataset.Comment1, in);
  ReadText(dataset.Comment2, in);
  dataset.Speed = in.Int32("speed");
  dataset.Wavelength = in.Int16("wavelength");
  dataset.Temperature = in.Float("temperature");
  if (!std::isfinite(dataset.Temperature)) in.Fail("temperature");
  for (double Dataset::*const number : kNumbers) dataset.*number = FiniteIn(in);
  const std::int16_t points = in.Int16("points");
  if (points < 0 || points > kMaxPoints) in.Fail("number of points");
  dataset.NumPoints = points;
  for (auto* const column : {&dataset.R, &dataset.C, &dataset.Err}) {
    for (std::int16_t k = 0; k < points; ++k) (*column)[static_cast<std::size_t>(k)] = FiniteIn(in);
  }
  for (std::int16_t k = 0; k < points; ++k) {
    dataset.Good[static_cast<std::size_t>(k)] = in.Int16("points") != 0 ? kTrue : kFalse;
  }
  return dataset;
}

std::string Sealed(std::string_view kind, const Bytes& body) {
  const std::string_view text = TextOf(body);
  std::string sealed = "Quorvane " + std::string(kind) + ' ' + std::string(kVersion) + '\n';
  sealed += Sha256(text);
  sealed += text;
  return sealed;
}

std::span<const std::byte> Unsealed(std::string_view kind, std::string_view sealed) {
  const std::string head = "Quorvane " + std::string(kind) + ' ';
  const std::string name(kind);
  if (!sealed.starts_with(head)) throw ByteFault(name + ": these bytes are no " + name);
  const std::size_t end = sealed.substr(0, head.size() + 10).find('\n');
  if (end == std::string_view::npos) throw ByteFault(name + ": these bytes are damaged");
  if (sealed.substr(head.size(), end - head.size()) != kVersion) {
    throw ByteFault(name + ": these bytes are of another version of Quorvane");
  }
  const std::string_view rest = sealed.substr(end + 1);
  if (rest.size() < kDigest || Sha256(rest.substr(kDigest)) != rest.substr(0, kDigest)) {
    throw ByteFault(name + ": these bytes are damaged");
  }
  return BytesOf(rest.substr(kDigest));
}

}  // namespace quorvane
