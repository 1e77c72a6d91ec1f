// SHA-256, the digest by which readers of a report tell that they hold the same file.
#pragma once

#include <string>
#include <string_view>

namespace quorvane {

// The digest of `bytes` as 64 lower-case hexadecimal digits (FIPS 180-4).
std::string Sha256(std::string_view bytes);

}  // namespace quorvane
