// Puts a rich text together piece by piece, as a reader meets the pieces, within limits.
#pragma once

#include <cstddef>
#include <string_view>

#include "rtf/rich_text.h"

namespace quorvane {

// Text runs, pictures and paragraphs together; a log of a long session has some 50,000.
inline constexpr std::size_t kMaxRichTextPieces = 500'000;

class RichTextBuilder {
 public:
  // Whether the limit is reached: then nothing more is taken.
  bool Full() const { return pieces_ >= kMaxRichTextPieces; }

  // UTF-8 text. Tabs and kLineSeparator are its only control characters.
  void AddText(std::string_view utf8, const CharFormat& format);

  // One unit of UTF-16: halves of a pair that follow each other become one character, a half alone
  // becomes U+FFFD.
  void AddUnit(char16_t unit, const CharFormat& format);

  void AddPicture(Picture picture);

  void EndParagraph(const ParagraphFormat& shape, const CharFormat& markFormat);

  // The same, unless the paragraph is empty.
  void EndOpenParagraph(const ParagraphFormat& shape, const CharFormat& markFormat);

  // The end of a table cell: a tab, unless the row ends there.
  void EndCell(const CharFormat& format);
  void EndRow(const ParagraphFormat& shape, const CharFormat& markFormat);

  // What was put together. A paragraph that was begun is ended; at least one comes back.
  RichText Take(const ParagraphFormat& shape, const CharFormat& markFormat);

 private:
  void AddRun(std::string_view utf8, const CharFormat& format);
  void FlushHalf();
  void FlushCells();

  RichText text_{{}, CharFormat{}.family};
  Paragraph open_;
  std::size_t pieces_ = 0;
  char16_t highHalf_ = 0;  // first half of a pair, waiting for the second
  CharFormat halfFormat_;
  std::size_t cells_ = 0;  // cell ends that are not tabs yet
  CharFormat cellFormat_;
};

}  // namespace quorvane
