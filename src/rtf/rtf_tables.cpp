#include "rtf/rtf_tables.h"

#include <algorithm>
#include <utility>

#include "base/text.h"

namespace quorvane {

namespace {

// A font name; that of a symbol font or an unknown code page is taken for Western.
std::string DecodedName(std::string_view bytes, CodePage page) {
  const bool known =
      page == CodePage::kCentralEuropean || page == CodePage::kCyrillic || page == CodePage::kGreek;
  return DecodedText(bytes, known ? page : CodePage::kWestern);
}

}  // namespace

void RtfFontTable::Begin(int number, CodePage ansi) {
  EndEntry();
  open_ = number;
  font_.codePage = ansi;
}

void RtfFontTable::SetCharset(int charset, CodePage ansi) {
  font_.codePage = CodePageOfCharset(charset, ansi);
}

void RtfFontTable::SetCodePage(int number) {
  font_.codePage = CodePageOfNumber(number);
}

void RtfFontTable::AddName(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find(';'), bytes.size());
    if (font_.family.size() <= kMaxFontName) {
      font_.family += DecodedName(bytes.substr(0, std::min(end, kMaxFontName + 1)), font_.codePage);
    }
    if (end == bytes.size()) return;
    EndEntry();
    bytes.remove_prefix(end + 1);
  }
}

void RtfFontTable::AddUnit(char16_t unit) {
  const bool half = unit >= 0xD800 && unit <= 0xDFFF;
  if (font_.family.size() <= kMaxFontName) AppendUtf8(font_.family, half ? U'\uFFFD' : unit);
}

void RtfFontTable::EndEntry() {
  RtfFont font = std::exchange(font_, {});
  const std::optional<int> number = std::exchange(open_, std::nullopt);
  std::erase_if(font.family,
                [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
  const std::string name(Trim(font.family));
  if (!number || name.empty() || name.size() > kMaxFontName) return;
  if (fonts_.size() >= kMaxRtfFonts) return;
  font.family = name;
  if (font.codePage == CodePage::kDingbats) {
    if (ToLower(name).starts_with("symbol")) font.codePage = CodePage::kSymbol;
    font.family.clear();
  }
  fonts_[*number] = std::move(font);
}

const RtfFont* RtfFontTable::Find(int number) const {
  const auto found = fonts_.find(number);
  return found == fonts_.end() ? nullptr : &found->second;
}

void RtfColorTable::SetPart(int shift, int value) {
  const auto part = static_cast<std::uint32_t>(std::clamp(value, 0, 255));
  open_ = (open_.value_or(0) & ~(0xFFu << shift)) | part << shift;
}

void RtfColorTable::AddText(std::string_view bytes) {
  for (const char c : bytes) {
    if (c == ';' && colors_.size() < kMaxRtfColors) {
      colors_.push_back(std::exchange(open_, std::nullopt));
    }
  }
}

std::optional<std::uint32_t> RtfColorTable::Find(int number) const {
  if (number < 0 || static_cast<std::size_t>(number) >= colors_.size()) return std::nullopt;
  return colors_[static_cast<std::size_t>(number)];
}

}  // namespace quorvane
