// What users of the window program wait for, off screen.
#include <benchmark/benchmark.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QTextEdit>
#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <memory>

#include "core/page/figure_sets.h"
#include "core/settings/settings_store.h"
#include "plot/figure_export.h"
#include "windows/commands/experiment_commands.h"
#include "windows/data/data_window.h"
#include "windows/data/loaded_data_tab.h"
#include "windows/frame/main_window.h"
#include "windows/frame/qt_dialogs.h"
#include "windows/log/log_window.h"
#include "windows/page/fit_control_tab.h"
#include "windows/session/autosave.h"

using namespace quorvane;

namespace {

const std::filesystem::path kExample =
    std::filesystem::path(QUORVANE_SOURCE_DIR) / "examples" / "monomer-dimer";

// A box would wait for ever.
class NoDialogs : public QtDialogs {
 public:
  void ShowMessage(QWidget*, const QString& title, const QString& text, MessageIcon) override {
    qFatal("%s: %s", qPrintable(title), qPrintable(text));
  }
};

// The whole program with an empty settings file.
struct Program {
  Program() : settings(Fresh()), session(settings, dialogs, kExample), window(session) {
    session.CurrentFolder = kExample;
    session.Module.Preferences.ShowHints = false;
    window.resize(1366, 728);
    window.show();
    QCoreApplication::processEvents();
  }

  static std::filesystem::path Fresh() {
    const auto file = std::filesystem::temp_directory_path() / "quorvane-bench.ini";
    std::filesystem::remove(file);
    return file;
  }

  // Loads one scan `count` times.
  void Load(int count) {
    window.Experiments().OpenDropped(QStringList(count, ToQString(kExample / "00001.RA1")));
    QCoreApplication::processEvents();
  }
  // 101 datasets, three a scan, checked for a fit.
  void LoadMany() {
    Click("optCntrpiece(1)");
    Load(34);
    session.Module.Store.UseData.back() = false;
  }
  // "Setup Fit" from start values near those of the example.
  void SetUpFit() {
    for (Dataset& dataset : session.Module.Store.Datasets) {
      dataset.ExtCoeff = 40000.0;
      dataset.RefConc = 5e-6;
    }
    session.Module.FitPage.ModelMW = 12000.0;
    Click("cmdSetFit");
  }
  void Click(const char* name) {
    window.findChild<QAbstractButton*>(name)->click();
    QCoreApplication::processEvents();
  }

  IniSettings settings;
  NoDialogs dialogs;
  Session session;
  MainWindow window;
};

void Start(benchmark::State& state) {
  for (auto _ : state) Program program;
}

void LoadScans(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto program = std::make_unique<Program>();
    state.ResumeTiming();
    program->Load(static_cast<int>(state.range(0)));
    state.PauseTiming();
    program.reset();
    state.ResumeTiming();
  }
}

void SetupFit(benchmark::State& state) {
  Program program;
  program.LoadMany();
  for (auto _ : state) program.Click("cmdSetFit");
}

// A fit with its report; with pictures or without.
void FitAndReport(benchmark::State& state) {
  Program program;
  program.LoadMany();
  QuorvaneModule& module = program.session.Module;
  module.Preferences.LogGraphs = module.Preferences.SaveGraphs = state.range(0) != 0;
  program.SetUpFit();
  for (auto _ : state) program.Click("cmdFitMe");
  state.counters["pictures"] = static_cast<double>(module.NumGraphs());
}

// The figure of a fit of 101 datasets of 201 points: drawn anew on the screen, as a PDF.
void FigureOnScreen(benchmark::State& state) {
  Program program;
  program.LoadMany();
  program.SetUpFit();
  program.Click("cmdFitMe");
  program.window.findChild<QAction*>("mnuFigure")->trigger();
  QCoreApplication::processEvents();
  auto* picture = program.window.findChild<QWidget*>("picFigure");
  for (auto _ : state) {
    program.Click("chkFigureCurves");
    picture->repaint();
  }
}

void FigureAsPdf(benchmark::State& state) {
  Program program;
  program.LoadMany();
  program.SetUpFit();
  program.Click("cmdFitMe");
  const FinishedFit& fit = *program.session.Module.LastFit;
  std::size_t bytes = 0;
  for (auto _ : state) {
    const Figure figure = MakeFigure(FigureSets(fit), &fit.state, {});
    bytes = RenderFigure(figure, PictureFormat::kPdf, NaturalSize(figure, kFigurePageWidth)).size();
  }
  state.counters["MB"] = static_cast<double>(bytes) / 1e6;
}

void PreviewFit(benchmark::State& state) {
  Program program;
  program.LoadMany();
  program.SetUpFit();
  for (auto _ : state) program.Click("cmdPreviewFit");
}

// A log with the pictures of many fits, as an archive brings it.
void OpenLog(benchmark::State& state) {
  Program program;
  program.LoadMany();
  program.session.Module.Preferences.LogGraphs = true;
  program.SetUpFit();
  auto* log = program.window.findChild<LogWindow*>("frmDocument");
  for (int fits = 0; fits < 4; ++fits) program.Click("cmdFitMe");
  const std::string rtf = log->ToRtf();
  for (auto _ : state) {
    log->LoadRtf(rtf);
    QCoreApplication::processEvents();
  }
  state.counters["MB"] = static_cast<double>(rtf.size()) / 1e6;
}

// Seconds that this thread has worked, whatever else the machine does.
double ThreadSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// The longest wait of the window while unsaved work is kept: 101 datasets and a log with so many
// pictures. "first" is the first time, when all of the log is read.
void KeepUnsavedWork(benchmark::State& state) {
  Program program;
  program.LoadMany();
  QuorvaneModule& module = program.session.Module;
  program.SetUpFit();
  module.Preferences.LogGraphs = module.Preferences.SaveGraphs = true;
  for (int pictures = 0; pictures < state.range(0); pictures += 100) program.Click("cmdFitMe");
  const auto folder = std::filesystem::temp_directory_path() / "quorvane-bench-unsaved";
  std::filesystem::remove_all(folder);  // of a run that was broken off
  program.window.KeepUnsavedWork(folder, std::chrono::hours(1));
  auto* autosave = program.window.findChild<Autosave*>();
  bool kept = false;
  QObject::connect(autosave, &Autosave::Kept, autosave, [&] { kept = true; });
  const auto keep = [&] {
    kept = false;
    double start = ThreadSeconds();
    module.FitPage.ModelMW += 1.0;
    autosave->Keep();
    double longest = 0.0;
    do {
      QCoreApplication::processEvents();
      longest = std::max(longest, ThreadSeconds() - start);
      start = ThreadSeconds();
    } while (!kept);
    return longest;
  };
  state.counters["first_ms"] = 1e3 * keep();
  for (auto _ : state) state.SetIterationTime(keep());
  state.counters["graphs"] = module.NumGraphs();
  autosave->End();
}

}  // namespace

BENCHMARK(Start)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadScans)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(SetupFit)->Unit(benchmark::kMillisecond);
BENCHMARK(FitAndReport)->DenseRange(0, 1)->Unit(benchmark::kMillisecond);
BENCHMARK(FigureOnScreen)->Unit(benchmark::kMillisecond);
BENCHMARK(FigureAsPdf)->Unit(benchmark::kMillisecond);
BENCHMARK(PreviewFit)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenLog)->Unit(benchmark::kMillisecond);
BENCHMARK(KeepUnsavedWork)
    ->Arg(100)
    ->Arg(400)
    ->Iterations(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  QApplication::setStyle(QStringLiteral("Fusion"));
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
