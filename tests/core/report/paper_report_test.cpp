// Faults caught here: a report that describes a later state of the session than its fit, a number
// that is not the fit's, a lost link, held value or deleted point, intervals of another fit, a
// comparison that has no part of the fit, a figure without a dataset, ends and loads told that
// nobody gave, a vanished or changed file passed over in silence.
#include "core/report/paper_report.h"

#include <algorithm>

#include "base/files.h"
#include "base/number_format.h"
#include "base/sha256.h"
#include "core/fit_run.h"
#include "core/new_experiment.h"
#include "core/report/report_file.h"
#include "core/report/report_html.h"
#include "core/report/report_sources.h"
#include "fit/fit_statistics.h"
#include "fit/levmarq.h"
#include "fit/models.h"
#include "scan/scan_file.h"
#include "stats/fit_quality.h"
#include "support/last_fit.h"
#include "support/recording_host.h"
#include "support/session.h"
#include "support/temp_folder.h"

using namespace quorvane;

namespace {

using Row = std::vector<std::string>;

double Dimer(double x, double omega) {
  const double monomer = 0.3 * std::exp(8000.0 * omega * x);
  return 0.01 + monomer + 2.0 * monomer * monomer;
}

// The row of the table `title` whose first cell is `first`; empty if there is none.
Row Find(const PaperReport& report, const std::string& title, const std::string& first) {
  for (const ReportSection& section : report.sections) {
    for (const ReportTable& table : section.tables) {
      for (const std::vector<ReportText>& row : table.rows) {
        EXPECT_TRUE(table.head.empty() ? row.size() == 2 : row.size() == table.head.size())
            << title;
        if (table.title != title || row.front().text != first) continue;
        Row texts;
        for (const ReportText& cell : row) texts.push_back(cell.text);
        return texts;
      }
    }
  }
  return {};
}

class PaperReportTest : public testing::Test {
 protected:
  // Three scans as monomer and dimer: baseline 2 held, dataset 3 linked to 1, two points deleted.
  // A scan before them has no part in the fit.
  PaperReportTest() {
    for (const int speed : {9000, 12000, 16000, 20000}) {
      AddScan(module, {.name = "made.dat", .speed = speed}, Dimer);
    }
    module.Store.UseData[0] = false;
    module.Store.Datasets[1].Comment2.SetBytes("R 3 20.0 12000 BL");
    module.Store.Datasets[2].Good[7] = module.Store.Datasets[2].Good[8] = kFalse;
    SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(2), host);
    module.FitPage.ModelMW = 7000.0;
    module.FitPage.ModelLnK1 = 0.5;
    module.Setup.chkOffset[1] = CheckState::kUnchecked;
    module.Setup.RefLink[2] = 0;
  }
  void Fit() { ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished); }

  QuorvaneModule module;
  RecordingHost host;
};

TEST_F(PaperReportTest, SaysWhatTheFitWasAndFound) {
  Fit();
  const ConfidenceRequest request{90.0, RatioMethod::kEqualFreedom, {true, false, true}};
  const ConfidenceOutcome found = SearchIntervals(module, request, host);
  ASSERT_EQ(found.intervals.size(), 2U);
  const PaperReport before = MakePaperReport(module);
  // What comes after the fit has no part in its report.
  module.FitPage.Vbar = 0.5;
  module.Store.Datasets[1].FileName.SetBytes("renamed");
  module.Setup.chkOffset[1] = CheckState::kChecked;
  RemoveDataset(module.Store, 0, host);
  const PaperReport report = MakePaperReport(module);
  EXPECT_EQ(ReportBody(report, "").substr(200),
            ReportBody(before, "").substr(200));  // behind the time

  const FitState& fit = module.LastFit->state;
  const FitStatistics statistics = CalcFitStatistics(fit, AcceptedSum(fit));
  const int weight = fit.SharedBase() + 1;
  const auto whole = [](double value) { return FormatNumber(value, "##0"); };
  const double share = 1.0 - 0.73;
  const double sd = StandardError(fit, statistics, weight);
  const auto& limits = found.intervals[0];
  const std::string shared = "Parameters shared by all datasets";
  EXPECT_EQ(
      Find(report, shared, "Molecular weight"),
      (Row{"Molecular weight", whole(fit.FitA(weight) / share), whole(sd / share),
           "[" + whole(limits.lower / share) + ", " + whole(limits.upper / share) + "]", "Da"}));
  EXPECT_EQ(Find(report, shared, "Stoichiometry n"),
            (Row{"Stoichiometry n", "2.00", "held", "\u2013", ""}));
  EXPECT_EQ(Find(report, shared, "K")[3],
            "[" + FormatNumber(std::exp(found.intervals[1].lower), "0.00E+00") + ", " +
                FormatNumber(std::exp(found.intervals[1].upper), "0.00E+00") + "]");
  EXPECT_NE(report.sections[1].paragraphs[0].find("90.0 % level"), std::string::npos);
  EXPECT_NE(report.sections[1].paragraphs[0].find("F(NDF, NDF), with NDF = " +
                                                  std::to_string(statistics.freedom)),
            std::string::npos);

  EXPECT_EQ(report.charts.size(), 3U);
  EXPECT_EQ(report.charts[1],
            PlotDataFit(fit, module.LastFit->datasets, 1, module.Preferences.Plots));
}

