#include "job/toml_writer.h"

#include <sstream>

#include "base/text.h"

namespace quorvane {

namespace {

// As few digits as give the number back; a point or exponent says that it is no integer.
std::string NumberText(double value) {
  const std::string text = ShortestText(value);
  return text.find_first_of(".eE") == std::string::npos ? text + ".0" : text;
}

std::string TextOf(const toml::node& value) {
  if (const auto* number = value.as_floating_point()) return NumberText(number->get());
  std::string text;
  if (const toml::array* list = value.as_array()) {
    for (const toml::node& entry : *list) text += (text.empty() ? "" : ", ") + TextOf(entry);
    return "[" + text + "]";
  }
  if (const toml::table* table = value.as_table()) {
    for (const auto& [key, entry] : *table) {
      text += (text.empty() ? " " : ", ") + std::string(key.str()) + " = " + TextOf(entry);
    }
    return "{" + text + " }";
  }
  constexpr toml::format_flags kFlags =  // "IP,RA", as everybody writes it
      toml::toml_formatter::default_flags & ~toml::format_flags::allow_literal_strings;
  std::ostringstream out;
  value.visit([&out](const auto& node) { out << toml::toml_formatter(node, kFlags); });
  return out.str();
}

}  // namespace

void TomlWriter::Table(std::string_view name) {
  text_ += (text_.empty() ? "[" : "\n[") + std::string(name) + "]\n";
}

void TomlWriter::Entry(std::string_view name) {
  text_ += (text_.empty() ? "[[" : "\n[[") + std::string(name) + "]]\n";
}

void TomlWriter::Comment(std::string_view text) {
  text_ += "# " + std::string(text) + "\n";
}

void TomlWriter::Numbers(std::string_view name, const std::vector<double>& values) {
  text_ += std::string(name) + " = [";
  for (std::size_t k = 0; k < values.size(); ++k) {
    text_ += (k == 0 ? "" : ",") + ShortestText(values[k]);
  }
  text_ += "]\n";
}

void TomlWriter::Write(std::string_view name, const toml::node& value) {
  text_ += std::string(name) + " = " + TextOf(value) + "\n";
}

}  // namespace quorvane
