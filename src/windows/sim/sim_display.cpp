#include "windows/sim/sim_display.h"

#include <cstddef>

#include "base/arithmetic.h"
#include "base/number_format.h"
#include "base/text.h"
#include "core/page/display_form.h"

namespace quorvane {

namespace {

constexpr std::array<SimBox, 3> kConstantBoxes = {SimBox::kLnK1, SimBox::kLnK2, SimBox::kLnK3};

// The valid entry `text` of one display in another.
std::string Converted(const std::string& text, KDisplay from, KDisplay to) {
  if (from == to) return text;
  try {
    const double shown = ShownK(LnKOf(ParseNumeric(text).value(), from), to);
    const bool vanished = to == KDisplay::kPlain && shown == 0.0;
    return vanished ? text : FormatParam(shown);
  } catch (const ArithmeticFault&) {
    return text;
  }
}

}  // namespace

void SimConstantDisplay::Change(SimInputs& inputs, KDisplay display) {
  for (std::size_t k = 0; k < entries_.size(); ++k) {
    Entry& entry = entries_[k];
    std::string& text = inputs.Text(kConstantBoxes[k]);
    if (text != entry.shown) entry = {text, inputs.kDisplay, ""};
    text = entry.shown = Converted(entry.typed, entry.typedAs, display);
  }
  SetKDisplay(inputs, display);
}

}  // namespace quorvane
