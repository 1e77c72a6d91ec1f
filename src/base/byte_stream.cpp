#include "base/byte_stream.h"

#include <bit>
#include <cstring>

namespace quorvane {

std::span<const std::byte> BytesOf(std::string_view text) {
  return std::as_bytes(std::span(text.data(), text.size()));
}

std::string_view TextOf(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

void ByteWriter::Unsigned(std::uint64_t value, int size) {
  for (int k = 0; k < size; ++k) bytes_.push_back(std::byte(value >> (8 * k) & 0xFF));
}

void ByteWriter::Float(float value) {
  Unsigned32(std::bit_cast<std::uint32_t>(value));
}

void ByteWriter::Double(double value) {
  Unsigned(std::bit_cast<std::uint64_t>(value), 8);
}

void ByteWriter::Doubles(std::span<const double> values) {
  if constexpr (std::endian::native == std::endian::little) {
    Raw(std::as_bytes(values));
  } else {
    for (const double value : values) Double(value);
  }
}

void ByteWriter::Raw(std::span<const std::byte> bytes) {
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

std::uint64_t ByteReader::Unsigned(int size, const char* what) {
  const auto bytes = Raw(static_cast<std::size_t>(size), what);
  std::uint64_t value = 0;
  for (int k = 0; k < size; ++k) {
    value |= std::to_integer<std::uint64_t>(bytes[static_cast<std::size_t>(k)]) << (8 * k);
  }
  return value;
}

float ByteReader::Float(const char* what) {
  return std::bit_cast<float>(Unsigned32(what));
}

double ByteReader::Double(const char* what) {
  return std::bit_cast<double>(Unsigned(8, what));
}

void ByteReader::Doubles(std::span<double> values, const char* what) {
  if constexpr (std::endian::native == std::endian::little) {
    const auto bytes = Raw(values.size_bytes(), what);
    if (!values.empty()) std::memcpy(values.data(), bytes.data(), bytes.size());
  } else {
    for (double& value : values) value = Double(what);
  }
}

std::span<const std::byte> ByteReader::Raw(std::size_t count, const char* what) {
  if (bytes_.size() - at_ < count) Fail(what);
  const auto bytes = bytes_.subspan(at_, count);
  at_ += count;
  return bytes;
}

std::uint32_t ByteReader::Count(std::size_t size, const char* what) {
  const std::uint32_t count = Unsigned32(what);
  if (count > (bytes_.size() - at_) / size) Fail(what);
  return count;
}

void ByteReader::Fail(const std::string& what) const {
  throw ByteFault(source_ + ": bad " + what + " at byte " + std::to_string(at_));
}

}  // namespace quorvane
