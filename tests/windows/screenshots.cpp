// Takes the pictures of docs/images: walks the main road with the example and grabs each window.
// Usage: screenshots FOLDER [dark] (run by scripts/screenshots).
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QLocale>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <clocale>
#include <filesystem>

#include "core/settings_store.h"
#include "windows/experiment_commands.h"
#include "windows/main_window.h"
#include "windows/source_files_tab.h"

namespace {

// Answers the choice of scans for the match window.
class PictureDialogs : public QtDialogs {
 public:
  explicit PictureDialogs(const QString& folder) : folder_(folder) {}
  QStringList OpenFiles(QWidget*, const FileRequest&) override {
    QStringList names;
    for (int k = 1; k <= 8; ++k) names << QStringLiteral("%1/0000%2.RA8").arg(folder_).arg(k);
    return names;
  }

 private:
  QString folder_;
};

class Walk {
 public:
  Walk(Session& session, QString folder)
      : session_(session), folder_(std::move(folder)), window_(session) {
    window_.resize(1366, 728);
    window_.show();
    QTest::qWait(200);
  }

  void Run() {
    Grab("start");
    const QString dimer = ToQString(session_.CurrentFolder);
    Click("optCntrpiece(1)");
    Click("cmdPreviewIt");
    Grab("source-files");
    window_.Experiments().OpenDropped(
        {dimer + "/00001.RA1", dimer + "/00002.RA1", dimer + "/00003.RA1"});
    Tab(1);
    Grab("loaded-data");
    Click("cmdEditData(1)");
    Grab("edit");
    Tab(1);
    window_.findChild<QComboBox*>("cmbModel")->setCurrentIndex(2);
    for (Dataset& dataset : session_.Module.Store.Datasets) dataset.ExtCoeff = 40000.0;
    Click("cmdSetFit");
    Grab("fit-control");
    Click("cmdFitMe");
    Grab("fit-result");
    Trigger("mnuExpGraph");
    Grab("graphs");
    Simulator();
    Match();
    Trigger("mnuHelpContents");
    QTest::qWait(200);
    if (auto* help = window_.findChild<QWidget*>("frmHelp")) {
      help->grab().save(folder_ + "/help.png");
    }
    ErrorAnalysis();
  }

 private:
  // After a fit: confidence intervals, coefficients and how they are printed, About.
  void ErrorAnalysis() {
    Tab(2);
    Click("cmdCalcCI");
    GrabDialog("frmConfInterval", "confidence");
    Click("cmdShowCCCs");
    window_.findChild<QTableView*>("gridCCC")->scrollTo(LastCell());
    GrabDialog("frmCCCs", "coefficients");
    Click("cmdPrintMe");
    GrabDialog("P001", "print-preview");
    Trigger("mnuHelpAbout");
    Click("cmdSysInfo");
    GrabDialog("frmAbout", "about");
  }
  QModelIndex LastCell() {
    const QAbstractItemModel* cells = window_.findChild<QTableView*>("gridCCC")->model();
    return cells->index(cells->rowCount() - 1, cells->columnCount() - 1);
  }
  // Grabs a window of its own and closes it.
  void GrabDialog(const char* window, const QString& name) {
    QTest::qWait(300);
    auto* dialog = window_.findChild<QWidget*>(window);
    dialog->grab().save(folder_ + "/" + name + ".png");
    dialog->close();
  }
  void Grab(const QString& name) {
    QTest::qWait(150);
    window_.grab().save(folder_ + "/" + name + ".png");
  }
  void Match() {
    Trigger("mnuMatch");
    auto* match = window_.findChild<QWidget*>("frmMatch");
    auto* tabs = match->findChild<QTabWidget*>("SSTab1");
    const auto grab = [&](const QString& name) {
      QTest::qWait(150);
      match->parentWidget()->grab().save(folder_ + "/" + name + ".png");
    };
    Click("cmdLoadFiles");
    grab("match-range");
    Click("cmdDoMatch");
    grab("match-results");
    tabs->setCurrentIndex(3);
    Click("cmdMakePlot");
    grab("match-deviations");
  }

  void Simulator() {
    Trigger("mnuSimulate");
    auto* simulator = window_.findChild<QWidget*>("frmSim");
    auto* tabs = simulator->findChild<QTabWidget*>("tabSim");
    const auto grab = [&](const QString& name) {
      QTest::qWait(150);
      simulator->parentWidget()->grab().save(folder_ + "/" + name + ".png");
    };
    Click("optSimModel(6)");
    simulator->findChild<QLineEdit*>("txtMWB")->setText("30000");
    simulator->findChild<QLineEdit*>("txtExtCoeffB")->setText("98700");
    Click("optSaveAs(1)");
    grab("simulator");
    Click("cmdSimulate");
    tabs->setCurrentIndex(1);
    grab("simulator-data");
    tabs->setCurrentIndex(2);
    Click("optGraphType(2)");
    grab("simulator-plots");
  }
  void Tab(int place) { window_.findChild<QTabWidget*>("dataTab")->setCurrentIndex(place); }
  void Click(const char* name) { window_.findChild<QAbstractButton*>(name)->click(); }
  void Trigger(const char* name) { window_.findChild<QAction*>(name)->trigger(); }

  Session& session_;
  QString folder_;
  MainWindow window_;
};

// As a dark desktop gives it.
QPalette DarkPalette() {
  QPalette palette(QColor(53, 53, 53));
  palette.setColor(QPalette::Base, QColor(35, 35, 35));
  palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
  return palette;
}

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  QLocale::setDefault(QLocale::c());
  QApplication::setStyle(QStringLiteral("Fusion"));
  if (argc != 2 && argc != 3) return 2;
  if (argc == 3) QApplication::setPalette(DarkPalette());
  const std::filesystem::path examples = std::filesystem::path(QUORVANE_SOURCE_DIR) / "examples";
  const std::filesystem::path settingsFile =
      std::filesystem::temp_directory_path() / "quorvane-screenshots.ini";
  std::filesystem::remove(settingsFile);
  IniSettings settings(settingsFile);
  PictureDialogs dialogs(ToQString(examples / "equilibrium"));
  Session session(settings, dialogs, examples);
  session.CurrentFolder = examples / "monomer-dimer";
  std::filesystem::create_directories(argv[1]);
  Walk(session, QString::fromLocal8Bit(argv[1])).Run();
  return 0;
}
