// Faults caught here: a fit that leaves datasets or page half changed, a refusal that goes on, a
// stop that keeps results, a lost or misplaced step of the run.
#include "core/fit_run.h"

#include <cstring>

#include "base/arithmetic.h"
#include "core/graph_store.h"
#include "fit/mass_conservation.h"
#include "fit/models.h"
#include "support/recording_host.h"
#include "support/session.h"

using namespace quorvane;

namespace {

double Ideal(double x, double omega) {
  return 0.01 + 0.3 * std::exp(8000.0 * omega * x);
}

QuorvaneModule IdealSession() {
  QuorvaneModule module;
  AddScan(module, {.name = "slow.dat", .speed = 14000}, Ideal);
  AddScan(module, {.name = "fast.dat", .speed = 20000}, Ideal);
  return module;
}

// Bytes of all that a failed fit must leave alone.
std::string Kept(const QuorvaneModule& module) {
  std::string bytes(sizeof(Dataset) * module.Store.Datasets.size() + sizeof(FitPage), '\0');
  std::memcpy(bytes.data(), module.Store.Datasets.data(), bytes.size() - sizeof(FitPage));
  std::memcpy(bytes.data() + bytes.size() - sizeof(FitPage), &module.FitPage, sizeof(FitPage));
  return bytes;
}

TEST(RunFit, FinishesAndWritesBack) {
  QuorvaneModule module = IdealSession();
  RecordingHost host;
  ASSERT_TRUE(SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(0), host));
  const FitOutcome outcome = RunFit(module, host);
  ASSERT_EQ(outcome.ending, FitEnding::kFinished);
  EXPECT_GE(outcome.iterations, 3);
  EXPECT_GT(outcome.seconds, 0.0);
  EXPECT_NEAR(module.FitPage.ModelMW, 8000.0, 150.0);
  EXPECT_NEAR(module.Store.Datasets[1].RefConc, 0.3, 0.01);
  ASSERT_NE(module.LastFit, nullptr);
  EXPECT_EQ(module.LastFit->state.Stop, nullptr);  // the session may go before its fits
  EXPECT_EQ(host.pictures.size(), 2U);
  EXPECT_EQ(module.NumGraphs(), 2);
  const Chart kept = ParseChart(module.GraphStreams[1]);
  EXPECT_EQ(kept.title, "Graph #2 :: (2) fast.dat : Data Plot");
  module.GraphStreams[0].assign(40, std::byte{7});
  EXPECT_EQ(GraphAt(module, 1).title, "Graph #1 :: kept by another program");
  EXPECT_EQ(GraphAt(module, 2), kept);
  EXPECT_EQ(host.statuses,
            (std::vector<std::string>{"Click anywhere in log window to halt fitting.", " "}));
}

TEST(RunFit, ModelsWithCellEndsAskAboutDefaultRadiiAndRefuseAWrongOrder) {
  struct Row {
    double meniscus, base;  // 0: as loaded
    std::deque<bool> answers;
    FitEnding ending;
    const char* where;
  };
  for (const Row& row :
       {Row{0, 0, {true}, FitEnding::kRefused, "Possible Parameter Value Error"},
        Row{6.39, 0, {true}, FitEnding::kRefused, "Possible Parameter Value Error"},
        Row{6.61, 6.39, {}, FitEnding::kRefused, "Parameter Value Error"},
        Row{6.39, 6.61, {}, FitEnding::kFinished, ""},
        Row{0, 0, {false}, FitEnding::kFinished, ""}}) {
    QuorvaneModule module = IdealSession();
    RecordingHost host;
    host.answers = row.answers;
    SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(4), host);
    module.Setup.chkLnK1 = CheckState::kUnchecked;
    module.Setup.chkAlpha = CheckState::kUnchecked;
    module.FitPage.ModelLnK1 = -20.0;
    for (Dataset& dataset : module.Store.Datasets) {
      if (row.meniscus > 0) dataset.Rmen = row.meniscus;
      if (row.base > 0) dataset.Rbase = row.base;
    }
    const FitOutcome outcome = RunFit(module, host);
    EXPECT_EQ(outcome.ending, row.ending) << row.meniscus;
    EXPECT_EQ(outcome.where, row.where);
    EXPECT_TRUE(host.answers.empty());
  }
}

TEST(RunFit, AStopKeepsDatasetsAndPage) {
  QuorvaneModule module = IdealSession();
  RecordingHost host;
  SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(0), host);
  const std::string before = Kept(module);
  host.onEvents = [&] {
    if (host.eventRuns == 6) module.Stop.Raise();
  };
  const FitOutcome outcome = RunFit(module, host);
  EXPECT_EQ(outcome.ending, FitEnding::kStopped);
  EXPECT_EQ(Kept(module), before);
  EXPECT_TRUE(host.pictures.empty());
  ASSERT_GE(host.lines.size(), 3U);
  const std::string rule(39, '=');
  EXPECT_EQ(host.lines[host.lines.size() - 3], "\r\n" + rule);
  EXPECT_EQ(host.lines[host.lines.size() - 2], "** User  Terminated Fitting Process  **");
  EXPECT_EQ(host.lines.back(), rule + "\r\n");
  EXPECT_EQ(host.statuses.back(), " ");
}

