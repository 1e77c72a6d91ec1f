// The tables of data/, built into the program.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorvane::tables {

extern const std::string_view kResidues;    // residues.csv
extern const std::string_view kBuffers;     // buffers.csv
extern const std::string_view kComponents;  // components.csv
extern const std::string_view kElements;    // elements.csv
extern const std::string_view kNotListed;   // not_listed.csv

// The rows of a table below its heading, as fields.
std::vector<std::vector<std::string>> RowsOf(std::string_view table);

}  // namespace quorvane::tables
