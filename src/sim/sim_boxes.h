// The entry boxes of the simulator: names, captions, defaults, bounds.
#pragma once

#include <limits>
#include <optional>
#include <string_view>

namespace quorvane {

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

}  // namespace quorvane
