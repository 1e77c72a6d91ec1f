// Dataset: one radial scan of up to 2048 points with its per-dataset fit values.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace quorvane {

// Text of N characters, one byte each (Windows-1252), filled up with blanks.
template <std::size_t N>
struct FixedText {
  std::array<char, N> bytes;

  // Takes the first N bytes of `text`, which is already one byte a character.
  void SetBytes(std::string_view text) {
    bytes.fill(' ');
    text.copy(bytes.data(), N);
  }
  std::string_view View() const { return {bytes.data(), N}; }
  bool operator==(const FixedText&) const = default;
};

inline constexpr int kMaxPoints = 2048;
inline constexpr int kMinPoints = 10;

// 16-bit booleans.
inline constexpr std::int16_t kTrue = -1;
inline constexpr std::int16_t kFalse = 0;

struct Dataset {
  FixedText<32> FileName;   // local name of the dataset
  FixedText<256> FilePath;  // source file
  FixedText<256> Comment1;  // line 1 of the file, with the source path for all kinds but "DAT"
  FixedText<256> Comment2;  // line 2 of the file; ends in " BL" once a blank was subtracted
  std::int16_t NumPoints;   // 10 to 2048 after a load; an archive may hold fewer
  std::int32_t Speed;       // rpm
  std::int16_t Wavelength;  // nm
  float Temperature;        // deg C
  double RefRadius;         // cm; radius R0 at which RefConc holds
  double RefConc;           // signal of A at R0
  double RefConc2;          // signal of B at R0
  double Offset;            // baseline, signal units
  double ExtCoeff;          // of A, signal units/mole
  double ExtCoeff2;         // of B
  double Rbase;             // cm; radius of the base
  double Rmen;              // cm; radius of the meniscus
  std::array<double, kMaxPoints> R;           // cm, index from 0
  std::array<double, kMaxPoints> C;           // signal
  std::array<double, kMaxPoints> Err;         // standard deviation; negative: deleted
  std::array<std::int16_t, kMaxPoints> Good;  // kTrue: the point is in use
  double ALoad;                               // loading concentration of A
  double BLoad;                               // loading concentration of B
  double Edited;                              // 1.0: has been opened for editing, else 0.0
  std::array<double, 1021> Spare;             // zero
};

inline constexpr double kDefaultLoad = 1e-6;  // of ALoad and BLoad after a load

static_assert(std::is_trivially_copyable_v<Dataset> && std::is_standard_layout_v<Dataset>);

// A record without points, its values as after a load.
Dataset EmptyDataset();

// The texts of a record as UTF-8, blanks at both ends removed.
std::string NameOf(const Dataset& dataset);
std::string PathOf(const Dataset& dataset);
std::string Comment1Of(const Dataset& dataset);
std::string Comment2Of(const Dataset& dataset);

// Whether the name begins with "BL_": a scan of the solvent, which is never fitted.
bool IsBlank(const Dataset& dataset);

// Whether a blank was subtracted: the trimmed Comment2 ends in "BL".
bool IsBlanked(const Dataset& dataset);

// Radius of the first and of the last point, cm; 0 for a record without points.
double FirstRadius(const Dataset& dataset);
double LastRadius(const Dataset& dataset);

// Points in use.
int CountGoodPoints(const Dataset& dataset);

}  // namespace quorvane
