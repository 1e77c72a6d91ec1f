#include "rtf/picture_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "rtf/dib.h"
#include "rtf/picture_bytes.h"

namespace quorvane {

namespace {

constexpr std::string_view kPngSignature = "\x89PNG\r\n\x1A\n";
constexpr std::string_view kJpegSignature = "\xFF\xD8\xFF";

struct PixelSize {
  std::int64_t width = 0;
  std::int64_t height = 0;
};

// The first chunk, IHDR, begins with the size.
PixelSize PngSize(std::string_view bytes) {
  if (PictureSlice(bytes, 12, 4) != "IHDR") throw PictureFault("PNG without a header");
  return {BigEndian(bytes, 16, 4), BigEndian(bytes, 20, 4)};
}

// Start of frame: C0 to CF without the tables and extensions among them.
bool IsFrameMarker(std::uint32_t marker) {
  return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

PixelSize JpegSize(std::string_view bytes) {
  std::size_t at = 2;
  while (true) {
    if (BigEndian(bytes, at, 1) != 0xFF) throw PictureFault("damaged JPEG");
    const std::uint32_t marker = BigEndian(bytes, at + 1, 1);
    if (marker == 0xFF) {  // fill byte
      ++at;
      continue;
    }
    if (IsFrameMarker(marker)) return {BigEndian(bytes, at + 7, 2), BigEndian(bytes, at + 5, 2)};
    at += 2 + std::max(BigEndian(bytes, at + 2, 2), std::uint32_t{2});
  }
}

PixelSize SizeOf(PictureKind kind, std::string_view bytes) {
  if (kind == PictureKind::kPng) return PngSize(bytes);
  if (kind == PictureKind::kJpeg) return JpegSize(bytes);
  const DibLayout layout = ReadDibLayout(bytes.substr(std::min<std::size_t>(bytes.size(), 14)));
  return {layout.width, layout.height};
}

PictureKind KindOf(std::string_view bytes) {
  if (bytes.starts_with(kPngSignature)) return PictureKind::kPng;
  if (bytes.starts_with(kJpegSignature)) return PictureKind::kJpeg;
  if (bytes.starts_with("BM")) return PictureKind::kBmp;
  throw PictureFault("unknown kind of picture");
}

}  // namespace

Picture PictureFromFile(std::string bytes) {
  Picture picture;
  picture.kind = KindOf(bytes);
  const PixelSize size = SizeOf(picture.kind, bytes);
  CheckPictureSize(size.width, size.height);
  picture.pixelWidth = static_cast<int>(size.width);
  picture.pixelHeight = static_cast<int>(size.height);
  const std::int64_t longest = std::max(size.width, size.height);
  const auto shown = [longest](std::int64_t pixels) {
    if (longest * kTwipsPerPixel <= kMaxTwips) return static_cast<int>(pixels * kTwipsPerPixel);
    return static_cast<int>(std::max<std::int64_t>(1, pixels * kMaxTwips / longest));
  };
  picture.widthTwips = shown(size.width);
  picture.heightTwips = shown(size.height);
  picture.bytes = std::move(bytes);
  return picture;
}

}  // namespace quorvane
