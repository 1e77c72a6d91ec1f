// Faults caught here: a key of a plan that is passed over or refused without its line, results that
// are not laid out as the contract says, a plan that does not read back as it was written, planned
// errors that a real fit of such scans does not find.
#include "cli/command_fixture.h"
#include "job/plan_file.h"
#include "job/toml_reader.h"
#include "support/planned_experiments.h"

using namespace quorvane;

namespace {

const std::string kExamples = std::string(QUORVANE_SOURCE_DIR) + "/examples/";

const std::string kHead =
    "model = \"Monomer-Nmer\"\nspeeds = [14000, 20000]\nloads = [2e-6, 1e-5]\n"
    "ext_coeff = 40000\nnoise = 0.004\n";
const std::string kCell = "meniscus = 5.85\nbase = 6.05\n";
const std::string kTruth =
    "[parameters]\nMW = { value = 8100 }\nN1 = { value = 2, fit = false }\n"
    "LnK1 = { value = 11.5 }\n";

class PlanCommand : public CommandTest {
 protected:
  int Plan(const std::string& text) {
    folder.Write("plan.toml", text);
    std::filesystem::remove(folder / "out.json");
    return Run({"plan", Path("plan.toml"), "--json", Path("out.json")});
  }
};

}  // namespace

TEST_F(PlanCommand, WritesWhatTheContractNames) {
  ASSERT_EQ(Plan(kHead + kCell + "points = 100\ncheck = 20\nmost_signal = 0.5\n" + kTruth), 0)
      << err.str();
  auto result = Result();
  EXPECT_EQ(result["speeds"], (std::vector<double>{14000, 20000}));
  ASSERT_EQ(result["scans"].size(), 4U);
  const auto& scan = result["scans"][3];
  EXPECT_EQ(scan["speed"], 20000);
  EXPECT_EQ(scan["load"], 1e-5);
  EXPECT_LE(scan["highest"], 0.5);
  EXPECT_LT(scan["points"], 100);
  ASSERT_EQ(result["parameters"].size(), 2U);
  EXPECT_EQ(result["parameters"][1]["name"], "LnK1");
  const double sd = result["parameters"][0]["sd"];
  EXPECT_EQ(result["parameters"][0]["relative"], sd / 8100);
  EXPECT_EQ(result["correlations"][0][1], result["correlations"][1][0]);
  EXPECT_EQ(result["checked"]["experiments"], 20);
  EXPECT_EQ(result["checked"]["failed"], 0);
  EXPECT_EQ(result["checked"]["ratio"].size(), 2U);
  EXPECT_NE(out.str().find("The detector loses "), std::string::npos) << out.str();

  const std::string candidates = "candidates = [8000, 14000, 20000, 26000]\nchoose = 2\n";
  std::string ranked = kHead;
  ranked.replace(ranked.find("speeds"), ranked.find("loads") - ranked.find("speeds"), candidates);
  ASSERT_EQ(Plan(ranked + "centerpiece = \"6 channels\"\n" + kTruth), 0) << err.str();
  result = Result();
  EXPECT_EQ(result["choices"], 6);
  EXPECT_EQ(result["speeds"], result["ranking"][0]["speeds"]);
  EXPECT_LT(result["ranking"][0]["score"], result["ranking"][1]["score"]);
  EXPECT_EQ(result["ranking"][0]["sd"][0], result["parameters"][0]["sd"]);
  EXPECT_TRUE(result["checked"].is_null());
}

TEST_F(PlanCommand, TakesItsConstantsFromSequenceAndBuffer) {
  folder.Write("p.fasta", ">two\nMKW\nGGC\n");
  ASSERT_EQ(Run({"solution", "--sequence", Path("p.fasta"), "--buffer", "NaCl = 1 M",
                 "--temperature", "10", "--json", Path("out.json")}),
            0);
  const auto solution = Result();
  const auto plan =
      ParsePlan("sequence = \"p.fasta\"\nbuffer = \"NaCl = 1 M\"\ntemperature = 10\n" + kHead +
                    kCell + kTruth,
                "plan", folder.path());
  EXPECT_EQ(plan.truth.Vbar, solution["protein"]["vbar"]);
  EXPECT_EQ(plan.truth.Density, solution["buffer"]["density"]);
  ASSERT_EQ(Plan("buffer = \"NaCl = 1 M\"\n" + kHead + kCell + kTruth), 0) << err.str();
  EXPECT_NE(out.str().find("g/ml of Sodium chloride"), std::string::npos) << out.str();
  EXPECT_EQ(Plan("buffer = \"water\"\ndensity = 1\n" + kHead + kCell + kTruth), 2);
  EXPECT_NE(err.str().find("it stands for density"), std::string::npos) << err.str();
}

