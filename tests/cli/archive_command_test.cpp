#include "cli/command_fixture.h"

#include "archive/archive_samples.h"
#include "archive/experiment_file.h"
#include "base/text.h"

using namespace quorvane;

namespace {

class ArchiveCommand : public CommandTest {
 protected:
  int Archive(const std::string& name) {
    return Run({"archive", Path(name), "--json", Path("out.json")});
  }

  static constexpr const char* kFit =
      "[[load]]\nfile = \"a.RA1\"\n[fit]\nmodel = \"Ideal\"\n[fit.parameters]\n"
      "MW = {start = 7000.0}\n";
};

}  // namespace

TEST_F(ArchiveCommand, ShowsWhatAnAnalysisSaved) {
  WriteScan("a.RA1");
  ASSERT_EQ(Analyze(std::string(kFit) + "[output]\narchive = \"r.exz\"\n"), 0) << err.str();
  const auto analysis = Result();
  ASSERT_EQ(Archive("r.exz"), 0) << err.str();
  const auto archive = Result();
  EXPECT_EQ(archive["layout"], "current");
  EXPECT_EQ(archive["version_marker"], 51916);
  EXPECT_EQ(archive["directory"], folder.path().string());
  EXPECT_EQ(archive["fit_page"]["MW"], analysis["fit"]["parameters"][2]["value"]);
  EXPECT_EQ(archive["datasets"], analysis["datasets"]);
  ASSERT_EQ(archive["graphs"].size(), 1U);
  EXPECT_EQ(archive["graphs"][0]["title"].get<std::string>().substr(0, 13), "Graph #1 :: (");
  EXPECT_EQ(archive["log"], analysis["log"]);
  EXPECT_NE(out.str().find("Graph #1"), std::string::npos);

  ASSERT_EQ(Run({"archive", Path("r.exz"), "--save-as", Path("s.exz")}), 0) << err.str();
  EXPECT_TRUE(ReadText(folder / "r.exz") == ReadText(folder / "s.exz"));
}

TEST_F(ArchiveCommand, BeginsAnAnalysisFromAnArchive) {
  WriteScan("a.RA1");
  ASSERT_EQ(Analyze("[[load]]\nfile = \"a.RA1\"\n[constants]\nvbar = 0.7\nvbar_b = 0.71\n"
                    "[output]\narchive = \"r.exz\"\n"),
            0)
      << err.str();
  ASSERT_EQ(Analyze("archive = \"r.exz\"\n[constants]\nvbar_b = 0.72\n[fit]\nmodel = 0\n"
                    "[fit.parameters]\nMW = {start = 7000.0}\n"),
            0)
      << err.str();
  const auto result = Result();
  EXPECT_EQ(result["constants"]["vbar"], 0.7);
  EXPECT_EQ(result["constants"]["vbar_b"], 0.72);
  EXPECT_NEAR(result["fit"]["parameters"][2]["value"], 8000.0, 100.0);
  EXPECT_NE(
      result["log"].get<std::string>().find("The current directory is " + folder.path().string()),
      std::string::npos);
}

TEST_F(ArchiveCommand, SavesTheSessionOfAFailedFit) {
  WriteScan("a.RA1");
  EXPECT_EQ(Analyze("[[load]]\nfile = \"a.RA1\"\n[[dataset]]\nnumber = 1\nuse = false\n[fit]\n"
                    "model = 0\n[output]\narchive = \"r.exz\"\n"),
            1);
  EXPECT_EQ(Archive("r.exz"), 0) << err.str();
}

TEST_F(ArchiveCommand, OneUnwritableOutputKeepsNoOtherBack) {
  WriteScan("a.RA1");
  EXPECT_EQ(Analyze(std::string(kFit) + "[output]\narchive = \"r.exz\"\ntable = \"no/fit.csv\"\n"),
            3);
  EXPECT_TRUE(Result().contains("fit"));
  EXPECT_EQ(Archive("r.exz"), 0) << err.str();
  EXPECT_EQ(Analyze("[[load]]\nfile = \"a.RA1\"\n[confidence]\n"), 2);
}

