// Faults caught here: a key of a job that is read and not obeyed, a result that JSON, log and files
// give differently, outputs left half written or missing after a failure, a wrong exit status.
#include <cstdint>
#include <regex>

#include "cli/command_fixture.h"

using namespace quorvane;

namespace {

using nlohmann::json;

constexpr const char* kTwoScans =
    "[[load]]\nfile = \"00001.RA3\"\n[[load]]\nfile = \"00002.RA3\"\n";

class AnalyzeTest : public CommandTest {
 protected:
  AnalyzeTest() {
    WriteScan("00001.RA3", 14000);
    WriteScan("00002.RA3", 20000);
  }

  // What the outputs of the first test leave in the folder.
  void ExpectFiles() {
    const std::string table = ReadText(folder / "fit.csv");
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 121);
    EXPECT_TRUE(
        table.starts_with("dataset,name,radius,signal,fitted,residual\r\n1,1_3A14280.dat,6.4"));
    EXPECT_TRUE(ReadText(folder / "plots/02_2_3A20280.svg").find("</svg>") != std::string::npos);
    EXPECT_TRUE(ReadText(folder / "data/1_3A14280.dat").starts_with("one species :: "));
  }
};

// `sum` is that of the squares.
void ExpectQuality(const json& quality, double sum) {
  EXPECT_NEAR(
      quality["datasets"][0]["share"].get<double>() + quality["datasets"][1]["share"].get<double>(),
      1.0, 1e-12);
  EXPECT_EQ(quality["datasets"][1]["points"], 60);
  EXPECT_EQ(quality["datasets"][1]["name"], "2_3A20280.dat");
  EXPECT_NEAR(60 * std::pow(quality["datasets"][0]["rms"].get<double>(), 2) / sum,
              quality["datasets"][0]["share"], 1e-9);
  EXPECT_TRUE(quality["datasets"][0].contains("runs_z"));
  EXPECT_EQ(quality["at_default"], json{"vbar"});
}

TEST_F(AnalyzeTest, FitsTwoScansAndSaysSoEverywhere) {
  ASSERT_EQ(Analyze("[constants]\ndensity = 1.0\n" + std::string(kTwoScans) +
                    "[fit]\nmodel = \"Ideal\"\n[confidence]\npercent = 90\nmethod = 1\n"
                    "[cross_correlation]\ncritical = 0.9\n"
                    "[output]\ntable = \"fit.csv\"\ndata_folder = \"data\"\n"
                    "graphs_folder = \"plots\"\ngraphs_format = \"svg\"\n"),
            0)
      << err.str();
  EXPECT_EQ(err.str(), "");
  const json result = Result();
  EXPECT_EQ(result["program"], "Quorvane");
  EXPECT_EQ(result["log"], out.str());
  const json& fit = result["fit"];
  EXPECT_EQ(fit["model"], "Ideal");
  EXPECT_EQ(fit["stopped"], false);
  EXPECT_EQ(fit["points"], 120);
  EXPECT_EQ(fit["fitted_parameters"], 5);
  EXPECT_EQ(fit["degrees_of_freedom"], 115);
  EXPECT_GT(fit["seconds"], 0.0);
  const json& weight = fit["parameters"][4];
  EXPECT_EQ(weight["name"], "MW");
  EXPECT_NEAR(weight["value"], 8000.0, 4 * weight["sd"].get<double>());
  EXPECT_DOUBLE_EQ(std::pow(weight["sd"].get<double>(), 2),
                   fit["variance"].get<double>() * fit["covariance"][4][4].get<double>());
  double sum = 0.0;
  for (const json& curve : fit["curves"]) {
    for (std::size_t k = 0; k < curve["y"].size(); ++k) {
      sum += std::pow(curve["y"][k].get<double>() - curve["y_calc"][k].get<double>(), 2);
    }
  }
  EXPECT_NEAR(sum, fit["best_sum"], 1e-12 * sum);
  EXPECT_NEAR(sum, fit["chi_squared"], 1e-3 * sum);  // of the last, maybe rejected, step
  ExpectQuality(result["quality"], sum);
  EXPECT_EQ(result["datasets"][1]["name"], "2_3A20280.dat");
  EXPECT_DOUBLE_EQ(result["datasets"][1]["baseline"], fit["parameters"][1]["value"]);
  EXPECT_FALSE(fit.contains("mass_conservation"));
  const json& interval = result["confidence"]["intervals"][0];
  EXPECT_EQ(interval["name"], "Buoyant MW");
  EXPECT_LT(interval["lower"], weight["value"]);
  EXPECT_GT(interval["upper"], weight["value"]);
  EXPECT_EQ(result["cross_correlation"]["critical"], 0.9);
  EXPECT_EQ(result["cross_correlation"]["names"][4], "MW");
  EXPECT_EQ(result["cross_correlation"]["matrix"][2][2], 1.0);
  EXPECT_NE(out.str().find("Cross-Correlation Coefficients"), std::string::npos);
  ExpectFiles();
}

