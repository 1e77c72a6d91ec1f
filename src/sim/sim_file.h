// The text of a simulated scan: an ordinary IP8 or RA8 scan file.
#pragma once

#include <string>
#include <string_view>

#include "sim/sim_inputs.h"

namespace quorvane {

// The comment of a simulation that has not run; no line of a file uses it.
inline constexpr std::string_view SimComment = "QV-SIMULATED DATA :: ADD YOUR COMMENT LINE HERE";

// SimHeader before the first run.
inline constexpr std::string_view kFirstSimHeader = "P 8 20.0 20000 0099999 1.0000E12 675 21";

// The header line of 39 characters: kind, cell, temperature, speed, wavelength.
std::string MakeSimHeader(const SimInputs& inputs);

// `header` with its kind and wavelength changed to those of `inputs`.
std::string WithFileKind(std::string header, const SimInputs& inputs);

// Line 1: the model and its parameters as typed; ln K from inputs.K.
// Throws ArithmeticFault (invalid operation) for a K without a logarithm.
std::string ParameterLine(const SimInputs& inputs);

// Appends a scan to a text, row by row.
class SimFileWriter {
 public:
  // `rms`, the noise in signal units, stands in every row; `points` counts the rows. Both
  // references outlive the writer.
  SimFileWriter(std::string& text, double rms, int& points);
  void AddLine(std::string_view line);
  void AddPoint(double radius, double signal);  // cm, signal units

 private:
  std::string& text_;
  std::string rms_;
  int& points_;
};

}  // namespace quorvane
