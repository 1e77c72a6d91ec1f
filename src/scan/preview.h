// A look at a scan file before it is loaded.
#pragma once

#include <filesystem>
#include <optional>

#include "base/chart.h"

namespace quorvane {

class Host;

// The rows of a scan file as one blue line, without titles; no radial window applies. Line 1 is
// passed over, then all lines up to the first that begins with P, R, F or E: so a file with more
// than one comment line previews well and yet loads badly. The last row is left out: kept on
// purpose. Values are in single precision.
// Nothing, and a message, for fewer than 10 rows, and for a file that cannot be read, has no header
// or more than 2048 rows.
std::optional<Chart> PreviewFile(const std::filesystem::path& path, Host& host);

}  // namespace quorvane
