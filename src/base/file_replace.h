// A file put into the place of another that the user, or another program, may not let go.
#pragma once

#include <filesystem>
#include <system_error>

namespace quorvane {

// Whether the user has not forbidden by its rights, or on Windows its attribute, that `file` is
// replaced: a rename would not ask everywhere. If not, errno is EACCES.
bool MayReplace(const std::filesystem::path& file);

// Renames `from` to `to`, which it replaces. On Windows programs that look at every new file can
// bar this for a moment; it is tried for half a second.
std::error_code RenameOver(const std::filesystem::path& from, const std::filesystem::path& to);

// Whether `file` is open anywhere, which on Windows can bar reading it and bars replacing it;
// elsewhere false.
bool OpenElsewhere(const std::filesystem::path& file);

}  // namespace quorvane
