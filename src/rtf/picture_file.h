// Picture files as pictures of a rich text.
#pragma once

#include <string>

#include "rtf/rich_text.h"

namespace quorvane {

// The picture whose file (PNG, JPEG, or BMP without compression) `bytes` are, told by its content,
// shown at 96 pixels an inch or, if that is wider or higher than kMaxTwips, in proportion.
// Only the headers are looked at. Throws PictureFault for anything else and for unusable sizes.
Picture PictureFromFile(std::string bytes);

}  // namespace quorvane
