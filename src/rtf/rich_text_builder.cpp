#include "rtf/rich_text_builder.h"

#include <string>
#include <utility>

#include "base/text.h"

namespace quorvane {

namespace {

bool IsHighHalf(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowHalf(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

std::string Utf8Of(char32_t c) {
  std::string utf8;
  AppendUtf8(utf8, c);
  return utf8;
}

}  // namespace

void RichTextBuilder::AddText(std::string_view utf8, const CharFormat& format) {
  FlushHalf();
  FlushCells();
  AddRun(utf8, format);
}

void RichTextBuilder::AddUnit(char16_t unit, const CharFormat& format) {
  if (IsLowHalf(unit) && highHalf_ != 0) {
    const char32_t pair = 0x10000 + ((char32_t{highHalf_} & 0x3FF) << 10 | (unit & 0x3FFu));
    highHalf_ = 0;
    AddText(Utf8Of(pair), format);
    return;
  }
  FlushHalf();
  if (IsHighHalf(unit)) {
    FlushCells();
    highHalf_ = unit;
    halfFormat_ = format;
  } else {
    AddText(Utf8Of(IsLowHalf(unit) ? kReplacement : unit), format);
  }
}

void RichTextBuilder::AddPicture(Picture picture) {
  FlushHalf();
  FlushCells();
  if (Full()) return;
  open_.items.emplace_back(std::move(picture));
  ++pieces_;
}

void RichTextBuilder::EndParagraph(const ParagraphFormat& shape, const CharFormat& markFormat) {
  FlushHalf();
  FlushCells();
  if (Full()) return;
  open_.format = shape;
  open_.markFormat = markFormat;
  text_.paragraphs.push_back(std::exchange(open_, {}));
  ++pieces_;
}

void RichTextBuilder::EndOpenParagraph(const ParagraphFormat& shape, const CharFormat& markFormat) {
  FlushHalf();
  if (!open_.items.empty() || cells_ > 0) EndParagraph(shape, markFormat);
}

void RichTextBuilder::EndCell(const CharFormat& format) {
  FlushHalf();
  ++cells_;
  cellFormat_ = format;
}

void RichTextBuilder::EndRow(const ParagraphFormat& shape, const CharFormat& markFormat) {
  if (cells_ > 0) --cells_;
  EndParagraph(shape, markFormat);
}

RichText RichTextBuilder::Take(const ParagraphFormat& shape, const CharFormat& markFormat) {
  FlushHalf();
  FlushCells();
  if (!open_.items.empty() || text_.paragraphs.empty()) {
    open_.format = shape;
    open_.markFormat = markFormat;
    text_.paragraphs.push_back(std::move(open_));
  }
  return std::move(text_);
}

void RichTextBuilder::AddRun(std::string_view utf8, const CharFormat& format) {
  if (Full()) return;
  const std::size_t before = open_.items.size();
  AppendRun(open_, utf8, format);
  pieces_ += open_.items.size() - before;
}

void RichTextBuilder::FlushHalf() {
  if (highHalf_ == 0) return;
  highHalf_ = 0;
  AddRun(Utf8Of(kReplacement), halfFormat_);
}

void RichTextBuilder::FlushCells() {
  if (cells_ == 0) return;
  AddRun(std::string(std::exchange(cells_, 0), '\t'), cellFormat_);
}

}  // namespace quorvane
