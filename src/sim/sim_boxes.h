// The entry boxes of the simulator and its list of models: names, captions, defaults, bounds.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

enum class SimBox {
  kMW,
  kVbar,
  kDensity,
  kSpeed,
  kTemp,
  kNonId,
  kN1mer,
  kLnK1,
  kN2mer,
  kLnK2,
  kExtCoeff,
  kRMS,
  kRmen,
  kRbase,
  kLoadC,
  kAlpha,
  kLoadCB,
  kExtCoeffB,
  kVbarB,
  kMWB,
  kLnK3,
  kWaveL,
};
inline constexpr int kSimBoxes = 22;

// How entries for K are read and captioned.
enum class KDisplay { kLn, kLog10, kPlain };

// The numbers that a box takes.
struct Bounds {
  double low = -std::numeric_limits<double>::infinity();
  double high = std::numeric_limits<double>::infinity();
  bool lowIncluded = true;
  bool highIncluded = true;
  bool Contain(double value) const {
    return (lowIncluded ? value >= low : value > low) &&
           (highIncluded ? value <= high : value < high);
  }
};

struct SimBoxInfo {
  std::string_view control;
  std::string_view key;  // in a job file
  std::string_view label;
  std::string_view labelOfA;  // beside a component B; empty where `label` stays
  std::string_view toolTip;
  std::string_view defaultText;
  Bounds bounds;
  std::string_view refusal;  // what a text outside the bounds is told; empty for N-mer and M-mer
};

const SimBoxInfo& InfoOf(SimBox box);

// The box with that key in a job file, if there is one.
std::optional<SimBox> SimBoxOfKey(std::string_view key);

struct SimModel {
  std::string_view caption;
  std::uint32_t boxes;  // one bit a box that it needs besides those that all models need
  bool secondComponent;
  bool totalConcentration;  // SimColumn::conc is written
  int speciesColumns;       // of SimColumn::species that are written
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
