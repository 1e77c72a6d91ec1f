// Faults caught here: a job or an archive that brings another page, other points or another report
// back than was saved, and a job applied to datasets that it does not fit.
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

#include "archive/experiment_session.h"
#include "core/fit_run.h"
#include "job/job_steps.h"
#include "support/recording_host.h"
#include "windows/main_window_fixture.h"

using namespace quorvane;

namespace {

class JobCommandsTest : public MainWindowTest {
 protected:
  JobCommandsTest() {
    session.Module.Preferences.ShowHints = false;
    session.Module.Preferences.LogGraphs = session.Module.Preferences.SaveGraphs = false;
  }

  // The three scans of the example, copied, with a page that differs from a fresh one in all it
  // can.
  void SetUpWork() {
    QStringList scans;
    for (const char* name : {"00001.RA1", "00002.RA1", "00003.RA1"}) {
      std::filesystem::copy(kExamples / "monomer-dimer" / name, folder / name);
      scans << ToQString(folder / name);
    }
    Click("optCntrpiece(1)");
    Click("chkChannel(2)");  // two channels
    window->Experiments().OpenDropped(scans);
    DatasetStore& store = session.Module.Store;
    EditRectangle ends;
    ends.x1 = store.Datasets[0].R[3];
    DeleteOutside(store.Datasets[0], ends);
    EditRectangle dust;
    dust.x1 = store.Datasets[2].R[20];
    dust.x2 = store.Datasets[2].R[22];
    DeleteInside(store.Datasets[2], dust);
    SetMeniscusAndBase(store.Datasets[4], 5.8, 6.1);
    store.Datasets[4].ExtCoeff = 1.0 / 3.0;
    session.Module.FitPage.Density = 1.0049;
    Find<QComboBox>("cmbModel")->setCurrentText("Monomer-Nmer");
    Click("cmdSetFit");
    Find<QCheckBox>("chkLnK1")->click();
    Find<QCheckBox>("chkOffset(1)")->click();
    session.Module.Setup.RefLink = {0, 1, 2, 3, 0, 5};
    session.Module.FitPage.ModelLnK1 = 1.25;
  }

  // The log's report of one press of "Fit", without its date and the time that it took.
  QString FitReport() {
    const qsizetype before = LogText().size();
    Click("cmdFitMe");
    return LogText().mid(before).section("File", 1).section("Fitting Time", 0, 0);
  }

  void SaveJob() {
    dialogs.files = {ToQString(folder / "work.toml")};
    Trigger("mnuSaveJob");
  }
  void ApplyJob(const char* text = nullptr) {
    if (text != nullptr) folder.Write("work.toml", text);
    dialogs.messages.clear();
    dialogs.files = {ToQString(folder / "work.toml")};
    Trigger("mnuApplyJob");
  }
  QString Told() { return dialogs.messages.empty() ? QString() : dialogs.messages.back().text; }

  // The parameters that the job in work.toml ends with, fitted without a window.
  std::vector<double> ParametersOfJob() {
    const auto parsed = ReadJob(folder / "work.toml");
    QuorvaneModule module;
    if (parsed->job.archive) {
      ResumeExperiment(module, ReadExperimentFile(*parsed->job.archive), host);
    }
    ApplyConstants(parsed->job, module);
    EXPECT_EQ(ApplyLoads(parsed->job, module, host), LoadOutcome::kLoaded);
    const auto datasets = ApplyDatasets(parsed->job, module, host);
    EXPECT_TRUE(ApplyFit(parsed->job, datasets, module, host));
    EXPECT_EQ(RunFit(module, host).ending, FitEnding::kFinished);
    return Parameters(module);
  }
  static std::vector<double> Parameters(const QuorvaneModule& module) {
    const Array1<double>& values = module.LastFit->state.FitA;
    return {values.data(), values.data() + values.size()};
  }

  RecordingHost host;
};

}  // namespace

TEST_F(JobCommandsTest, AJobGivesTheFitThatTheWindowGives) {
  SetUpWork();
  SaveJob();
  EXPECT_FALSE(ReadText(folder / "work.toml").find("archive =") != std::string::npos);
  const std::vector<double> fromScans = ParametersOfJob();
  // Without one of its scans the session goes beside the job as an archive, if the user agrees.
  std::filesystem::remove(folder / "00002.RA1");
  dialogs.yesNo = {false};
  SaveJob();
  EXPECT_FALSE(std::filesystem::exists(folder / "work.exz"));
  dialogs.yesNo = {true};
  SaveJob();
  EXPECT_NE(dialogs.questions.back().text.indexOf("00002.RA1 is not there any more"), -1);
  const std::vector<double> fromArchive = ParametersOfJob();
  Click("cmdFitMe");
  EXPECT_EQ(fromScans, Parameters(session.Module));
  EXPECT_EQ(fromArchive, Parameters(session.Module));
}

