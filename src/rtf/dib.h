// Device-independent bitmaps: the header, masks, palette and pixels that metafiles and RTF hold
// without the header of a BMP file.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quorvane {

// What a bitmap's header says. 1, 4, 8, 16, 24 or 32 bits a pixel, not compressed.
struct DibLayout {
  int width = 0;               // pixels
  int height = 0;              // pixels, whichever row comes first
  std::size_t infoBytes = 0;   // header, masks and palette
  std::size_t pixelBytes = 0;  // rows padded to 4 bytes
};

// Reads the header that begins `dib`; the palette and pixels need not be there.
// Throws PictureFault for an unknown or compressed kind and for sizes out of range.
DibLayout ReadDibLayout(std::string_view dib);

// The BMP file of a bitmap whose pixels follow its palette at once; bytes behind them are dropped.
// Throws PictureFault, also when palette or pixels are cut off.
std::string BmpFromDib(std::string_view dib);

// The same with header, masks and palette apart from the pixels.
std::string BmpFromDib(std::string_view info, std::string_view pixels);

// The bitmap in a BMP file, pixels at once behind the palette. Throws PictureFault.
std::string DibFromBmp(std::string_view bmp);

}  // namespace quorvane
