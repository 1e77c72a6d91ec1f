#include "job/toml_reader.h"

#include <cmath>
#include <limits>

#include "base/files.h"
#include "base/text.h"

namespace quorvane {

TomlFile ReadToml(const std::filesystem::path& path) {
  constexpr std::size_t kLongest = 16U << 20U;  // bytes
  return ParseToml(ReadWholeFile(path, kLongest), PathText(path));
}

TomlFile ParseToml(std::string_view text, const std::string& name) {
  try {
    return {name, toml::parse(text, name)};
  } catch (const toml::parse_error& error) {
    throw JobFault(name + ":" + std::to_string(error.source().begin.line) + ": " +
                   std::string(error.description()));
  }
}

TableReader::TableReader(std::string file, std::string name, const toml::table& table)
    : file_(std::move(file)), name_(std::move(name)), table_(&table) {}

bool TableReader::IsText(std::string_view key) const {
  const toml::node* node = table_->get(key);
  return node != nullptr && node->is_string();
}

bool TableReader::IsList(std::string_view key) const {
  const toml::node* node = table_->get(key);
  return node != nullptr && node->is_array();
}

bool TableReader::Has(std::string_view key) const {
  return table_->contains(key);
}

std::optional<double> TableReader::Number(std::string_view key) {
  const toml::node* node = Find(key);
  if (node == nullptr) return std::nullopt;
  return NumberOf(key, *node);
}

std::optional<int> TableReader::Integer(std::string_view key) {
  const toml::node* node = Find(key);
  if (node == nullptr) return std::nullopt;
  return IntegerOf(key, *node);
}

std::vector<int> TableReader::Integers(std::string_view key) {
  const toml::node* node = Find(key);
  if (node == nullptr) return {};
  const toml::array* array = node->as_array();
  if (array == nullptr) return {IntegerOf(key, *node)};
  if (array->empty()) Fail(key, "at least one number is wanted");
  std::vector<int> integers;
  for (const toml::node& element : *array) integers.push_back(IntegerOf(key, element));
  return integers;
}

std::optional<bool> TableReader::Flag(std::string_view key) {
  const toml::node* node = Find(key);
  if (node == nullptr) return std::nullopt;
  const toml::value<bool>* value = node->as_boolean();
  if (value == nullptr) Fail(key, "true or false is wanted");
  return value->get();
}

std::optional<std::string> TableReader::Text(std::string_view key) {
  const toml::node* node = Find(key);
  if (node == nullptr) return std::nullopt;
  const toml::value<std::string>* value = node->as_string();
  if (value == nullptr) Fail(key, "a text in quotes is wanted");
  return value->get();
}

std::optional<std::variant<int, std::string>> TableReader::IntegerOrText(std::string_view key) {
  const toml::node* node = Find(key);
  if (node == nullptr) return std::nullopt;
  if (node->is_string()) return *Text(key);
  return *Integer(key);
}

std::string TableReader::EntryOf(std::string_view key, const toml::node& node) const {
  if (const toml::value<std::string>* text = node.as_string()) return text->get();
  if (const toml::value<std::int64_t>* value = node.as_integer()) {
    return std::to_string(value->get());
  }
  return ShortestText(NumberOf(key, node));
}

std::optional<std::string> TableReader::NumberOrText(std::string_view key) {
  const toml::node* node = Find(key);
  if (node == nullptr) return std::nullopt;
  return EntryOf(key, *node);
}

std::vector<std::string> TableReader::NumbersOrTexts(std::string_view key) {
  const toml::node* node = Find(key);
  const toml::array* array = node == nullptr ? nullptr : node->as_array();
  if (array == nullptr || array->empty()) Fail(key, "a list of numbers is wanted");
  std::vector<std::string> entries;
  for (const toml::node& element : *array) entries.push_back(EntryOf(key, element));
  return entries;
}

std::vector<std::string> TableReader::TextsOf(std::string_view key, const toml::node& node) const {
  const toml::array* array = node.as_array();
  if (array == nullptr) Fail(key, "a list of texts is wanted");
  std::vector<std::string> texts;
  for (const toml::node& element : *array) {
    const toml::value<std::string>* value = element.as_string();
    if (value == nullptr) Fail(key, "a list of texts is wanted");
    texts.push_back(value->get());
  }
  return texts;
}

std::optional<std::vector<std::string>> TableReader::Texts(std::string_view key) {
  const toml::node* node = Find(key);
  if (node == nullptr) return std::nullopt;
  return TextsOf(key, *node);
}

std::vector<std::vector<std::string>> TableReader::TextLists(std::string_view key) {
  std::vector<std::vector<std::string>> lists;
  const toml::node* node = Find(key);
  if (node == nullptr) return lists;
  const toml::array* array = node->as_array();
  if (array == nullptr) Fail(key, "a list of lists of texts is wanted");
  for (const toml::node& element : *array) lists.push_back(TextsOf(key, element));
  return lists;
}

std::optional<std::vector<double>> TableReader::Numbers(std::string_view key) {
  const toml::node* node = Find(key);
  if (node == nullptr) return std::nullopt;
  const toml::array* array = node->as_array();
  if (array == nullptr) Fail(key, "a list of numbers is wanted");
  std::vector<double> numbers;
  for (const toml::node& element : *array) numbers.push_back(NumberOf(key, element));
  return numbers;
}

std::optional<std::pair<double, double>> TableReader::Range(std::string_view key) {
  const toml::node* node = Find(key);
  if (node == nullptr) return std::nullopt;
  return RangeOf(key, *node);
}

std::vector<std::pair<double, double>> TableReader::Ranges(std::string_view key) {
  std::vector<std::pair<double, double>> ranges;
  const toml::node* node = Find(key);
  if (node == nullptr) return ranges;
  const toml::array* array = node->as_array();
  if (array == nullptr) Fail(key, "a list of ranges, such as [[6.40, 6.41]], is wanted");
  for (const toml::node& element : *array) ranges.push_back(RangeOf(key, element));
  return ranges;
}

std::vector<TableReader> TableReader::Tables(std::string_view key) {
  std::vector<TableReader> tables;
  const toml::node* node = Find(key);
  if (node == nullptr) return tables;
  const toml::array* array = node->as_array();
  if (array == nullptr) Fail(key, "tables, each headed [[" + std::string(key) + "]], are wanted");
  for (const toml::node& element : *array) {
    const toml::table* table = element.as_table();
    if (table == nullptr) {
      Fail(key, "tables, each headed [[" + std::string(key) + "]], are wanted");
    }
    tables.emplace_back(file_, std::string(key), *table);
  }
  return tables;
}

std::optional<TableReader> TableReader::Table(std::string_view key) {
  const toml::node* node = Find(key);
  if (node == nullptr) return std::nullopt;
  const toml::table* table = node->as_table();
  if (table == nullptr) Fail(key, "a table is wanted");
  return TableReader(file_, name_.empty() ? std::string(key) : name_ + "." + std::string(key),
                     *table);
}

void TableReader::Fail(std::string_view key, const std::string& why) const {
  const toml::node* node = table_->get(key);
  const auto line = (node != nullptr ? node->source() : table_->source()).begin.line;
  std::string place = file_ + ":" + (line > 0 ? std::to_string(line) + ":" : "") + " ";
  if (!name_.empty()) place += name_ + ".";
  throw JobFault(place + std::string(key) + ": " + why);
}

void TableReader::RefuseUnknownKeys() const {
  for (const auto& [key, node] : *table_) {
    if (!asked_.contains(key.str())) Fail(key.str(), "there is no such key here");
  }
}

const toml::node* TableReader::Find(std::string_view key) {
  asked_.emplace(key);
  return table_->get(key);
}

int TableReader::IntegerOf(std::string_view key, const toml::node& node) const {
  const toml::value<std::int64_t>* value = node.as_integer();
  if (value == nullptr) Fail(key, "an integer is wanted");
  if (value->get() < std::numeric_limits<int>::min() ||
      value->get() > std::numeric_limits<int>::max()) {
    Fail(key, "the number is out of range");
  }
  return static_cast<int>(value->get());
}

double TableReader::NumberOf(std::string_view key, const toml::node& node) const {
  const std::optional<double> value = node.is_number() ? node.value<double>() : std::nullopt;
  if (!value) Fail(key, "a number is wanted");
  if (!std::isfinite(*value)) Fail(key, "the number is not finite");
  return *value;
}

std::pair<double, double> TableReader::RangeOf(std::string_view key, const toml::node& node) const {
  const toml::array* array = node.as_array();
  if (array == nullptr || array->size() != 2) {
    Fail(key, "a range of two radii, such as [6.40, 6.60], is wanted");
  }
  const std::pair<double, double> range = {NumberOf(key, (*array)[0]), NumberOf(key, (*array)[1])};
  if (range.first > range.second) Fail(key, "the range must rise");
  return range;
}

}  // namespace quorvane