TEST_F(JobCommandsTest, AnExperimentComesBackReadyToFit) {
  SetUpWork();
  dialogs.files = {ToQString(folder / "work.exz")};
  Trigger("mnuFileSave");
  const std::string saved = ReadText(folder / "work.exz");
  const QString report = FitReport();
  dialogs.yesNo = {true};
  window->Experiments().LoadAsked(ToQString(folder / "work.exz"));
  EXPECT_EQ(Tabs(), "1121");
  EXPECT_FALSE(Find<QCheckBox>("chkLnK1")->isChecked());
  EXPECT_FALSE(Find<QCheckBox>("chkOffset(1)")->isChecked());
  EXPECT_EQ(FitReport(), report);
  // So does what a crash left behind.
  window->Experiments().Resume(ReadExperimentFile(folder / "work.exz"));
  EXPECT_EQ(Tabs(), "1121");
  EXPECT_EQ(FitReport(), report);
  // A damaged or foreign setup changes nothing but a line on the status bar.
  for (const auto& [from, to, told] :
       {std::tuple{"quorvane setup 1", "somebody's words", "of another program"},
        std::tuple{"number = 2", "number = 9", "the number of a dataset is wanted"},
        std::tuple{"fit = false", "fit = fals.", "left aside"}}) {
    std::string damaged = saved;
    damaged.replace(damaged.find(from), std::strlen(from), to);
    folder.Write("damaged.exz", damaged);
    dialogs.yesNo = {true};
    dialogs.messages.clear();
    window->Experiments().LoadAsked(ToQString(folder / "damaged.exz"));
    EXPECT_EQ(Tabs(), "2101") << from;
    EXPECT_EQ(session.Module.Store.NumDatasets(), 6);
    EXPECT_TRUE(Find<QLabel>("sbStatusBar")->text().contains(told)) << from;
    EXPECT_TRUE(dialogs.messages.empty());
  }
}

TEST_F(JobCommandsTest, AJobGoesToTheDatasetsOfItsChannelAndSpeed) {
  SetUpWork();
  SaveJob();
  const std::vector<Dataset> before = session.Module.Store.Datasets;
  // Two of the scans in another order stand for a second protein.
  dialogs.yesNo = {true};
  Trigger("mnuFileNew");
  for (const char* name : {"00003.RA1", "00001.RA1"}) {
    window->Experiments().OpenDropped({ToQString(folder / name)});
  }
  ApplyJob();
  const std::vector<Dataset>& now = session.Module.Store.Datasets;
  EXPECT_EQ(now[0].Rmen, before[4].Rmen);
  EXPECT_EQ(now[0].ExtCoeff, before[4].ExtCoeff);
  EXPECT_EQ(now[2].Good, before[0].Good);
  EXPECT_EQ(session.Module.Setup.RefLink[0], 2);
  EXPECT_EQ(session.Module.FitPage.Density, 1.0049);
  EXPECT_EQ(session.Module.FitPage.ModelLnK1, 1.25);
  EXPECT_FALSE(Find<QCheckBox>("chkLnK1")->isChecked());
  EXPECT_EQ(Tabs(), "1121");
  EXPECT_NE(Told().indexOf("Nothing is loaded for dataset 3 of the job (channel A"), -1);
  // Each dataset takes its own change back.
  session.Module.Store.Edits.Undo(session.Module.Store.Datasets[2], 2);
  EXPECT_EQ(CountGoodPoints(now[2]), now[2].NumPoints);
}

TEST_F(JobCommandsTest, SaysWhatDoesNotFitAndChangesNothingForABadJob) {
  SetUpWork();
  const struct {
    const char* job;
    const char* told;
    bool taken;
  } kJobs[] = {
      {"[fit\n", "work.toml:1", false},
      {"[fit]\nmodel = \"Tetramer\"\n", "there is no such model", false},
      {"[[dataset]]\nnumber = 1\ndelete_outside = [1.0, 1.1]\n[fit]\nmodel = \"Ideal\"\n",
       "fewer than 10 points", true},
      {"[[load]]\nfile = \"gone.RA1\"\n[[dataset]]\nnumber = 3\next_coeff = 2.0\n",
       "taken by their numbers", true},
      {"[[dataset]]\nnumber = 7\next_coeff = 2.0\n", "Nothing is loaded for dataset 7", true},
      {"[[dataset]]\nchannel = \"A\"\ncell = 9\next_coeff_b = 3.0\n[[dataset]]\nnumber = 1\n"
       "ext_coeff_b = 4.0\n[[dataset]]\nchannel = \"C\"\nspeed_is = 10000\n",
       "Nothing is loaded for channel C, 10000 rpm.", true},
  };
  for (const auto& job : kJobs) {
    const Dataset first = session.Module.Store.Datasets[0];
    const Model* model = session.Module.Setup.FitModel;
    ApplyJob(job.job);
    EXPECT_TRUE(Told().contains(job.told)) << job.job << Told().toStdString();
    EXPECT_EQ(session.Module.Store.Datasets[0].Good, first.Good) << job.job;
    if (!job.taken) {
      EXPECT_EQ(session.Module.Setup.FitModel, model) << job.job;
    }
    EXPECT_TRUE(session.Module.Store.UseData[0]) << job.job;
  }
  EXPECT_EQ(session.Module.Store.Datasets[2].ExtCoeff, 2.0);
  EXPECT_EQ(session.Module.Store.Datasets[0].ExtCoeff2, 4.0);  // the last table counts
  EXPECT_EQ(session.Module.Store.Datasets[2].ExtCoeff2, 3.0);  // in whatever cell
}
