#include "job/json_text.h"

#include <array>
#include <charconv>
#include <cmath>

namespace quorvane {

namespace {

void Write(const Json& value, std::size_t depth, std::string& out);

void WriteNumber(double value, std::string& out) {
  if (!std::isfinite(value)) {
    out += "null";
    return;
  }
  std::array<char, 40> text{};
  const auto result = std::to_chars(text.data(), text.data() + text.size(), value,
                                    std::chars_format::scientific, 16);
  out.append(text.data(), result.ptr);
}

void BreakLine(std::size_t depth, std::string& out) {
  out += '\n';
  out.append(2 * depth, ' ');
}

void WriteObject(const Json& value, std::size_t depth, std::string& out) {
  out += '{';
  bool first = true;
  for (const auto& [key, member] : value.items()) {
    if (!first) out += ',';
    first = false;
    BreakLine(depth + 1, out);
    out += Json(key).dump() + ": ";
    Write(member, depth + 1, out);
  }
  if (!first) BreakLine(depth, out);
  out += '}';
}

void WriteArray(const Json& value, std::size_t depth, std::string& out) {
  const bool lines = !value.empty() && value.front().is_structured();
  out += '[';
  bool first = true;
  for (const Json& element : value) {
    if (!first) out += lines ? "," : ", ";
    first = false;
    if (lines) BreakLine(depth + 1, out);
    Write(element, depth + 1, out);
  }
  if (lines) BreakLine(depth, out);
  out += ']';
}

void Write(const Json& value, std::size_t depth, std::string& out) {
  if (value.is_object()) {
    WriteObject(value, depth, out);
  } else if (value.is_array()) {
    WriteArray(value, depth, out);
  } else if (value.is_number_float()) {
    WriteNumber(value.get<double>(), out);
  } else {
    out += value.dump(-1, ' ', false, Json::error_handler_t::replace);
  }
}

}  // namespace

std::string JsonText(const Json& value) {
  std::string out;
  Write(value, 0, out);
  out += '\n';
  return out;
}

}  // namespace quorvane
