#include "solution/buffer_recipe.h"

#include <algorithm>
#include <optional>

#include "base/text.h"
#include "solution/solution_fault.h"

namespace quorvane {

namespace {

// The factor that takes a number of this unit to the component's amounts.
std::optional<double> FactorOf(std::string_view unit, const BufferComponent& component) {
  if (component.unit != "mM") {
    return unit == component.unit ? std::optional(1.0) : std::nullopt;
  }
  if (unit == "M") return 1.0;
  if (unit == "mM") return 1e-3;
  if (unit == "uM" || unit == "\xC2\xB5M" || unit == "\xCE\xBCM")
    return 1e-6;  // both signs of micro
  return std::nullopt;
}

std::string Wanted(const BufferComponent& component) {
  return component.unit == "mM"
             ? "a concentration such as 20 mM or 0.1 M, with a decimal point, is wanted"
             : "a number of " + component.unit + ", such as 5 " + component.unit + ", is wanted";
}

}  // namespace

BufferPart ReadAmount(const BufferComponent& component, std::string_view text) {
  text = Trim(text);
  const std::string who = component.name + " = " + std::string(text.substr(0, kMostQuoted)) + ": ";
  const std::size_t end = std::min(text.find_first_not_of("+-.0123456789eE"), text.size());
  const std::optional<double> number = ParseNumeric(text.substr(0, end));
  const std::optional<double> factor = FactorOf(Trim(text.substr(end)), component);
  if (!number || !factor) throw SolutionFault(who + Wanted(component));
  if (!(*number > 0.0)) throw SolutionFault(who + "a concentration above 0 is wanted");
  const double amount = *number * *factor;
  if (amount > component.greatest * (1.0 + 1e-12)) {
    throw SolutionFault(who + "densities are known up to " + RangeText(component));
  }
  if (!component.unusable.empty()) throw SolutionFault(who + "not used, " + component.unusable);
  return {&component, amount};
}

BufferRecipe ReadBuffer(std::string_view text) {
  BufferRecipe recipe;
  text = Trim(text);
  if (text.empty()) {
    throw SolutionFault("the buffer is empty; \"water\" stands for water, NAME = 20 mM for a part");
  }
  if (ToLower(text) == "water") return recipe;
  while (!text.empty()) {
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) {
      throw SolutionFault(Quoted(text) + ": NAME = 20 mM is wanted");
    }
    if (equals == 0) {
      throw SolutionFault("a name is wanted before " + Quoted(text));
    }
    const BufferComponent& component = FindComponent(text.substr(0, equals));
    text.remove_prefix(equals + 1);
    const std::size_t comma = std::min(text.find(','), text.size());
    const BufferPart part = ReadAmount(component, text.substr(0, comma));
    const bool twice = std::any_of(recipe.begin(), recipe.end(), [&](const BufferPart& other) {
      return other.component == part.component;
    });
    if (twice) throw SolutionFault(component.name + " stands in the buffer twice");
    recipe.push_back(part);
    text = Trim(text.substr(std::min(comma + 1, text.size())));
  }
  return recipe;
}

std::string BufferText(const BufferRecipe& recipe) {
  if (recipe.empty()) return "water";
  std::string text;
  for (const BufferPart& part : recipe) {
    text += (text.empty() ? "" : ", ") + part.component->name + " = " +
            AmountText(*part.component, part.amount);
  }
  return text;
}

}  // namespace quorvane
