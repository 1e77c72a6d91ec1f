#include "scan/import_columns.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

#include "base/text.h"

namespace quorvane {

namespace {

// "radius" of "Radius (cm)".
std::string Meaning(std::string_view heading) {
  heading = heading.substr(0, heading.find_first_of("([{"));
  std::string name;
  for (const char c : ToLower(heading)) {
    if (c != ' ' && c != '_' && c != '.' && c != '-') name += c;
  }
  return name;
}

template <std::size_t N>
bool IsOneOf(const std::string& name, const std::array<std::string_view, N>& names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool IsRadius(const std::string& name) {
  static constexpr std::array<std::string_view, 5> kNames = {"radius", "radiuscm", "r", "rcm",
                                                             "radialposition"};
  return IsOneOf(name, kNames);
}

bool IsError(const std::string& name) {
  static constexpr std::array<std::string_view, 9> kNames = {
      "error", "err", "sd", "std", "stdev", "stddev", "sigma", "standarddeviation", "uncertainty"};
  return IsOneOf(name, kNames);
}

bool IsReference(const std::string& name) {
  static constexpr std::array<std::string_view, 4> kNames = {"reference", "ref",
                                                             "referenceintensity", "solvent"};
  return IsOneOf(name, kNames);
}

bool IsSignal(const std::string& name) {
  static constexpr std::array<std::string_view, 10> kNames = {
      "signal", "absorbance", "abs",    "od",           "intensity",
      "c",      "fringes",    "fringe", "fluorescence", "sampleintensity"};
  const bool wavelength =  // a280
      name.size() > 1 && name.front() == 'a' &&
      std::all_of(name.begin() + 1, name.end(),
                  [](char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; });
  return wavelength || IsOneOf(name, kNames);
}

}  // namespace

HeadedColumns ColumnsNamedBy(const std::vector<std::string>& headings) {
  HeadedColumns columns;
  int number = 0;
  for (const std::string& heading : headings) {
    ++number;
    const std::string name = Meaning(heading);
    const auto take = [&](std::optional<int>& column, bool is) {
      if (is && !column) column = number;
    };
    take(columns.radius, IsRadius(name));
    take(columns.signal, IsSignal(name));
    take(columns.error, IsError(name));
    take(columns.reference, IsReference(name));
  }
  return columns;
}

std::vector<std::string> HeadingsOf(const std::string& line, Separator separator) {
  std::vector<std::string> headings = FieldsOf(line, separator);
  if (separator == Separator::kBlanks) {
    std::erase_if(headings, [](const std::string& word) {
      return word.front() == '(' || word.front() == '[';
    });
  }
  return headings;
}

HeadedColumns FindHeadedColumns(const std::vector<std::string>& lines) {
  constexpr std::size_t kDeepest = 40;
  for (std::size_t k = 0; k < std::min(lines.size(), kDeepest); ++k) {
    for (int s = 0; s < kSeparators; ++s) {
      const HeadedColumns columns = ColumnsNamedBy(HeadingsOf(lines[k], static_cast<Separator>(s)));
      if (columns.radius && columns.signal) return columns;
    }
  }
  return {};
}

}  // namespace quorvane
