// The catalogue of the simulator's models: one entry each, from which entries, equations, charts
// and jobs take all that they say of a model.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "base/k_display.h"
#include "sim/sim_boxes.h"

namespace quorvane {

struct SimModel;
struct SimProblem;
struct SimReference;
struct SimRun;
class Host;

// How many A a species holds: the entries for N-mer and M-mer are numbers of the run.
enum class SimDegree { kNone, kOne, kNmer, kMmer };

// A species of a model: a column of SimColumn::species.
struct SimModelSpecies {
  std::string_view name;  // in the chart
  SimDegree a = SimDegree::kNone;
  int b = 0;
  std::array<bool, 3> constants = {};  // which of K1, K2, K3 are factors of its overall constant
  bool apart = false;                  // takes no part in the equilibrium
};

// What an association constant stands for: short for the label, long for the tool tip.
struct SimConstant {
  std::string_view label;
  std::string_view toolTip;
};

// Fills the run's column with the profile of its model.
using SimRoutine = SimReference (*)(SimRun& run, const SimModel& model);
// The free concentrations that two loads imply; `count` is the number of passes.
using SimLoadsRoutine = SimReference (*)(const SimProblem& problem, Host& host, int& count);

struct SimModel {
  std::string_view caption;
  SimRoutine run;
  std::uint32_t boxes = 0;  // one bit a box that it needs besides those that all models need
  std::span<const SimModelSpecies> species = {};  // none: ideal, nonideal, isodesmic
  bool secondComponent = false;
  SimLoadsRoutine loads = nullptr;  // with a second component
  // Kept on purpose: where it is set, the entry for K2 replaces K1, and K2 is not read.
  bool k2ReplacesK1 = false;
  std::array<SimConstant, 3> constants = {{{"K1", "K1"}, {"K2", "K2"}, {"K3", "K3"}}};

  bool TotalConcentration() const { return !secondComponent; }  // SimColumn::conc is written
};

inline constexpr int kSimModels = 11;

// `model` from 0 to 10.
const SimModel& SimModelOf(int model);

// Index of the model with that caption, or -1.
int SimModelIndexOf(std::string_view caption);

// Whether the model reads the box. All read those of the sample, the rotor and the cell; the
// wavelength belongs to the file, not to a model.
bool UsesBox(int model, SimBox box);

// Caption and tool tip of a box; those of the K boxes depend on the display of K.
std::string LabelOf(SimBox box, int model, KDisplay display);
std::string ToolTipOf(SimBox box, int model, KDisplay display);

}  // namespace quorvane