TEST_F(PaperReportTest, SaysWhatTheDatasetsWereAndHowTheyFit) {
  Fit();
  const PaperReport report = MakePaperReport(module);
  EXPECT_EQ(Find(report, "Model and conditions", "Reaction")[1], "n A <-> A_n");
  EXPECT_EQ(Find(report, "Datasets", "1").back(), "yes");
  EXPECT_EQ(Find(report, "Datasets", "1")[2], "absorbance");
  EXPECT_EQ(Find(report, "Datasets", "2")[2], "not stated");
  const Row points = Find(report, "Points and constants of each dataset", "2");
  EXPECT_EQ(points[2] + " of " + points[3], "58 of 2");
  EXPECT_EQ(Find(report, "Parameters", "Baseline, by dataset")[1], "fitted (1, 3) and held (2)");
  EXPECT_EQ(Find(report, "Parameters", "Datasets that share reference concentrations")[1],
            "3 with 1");
  EXPECT_EQ(Find(report, "Values of each dataset", "3").back(), "as no. 1");
  EXPECT_EQ(Find(report, "Values of each dataset", "2")[2], "0.000E+00 (held)");
  EXPECT_EQ(Find(report, "The whole fit", "Points")[1], "178");
  double squares = 0.0;
  double shares = 0.0;
  for (const char* number : {"1", "2", "3"}) {
    const Row row = Find(report, "Each dataset", number);
    squares += std::pow(std::stod(row[3]), 2) * std::stod(row[2]);
    shares += std::stod(row[5]);
  }
  // Its baseline is held off the truth, so its residuals are a wave.
  EXPECT_LT(std::stod(Find(report, "Each dataset", "2")[7]), -kRunsLimit);
  EXPECT_LT(std::stod(Find(report, "Each dataset", "2")[8]), kLowestDurbin);
  EXPECT_NEAR(shares, 100.0, 0.2);
  const auto& remarks = report.sections[2].list;
  EXPECT_TRUE(std::any_of(remarks.begin(), remarks.end(), [](const std::string& remark) {
    return remark.starts_with("Dataset #2: too few runs");
  }));
  EXPECT_NEAR(squares, AcceptedSum(module.LastFit->state), 2e-3 * squares);  // of rounded numbers
}

TEST_F(PaperReportTest, IntervalsBelongToTheirFit) {
  Fit();
  SearchIntervals(module, {95.46, RatioMethod::kParameters, {true}}, host);
  EXPECT_TRUE(module.LastFit->intervals);
  SearchIntervals(module, {99.0, RatioMethod::kParameters, {false}}, host);  // finds nothing
  EXPECT_EQ(module.LastFit->intervals->request.percent, 95.46);
  ChangeLastFit(module, [](FinishedFit& fit) {
    ConfidenceInterval& weight = fit.intervals->outcome.intervals[0];
    weight.lower = 0.0;
    weight.upper = weight.value;
  });
  EXPECT_EQ(
      Find(MakePaperReport(module), "Parameters shared by all datasets", "Molecular weight")[3],
      "[no limit, no limit]");
  Fit();
  EXPECT_FALSE(module.LastFit->intervals);
  EXPECT_EQ(Find(MakePaperReport(module), "Parameters shared by all datasets", "K").size(), 4U);
  const auto last = module.LastFit;
  module.Stop.Raise();
  EXPECT_EQ(RunFit(module, host).ending, FitEnding::kStopped);
  EXPECT_EQ(module.LastFit, last);
  StartNewExperiment(module);
  EXPECT_EQ(module.LastFit, nullptr);
}

