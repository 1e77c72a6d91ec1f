#include "solution/buffer_recipe.h"

#include <algorithm>
#include <cstring>

#include "base/text.h"
#include "solution/solution_fault.h"

namespace quorvane {

namespace {

constexpr std::string_view kLeavePhOut =
    ": leave the pH out; what set it is a component of its own";

// Line breaks, tabs and the blanks of word processors as blanks.
std::string WithBlanks(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const char32_t c = NextUtf8(text);
    const bool blank = c < 32 || c == 0xA0 || c == 0x2009 || c == 0x202F;
    AppendUtf8(out, blank ? U' ' : c);
  }
  return out;
}

// Whether a text is of a pH, such as "pH 8.0" or "Tris (pH 8.0)".
bool IsOfPh(std::string_view text) {
  std::string words = " " + ToLower(text);
  std::replace(words.begin(), words.end(), '(', ' ');
  const std::size_t at = words.find(" ph");
  return at != std::string::npos &&
         words.find_first_of("0123456789", at) == words.find_first_not_of(" ph=", at);
}

struct NameAndAmount {
  std::string name;
  std::string amount;
};

// "5 % glycerol (v/v)" with its "(v/v)" beside the "%".
void MovePercentage(NameAndAmount& part) {
  for (const char* of : {"(w/v)", "(v/v)", "w/v", "v/v"}) {
    if (!part.amount.ends_with('%') || !part.name.ends_with(of)) continue;
    part.name = Trim(std::string_view(part.name).substr(0, part.name.size() - std::strlen(of)));
    part.amount += of;
  }
}

[[noreturn]] void RefuseBareName(std::string_view part) {
  if (IsOfPh(part)) throw SolutionFault(Quoted(part) + std::string(kLeavePhOut));
  if (part.find(' ') == std::string_view::npos) FindComponent(part);
  throw SolutionFault(Quoted(part) + ": NAME = 20 mM is wanted");
}

// Takes the first part off `text`: "NAME = AMOUNT", whose name may have commas, or "AMOUNT NAME".
NameAndAmount TakePart(std::string_view& text) {
  const std::size_t amount = LengthOfAmount(text);
  const std::size_t equals = amount > 0 ? 0 : text.find('=');
  const std::size_t comma =
      std::min(text.find(',', equals == std::string_view::npos ? 0 : equals), text.size());
  const std::string_view part = text.substr(0, comma);
  text = Trim(text.substr(std::min(comma + 1, text.size())));
  if (equals == std::string_view::npos) RefuseBareName(Trim(part));
  NameAndAmount named = {std::string(Trim(part.substr(0, equals))),
                         std::string(Trim(part.substr(std::min(equals + 1, part.size()))))};
  if (amount > 0) {
    named = {std::string(Trim(part.substr(std::min(amount, part.size())))),
             std::string(Trim(part.substr(0, amount)))};
    MovePercentage(named);
  }
  return named;
}

const BufferComponent& ComponentNamed(const NameAndAmount& part) {
  if (part.name.empty()) {
    throw SolutionFault("a name is wanted beside " + Quoted(part.amount) +
                        "; numbers have a decimal point, a comma ends a part");
  }
  if (IsOfPh(part.name)) {
    throw SolutionFault(Quoted(part.name) + std::string(kLeavePhOut));
  }
  return FindComponent(part.name);
}

}  // namespace

BufferRecipe ReadBuffer(std::string_view entered) {
  BufferRecipe recipe;
  const std::string blanked = WithBlanks(entered);
  std::string_view text = Trim(blanked);
  if (text.empty()) {
    throw SolutionFault("the buffer is empty; \"water\" stands for water, NAME = 20 mM for a part");
  }
  if (ToLower(text) == "water") return recipe;
  while (!text.empty()) {
    const NameAndAmount named = TakePart(text);
    const BufferPart part = ReadAmount(ComponentNamed(named), named.amount);
    const bool twice = std::any_of(recipe.begin(), recipe.end(), [&](const BufferPart& other) {
      return other.component == part.component;
    });
    if (twice) throw SolutionFault(part.component->name + " stands in the buffer twice");
    recipe.push_back(part);
  }
  return recipe;
}

std::string BufferText(const BufferRecipe& recipe) {
  if (recipe.empty()) return "water";
  std::string text;
  for (const BufferPart& part : recipe) {
    text += (text.empty() ? "" : ", ") + part.component->name + " = " + AmountText(part);
  }
  return text;
}

}  // namespace quorvane
