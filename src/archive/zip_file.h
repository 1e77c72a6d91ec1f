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

// A ZIP file with the members, in order, deflated. Equal members give equal bytes: the time of each
// is fixed. Throws ArchiveFault.
std::string WriteZip(const std::vector<ZipMember>& members);

// The members named in `wanted` that `zip` holds, in the order of `wanted`. Others are passed over.
// Throws ArchiveFault, naming the member, for bytes that are no whole ZIP file, a wrong check sum,
// a length that lies, an encrypted member or one above kLongestMember.
std::vector<ZipMember> ReadZip(std::string_view zip, const std::vector<std::string>& wanted);

}  // namespace quorvane
