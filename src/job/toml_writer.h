// Writing TOML in an order that reads well: tables and keys come out as they are put in.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <toml++/toml.h>

namespace quorvane {

class TomlWriter {
 public:
  void Table(std::string_view name);  // "[name]"
  void Entry(std::string_view name);  // "[[name]]": one more of an array of tables
  void Comment(std::string_view text);

  // A key of the table begun last, or of the whole file before the first. Numbers are the shortest
  // texts that give them back, and texts are quoted as TOML wants it.
  template <class Value>
  void Key(std::string_view name, const Value& value) {
    Write(name, toml::value(value));
  }
  void Key(std::string_view name, std::string_view text) { Key(name, std::string(text)); }
  void Key(std::string_view name, const char* text) { Key(name, std::string(text)); }
  template <class Value>
  void Key(std::string_view name, const std::vector<Value>& values) {
    toml::array list;
    for (const Value& value : values) list.push_back(value);
    Write(name, list);
  }
  void Write(std::string_view name, const toml::node& value);
  void Numbers(std::string_view name, const std::vector<double>& values);  // on one line

  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

}  // namespace quorvane
