#include "base/picture_format.h"

#include <string>

#include "base/text.h"

namespace quorvane {

std::optional<PictureFormat> PictureFormatFromText(std::string_view text) {
  const std::string name = ToLower(text);
  if (name == "png") return PictureFormat::kPng;
  if (name == "svg") return PictureFormat::kSvg;
  if (name == "pdf") return PictureFormat::kPdf;
  return std::nullopt;
}

}  // namespace quorvane
