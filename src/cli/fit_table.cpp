#include "cli/fit_table.h"

#include <array>
#include <charconv>

namespace {

// A text as a field: in quotes if it holds a separator, quotes doubled.
std::string TextField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

std::string NumberField(double value) {
  std::array<char, 40> text{};
  const auto result =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 17);
  return {text.data(), result.ptr};
}

}  // namespace

std::string FitTable(const FitState& fit, const std::vector<Dataset>& datasets) {
  std::string table = "dataset,name,radius,signal,fitted,residual\r\n";
  for (int i = 1; i <= fit.FitNumPoints; ++i) {
    if (fit.PointKind(i) != 0) continue;
    const auto place =
        static_cast<std::size_t>(fit.FitSetList[static_cast<std::size_t>(fit.FitSet(i) - 1)]);
    table += std::to_string(place + 1) + ',' + TextField(NameOf(datasets[place])) + ',' +
             NumberField(fit.FitR(i)) + ',' + NumberField(fit.FitY(i)) + ',' +
             NumberField(fit.FitYCalc(i)) + ',' + NumberField(fit.FitY(i) - fit.FitYCalc(i)) +
             "\r\n";
  }
  return table;
}
