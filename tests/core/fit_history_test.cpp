// Faults caught here: a fit that comes back changed, or onto the wrong dataset; a page half put
// back after a refusal; two entries for one fit, or a search that is lost with its entry.
#include "core/fit_history.h"

#include <cstring>

#include "core/fit_restore.h"
#include "core/fit_run.h"
#include "fit/models.h"
#include "support/recording_host.h"
#include "support/session.h"

using namespace quorvane;

namespace {

double Dimer(double x, double omega) {
  const double c = 0.3 * std::exp(8000.0 * omega * x);
  return 0.01 + c + 2.0 * std::exp(1.0) * c * c;
}

struct Session {
  QuorvaneModule module;
  RecordingHost host;

  Session() {
    module.Preferences.SaveGraphs = module.Preferences.LogGraphs = false;
    for (const char* name : {"a.dat", "b.dat", "b.dat"}) {
      AddScan(module, {.name = name, .speed = 14000 + 3000 * module.Store.NumDatasets()}, Dimer);
    }
  }

  void Fit(const char* model) {
    ASSERT_TRUE(SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(model), host));
    module.ChosenModel = module.Setup.FitModel;
    ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished);
  }
  void BringToRest() { ASSERT_EQ(FitToRest(module, host).ending, FitEnding::kFinished); }
};

bool SameDatasets(const std::vector<Dataset>& a, const std::vector<Dataset>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(Dataset)) == 0;
}

bool SamePage(const FitPage& a, const FitPage& b) {
  return std::memcmp(&a, &b, sizeof(FitPage)) == 0;
}

// What a fit is looked at by.
bool SameFit(const FinishedFit& a, const FinishedFit& b) {
  return SamePage(a.page, b.page) && SameDatasets(a.datasets, b.datasets) &&
         a.state.FitR == b.state.FitR && a.state.FitY == b.state.FitY &&
         a.state.FitX == b.state.FitX && a.state.FitF == b.state.FitF &&
         a.state.FitYCalc == b.state.FitYCalc && a.state.FitSet == b.state.FitSet &&
         a.state.PointKind == b.state.PointKind && a.state.FitA == b.state.FitA &&
         a.state.FitCovar == b.state.FitCovar && a.iterations == b.iterations;
}

TEST(FitHistory, GoesBackToAFitAsItWas) {
  Session session;
  QuorvaneModule& module = session.module;
  module.Store.UseData[1] = false;
  session.Fit("Monomer-Nmer");
  const FinishedFit first = *module.LastFit;
  const std::vector<Dataset> datasets = module.Store.Datasets;
  module.Store.UseData[1] = true;
  module.Store.Datasets[0].Good[3] = kFalse;
  module.Store.Datasets[2].C[5] += 0.1;
  module.FitPage.Vbar = 0.7;
  session.Fit("Ideal");
  ASSERT_EQ(module.Fits.Entries().size(), 2U);
  EXPECT_EQ(module.Fits.Entries()[1].name, "Fit 1");
  const Dataset other = module.Store.Datasets[1];
  ASSERT_FALSE(RestoreFit(module, 1));
  EXPECT_TRUE(SameFit(*module.LastFit, first));
  EXPECT_TRUE(SamePage(module.FitPage, first.page));
  EXPECT_EQ(module.Setup.FitModel, FindModel("Monomer-Nmer"));
  EXPECT_EQ(module.ChosenModel, module.Setup.FitModel);
  EXPECT_EQ(module.Store.UseData, (std::vector<bool>{true, false, true}));
  for (const std::size_t k : {0U, 2U}) {
    EXPECT_EQ(std::memcmp(&module.Store.Datasets[k], &datasets[k], sizeof(Dataset)), 0) << k;
  }
  EXPECT_EQ(std::memcmp(&module.Store.Datasets[1], &other, sizeof(Dataset)), 0);
}

TEST(FitHistory, FindsItsDatasetsWhereverTheyStand) {
  Session session;
  QuorvaneModule& module = session.module;
  session.Fit("Ideal");
  const std::vector<Dataset> datasets = module.Store.Datasets;
  std::swap(module.Store.Datasets[0], module.Store.Datasets[1]);
  module.Store.Datasets[0].Offset = 1.0;
  module.LastFit.reset();
  ASSERT_FALSE(RestoreFit(module, 0));
  EXPECT_EQ(module.Setup.FitSetList, (std::vector<std::int16_t>{1, 0, 2}));
  EXPECT_EQ(module.Store.Datasets[0].Offset, datasets[1].Offset);
  module.Store.Datasets.erase(module.Store.Datasets.begin());
  module.Store.UseData.pop_back();
  module.FitPage.ModelMW = 1.0;
  const Refusal refused = RestoreFit(module, 0);  // one "b.dat" is left
  EXPECT_NE(refused.text.find("dataset \"b.dat\" is not loaded any more"), std::string::npos);
  EXPECT_EQ(module.FitPage.ModelMW, 1.0);
}

