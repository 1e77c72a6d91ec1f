#include "archive/experiment_session.h"

#include <cmath>

#include <gtest/gtest.h>

#include "archive/archive_samples.h"
#include "base/files.h"
#include "fit/models.h"
#include "support/recording_host.h"
#include "support/session.h"
#include "support/temp_folder.h"

using namespace quorvane;

namespace {

class ExperimentTest : public testing::Test {
 protected:
  bool Load(const StoredMembers& members) {
    folder.Write("a.exz", StoredZip(members));
    return LoadExperiment(module, folder / "a.exz", host);
  }

  TempFolder folder;
  QuorvaneModule module;
  RecordingHost host;
};

}  // namespace

TEST_F(ExperimentTest, LoadsIntoTheSession) {
  AddScan(module, {}, [](double, double) { return 0.5; });
  module.Setup.ConstrainKRatios = true;
  ASSERT_TRUE(Load(SampleMembers()));
  EXPECT_TRUE(host.messages.empty());
  ASSERT_EQ(module.Store.NumDatasets(), 2);
  EXPECT_EQ(module.Store.UseData, (std::vector<bool>{true, false}));
  EXPECT_EQ(module.NumGraphs(), 2);
  EXPECT_TRUE(module.ExperimentOpen);
  EXPECT_FALSE(module.Setup.ConstrainKRatios);
  EXPECT_EQ(host.logBytes, "{\\rtf1 log}");
  EXPECT_EQ(host.lines, (std::vector<std::string>{"\r\nThe current directory is " +
                                                  PathText(folder.path()) + "\r\n"}));
}

TEST_F(ExperimentTest, ReconcilesVbarAndModel) {
  const struct {
    double vbar;
    double vbarAfter;
    double defaultAfter;
    double index;
    int indexAfter;
  } cases[] = {{0.0, 0.73, 0.73, 10.0, 10}, {0.75, 0.75, 0.75, 11.0, 0}, {0.7, 0.7, 0.7, 10.4, 0},
               {0.7, 0.7, 0.7, 2.5, 2},     {0.7, 0.7, 0.7, -0.1, 0},    {0.7, 0.7, 0.7, NAN, 0}};
  for (const auto& test : cases) {
    module.Preferences.DefaultVbar = 0.73;
    ASSERT_TRUE(Load(SampleMembers(test.vbar, test.index)));
    EXPECT_EQ(module.FitPage.Vbar, test.vbarAfter);
    EXPECT_EQ(module.Preferences.DefaultVbar, test.defaultAfter);
    EXPECT_EQ(module.Preferences.DefaultDensity, 1.01);
    EXPECT_EQ(module.Setup.FitModel->index, test.indexAfter) << test.index;
  }
}

TEST_F(ExperimentTest, WarnsOfTheOldLayoutAndSavesTheCurrentOne) {
  StoredMembers members = SampleMembers();
  members[0].second = DataHead(51919, 1) + OldPage() + OldRecord("old.dat");
  module.Preferences.DefaultVbar = 0.7;
  ASSERT_TRUE(Load(members));
  ASSERT_EQ(host.messages.size(), 1U);
  EXPECT_EQ(host.messages[0].title, "Old Version EXP File");
  EXPECT_EQ(host.messages[0].text, PathText(folder / "a.exz") +
                                       " was saved by a previous verion of Quorvane.\r\n"
                                       " Please update the format by saving it from this program!");
  EXPECT_EQ(module.FitPage.Vbar, 0.7);
  ASSERT_TRUE(SaveExperiment(module, folder / "a.exz", host));
  module.Preferences.DefaultVbar = 0.73;
  ASSERT_TRUE(LoadExperiment(module, folder / "a.exz", host));
  EXPECT_EQ(host.messages.size(), 1U);
  EXPECT_EQ(module.FitPage.ModelLnK3, 14.0);
  EXPECT_EQ(module.FitPage.Vbar, 0.7);
}

TEST_F(ExperimentTest, SavesConstrainedRatiosAsLogarithms) {
  AddScan(module, {}, [](double, double) { return 0.5; }).NumPoints = 0;
  module.Setup.FitModel = module.ChosenModel = FindModel(7);
  module.Setup.ConstrainKRatios = true;
  module.FitPage.ModelLnK1 = 10.0;
  module.FitPage.ModelLnK2 = 2.0;
  module.FitPage.ModelLnK3 = 3.0;
  ASSERT_TRUE(SaveExperiment(module, folder / "k.exz", host));
  EXPECT_EQ(module.FitPage.ModelLnK2, 2.0);
  EXPECT_EQ(module.FitPage.ModelIndex, 7.0);
  ASSERT_TRUE(LoadExperiment(module, folder / "k.exz", host));
  EXPECT_EQ(module.FitPage.ModelLnK2, std::log(2.0) + 10.0);
  EXPECT_EQ(module.FitPage.ModelLnK3, std::log(3.0) + 10.0);
  EXPECT_EQ(module.Setup.FitModel->index, 7);
}

TEST_F(ExperimentTest, SaysWhyItCannotSave) {
  EXPECT_FALSE(SaveExperiment(module, folder / "a.exz", host));
  AddScan(module, {}, [](double, double) { return 0.5; });
  module.Setup.ConstrainKRatios = true;
  module.FitPage.ModelLnK2 = -1.0;
  EXPECT_FALSE(SaveExperiment(module, folder / "a.exz", host));
  module.Setup.ConstrainKRatios = false;
  EXPECT_FALSE(SaveExperiment(module, folder.path(), host));
  ASSERT_EQ(host.messages.size(), 3U);
  EXPECT_EQ(host.messages[0].text, "There is nothing to save!");
  EXPECT_EQ(host.messages[0].icon, MessageIcon::kStop);
  EXPECT_EQ(host.messages[1].text, "The experiment was not saved!\r\nInvalid operation");
  EXPECT_NE(host.messages[2].text.find("is a folder"), std::string::npos);
  EXPECT_FALSE(FileExists(folder / "a.exz"));
}

TEST_F(ExperimentTest, ABadArchiveChangesNothing) {
  AddScan(module, {}, [](double, double) { return 0.5; });
  host.logBytes = "mine";
  StoredMembers members = SampleMembers();
  members[0].second.replace(0, 4, LittleEndian(7, 4));
  EXPECT_FALSE(Load(members));
  members = SampleMembers();
  members[2].second.resize(5);
  EXPECT_FALSE(Load(members));
  EXPECT_FALSE(LoadExperiment(module, folder / "none.exz", host));
  const std::string path = PathText(folder / "a.exz");
  ASSERT_EQ(host.messages.size(), 3U);
  EXPECT_EQ(host.messages[0].title, "Bad EXP File");
  EXPECT_EQ(host.messages[0].text, path + " is not a valid saved experiment file!");
  EXPECT_EQ(host.messages[1].text, path +
                                       " is not a valid saved experiment file!\r\n"
                                       "chartfile.bin: bad dimensions of a graph at byte 4");
  EXPECT_EQ(host.messages[2].title, "No File Found");
  EXPECT_EQ(host.messages[2].text, PathText(folder / "none.exz") + " not found!");
  EXPECT_EQ(module.Store.NumDatasets(), 1);
  EXPECT_EQ(module.Store.Datasets[0].NumPoints, 60);
  EXPECT_EQ(host.logBytes, "mine");
  EXPECT_TRUE(host.lines.empty());
}