TEST_F(AnalyzeTest, TablesChooseDatasetsAndTheLastOneCounts) {
  WriteScan("00003.RA3", 20000);
  ASSERT_EQ(Analyze(std::string(kTwoScans) + R"(
[[load]]
file = "00003.RA3"
[[load]]
file = "00003.RA3"
blank = true
[[dataset]]
number = "all"
ext_coeff = 5
delete_outside = [6.45, 6.55]
restore = [[6.42, 6.43]]
fit_baseline = false
[[dataset]]
channel = "A"
speed_is = 20000
speed = 21000
meniscus = 6.3
[[dataset]]
number = [2, 1, 2]
ext_coeff = 7
delete_outside = [6.40, 6.55]
[[dataset]]
speed_is = 20000
name = "renamed"
number_of_tables = 5
)"),
            2);  // no such key: nothing was done
  const std::string head = ReadText(folder / "job.toml");
  ASSERT_EQ(Analyze(head.substr(0, head.rfind("[[dataset]]")) + R"([[dataset]]
number = 2
name = "renamed"
base = 6.61
[[dataset]]
cell = 3
link_to = 1
[fit]
model = 6
repeat = 1
time_limit = 0.001
)"),
            1);
  const json datasets = Result()["datasets"];
  const auto column = [&](const char* key) {
    json values;
    for (const json& dataset : datasets) values.push_back(dataset[key]);
    return values;
  };
  EXPECT_EQ(column("ext_coeff"), json({7.0, 7.0, 5.0, 1.0}));  // the blank is left alone
  EXPECT_EQ(column("speed"), json({14000, 21000, 21000, 20000}));
  EXPECT_EQ(column("edited"), json({true, true, true, false}));
  EXPECT_EQ(column("name"),
            json({"1_3A14280.dat", "renamed", "3_3A20280.dat", "BL_3_3A20280.dat"}));
  EXPECT_EQ(datasets[1]["meniscus"], 6.3);
  EXPECT_EQ(datasets[1]["base"], 6.61);
  // 0.2 / 59 cm apart: 45 in [6.40, 6.55]; 30 in [6.45, 6.55] and 3 restored.
  EXPECT_EQ(column("good_points"), json({45, 45, 33, 60}));
}

