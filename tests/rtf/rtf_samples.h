// Pictures and texts for the tests of rtf/.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "rtf/picture_file.h"
#include "rtf/rich_text.h"

namespace quorvane {

// A number as `size` bytes, lowest first.
inline std::string Le(std::int64_t value, int size) {
  std::string bytes;
  for (int k = 0; k < size; ++k) bytes += static_cast<char>(value >> (8 * k) & 0xFF);
  return bytes;
}

inline std::string Le32(std::initializer_list<std::int64_t> values) {
  std::string bytes;
  for (const std::int64_t value : values) bytes += Le(value, 4);
  return bytes;
}

inline std::string Hex(std::string_view bytes) {
  std::string hex;
  for (const char c : bytes) {
    hex += "0123456789abcdef"[static_cast<unsigned char>(c) >> 4];
    hex += "0123456789ABCDEF"[static_cast<unsigned char>(c) & 15];
  }
  return hex;
}

// 2 x 1 pixels, red and blue, checksums and all.
inline const std::string kPng(
    "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\x02\0\0\0\x01\x08\x02\0\0\0\x7B\x40\xE8\xDD\0\0\0\r"
    "IDAT\x78\xDA\x63\xF8\xCF\0\x04\xFF\x01\x07\0\x01\xFF\x3D\x7D\x8C\x49\0\0\0\0"
    "IEND\xAE\x42\x60\x82",
    70);

// Start, an application block, and a frame of 300 x 200: enough for its size.
inline const std::string kJpeg("\xFF\xD8\xFF\xE0\0\x04xx\xFF\xC0\0\x11\x08\0\xC8\x01\x2C", 17);

// A bitmap without file header: masks or palette, then rows, as many as the header asks for.
inline std::string Dib(int width, int height, int bits, int compression = 0) {
  const int palette = bits <= 8 ? 4 << bits : compression == 3 ? 12 : 0;
  const int rows = (width * bits + 31) / 32 * 4 * (height < 0 ? -height : height);
  return Le32({40, width, height}) + Le(1, 2) + Le(bits, 2) + Le32({compression, 0, 0, 0, 0, 0}) +
         std::string(static_cast<std::size_t>(palette), '\x55') +
         std::string(static_cast<std::size_t>(rows), '\x11');
}

// A 16 bit metafile of one record whose bitmap follows `skip` bytes of other parameters.
inline std::string Wmf(int function, int skip, const std::string& dib) {
  const std::string parameters = std::string(static_cast<std::size_t>(skip), '\0') + dib;
  return Le(1, 2) + Le(9, 2) + std::string(14, '\0') + Le(4, 4) + Le(0x103, 2) + Le(8, 2) +
         Le((6 + static_cast<int>(parameters.size())) / 2, 4) + Le(function, 2) + parameters +
         Le(3, 4) + Le(0, 2);
}

// An enhanced metafile of one record; `at` is the place of its offsets to header and pixels.
inline std::string Emf(int type, int at, const std::string& dib) {
  const int info = 120;
  const int pixels = info + 40;
  const int size = info + static_cast<int>(dib.size());
  std::string record = Le32({type, size}) + std::string(static_cast<std::size_t>(info - 8), '\0');
  record.replace(static_cast<std::size_t>(at), 16, Le32({info, 40, pixels, size - pixels}));
  return Le32({1, 88}) + std::string(32, '\0') + " EMF" + std::string(44, '\0') + record + dib +
         Le32({14, 20, 0, 0, 20});
}

// Everything that the model can say.
inline RichText RichSample() {
  CharFormat plain;
  CharFormat loud{"Liberation Serif",         33,      true, true, true, true,
                  ScriptPosition::kSubscript, 0x123456};
  RichText text;
  AppendText(text, "Fit {of} \\3 sets\t1.5\r\nM = 5 \u20AC \u00B1 \u03C3 \U0001F600 \uFFFD\u2028b",
             plain);
  AppendText(text, " loud \u00E9", loud);
  AppendText(text, "-1 and\r\n\r\n", plain);
  AppendPicture(text, PictureFromFile(kPng));
  AppendPicture(text, PictureFromFile(kJpeg));
  Picture bitmap = PictureFromFile("BM" + Le32({70, 0, 62}) + Dib(3, -2, 1));
  bitmap.widthTwips = 777;
  AppendPicture(text, bitmap);
  loud.color.reset();
  loud.family = "\u0395\u03BB, \u00E9{";
  AppendText(text, "\nend\n", loud);
  text.paragraphs[1].format = {Alignment::kJustified, 720, -360, {100, 2000}};
  text.paragraphs.back().format.alignment = Alignment::kCenter;
  return text;
}

}  // namespace quorvane
