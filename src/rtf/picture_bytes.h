// Reading numbers out of the bytes of a picture, each checked against their end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace quorvane {

// A picture that cannot be used; what() says why.
class PictureFault : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The largest picture taken, so that showing a damaged or hostile one cannot fill the memory.
inline constexpr std::int64_t kMaxPictureSide = 32768;         // pixels
inline constexpr std::int64_t kMaxPicturePixels = 32'000'000;  // 128 MB shown

// `count` bytes from `at`. Throws PictureFault beyond the end.
inline std::string_view PictureSlice(std::string_view bytes, std::size_t at, std::size_t count) {
  if (at > bytes.size() || count > bytes.size() - at) throw PictureFault("picture is cut off");
  return bytes.substr(at, count);
}

// An unsigned number of 2 or 4 bytes at `at`, lowest byte first. Throws PictureFault beyond the
// end.
inline std::uint32_t LittleEndian(std::string_view bytes, std::size_t at, std::size_t size) {
  std::uint32_t value = 0;
  std::uint32_t shift = 0;
  for (const char c : PictureSlice(bytes, at, size)) {
    value |= static_cast<std::uint32_t>(static_cast<unsigned char>(c)) << shift;
    shift += 8;
  }
  return value;
}

// The same, highest byte first.
inline std::uint32_t BigEndian(std::string_view bytes, std::size_t at, std::size_t size) {
  std::uint32_t value = 0;
  for (const char c : PictureSlice(bytes, at, size)) {
    value = value << 8 | static_cast<unsigned char>(c);
  }
  return value;
}

// Throws PictureFault unless both sides and the number of pixels are within the limits.
inline void CheckPictureSize(std::int64_t width, std::int64_t height) {
  const bool sides =
      width >= 1 && height >= 1 && width <= kMaxPictureSide && height <= kMaxPictureSide;
  if (!sides || width * height > kMaxPicturePixels) throw PictureFault("picture size is unusable");
}

}  // namespace quorvane
