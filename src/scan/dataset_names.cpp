#include "scan/dataset_names.h"

#include <algorithm>
#include <array>

#include "base/arithmetic.h"
#include "base/text.h"
#include "scan/fields.h"

namespace quorvane {

namespace {

std::string_view StemOf(std::string_view fileName) {
  return fileName.substr(0, fileName.find('.'));
}

// A stem of five digits stands for its number, so leading zeros go; any other for itself.
std::string BaseOf(std::string_view stem) {
  const bool number = stem.size() == 5 && std::all_of(stem.begin(), stem.end(),
                                                      [](char c) { return c >= '0' && c <= '9'; });
  return number ? std::to_string(std::stoi(std::string(stem))) : std::string(Trim(stem));
}

std::string IntegerAt(const LineBuffer& header, int first, int last) {
  return std::to_string(FieldInt32(header.Columns(first, last)));
}

std::string IpRaName(std::string_view stem, const LineBuffer& header, char letter) {
  return BaseOf(stem) + "_" + std::to_string(CellNumber(header.View())) + letter +
         IntegerAt(header, 10, 11) + IntegerAt(header, 34, 36) + ".dat";
}

std::string FiName(std::string_view stem, const LineBuffer& header) {
  std::string letter;
  if (stem.size() == 6) {
    letter = stem.substr(0, 1);
    stem.remove_prefix(1);
  }
  // Any other length leaves the letter empty and is taken whole, a five-digit number too.
  const std::string base = letter.empty() ? std::string(Trim(stem)) : BaseOf(stem);
  const double kiloRpm = FieldVal(header.Columns(10, 14)) / 1000.0;
  return base + "_" + std::to_string(CellNumber(header.View())) + letter +
         std::to_string(RoundHalfEven(kiloRpm, -2147483648LL, 2147483647LL)) +
         IntegerAt(header, 34, 36) + ".dat";
}

std::string ElName(std::string_view stem, const LineBuffer& header, ElWavelength elWavelength) {
  const int first = elWavelength == ElWavelength::kSingleLoad ? 24 : 23;
  return std::string(Trim(stem)) + "_1A0" + IntegerAt(header, first, first + 3);
}

}  // namespace

const char* KindName(FileKind kind) {
  constexpr std::array<const char*, 4> kNames = {"IP,RA", "DAT", "FI", "EL"};
  return kNames[static_cast<std::size_t>(kind)];
}

int CellNumber(std::string_view header) {
  return FieldInt32(LineBuffer(header).Columns(3, 3));
}

std::string DatasetName(FileKind kind, std::string_view fileName, std::string_view header,
                        char letter, ElWavelength elWavelength) {
  const LineBuffer columns(header);
  const std::string_view stem = StemOf(fileName);
  switch (kind) {
    case FileKind::kIpRa:
      return IpRaName(stem, columns, letter);
    case FileKind::kFi:
      return FiName(stem, columns);
    case FileKind::kEl:
      return ElName(stem, columns, elWavelength) + ".EL1";
    case FileKind::kDat:
      break;
  }
  return std::string(Trim(fileName));
}

std::string BlankName(FileKind kind, std::string_view fileName, std::string_view header) {
  if (kind == FileKind::kDat) {
    const std::string name(Trim(fileName));
    return name.starts_with("BL_") ? name : "BL_" + name;
  }
  if (kind == FileKind::kEl) {
    return "BL_" + ElName(StemOf(fileName), LineBuffer(header), ElWavelength::kSingleLoad) + ".dat";
  }
  return "BL_" + DatasetName(kind, fileName, header, 'A', ElWavelength::kSingleLoad);
}

}  // namespace quorvane
