// Sequences of proteins, as letters or FASTA.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

struct ProteinSequence {
  std::string name;     // what stands behind ">", UTF-8 on one line; empty for bare letters
  std::string letters;  // A ... Y of the twenty amino acids, upper case, one at least
};

// The sequences of a text: FASTA, where a line that begins with ">" names a sequence and begins it,
// or the letters alone. Blanks and line breaks between letters do not count, nor do lines that
// begin with ";" and a "*" at the end, and small letters are letters too. Throws SolutionFault,
// naming record, letter and place, for anything else: digits, gaps, codes of three letters, letters
// of no amino acid or of several, a record or a text without letters, more than
// 40000 residues.
std::vector<ProteinSequence> ReadSequences(std::string_view text);

// The sequence of a text that holds one. Throws SolutionFault as above, and for several, which it
// names.
ProteinSequence ReadSequence(std::string_view text);

// The one sequence of the file of that name, looked for from `folder`; of the text itself if there
// is no such file.
// Throws SolutionFault, naming the file, and FileFault for what looks like the name of a file and
// for a file that cannot be read.
ProteinSequence SequenceOf(const std::string& fileOrLetters, const std::filesystem::path& folder);

}  // namespace quorvane
