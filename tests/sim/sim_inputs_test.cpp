// Faults caught here: a bound that moved or changed sides, a message of another box, an entry that
// is refused and stored all the same.
#include <cmath>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "sim/sim_inputs.h"

using namespace quorvane;

namespace {

struct BoxCase {
  const char* keys;  // of the boxes, in a job
  const char* accepted;
  const char* refused;
  const char* message;
  int model = 0;
};

const std::vector<BoxCase> kBoxCases = {
    {"mw mw_b", "100 5E7", "99.99 50000000.1 60,000", "100 <= Molecular Weight <= 50,000,000."},
    {"vbar vbar_b", "0.3 .9", "0.2999 0.9001 x",
     "The partial specific volume should, realistically, be between 0.3 and 0.9 ml/gm."},
    {"density", "0.5 2", "0.4999 2.0001", "Invalid value entered for the density"},
    {"load load_b", "1E-300", "0 -1", "Loading concentration must be > 0."},
    {"ext_coeff ext_coeff_b", "0.001", "0 -1", "The extinction coefficient must be > 0."},
    {"rms", "0 0.9999", "-0.001 1", "The RMS must be => 0, and realistically < 1."},
    {"speed", "1000 60000", "999.9 60000.1", "The Speed must be between 1000 and 60000 rpm."},
    {"temperature", "0 40", "-0.1 40.1", "The Temperature must be between 0 and 40 degC."},
    {"nonid", "0 1E9", "-0.001", "The value of B*M (nonideality) should be => 0."},
    {"alpha", "0 0.9999", "-0.001 1",
     "The weight fraction of an incompetent species should be a positive fraction less than 1."},
    {"base", "7.2 6.3501", "7.2001 6.35 6.2",
     "The value of R(base) should lie between 5.8 and 7.2, and be > R(meniscus)."},
    {"meniscus", "5.8 6.6499", "5.7999 6.65 7",
     "The value of R(meniscus) should lie between 5.8 and 7.2, and be < R(base)."},
    {"wavelength", "190 600", "189.9 600.1",
     "The wavelength for an absorbance scan should be between 190 and 600 nm."},
    {"lnk1 lnk2 lnk3", "-1E5 0 1E5", "12,0 1E999", "Illegal Value Entered"},
    {"n1", "2 3 32767", "1 2.5 -2 32768 two", "N-mer must be an integer => 2.", 2},
    {"n1", "2 4", "1 2.5", "N-mer must be an integer => 2, and N-mer <> M-mer.", 3},
    {"n1", "", "3", "N-mer must be different from M-mer.", 3},
    {"n2", "2", "2.5", "M-mer must be an integer => 2."},
    {"n2", "3 4", "1 x", "M-mer must be an integer => 2, and M-mer <> N-mer.", 3},
    {"n2", "", "2 2.0", "M-mer must be different from N-mer.", 3}};

std::vector<std::string> Words(const char* text) {
  std::istringstream in(text);
  return {std::istream_iterator<std::string>(in), {}};
}

}  // namespace

TEST(StoreEntry, ChecksEachBoxAtItsBounds) {
  for (const BoxCase& c : kBoxCases) {
    for (const std::string& key : Words(c.keys)) {
      const SimBox box = SimBoxOfKey(key).value();
      SimInputs start = DefaultInputs();
      start.model = c.model;
      for (const std::string& text : Words(c.accepted)) {
        SimInputs inputs = start;
        EXPECT_FALSE(StoreEntry(inputs, box, text)) << key << " " << text;
        EXPECT_EQ(inputs.Text(box), text);
      }
      for (const std::string& text : Words(c.refused)) {
        SimInputs inputs = start;
        EXPECT_EQ(StoreEntry(inputs, box, text), c.message) << key << " " << text;
        EXPECT_EQ(inputs.Text(box), start.Text(box));
      }
    }
  }
}

TEST(StoreEntries, JudgesThePairThatComesOut) {
  SimInputs inputs = DefaultInputs();
  inputs.model = 3;
  EXPECT_FALSE(StoreEntries(inputs, {{SimBox::kN1mer, "3"},
                                     {SimBox::kN2mer, "2"},
                                     {SimBox::kRmen, "6.9"},
                                     {SimBox::kRbase, "7.1"}}));
  const SimInputs before = inputs;
  const auto refusal = StoreEntries(inputs, {{SimBox::kMW, "5000"}, {SimBox::kRmen, "7.15"}});
  ASSERT_TRUE(refusal);
  EXPECT_EQ(refusal->box, SimBox::kRmen);
  EXPECT_EQ(inputs.text, before.text);
}

TEST(StoreEntry, StoresKByTheDisplayMode) {
  struct Case {
    KDisplay display;
    const char* text;
    double lnK;
  };
  for (const Case& c : {Case{KDisplay::kLn, "-3", -3.0}, Case{KDisplay::kLog10, "2", 4.60517019},
                        Case{KDisplay::kPlain, "5", 1.60943791}}) {
    SimInputs inputs = DefaultInputs();
    inputs.kDisplay = c.display;
    EXPECT_FALSE(StoreEntry(inputs, SimBox::kLnK2, c.text));
    EXPECT_NEAR(std::log(inputs.K[1]), c.lnK, 1.0e-8) << c.text;
    EXPECT_NEAR(std::log(inputs.K[0]), 12.0, 1.0e-12);
  }
}

TEST(ReadConstants, LetsTheEntryOfK2ReplaceK1WithTwoSites) {
  SimInputs inputs = DefaultInputs();
  EXPECT_FALSE(StoreEntry(inputs, SimBox::kLnK2, "3"));
  inputs.model = 7;
  inputs.kDisplay = KDisplay::kPlain;  // changed after the entry: K2 keeps what was stored
  ReadConstants(inputs);
  EXPECT_EQ(inputs.K[0], 3.0);
  EXPECT_NEAR(inputs.K[1], std::exp(3.0), 1.0e-12);
}

TEST(LabelOf, FollowsModelAndDisplay) {
  struct Case {
    SimBox box;
    int model;
    KDisplay display;
    const char* label;
    const char* toolTip;
  };
  const std::vector<Case> cases = {
      {SimBox::kMW, 9, KDisplay::kLn, "molecular weight", "molecular weight (daltons)"},
      {SimBox::kMW, 10, KDisplay::kLn, "MW A", "molecular weight (daltons)"},
      {SimBox::kLnK3, 8, KDisplay::kLn, "LnK3", "natural log of K3"},
      {SimBox::kLnK1, 9, KDisplay::kLog10, "LogKi", "Base 10 log of Kisodesmic"},
      {SimBox::kLnK1, 10, KDisplay::kLn, "LnKs", "natural log of Kself-assoc."},
      {SimBox::kLnK2, 10, KDisplay::kPlain, "Kh", "Khetero-assoc."}};
  for (const Case& c : cases) {
    EXPECT_EQ(LabelOf(c.box, c.model, c.display), c.label);
    EXPECT_EQ(ToolTipOf(c.box, c.model, c.display), c.toolTip) << c.label;
  }
}
