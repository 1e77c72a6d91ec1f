// What the user has entered in the simulator, and the checks of each entry.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "base/k_display.h"
#include "sim/sim_catalogue.h"

namespace quorvane {

// Kind of the scan file: interference or absorbance.
enum class SimFileKind { kIP8, kRA8 };

// Every text is the last valid one of its box.
struct SimInputs {
  std::array<std::string, kSimBoxes> text;
  int model = 0;  // 0 to 10
  KDisplay kDisplay = KDisplay::kLn;
  SimFileKind saveAs = SimFileKind::kIP8;
  int cell = 8;                  // that the header names, 1 to 8
  std::array<double, 3> K = {};  // K1, K2, K3, plain; see ReadConstants for who stores them

  std::string& Text(SimBox box) { return text[static_cast<std::size_t>(box)]; }
  const std::string& Text(SimBox box) const { return text[static_cast<std::size_t>(box)]; }
};

// The inputs of a simulator that was just opened.
SimInputs DefaultInputs();

// Reads the entries for K by another display from here on, and stores K1 to K3 anew.
void SetKDisplay(SimInputs& inputs, KDisplay display);

// The number in a box, whose text is valid.
double NumberIn(const SimInputs& inputs, SimBox box);

// Why `text` may not stand in `box` beside the other entries; nothing if it may.
std::optional<std::string_view> RefusalOf(const SimInputs& inputs, SimBox box,
                                          std::string_view text);

// Stores an entry, and with a K entry its K by the display mode; one that is beyond double range
// leaves the K as it was. A refused entry changes nothing.
std::optional<std::string_view> StoreEntry(SimInputs& inputs, SimBox box, std::string_view text);

struct EntryRefusal {
  SimBox box;
  std::string_view message;
};

// Stores many entries at once; each is checked beside the others' new texts. All or none.
std::optional<EntryRefusal> StoreEntries(SimInputs& inputs,
                                         const std::map<SimBox, std::string>& entries);

// The first entry that the model uses and that may not stand beside the others: with a change of
// the model two degrees of association can meet that are equal.
std::optional<EntryRefusal> FirstRefusal(const SimInputs& inputs);

// Reads the constants that the model uses into inputs.K, as a run does. The others keep what was
// stored last.
// Throws ArithmeticFault (overflow).
void ReadConstants(SimInputs& inputs);

}  // namespace quorvane
