// The local name that a dataset gets at loading, built from its file's name and header line.
#pragma once

#include <string>
#include <string_view>

namespace quorvane {

// Kinds of scan file; the value is the index of the file type options.
enum class FileKind { kIpRa = 0, kDat = 1, kFi = 2, kEl = 3 };

// Its caption: "IP,RA", "DAT", "FI", "EL".
const char* KindName(FileKind kind);

// Where the wavelength of an "EL" header stands for a name: one column apart between the two ways
// of loading, kept on purpose.
enum class ElWavelength { kSingleLoad, kMultipleLoad };

// The cell of a header line, as names of the kinds "IP,RA" and "FI" show it.
int CellNumber(std::string_view header);

// Name of a dataset from file `fileName` (no folder), its header line and the channel letter;
// file name, header and result one byte a character.
//   "IP,RA"  base _ cell letter kilo-rpm wavelength ".dat"   00012.RA3, channel B: 12_3B20280.dat
//   "DAT"    the trimmed file name
//   "FI"     the same as "IP,RA"; a stem of 6 characters begins with the letter
//   "EL"     stem "_1A0" wavelength ".EL1"
// Throws ArithmeticFault where a header number is out of range.
std::string DatasetName(FileKind kind, std::string_view fileName, std::string_view header,
                        char letter, ElWavelength elWavelength);

// Name of a blank from file `fileName`: "BL_" in front, channel "A", ".dat" behind for "EL" too.
std::string BlankName(FileKind kind, std::string_view fileName, std::string_view header);

}  // namespace quorvane
