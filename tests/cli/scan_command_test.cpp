// Faults caught here: load options that are not obeyed, a file that fails and stops the others,
// usage errors without their status, help that does not answer, a job that does not load what was
// listed.
#include <algorithm>

#include "cli/command_fixture.h"

using namespace quorvane;

namespace {

class ScanTest : public CommandTest {};

TEST_F(ScanTest, ListsDatasetsAndGoesOnAfterABadFile) {
  WriteScan("00001.RA3");
  WriteScan("00002.RA3", 14000, 9);  // one point too few
  WriteScan("00004.RA3", 10000);
  EXPECT_EQ(Run({"scan", Path("00001.RA3"), Path("00002.RA3"), Path("00003.RA3"), Path("00004.RA3"),
                 "--json", Path("out.json")}),
            3);
  EXPECT_NE(out.str().find("1  1_3A20280.dat"), std::string::npos) << out.str();
  EXPECT_NE(out.str().find("2  4_3A10280.dat"), std::string::npos) << out.str();
  EXPECT_NE(err.str().find("Fewer than 10 points were found for the dataset 2_3A14280.dat.  This "
                           "dataset will not be loaded\n"),
            std::string::npos);
  EXPECT_NE(err.str().find("00003.RA3: there is no such file\n"), std::string::npos);
  const nlohmann::json result = Result();
  EXPECT_EQ(result["datasets"].size(), 2U);
  EXPECT_EQ(result["datasets"][1]["number"], 2);
  EXPECT_EQ(Run({"scan", Path("00002.RA3"), Path("00001.RA3")}), 1);
}

TEST_F(ScanTest, LoadOptionsAreThoseOfAJob) {
  WriteScan("00001.RA3");
  struct Row {
    std::vector<std::string> options;
    int status;
    const char* part;  // of either stream
  };
  for (const Row& row : std::initializer_list<Row>{
           {{"--centerpiece", "6 channels", "--channels", "B"}, 0, "1_3B20280.dat"},
           {{"--centerpiece", "6 channels"}, 0, "1_3B20280.dat"},
           {{"--kind", "DAT"}, 0, "00001.RA3"},
           {{"--kind", "FI"}, 0, "00001_320280.dat"},
           {{"--kind", "XY"}, 2, "kind: "},
           {{"--centerpiece", "6"}, 2, "centerpiece: "},
           {{"--centerpiece", "6 channels", "--channels", "D"},
            2,
            "channels: \"D\" is no channel of this centerpiece"},
           {{"--channels", "E"}, 2, "channels: \"E\" is no channel"},
           {{"--channels", "B"}, 0, "00001.RA3: the choice of channels does not count; "},
           {{"--channels", "B"}, 0, "1_3A20280.dat"}}) {
    std::vector<std::string> arguments = {"scan", Path("00001.RA3")};
    arguments.insert(arguments.end(), row.options.begin(), row.options.end());
    EXPECT_EQ(Run(arguments), row.status) << row.part;
    EXPECT_NE((out.str() + err.str()).find(row.part), std::string::npos) << out.str() << err.str();
  }
}

TEST_F(ScanTest, AFolderIsListedAndItsJobRuns) {
  std::filesystem::create_directories(folder / "run" / "below");
  WriteScan("run/00002.RA3");
  WriteScan("run/00001.RA3", 10000);
  WriteScan("run/below/00009.RA3");
#if defined(_WIN32)
  const std::string odd = "a 'b' \xC3\xA9.ra3";
#else
  const std::string odd = "a \"b\" \xC3\xA9.ra3";  // a name that Windows does not allow
#endif
  WriteScan("run/" + odd);  // at the same time: by name, behind 00002
  folder.Write("run/notes.DAT", "nothing\r\n");
  EXPECT_EQ(Run({"scan", Path("run"), "--json", Path("out.json")}), 0);
  EXPECT_EQ(err.str(), Path("run/notes.DAT") + ": ends before its header line\n");
  EXPECT_EQ(std::ranges::count(out.str(), '\n'), 4);
  EXPECT_NE(out.str().find("00002.RA3    absorbance     3  20000  280   20.0  24.00"),
            std::string::npos)
      << out.str();
  nlohmann::json result = Result();
  EXPECT_FALSE(result.contains("datasets"));
  ASSERT_EQ(result["series"].size(), 2U);
  const nlohmann::json& series = result["series"][1];
  EXPECT_EQ(series["cell"], 3);
  EXPECT_EQ(series["wavelength"], 280);
  EXPECT_EQ(series["speed"], 20000);
  EXPECT_FALSE(series["scans"][0].contains("change"));
  EXPECT_EQ(series["scans"][1]["file"], odd);
  EXPECT_EQ(series["scans"][1]["change"], 0.0);
  EXPECT_EQ(series["scans"][1]["points"], 60);
  EXPECT_EQ(series["scans"][1]["omega2t"], 1e11);

  for (const char* job : {"run/job.toml", "job.toml"}) {
    EXPECT_EQ(Run({"scan", Path("run"), "--last", "--job", Path(job), "--centerpiece", "6 channels",
                   "--channels", "B"}),
              0);
    EXPECT_EQ(Run({"analyze", Path(job), "--quiet", "--json", Path("out.json")}), 0) << err.str();
    result = Result();
    ASSERT_EQ(result["datasets"].size(), 2U);
    EXPECT_EQ(result["datasets"][0]["name"], "1_3B10280.dat");
    EXPECT_EQ(result["datasets"][1]["path"], Path("run/" + odd));
  }
  EXPECT_EQ(ReadText(folder / "job.toml").find("[[load]]\nfile = \"run/00001.RA3\"\n"), 0U);
}

TEST_F(ScanTest, NamedFilesKeepTheirTableBesideTheSeries) {
  WriteScan("00001.RA3");
  WriteScan("00002.RA3");
  std::filesystem::create_directory(folder / "empty");
  EXPECT_EQ(Run({"scan", Path("00001.RA3"), Path("00002.RA3"), Path("00001.RA3"), "--last",
                 "--json", Path("out.json")}),
            0);
  EXPECT_EQ(out.str().find("  #  Name"), 0U);
  const nlohmann::json result = Result();
  EXPECT_EQ(result["datasets"].size(), 3U);
  ASSERT_EQ(result["series"].size(), 1U);
  EXPECT_EQ(result["series"][0]["scans"].size(), 1U);  // a file counts once
  EXPECT_EQ(Run({"scan", Path("empty"), "--job", Path("job.toml")}), 1);
  EXPECT_EQ(err.str(), "No scan was found.\n");
  EXPECT_FALSE(std::filesystem::exists(folder / "job.toml"));
  EXPECT_EQ(Run({"scan", Path("empty"), "--kind", "XY"}), 2);
}

TEST_F(ScanTest, WarningsGoToStandardErrorAndChangeNothingElse) {
  WriteScan("00001.RA3");
  EXPECT_EQ(Run({"scan", Path("00001.RA3")}), 0);
  const std::string table = out.str();
  EXPECT_EQ(err.str(), "");
  std::string text = ReadText(folder / "00001.RA3");
  folder.Write("00001.RA3", text.replace(text.find("R 3 20.0"), 8, "I 3 25.0"));
  WriteScan("00002.RA3");
  EXPECT_EQ(Run({"scan", Path("00001.RA3"), Path("00002.RA3")}), 0);
  EXPECT_EQ(err.str(), Path("00001.RA3") +
                           ": An intensity scan (header I): its signals are light intensities. The "
                           "models need absorbance.\nThe loaded scans were taken at 20.0 to 25.0 "
                           "deg C. A fit knows one temperature only.\n");
  EXPECT_EQ(std::count(table.begin(), table.end(), '\n') + 1, std::ranges::count(out.str(), '\n'));
}

TEST_F(ScanTest, UsageHasItsStatusAndHelpAnswers) {
  EXPECT_EQ(Run({}), 2);
  EXPECT_EQ(Run({"scan"}), 2);
  EXPECT_EQ(Run({"scann", "x"}), 2);
  EXPECT_EQ(Run({"analyze", "job.toml", "--jsonn", "x"}), 2);
  EXPECT_EQ(Run({"--version"}), 0);
  EXPECT_EQ(out.str(), "Quorvane 1.0.0\n");
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
           {"--help"}, {"analyze", "--help"}, {"scan", "--help"}}) {
    EXPECT_EQ(Run(arguments), 0);
    EXPECT_NE(out.str().find("quorvane-cli"), std::string::npos);
    EXPECT_EQ(err.str(), "");
  }
}

}  // namespace
