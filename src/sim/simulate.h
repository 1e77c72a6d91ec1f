// The simulator as windows and commands use it: entries in, a column and a scan file out.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "sim/gauss_deviate.h"
#include "sim/sim_column.h"
#include "sim/sim_file.h"
#include "sim/sim_inputs.h"
#include "sim/sim_problem.h"

namespace quorvane {

class Host;

// All that a simulator keeps from one run to the next.
struct Simulator {
  SimInputs Inputs = DefaultInputs();
  SimColumn Column;
  std::string SimHeader = std::string(kFirstSimHeader);
  std::string Text;       // the scan file, as a run or the user left it; lines end in CR LF
  int GridPoints = 0;     // of the last run
  int WrittenPoints = 0;  // of the last run that reached Text and Column.signal
};

struct SimOutcome {
  bool ok = false;
  SimReference reference = {};  // see sim_models.h
  std::string error = {};       // why it failed, empty if it did not
};

// Simulates the chosen model: fills Column, rebuilds SimHeader and Text. Every entry must have
// passed its check.
// A failure shows a message box and leaves what was written until then; if the summary line itself
// fails, Text stays as it was.
SimOutcome Simulate(Simulator& simulator, UniformSource& uniform, Host& host);

// StoreEntry, and with it a new wavelength goes into the header of an absorbance scan.
std::optional<std::string_view> EnterText(Simulator& simulator, SimBox box, std::string_view text);

// Chooses the kind of the file and changes SimHeader and Text, where the old header first occurs.
void ChooseFileKind(Simulator& simulator, SimFileKind kind);

}  // namespace quorvane
