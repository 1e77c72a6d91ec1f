// One-byte character sets of RTF text. Those of Western and Central Europe, Cyrillic, Greek and the
// Symbol font are known; from any other only ASCII is.
#pragma once

#include <string>
#include <string_view>

namespace quorvane {

enum class CodePage {
  kWestern,          // Windows-1252
  kCentralEuropean,  // Windows-1250
  kCyrillic,         // Windows-1251
  kGreek,            // Windows-1253
  kSymbol,           // the Symbol font: Greek letters and signs
  kDingbats,         // a font of pictures: no code has a character
  kUnknown,          // ASCII, then characters that are not known
};

// The code page that \ansicpg or \cpg numbers.
CodePage CodePageOfNumber(int number);

// The code page of a font's \fcharset; `document` is that of the default charset 1. Any symbol font
// gives kDingbats: which of them it is, the font's name tells.
CodePage CodePageOfCharset(int charset, CodePage document);

// `bytes` as UTF-8; what has no known character becomes U+FFFD.
std::string DecodedText(std::string_view bytes, CodePage page);

}  // namespace quorvane
