// Archives for tests, put together byte by byte without the library that the program uses.
#pragma once

#include <bit>
#include <string>
#include <utility>
#include <vector>

#include "scan/dataset.h"

namespace quorvane {

// `value` as `size` bytes, the lowest first.
inline std::string LittleEndian(std::uint64_t value, int size) {
  std::string bytes;
  for (int k = 0; k < size; ++k) bytes += static_cast<char>(value >> (8 * k) & 0xFF);
  return bytes;
}

inline std::string Number(double value) {
  return LittleEndian(std::bit_cast<std::uint64_t>(value), 8);
}

inline std::string Padded(std::string text, std::size_t size) {
  text.resize(size, ' ');
  return text;
}

// CRC-32 of ISO 3309, bit by bit.
inline std::uint32_t Crc32(const std::string& bytes) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char c : bytes) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320U : 0U);
  }
  return ~crc;
}

using StoredMembers = std::vector<std::pair<std::string, std::string>>;  // name, content

// A ZIP file of stored members (APPNOTE 4.3): local headers, central directory, end record.
inline std::string StoredZip(const StoredMembers& members) {
  std::string zip;
  std::string directory;
  for (const auto& [name, content] : members) {
    const std::string sizes = LittleEndian(Crc32(content), 4) + LittleEndian(content.size(), 4) +
                              LittleEndian(content.size(), 4) + LittleEndian(name.size(), 2) +
                              LittleEndian(0, 2);
    const std::string head = LittleEndian(20, 2) + LittleEndian(0, 2) + LittleEndian(0, 2) +
                             LittleEndian(0, 2) + LittleEndian(0x21, 2) + sizes;
    directory += "PK\1\2" + LittleEndian(20, 2) + head + std::string(10, '\0') +
                 LittleEndian(zip.size(), 4) + name;
    zip += "PK\3\4" + head + name + content;
  }
  const std::string end = LittleEndian(0, 4) + LittleEndian(members.size(), 2) +
                          LittleEndian(members.size(), 2) + LittleEndian(directory.size(), 4) +
                          LittleEndian(zip.size(), 4) + LittleEndian(0, 2);
  return zip + directory + "PK\5\6" + end;
}

// The record's fields up to and including Good, of three points.
inline std::string OldRecord(const std::string& name) {
  std::string record = Padded(name, 32) + Padded("/lab/run7/" + name, 256) +
                       Padded("first line", 256) + Padded("R 3 20.0 20000 0086400", 256);
  record += LittleEndian(3, 2) + LittleEndian(20000, 4) + LittleEndian(280, 2) +
            LittleEndian(std::bit_cast<std::uint32_t>(20.5F), 4);
  for (const double value : {6.5, 0.25, 0.125, 0.01, 1.5, 2.5, 7.1, 5.9}) record += Number(value);
  for (const double start : {6.4, 0.3, 0.004}) {
    for (int k = 0; k < kMaxPoints; ++k) record += Number(k < 3 ? start * (k + 1) : 0.0);
  }
  for (int k = 0; k < kMaxPoints; ++k) record += LittleEndian(k == 1 ? 0 : 0xFFFF, 2);
  return record;
}

inline std::string CurrentRecord(const std::string& name) {
  std::string record = OldRecord(name) + Number(2e-6) + Number(3e-6) + Number(1.0);
  for (int k = 0; k < 1021; ++k) record += Number(0.0);
  return record;
}

inline std::string DataHead(std::uint32_t version, std::uint32_t count) {
  return LittleEndian(version, 4) + LittleEndian(count, 4) + Padded("C:\\lab", 255);
}

inline std::string OldPage() {
  std::string page;
  for (int k = 1; k <= 8; ++k) page += Number(k + 0.5);
  return page;
}

// A page whose k-th field (from 1) is k + 0.5, but for vbar, vbar of B, density and ModelIndex.
inline std::string CurrentPage(double vbar, double modelIndex) {
  std::string page =
      OldPage() + Number(9.5) + Number(vbar) + Number(0.74) + Number(1.01) + Number(modelIndex);
  return page + std::string(508 * 8, '\0');
}

// Two graphs, of bytes that are no chart of ours.
inline std::string TwoGraphs() {
  return LittleEndian(2, 2) + LittleEndian(0x2011, 2) + LittleEndian(1, 2) + LittleEndian(3, 4) +
         LittleEndian(0, 4) + "abc" + LittleEndian(0x2011, 2) + LittleEndian(1, 2) +
         LittleEndian(0, 4) + LittleEndian(0, 4);
}

// An archive in the current layout: a sample, a blank, two graphs.
inline StoredMembers SampleMembers(double vbar = 0.75, double modelIndex = 3.0) {
  return {{"datafile.bin", DataHead(51916, 2) + CurrentPage(vbar, modelIndex) +
                               CurrentRecord("a.dat") + CurrentRecord("BL_b.dat")},
          {"logfile.rtf", "{\\rtf1 log}"},
          {"chartfile.bin", TwoGraphs()}};
}

}  // namespace quorvane