TEST_F(AnalyzeTest, WritesTheReportOfAFinishedFitOnly) {
  const std::string job = std::string(kTwoScans) + "[fit]\nmodel = \"Ideal\"\n";
  const std::string held = "[fit.parameters]\nMW = { fit = false }\n";
  const std::string search = "[confidence]\npercent = 90\n";
  ASSERT_EQ(Analyze(job + search + "[output]\nreport = \"fit.html\"\n"), 0) << err.str();
  const std::string html = ReadText(folder / "fit.html");
  EXPECT_NE(html.find("90.0 % interval"), std::string::npos);
  EXPECT_NE(html.find(Path("00002.RA3")), std::string::npos);
  ASSERT_EQ(Analyze(job + "[output]\nreport = \"fit.pdf\"\n"), 0) << err.str();
  EXPECT_TRUE(ReadText(folder / "fit.pdf").starts_with("%PDF-"));
  EXPECT_EQ(Analyze(job + "[output]\nreport = \"none/fit.pdf\"\n"), 3);
  ASSERT_EQ(Analyze(job + "[output]\nfigure = \"fit.svg\"\n"), 0) << err.str();
  const std::string figure = ReadText(folder / "fit.svg");
  EXPECT_NE(figure.find(">Absorbance at 280 nm<"), std::string::npos);
  EXPECT_NE(figure.find(">14,000 rpm, channel A<"), std::string::npos);
  std::string nothing;
  for (const char* number : {"1", "2"}) {
    nothing += std::string("[[dataset]]\nnumber = ") + number +
               "\nfit_baseline = false\nfit_ref_conc = false\n";
  }
  EXPECT_EQ(Analyze(nothing + job + held + "[output]\nreport = \"no.html\"\nfigure = \"no.svg\"\n"),
            1);
  EXPECT_NE(err.str().find("report are not written"), std::string::npos);
  EXPECT_NE(err.str().find("the figure is not written"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder / "no.html"));
  EXPECT_FALSE(std::filesystem::exists(folder / "no.svg"));
}

TEST_F(AnalyzeTest, AnErrorAnalysisGoesIntoJsonAndReport) {
  const std::string job = std::string(kTwoScans) + "[fit]\nmodel = \"Monomer-Nmer\"\n";
  const std::string errors =
      "[errors]\nparameters = \"all\"\nlevels = [90]\nreplicates = 20\n"
      "methods = [\"profile\", \"monte carlo\", \"bootstrap\"]\n"
      "surfaces = [[\"MW\", \"LnK1\"]]\nsurface_points = 3\n";
  ASSERT_EQ(Analyze(job + errors + "[output]\nreport = \"fit.html\"\n"), 0) << err.str();
  EXPECT_NE(err.str().find("Every extinction coefficient is 1"), std::string::npos) << err.str();
  const json found = Result()["errors"];
  EXPECT_EQ(found["levels"], json{90.0});
  EXPECT_EQ(found["stopped"], false);
  EXPECT_EQ(found["degrees_of_freedom"], 114);
  ASSERT_EQ(found["parameters"].size(), 6U);  // N is held
  const json& weight = found["parameters"][4];
  EXPECT_EQ(weight["name"], "MW");
  EXPECT_EQ(weight["monte_carlo"]["done"], 20);
  EXPECT_EQ(weight["bootstrap"]["limits"][0]["level"], 90.0);
  const json& side = found["parameters"][5]["profile"][0];  // one species: the dimer alone
  EXPECT_EQ(side["upper_end"], "open");
  EXPECT_FALSE(side.contains("upper"));
  EXPECT_LT(side["upper_sum"], found["sum"].get<double>() * side["ratio"].get<double>());
  EXPECT_EQ(side["lower_end"], "found");
  EXPECT_GT(found["parameters"][5]["value"], side["lower"]);
  EXPECT_EQ(found["derived"][0]["unit"], "Da");
  EXPECT_EQ(found["surfaces"][0]["sums"].size(), 3U);
  EXPECT_EQ(found["surfaces"][0]["y"], "LnK1");
  const std::string html = ReadText(folder / "fit.html");
  EXPECT_NE(html.find("Limits of single parameters"), std::string::npos);
  EXPECT_NE(html.find(", open]"), std::string::npos);
}

