// The rows of a delimited text as points of a scan.
#pragma once

#include <string>
#include <vector>

#include "scan/text_import.h"

namespace quorvane {

// Reads the rows of `lines` with the form, columns and width of `import` from its first row on, in
// rising order of the radius. What cannot be read is named; rows that make no scan give its state
// and fault.
void ReadImportRows(const std::vector<std::string>& lines, TextImport& import);

// Rising numbers as "3, 7-9".
std::string RangesText(const std::vector<std::size_t>& numbers);

// "1 row", "3 rows".
std::string Counted(std::size_t count, const char* what);

}  // namespace quorvane
