#include "rtf/metafile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "rtf/dib.h"
#include "rtf/picture_bytes.h"

namespace quorvane {

namespace {

constexpr std::uint32_t kPlaceableKey = 0x9AC6CDD7;
constexpr std::size_t kPlaceableHeader = 22;
constexpr std::size_t kWmfHeader = 18;
constexpr std::size_t kWmfRecordHeader = 6;
constexpr std::uint32_t kEmfHeaderType = 1;
constexpr std::uint32_t kEmfSignature = 0x464D4520;  // " EMF"

// Bitmap records: what they are and where in the record the bitmap, or the offsets of its two
// parts, are found. Source: MS-WMF 2.3.1, MS-EMF 2.3.1.
struct BitmapRecord {
  std::uint32_t type;
  std::size_t at;
};
constexpr BitmapRecord kWmfBitmaps[] = {
    {0x0F43, 28},  // META_STRETCHDIB
    {0x0B41, 26},  // META_DIBSTRETCHBLT
    {0x0940, 22},  // META_DIBBITBLT
    {0x0D33, 24},  // META_SETDIBTODEV
};
constexpr BitmapRecord kEmfBitmaps[] = {
    {76, 84},  // EMR_BITBLT
    {77, 84},  // EMR_STRETCHBLT
    {80, 48},  // EMR_SETDIBITSTODEVICE
    {81, 48},  // EMR_STRETCHDIBITS
};

// Keeps the largest bitmap that it is offered and can use.
class LargestBitmap {
 public:
  // Without `pixels` they follow `info` at once.
  void Offer(std::string_view info, std::optional<std::string_view> pixels) {
    try {
      const DibLayout layout = ReadDibLayout(info);
      const std::size_t area =
          static_cast<std::size_t>(layout.width) * static_cast<std::size_t>(layout.height);
      if (area <= area_) return;
      bmp_ = pixels ? BmpFromDib(info, *pixels) : BmpFromDib(info);
      area_ = area;
    } catch (const PictureFault& fault) {
      why_ = std::string("metafile: ") + fault.what();
    }
  }
  std::string Take() {
    if (area_ == 0) throw PictureFault(why_);
    return std::move(bmp_);
  }

 private:
  std::string bmp_;
  std::size_t area_ = 0;
  std::string why_ = "metafile without a bitmap";
};

void OfferWmfRecord(LargestBitmap& largest, std::uint32_t type, std::string_view record) {
  for (const BitmapRecord& kind : kWmfBitmaps) {
    if (kind.type == type && record.size() > kind.at) {
      largest.Offer(record.substr(kind.at), std::nullopt);
    }
  }
}

void OfferEmfRecord(LargestBitmap& largest, std::uint32_t type, std::string_view record) {
  for (const BitmapRecord& kind : kEmfBitmaps) {
    if (kind.type != type || record.size() < kind.at + 16) continue;
    const auto part = [&](std::size_t at) {
      const std::size_t start = LittleEndian(record, at, 4);
      const std::size_t size = LittleEndian(record, at + 4, 4);
      const bool inside = start <= record.size() && size <= record.size() - start;
      return inside ? record.substr(start, size) : std::string_view();
    };
    const std::string_view info = part(kind.at);
    if (!info.empty()) largest.Offer(info, part(kind.at + 8));
  }
}

}  // namespace

std::string BmpFromWmf(std::string_view bytes) {
  if (LittleEndian(bytes, 0, 4) == kPlaceableKey) {
    bytes = bytes.substr(std::min(bytes.size(), kPlaceableHeader));
  }
  const std::uint32_t kind = LittleEndian(bytes, 0, 2);
  const std::uint32_t headerWords = LittleEndian(bytes, 2, 2);
  if ((kind != 1 && kind != 2) || headerWords * 2 != kWmfHeader) throw PictureFault("no metafile");
  LargestBitmap largest;
  std::size_t at = kWmfHeader;
  while (at + kWmfRecordHeader <= bytes.size()) {
    const std::size_t size = std::size_t{2} * LittleEndian(bytes, at, 4);
    if (size < kWmfRecordHeader) break;
    OfferWmfRecord(largest, LittleEndian(bytes, at + 4, 2), bytes.substr(at, size));
    at += size;
  }
  return largest.Take();
}

std::string BmpFromEmf(std::string_view bytes) {
  constexpr std::size_t kRecordHeader = 8;
  if (LittleEndian(bytes, 0, 4) != kEmfHeaderType || LittleEndian(bytes, 40, 4) != kEmfSignature) {
    throw PictureFault("no enhanced metafile");
  }
  LargestBitmap largest;
  std::size_t at = 0;
  while (at + kRecordHeader <= bytes.size()) {
    const std::size_t size = LittleEndian(bytes, at + 4, 4);
    if (size < kRecordHeader) break;
    OfferEmfRecord(largest, LittleEndian(bytes, at, 4), bytes.substr(at, size));
    at += size;
  }
  return largest.Take();
}

}  // namespace quorvane
