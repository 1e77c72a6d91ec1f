// Binary records in memory: little-endian numbers and fixed texts, written and read in order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

// Bytes that do not hold what they should; what() says of which source, what and at which byte.
class ByteFault : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

using Bytes = std::vector<std::byte>;

// The bytes of a text, as they lie in memory.
std::span<const std::byte> BytesOf(std::string_view text);
std::string_view TextOf(std::span<const std::byte> bytes);

class ByteWriter {
 public:
  void Int16(std::int16_t value) { Unsigned(static_cast<std::uint16_t>(value), 2); }
  void Int32(std::int32_t value) { Unsigned(static_cast<std::uint32_t>(value), 4); }
  void Unsigned16(std::uint16_t value) { Unsigned(value, 2); }
  void Unsigned32(std::uint32_t value) { Unsigned(value, 4); }
  void Float(float value);
  void Double(double value);
  void Doubles(std::span<const double> values);
  void Raw(std::span<const std::byte> bytes);
  void Raw(std::string_view text) { Raw(BytesOf(text)); }

  Bytes Take() { return std::move(bytes_); }

 private:
  void Unsigned(std::uint64_t value, int size);

  Bytes bytes_;
};

// Every routine throws ByteFault, naming `what`, when fewer bytes are left than it needs.
class ByteReader {
 public:
  // `source` is for messages; the bytes outlive the reader.
  ByteReader(std::string source, std::span<const std::byte> bytes)
      : source_(std::move(source)), bytes_(bytes) {}

  std::int16_t Int16(const char* what) { return static_cast<std::int16_t>(Unsigned(2, what)); }
  std::int32_t Int32(const char* what) { return static_cast<std::int32_t>(Unsigned(4, what)); }
  std::uint16_t Unsigned16(const char* what) {
    return static_cast<std::uint16_t>(Unsigned(2, what));
  }
  std::uint32_t Unsigned32(const char* what) {
    return static_cast<std::uint32_t>(Unsigned(4, what));
  }
  float Float(const char* what);
  double Double(const char* what);
  void Doubles(std::span<double> values, const char* what);
  std::span<const std::byte> Raw(std::size_t count, const char* what);

  // A 32-bit count of things that take at least `size` bytes each; refused if they cannot follow.
  std::uint32_t Count(std::size_t size, const char* what);

  bool AtEnd() const { return at_ == bytes_.size(); }
  [[noreturn]] void Fail(const std::string& what) const;

 private:
  std::uint64_t Unsigned(int size, const char* what);

  std::string source_;
  std::span<const std::byte> bytes_;
  std::size_t at_ = 0;
};

}  // namespace quorvane
