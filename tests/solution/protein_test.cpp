// Faults caught here: a wrong row of the residues, the water of the ends or the hydrogens of a
// disulphide forgotten, the increment of vbar with the wrong sign, a bad sequence that passes.
#include <cmath>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "base/files.h"
#include "solution/protein_constants.h"
#include "solution/sequence.h"
#include "solution/solution_constants.h"
#include "solution/solution_fault.h"
#include "support/temp_folder.h"

using namespace quorvane;

namespace {

std::map<std::string, std::string> KnownProteins() {
  std::map<std::string, std::string> letters;
  const std::string file = std::string(QUORVANE_SOURCE_DIR) + "/tests/solution/proteins.fasta";
  for (const ProteinSequence& sequence : ReadSequences(ReadWholeFile(file, 1U << 20U))) {
    letters[sequence.name.substr(sequence.name.find(", P") + 2, 6)] = sequence.letters;
  }
  return letters;
}

template <class Work>
std::string FaultOf(Work work) {
  try {
    work();
  } catch (const SolutionFault& fault) {
    return fault.what();
  }
  return "none";
}

}  // namespace

// Sums made by another program; the masses in parentheses are published ones.
TEST(ConstantsOfProtein, AreTheSumsOverTheResidues) {
  const std::map<std::string, std::string> known = KnownProteins();
  const struct {
    const char* name;
    int disulphides;
    double degC;
    int residues;
    double mass;
    double vbar;
    double extinction;
  } cases[] = {
      {"P00698", 4, 4.0, 129, 14304.9418, 0.708532, 37970},    // hen lysozyme (14305)
      {"P02769", 17, 20.0, 583, 66397.9997, 0.732607, 42925},  // bovine albumin
      {"P02769", 0, 20.0, 583, 66432.2700, 0.732607, 40800},   // reduced (66433)
      {"P0CG48", 0, 37.0, 76, 8564.7365, 0.753351, 1490},      // ubiquitin (8565)
      {"P61823", 4, 20.0, 124, 13682.1171, 0.709329, 9440},    // ribonuclease A (13682)
  };
  for (const auto& test : cases) {
    const ProteinConstants protein =
        ConstantsOfProtein(known.at(test.name), test.disulphides, test.degC);
    EXPECT_EQ(protein.residues, test.residues) << test.name;
    EXPECT_NEAR(protein.mass, test.mass, 1e-3) << test.name;
    EXPECT_NEAR(protein.vbar, test.vbar, 1e-6) << test.name;
    EXPECT_EQ(protein.extinction280, test.extinction) << test.name;
    EXPECT_NEAR(protein.a280, test.extinction / test.mass, 1e-6) << test.name;
  }
  EXPECT_EQ(FaultOf([] { ConstantsOfProtein("ACDC", 2, 20); }),
            "2 disulphides are more than the sequence has cysteines for: 2");
  EXPECT_NE(FaultOf([] { ConstantsOfProtein("ACDC", -1, 20); }), "none");
}

TEST(ReadSequence, TakesLettersAndFasta) {
  for (const char* text : {"mkLV", " MK\tL\r\nV \r\n", ">a\nMKLV*\n", ";of old\n>a\n;kept\nMKLV",
                           "\xEF\xBB\xBF>a b\r\nMK\r\nLV"}) {
    EXPECT_EQ(ReadSequence(text).letters, "MKLV") << text;
  }
  EXPECT_EQ(ReadSequence(">sp|P1\tb\xE9 \r\nMK").name, "sp|P1 b\xEF\xBF\xBD");
  EXPECT_EQ(ReadSequence(">a\nMKL\nSER").letters, "MKLSER");  // the rest of a line, no serine
  EXPECT_EQ(ReadSequences(">a\nMK*\n\n>\nLV").back().name, "record 2");
}

TEST(ReadSequence, NamesWhatIsWrong) {
  const std::pair<std::string, std::string> cases[] = {
      {"", "no letters"},
      {" \n\t", "no letters"},
      {">a", "a: the sequence has no letters"},
      {">a\n>b\nMK", "a: the sequence has no letters"},
      {"MKXL", "\"X\" (any amino acid) at place 3"},
      {">a\nMK\nLB", "a: \"B\" (Asp or Asn) at place 4"},
      {"1 MKLV", "\"1\" (a number) at place 1"},
      {">a\nAla-Gly Ser-\n", "a: one letter for each amino acid is wanted"},
      {"MET ALA GLY", "one letter for each amino acid is wanted"},
      {"Ala", "one letter for each amino acid is wanted"},
      {"-", "\"-\" (a gap) at place 1"},
      {"MK-LV", "\"-\" (a gap) at place 3"},
      {"MK*LV", "\"*\" (a stop) at place 3"},
      {"MK\xC3\xBCL", "\"\xC3\xBC\" at place 3"},
      {std::string("MK\0L", 4), "character 0 at place 3"},
      {"MK\xFF", "at place 3"},
      {std::string(40001, 'M'), "more than 40000 residues"},
      {">a\nMK\n>b\nLVV", "there are 2 sequences, and one is wanted: a: 2 residues; b: 3 residues"},
  };
  for (const auto& [text, says] : cases) {
    const std::string fault = FaultOf([&, &wrong = text] { ReadSequence(wrong); });
    EXPECT_NE(fault.find(says), std::string::npos) << text << " | " << fault;
  }
}

TEST(SequenceOf, TakesAFileBeforeLetters) {
  const TempFolder folder;
  folder.Write("MKLV", ">a\nACD\n");
  folder.Write("bad.fasta", ">a\nAC1\n");
  EXPECT_EQ(SequenceOf("MKLV", folder.path()).letters, "ACD");
  EXPECT_EQ(SequenceOf("MKL", folder.path()).letters, "MKL");
  EXPECT_EQ(SequenceOf(std::string(40000, 'M'), folder.path()).letters.size(), 40000U);
  EXPECT_THROW(SequenceOf("none.fasta", folder.path()), FileFault);
  EXPECT_EQ(FaultOf([&] { SequenceOf("bad.fasta", folder.path()); }).find("bad.fasta: a: \"1\""),
            0U);
}

TEST(CalcSolution, GivesWhatWasAskedForAndRemarks) {
  SolutionRequest request;
  request.letters = "ACCW";
  request.degC = 4.0;
  SolutionConstants constants = CalcSolution(request);
  EXPECT_FALSE(constants.density || constants.buoyancy || constants.buoyantMass);
  EXPECT_EQ(constants.remarks.size(), 3U);  // amino acids only, a short one, reduced
  request.disulphides = 1;
  request.buffer = ReadBuffer("urea = 4 M, NaCl = 20 mM");
  constants = CalcSolution(request);
  EXPECT_EQ(constants.remarks.size(), 4U);  // amino acids only, short, hydration, 20 deg C
  EXPECT_NEAR(*constants.buoyancy, 1 - constants.protein->vbar * *constants.density, 1e-15);
  EXPECT_NEAR(*constants.buoyantMass, constants.protein->mass * *constants.buoyancy, 1e-12);
  request.buffer = ReadBuffer("NiSO4 = 1 mM, tween-80 = 1 mM");
  request.letters = "ACGTACGTACGTACGTACGT";
  request.disulphides.reset();
  EXPECT_EQ(CalcSolution(request).remarks.size(), 8U);
  for (const double degC : {-0.1, 100.1, std::nan("")}) {
    request.degC = degC;
    EXPECT_NE(FaultOf([&] { CalcSolution(request); }), "none") << degC;
  }
}
