// Writes a rich text as RTF.
#pragma once

#include <string>

#include "rtf/rich_text.h"

// An RTF file: ASCII only, the same bytes for the same text. ReadRtf gives back an equal text if
// its runs are not empty and neighbours differ in format, which AppendText and ReadRtf see to;
// pixels of a BMP that stand apart from its palette are moved up to it. Pictures stay what they
// are: PNG, JPEG, and BMP as a bitmap. One whose BMP file is damaged becomes the text "[picture]".
std::string WriteRtf(const RichText& text);
