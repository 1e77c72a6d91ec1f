// Faults caught here: a failure that goes unseen, is misnamed, or writes beyond the failing point.
#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "sim_runs.h"

using namespace quorvane;

namespace {

struct Case {
  const char* what;
  int model;
  Entries entries;
  KDisplay display;
  std::string error;
};

const std::vector<Case> kCases = {
    {"chain that never ends at the meniscus",
     9,
     {{SimBox::kLnK1, "1E8"}},
     KDisplay::kPlain,
     "Division by zero"},
    {"load that no chain reaches", 9, {{SimBox::kLnK1, "9"}}, KDisplay::kLog10, "Overflow"},
    {"K beyond double range", 2, {{SimBox::kLnK1, "800"}}, KDisplay::kLn, "Overflow"},
    {"exponential",
     0,
     {{SimBox::kMW, "5E7"}, {SimBox::kSpeed, "60000"}},
     KDisplay::kLn,
     "Overflow"},
    {"degree", 3, {{SimBox::kN1mer, "32767"}}, KDisplay::kLn, "Overflow"},
    {"start of the load fit",
     8,
     {{SimBox::kLnK1, "350"}, {SimBox::kLnK2, "350"}},
     KDisplay::kLn,
     "Overflow"},
    {"no buoyancy",
     0,
     {{SimBox::kVbar, "0.8"}, {SimBox::kDensity, "1.25"}},
     KDisplay::kLn,
     "Invalid operation"},
    {"one grid point", 2, {{SimBox::kRbase, "6.3504"}}, KDisplay::kLn, "Invalid operation"},
    {"K without a logarithm", 6, {{SimBox::kLnK1, "0"}}, KDisplay::kPlain, "Invalid operation"},
};

std::ptrdiff_t Lines(const std::string& text) {
  return std::count(text.begin(), text.end(), '\n');
}

}  // namespace

TEST(Simulate, SaysWhyItFailed) {
  for (const Case& c : kCases) {
    const SimulatedRun run = RunOf(c.model, c.entries, 1, c.display);
    EXPECT_FALSE(run.outcome.ok) << c.what;
    EXPECT_EQ(run.outcome.error, c.error) << c.what;
    ASSERT_EQ(run.host.messages.size(), 1u) << c.what;
    EXPECT_EQ(run.host.messages[0].text,
              "Error while Simulating Data!  Error was " + c.error +
                  "\r\nPlease try more reasonable values for the simulation parameters.");
    EXPECT_LE(Lines(run.simulator.Text), 2) << c.what;
  }
}

TEST(Simulate, KeepsWhatCameBeforeAFailure) {
  // The signal overflows where the concentration passes 1.8 molar, half way down.
  const SimulatedRun run = RunOf(0, {{SimBox::kLoadC, "1"}, {SimBox::kExtCoeff, "1E308"}});
  EXPECT_EQ(run.outcome.error, "Overflow");
  const int written = run.simulator.WrittenPoints;
  EXPECT_GT(written, 100);
  EXPECT_LT(written, 300);
  EXPECT_EQ(Lines(run.simulator.Text), written + 2);
  EXPECT_GT(run.Column().signal[written - 1], 0.0);
  EXPECT_EQ(run.Column().signal[written], 0.0);
}

TEST(Simulate, KeepsTheOldTextIfTheSummaryLineFails) {
  SimulatedRun run = RunOf(2, {});
  const std::string before = run.simulator.Text;
  run.simulator.Inputs.kDisplay = KDisplay::kPlain;
  EXPECT_FALSE(EnterText(run.simulator, SimBox::kLnK1, "-3"));
  run.Repeat();
  EXPECT_EQ(run.outcome.error, "Invalid operation");
  EXPECT_EQ(run.simulator.Text, before);
}

TEST(SimColumn, EndsAtIndex2048) {
  SimColumn column;
  BuildGrid({.Rm = 5.0, .n = 2049}, column);
  EXPECT_NEAR(column.r[2048], 7.048, 1.0e-12);
  EXPECT_THROW(BuildGrid({.Rm = 5.0, .n = 2050}, column), SubscriptFault);
}

TEST(SolveLoadNonideal, GivesZeroWithoutAnEnclosedRoot) {
  // What floats is thickest at the meniscus, above the load: the bracket only goes down.
  const SimulatedRun run = RunOf(1, {{SimBox::kDensity, "2"}, {SimBox::kRMS, "0"}});
  EXPECT_TRUE(run.outcome.ok);
  EXPECT_EQ(run.outcome.reference.a, 0.0);
  EXPECT_EQ(run.Column().signal[150], 0.0);
}