// A last step that was rejected is the log's business; the report says so.
TEST_F(PaperReportTest, CountsTheSumOfTheFittedValues) {
  Fit();
  const PaperReport before = MakePaperReport(module);
  ChangeLastFit(module, [](FinishedFit& fit) { fit.state.FitChiSq = 40.0; });
  const PaperReport after = MakePaperReport(module);
  for (const char* row : {"Sum of squared residuals", "Variance"}) {
    EXPECT_EQ(Find(after, "The whole fit", row), Find(before, "The whole fit", row));
  }
  EXPECT_EQ(Find(after, "Values of each dataset", "1"),
            Find(before, "Values of each dataset", "1"));
  const std::string tried = "The log and the confidence intervals count the sum of the last step";
  EXPECT_EQ(before.sections[1].paragraphs[0].find(tried), std::string::npos);
  EXPECT_NE(after.sections[1].paragraphs[0].find(tried), std::string::npos);
}

// Ends and loads that nobody gave or that have no part in the fit are no facts of it.
TEST_F(PaperReportTest, NamesEndsAndLoadsThatCount) {
  const struct {
    int model;
    bool moved;  // the meniscus of dataset 2
    bool mass;
    double load;  // of A in dataset 2
    Row ends;     // cells of dataset 2 behind the temperature
    std::size_t loads;
  } cases[] = {{2, false, false, kDefaultLoad, {"no"}, 0},
               {2, true, false, 3e-6, {"6.3000", "\u2013", "no"}, 0},
               {4, false, false, kDefaultLoad, {"6.4000", "6.6000", "no"}, 0},
               {6, false, false, kDefaultLoad, {"no"}, 0},
               {6, false, false, 3e-6, {"no"}, 2},
               {6, false, true, kDefaultLoad, {"no", "cell"}, 2}};
  module.CellGeometries = {{1, "cell", {5.0F, 8.0F}, {1.0F, 1.0F}}};
  for (const auto& test : cases) {
    SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(test.model), host);
    module.Setup.UseMassConservation = test.mass;
    module.Setup.chkMWB = module.Setup.chkMWB2 = module.Setup.chkLnK1 = module.Setup.chkAlpha =
        CheckState::kUnchecked;
    module.Store.Datasets[2].Rmen = test.moved ? 6.3 : 6.4;
    module.Store.Datasets[2].ALoad = test.load;
    host.answers = {false};
    ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished) << test.model;
    const PaperReport report = MakePaperReport(module);
    const Row scan = Find(report, "Datasets", "2");
    EXPECT_EQ(Row(scan.begin() + 6, scan.end()), test.ends) << test.model;
    EXPECT_EQ(Find(report, "Points and constants of each dataset", "2").size(),
              (test.model == 6 ? 7U : 6U) + test.loads);
  }
}

TEST_F(PaperReportTest, TheFigureHoldsEveryDatasetOfTheFit) {
  Fit();
  const PaperReport report = MakePaperReport(module);
  std::size_t points = 0;
  for (const FigureCell& cell : report.figure.cells) {
    for (const FigureSeries& series : cell.series) {
      EXPECT_FALSE(series.curve.x.empty());
      points += series.data.x.size();
    }
  }
  EXPECT_EQ(points, 178U);
  EXPECT_NE(report.figureCaption.find("left out (2)"), std::string::npos);
  const std::string body = ReportBody(report, "drawn");
  EXPECT_LT(body.find("<h2>Results"), body.find("src=\"drawn\""));
  EXPECT_LT(body.find("src=\"drawn\""), body.find("Parameters shared"));
  // Shown by themselves, datasets need no further picture.
  module.Store.UseData[2] = module.Store.UseData[3] = false;
  SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(0), host);
  Fit();
  EXPECT_TRUE(MakePaperReport(module).charts.empty());
  // Two that would look alike do not.
  module.Store.UseData[2] = true;
  module.Store.Datasets[2].Speed = module.Store.Datasets[1].Speed;
  SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(0), host);
  Fit();
  const auto series = MakePaperReport(module).figure.cells.at(0).series;
  EXPECT_NE(series.at(0).look, series.at(1).look);
}

TEST_F(PaperReportTest, TellsTheLastComparisonOfItsFit) {
  const auto compared = [&](const std::string& first) {
    return Find(MakePaperReport(module), "Fits side by side", first);
  };
  Fit();
  Fit();
  module.Setup.chkOffset[1] = CheckState::kChecked;
  Fit();
  EXPECT_TRUE(compared("Model").empty());
  module.Fits.MarkCompared({0, 2});
  EXPECT_EQ(compared("Fitted parameters"), (Row{"Fitted parameters", "8", "7"}));
  SearchErrors(module, {}, host);  // puts another value in the place of the fit
  module.Fits.Rename(2, "held");
  const PaperReport report = MakePaperReport(module);
  const Row test = Find(report, "F tests", "held");
  ASSERT_EQ(test.size(), 6U);
  EXPECT_EQ(test[1], "Fit 3");
  EXPECT_EQ(test[4], "1 and 170");
  const std::string body = ReportBody(report, "");
  for (const char* part : {"What follows: ", "What does not: ", "AICc = n ln(S/n)"}) {
    EXPECT_NE(body.find(part), std::string::npos) << part;
  }
  Fit();  // has no part in it
  EXPECT_TRUE(compared("Model").empty());
  module.Fits.MarkCompared({0, 1});
  EXPECT_FALSE(compared("Model").empty());
  module.Fits.Delete(1);
  EXPECT_TRUE(compared("Model").empty());
}

