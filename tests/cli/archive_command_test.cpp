#include "cli/command_fixture.h"

#include "archive/archive_samples.h"

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

TEST_F(ArchiveCommand, KeepsForeignGraphs) {
  folder.Write("a.exz", StoredZip(SampleMembers()));
  ASSERT_EQ(Run({"archive", Path("a.exz"), "--save-as", Path("b.exz")}), 0) << err.str();
  ASSERT_EQ(Archive("b.exz"), 0);
  EXPECT_EQ(Result()["graphs"][0]["bytes"], 3);
  EXPECT_EQ(Result()["graphs"][0]["title"], "");
  EXPECT_EQ(Result()["directory"], "C:\\lab");
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
