// The fit in a JSON file that `analyze` wrote, of this version or an earlier one.
#pragma once

#include <filesystem>

#include "stats/fit_summary.h"

namespace quorvane {

// What the file says of its finished fit. Where it has no "points_digest" or no "best_sum", they
// come from its curves; a file without curves has no runs and no known conditions. Throws
// FileFault, naming the file and what is wrong or missing in it.
FitSummary ReadFitFile(const std::filesystem::path& path);

}  // namespace quorvane
