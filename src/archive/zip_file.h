// ZIP files in memory: a few members without folders.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "archive/experiment.h"

namespace quorvane {

struct ZipMember {
  std::string name;
  Bytes bytes;
};

// A member longer than this is refused before it is unpacked.
inline constexpr std::size_t kLongestMember = std::size_t{256} << 20U;

// Bytes that the comment of a ZIP file holds at most.
inline constexpr std::size_t kLongestComment = 65535;

// A ZIP file with the members, in order, deflated, and the comment (UTF-8, at most kLongestComment
// bytes). Equal members give equal bytes: the time of each is fixed. Throws ArchiveFault.
std::string WriteZip(const std::vector<ZipMember>& members, const std::string& comment = {});

// The comment of the ZIP file, whatever its bytes are. Throws ArchiveFault as ReadZip does.
std::string ReadZipComment(std::string_view zip);

// The members named in `wanted` that `zip` holds, in the order of `wanted`. Others are passed over.
// Throws ArchiveFault, naming the member, for bytes that are no whole ZIP file, a wrong check sum,
// a length that lies, an encrypted member or one above kLongestMember.
std::vector<ZipMember> ReadZip(std::string_view zip, const std::vector<std::string>& wanted);

}  // namespace quorvane
