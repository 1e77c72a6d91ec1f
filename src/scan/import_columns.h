// Which columns of a delimited text hold radius, signal and standard deviation, by their headings.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "scan/text_table.h"

namespace quorvane {

// Columns from 1 that headings name; the first of a kind counts.
struct HeadedColumns {
  std::optional<int> radius;
  std::optional<int> signal;
  std::optional<int> error;
  std::optional<int> reference;
};

// Headings such as "Radius (cm)", "A280", "Std. dev."; what is in brackets does not count.
HeadedColumns ColumnsNamedBy(const std::vector<std::string>& headings);

// The fields of a line of headings; without units of their own, such as "(cm)", between blanks.
std::vector<std::string> HeadingsOf(const std::string& line, Separator separator);

// Columns of the first line whose headings name radius and signal, whatever separates them.
HeadedColumns FindHeadedColumns(const std::vector<std::string>& lines);

}  // namespace quorvane
