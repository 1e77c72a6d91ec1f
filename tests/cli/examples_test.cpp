// The examples: their fits find the parameters that their README says they were made with.
#include "cli/command_fixture.h"

using namespace quorvane;

namespace {

const std::filesystem::path kExamples = std::filesystem::path(QUORVANE_SOURCE_DIR) / "examples";

class Examples : public CommandTest {};

// The rows of the README's table of true parameters.
struct Truth {
  std::string job;
  std::string parameter;
  double value = 0.0;
};

std::vector<Truth> TrueParameters() {
  std::vector<Truth> truths;
  std::istringstream lines(ReadText(kExamples / "README.md"));
  for (std::string line; std::getline(lines, line);) {
    std::istringstream cells(line);
    std::string bar;
    Truth truth;
    if (line.starts_with("|") &&
        cells >> bar >> truth.job >> bar >> truth.parameter >> bar >> truth.value) {
      truths.push_back(truth);
    }
  }
  return truths;
}

}  // namespace

TEST_F(Examples, FitsFindTheTrueParameters) {
  const std::vector<Truth> truths = TrueParameters();
  ASSERT_EQ(truths.size(), 5U);
  for (const Truth& truth : truths) {
    SCOPED_TRACE(truth.job + " " + truth.parameter);
    const std::string job = (kExamples / truth.job / "job.toml").string();
    ASSERT_EQ(Run({"analyze", job, "--quiet", "--json", Path("out.json")}), 0) << err.str();
    int found = 0;
    const auto parameters = Result()["fit"]["parameters"];
    for (const auto& parameter : parameters) {
      if (parameter["name"] != truth.parameter) continue;
      const double sd = parameter["sd"];
      EXPECT_NEAR(parameter["value"], truth.value, 3.0 * sd);
      EXPECT_LT(sd, 0.005 * truth.value);  // and it is well determined
      ++found;
    }
    EXPECT_EQ(found, 1);
  }
}

TEST_F(Examples, IntervalsOfTheMonomerDimerHoldTheTruth) {
  const std::string job = (kExamples / "monomer-dimer" / "job.toml").string();
  ASSERT_EQ(Run({"analyze", job, "--quiet", "--json", Path("out.json")}), 0) << err.str();
  const auto intervals = Result()["confidence"]["intervals"];
  ASSERT_EQ(intervals.size(), 2U);
  EXPECT_LT(intervals[0]["lower"], 8100.0);
  EXPECT_GT(intervals[0]["upper"], 8100.0);
  EXPECT_LT(intervals[1]["lower"], 11.5);
  EXPECT_GT(intervals[1]["upper"], 11.5);
}

TEST_F(Examples, TheArchiveHoldsTheAnalysis) {
  const std::string job = (kExamples / "monomer-dimer" / "reopen.toml").string();
  ASSERT_EQ(Run({"analyze", job, "--quiet", "--json", Path("out.json")}), 0) << err.str();
  EXPECT_EQ(Result()["datasets"].size(), 9U);
  EXPECT_NEAR(Result()["fit"]["rms"], 0.0079, 0.0002);
}

TEST_F(Examples, TheSeriesFallsToItsNoise) {
  std::vector<std::string> arguments = {"match", "--json", Path("out.json")};
  for (const auto& entry : std::filesystem::directory_iterator(kExamples / "equilibrium")) {
    arguments.push_back(entry.path().string());
  }
  ASSERT_EQ(Run(arguments), 0) << err.str();
  const auto scans = Result()["scans"];
  ASSERT_EQ(scans.size(), 7U);
  for (int k = 0; k < 3; ++k) {
    const double ratio = scans[k + 1]["rms"][0].get<double>() / scans[k]["rms"][0].get<double>();
    EXPECT_NEAR(ratio, std::exp(-4.0 / 6.0), 0.02) << k;
  }
  EXPECT_NEAR(scans[6]["rms"][0], 0.004 * std::sqrt(2.0), 0.0006);
}
