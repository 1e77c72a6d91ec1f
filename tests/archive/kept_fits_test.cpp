// Faults caught here: a fit that an archive keeps and that comes back with other values, under a
// second name or onto another dataset; a damaged one that is taken; one that costs the setup room.
#include <cmath>

#include <gtest/gtest.h>

#include "archive/experiment_session.h"
#include "core/fit_restore.h"
#include "core/fit_run.h"
#include "fit/models.h"
#include "job/page_setup.h"
#include "job/toml_reader.h"
#include "support/recording_host.h"
#include "support/session.h"
#include "support/temp_folder.h"

using namespace quorvane;

namespace {

class KeptFitsTest : public testing::Test {
 protected:
  void SetUp() override {
    module.Preferences.SaveGraphs = module.Preferences.LogGraphs = false;
    for (int k = 0; k < 4; ++k) {
      const double ofB = k % 2 == 0 ? 0.7 : 1.4;  // its extinction, so that each pair determines it
      AddScan(module, {.speed = 15000 + 5000 * (k / 2)}, [ofB](double x, double omega) {
        const double a = 0.2 * std::exp(7500.0 * omega * x);
        const double b = 0.15 * std::exp(5200.0 * omega * x);
        return 0.01 + a + ofB * b + 2.7 * (1.0 + ofB) * a * b;
      });
      module.Store.Datasets[k].ExtCoeff2 = ofB;
    }
  }
  void Fit(const char* model, bool linked) {
    module.Setup = FreshSetup({0, 1, 2, 3}, module.Store, *FindModel(model));
    module.ChosenModel = module.Setup.FitModel;
    if (linked) module.Setup.RefLink = {0, 0, 2, 2};
    module.Setup.chkMWB2 = CheckState::kUnchecked;
    module.FitPage.ModelLnK1 = 1.0;
    module.FitPage.ModelMWB = 5200.0;
    ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished);
  }
  // The session as it comes back from an archive.
  void SaveAndLoad() {
    ASSERT_TRUE(SaveExperiment(module, folder / "a.exz", host));
    ASSERT_TRUE(LoadExperiment(module, folder / "a.exz", host));
  }

  TempFolder folder;
  QuorvaneModule module;
  RecordingHost host;
};

TEST_F(KeptFitsTest, ComeBackWithTheirArchive) {
  Fit("Ideal", false);
  Fit("A+B<>AB", true);
  ASSERT_TRUE(module.Fits.Rename(0, "linked, \"A\" = 1"));
  const std::vector<HistoryEntry> before = module.Fits.Entries();
  const FinishedFit fit = *module.LastFit;
  SaveAndLoad();
  SaveAndLoad();  // the second time from what was read
  ASSERT_EQ(module.Fits.Entries().size(), 2U);
  for (std::size_t k = 0; k < 2; ++k) {
    const HistoryEntry& now = module.Fits.Entries()[k];
    const FitSummary& found = now.kept->summary;
    const FitSummary& known = before[k].kept->summary;
    EXPECT_EQ(now.name, before[k].name);
    EXPECT_LT(std::chrono::abs(now.time - before[k].time), std::chrono::seconds(1));
    EXPECT_EQ(now.kept->scans, before[k].kept->scans);
    EXPECT_EQ(found.AICc(), known.AICc());
    EXPECT_EQ(found.runsZ, known.runsZ);
    EXPECT_EQ(found.parameters.back().name, known.parameters.back().name);
    EXPECT_EQ(found.parameters.back().error, known.parameters.back().error);
    EXPECT_EQ(found.digest, known.digest);
    EXPECT_EQ(found.links, known.links);
    EXPECT_EQ(found.conditions->kelvin, known.conditions->kelvin);
    EXPECT_EQ(found.conditions->sets[3].extCoeffB, 1.4);
    for (std::size_t p = 0; p < known.parameters.size(); ++p) {
      EXPECT_EQ(found.parameters[p].value, known.parameters[p].value) << p;
      EXPECT_EQ(found.parameters[p].fitted, known.parameters[p].fitted) << p;
    }
  }
  module.Setup = {};
  module.FitPage.ModelMW = 1.0;
  ASSERT_FALSE(RestoreFit(module, 0));
  EXPECT_EQ(module.Setup.RefLink, fit.setup.RefLink);
  EXPECT_EQ(module.Setup.chkMWB2, CheckState::kUnchecked);
  EXPECT_EQ(module.FitPage.ModelMW, fit.page.ModelMW);
  EXPECT_NEAR(module.Store.Datasets[3].RefConc2, fit.datasets[3].RefConc2, 1e-12);
  ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished);
  EXPECT_EQ(module.Fits.Entries()[0].name, "Fit 2");  // "Fit 1" is there
}

TEST_F(KeptFitsTest, GiveWayToTheSetupTheOldestFirst) {
  for (int k = 0; k < 3; ++k) Fit("Ideal", false);
  const std::size_t all = SetupWithFits(module, 1U << 20U).text.size();
  const ArchiveText less = SetupWithFits(module, all - 1);
  EXPECT_EQ(less.fitsLeftOut, 1);
  EXPECT_NE(less.text.find("\"Fit 3\""), std::string::npos);
  EXPECT_EQ(less.text.find("\"Fit 1\""), std::string::npos);
  const std::string setup = SetupText(module);
  EXPECT_EQ(SetupWithFits(module, setup.size()).text, setup);
  EXPECT_EQ(SetupWithFits(module, setup.size() - 1).text, "");
}

TEST_F(KeptFitsTest, WithoutTheirDatasetsAreOnlyListed) {
  Fit("Ideal", false);
  RemoveDataset(module.Store, 1, host);
  SaveAndLoad();
  ASSERT_EQ(module.Fits.Entries().size(), 1U);
  EXPECT_EQ(module.Fits.Entries()[0].kept->scans[0], ScanNames(module.Store.Datasets)[0]);
  EXPECT_NE(RestoreFit(module, 0).text.find("one of its datasets was not loaded any more"),
            std::string::npos);
}

TEST_F(KeptFitsTest, AreRefusedWhereTheyAreDamaged) {
  Fit("A+B<>AB", true);
  const std::string text = SetupWithFits(module, 1U << 20U).text;
  const std::pair<const char*, const char*> cases[] = {
      {"links = [1,1,3,3]", "links = [1,1,2,2]"},
      {"links = [1,1,3,3]", "links = [1,1,3]"},
      {"datasets = [1,2,3,4]", "datasets = [1,2,3,5]"},
      {"datasets = [1,2,3,4]", "datasets = []"},
      {"datasets = [1,2,3,4]", "datasets = [1,2,3]"},
      {"values = [", "values = [1e300,"},
      {"points = 240", "points = 0"},
      {"sum = ", "sum = -"},
      {"digest = \"", "digest = \"0"},
      {"model = \"A+B<>AB\"\ndata", "model = \"Ideal\"\ndata"},
      {"ref_radii = [", "ref_radii = [1,"},
      {"temperature = 20.0\nconst", "temperature = -300.0\nconst"},
      {"digest = ", "digests = "}};
  for (const auto& [from, to] : cases) {
    std::string damaged = text;
    const std::size_t at = damaged.find(from, damaged.find("[[fitted]]"));
    ASSERT_NE(at, std::string::npos) << from << '\n' << text;
    damaged.replace(at, std::string(from).size(), to);
    QuorvaneModule other = module;
    other.Fits.Clear();
    EXPECT_THROW(TakeSetup(damaged, "a", other), JobFault) << to;
    EXPECT_TRUE(other.Fits.Entries().empty()) << to;
  }
}

}  // namespace
