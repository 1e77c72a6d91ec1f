#include "fit/figure_words.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <map>

#include "scan/dataset_channel.h"
#include "scan/file_check.h"
#include "scan/header_words.h"

namespace quorvane {

namespace {

constexpr const char* kMicro = "\xC2\xB5";
constexpr const char* kMinus = "\xE2\x88\x92";

// "absorbance", "fringes"; empty for what is none of them.
std::string_view QuantityOf(const Dataset& dataset) {
  const std::string header = Comment2Of(dataset);
  const std::optional<HeaderWords> words = ReadHeaderWords(header);
  if (!words) return {};
  const char letter = static_cast<char>(std::toupper(static_cast<unsigned char>(words->kind)));
  if (letter == 'P') return "fringes";  // what interference counts
  return letter == 'W' ? std::string_view() : SignalOfLetter(letter);
}

// That of all datasets; "signal" if they differ.
std::string CommonQuantity(const std::vector<const Dataset*>& datasets) {
  std::string_view common;
  for (const Dataset* dataset : datasets) {
    const std::string_view quantity = QuantityOf(*dataset);
    if (quantity.empty() || (!common.empty() && quantity != common)) return "signal";
    common = quantity;
  }
  return common.empty() ? "signal" : std::string(common);
}

std::string Formatted(const char* pattern, int decimals, double value) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), pattern, decimals, value);
  return text.data();
}

// Two significant digits, or all before the point: "5.1 µM", "120 nM".
std::string MolarText(double molar) {
  constexpr std::array<const char*, 5> kPrefixes = {"", "m", kMicro, "n", "p"};
  constexpr double kStep = 1000.0;
  constexpr double kRoundsUp = 0.9995;  // of the next larger unit
  std::size_t unit = 0;
  double value = molar;
  while (value < kRoundsUp && unit + 1 < kPrefixes.size()) {
    value *= kStep;
    ++unit;
  }
  const int decimals = value >= 9.95 ? 0 : value >= 0.995 ? 1 : 2;
  return Formatted("%.*f ", decimals, value) + kPrefixes[unit] + "M";
}

// The curve at the reference radius, where FitX is 0, on the line between the points beside it.
std::optional<double> SignalAtReference(const FitState& fit, int d) {
  int below = 0, above = 0;
  const int first = fit.SetFirstPoint(d);
  for (int i = first; i < first + fit.SetPointCount(d); ++i) {
    if (fit.PointKind(i) != 0) continue;
    if (fit.FitX(i) <= 0.0 && (below == 0 || fit.FitX(i) > fit.FitX(below))) below = i;
    if (fit.FitX(i) >= 0.0 && (above == 0 || fit.FitX(i) < fit.FitX(above))) above = i;
  }
  if (below == 0 || above == 0) return std::nullopt;
  const double span = fit.FitX(above) - fit.FitX(below);
  const double share = span > 0.0 ? -fit.FitX(below) / span : 0.0;
  return std::lerp(fit.FitYCalc(below), fit.FitYCalc(above), share) - fit.FitA(d);
}

}  // namespace

std::optional<int> CommonWavelength(const std::vector<const Dataset*>& datasets) {
  constexpr int kOneSetting = 2;  // nm
  std::map<int, int> uses;
  for (const Dataset* dataset : datasets) ++uses[dataset->Wavelength];
  if (uses.empty() || uses.begin()->first <= 0) return std::nullopt;
  if (uses.rbegin()->first - uses.begin()->first > kOneSetting) return std::nullopt;
  const auto rarer = [](const auto& one, const auto& other) { return one.second < other.second; };
  return std::max_element(uses.begin(), uses.end(), rarer)->first;
}

std::string SignalTitle(const std::vector<const Dataset*>& datasets) {
  std::string title = CommonQuantity(datasets);
  const bool absorbance = title == "absorbance";
  title.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(title.front())));
  const std::optional<int> wavelength = CommonWavelength(datasets);
  if (absorbance && wavelength) title += " at " + std::to_string(*wavelength) + " nm";
  return title;
}

std::string LogSignalTitle(const std::vector<const Dataset*>& datasets) {
  return "ln(" + CommonQuantity(datasets) + ' ' + kMinus + " baseline)";
}

std::string RadialTitle(FigureAbscissa abscissa) {
  return abscissa == FigureAbscissa::kPsi
             ? "(r\xC2\xB2 \xE2\x88\x92 r\xE2\x82\x80\xC2\xB2)/2 (cm\xC2\xB2)"
             : "Radius (cm)";
}

std::string SpeedText(int rpm) {
  constexpr std::size_t kGroup = 3;
  std::string digits = std::to_string(std::abs(rpm));
  for (std::size_t k = digits.size(); k > kGroup;) digits.insert(k -= kGroup, ",");
  return (rpm < 0 ? "-" : "") + digits + " rpm";
}

std::string ChannelText(const Dataset& dataset, bool withCell) {
  const CellChannel channel = ChannelOf(dataset);
  if (!channel.letter) return NameOf(dataset);
  const std::string letter = std::string("channel ") + *channel.letter;
  return withCell && channel.cell ? "cell " + std::to_string(*channel.cell) + ", " + letter
                                  : letter;
}

std::string ConcentrationText(const FitState& fit, int d) {
  if (fit.TwoComponentModel || fit.SetEpsA(d) == 1.0 || !(fit.SetEpsA(d) > 0.0)) return {};
  const bool mean = fit.CalcLoadingConcs;
  const std::optional<double> signal = mean ? std::nullopt : SignalAtReference(fit, d);
  const double molar = mean ? fit.SetCalcLoad(d) : signal.value_or(0.0) / fit.SetEpsA(d);
  if (!(molar > 0.0) || !std::isfinite(molar)) return {};
  return MolarText(molar) + (mean ? "" : " at r\xE2\x82\x80");
}

}  // namespace quorvane