TEST_F(ArchiveCommand, RefusesWhatIsNoArchive) {
  folder.Write("bad.exz", "PK no");
  EXPECT_EQ(Archive("bad.exz"), 3);
  EXPECT_NE(err.str().find("is not a valid saved experiment file!"), std::string::npos);
  EXPECT_EQ(Archive("none.exz"), 3);
  EXPECT_EQ(Analyze("archive = \"bad.exz\"\n"), 3);
  EXPECT_EQ(Analyze("archive = \"\"\n"), 2);
  folder.Write("a.exz", StoredZip(SampleMembers()));
  EXPECT_EQ(Run({"archive", Path("a.exz"), "--save-as", Path("no/b.exz")}), 3);
}

// Saving again goes the road of a load: what that changes is changed, all else kept.
TEST_F(ArchiveCommand, SavesAgainWhatALoadMakesOfIt) {
  StoredMembers padded = SampleMembers(0.0, 11.0);
  padded[0].second.replace(263 + 4168, 9, "   a.dat ");
  StoredMembers old = SampleMembers();
  old[0].second = DataHead(51919, 1) + OldPage() + OldRecord("o.dat");
  StoredMembers empty = SampleMembers();
  empty[0].second = DataHead(51916, 0) + CurrentPage(0.75, 3.0);
  const struct {
    StoredMembers members;
    int status;
    double rawVbar, rawModel, vbar, model;
    const char* says;
  } cases[] = {{padded, 0, 0.0, 11.0, 0.73, 0.0, ""},
               {old, 0, 0.73, 0.0, 0.73, 0.0, "Old Version EXP File: "},
               {empty, 1, 0.75, 3.0, 0.0, 0.0, "There is nothing to save!\n"}};
  for (const auto& test : cases) {
    std::filesystem::remove(folder / "b.exz");
    folder.Write("a.exz", StoredZip(test.members));
    EXPECT_EQ(
        Run({"archive", Path("a.exz"), "--json", Path("out.json"), "--save-as", Path("b.exz")}),
        test.status);
    EXPECT_EQ(err.str().substr(0, std::string(test.says).size()), test.says);
    EXPECT_EQ(err.str().empty(), test.says[0] == '\0') << err.str();
    EXPECT_EQ(Result()["fit_page"]["Vbar"], test.rawVbar);
    EXPECT_EQ(Result()["fit_page"]["ModelIndex"], test.rawModel);
    EXPECT_EQ(std::filesystem::exists(folder / "b.exz"), test.status == 0);
    if (test.status != 0) continue;
    const ReadExperiment again = ReadExperimentFile(folder / "b.exz");
    const Experiment& saved = again.experiment;
    EXPECT_EQ(saved.layout, kCurrentLayout);
    EXPECT_EQ(saved.FitPage.Vbar, test.vbar);
    EXPECT_EQ(saved.FitPage.ModelIndex, test.model);
    EXPECT_NE(saved.Datasets[0].FileName.View().front(), ' ');
    EXPECT_EQ(saved.GraphStreams.size(), 2U);
    EXPECT_EQ(Cp1252ToUtf8(Trim(saved.directory.View())), folder.path().string());
    ASSERT_EQ(Archive("b.exz"), 0);
    EXPECT_EQ(Result()["log"], "log\n");  // no line of its own
    EXPECT_EQ(Result()["graphs"][0]["bytes"], 3);
  }
}

TEST_F(ArchiveCommand, WritesTheLogWithItsPictures) {
  WriteScan("a.RA1");
  folder.Write("job.toml", kFit);
  ASSERT_EQ(Run({"analyze", Path("job.toml"), "--log", Path("log.rtf"), "--quiet"}), 0);
  const std::string rtf = ReadText(folder / "log.rtf");
  EXPECT_TRUE(rtf.starts_with("{\\rtf1"));
  EXPECT_NE(rtf.find("\\pngblip"), std::string::npos);
  EXPECT_NE(rtf.find("Fitting Time: "), std::string::npos);
  EXPECT_TRUE(out.str().empty());
}
