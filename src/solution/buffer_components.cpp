#include "solution/buffer_components.h"

#include <algorithm>
#include <cctype>
#include <map>

#include "base/text.h"
#include "solution/molar_mass.h"
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

// "721 mM" in mol/l.
double GreatestOf(std::string_view text) {
  const std::size_t blank = text.find(' ');
  const double number = DoubleFromText(text.substr(0, blank));
  return text.substr(blank + 1) == "mM" ? number / 1000.0 : number;
}

std::optional<double> OptionalNumber(const std::string& field) {
  return field.empty() ? std::nullopt : std::optional(DoubleFromText(field));
}

BufferComponent ComponentOf(const std::vector<std::string>& row) {
  BufferComponent component;
  component.name = row[0];
  component.greatest = GreatestOf(row[2]);
  for (std::size_t k = 0; k < component.increments.size(); ++k) {
    component.increments[k] = DoubleFromText(row[3 + k]);
  }
  return component;
}

// Before the names that are longer: "NaH2PO4, Monosodium phosphate", but "Tris, C4H11NO3".
void AddFormula(const std::string& formula, std::vector<std::string>& names) {
  const bool shortest = names.empty() || formula.size() < names.front().size();
  names.insert(shortest ? names.begin() : names.end(), formula);
}

std::vector<BufferComponent> ReadComponents() {
  std::vector<BufferComponent> components;
  std::map<std::string, std::size_t> places;
  for (const std::vector<std::string>& row : tables::RowsOf(tables::kBuffers)) {
    places[row[0]] = components.size();
    components.push_back(ComponentOf(row));
  }
  const auto rows = tables::RowsOf(tables::kComponents);
  for (const std::vector<std::string>& row : rows) {
    BufferComponent& component = components[places.at(row[0])];
    const std::string& formula = row[1];
    component.otherNames = SplitAtSlashes(row[2]);
    if (!formula.empty()) {
      component.molarMass = MolarMass(formula);
      const auto sharing = std::count_if(rows.begin(), rows.end(),
                                         [&](const auto& other) { return other[1] == formula; });
      if (sharing == 1) AddFormula(formula, component.otherNames);  // not those of sugars
    }
    component.liquidDensity = OptionalNumber(row[3]);
    component.hydration = row[4] == "yes";
    component.detergent = row[5] == "yes";
    component.setsPh = row[6];
    component.unusable = row[7];
  }
  return components;
}

std::vector<std::string> NamesOf(const BufferComponent& component) {
  std::vector<std::string> names = component.otherNames;
  names.insert(names.begin(), component.name);
  return names;
}

// What of a name counts when names are compared.
std::string KeyOf(std::string_view name) {
  std::string key;
  while (!name.empty()) {
    const char32_t c = NextUtf8(name);
    constexpr char32_t kSubscript0 = 0x2080;
    constexpr char32_t kMiddleDot = 0xB7;
    if (c >= kSubscript0 && c < kSubscript0 + 10) {
      key += static_cast<char>('0' + (c - kSubscript0));
    } else if (c > 127 ? c != kMiddleDot : std::isalnum(static_cast<int>(c)) != 0) {
      AppendUtf8(key, c);
    }
  }
  key = ToLower(key);
  const std::size_t british = key.find("sulph");
  if (british != std::string::npos) key.replace(british, 5, "sulf");
  return key;
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

struct NearName {
  std::size_t distance;
  std::string text;  // "Sodium chloride (NaCl)"
};

// The name of a component that is nearest to a typed one, by their keys; a part is nearest.
NearName NearestOf(const BufferComponent& component, const std::string& typed) {
  NearName nearest = {1000, ""};
  for (const std::string& name : NamesOf(component)) {
    const std::string known = KeyOf(name);
    const bool part =
        typed.size() > 1 && (known.find(typed) != std::string::npos ||
                             (known.size() > 3 && typed.find(known) != std::string::npos));
    const std::size_t distance = part ? 0 : EditDistance(typed, known);
    if (distance >= nearest.distance) continue;
    nearest = {distance, component.name};
    if (name != component.name) nearest.text += " (" + name + ")";
  }
  return nearest;
}

// Four at most, the nearest first; none that is half another word.
std::string NearestNames(const std::string& typed) {
  constexpr std::size_t kNamed = 4;
  constexpr std::size_t kFarthest = 4;
  std::vector<NearName> ranked;
  for (const BufferComponent& component : BufferComponents()) {
    NearName near = NearestOf(component, typed);
    if (near.distance <= std::min(typed.size() / 2, kFarthest)) ranked.push_back(std::move(near));
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.distance < b.distance; });
  ranked.resize(std::min(ranked.size(), kNamed));
  std::string names;
  for (const NearName& near : ranked) names += (names.empty() ? "" : "; ") + near.text;
  return names;
}

// What to take in place of a name that is no component; empty if that is not known.
std::string AnswerFor(const std::string& key) {
  for (const std::vector<std::string>& row : tables::RowsOf(tables::kNotListed)) {
    for (const std::string& name : SplitAtSlashes(row[0])) {
      if (KeyOf(name) == key) return row[1];
    }
  }
  return "";
}

}  // namespace

const std::vector<BufferComponent>& BufferComponents() {
  static const std::vector<BufferComponent> components = ReadComponents();
  return components;
}

std::vector<const BufferComponent*> ComponentsLike(std::string_view text) {
  const std::string wanted = KeyOf(text);
  // The name itself, names that begin with it, other names with it.
  std::array<std::vector<const BufferComponent*>, 3> found;
  for (const BufferComponent& component : BufferComponents()) {
    std::size_t best = found.size();
    for (const std::string& name : NamesOf(component)) {
      const std::string key = KeyOf(name);
      const std::size_t at = key.find(wanted);
      if (at != std::string::npos)
        best = std::min<std::size_t>(best, key == wanted ? 0 : at == 0 ? 1 : 2);
    }
    if (best < found.size()) found[best].push_back(&component);
  }
  for (const auto& next : {found[1], found[2]}) {
    found[0].insert(found[0].end(), next.begin(), next.end());
  }
  return found[0];
}

const BufferComponent& FindComponent(std::string_view name) {
  const std::string wanted = KeyOf(name.substr(0, kMostQuoted));
  for (const BufferComponent& component : BufferComponents()) {
    for (const std::string& known : NamesOf(component)) {
      if (KeyOf(known) == wanted) return component;
    }
  }
  const std::string who = "there is no component " + Quoted(Trim(name));
  if (const std::string answer = AnswerFor(wanted); !answer.empty()) {
    throw SolutionFault(who + "; " + answer);
  }
  const std::string nearest = NearestNames(wanted);
  throw SolutionFault(
      who + (nearest.empty() ? ", nor a name near it" : "; the nearest names are " + nearest) +
      "; left out, each mg/ml of it costs 0.3 % of the weight at most");
}

}  // namespace quorvane
