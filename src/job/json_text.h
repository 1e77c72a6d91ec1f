// JSON as text, numbers with 17 significant digits.
#pragma once

#include <optional>
#include <string>

#include <nlohmann/json.hpp>

namespace quorvane {

using Json = nlohmann::ordered_json;

// The value, or null where there is none.
inline Json OrNull(const std::optional<double>& value) {
  return value ? Json(*value) : Json(nullptr);
}

// The text of a value, indented by two blanks, lists of numbers on one line; ends with \n. Numbers
// that are not finite never appear: they are written as null.
std::string JsonText(const Json& value);

}  // namespace quorvane
