// Lines of a scan file, their fields in the columns that a load takes them from.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorvane {

// Signal and standard deviation with six digits, as instruments write them.
inline constexpr std::string_view kSignalPattern = "  0.00000E+000  ; -0.00000E+000  ";
inline constexpr std::string_view kErrorPattern = "  0.00000E+000; -0.00000E+000";

// Put a field into a header line, which has its 39 characters.
void PutKind(std::string& header, char kind);
void PutCell(std::string& header, int cell);                   // 0 to 9
void PutTemperature(std::string& header, double temperature);  // deg C, 0 to 99.9
void PutSpeed(std::string& header, double speed);              // rpm, 0 to 99999
void PutWavelength(std::string& header, double wavelength);    // nm, 0 to 999

// What the header line of a scan says.
struct ScanHeader {
  char kind = 'R';  // R absorbance, P interference, F fluorescence
  int cell = 1;
  double temperature = 20.0;
  double speed = 0.0;
  double seconds = 0.0;  // from the start of the run, 0 to 9999999
  double omega2t = 0.0;  // 1/s
  double wavelength = 0.0;
  bool operator==(const ScanHeader&) const = default;
};

std::string HeaderLine(const ScanHeader& header);

// One point with as many digits as the columns hold: six decimals of the radius, 0 to 9999 cm, and
// eight digits of signal and standard deviation (seven with an exponent of three digits).
std::string PointLine(double radius, double signal, double err);

}  // namespace quorvane
