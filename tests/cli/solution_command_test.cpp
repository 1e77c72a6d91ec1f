// Faults caught here: a part of the JSON that was not asked for, a wrong status, a job that
// computes its constants at another temperature than its fit has.
#include "cli/command_fixture.h"

using namespace quorvane;

namespace {

class SolutionCommand : public CommandTest {};

}  // namespace

TEST_F(SolutionCommand, WritesWhatWasAskedFor) {
  folder.Write("a.fasta", ">a protein\nACWK\n");
  ASSERT_EQ(Run({"solution", "--sequence", Path("a.fasta"), "--buffer", "nacl=100 mM, TRIS=0.02 M",
                 "--temperature", "4", "--json", Path("out.json")}),
            0)
      << err.str();
  auto result = Result();
  EXPECT_EQ(result["temperature"], 4.0);
  EXPECT_EQ(result["protein"]["residues"], 4);
  EXPECT_NEAR(result["protein"]["mass"], 506.6183, 1e-4);
  EXPECT_EQ(result["protein"]["extinction_280"], 5500.0);
  EXPECT_NEAR(result["protein"]["a280_1mg_ml"], 5500.0 / 506.6183, 1e-6);
  EXPECT_EQ(result["buffer"]["components"][0]["name"], "Sodium chloride");
  EXPECT_EQ(result["buffer"]["components"][0]["molar"], 0.1);
  const double vbar = result["protein"]["vbar"];
  const double density = result["buffer"]["density"];
  EXPECT_NEAR(result["buoyancy"], 1 - vbar * density, 1e-15);
  EXPECT_NEAR(result["buoyant_mass"], 506.6183 * (1 - vbar * density), 1e-4);
  EXPECT_EQ(result["remarks"].size(), 4U);
  EXPECT_NE(err.str().find("Only amino acids"), std::string::npos);
  ASSERT_EQ(Run({"solution", "--buffer", "water", "--json", Path("out.json")}), 0);
  result = Result();
  EXPECT_FALSE(result.contains("protein") || result.contains("buoyancy"));
  EXPECT_EQ(result["temperature"], 20.0);
  EXPECT_NEAR(result["buffer"]["density"], 0.998234, 1e-12);
  ASSERT_EQ(Run({"solution", "--list"}), 0);
  EXPECT_NE(out.str().find("up to 5.326 M     NaCl"), std::string::npos) << out.str();
}

TEST_F(SolutionCommand, EndsWithTheStatusOfWhatIsWrong) {
  const struct {
    std::vector<std::string> more;
    int status;
    const char* says;
  } cases[] = {
      {{}, 2, "--sequence, --buffer or --list is wanted"},
      {{"--sequence", "MKX"}, 2, "place 3"},
      {{"--sequence", ""}, 2, "no letters"},
      {{"--sequence", "none.fasta"}, 3, "there is no such file"},
      {{"--sequence", "CC", "--disulphides", "2"}, 2, "more than the sequence has"},
      {{"--disulphides", "2", "--buffer", "water"}, 2, "goes with --sequence"},
      {{"--buffer", "NaCk=1 M"}, 2, "Sodium chloride (NaCl)"},
      {{"--buffer", "NaCl=6 M"}, 2, "up to 5.326 M"},
      {{"--buffer", "water", "--temperature", "101"}, 2, "outside 0 to 100"},
      {{"--buffer", "water", "--temperature", "nan"}, 2, "nan is no number"},
  };
  for (const auto& test : cases) {
    std::vector<std::string> arguments = {"solution", "--json", Path("out.json")};
    arguments.insert(arguments.end(), test.more.begin(), test.more.end());
    EXPECT_EQ(Run(arguments), test.status) << test.says << " | " << err.str();
    EXPECT_NE(err.str().find(test.says), std::string::npos) << err.str();
    EXPECT_FALSE(std::filesystem::exists(folder / "out.json")) << test.says;
  }
}

// The scans are at 20.0 deg C.
TEST_F(SolutionCommand, AJobTakesTheConstantsAtTheTemperatureOfItsFit) {
  WriteScan("00001.RA3");
  folder.Write("a.fasta", ">a\nACWK\n");
  const std::string load = "[[load]]\nfile = \"00001.RA3\"\n[constants]\n";
  const std::string keys = "sequence = \"a.fasta\"\nbuffer = \"NaCl = 0.1 M\"\nvbar_b = 0.7\n";
  const std::pair<std::string, std::string> cases[] = {
      {load + keys, "20"},
      {load + keys + "[fit]\nmodel = \"Ideal\"\n", "20"},
      {load + keys + "temperature = 4.0\n[fit]\nmodel = \"Ideal\"\n", "4"},
  };
  for (const auto& [job, degC] : cases) {
    ASSERT_EQ(Run({"solution", "--sequence", "ACWK", "--buffer", "NaCl=0.1 M", "--temperature",
                   degC, "--json", Path("out.json")}),
              0);
    const auto wanted = Result();
    ASSERT_EQ(Analyze(job), 0) << err.str();
    EXPECT_EQ(Result()["constants"]["vbar"], wanted["protein"]["vbar"]) << job;
    EXPECT_EQ(Result()["constants"]["density"], wanted["buffer"]["density"]) << job;
    EXPECT_EQ(Result()["constants"]["vbar_b"], 0.7);
    EXPECT_NE(err.str().find("ml/g of 4 residues at " + degC + " deg C"), std::string::npos);
    EXPECT_EQ(std::string(Result()["log"]).find("residues"), std::string::npos);
  }
}
