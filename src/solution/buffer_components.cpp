#include "solution/buffer_components.h"

#include <algorithm>
#include <map>

#include "base/number_format.h"
#include "base/text.h"
#include "solution/solution_fault.h"
#include "solution/tables.h"

namespace quorvane {

namespace {

std::vector<std::string> SplitAtSlashes(std::string_view text) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('/'), text.size());
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

// "721 mM" in M; "5 %" as the number.
double GreatestOf(std::string_view text) {
  const std::size_t blank = text.find(' ');
  const double number = DoubleFromText(text.substr(0, blank));
  return text.substr(blank + 1) == "mM" ? number / 1000.0 : number;
}

BufferComponent ComponentOf(const std::vector<std::string>& row) {
  BufferComponent component;
  component.name = row[0];
  component.unit = row[1];
  component.greatest = GreatestOf(row[2]);
  for (std::size_t k = 0; k < component.increments.size(); ++k) {
    component.increments[k] = DoubleFromText(row[3 + k]);
  }
  return component;
}

std::vector<BufferComponent> ReadComponents() {
  std::vector<BufferComponent> components;
  std::map<std::string, std::size_t> places;
  for (const std::vector<std::string>& row : tables::RowsOf(tables::kBuffers)) {
    places[row[0]] = components.size();
    components.push_back(ComponentOf(row));
  }
  for (const std::vector<std::string>& row : tables::RowsOf(tables::kComponents)) {
    BufferComponent& component = components[places.at(row[0])];
    component.shortNames = SplitAtSlashes(row[1]);
    if (!row[2].empty()) component.hydration = DoubleFromText(row[2]);
    component.detergent = row[3] == "yes";
    component.unusable = row[4];
  }
  return components;
}

std::vector<std::string> NamesOf(const BufferComponent& component) {
  std::vector<std::string> names = component.shortNames;
  names.insert(names.begin(), component.name);
  return names;
}

// Letters to be changed, added or left out (Levenshtein).
std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j < row.size(); ++j) row[j] = j;
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

// How far a typed name (in small letters) is from a component; a part of a name is nearest.
std::size_t DistanceTo(const BufferComponent& component, const std::string& typed) {
  std::size_t nearest = 1000;
  for (const std::string& name : NamesOf(component)) {
    const std::string known = ToLower(name);
    const bool part =
        typed.size() > 1 && (known.find(typed) != std::string::npos ||
                             (known.size() > 3 && typed.find(known) != std::string::npos));
    nearest = std::min(nearest, part ? 0 : EditDistance(typed, known));
  }
  return nearest;
}

std::string NearestNames(const std::string& typed) {
  constexpr std::size_t kNamed = 4;
  std::vector<std::pair<std::size_t, const BufferComponent*>> ranked;
  for (const BufferComponent& component : BufferComponents()) {
    ranked.emplace_back(DistanceTo(component, typed.substr(0, kMostQuoted)), &component);
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::string names;
  for (std::size_t k = 0; k < kNamed; ++k) {
    const BufferComponent& component = *ranked[k].second;
    names += (k == 0 ? "" : "; ") + component.name;
    if (!component.shortNames.empty()) names += " (" + component.shortNames.front() + ")";
  }
  return names;
}

bool IsMolar(const BufferComponent& component) {
  return component.unit == "mM";
}

}  // namespace

const std::vector<BufferComponent>& BufferComponents() {
  static const std::vector<BufferComponent> components = ReadComponents();
  return components;
}

std::vector<const BufferComponent*> ComponentsLike(std::string_view text) {
  const std::string wanted = ToLower(Trim(text));
  std::vector<const BufferComponent*> found;
  for (const BufferComponent& component : BufferComponents()) {
    const std::vector<std::string> names = NamesOf(component);
    const bool like = std::any_of(names.begin(), names.end(), [&](const std::string& name) {
      return ToLower(name).find(wanted) != std::string::npos;
    });
    if (like) found.push_back(&component);
  }
  return found;
}

const BufferComponent& FindComponent(std::string_view name) {
  const std::string wanted = ToLower(Trim(name));
  for (const BufferComponent& component : BufferComponents()) {
    for (const std::string& known : NamesOf(component)) {
      if (ToLower(known) == wanted) return component;
    }
  }
  throw SolutionFault("there is no component " + Quoted(Trim(name)) + "; the nearest names are " +
                      NearestNames(wanted));
}

std::string RangeText(const BufferComponent& component) {
  return AmountText(component, component.greatest);
}

std::string AmountText(const BufferComponent& component, double amount) {
  if (!IsMolar(component)) return ShortestText(amount) + " " + component.unit;
  if (amount >= 1.0) return ShortestText(amount) + " M";
  const double rounded = DoubleFromText(FormatNumber(amount * 1000.0, "0.##########"));
  return ShortestText(rounded) + " mM";
}

}  // namespace quorvane
