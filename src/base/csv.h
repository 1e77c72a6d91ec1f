// Fields of comma-separated tables (RFC 4180).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

// A text as a field: in quotes, its own quotes doubled, if it holds a separator.
std::string CsvText(std::string_view text);

// A number with 17 significant digits and a decimal point: it reads back as the same double.
std::string CsvNumber(double value);

// The fields of one line of such a table, without their quotes. A quote that is not closed holds
// all that is left.
std::vector<std::string> CsvFields(std::string_view line);

}  // namespace quorvane
