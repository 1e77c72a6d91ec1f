#include "job/toml_writer.h"

#include <sstream>

namespace quorvane {

void TomlWriter::Table(std::string_view name) {
  text_ += (text_.empty() ? "[" : "\n[") + std::string(name) + "]\n";
}

void TomlWriter::Entry(std::string_view name) {
  text_ += (text_.empty() ? "[[" : "\n[[") + std::string(name) + "]]\n";
}

void TomlWriter::Comment(std::string_view text) {
  text_ += "# " + std::string(text) + "\n";
}

void TomlWriter::Write(std::string_view name, const toml::node& value) {
  std::ostringstream out;
  constexpr toml::format_flags kFlags =  // "IP,RA", as everybody writes it
      toml::toml_formatter::default_flags & ~toml::format_flags::allow_literal_strings;
  value.visit([&out](const auto& node) { out << toml::toml_formatter(node, kFlags); });
  text_ += std::string(name) + " = " + out.str() + "\n";
}

}  // namespace quorvane