// A value that the data do not determine keeps the rest of the report from nothing.
TEST_F(PaperReportTest, AnImpossibleErrorIsNotAvailable) {
  Fit();
  ChangeLastFit(module, [](FinishedFit& fit) { fit.state.FitCovar(1, 1) = -1.0; });
  EXPECT_EQ(Find(MakePaperReport(module), "Values of each dataset", "1")[2], "n/a");
}

TEST(Models, DefineEveryConstantThatTheyName) {
  for (const Model& model : Models()) {
    for (const ModelParameter& parameter : model.parameters) {
      const bool constant = parameter.shared->kind == ParameterKind::kLnK;
      EXPECT_EQ(parameter.symbol.empty(), !constant) << model.name;
      if (!constant) continue;
      EXPECT_NE(model.reaction.constants.find(std::string(parameter.symbol) + " = ["),
                std::string::npos)
          << model.name;
    }
  }
}

TEST(SourceFiles, NamesFilesThatVanishedOrChanged) {
  const TempFolder folder;
  const std::string text =
      ReadText(std::string(QUORVANE_SOURCE_DIR) + "/examples/monomer-dimer/00001.RA1");
  RecordingHost host;
  DatasetStore store;
  const std::string deep = std::string(120, 'd') + '/' + std::string(120, 'e');
  std::filesystem::create_directories(folder / deep);
  const std::string far = deep + "/far.RA1";
  for (const std::string& name :
       {std::string("same.RA1"), std::string("changed.RA1"), std::string("gone.RA1"),
        std::string("BL_blank.RA1"), std::string("\u4e2d.RA1"), far}) {
    LoadDataFile(store, FileKind::kIpRa, folder.Write(name, text), name.substr(0, 8), {5.7F, 6.3F},
                 host);
  }
  const auto path = [&](const char* name) { return PathText(folder / name); };
  LoadDataFile(store, FileKind::kIpRa, folder / "same.RA1", "B", {6.2F, 6.8F}, host);
  store.Datasets[6].C.fill(0.0);  // other signals, as a subtracted blank leaves them
  store.Datasets[6].Comment2.SetBytes("header BL");
  std::string changed = text;
  changed[changed.find("\n", changed.size() / 10) + 17] ^= 1;  // a digit of a signal
  folder.Write("changed.RA1", changed);
  std::filesystem::remove(folder / "gone.RA1");

  const std::vector<SourceFile> files = SourceFiles(store.Datasets, {0, 1, 2, 6, 4, 5});
  ASSERT_EQ(files.size(), 6U);
  EXPECT_EQ(files[0].path, path("same.RA1"));
  EXPECT_EQ(files[0].numbers, (std::vector{1, 4}));
  EXPECT_EQ(files[0].state, Sha256(text));
  EXPECT_EQ(files[1].state, Sha256(changed) + " (changed since it was loaded)");
  EXPECT_EQ(files[2].state, "not found");
  EXPECT_EQ(files[3].state, "not checked: a dataset cannot hold this path");
  EXPECT_EQ(files[4].state, "not checked: a dataset cannot hold this path");
  EXPECT_TRUE(files[5].numbers.empty());
  EXPECT_EQ(files[5].state, Sha256(text));
}

TEST_F(PaperReportTest, AFailureLeavesTheOldFile) {
  Fit();
  const TempFolder folder;
  const auto old = folder.Write("fit.pdf", "old");
  const auto picture = [](const auto&) { return std::string("<svg/>"); };
  const ReportDrawing broken{{picture, picture},
                             [](const auto&, const auto&, const auto&, const auto&) -> std::string {
                               throw std::runtime_error("no drawing");
                             }};
  EXPECT_THROW(WriteReport(module, old, broken), std::runtime_error);
  EXPECT_EQ(ReadText(old), "old");
  EXPECT_THROW(WriteReport(module, folder / "none" / "fit.html", broken), FileFault);
  EXPECT_THROW(WriteReport(module, folder / "fit.v2", broken), FileFault);
  WriteReport(module, folder / "fit.HTM", broken);
  EXPECT_TRUE(ReadText(folder / "fit.HTM").starts_with("<!DOCTYPE html>"));
}

}  // namespace