TEST(FitHistory, HoldsOneEntryForOneFit) {
  Session session;
  QuorvaneModule& module = session.module;
  session.Fit("Ideal");
  session.BringToRest();
  module.Fits.Delete(1);
  const StopFlag stop;
  ASSERT_TRUE(
      ShareVerdict(module, *module.LastFit, JudgeRest(module.LastFit->state, stop, session.host)));
  ASSERT_FALSE(SearchErrors(module, {.parameters = {7}}, session.host).parameters.empty());
  ASSERT_EQ(module.Fits.Entries().size(), 1U);
  EXPECT_EQ(module.Fits.Entries()[0].kept->summary.atRest, true);
  EXPECT_EQ(module.Fits.Fit(0), module.LastFit);  // while somebody holds it
  const FinishedFit known = *module.LastFit;
  module.LastFit.reset();
  EXPECT_TRUE(SameFit(*module.Fits.Fit(0), known));
  EXPECT_TRUE(module.Fits.Fit(0)->errors && module.Fits.Fit(0)->rest);
  // A search on a fit whose entry was deleted leaves the others alone.
  ASSERT_FALSE(RestoreFit(module, 0));
  module.Fits.Delete(0);
  session.Fit("Nonideal");
  EXPECT_EQ(module.Fits.Entries().size(), 1U);
  EXPECT_EQ(module.Fits.Entries()[0].name, "Fit 3");
}

TEST(FitHistory, GivesAKeptFitAsStartValues) {
  Session session;
  QuorvaneModule& module = session.module;
  module.Setup = FreshSetup({0, 1, 2}, module.Store, *FindModel("Monomer-Nmer"));
  module.ChosenModel = module.Setup.FitModel;
  module.Setup.chkOffset[1] = CheckState::kUnchecked;
  module.Store.Datasets[0].ExtCoeff = 2.0;
  session.BringToRest();
  const FinishedFit fit = *module.LastFit;
  const std::vector<Dataset> datasets = module.Store.Datasets;
  const KeptFit kept = *module.Fits.Entries()[0].kept;
  Session later;
  QuorvaneModule& start = later.module;
  start.Fits.AddKept("of old", {}, kept);
  ASSERT_FALSE(RestoreFit(start, 0));
  EXPECT_EQ(start.LastFit, nullptr);
  EXPECT_EQ(start.Setup.chkOffset, fit.setup.chkOffset);
  EXPECT_EQ(start.Setup.chkN1mer, CheckState::kUnchecked);
  EXPECT_EQ(start.FitPage.ModelLnK1, fit.page.ModelLnK1);
  for (std::size_t k = 0; k < datasets.size(); ++k) {
    EXPECT_NEAR(start.Store.Datasets[k].RefConc, datasets[k].RefConc, 1e-14) << k;
    EXPECT_EQ(start.Store.Datasets[k].Offset, datasets[k].Offset) << k;
    EXPECT_EQ(start.Store.Datasets[k].ExtCoeff, datasets[k].ExtCoeff) << k;
  }
  ASSERT_EQ(RunFit(start, later.host).ending, FitEnding::kFinished);
  EXPECT_EQ(start.Fits.Entries()[0].kept->summary.digest, kept.summary.digest);
  EXPECT_NEAR(start.FitPage.ModelLnK1, fit.page.ModelLnK1, 1e-6);
}

TEST(FitHistory, SortsRenamesAndDeletes) {
  Session session;
  FitHistory& fits = session.module.Fits;
  for (const char* model : {"Monomer-Nmer", "Ideal", "Nonideal"}) session.Fit(model);
  EXPECT_EQ(fits.Sorted(HistoryKey::kTime).front(), 2U);
  EXPECT_EQ(fits.Sorted(HistoryKey::kModel), (std::vector<std::size_t>{1, 0, 2}));
  EXPECT_EQ(fits.Sorted(HistoryKey::kSum).front(), 2U);
  EXPECT_FALSE(fits.Rename(0, "  "));
  EXPECT_TRUE(fits.Rename(0, " a dimer "));
  EXPECT_EQ(fits.Sorted(HistoryKey::kName).back(), 0U);  // "a" behind "F"
  KeptFit unknown = *fits.Entries()[0].kept;
  unknown.summary.sum = 0.0;
  fits.AddKept("Fit 9", {}, unknown);
  EXPECT_EQ(fits.Sorted(HistoryKey::kAICc).back(), 3U);
  // Within one second, to which an archive keeps the time.
  fits.AddKept("Fit 8", {}, unknown);
  EXPECT_EQ(fits.Sorted(HistoryKey::kTime), (std::vector<std::size_t>{4, 3, 2, 1, 0}));
  EXPECT_NE(fits.Entries()[3].id, fits.Entries()[4].id);
  fits.Delete(1);
  EXPECT_EQ(fits.Entries()[0].name, "a dimer");
  EXPECT_EQ(fits.Entries()[1].kept->summary.model->name, "Monomer-Nmer");
}

}  // namespace
