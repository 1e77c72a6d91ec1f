// The kinds of picture files that charts are written as.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace quorvane {

enum class PictureFormat { kPng, kSvg, kPdf };

// The format that a file suffix names: "png", "svg" or "pdf" in either case, without a dot.
std::optional<PictureFormat> PictureFormatFromText(std::string_view text);

// The format that the suffix of `file` names.
std::optional<PictureFormat> PictureFormatOf(const std::filesystem::path& file);

}  // namespace quorvane
