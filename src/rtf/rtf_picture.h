// Gathers what a \pict group of an RTF file holds and makes a picture of it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "rtf/rich_text.h"

namespace quorvane {

inline constexpr std::size_t kMaxRtfPictureBytes = 128'000'000;  // of one picture

class RtfPicture {
 public:
  // A word of the group: kind, size or scale. Others are passed over.
  void SetWord(std::string_view name, int number);

  void AddHex(std::string_view digits);  // anything but hexadecimal digits is passed over
  void AddBinary(std::string_view bytes);

  // The picture, shown in the size that the group's words give. PNG, JPEG and BMP data are taken
  // whatever the kind says; otherwise a bitmap, or the bitmap that a metafile wraps.
  // Throws PictureFault if there is no picture that is understood.
  Picture Finish() const;

 private:
  enum class Kind { kFile, kDib, kWmf, kEmf, kForeign };

  Picture Decoded() const;
  int Shown(int goal, int extent, int scale, int natural) const;
  bool HasRoom();

  Kind kind_ = Kind::kFile;
  int width_ = 0;  // \picw, \pich: pixels; of a metafile hundredths of a millimetre
  int height_ = 0;
  int widthGoal_ = 0;  // twips
  int heightGoal_ = 0;
  int widthScale_ = 100;  // percent
  int heightScale_ = 100;
  std::string bytes_;
  int halfByte_ = -1;  // value of a first hexadecimal digit, or -1
  bool tooLarge_ = false;
};

}  // namespace quorvane
