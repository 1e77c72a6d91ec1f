#include "sim/sim_boxes.h"

#include <array>
#include <cstddef>

namespace quorvane {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr Bounds kMassBounds = {100.0, 5.0e7};
constexpr Bounds kVbarBounds = {0.3, 0.9};
constexpr Bounds kRadiusBounds = {5.8, 7.2};
constexpr Bounds kAboveZero = {.low = 0.0, .lowIncluded = false};
constexpr Bounds kFraction = {.low = 0.0, .high = 1.0, .highIncluded = false};
constexpr Bounds kDegree = {.low = 2.0, .high = 32767.0};  // a 16-bit whole number

constexpr std::string_view kMassText = "100 <= Molecular Weight <= 50,000,000.";
constexpr std::string_view kVbarText =
    "The partial specific volume should, realistically, be between 0.3 and 0.9 ml/gm.";
constexpr std::string_view kLoadText = "Loading concentration must be > 0.";
constexpr std::string_view kExtinctionText = "The extinction coefficient must be > 0.";
constexpr std::string_view kKText = "Illegal Value Entered";

// In the order of SimBox.
constexpr std::array<SimBoxInfo, kSimBoxes> kBoxes = {{
    {"txtMW", "mw", "molecular weight", "MW A", "molecular weight (daltons)", "60000", kMassBounds,
     kMassText},
    {"txtVbar", "vbar", "vbar", "vbar A", "partial specific volume (ml/gm)", "0.730", kVbarBounds,
     kVbarText},
    {"txtDensity",
     "density",
     "density",
     "",
     "buffer density",
     "1.000",
     {0.5, 2.0},
     "Invalid value entered for the density"},
    {"txtSpeed",
     "speed",
     "speed",
     "",
     "speed (RPM)",
     "16000",
     {1000.0, 60000.0},
     "The Speed must be between 1000 and 60000 rpm."},
    {"txtTemp",
     "temperature",
     "temperature",
     "",
     "temperature (deg C)",
     "20",
     {0.0, 40.0},
     "The Temperature must be between 0 and 40 degC."},
    {"txtNonId",
     "nonid",
     "B*M",
     "",
     "2nd virial coefficient * MW",
     "0.01",
     {0.0, kInfinity},
     "The value of B*M (nonideality) should be => 0."},
    {"txtN1mer", "n1", "N-mer", "", "degree of association of 1st step", "2", kDegree, ""},
    {"txtLnK1", "lnk1", "K1", "", "K1", "12.0", {}, kKText},
    {"txtN2mer", "n2", "M-mer", "", "degree of association of 2nd step", "3", kDegree, ""},
    {"txtLnK2", "lnk2", "K2", "", "K2", "12.0", {}, kKText},
    {"txtExtCoeff", "ext_coeff", "extinction coeff.", "ext. coeff. A",
     "molar extinction coefficient", "197400", kAboveZero, kExtinctionText},
    {"txtRMS", "rms", "rms noise", "", "signal level of added noise", "0.01", kFraction,
     "The RMS must be => 0, and realistically < 1."},
    {"txtRmen", "meniscus", "R(meniscus)", "", "radius at the meniscus (cm)", "6.350",
     kRadiusBounds, "The value of R(meniscus) should lie between 5.8 and 7.2, and be < R(base)."},
    {"txtRbase", "base", "R(base)", "", "radius at the base (cm)", "6.650", kRadiusBounds,
     "The value of R(base) should lie between 5.8 and 7.2, and be > R(meniscus)."},
    {"txtLoadC", "load", "loading conc.", "C(load) A", "loading concentration (molar)", "1.00E-06",
     kAboveZero, kLoadText},
    {"txtAlpha", "alpha", "alpha", "", "weight fraction of incompetent species", "0.10", kFraction,
     "The weight fraction of an incompetent species should be a positive fraction less than 1."},
    {"txtLoadCB", "load_b", "C(load) B", "", "loading concentration of B (molar)", "1.00E-06",
     kAboveZero, kLoadText},
    {"txtExtCoeffB", "ext_coeff_b", "ext. coeff. B", "", "molar extinction coefficient of B",
     "197400", kAboveZero, kExtinctionText},
    {"txtVbarB", "vbar_b", "vbar B", "", "partial specific volume of B (ml/gm)", "0.730",
     kVbarBounds, kVbarText},
    {"txtMWB", "mw_b", "MW B", "", "molecular weight (daltons)", "60000", kMassBounds, kMassText},
    {"txtLnK3", "lnk3", "K3", "", "K3", "12.0", {}, kKText},
    {"txtWaveL",
     "wavelength",
     "wavelength",
     "",
     "",
     "280",
     {190.0, 600.0},
     "The wavelength for an absorbance scan should be between 190 and 600 nm."},
}};

}  // namespace

const SimBoxInfo& InfoOf(SimBox box) {
  return kBoxes[static_cast<std::size_t>(box)];
}

std::optional<SimBox> SimBoxOfKey(std::string_view key) {
  for (std::size_t k = 0; k < kBoxes.size(); ++k) {
    if (kBoxes[k].key == key) return static_cast<SimBox>(k);
  }
  return std::nullopt;
}

}  // namespace quorvane