TEST_F(AnalyzeTest, SaysWhetherTheFitIsAtRestAndBringsItThere) {
  const std::string dimer = std::string(kTwoScans) + "[fit]\nmodel = \"Monomer-Nmer\"\n";
  const std::string start = "[fit.parameters]\nLnK1 = { start = -1.0 }\n";
  const struct {
    std::string job;
    int status;
    std::optional<bool> atRest;
    const char* told;
  } cases[] = {
      {std::string(kTwoScans) + "[fit]\nmodel = 0\nrepeat = \"rest\"\n", 0, true, ""},
      {dimer, 0, false, "The fit is not at rest: going on lowers"},
      {dimer + "repeat = \"rest\"\n" + start, 1, std::nullopt, "The fit does not come to rest: "},
      {dimer + "repeat = \"rest\"\ntime_limit = 1e-9\n" + start, 1, std::nullopt,
       "Stopped before the fit had come to rest."},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.job);
    EXPECT_EQ(Analyze(one.job + "[output]\nreport = \"fit.html\"\n"), one.status);
    EXPECT_TRUE(err.str().starts_with(one.told)) << err.str();
    const json fit = Result()["fit"];
    ASSERT_EQ(fit.contains("rest"), one.atRest.has_value());
    if (!one.atRest) continue;
    EXPECT_EQ(fit["rest"]["at_rest"], *one.atRest);
    EXPECT_EQ(fit["rest"].size(), 5U);
    EXPECT_EQ(err.str().empty(), *one.atRest) << err.str();
    EXPECT_EQ(Result()["quality"]["remarks"].dump().find("not at rest") == std::string::npos,
              *one.atRest);
    EXPECT_NE(ReadText(folder / "fit.html").find("At rest"), std::string::npos);
  }
}

TEST_F(AnalyzeTest, StartsCheckTheMinimumAndLeaveTheFitAlone) {
  const std::string job = std::string(kTwoScans) + "[fit]\nmodel = \"Ideal\"\nrepeat = 2\n";
  ASSERT_EQ(Analyze(job), 0);
  const json plain = Result();
  EXPECT_FALSE(plain.contains("minima"));
  ASSERT_EQ(Analyze(job + "starts = 6\nseed = 3\n"), 0) << err.str();
  const json result = Result();
  const json& minima = result["minima"];
  EXPECT_EQ(minima["starts"], 6);
  EXPECT_EQ(minima["seed"], 3);
  EXPECT_EQ(minima["stopped"], false);
  EXPECT_EQ(minima["ended"].get<int>() + minima["failed"].get<int>(), 6);
  ASSERT_EQ(minima["found"].size(), 1U);  // one species has one minimum
  const json& found = minima["found"][0];
  EXPECT_EQ(found["current"], true);
  EXPECT_EQ(found["starts"], minima["ended"]);
  EXPECT_LE(found["chi_squared"], minima["chi_squared"]);
  EXPECT_EQ(found["parameters"][4]["name"], "MW");
  EXPECT_NEAR(found["parameters"][4]["value"], plain["fit"]["parameters"][4]["value"], 20.0);
  EXPECT_EQ(result["fit"]["parameters"], plain["fit"]["parameters"]);
  const auto lines = [](const std::string& log) {
    return std::count(log.begin(), log.end(), '\n');
  };
  EXPECT_EQ(lines(result["log"]), lines(plain["log"]));
  EXPECT_EQ(err.str().empty(), !minima["better"].get<bool>()) << err.str();
}

TEST_F(AnalyzeTest, EditsFollowTheJobInTheirOrder) {
  ASSERT_EQ(Analyze(std::string(kTwoScans) +
                    "[[dataset]]\nnumber = 2\nname = \"renamed.dat\"\n"
                    "delete_outside = [6.42, 6.58]\ndelete = [[6.45, 6.50], [6.55, 6.56]]\n"
                    "restore = [[6.47, 6.48]]\nmeniscus = 6.7\nbase = 6.3\nspeed = 15000\n"
                    "ext_coeff = 2.0\nbaseline = 0.1\nref_conc = 0.4\nload_a = 0\nuse = false\n"),
            0)
      << err.str();
  const json result = Result();
  EXPECT_FALSE(result.contains("fit"));
  const json& other = result["datasets"][0];
  EXPECT_EQ(other["edited"], false);
  EXPECT_EQ(other["good_points"], 60);
  const json& edited = result["datasets"][1];
  EXPECT_EQ(edited["name"], "renamed.dat");
  EXPECT_EQ(edited["edited"], true);
  EXPECT_EQ(edited["meniscus"], 6.3);  // the two in rising order
  EXPECT_EQ(edited["base"], 6.7);
  EXPECT_EQ(edited["speed"], 15000);
  EXPECT_EQ(edited["ext_coeff"], 2.0);
  EXPECT_EQ(edited["baseline"], 0.1);
  EXPECT_EQ(edited["ref_conc"], 0.4);
  EXPECT_EQ(edited["load_a"], 0.0);
  for (std::size_t k = 0; k < edited["r"].size(); ++k) {
    const double r = edited["r"][k];
    const bool kept =
        r >= 6.42 && r <= 6.58 && !(r >= 6.45 && r <= 6.50) && !(r >= 6.55 && r <= 6.56);
    const bool good = kept || (r >= 6.47 && r <= 6.48);
    EXPECT_EQ(edited["good"][k], good) << r;
    EXPECT_EQ(edited["err"][k] > 0.0, good) << r;
  }
}

