#include "rtf/rtf_picture.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "rtf/dib.h"
#include "rtf/metafile.h"
#include "rtf/picture_bytes.h"
#include "rtf/picture_file.h"

namespace quorvane {

namespace {

constexpr int kHundredthMillimetresPerInch = 2540;

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

void RtfPicture::SetWord(std::string_view name, int number) {
  const std::pair<std::string_view, int*> sizes[] = {
      {"picw", &width_},          {"pich", &height_},          {"picwgoal", &widthGoal_},
      {"pichgoal", &heightGoal_}, {"picscalex", &widthScale_}, {"picscaley", &heightScale_}};
  const std::pair<std::string_view, Kind> kinds[] = {
      {"pngblip", Kind::kFile},    {"jpegblip", Kind::kFile},     {"dibitmap", Kind::kDib},
      {"wmetafile", Kind::kWmf},   {"emfblip", Kind::kEmf},       {"wbitmap", Kind::kForeign},
      {"macpict", Kind::kForeign}, {"pmmetafile", Kind::kForeign}};
  for (const auto& [word, size] : sizes) {
    if (name == word) *size = number;
  }
  for (const auto& [word, kind] : kinds) {
    if (name == word) kind_ = kind;
  }
}

bool RtfPicture::HasRoom() {
  tooLarge_ = tooLarge_ || bytes_.size() > kMaxRtfPictureBytes;
  return !tooLarge_;
}

void RtfPicture::AddHex(std::string_view digits) {
  if (!HasRoom()) return;
  for (const char c : digits) {
    const int value = HexValue(c);
    if (value < 0) continue;
    if (halfByte_ < 0) {
      halfByte_ = value;
    } else {
      bytes_ += static_cast<char>(std::exchange(halfByte_, -1) << 4 | value);
    }
  }
}

void RtfPicture::AddBinary(std::string_view bytes) {
  if (HasRoom()) bytes_ += bytes;
}

Picture RtfPicture::Decoded() const {
  const std::string_view bytes = bytes_;
  const bool file = bytes.starts_with("\x89PNG") || bytes.starts_with("\xFF\xD8\xFF") ||
                    (bytes.starts_with("BM") && kind_ != Kind::kDib);
  if (file) return PictureFromFile(bytes_);
  switch (kind_) {
    case Kind::kDib:
      return PictureFromFile(BmpFromDib(bytes));
    case Kind::kWmf:
      return PictureFromFile(BmpFromWmf(bytes));
    case Kind::kEmf:
      return PictureFromFile(BmpFromEmf(bytes));
    default:
      throw PictureFault("unknown kind of picture");
  }
}

// One side in twips: the goal, or the metafile's own extent, or what the pixels give; scaled.
int RtfPicture::Shown(int goal, int extent, int scale, int natural) const {
  const bool metafile = kind_ == Kind::kWmf || kind_ == Kind::kEmf;
  std::int64_t twips = natural;
  if (goal > 0) {
    twips = goal;
  } else if (metafile && extent > 0) {
    twips = std::int64_t{extent} * kTwipsPerInch / kHundredthMillimetresPerInch;
  }
  twips = std::min<std::int64_t>(twips, kMaxTwips) * std::clamp(scale, 1, 10000) / 100;
  return static_cast<int>(std::clamp<std::int64_t>(twips, 1, kMaxTwips));
}

Picture RtfPicture::Finish() const {
  if (tooLarge_ || bytes_.size() > kMaxRtfPictureBytes) throw PictureFault("picture is too large");
  if (bytes_.empty()) throw PictureFault("picture without data");
  Picture picture = Decoded();
  picture.widthTwips = Shown(widthGoal_, width_, widthScale_, picture.widthTwips);
  picture.heightTwips = Shown(heightGoal_, height_, heightScale_, picture.heightTwips);
  return picture;
}

}  // namespace quorvane
