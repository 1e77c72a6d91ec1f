// The words of RTF that shape characters and paragraphs by themselves, without a table.
#pragma once

#include <cstddef>

#include "rtf/rich_text.h"
#include "rtf/rtf_lexer.h"

namespace quorvane {

inline constexpr int kRtfPlainHalfPoints = 24;      // the size where none is given
inline constexpr std::size_t kMaxRtfTabStops = 64;  // of a paragraph

// The look of the text to come.
struct RtfFormat {
  CharFormat characters;
  ParagraphFormat paragraph;
  bool hidden = false;
};

// Changes `format` as `word` says; numbers are held within what the model allows. Any other word
// changes nothing.
void ApplyFormatWord(const RtfToken& word, RtfFormat& format);

}  // namespace quorvane
