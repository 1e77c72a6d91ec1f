#include "base/picture_format.h"

#include <string>

#include "base/files.h"
#include "base/text.h"

namespace quorvane {

std::optional<PictureFormat> PictureFormatFromText(std::string_view text) {
  const std::string name = ToLower(text);
  if (name == "png") return PictureFormat::kPng;
  if (name == "svg") return PictureFormat::kSvg;
  if (name == "pdf") return PictureFormat::kPdf;
  return std::nullopt;
}

std::optional<PictureFormat> PictureFormatOf(const std::filesystem::path& file) {
  const std::string suffix = PathText(file.extension());
  return suffix.empty() ? std::nullopt : PictureFormatFromText(suffix.substr(1));
}

}  // namespace quorvane
