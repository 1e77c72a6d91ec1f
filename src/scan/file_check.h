// A look at a scan file before it is loaded: what the fixed columns make of it beside what its
// words say, and where the two differ. It only looks: loading goes by the columns alone.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scan/loading.h"

namespace quorvane {

// What the letter in front of a header stands for: "absorbance" for R, "interference" for P,
// "fluorescence" F, "intensity" I, "wavelengths" W; empty for any other.
std::string_view SignalOfLetter(char letter);

// Points of one channel.
struct ChannelReading {
  char letter = 'A';
  int points = 0;      // rows in its window
  double first = 0.0;  // lowest and highest radius of these, cm; 0 without points
  double last = 0.0;
};

// One way of reading a file. What it does not have, or does not use, is absent.
struct FileReading {
  std::string kind;
  std::optional<int> cell;
  std::optional<double> temperature;  // deg C
  std::optional<double> speed;        // rpm
  std::optional<double> wavelength;   // nm
  std::vector<ChannelReading> channels;
};

struct FileCheck {
  FileReading columns;  // as loading would take it
  FileReading words;    // line 2 and the rows split at blanks, TABs, commas and semicolons
  std::string fault;    // why loading would give the file up; then the columns may be empty
  std::vector<std::string> warnings;  // plain sentences
};

// Checks a file for the settings of a load. At most the first megabyte is read. Never throws for
// what the file is: a folder, a vanished, empty or binary file has a fault. The words of files of
// the kind "EL" are not read.
FileCheck CheckFile(const std::filesystem::path& path, const ScanLoadSettings& settings);

// The two readings side by side, as a window shows them.
struct CheckRow {
  std::string label;
  std::string columns;
  std::string words;
  bool differs = false;  // both say something, and not the same
};
std::vector<CheckRow> CheckRows(const FileCheck& check);

// A sentence if the temperatures of the loaded scans, and of one about to be loaded, lie more than
// one degree apart; otherwise an empty text.
std::string TemperatureDrift(const std::vector<Dataset>& loaded,
                             std::optional<double> next = std::nullopt);

}  // namespace quorvane