TEST_F(AnalyzeTest, BlankIsSubtractedOnceAndNeverFitted) {
  const std::string job =
      "[[load]]\nfile = \"00001.RA3\"\n[[load]]\nfile = \"00002.RA3\"\nblank = true\n"
      "[[dataset]]\nnumber = 1\nsubtract_blank = 2\n";
  ASSERT_EQ(Analyze(job + "[fit]\nmodel = \"Ideal\"\n[fit.parameters]\nMW = { fit = false }\n"), 0)
      << err.str();
  const json result = Result();
  EXPECT_EQ(result["datasets"][0]["blanked"], true);
  EXPECT_EQ(result["datasets"][1]["blank"], true);
  EXPECT_EQ(result["datasets"][1]["name"], "BL_2_3A20280.dat");
  EXPECT_EQ(result["fit"]["curves"].size(), 1U);
  EXPECT_NE(out.str().find("was blanked using\nDataset #2:: BL_2_3A20280.dat"), std::string::npos);
}

TEST_F(AnalyzeTest, FitSwitchesReachTheFit) {
  ASSERT_EQ(Analyze(std::string(kTwoScans) +
                    "[constants]\ntemperature = 4.0\nvbar = 0.72\ndensity = 1.01\n"
                    "[[dataset]]\nnumber = 1\nfit_baseline = false\nbaseline = 0.01\n"
                    "[[dataset]]\nnumber = 2\nfit_ref_conc = false\nref_conc = 0.31\n"
                    "[fit]\nmodel = \"Ideal\"\ncalc_loading_concs = true\nrepeat = 2\n"
                    "[fit.parameters]\nMW = { start = 7000.0 }\n"),
            1);
  EXPECT_EQ(Result()["fit"]["where"], "SetupDataArrays");  // no cell geometry is installed
  folder.Write("channels.txt", "1\n0, 2, \"sector\"\n5.0 1.0\n8.0 1.6\n");
  ASSERT_EQ(Run({"analyze", Path("job.toml"), "--json", Path("out.json"), "--quiet"}), 0);
  EXPECT_EQ(out.str(), "");
  const json result = Result();
  EXPECT_EQ(result["constants"]["temperature"], 4.0);
  EXPECT_EQ(result["constants"]["vbar"], 0.72);
  EXPECT_EQ(result["fit"]["parameters"][0]["fitted"], false);
  EXPECT_EQ(result["fit"]["parameters"][0]["sd"], 0.0);
  EXPECT_EQ(result["fit"]["parameters"][3]["value"], std::log(0.31));
  EXPECT_EQ(result["fit"]["loading_concs"].size(), 2U);
  const std::string log = result["log"];
  EXPECT_NE(log.find("vbar = 0.7200 and density = 1.01000"), std::string::npos);
  EXPECT_NE(log.find("sector"), std::string::npos);
  EXPECT_NE(log.find("Model :: ", log.find("Model :: ") + 1), std::string::npos);  // two presses
}

TEST_F(AnalyzeTest, LinkedDatasetsShareReferenceConcentrations) {
  ASSERT_EQ(Analyze(std::string(kTwoScans) +
                    "[[dataset]]\nnumber = 2\nlink_to = 1\n"
                    "[fit]\nmodel = \"A+B<>AB\"\n[fit.parameters]\n"
                    "MWB = { start = 4000, fit = false }\nLnK1 = { start = -3, fit = false }\n"),
            0)
      << err.str();
  const json result = Result();
  EXPECT_EQ(result["datasets"][0]["ref_conc"], result["datasets"][1]["ref_conc"]);
  EXPECT_EQ(result["datasets"][0]["ref_conc_b"], result["datasets"][1]["ref_conc_b"]);
  EXPECT_EQ(result["fit"]["parameters"][3]["fitted"], false);
}