TEST_F(PlanCommand, RefusesBadPlansWithLineAndKey) {
  const struct {
    std::string plan;
    const char* says;
  } cases[] = {
      {kHead + kCell, ":1: parameters: a table with the expected values is wanted"},
      {kHead + kTruth, "meniscus: meniscus and base are wanted, or centerpiece instead of both"},
      {kHead + kCell + "centerpiece = \"6 channels\"\n" + kTruth, ":6: meniscus: "},
      {kHead + kCell + "cell = 3\n" + kTruth, ":8: cell: there is no such key here"},
      {kHead + kCell + "choose = 2\n" + kTruth, ":8: choose: it says how many"},
      {kHead + kCell + "candidates = [9000]\nchoose = 1\n" + kTruth, ":2: speeds: Either speeds"},
      {kHead + kCell + "loads_b = [1e-6]\n" + kTruth, ":8: loads_b: The model has no second"},
      {kHead + kCell + "points = 9\n" + kTruth, ":8: points: A scan has 10 to 2048 points."},
      {kHead + kCell + "most_signal = 0\n" + kTruth, ":8: most_signal: The greatest signal"},
      {kHead + kCell + "temperature = 60\n" + kTruth, ":8: temperature: The Temperature"},
      {kHead + kCell + "check = -1\n" + kTruth, ":8: check: 0 to 100,000 experiments"},
      {kHead + "meniscus = 6.1\nbase = 6.05\n" + kTruth, ":7: base: "},
      {kHead + kCell + kTruth + "LnK2 = { value = 3 }\n", ":12: parameters.LnK2: the model has no"},
      {kHead + kCell + kTruth + "K = { value = 3 }\n", ":12: parameters.K: there is no such key"},
      {kHead + kCell + "[parameters]\nMW = { value = 8100 }\n", "parameters.N1: the model wants"},
      {kHead + kCell +
           "[parameters]\nMW = { value = -1 }\nN1 = { value = 2 }\nLnK1 = { value = 1 }\n",
       ":9: parameters.MW: A buoyant weight must be > 0."},
      {kHead + kCell + "[parameters]\nMW = { start = 1 }\n", "MW.value: the expected value is"},
      {"model = 2\nspeeds = [14000.5]\nloads = [1e-6]\next_coeff = 1\nnoise = 1\n" + kCell + kTruth,
       ":2: speeds: A speed is a whole number of rpm."},
      {"model = 2\nspeeds = [14000]\nloads = [0]\next_coeff = 1\nnoise = 1\n" + kCell + kTruth,
       ":3: loads: Loading concentration must be > 0."},
      {"model = 2\nspeeds = [14000]\nloads = [1e-6]\next_coeff = 1\nnoise = 0\n" + kCell + kTruth,
       ":5: noise: The noise must be > 0."},
      {"model = 12\n", ":1: model: there is no such model"},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(Plan(test.plan), 2) << test.says;
    EXPECT_NE(err.str().find(test.says), std::string::npos) << test.says << " | " << err.str();
    EXPECT_FALSE(std::filesystem::exists(folder / "out.json"));
  }
  EXPECT_EQ(Run({"plan", Path("missing.toml")}), 3);
  std::string heavy = kTruth;
  heavy.replace(heavy.find("8100"), 4, "1e9");
  EXPECT_EQ(Plan(kHead + kCell + heavy), 1);
  EXPECT_NE(err.str().find("this plan leads beyond all numbers"), std::string::npos) << err.str();
}

TEST_F(PlanCommand, PlansReadBackAsTheyWereWritten) {
  for (const PlannedModel& planned : kPlannedModels) {
    ExperimentPlan plan = PlanOf(planned);
    plan.check = 7;
    const std::string text = PlanText(plan);
    EXPECT_EQ(PlanText(ParsePlan(text, "plan")), text);
    plan.candidates.swap(plan.speeds);
    plan.choose = 2;
    plan.centerpiece = Centerpiece::kSixChannels;
    const ExperimentPlan back = ParsePlan(PlanText(plan), "plan");
    EXPECT_EQ(back.candidates, plan.candidates);
    EXPECT_EQ(back.loadsB, plan.loadsB);
    EXPECT_EQ(back.fitted[PlaceOf(shared::kN1)], plan.model->index == 0 || plan.Fits(shared::kN1));
    EXPECT_EQ(PlanText(back), PlanText(plan));
  }
}

// Plan, simulated experiments and the fit of the scans that were made agree.
TEST_F(PlanCommand, FitsOfTheExampleFindThePlannedErrors) {
  ASSERT_EQ(Run({"plan", kExamples + "monomer-dimer/plan.toml", "--json", Path("out.json")}), 0);
  const auto planned = Result();
  for (const auto& ratio : planned["checked"]["ratio"]) {
    EXPECT_NEAR(ratio.get<double>(), 1.0, 0.15);
  }
  ASSERT_EQ(
      Run({"analyze", kExamples + "monomer-dimer/job.toml", "--quiet", "--json", Path("out.json")}),
      0);
  int found = 0;
  const auto fitted = Result()["fit"]["parameters"];
  for (const auto& parameter : fitted) {
    for (const auto& expected : planned["parameters"]) {
      if (parameter["name"] != expected["name"]) continue;
      const double ratio = static_cast<double>(parameter["sd"]) / expected["sd"].get<double>();
      EXPECT_NEAR(ratio, 1.0, 0.05);
      ++found;
    }
  }
  EXPECT_EQ(found, 2);
  ASSERT_EQ(Run({"plan", kExamples + "hetero/plan.toml"}), 0) << err.str();
}
