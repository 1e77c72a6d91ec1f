#include "solution/sequence.h"

#include <array>

#include "base/files.h"
#include "base/paths.h"
#include "base/text.h"
#include "solution/protein_constants.h"
#include "solution/solution_fault.h"

namespace quorvane {

namespace {

constexpr std::size_t kLongestFile = 4U << 20U;  // bytes

// More than the longest protein known has; an archive has room for as many.
constexpr std::size_t kMostResidues = 40000;

// A name as it can be shown and kept: UTF-8 without control characters, not longer than a line.
std::string CleanName(std::string_view text) {
  constexpr std::size_t kLongestName = 120;  // bytes
  std::string name;
  text = Trim(text);
  while (!text.empty() && name.size() < kLongestName) {
    const char32_t c = NextUtf8(text);
    AppendUtf8(name, c < 32 || c == 127 ? U' ' : c);
  }
  return name;
}

// What the letters of no single amino acid stand for.
std::string MeaningOf(char letter) {
  switch (letter) {
    case 'B':
      return " (Asp or Asn)";
    case 'Z':
      return " (Glu or Gln)";
    case 'J':
      return " (Ile or Leu)";
    case 'X':
      return " (any amino acid)";
    case 'U':
      return " (selenocysteine)";
    case 'O':
      return " (pyrrolysine)";
    case '-':
    case '.':
      return " (a gap)";
    case '*':
      return " (a stop)";
    default:
      return letter >= '0' && letter <= '9' ? " (a number)" : "";
  }
}

// The character at the front of `text`, as a message shows it.
std::string Shown(std::string_view text) {
  const auto byte = static_cast<unsigned char>(text.front());
  if (byte < 32 || byte == 127) return "character " + std::to_string(byte);
  std::string shown;
  AppendUtf8(shown, NextUtf8(text));
  return "\"" + shown + "\"";
}

std::string PlaceIn(const ProteinSequence& sequence) {
  return sequence.name.empty() ? "" : sequence.name + ": ";
}

// "Ala" and the like would pass as the letters A, L and A. In capitals a single word may be
// letters.
void RefuseThreeLetterCodes(std::string_view line, const ProteinSequence& sequence) {
  int words = 0;
  bool asWritten = false;
  while (!line.empty()) {
    const std::size_t end = std::min(line.find_first_of(" \t-"), line.size());
    if (end > 0) {
      std::string code = ToLower(line.substr(0, end));
      code.front() = static_cast<char>(code.front() - 'a' + 'A');
      if (FindResidueByCode(code) == nullptr) return;
      asWritten = asWritten || code == line.substr(0, end);
      ++words;
    }
    line.remove_prefix(std::min(end + 1, line.size()));
  }
  if (words < 2 && !asWritten) return;
  throw SolutionFault(PlaceIn(sequence) + "one letter for each amino acid is wanted, not three");
}

void AddLetters(std::string_view line, ProteinSequence& sequence, bool& ended) {
  for (std::size_t k = 0; k < line.size(); ++k) {
    if (line[k] == ' ' || line[k] == '\t') continue;
    const char letter =
        line[k] >= 'a' && line[k] <= 'z' ? static_cast<char>(line[k] - 32) : line[k];
    if (ended || (FindResidue(letter) == nullptr && letter != '*')) {
      const std::string_view wrong = ended ? "*" : line.substr(k);
      throw SolutionFault(PlaceIn(sequence) + Shown(wrong) + MeaningOf(ended ? '*' : letter) +
                          " at place " + std::to_string(sequence.letters.size() + 1) +
                          " of the sequence is none of the twenty amino acids");
    }
    if (sequence.letters.size() == kMostResidues) {
      throw SolutionFault(PlaceIn(sequence) + "the sequence has more than 40000 residues");
    }
    if (letter == '*') {
      ended = true;
    } else {
      sequence.letters += letter;
    }
  }
}

void RefuseEmpty(const ProteinSequence& sequence) {
  if (sequence.letters.empty()) {
    throw SolutionFault(PlaceIn(sequence) + "the sequence has no letters");
  }
}

}  // namespace

std::vector<ProteinSequence> ReadSequences(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  const std::string lines = WithUnixLines(text);
  std::vector<ProteinSequence> sequences;
  bool ended = false;
  for (std::size_t begin = 0; begin < lines.size();) {
    const std::size_t end = std::min(lines.find('\n', begin), lines.size());
    const std::string_view line = Trim(std::string_view(lines).substr(begin, end - begin));
    begin = end + 1;
    if (line.empty()) continue;
    if (line.front() == '>') {
      if (!sequences.empty()) RefuseEmpty(sequences.back());
      sequences.push_back({CleanName(line.substr(1)), {}});
      if (sequences.back().name.empty()) {
        sequences.back().name = "record " + std::to_string(sequences.size());
      }
      ended = false;
      continue;
    }
    if (line.front() == ';') continue;  // a comment of old FASTA files
    if (sequences.empty()) sequences.emplace_back();
    RefuseThreeLetterCodes(line, sequences.back());
    AddLetters(line, sequences.back(), ended);
  }
  if (sequences.empty()) sequences.emplace_back();
  RefuseEmpty(sequences.back());
  return sequences;
}

ProteinSequence ReadSequence(std::string_view text) {
  const std::vector<ProteinSequence> sequences = ReadSequences(text);
  if (sequences.size() == 1) return sequences.front();
  constexpr std::size_t kMostNamed = 10;
  std::string names;
  for (std::size_t k = 0; k < std::min(kMostNamed, sequences.size()); ++k) {
    names += (k == 0 ? "" : "; ") + PlaceIn(sequences[k]) +
             std::to_string(sequences[k].letters.size()) + " residues";
  }
  if (sequences.size() > kMostNamed) names += "; ...";
  throw SolutionFault("there are " + std::to_string(sequences.size()) +
                      " sequences, and one is wanted: " + names);
}

ProteinSequence SequenceOf(const std::string& fileOrLetters, const std::filesystem::path& folder) {
  const bool isFasta = fileOrLetters.starts_with(">");
  const std::filesystem::path path = PathIn(folder, PathFromText(fileOrLetters));
  if (!isFasta && FileExists(path)) {
    try {
      return ReadSequence(ReadWholeFile(path, kLongestFile));
    } catch (const SolutionFault& fault) {
      throw SolutionFault(fileOrLetters + ": " + fault.what());
    }
  }
  if (!isFasta && fileOrLetters.find_first_of("./\\") != std::string::npos) {
    throw FileFault(PathText(path) + ": there is no such file");
  }
  return ReadSequence(fileOrLetters);
}

}  // namespace quorvane
