// The font and colour tables at the head of an RTF file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "rtf/code_page.h"

namespace quorvane {

inline constexpr std::size_t kMaxRtfFonts = 4096;
inline constexpr std::size_t kMaxRtfColors = 4096;
inline constexpr std::size_t kMaxFontName = 128;  // bytes of UTF-8

struct RtfFont {
  std::string family;  // UTF-8
  CodePage codePage = CodePage::kWestern;
};

// Filled by the words and texts of \fonttbl. Fonts past the limits, or with
// a longer name, are not taken.
class RtfFontTable {
 public:
  void Begin(int number, CodePage ansi);        // \fN; `ansi` is the document's own code page
  void SetCharset(int charset, CodePage ansi);  // \fcharsetN
  void SetCodePage(int number);                 // \cpgN
  void AddName(std::string_view bytes);         // ends the entry at every ';'
  void AddUnit(char16_t unit);                  // \uN in a name; halves of pairs are lost
  void EndEntry();                              // at the end of the table and of a group in it

  // Font `number`, or nullptr; valid until the next change. A symbol font has no family, since its
  // letters are to be shown as characters of an ordinary one.
  const RtfFont* Find(int number) const;

 private:
  std::map<int, RtfFont> fonts_;
  std::optional<int> open_;
  RtfFont font_;  // the open entry
};

// Filled by the words and texts of \colortbl.
class RtfColorTable {
 public:
  void SetPart(int shift, int value);    // 0 red, 8 green, 16 blue; 0 to 255
  void AddText(std::string_view bytes);  // an entry for every ';'

  // Colour `number` as 0x00BBGGRR; nothing for an automatic or missing one.
  std::optional<std::uint32_t> Find(int number) const;

 private:
  std::vector<std::optional<std::uint32_t>> colors_;
  std::optional<std::uint32_t> open_;
};

}  // namespace quorvane
