// Reads RTF as rich edit controls and word processors write it.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "rtf/rich_text.h"

namespace quorvane {

// Bytes that are no RTF; what() says what is wrong and at which byte.
class RtfFault : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Stands in the text for a picture that is damaged or of a kind that is not understood.
inline constexpr std::string_view kPicturePlaceholder = "[picture]";

// Limits that hold whatever a file says. What lies past them is left out with a warning.
inline constexpr std::size_t kMaxRtfDepth = 256;                 // groups inside each other
inline constexpr std::size_t kMaxRtfPictures = 2000;             // in a file
inline constexpr std::size_t kMaxRtfPictureTotal = 512'000'000;  // bytes of all pictures
inline constexpr std::size_t kMaxRtfPixelTotal = 256'000'000;    // pixels of all pictures
inline constexpr std::size_t kMaxRtfWarnings = 20;

struct RtfDocument {
  RichText text;
  std::vector<std::string> warnings;  // what is damaged or left out, and at which byte
};

// The text of an RTF file. What the model has no place for is left out: headers, footnotes, hidden
// text, styles, field codes; a table becomes lines with tabs between the cells. Letters of the
// Symbol font become the characters that they showed, in the document's default font.
// A truncated or damaged file gives what could be read, with warnings.
// Throws RtfFault if `bytes` do not begin with "{\rtf".
RtfDocument ReadRtf(std::string_view bytes);

}  // namespace quorvane
