// Strict reading of job tables: every key is known, of the right type and in its range, or the job
// is refused with file, line and key.
#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <toml++/toml.h>

namespace quorvane {

// A bad job; what() names file, line and key.
class JobFault : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A TOML file and its name for messages.
struct TomlFile {
  std::string name;
  toml::table table;
};

// Throws FileFault if it cannot be read, JobFault with the line if it is no TOML.
TomlFile ReadToml(const std::filesystem::path& path);

// The same of a text; `name` is for messages. Throws JobFault.
TomlFile ParseToml(std::string_view text, const std::string& name);

class TableReader {
 public:
  // `file` and `name` ("" for the whole job, else such as "fit") are for messages; `table` outlives
  // this.
  TableReader(std::string file, std::string name, const toml::table& table);

  bool Has(std::string_view key) const;
  bool IsText(std::string_view key) const;
  bool IsList(std::string_view key) const;

  // The value of a key, nothing if it is absent. Numbers are finite; an integer serves as one.
  std::optional<double> Number(std::string_view key);
  std::optional<int> Integer(std::string_view key);
  // One integer or a list of some; none if it is absent.
  std::vector<int> Integers(std::string_view key);
  std::optional<bool> Flag(std::string_view key);
  std::optional<std::string> Text(std::string_view key);
  std::optional<std::variant<int, std::string>> IntegerOrText(std::string_view key);
  // A text as it stands, a number as the shortest text that gives it back.
  std::optional<std::string> NumberOrText(std::string_view key);
  // The same of each element of a list, which has one at least.
  std::vector<std::string> NumbersOrTexts(std::string_view key);
  std::optional<std::vector<std::string>> Texts(std::string_view key);
  std::optional<std::vector<double>> Numbers(std::string_view key);
  // The lists of texts in a list, none if it is absent.
  std::vector<std::vector<std::string>> TextLists(std::string_view key);
  std::optional<std::pair<double, double>> Range(std::string_view key);
  std::vector<std::pair<double, double>> Ranges(std::string_view key);

  // The tables of an array of tables, none if it is absent.
  std::vector<TableReader> Tables(std::string_view key);
  std::optional<TableReader> Table(std::string_view key);

  // Refuses the job because of a key (or of the table, if it is absent).
  [[noreturn]] void Fail(std::string_view key, const std::string& why) const;

  // Refuses the job if it holds a key that nobody asked for.
  void RefuseUnknownKeys() const;

 private:
  const toml::node* Find(std::string_view key);
  std::vector<std::string> TextsOf(std::string_view key, const toml::node& node) const;
  std::string EntryOf(std::string_view key, const toml::node& node) const;
  double NumberOf(std::string_view key, const toml::node& node) const;
  int IntegerOf(std::string_view key, const toml::node& node) const;
  std::pair<double, double> RangeOf(std::string_view key, const toml::node& node) const;

  std::string file_;
  std::string name_;
  const toml::table* table_;
  std::set<std::string, std::less<>> asked_;
};

}  // namespace quorvane