// Monomer and dimer in signals so small that a fit from the page's start ends far from its rest;
// without the dimer, ln K has nowhere to rest.
QuorvaneModule SmallSession(bool dimer) {
  QuorvaneModule module;
  for (const int speed : {14000, 17000, 20000}) {
    AddScan(module, {.speed = speed}, [dimer](double x, double omega) {
      const double monomer = 0.3 * std::exp(8000.0 * omega * x);
      return 0.01 + monomer + (dimer ? 4.0 * monomer * monomer : 0.0);
    });
    for (double& signal : module.Store.Datasets.back().C) signal *= 0.02;
  }
  return module;
}

TEST(FitToRest, EndsAtRestOrChangesNothing) {
  const struct {
    const char* what;
    bool dimer;
    int stopAfterLine;  // of the log; -1: never
    FitEnding ending;
    const char* error;
  } cases[] = {
      {"rest", true, -1, FitEnding::kFinished, ""},
      {"no rest", false, -1, FitEnding::kNoRest, "The fit does not come to rest: "},
      {"stopped", true, 0, FitEnding::kStopped, "Stopped before the fit had come to rest."},
      {"stopped in the fit", true, 3, FitEnding::kStopped, ""},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.what);
    QuorvaneModule module = SmallSession(one.dimer);
    RecordingHost host;
    SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(2), host);
    ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished);
    const auto last = module.LastFit;
    const RestVerdict verdict = JudgeRest(last->state, module.Stop, host);
    EXPECT_FALSE(one.dimer && verdict.atRest.value_or(true)) << verdict.reason;
    ASSERT_TRUE(ShareVerdict(module, *last, verdict));
    EXPECT_EQ(module.LastFit->rest->reason, verdict.reason);
    const auto shared = module.LastFit;
    const std::string before = Kept(module);
    host.lines.clear();
    host.onEvents = [&] {
      if (static_cast<int>(host.lines.size()) == one.stopAfterLine) module.Stop.Raise();
    };
    const FitOutcome outcome = FitToRest(module, host);
    EXPECT_EQ(outcome.ending, one.ending) << outcome.error;
    EXPECT_EQ(outcome.error.substr(0, std::string(one.error).size()), one.error);
    if (one.ending == FitEnding::kFinished) {
      EXPECT_EQ(std::count(host.lines.begin(), host.lines.end(), std::string(40, '=')), 2);
      EXPECT_TRUE(JudgeRest(module.LastFit->state, module.Stop, host).atRest.value_or(false));
      EXPECT_FALSE(ShareVerdict(module, *last, verdict));  // of another fit
      EXPECT_FALSE(module.LastFit->rest);
    } else {
      EXPECT_TRUE(Kept(module) == before);
      EXPECT_TRUE(module.LastFit == shared);
      EXPECT_EQ(host.lines.empty(), !outcome.error.empty());
    }
  }
}

TEST(RunFit, AFailureIsShownLoggedAndKeepsDatasetsAndPage) {
  struct Row {
    const char* what;
    std::function<void(QuorvaneModule&)> spoil;
    const char* where;
    const char* description;
  };
  const std::vector<Row> rows = {
      {"a start beyond all exponentials", [](QuorvaneModule& m) { m.FitPage.ModelMW = 1e9; },
       "FUNCS0", "Overflow"},
      {"a reference concentration of 0",
       [](QuorvaneModule& m) { m.Store.Datasets[1].RefConc = 0.0; }, "SetupParameterArray",
       "Invalid operation"},
      {"no temperature", [](QuorvaneModule& m) { m.Setup.DegC = -273.15; }, "SetupParameterArray",
       "Division by zero"},
      {"a cell geometry that is not there",
       [](QuorvaneModule& m) { m.Setup.CalcLoadingConcs = true; }, "SetupDataArrays",
       "Subscript out of range"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    QuorvaneModule module = IdealSession();
    RecordingHost host;
    SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(0), host);
    row.spoil(module);
    const std::string before = Kept(module);
    const FitOutcome outcome = RunFit(module, host);
    EXPECT_EQ(outcome.ending, FitEnding::kFailed);
    EXPECT_EQ(outcome.where, row.where);
    EXPECT_EQ(outcome.error, row.description);
    EXPECT_EQ(Kept(module), before);
    ASSERT_EQ(host.messages.size(), 1U);
    EXPECT_EQ(host.messages[0].text, std::string("Error while Fitting Data!  Error in ") +
                                         row.where + ".  " + row.description);
    ASSERT_GE(host.lines.size(), 3U);
    EXPECT_EQ(host.lines[host.lines.size() - 3],
              std::string("\r\nFitting Error in ") + row.where + ".  \r\n" + row.description);
    EXPECT_EQ(host.lines[host.lines.size() - 2], " ");
    EXPECT_EQ(host.lines.back(), std::string(40, '='));
  }
}

