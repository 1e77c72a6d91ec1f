// Fields of comma-separated tables (RFC 4180).
#pragma once

#include <string>
#include <string_view>

namespace quorvane {

// A text as a field: in quotes, its own quotes doubled, if it holds a separator.
std::string CsvText(std::string_view text);

// A number with 17 significant digits and a decimal point: it reads back as the same double.
std::string CsvNumber(double value);

}  // namespace quorvane
