// The simulator's entries for association constants in the display that the session has chosen.
#pragma once

#include <array>
#include <string>

#include "sim/sim_inputs.h"

namespace quorvane {

class SimConstantDisplay {
 public:
  // Shows the three entries by `display` and reads them so from here on. A form that an entry had
  // before comes back digit for digit; an entry without a value in the new form (a K of 0, an
  // overflow) keeps its text.
  void Change(SimInputs& inputs, KDisplay display);

 private:
  struct Entry {
    std::string typed;
    KDisplay typedAs = KDisplay::kLn;
    std::string shown;
  };
  std::array<Entry, 3> entries_;
};

}  // namespace quorvane
