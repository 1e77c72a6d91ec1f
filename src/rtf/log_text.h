// A log out of the bytes that an archive keeps.
#pragma once

#include <string_view>

#include "rtf/rich_text.h"

namespace quorvane {

struct LoadedLog {
  RichText text;  // ends behind a line end if it has any text, so that new lines stand alone
  bool understood = true;
};

// The log in `bytes`; an empty one for no bytes. What is no RTF file comes as plain text
// (Windows-1252) in `plain`, not understood.
LoadedLog ReadLog(std::string_view bytes, const CharFormat& plain);

}  // namespace quorvane
