// Fixed-column fields of scan files: the line buffer, the lenient reading of a number, and
// bounded reading of lines.
#pragma once

#include <array>
#include <cstdint>
#include <istream>
#include <string>
#include <string_view>

namespace quorvane {

// One line of a scan file: exactly 256 characters, cut or filled up with blanks.
class LineBuffer {
 public:
  static constexpr std::size_t kSize = 256;

  LineBuffer() { bytes_.fill(' '); }
  explicit LineBuffer(std::string_view line);

  // Columns `first` to `last`, counted from 1, both inclusive.
  std::string_view Columns(int first, int last) const;
  std::string_view View() const { return {bytes_.data(), kSize}; }

 private:
  std::array<char, kSize> bytes_;
};

// The number at the start of `field`. Blanks, tabs and line ends are skipped wherever they stand,
// also inside the number; the longest prefix of the form sign, digits, point, digits, exponent
// (E or D in either case) counts; "&H" and "&O" introduce a hexadecimal or octal integer. Anything
// else ends the number; a field without one gives 0.
// Throws ArithmeticFault (overflow) for a number beyond double range; one below it is 0.
double FieldVal(std::string_view field);

// FieldVal rounded to the nearest integer, halves to even.
// Throws ArithmeticFault (overflow) outside 16 or 32 bits.
std::int16_t FieldInt16(std::string_view field);
std::int32_t FieldInt32(std::string_view field);

// Reads the next line, ended by LF, CR LF or the end of the file, and keeps its first `limit`
// characters without the line end. False at the end of the file, and with badbit if a read fails.
bool ReadLine(std::istream& in, std::string& line, std::size_t limit = LineBuffer::kSize);

}  // namespace quorvane
