#include "rtf/dib.h"

#include <algorithm>
#include <cstdint>

#include "rtf/picture_bytes.h"

namespace quorvane {

namespace {

constexpr std::size_t kFileHeader = 14;
constexpr std::uint32_t kInfoHeader = 40;  // later headers only add to it
constexpr std::uint32_t kLastHeader = 124;
constexpr std::uint32_t kRgb = 0;
constexpr std::uint32_t kBitFields = 3;

void AppendLittleEndian(std::string& out, std::size_t value, int size) {
  for (int k = 0; k < size; ++k) out += static_cast<char>(value >> (8 * k) & 0xFF);
}

// Three colour masks stand behind the oldest header; later ones have them inside.
std::size_t MaskBytes(std::uint32_t header, std::uint32_t compression) {
  return compression == kBitFields && header == kInfoHeader ? 12 : 0;
}

std::size_t PaletteBytes(std::uint32_t bits, std::uint32_t used) {
  const std::uint32_t most = bits <= 8 ? 1u << bits : 256;
  if (used > most) throw PictureFault("bitmap palette is too long");
  if (used == 0 && bits <= 8) used = most;
  return std::size_t{4} * used;
}

void CheckKind(std::uint32_t bits, std::uint32_t compression) {
  const bool plain = bits == 1 || bits == 4 || bits == 8 || bits == 24;
  const bool masked = bits == 16 || bits == 32;
  if (!plain && !masked) {
    throw PictureFault("bitmap of " + std::to_string(bits) + " bits a pixel");
  }
  if (compression != kRgb && !(masked && compression == kBitFields)) {
    throw PictureFault("compressed bitmap");
  }
}

}  // namespace

DibLayout ReadDibLayout(std::string_view dib) {
  const std::uint32_t header = LittleEndian(dib, 0, 4);
  if (header < kInfoHeader || header > kLastHeader) throw PictureFault("unknown bitmap header");
  const auto width = static_cast<std::int32_t>(LittleEndian(dib, 4, 4));
  const auto rows = static_cast<std::int32_t>(LittleEndian(dib, 8, 4));
  const std::uint32_t bits = LittleEndian(dib, 14, 2);
  const std::uint32_t compression = LittleEndian(dib, 16, 4);
  const std::int64_t height = rows < 0 ? -std::int64_t{rows} : rows;  // negative: top row first
  CheckPictureSize(width, height);
  CheckKind(bits, compression);
  DibLayout layout;
  layout.width = width;
  layout.height = static_cast<int>(height);
  layout.infoBytes =
      header + MaskBytes(header, compression) + PaletteBytes(bits, LittleEndian(dib, 32, 4));
  layout.pixelBytes =
      (static_cast<std::size_t>(width) * bits + 31) / 32 * 4 * static_cast<std::size_t>(height);
  return layout;
}

std::string BmpFromDib(std::string_view dib) {
  return BmpFromDib(dib, dib.substr(std::min(dib.size(), ReadDibLayout(dib).infoBytes)));
}

std::string BmpFromDib(std::string_view info, std::string_view pixels) {
  const DibLayout layout = ReadDibLayout(info);
  info = PictureSlice(info, 0, layout.infoBytes);
  pixels = PictureSlice(pixels, 0, layout.pixelBytes);
  std::string bmp = "BM";
  bmp.reserve(kFileHeader + info.size() + pixels.size());
  AppendLittleEndian(bmp, kFileHeader + info.size() + pixels.size(), 4);
  AppendLittleEndian(bmp, 0, 4);
  AppendLittleEndian(bmp, kFileHeader + info.size(), 4);
  bmp += info;
  bmp += pixels;
  return bmp;
}

std::string DibFromBmp(std::string_view bmp) {
  if (!bmp.starts_with("BM")) throw PictureFault("no BMP file");
  const std::string_view info = bmp.substr(std::min(bmp.size(), kFileHeader));
  const DibLayout layout = ReadDibLayout(info);
  const std::size_t start = LittleEndian(bmp, 10, 4);
  std::string dib(PictureSlice(info, 0, layout.infoBytes));
  dib += PictureSlice(bmp, start, layout.pixelBytes);
  return dib;
}

}  // namespace quorvane
