// Lines of a scan read by their words, whatever columns these stand in.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

// The words of `line`, split at blanks, TABs, commas and semicolons; views of it.
std::vector<std::string_view> Words(std::string_view line);

// The number that is word `place`, from 0; nothing if there is none.
std::optional<double> NumberAt(const std::vector<std::string_view>& words, std::size_t place);

// Whether numbers are written with a comma for their point: there are commas and no point.
bool HasDecimalCommas(std::string_view line);

// `line` with points for such commas.
std::string WithPoints(std::string line);

// What the words of a header line say.
struct HeaderWords {
  char kind = 'R';  // R, P, F, I, W ...
  int cell = 0;
  double temperature = 0.0;          // deg C
  double speed = 0.0;                // rpm
  std::optional<double> seconds;     // from the start of the run
  std::optional<double> omega2t;     // 1/s
  std::optional<double> wavelength;  // nm
};

// Nothing unless the line begins with a letter and three numbers: cell, temperature, speed.
std::optional<HeaderWords> ReadHeaderWords(std::string_view line);

}  // namespace quorvane
