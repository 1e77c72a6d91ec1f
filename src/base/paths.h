// Where a path leads, on disks and on the shares of a network. On Windows the standard library
// takes \\server\share for a folder of the current drive; these procedures do not.
#pragma once

#include <filesystem>

namespace quorvane {

// Whether the path means the same in every current folder.
bool IsWholePath(const std::filesystem::path& path);

// The same place as a whole path without "." and ".."; symbolic links stay. The path as it is if
// the system cannot tell.
std::filesystem::path WholePath(const std::filesystem::path& path);

// `path` as seen from `folder`: itself if it is whole.
std::filesystem::path PathIn(const std::filesystem::path& folder,
                             const std::filesystem::path& path);

// The whole path with its symbolic links followed as far as it exists; those of a share stay. The
// path as it is if the system cannot tell.
std::filesystem::path ResolvedPath(const std::filesystem::path& path);

}  // namespace quorvane
