// A session of the window program that works until it is killed. Usage: session_program FOLDER SEED
// It takes up what an earlier one left in FOLDER and goes on. What it has done stands in
// FOLDER/journal, a line an event: "change N" when change N was made, "kept N" and "saved N" when
// it was on the disk.
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QTextEdit>
#include <QTimer>
#include <clocale>
#include <cstdlib>
#include <random>

#include <fcntl.h>
#include <unistd.h>

#include "archive/experiment_file.h"
#include "core/settings/settings_store.h"
#include "plot/chart_export.h"
#include "windows/commands/experiment_commands.h"
#include "windows/frame/main_window.h"
#include "windows/frame/qt_dialogs.h"
#include "windows/session/autosave.h"

using namespace quorvane;

namespace {

namespace fs = std::filesystem;

// Yes to everything; files are named by the session.
class WillingDialogs : public QtDialogs {
 public:
  void ShowMessage(QWidget*, const QString& title, const QString& text, MessageIcon icon) override {
    if (icon == MessageIcon::kStop) return;  // a log that is saved has nothing more to save
    qFatal("%s: %s", qPrintable(title), qPrintable(text));
  }
  bool AskYesNo(QWidget*, const QString&, const QString&) override { return true; }
  DiscardChoice AskDiscard(QWidget*, const QString&, const QString&) override {
    return DiscardChoice::kYes;
  }
  WorkChoice OfferWork(QWidget*, const QString&, const QString&) override {
    return WorkChoice::kOpen;
  }
  QString SaveFile(QWidget*, const FileRequest&) override { return file; }
  QString ChooseFolder(QWidget*, const QString&, const QString&) override { return file; }

  QString file;
};

// The number of the last change is part of the experiment.
int LastChange(const FitPage& page) {
  return static_cast<int>(page.FitPageSpare[0]);
}

class Program {
 public:
  Program(const fs::path& folder, unsigned seed)
      : folder_(folder),
        settings_(folder / "quorvane.ini"),
        session_(settings_, dialogs_, folder),
        random_(seed),
        journal_(open((folder / "journal").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644)) {
    session_.LockArchives = true;
    session_.CurrentFolder = folder;
    session_.Module.Preferences.ShowHints = false;
    session_.Module.Preferences.LogGraphs = session_.Module.Preferences.SaveGraphs =
        false;  // those of the example do
    window_ = std::make_unique<MainWindow>(session_);
    window_->show();
    QCoreApplication::processEvents();
    Begin();
  }

  void Step() {
    constexpr int kActions = 24;
    switch (random_() % kActions) {
      case 0:
        return Press("cmdSetFit");
      case 1:
        Press("cmdSetFit");
        return Press("cmdFitMe");
      case 2:
        Trigger("mnuFileSave", "work.exz");
        return Note("saved", LastChange(session_.Module.FitPage));
      case 3:
        return Trigger("mnuSaveLog", "log.rtf");
      case 4:
        return Trigger("mnuFileSaveSets", "sets");
      case 5:
        return Export();
      default:
        return Change();
    }
  }

 private:
  void Begin() {
    constexpr std::chrono::milliseconds kInterval(40);
    const auto example = fs::path(QUORVANE_SOURCE_DIR) / "examples/monomer-dimer/experiment.exz";
    const fs::path work = folder_ / "work.exz";
    fs::create_directories(folder_ / "sets");
    window_->KeepUnsavedWork(folder_ / "unsaved", kInterval);
    const int resumed = LastChange(session_.Module.FitPage);
    if (!fs::exists(work)) fs::copy_file(example, work);
    // What was saved may be the later one, if the kill came between the save and the end of what
    // had been kept before it.
    const int saved = LastChange(ReadExperimentFile(work).experiment.FitPage);
    if (session_.Module.Store.Datasets.empty() || saved > resumed) {
      window_->Experiments().Load(ToQString(work));
    }
    auto* autosave = window_->findChild<Autosave*>();
    QObject::connect(autosave, &Autosave::Kept, window_.get(), [this] {
      const auto file = folder_ / "unsaved" / "1" / "experiment.exz";
      Note("kept", LastChange(ReadExperimentFile(file).experiment.FitPage));
    });
    QObject::connect(autosave, &Autosave::Failed, window_.get(),
                     [](const QString& why) { qFatal("%s", qPrintable(why)); });
  }

  void Change() {
    FitPage& page = session_.Module.FitPage;
    page.FitPageSpare[0] += 1.0;
    for (Dataset& dataset : session_.Module.Store.Datasets) dataset.Offset += 1e-6;
    window_->findChild<QTextEdit*>("logFile")->append(
        QStringLiteral("Change %1").arg(LastChange(page)));
    Note("change", LastChange(page));
  }

  void Export() {
    const Chart chart = ParseChart(session_.Module.GraphStreams.front());
    WriteWholeFile(folder_ / "graph.png", RenderChart(chart, PictureFormat::kPng));
    WriteWholeFile(folder_ / "graph.svg", RenderChart(chart, PictureFormat::kSvg));
    WriteWholeFile(folder_ / "graph.pdf", RenderChart(chart, PictureFormat::kPdf));
  }

  void Press(const char* name) {
    auto* button = window_->findChild<QAbstractButton*>(name);
    if (button->isEnabled()) button->click();
  }

  void Trigger(const char* name, const char* file) {
    dialogs_.file = ToQString(folder_ / file);
    auto* action = window_->findChild<QAction*>(name);
    if (action->isEnabled()) action->trigger();
  }

  void Note(const std::string& event, int change) {
    const std::string line = event + " " + std::to_string(change) + "\n";
    if (write(journal_, line.data(), line.size()) < 0) qFatal("journal");
  }

  fs::path folder_;
  IniSettings settings_;
  WillingDialogs dialogs_;
  Session session_;
  std::mt19937 random_;
  int journal_;
  std::unique_ptr<MainWindow> window_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  Program program(argv[1], static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10)));
  QTimer steps;
  QObject::connect(&steps, &QTimer::timeout, &steps, [&] { program.Step(); });
  steps.start(5);
  return QApplication::exec();
}
