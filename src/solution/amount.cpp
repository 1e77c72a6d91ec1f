#include "solution/amount.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "base/number_format.h"
#include "base/text.h"
#include "solution/solution_fault.h"

namespace quorvane {

namespace {

constexpr std::string_view kOfNumbers = "+-.0123456789eE";

struct UnitText {
  std::string_view text;
  AmountUnit unit;
  double factor;  // to mol/l, g/l or %
};

constexpr std::array<UnitText, 15> kUnits = {{{"M", AmountUnit::kMolar, 1.0},
                                              {"mol/l", AmountUnit::kMolar, 1.0},
                                              {"mol/L", AmountUnit::kMolar, 1.0},
                                              {"mM", AmountUnit::kMolar, 1e-3},
                                              {"mmol/l", AmountUnit::kMolar, 1e-3},
                                              {"mmol/L", AmountUnit::kMolar, 1e-3},
                                              {"uM", AmountUnit::kMolar, 1e-6},
                                              {"\xC2\xB5M", AmountUnit::kMolar, 1e-6},
                                              {"\xCE\xBCM", AmountUnit::kMolar, 1e-6},
                                              {"g/l", AmountUnit::kGramsPerLitre, 1.0},
                                              {"g/L", AmountUnit::kGramsPerLitre, 1.0},
                                              {"mg/ml", AmountUnit::kGramsPerLitre, 1.0},
                                              {"mg/mL", AmountUnit::kGramsPerLitre, 1.0},
                                              {"%w/v", AmountUnit::kMassInVolume, 1.0},
                                              {"%v/v", AmountUnit::kVolumeInVolume, 1.0}}};

const UnitText* FindUnit(std::string_view text) {
  const auto* found = std::find_if(kUnits.begin(), kUnits.end(),
                                   [&](const UnitText& unit) { return unit.text == text; });
  return found == kUnits.end() ? nullptr : found;
}

// Without blanks and parentheses: "% (w/v)" is "%w/v".
std::string BareUnit(std::string_view text) {
  std::string bare(text);
  std::erase_if(bare, [](char c) { return c == ' ' || c == '(' || c == ')'; });
  return bare;
}

// The number of a unit that stands for 1 mol/l; none if the component has none of that unit.
std::optional<double> PerMolar(const BufferComponent& component, AmountUnit unit) {
  if (unit == AmountUnit::kMolar) return 1.0;
  if (!component.molarMass) return std::nullopt;
  if (unit == AmountUnit::kGramsPerLitre) return *component.molarMass;
  if (unit == AmountUnit::kMassInVolume) return *component.molarMass / 10.0;
  if (!component.liquidDensity) return std::nullopt;
  return *component.molarMass / (10.0 * *component.liquidDensity);
}

// A number without the last digits of a conversion.
std::string Rounded(double number) {
  return ShortestText(DoubleFromText(FormatNumber(number, "0.##########")));
}

std::string TextOf(double molar, double number, AmountUnit unit) {
  switch (unit) {
    case AmountUnit::kMolar:
      return molar >= 1.0 ? ShortestText(molar) + " M" : Rounded(molar * 1000.0) + " mM";
    case AmountUnit::kGramsPerLitre:
      return Rounded(number) + " g/l";
    case AmountUnit::kMassInVolume:
      return Rounded(number) + " % w/v";
    default:
      return Rounded(number) + " % v/v";
  }
}

// `"5 % w/v" is 5 g in 100 ml, 542.924 mM; "5 % v/v" is 5 ml in 100 ml, 684.627 mM`.
std::string Choices(const BufferComponent& component, double percent) {
  std::string text;
  for (const AmountUnit unit : {AmountUnit::kMassInVolume, AmountUnit::kVolumeInVolume}) {
    const std::optional<double> perMolar = PerMolar(component, unit);
    if (!perMolar) continue;
    const std::string number = ShortestText(percent);
    const bool mass = unit == AmountUnit::kMassInVolume;
    if (!text.empty()) text += "; ";
    text.append("\"").append(number).append(mass ? " % w/v\" is " : " % v/v\" is ");
    text.append(number).append(mass ? " g in 100 ml, " : " ml in 100 ml, ");
    text.append(FormatNumber(1000.0 * percent / *perMolar, "0.0##")).append(" mM");
  }
  return text;
}

// What to write in place of an amount that cannot be read.
std::string Wanted(const BufferComponent& component, std::optional<double> number,
                   const std::string& unit) {
  const UnitText* known = FindUnit(unit);
  if (known != nullptr && known->unit != AmountUnit::kMolar && !component.molarMass) {
    return "it has no single molar mass; a concentration such as 20 mM is wanted";
  }
  constexpr double kWhole = 200.0;  // more than any percentage
  const bool percent = unit.find('%') != std::string::npos;
  if (percent && number && *number < kWhole && component.molarMass) {
    const std::string why = known != nullptr ? "v/v is for liquids; "
                            : unit == "%"    ? "percent of what? "
                                             : "of percentages w/v and v/v are known; ";
    return why + Choices(component, *number);
  }
  return "a concentration such as 20 mM, 0.1 M or 5 % w/v, with a decimal point, is wanted";
}

std::string Greatest(const BufferComponent& component, AmountUnit unit) {
  if (unit == AmountUnit::kMolar) return RangeText(component);
  // Not above what is taken.
  const double number = std::floor(10.0 * component.greatest * *PerMolar(component, unit)) / 10.0;
  return TextOf(component.greatest, number, unit) + " (" + RangeText(component) + ")";
}

}  // namespace

BufferPart ReadAmount(const BufferComponent& component, std::string_view text) {
  text = Trim(text);
  const std::string who = component.name + " = " + std::string(text.substr(0, kMostQuoted)) + ": ";
  const std::size_t end = std::min(text.find_first_not_of(kOfNumbers), text.size());
  const std::optional<double> number = ParseNumeric(text.substr(0, end));
  const std::string unit = BareUnit(text.substr(end));
  const UnitText* known = FindUnit(unit);
  const std::optional<double> perMolar =
      known == nullptr ? std::nullopt : PerMolar(component, known->unit);
  if (number && !(*number > 0.0) && (perMolar || unit == "%")) {
    throw SolutionFault(who + "a concentration above 0 is wanted");
  }
  if (!number || !perMolar) throw SolutionFault(who + Wanted(component, number, unit));
  const double molar = *number * known->factor / *perMolar;
  if (molar > component.greatest * (1.0 + 1e-12)) {
    throw SolutionFault(who + "densities are known up to " + Greatest(component, known->unit));
  }
  if (!component.unusable.empty()) throw SolutionFault(who + "not used, " + component.unusable);
  return {&component, molar, known->unit};
}

std::string AmountText(const BufferPart& part) {
  return TextOf(part.molar, part.molar * PerMolar(*part.component, part.unit).value_or(1.0),
                part.unit);
}

std::string RangeText(const BufferComponent& component) {
  return AmountText({&component, component.greatest});
}

std::size_t LengthOfAmount(std::string_view text) {
  const std::size_t number = std::min(text.find_first_not_of(kOfNumbers), text.size());
  if (!ParseNumeric(text.substr(0, number))) return 0;
  const auto wordEnd = [&](std::size_t from) {
    const std::size_t begin = std::min(text.find_first_not_of(' ', from), text.size());
    return std::min(text.find(' ', begin), text.size());
  };
  const std::size_t end = wordEnd(number);
  if (BareUnit(text.substr(number, end - number)) != "%") return end;
  const std::size_t next = wordEnd(end);  // "% (w/v)" is two words
  return text.substr(end, next - end).find('/') == std::string_view::npos ? end : next;
}

}  // namespace quorvane
