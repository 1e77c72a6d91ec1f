// Takes the pictures of docs/images: walks the main road with the example and grabs each window.
// Usage: screenshots FOLDER [dark] (run by scripts/screenshots).
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTextCursor>
#include <QTextEdit>
#include <QTimer>
#include <QTreeView>
#include <chrono>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>

#include "base/text.h"
#include "core/settings/settings_store.h"
#include "scan/scan_file.h"
#include "windows/chart_mouse.h"
#include "windows/commands/experiment_commands.h"
#include "windows/controls/check_style.h"
#include "windows/data/data_window.h"
#include "windows/data/source_files_tab.h"
#include "windows/frame/main_window.h"
#include "windows/frame/qt_dialogs.h"
#include "windows/page/fit_control_tab.h"

using namespace quorvane;

namespace {

// Answers the choice of scans for the match window.
class PictureDialogs : public QtDialogs {
 public:
  explicit PictureDialogs(const QString& folder) : folder_(folder) {}
  QStringList OpenFiles(QWidget*, const FileRequest& request) override {
    QStringList names;
    if (request.title == QLatin1String("Import Text")) {
      for (const char* text : {"spectrum.csv", "reference.txt", "other.csv"}) {
        names << QStringLiteral("%1/%2").arg(folder_, QLatin1String(text));
      }
      return names;
    }
    for (int k = 1; k <= 8; ++k) names << QStringLiteral("%1/0000%2.RA8").arg(folder_).arg(k);
    return names;
  }