TEST_F(AnalyzeTest, AFailedFitStillWritesWhatDoesNotNeedIt) {
  ASSERT_EQ(Analyze(std::string(kTwoScans) +
                    "[fit]\nmodel = \"Ideal\"\n[fit.parameters]\nMW = { start = 1e12 }\n"
                    "[output]\ntable = \"fit.csv\"\ndata_folder = \"data\"\n"),
            1);
  const json result = Result();
  EXPECT_EQ(result["fit"], (json{{"error", "Overflow"}, {"where", "FUNCS0"}}));
  EXPECT_EQ(result["datasets"][0]["baseline"], 0.0);
  EXPECT_EQ(result["datasets"][0]["ref_conc"], 0.5);
  EXPECT_TRUE(std::filesystem::exists(folder / "data/2_3A20280.dat"));
  EXPECT_FALSE(std::filesystem::exists(folder / "fit.csv"));
  EXPECT_NE(err.str().find("Error while Fitting Data!  Error in FUNCS0.  Overflow"),
            std::string::npos);
}

TEST_F(AnalyzeTest, FilesThatCannotBeUsedStopTheJobWithTheirStatus) {
  struct Row {
    const char* what;
    std::string text;
    int status;
    const char* message;
  };
  std::string tooLong = "c\r\nR 3 20.0 20000 0086400 1.0000E11 280 21\r\n";
  for (int k = 0; k < 2049; ++k) tooLong += "   6.4000   1.0   1.0\r\n";
  const std::vector<Row> rows = {
      {"empty", "", 3, "ends before its comment line"},
      {"one line", "only a comment", 3, "ends before its header line"},
      {"cut in a line", "c\r\nR 3 20.0 20000 0086400 1.0000E11 280 21\r\n   6.40", 1,
       "Fewer than 10 points"},
      {"binary", std::string("c\0mment\r\nx\r\n", 12), 1, "is a binary file!"},
      {"too long", tooLong, 3, "more than 2048 rows"},
      {"wrong columns", "c\r\nR 3 20.0 20000 0086400 1.0000E11 280 21\r\na,b,c\r\nd,e,f\r\n", 1,
       "Fewer than 10 points"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    folder.Write("00003.RA3", row.text);
    EXPECT_EQ(Analyze(std::string(kTwoScans) +
                      "[[load]]\nfile = \"00003.RA3\"\n[output]\ndata_folder = \"data\"\n"),
              row.status);
    EXPECT_NE(err.str().find(row.message), std::string::npos) << err.str();
    EXPECT_FALSE(std::filesystem::exists(folder / "out.json"));
    EXPECT_FALSE(std::filesystem::exists(folder / "data"));
  }
  for (const char* file : {"missing.RA3", "."}) {
    EXPECT_EQ(Analyze("[[load]]\nfile = \"" + std::string(file) + "\"\n"), 3) << file;
  }
}

TEST_F(AnalyzeTest, OutputsThatCannotBeWrittenHaveStatusThree) {
  folder.Write("occupied", "a file where a folder is wanted");
  EXPECT_EQ(Analyze(std::string(kTwoScans) + "[output]\ndata_folder = \"occupied/data\"\n"), 3);
  EXPECT_EQ(Run({"analyze", Path("job.toml"), "--json", Path("no/such/folder/out.json")}), 3);
  EXPECT_EQ(Analyze(std::string(kTwoScans) + "[[dataset]]\nnumber = 2\nname = \"1_3A14280.dat\"\n"
                                             "[output]\ndata_folder = \"data\"\n"),
            1);
  EXPECT_NE(err.str().find("There are duplicate names in the loaded data files!"),
            std::string::npos);
}

}  // namespace