TEST(RunFit, FaultsOfTheReportComeAfterTheValuesWereWrittenBack) {
  struct Row {
    const char* what;
    std::function<void(QuorvaneModule&)> spoil;
    int linesOfReport;  // that come before the fault
  };
  const std::vector<Row> rows = {
      {"one fitted parameter divides by zero in the F quantile",
       [](QuorvaneModule& m) {
         m.Setup.chkOffset.assign(2, CheckState::kUnchecked);
         m.Setup.chkRefC.assign(2, CheckState::kUnchecked);
       },
       1},
      {"vbar times density of 1 has no molecular weight",
       [](QuorvaneModule& m) { m.FitPage.Vbar = m.FitPage.Density = 1.0; }, 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    QuorvaneModule module = IdealSession();
    RecordingHost host;
    SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(0), host);
    row.spoil(module);
    const FitOutcome outcome = RunFit(module, host);
    EXPECT_EQ(outcome.ending, FitEnding::kFailed);
    EXPECT_EQ(outcome.where, "Unknown");
    EXPECT_EQ(outcome.error, "Division by zero");
    EXPECT_NE(module.FitPage.ModelMW, 7500.0);
    EXPECT_EQ(host.CountLinesWith("RMS Deviation"), row.linesOfReport);
    EXPECT_EQ(host.CountLinesWith("Buoyant MW = "), 1);
  }
}

// Soft mass conservation of A and B, set up and with its loads.
void SetUpMass(QuorvaneModule& module, RecordingHost& host) {
  module.CellGeometries = {{1, "cell", {5.0F, 8.0F}, {1.0F, 1.0F}}};
  SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(6), host);
  module.Setup.UseMassConservation = true;
  module.Setup.chkMWB2 = CheckState::kUnchecked;
  module.FitPage.ModelLnK1 = 0.0;
  for (Dataset& dataset : module.Store.Datasets) dataset.ALoad = dataset.BLoad = 0.2;
}

// Its targets are 0: they have no influence, on a parameter of 0 either, and their values tell
// nothing.
TEST(CalculatedLoad, OfAFlatDatasetIsTheMeanConcentration) {
  QuorvaneModule module = IdealSession();
  RecordingHost host;
  SetUpMass(module, host);
  module.Store.Datasets[0].C[59] = module.Store.Datasets[0].C[0];
  ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished);
  for (const int kind : {1, 2}) {  // the same curve with targets and without
    FitState flat = module.LastFit->state;
    const int last = flat.FitNumPoints - 2 + kind;
    flat.FitY(last) = flat.FitYCalc(last) = 0.0;
    EXPECT_DOUBLE_EQ(CalculatedLoad(flat, 2, kind), CalculatedLoad(module.LastFit->state, 2, kind));
  }
}

TEST(PlotDataFit, FollowsTheTwoOptionsAndLeavesMassPointsOut) {
  QuorvaneModule module = IdealSession();
  RecordingHost host;
  SetUpMass(module, host);
  ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished);
  const auto& datasets = module.Store.Datasets;
  const Chart plain = PlotDataFit(module.LastFit->state, datasets, 1, {false, false});
  const Chart shifted = PlotDataFit(module.LastFit->state, datasets, 1, {true, true});
  const ChartSeries& data = plain.panels[0].series[0];
  ASSERT_EQ(data.x.size(), 60U);
  EXPECT_EQ(data.x.front(), 6.40);
  EXPECT_EQ(data.y, std::vector<double>(datasets[1].C.begin(), datasets[1].C.begin() + 60));
  EXPECT_EQ(plain.title, "(2) fast.dat : Data Plot");
  EXPECT_EQ(plain.bottomTitle, "Radius (cm)");
  EXPECT_EQ(shifted.bottomTitle, "(R^2-R0^2)/2 (cm^2)");
  EXPECT_LT(shifted.panels[0].series[0].x.front(), 0.0);  // the meniscus lies above R0
  EXPECT_DOUBLE_EQ(data.y[7] - shifted.panels[0].series[0].y[7], datasets[1].Offset);
  EXPECT_EQ(plain.panels[1].series[0].y, shifted.panels[1].series[0].y);
  const Chart deviations = PlotDeviations(module.LastFit->state, datasets, 1);
  EXPECT_EQ(deviations.panels[0].series[0].x.size(), 62U);
  EXPECT_EQ(deviations.title, "(2) fast.dat : Deviation Plot");
}

}  // namespace