 private:
  QString folder_;
};

// A run of two cells at three speeds, a scan every 4 hours, on its way to equilibrium with a time
// constant of 5 hours at each speed: one species in a cell of 6 channels, at three loads.
void WriteRun(const std::filesystem::path& folder) {
  constexpr double kEnds[3][2] = {{5.88, 6.07}, {6.39, 6.58}, {6.91, 7.10}};
  constexpr int kSpeeds[] = {10000, 14000, 20000};
  std::filesystem::create_directories(folder);
  std::mt19937 random(1);
  std::normal_distribution<double> noise(0.0, 0.004);
  int file = 0;
  for (int scan = 0; scan < 18; ++scan) {
    for (const int cell : {1, 2}) {
      const int speed = kSpeeds[scan / 6];
      const double share = 1.0 - std::exp(-4.0 * (scan % 6 + 1) / 5.0);
      char line[96];
      std::snprintf(line, sizeof line, "%05d.RA%d", ++file, cell);
      std::ofstream out(folder / line, std::ios::binary);
      std::snprintf(line, sizeof line, "a run\r\nR %d 20.0 %05d %07d %.4fE%02d 280 20\r\n", cell,
                    speed, 14400 * (scan + 1), 0.16 * (scan + 1), 11);
      out << line;
      for (int row = 0; row < 400; ++row) {
        const double r = 5.8 + 1.4 * row / 400;
        double signal = 0.02;
        for (const auto& [meniscus, base] : kEnds) {
          if (r < meniscus || r > base) continue;
          const double middle = (meniscus + base) / 2;
          const double steep = 8.5e-9 * cell * speed * speed * (r * r - middle * middle);
          signal += 0.25 * meniscus / 6 * (1.0 + share * (std::exp(steep) - 1.0));
        }
        std::snprintf(line, sizeof line, "%9.4f  %13.5E   %13.5E\r\n", r, signal + noise(random),
                      0.004);
        out << line;
      }
    }
  }
  std::ofstream(folder / "notes.dat") << "cell 1: buffer\n";
}

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
    ShowEditing();
    Tab(1);
    FitIdeal();
    FitDimer();
    Fits();
    Trigger("mnuExpGraph");
    Grab("graphs");
    Click("cmdExportGraph");
    GrabDialog("frmExport", "export");
    Simulator();
    Series();
    Solution();
    Plan();
    Import();
    Match();
    Trigger("mnuHelpContents");
    QTest::qWait(200);
    if (auto* help = window_.findChild<QWidget*>("frmHelp")) {
      help->grab().save(folder_ + "/help.png");
    }
    ErrorAnalysis();
    Quality("fit-quality");
    Figure();
    ChooseScans();
    OfferOfUnsavedWork();
  }

 private:
  // The table of a run, one channel of it in sight.
  void ChooseScans() {
    const std::filesystem::path before = session_.CurrentFolder;
    auto& source = window_.findChild<DataWindow*>()->SourceFiles();
    source.GoToFolder(ToQString(before.parent_path() / "run"));
    Click("optCntrpiece(1)");
    Click("cmdChooseScans");
    auto* tree = window_.findChild<QTreeView*>("treeScans");
    QTRY_VERIFY(tree->model()->rowCount() == 6 &&
                !window_.findChild<QWidget*>("barScans")->isVisible());
    Click("cmdLastOfEach");
    tree->setCurrentIndex(tree->model()->index(3, 0, tree->model()->index(1, 0)));
    QTest::qWait(100);
    window_.findChild<ChartWidget*>("TChartScan")->ZoomTo({6.85, 0.0, 7.15, 1.0});
    QTest::qWait(150);
    Grab(*window_.findChild<QWidget*>("frmChooseScans")->parentWidget(), "choose-scans");
    QTest::keyClick(tree, Qt::Key_Escape);
    source.GoToFolder(ToQString(before));
    Click("optCntrpiece(0)");
  }
  // The quality of the last fit.
  void Quality(const QString& name) {
    Trigger("mnuFitQuality");
    QTest::qWait(150);
    auto* quality = window_.findChild<QWidget*>("frmFitQuality");
    quality->parentWidget()->grab().save(folder_ + "/" + name + ".png");
    quality->parentWidget()->close();
  }

  // The list of fits, and the first two of them side by side.
  void Fits() {
    Trigger("mnuFits");
    auto* list = window_.findChild<QWidget*>("frmFits");
    auto* grid = list->findChild<QTableView*>("gridFits");
    QTest::qWait(150);
    for (const int row : {0, 1}) {
      grid->selectionModel()->select(grid->model()->index(row, 0),
                                     QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    Grab(*list->parentWidget(), "fits");
    Click("cmdCompareFits");
    auto* comparison = window_.findChild<QWidget*>("frmCompareFits");
    Grab(*comparison->parentWidget(), "compare-fits");
    comparison->parentWidget()->close();
    list->parentWidget()->close();
  }

  // After a fit of three channels at three speeds.
  void Figure() {
    Trigger("mnuFigure");
    QWidget* child = window_.findChild<QWidget*>("frmFigure")->parentWidget();
    QTest::qWait(200);
    child->grab().save(folder_ + "/figure.png");
    auto* tabs = window_.findChild<QTabWidget*>("tabFigure");
    tabs->setCurrentIndex(1);
    window_.findChild<QComboBox*>("cmbFigurePanels")->setCurrentIndex(1);
    window_.findChild<QComboBox*>("cmbFigureSignal")->setCurrentIndex(1);
    Click("optFigureAxis(1)");
    QTest::qWait(200);
    child->grab().save(folder_ + "/figure-logarithm.png");
    auto* content = window_.findChild<QComboBox*>("cmbFigureContent");
    window_.findChild<QComboBox*>("cmbFigurePanels")->setCurrentIndex(2);
    for (const auto& [index, name] : {std::pair(1, "local-weights"), std::pair(3, "quantiles")}) {
      content->setCurrentIndex(index);
      QTest::qWait(200);
      child->grab().save(QStringLiteral("%1/%2.png").arg(folder_, QLatin1String(name)));
    }
    content->setCurrentIndex(0);
    child->close();
  }
  // After a fit: confidence intervals, coefficients and how they are printed, About.
  void ErrorAnalysis() {
    Tab(2);
    Click("cmdCalcCI");
    GrabDialog("frmConfInterval", "confidence");
    LimitsThatExist();
    CheckMinimum();
    Click("cmdShowCCCs");
    window_.findChild<QTableView*>("gridCCC")->scrollTo(LastCell());
    GrabDialog("frmCCCs", "coefficients");
    Click("cmdPrintMe");
    GrabDialog("P001", "print-preview");
    Trigger("mnuHelpAbout");
    Click("cmdSysInfo");
    GrabDialog("frmAbout", "about");
  }
  // Limits by profile and Monte Carlo, and a surface, as three pictures.
  void LimitsThatExist() {
    Trigger("mnuErrorAnalysis");
    auto* window = window_.findChild<QWidget*>("frmErrorAnalysis");
    QWidget* child = window->parentWidget();
    child->resize(1040, 620);
    child->move(20, 20);
    Click("chkErrorMonteCarlo");
    Click("chkErrorSurface");
    Click("cmdCalcErrors");
    auto* pictures = window_.findChild<QComboBox*>("cmbErrorPicture");
    for (const char* name : {"Profile: LnK1", "Monte Carlo: LnK1", "Surface: MW, LnK1"}) {
      pictures->setCurrentIndex(pictures->findText(name));
      QTest::qWait(150);
      const QString file = QString(name).section(':', 0, 0).toLower().replace(' ', '-');
      child->grab().save(folder_ + "/errors-" + file + ".png");
    }
    child->close();
  }
  void CheckMinimum() {
    Trigger("mnuCheckMinimum");
    Click("cmdCheckMinimum");
    GrabDialog("frmMinima", "check-minimum");
  }
  // The example, as if a crashed program had kept it; declined.
  void OfferOfUnsavedWork() {
    const auto unsaved = std::filesystem::temp_directory_path() / "quorvane-screenshots-unsaved";
    std::filesystem::remove_all(unsaved);
    std::filesystem::create_directories(unsaved / "1");
    std::filesystem::copy_file(session_.CurrentFolder / "experiment.exz",
                               unsaved / "1" / "experiment.exz");
    QTimer::singleShot(300, &window_, [this] {
      QWidget* box = QApplication::activeModalWidget();
      box->grab().save(folder_ + "/unsaved-work.png");
      box->close();
    });
    window_.KeepUnsavedWork(unsaved, std::chrono::hours(1));
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

  // Points outside the column and a spike deleted, and the menu of the next marquee.
  void ShowEditing() {
    Click("cmdEditData(1)");
    Tab(3);
    QTest::qWait(150);
    const Dataset& data = session_.Module.Store.Datasets[1];
    auto* chart = window_.findChild<ChartWidget*>("editTChart");
    auto* menu = window_.findChild<QMenu*>("mnuEditData");
    const auto last = static_cast<std::size_t>(data.NumPoints) - 1;
    const auto drag = [&](std::size_t from, std::size_t to, double low, double high) {
      const ChartMouse mouse(*chart);
      mouse.Drag(mouse.At(data.R[from], low), mouse.At(data.R[to], high));
      QTest::qWait(50);
    };
    drag(last / 12, last - last / 10, data.C[0] - 0.2, data.C[last] + 0.2);
    menu->close();
    Trigger("DelOutMarq");
    drag(last / 3, last * 2 / 3, data.C[last / 3] - 0.05, data.C[last * 2 / 3] + 0.1);
    QPixmap picture = window_.grab();
    QPainter(&picture).drawPixmap(window_.mapFromGlobal(menu->pos()), menu->grab());
    picture.save(folder_ + "/edit.png");
    menu->close();
    Click("cmdUndoEdit");
  }

  // The first analysis of the guide: a model that does not hold, from the values typed there.
  void FitIdeal() {
    Click("cmdSetFit");
    if (auto* hint = window_.findChild<QWidget*>("frmGraphicalRefC")) hint->close();
    Enter("txtExtCoeff(0)", "40000", true);
    Enter("txtRefConc(0)", "5E-6", true);
    Enter("txtMWB", "7500", false);
    Grab("fit-control");
    Click("cmdFitMe");
    for (int k = 0; k < 6; ++k) Click("cmdResultForward");
    Grab("fit-ideal");
    Quality("quality-ideal");
  }
  // And one that does.
  void FitDimer() {
    Tab(1);
    window_.findChild<QComboBox*>("cmbModel")->setCurrentIndex(2);
    Click("cmdSetFit");
    if (auto* hint = window_.findChild<QWidget*>("frmGraphicalRefC")) hint->close();
    Enter("txtMWB", "7500", false);
    Enter("txtLnK1", "11", false);
    ShowEvaluations();
    Click("cmdFitMe");
    Grab("fit-result");
    ShowLog();
  }
  void Enter(const char* name, const char* text, bool toRowsBelow) {
    auto* box = window_.findChild<QLineEdit*>(name);
    box->setFocus();
    box->setText(text);
    QTest::keyClick(box, Qt::Key_Return);
    if (toRowsBelow) QTest::mouseClick(box, Qt::LeftButton, Qt::ControlModifier);
  }

  // The curves of the start values, and one of them moved by its bar and put back.
  void ShowEvaluations() {
    Click("cmdPreviewFit");
    window_.findChild<QScrollBar*>("hsPreview")->setValue(4);
    Grab("preview-fit");
    window_.findChild<QWidget*>("frmPreview")->parentWidget()->close();
    QTest::mouseDClick(window_.findChild<QWidget*>("txtRefConc(1)"), Qt::LeftButton);
    window_.findChild<QScrollBar*>("hsSetRefC")->setValue(-200);
    Grab("set-ref-conc");
    Click("cmdCancel");
  }

  // The report in the log, as wide as its table.
  void ShowLog() {
    auto* log = window_.findChild<QTextEdit*>("logFile");
    auto* child = window_.findChild<QWidget*>("frmDocument")->parentWidget();
    const QRect place = child->geometry();
    child->resize(880, 560);
    QTest::qWait(150);
    const QTextCursor head = log->document()->find("Model :: Monomer");
    log->verticalScrollBar()->setValue(log->verticalScrollBar()->value() +
                                       log->cursorRect(head).top());
    QTest::qWait(150);
    child->grab().save(folder_ + "/log.png");
    child->setGeometry(place);
    log->moveCursor(QTextCursor::End);
  }

  void Grab(const QString& name) { Grab(window_, name); }
  void Grab(QWidget& shown, const QString& name) {
    QTest::qWait(150);
    shown.grab().save(folder_ + "/" + name + ".png");
  }
  void Match() {
    Trigger("mnuMatch");
    auto* match = window_.findChild<QWidget*>("frmMatch");
    auto* tabs = match->findChild<QTabWidget*>("SSTab1");
    const auto grab = [&](const QString& name) { Grab(*match->parentWidget(), name); };
    grab("match-load");
    Click("cmdLoadFiles");
    grab("match-range");
    Click("cmdDoMatch");
    grab("match-results");
    tabs->setCurrentIndex(3);
    Click("cmdMakePlot");
    grab("match-deviations");
    tabs->setCurrentIndex(4);
    grab("match-rms");
  }

  void Simulator() {
    Trigger("mnuSimulate");
    auto* simulator = window_.findChild<QWidget*>("frmSim");
    auto* tabs = simulator->findChild<QTabWidget*>("tabSim");
    const auto grab = [&](const QString& name) { Grab(*simulator->parentWidget(), name); };
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
  // Three simulated scans of four cells.
  void Series() {
    Click("cmdSimSeries");
    auto* series = window_.findChild<QWidget*>("frmSimSeries");
    series->findChild<QLineEdit*>("txtSeriesSpeeds")->setText("10000, 14000, 20000");
    series->findChild<QLineEdit*>("txtSeriesLoads")->setText("1e-6, 2e-6, 5e-6");
    GrabDialog("frmSimSeries", "series");
    window_.findChild<QWidget*>("frmSim")->parentWidget()->close();
  }

  // Hen lysozyme in a buffer.
  void Solution() {
    Trigger("mnuSolution");
    auto* window = window_.findChild<QWidget*>("frmSolution");
    window->findChild<QPlainTextEdit*>("txtSequence")
        ->setPlainText(
            ">hen "
            "lysozyme\nKVFGRCELAAAMKRHGLDNYRGYSLGNWVCAAKFESNFNTQATNRNTDGSTDYGILQINSRWWCNDGRTP\n"
            "GSRNLCNIPCSALLSSDITASVNCAKKIVSDGNGMNAWVAWRNRCKGTDVQAWIRGCRL\n");
    window->findChild<QSpinBox*>("spnDisulphides")->setValue(4);
    auto* find = window->findChild<QLineEdit*>("txtFindComponent");
    find->setText("20 mM Tris, 0.1 M NaCl");
    QTest::keyClick(find, Qt::Key_Return);
    find->setText("gly");
    GrabDialog("frmSolution", "solution");
  }

  // The dimer of the guide, checked; its errors along a speed; A + B with the best two speeds.
  void Plan() {
    Trigger("mnuPlan");
    auto* plan = window_.findChild<QWidget*>("frmPlan");
    auto* grid = plan->findChild<QTableView*>("gridPlanErrors");
    auto* stop = plan->findChild<QWidget*>("cmdPlanStop");
    QTRY_VERIFY(grid->model()->rowCount() == 2);
    Click("cmdPlanCheck");
    QTRY_VERIFY(!stop->isEnabled());
    Grab(*plan->parentWidget(), "plan");
    plan->findChild<QComboBox*>("cmbPlanPicture")->setCurrentIndex(2);
    QTest::qWait(300);
    Grab(*plan->parentWidget(), "plan-along");
    plan->findChild<QComboBox*>("cmbPlanModel")->setCurrentIndex(6);
    const std::pair<const char*, const char*> entries[] = {
        {"txtPlanSpeeds", "8000, 10000, 12000, 14000, 16000, 18000, 20000"},
        {"txtPlanMW", "10800"},
        {"txtPlanMWB", "4320"},
        {"txtPlanLnK1", "12.5"},
        {"txtPlanLoads", "2e-6, 4e-6, 8e-6"},
        {"txtPlanLoadsB", "8e-6, 6e-6, 3e-6"},
        {"txtPlanExtCoeff", "44000, 9000"},
        {"txtPlanExtCoeffB", "11000, 40000"}};
    for (const auto& [box, text] : entries) plan->findChild<QLineEdit*>(box)->setText(text);
    plan->findChild<QAbstractButton*>("chkPlanChoose")->click();
    plan->findChild<QSpinBox*>("spnPlanChoose")->setValue(2);
    plan->findChild<QTabWidget*>("tabPlan")->setCurrentIndex(1);
    QTest::qWait(300);
    Grab(*plan->parentWidget(), "plan-speeds");
    plan->parentWidget()->close();
  }

  // Tables of other programs: decimal commas with a header, intensities, and one with faults.
  void Import() {
    WriteTexts(PathText(session_.CurrentFolder.parent_path() / "equilibrium"));
    Trigger("mnuFileImport");
    auto* window = window_.findChild<QWidget*>("frmImport");
    window->findChild<QTableView*>("gridImportFiles")->selectRow(2);
    Grab(*window->parentWidget(), "import-faults");
    window->parentWidget()->close();
  }
  static void WriteTexts(const std::string& folder) {
    const Dataset data = [&] {
      std::ifstream in(folder + "/00008.RA8", std::ios::binary);
      return ReadDataset(FileKind::kIpRa, in, "00008.RA8", 5.6F, 7.3F);
    }();
    std::ofstream commas(folder + "/spectrum.csv");
    std::ofstream blanks(folder + "/reference.txt");
    std::ofstream faults(folder + "/other.csv");
    commas << "cell 3, second run\nR;3;20,0;14000;0064463;7,0120E10;280;32\n";
    blanks << "radius sample reference\n";
    for (std::size_t k = 0; k < static_cast<std::size_t>(data.NumPoints); ++k) {
      const auto text = [](double value) {
        return QString::number(value, 'f', 5).replace('.', ',').toStdString();
      };
      commas << text(data.R[k]) << ';' << text(data.C[k]) << ";0,00500\n";
      blanks << data.R[k] << ' ' << 1000.0 * std::pow(10.0, -data.C[k]) << " 1000\n";
      faults << data.R[k] << ',' << (k % 9 == 4 ? "n.d." : ShortestText(data.C[k])) << '\n';
    }
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
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor(128, 128, 128));
  }
  return palette;
}

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  QLocale::setDefault(QLocale::c());
  QApplication::setStyle(new CheckStyle);
  if (argc != 2 && argc != 3) return 2;
  if (argc == 3) QApplication::setPalette(DarkPalette());
  // A copy, so that the pictures show the same folder wherever they are taken.
  const auto examples = std::filesystem::temp_directory_path() / "quorvane-pictures";
  std::filesystem::remove_all(examples);
  std::filesystem::copy(std::filesystem::path(QUORVANE_SOURCE_DIR) / "examples", examples,
                        std::filesystem::copy_options::recursive);
  WriteRun(examples / "run");
  const std::filesystem::path settingsFile =
      std::filesystem::temp_directory_path() / "quorvane-screenshots.ini";
  std::filesystem::remove(settingsFile);
  IniSettings settings(settingsFile);
  PictureDialogs dialogs(ToQString(examples / "equilibrium"));
  Session session(settings, dialogs, QUORVANE_SOURCE_DIR);
  session.CurrentFolder = examples / "monomer-dimer";
  std::filesystem::create_directories(argv[1]);
  Walk(session, QString::fromLocal8Bit(argv[1])).Run();
  std::filesystem::remove_all(examples);
  return 0;
}
