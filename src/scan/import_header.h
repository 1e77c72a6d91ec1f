// The header of a scan file to be: of choices, of a header line in the text, or defaults.
#pragma once

#include <string>
#include <vector>

#include "scan/text_import.h"

namespace quorvane {

// The bounds within which a scan file has room for header values.
inline constexpr double kMostCell = 8.0;
inline constexpr double kMostSpeed = 99999.0;     // rpm
inline constexpr double kMostWavelength = 999.0;  // nm
inline constexpr double kMostTemperature = 99.9;  // deg C
inline constexpr std::size_t kMostComment = 200;  // characters

// Fills header and comment of `import` and remarks what nobody said. Whether the text has a header
// line, as a scan does. `source` and `target` as for UnderstandText.
bool TakeImportHeader(const std::vector<std::string>& lines, const ImportChoices& choices,
                      const std::filesystem::path& source, const std::filesystem::path& target,
                      TextImport& import);

}  // namespace quorvane
