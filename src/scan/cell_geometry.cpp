#include "scan/cell_geometry.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <optional>

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/text.h"

namespace quorvane {

namespace {

// Free-form fields of a text file, one after the other, with the line for messages.
class FieldReader {
 public:
  FieldReader(std::istream& in, std::string_view source) : in_(in), source_(source) {}

  std::string Text(std::string_view field) {
    SkipBlanks();
    fieldLine_ = line_;
    if (in_.peek() == kEnd) Fail(field, "the file ends here");
    std::string text = in_.peek() == '"' ? Quoted(field) : Plain(field);
    SkipSeparator();
    return text;
  }

  std::int16_t Int16(std::string_view field) {
    const double value = Number(field);
    try {
      return static_cast<std::int16_t>(RoundHalfEven(value, -32768, 32767));
    } catch (const ArithmeticFault&) {
      Fail(field, "the number is out of range");
    }
  }

  float Single(std::string_view field) {
    const double value = Number(field);
    if (std::fabs(value) > 3.4028234e38) Fail(field, "the number is out of range");
    return static_cast<float>(value);
  }

 private:
  static constexpr int kEnd = std::istream::traits_type::eof();
  static constexpr std::size_t kLongest = 256;

  double Number(std::string_view field) {
    const std::string text = Text(field);
    const std::optional<double> value = ParseNumeric(text);
    if (!value) Fail(field, "\"" + text + "\" is not a number");
    return *value;
  }

  int Get() {
    const int c = in_.get();
    if (c == '\n') ++line_;
    return c;
  }

  static bool IsBlank(int c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

  void SkipBlanks() {
    while (IsBlank(in_.peek())) Get();
  }

  // Blanks behind a field, and one comma.
  void SkipSeparator() {
    SkipBlanks();
    if (in_.peek() == ',') Get();
  }

  std::string Plain(std::string_view field) {
    std::string text;
    while (in_.peek() != kEnd && in_.peek() != ',' && !IsBlank(in_.peek())) {
      text += static_cast<char>(Get());
      if (text.size() > kLongest) Fail(field, "it is longer than 256 characters");
    }
    return text;
  }

  std::string Quoted(std::string_view field) {
    Get();
    std::string text;
    while (in_.peek() != '"') {
      if (in_.peek() == kEnd || in_.peek() == '\n') Fail(field, "the closing quote is missing");
      text += static_cast<char>(Get());
      if (text.size() > kLongest) Fail(field, "it is longer than 256 characters");
    }
    Get();
    return text;
  }

  [[noreturn]] void Fail(std::string_view field, const std::string& why) const {
    throw FileFault(std::string(source_) + ", line " + std::to_string(fieldLine_) + ", " +
                    std::string(field) + ": " + why);
  }

  std::istream& in_;
  std::string_view source_;
  int line_ = 1;
  int fieldLine_ = 1;  // where the field at hand begins
};

CellGeometry ReadGeometry(FieldReader& fields) {
  CellGeometry geometry;
  geometry.number = fields.Int16("number of the geometry");
  const int pairs = fields.Int16("number of pairs");
  if (pairs > kMaxGeometryPairs) throw SubscriptFault();
  geometry.name = Cp1252ToUtf8(fields.Text("name"));
  geometry.r.reserve(static_cast<std::size_t>(std::max(pairs, 0)));
  geometry.f.reserve(static_cast<std::size_t>(std::max(pairs, 0)));
  for (int k = 0; k < pairs; ++k) {
    geometry.r.push_back(fields.Single("radius"));
    geometry.f.push_back(fields.Single("factor"));
  }
  return geometry;
}

}  // namespace

std::vector<CellGeometry> ReadCellGeometries(std::istream& in, std::string_view source) {
  FieldReader fields(in, source);
  const int count = fields.Int16("number of geometries");
  if (count > kMaxCellGeometries) throw SubscriptFault();
  std::vector<CellGeometry> geometries;
  for (int k = 0; k < count; ++k) geometries.push_back(ReadGeometry(fields));
  return geometries;
}

std::vector<CellGeometry> LoadCellGeometries(const std::filesystem::path& path) {
  if (!FileExists(path)) return {};
  std::ifstream in(path, std::ios::binary);
  if (!in) throw FileFault(PathText(path) + ": cannot be read");
  return ReadCellGeometries(in, PathText(path));
}

double getFofR(double r, int geometry, const std::vector<CellGeometry>& geometries,
               std::int32_t& outBelow, std::int32_t& outAbove) {
  outBelow = 0;
  outAbove = 0;
  if (geometry < 0 || geometry >= static_cast<int>(geometries.size())) throw SubscriptFault();
  const std::vector<float>& x = geometries[static_cast<std::size_t>(geometry)].r;
  const std::vector<float>& y = geometries[static_cast<std::size_t>(geometry)].f;
  if (x.empty()) throw SubscriptFault();
  const auto single = static_cast<float>(r);
  if (single < x.front()) {
    outBelow = 1;
    return y.front();
  }
  if (single > x.back()) {
    outAbove = 1;
    return y.back();
  }
  if (x.size() == 1) return y.front();
  std::size_t j = 1;
  while (j + 1 < x.size() && single > x[j]) ++j;
  const double low = x[j - 1];
  const double yLow = y[j - 1];
  return yLow + (y[j] - yLow) * (r - low) / (x[j] - low);
}

float CalcRefRadius(const Dataset& dataset) {
  double first = 0.0;
  double last = 0.0;
  const auto count = static_cast<std::size_t>(dataset.NumPoints);
  for (std::size_t k = 0; k < count; ++k) {
    if (dataset.Err[k] > 0.0) {
      first = dataset.R[k];
      break;
    }
  }
  for (std::size_t k = count; k > 0; --k) {
    if (dataset.Err[k - 1] > 0.0) {
      last = dataset.R[k - 1];
      break;
    }
  }
  return static_cast<float>(first + 2.0 * (last - first) / 3.0);
}

}  // namespace quorvane
