#include "scan/scan_writer.h"

#include <algorithm>
#include <cmath>

#include "base/number_format.h"

namespace quorvane {

namespace {

// Columns of the header line, from 0.
constexpr std::size_t kKindColumn = 0;
constexpr std::size_t kCellColumn = 2;
constexpr std::size_t kTemperatureColumn = 4;
constexpr std::size_t kSpeedColumn = 9;
constexpr std::size_t kTimeColumn = 15;
constexpr std::size_t kOmega2tColumn = 23;
constexpr std::size_t kWavelengthColumn = 33;

// Widths of the fields of a row: 1 to 11, 12 to 26, then column 27 and 28 to 41.
constexpr std::size_t kRadiusWidth = 11;
constexpr std::size_t kNumberWidth = 15;

void Put(std::string& header, std::size_t column, std::string_view field) {
  header.replace(column, field.size(), field);
}

std::string ToTheRight(const std::string& text, std::size_t width) {
  return std::string(width - std::min(width, text.size()), ' ') + text;
}

// A blank before it keeps it apart from its neighbour.
std::string NumberField(double value) {
  std::string text = FormatNumber(value, "0.0000000E+00");
  if (text.size() >= kNumberWidth) text = FormatNumber(value, "0.000000E+000");
  return ToTheRight(text, kNumberWidth);
}

}  // namespace

void PutKind(std::string& header, char kind) {
  header[kKindColumn] = kind;
}

void PutCell(std::string& header, int cell) {
  Put(header, kCellColumn, FormatNumber(cell, "0"));
}

void PutTemperature(std::string& header, double temperature) {
  Put(header, kTemperatureColumn, FormatNumber(temperature, "00.0"));
}

void PutSpeed(std::string& header, double speed) {
  Put(header, kSpeedColumn, FormatNumber(speed, "00000"));
}

void PutWavelength(std::string& header, double wavelength) {
  Put(header, kWavelengthColumn, FormatNumber(wavelength, "000"));
}

std::string HeaderLine(const ScanHeader& header) {
  std::string line = "R 1 20.0 00000 0000000 0.0000E00 000 00";
  PutKind(line, header.kind);
  PutCell(line, header.cell);
  PutTemperature(line, header.temperature);
  PutSpeed(line, header.speed);
  Put(line, kTimeColumn, FormatNumber(header.seconds, "0000000"));
  Put(line, kOmega2tColumn, FormatNumber(header.omega2t, "0.0000E-00"));
  PutWavelength(line, header.wavelength);
  return line;
}

std::string PointLine(double radius, double signal, double err) {
  return ToTheRight(FormatNumber(radius, "0.000000"), kRadiusWidth) + NumberField(signal) +
         NumberField(err);
}

}  // namespace quorvane
