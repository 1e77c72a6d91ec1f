// Windows metafiles that wrap a bitmap, which is how rich edit controls keep pasted pictures.
#pragma once

#include <string>
#include <string_view>

namespace quorvane {

// The BMP file of the largest bitmap drawn by a metafile (16 bit, with or without its placeable
// header) or an enhanced metafile; nothing else of the drawing is kept.
// Throws PictureFault if there is no metafile or no usable bitmap in it.
std::string BmpFromWmf(std::string_view bytes);
std::string BmpFromEmf(std::string_view bytes);

}  // namespace quorvane
