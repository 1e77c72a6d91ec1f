// Writes a rich text as RTF.
#pragma once

#include <string>

#include "rtf/rich_text.h"

namespace quorvane {

// An RTF file: ASCII only, the same bytes for the same text. ReadRtf gives back an equal text if
// runs are not empty and neighbours differ in format, which AppendText sees to, if numbers are in
// their ranges, and font names have no ';' and no more than 128 bytes.
// Pictures stay what they are: PNG, JPEG, and BMP as a bitmap, its pixels at once behind the
// palette. A BMP file that is damaged becomes the text "[picture]".
std::string WriteRtf(const RichText& text);

}  // namespace quorvane
