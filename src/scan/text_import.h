// Import of delimited text: what a text is understood to say, and the scan file made of it.
#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scan/scan_writer.h"
#include "scan/text_table.h"

namespace quorvane {

// Columns from 1.
struct ImportColumns {
  int radius = 1;
  int signal = 2;
  std::optional<int> error;      // standard deviation of the signal
  std::optional<int> reference;  // signal and reference are then intensities
};

// What the user has chosen; what is absent is found in the text, or has a default that is said.
// Column 0 of error or reference: none, whatever the text says.
struct ImportChoices {
  KnownForm form;
  std::optional<int> radius;  // columns from 1
  std::optional<int> signal;
  std::optional<int> error;
  std::optional<int> reference;
  std::optional<int> skip;  // lines before the first row
  std::optional<char> kind;
  std::optional<int> cell;
  std::optional<double> speed;
  std::optional<double> wavelength;
  std::optional<double> temperature;
  std::optional<std::string> comment;  // UTF-8
};

// Why header values cannot be written: a cell beyond 1 to 8, a speed beyond 0 to 99999 rpm, a
// wavelength beyond 0 to 999 nm, a temperature beyond 0 to 99.9 deg C, a comment with more than
// 200 characters or a line break, columns below 1 or chosen twice; empty if they can.
std::string RefusalOfChoices(const ImportChoices& choices);

struct ImportedRow {
  std::size_t line = 0;  // of the text, from 1
  double r = 0.0;        // cm
  double c = 0.0;        // signal; with a reference log10(reference / signal)
  double err = 0.0;      // 0: not known; negative: the point is deleted
};

struct UnreadableRow {
  std::size_t line = 0;
  std::string reason;
};

enum class ImportState {
  kReady,
  kUnreadable,  // no text, or no row in it
  kAmbiguous,   // more than one separator or decimal sign reads it
  kNoScan,      // its rows make no scan
  kBadChoice,   // it does not hold what was chosen
};

// All that a text was understood to say. With a state other than kReady no scan can be made, and
// `fault` says why; then the rest is as far as it came.
struct TextImport {
  ImportState state = ImportState::kReady;
  std::string fault;
  TextForm form;
  ImportColumns columns;
  std::size_t skipped = 0;                 // lines before the first row
  std::vector<std::string> headings = {};  // of the columns, if the last of these names them
  int width = 0;                           // columns of most rows
  ScanHeader header;
  std::string comment;            // UTF-8
  std::vector<ImportedRow> rows;  // in rising order of the radius
  std::vector<UnreadableRow> unreadable;
  std::vector<std::string> remarks;  // what was taken without being asked for, in sentences
};

// Why `bytes` are no text: empty, binary, or of two bytes a character; empty if they are.
std::string RefusalOfText(std::string_view bytes);

// Understands a text. `target` is the name of the scan file to be: its extension says which kind
// and cell it has if neither a choice nor a header line does. `source` names the text in a comment.
TextImport UnderstandText(std::string_view bytes, const ImportChoices& choices,
                          const std::filesystem::path& source, const std::filesystem::path& target);

// The same with a file. Never throws for what the file is.
TextImport UnderstandFile(const std::filesystem::path& source, const ImportChoices& choices,
                          const std::filesystem::path& target);

// The scan file, one byte a character: two header lines and the rows.
std::string ScanFileOf(const TextImport& import);

// "separator TAB, decimal point; radius from column 1, signal from column 2; 2 lines before the
// first row".
std::string FormText(const TextImport& import);

// The rows that cannot be read, a sentence for each reason: "lines 3, 7-9: radius is missing". Of
// many reasons the first twenty, then how many rows are left.
std::vector<std::string> UnreadableTexts(const TextImport& import);

}  // namespace quorvane
