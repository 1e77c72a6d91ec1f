// Columns of the tables that commands print.
#pragma once

#include <cstddef>
#include <string>

#include "base/text.h"

namespace quorvane {

// Characters of a UTF-8 text.
inline std::size_t WidthOf(const std::string& text) {
  return Utf8ToCp1252(text).size();
}

// `text` (UTF-8) filled up to `width` characters; `right`: from the left side, as for numbers.
inline std::string TextColumn(const std::string& text, std::size_t width, bool right) {
  const std::size_t length = WidthOf(text);
  const std::string blanks(width > length ? width - length : 0, ' ');
  return right ? blanks + text : text + blanks;
}

}  // namespace quorvane
