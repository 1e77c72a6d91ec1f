// Faults caught here: rows that do not follow the store, a name that lands on the wrong dataset,
// controls that stay enabled, refusals without their words. All of it runs under a German locale.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <clocale>

#include <gtest/gtest.h>

#include "fit/models.h"
#include "plot/chart_widget.h"
#include "support/recording_host.h"
#include "support/temp_folder.h"
#include "windows/data/info_window.h"
#include "windows/data/loaded_data_tab.h"
#include "windows/data/source_files_tab.h"
#include "windows/scripted_dialogs.h"

using namespace quorvane;

namespace {

using Names = std::vector<std::string>;

const QString kHeader = "R 3 20.5 20000 0099999 1.0000E12 280 21";

// A scan of cell 3 with 20 points in each channel of a 6-channel cell, signal 0.25.
std::string Scan() {
  std::string text = "buffer A\r\n" + kHeader.toStdString() + "\r\n";
  for (const int first : {5900, 6400, 6900}) {
    for (int r = first; r < first + 100; r += 5) {
      text += "   " + std::to_string(r).insert(1, ".") + "0   2.50000E-001    1.00000E-002\r\n";
    }
  }
  return text;
}

class DataTabs : public testing::Test {
 protected:
  DataTabs() {
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    std::setlocale(LC_ALL, "de_DE.UTF-8");  // where it is installed
    session.CurrentFolder = folder.path();
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(source = new SourceFilesTab(session, host));
    layout->addWidget(data = new LoadedDataTab(session, host));
    QObject::connect(source, &SourceFilesTab::DatasetsChanged, data, &LoadedDataTab::Rebuild);
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  ~DataTabs() override {
    QLocale::setDefault(QLocale::c());
    std::setlocale(LC_ALL, "C");
  }

  template <class Widget = QWidget>
  Widget* Find(const char* name) {
    auto* widget = window.findChild<Widget*>(name);
    if (widget == nullptr) throw std::runtime_error(name);
    return widget;
  }
  void Click(const char* name, Qt::KeyboardModifiers keys = {}) {
    auto* widget = Find(name);
    EXPECT_TRUE(widget->isEnabled() && widget->isVisible()) << name;
    const QPoint left(widget->height() / 2, widget->height() / 2);  // on the box of a check box
    QTest::mouseClick(widget, Qt::LeftButton, keys, left);
    QCoreApplication::processEvents();
  }
  void Load(std::initializer_list<const char*> fileNames) {
    QStringList paths;
    for (const char* name : fileNames) paths << ToQString(folder.Write(name, Scan()));
    source->LoadFiles(paths);
    QCoreApplication::processEvents();
  }
  Names Loaded() const {
    Names names;
    for (const Dataset& d : session.Module.Store.Datasets) names.push_back(NameOf(d));
    return names;
  }

  TempFolder folder;
  IniSettings settings{folder / "quorvane.ini"};
  ScriptedDialogs dialogs;
  Session session{settings, dialogs, folder.path()};
  RecordingHost host;
  QWidget window;
  SourceFilesTab* source;
  LoadedDataTab* data;
};

}  // namespace

TEST_F(DataTabs, KindChoosesFilesAndCenterpieces) {
  for (const char* name : {"00012.Ra3", "x.dat", "c.fi2"}) folder.Write(name, Scan());
  source->RefreshDirectory();
  const char* cases[][2] = {
      {"optFileType(1)", "x.dat"}, {"optFileType(2)", "c.fi2"}, {"optFileType(0)", "00012.Ra3"}};
  for (const auto& [option, file] : cases) {
    Click(option);
    EXPECT_EQ(Find<QComboBox>("comboDataFile")->currentText(), file);
    EXPECT_EQ(Find("optCntrpiece(1)")->isEnabled(), option == cases[2][0]);
    EXPECT_EQ(Find<QPlainTextEdit>("txtFileComment")->toPlainText(), "buffer A\n" + kHeader);
  }
  EXPECT_FALSE(Find("optFileType(3)")->isVisible());
}

TEST_F(DataTabs, ChecksTheSelectedFileAndFollowsTheSettings) {
  folder.Write("a.RA1", Scan());
  folder.Write("b.RA1", "note\r\n" + Scan());
  folder.Write("c.RA1", std::string(9, 1));
  const auto vanished = folder.Write("d.RA1", Scan());
  source->RefreshDirectory();
  std::filesystem::remove(vanished);
  std::filesystem::create_directory(vanished);
  const auto* grid = Find<QTableWidget>("gridFileCheck");
  const auto* warnings = Find<QListWidget>("lstFileWarnings");
  const auto row = [&](int k) {
    QTest::qWait(1);
    return grid->verticalHeaderItem(k)->text() + ": " + grid->item(k, 0)->text() + "|" +
           grid->item(k, 1)->text();
  };
  const auto warned = [&] {
    QStringList texts;
    for (int k = 0; k < warnings->count(); ++k) texts << warnings->item(k)->text();
    return texts.join('/');
  };
  EXPECT_EQ(row(5), "Points A: 60|60");
  EXPECT_EQ(row(3), "Speed: 20000 rpm|20000 rpm");
  EXPECT_EQ(warned(), "Nothing to warn of.");
  Click("optCntrpiece(1)");
  EXPECT_EQ(row(5), "Points A/B/C: 20/20/20|20/20/20");
  Click("chkChannel(1)");
  EXPECT_EQ(row(5), "Points A/C: 20/20|20/20");
  EXPECT_TRUE(warned().startsWith("Channel A: only 20 points lie in its window."));
  const char* cases[] = {"The header stands in line 3", "c.RA1 is a binary file!",
                         "d.RA1: is a folder"};
  for (int k = 0; k < 3; ++k) {
    Find<QComboBox>("comboDataFile")->setCurrentIndex(k + 1);
    QTest::qWait(1);
    EXPECT_TRUE(warned().contains(cases[k])) << warned().toStdString();
  }
  EXPECT_EQ(row(3), "Speed: |");
  Click("optFileType(1)");  // a list without files
  EXPECT_EQ(row(0), "Kind: |");
  EXPECT_EQ(warned(), "");
  EXPECT_EQ(host.messages.size(), 0U);
}

TEST_F(DataTabs, CenterpieceSetsTheChannelsAndKeepsThePreview) {
  folder.Write("a.RA1", Scan());
  source->RefreshDirectory();
  Click("cmdPreviewIt");
  auto* preview = Find<ChartWidget>("TChartPreview");
  const char* cases[][2] = {{"optCntrpiece(1)", "1+1+1+0-"},  // by channel: checked, enabled
                            {"optCntrpiece(2)", "1+1+1+1+"},
                            {"optCntrpiece(0)", "1-0-0-0-"}};
  for (const auto& [option, expected] : cases) {
    Click(option);
    std::string states;
    for (int c = 0; c < 4; ++c) {
      const auto* channel = window.findChild<QCheckBox*>(QString("chkChannel(%1)").arg(c));
      states += channel->isChecked() ? '1' : '0';
      states += channel->isEnabled() ? '+' : '-';
    }
    EXPECT_EQ(states, expected) << option;
    EXPECT_FALSE(preview->GetChart().panels.empty());
  }
  auto* axes = preview->findChild<QAction*>("mnuShowAxes");
  QImage shown[3];
  for (QImage& picture : shown) {
    QCoreApplication::processEvents();  // it is drawn later
    picture = preview->grab().toImage();
    QTimer::singleShot(20, &window, [axes] {
      QApplication::activePopupWidget()->close();
      axes->trigger();
    });
    QWidget* plot = preview->childAt(preview->rect().center());
    QContextMenuEvent menu(QContextMenuEvent::Mouse, {}, plot->mapToGlobal(QPoint()));
    QCoreApplication::sendEvent(plot, &menu);
  }
  EXPECT_NE(shown[0], shown[1]);
  EXPECT_EQ(shown[0], shown[2]);
  EXPECT_EQ(settings.Get("Quorvane", "PreviewAxes"), "1");
  Click("cmdRefreshLB");
  EXPECT_TRUE(preview->GetChart().panels.empty());
}

TEST_F(DataTabs, LoadsTheCheckedChannelsOfOneFile) {
  folder.Write("00012.RA3", Scan());
  source->RefreshDirectory();
  Click("optCntrpiece(1)");
  Click("chkChannel(1)");
  Click("cmdLoadFile");
  EXPECT_EQ(Loaded(), (Names{"12_3A20280.dat", "12_3C20280.dat"}));
  EXPECT_EQ(session.Module.Store.Datasets[1].C[0], 0.25);
  EXPECT_EQ(Find<QLineEdit>("txtLoadData(1)")->text(), "12_3C20280.dat");
  Click("chkChannel(0)");
  Click("chkChannel(2)");
  Click("cmdLoadFile");
  EXPECT_EQ(host.failures, (Names{"No channel is checked: nothing was loaded"}));
  EXPECT_EQ(Loaded().size(), 2u);
}

TEST_F(DataTabs, LoadsManyInTheOrderOfTheirNames) {
  QStringList chosen;
  for (const char* name : {"B.RA1", "9.RA1"}) chosen << ToQString(folder.Write(name, Scan()));
  dialogs.fileLists = {{}, chosen};
  Click("cmdMultiLoad");  // cancelled
  Click("cmdMultiLoad");
  EXPECT_EQ(Loaded(), (Names{"9_3A20280.dat", "B_3A20280.dat"}));
  EXPECT_EQ(dialogs.requests[1].title, "Load Multiple Files");
  EXPECT_TRUE(dialogs.requests[1].filter.endsWith(";;All files (*)"));
}

TEST_F(DataTabs, TellsWhatCannotBeLoaded) {
  EXPECT_FALSE(Find("cmdLoadFile")->isEnabled());  // a folder without files
  const auto binary = folder.Write("a.RA1", "\x01" + Scan());
  const auto vanished = folder.Write("b.RA1", Scan());
  source->RefreshDirectory();
  Click("cmdLoadFile");
  EXPECT_EQ(host.messages.back().text, PathText(binary) + " is a binary file!");
  Find<QComboBox>("comboDataFile")->setCurrentIndex(1);
  std::filesystem::remove(vanished);
  for (const char* button : {"cmdLoadFile", "cmdLoadBlank"}) {
    Click(button);
    EXPECT_EQ(host.failures.back(), PathText(vanished) + ": there is no such file");
  }
  source->LoadFiles({ToQString(folder.path()), ToQString(binary)});
  EXPECT_EQ(host.messages.back().text, PathText(folder.path()) + ": is a folder\r\n" +
                                           PathText(binary) + " is a binary file!");
  EXPECT_TRUE(Loaded().empty());
}

TEST_F(DataTabs, ShowsTheEndOfALongFolder) {
  const QSignalSpy changed(source, &SourceFilesTab::FolderChanged);
  const auto inner = folder / std::string(41, 'x');
  std::filesystem::create_directory(inner);
  dialogs.files = {ToQString(folder / "missing"), "", ToQString(inner)};
  for (int answer = 0; answer < 3; ++answer) {
    EXPECT_EQ(session.CurrentFolder, folder.path());
    Click("btnChangeDir");
  }
  EXPECT_EQ(host.messages.size(), 1u);  // of the missing folder
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(host.lines, (Names{"\r\nThe current directory is " + PathText(inner)}));
  const auto* label = Find<QLabel>("lblCurrentDir");
  EXPECT_EQ(label->text(), "Current Directory:: ..." + QString(37, 'x'));
  for (const std::string& shown : {"/" + std::string(31, 'y'), "..." + std::string(29, 'y')}) {
    session.CurrentFolder = "/" + std::string(shown[0] == '/' ? 31 : 32, 'y');
    source->RefreshDirectory();
    EXPECT_EQ(label->text().toStdString(), "Current Directory:: " + shown);
  }
}

TEST_F(DataTabs, RefusesBadNamesAndKeepsTheFocus) {
  Load({"a.RA1", "b.RA1"});
  auto* box = Find<QLineEdit>("txtLoadData(0)");
  const std::string longName(40, 'x');
  const std::pair<std::string, std::string> cases[] = {
      {" ", "a_3A20280.dat"}, {"a:b", "a_3A20280.dat"}, {longName, longName.substr(0, 32)}};
  for (const auto& [typed, stored] : cases) {
    host.messages.clear();
    box->setFocus();
    box->setText(QString::fromStdString(typed));
    Find("txtLoadData(1)")->setFocus();
    QCoreApplication::processEvents();
    EXPECT_EQ(host.messages.size(), typed == longName ? 0u : 1u);
    EXPECT_EQ(box->hasFocus(), typed != longName) << typed;
    EXPECT_EQ(Loaded()[0], stored);
    EXPECT_EQ(box->text().toStdString(), stored);
  }
}

// A name still being typed when a row above it went landed on the next dataset.
TEST_F(DataTabs, UnloadsAfterTheNameBeingTyped) {
  Load({"a.RA1", "b.RA1", "c.RA1"});
  session.Module.Store.Datasets[2].Edited = 1.0;
  Find("txtLoadData(1)")->setFocus();
  Find<QLineEdit>("txtLoadData(1)")->setText("mine");
  Click("cmdRemoveData(0)");
  EXPECT_EQ(Loaded(), (Names{"mine", "c_3A20280.dat"}));
  EXPECT_EQ(host.CountLinesWith("Removed Dataset #1:: a_3A20280.dat"), 1);
  EXPECT_EQ(Find("cmdEditData(0)")->palette().color(QPalette::Button), QColor(255, 0, 0));
  EXPECT_EQ(Find("cmdEditData(1)")->palette().color(QPalette::Button), QColor(0, 255, 0));
  Click("cmdRemoveData(1)");
  EXPECT_EQ(window.findChild<QWidget*>("cmdRemoveData(1)"), nullptr);
  Click("cmdRemoveData(0)");
  EXPECT_EQ(host.lines.back(), "\r\nNo datasets are currently loaded.");
  EXPECT_FALSE(Find("cmdSetFit")->isEnabled());
}

TEST_F(DataTabs, SubtractsTheChosenBlank) {
  const QSignalSpy edits(data, &LoadedDataTab::EditRequested);
  Load({"a.RA1"});
  Click("cmdBlankData(0)");
  EXPECT_EQ(host.messages.back().title, "Load Blank Sets");
  EXPECT_EQ(host.messages.back().text, "No Blank Datasets Loaded!");
  source->RefreshDirectory();
  Click("cmdLoadBlank");
  EXPECT_EQ(Loaded()[1], "BL_a_3A20280.dat");
  EXPECT_FALSE(Find("chkUseData(1)")->isEnabled() || Find("cmdBlankData(1)")->isEnabled());
  EXPECT_EQ(Find<QPushButton>("cmdEditData(1)")->text(), "View");
  Click("cmdEditData(1)");
  EXPECT_EQ(edits.value(0).value(0), 1);
  for (const char* entry : {"mnuCancelBlank", "mnuBlankSets(0)"}) {
    EXPECT_FALSE(IsBlanked(session.Module.Store.Datasets[0]));
    Click("cmdBlankData(0)");
    auto* menu = Find<QMenu>("mnuBlank");
    ASSERT_TRUE(menu->isVisible());
    auto* action = menu->findChild<QAction*>(entry);
    EXPECT_EQ(action->text(), action->objectName() == "mnuCancelBlank" ? "Cancel" : "2");
    action->trigger();
    menu->close();
  }
  EXPECT_EQ(session.Module.Store.Datasets[0].C[5], 0.0);
  EXPECT_FALSE(Find("cmdBlankData(0)")->isEnabled());
  EXPECT_EQ(host.CountLinesWith("was blanked using"), 1);
}

TEST_F(DataTabs, CtrlCopiesTheChoiceDownwards) {
  Load({"a.RA1", "b.RA1", "c.RA1"});
  auto& use = session.Module.Store.UseData;
  Find<QLineEdit>("txtLoadData(2)")->setText("BL_c");
  EXPECT_TRUE(data->CommitPending());  // makes a blank of it, which is never fitted
  Click("chkUseData(1)", Qt::ControlModifier);
  EXPECT_EQ(use, (std::vector<bool>{true, false, false}));
  EXPECT_EQ(Find<QCheckBox>("chkUseAll")->checkState(), Qt::PartiallyChecked);
  Click("chkUseAll");
  EXPECT_EQ(use, (std::vector<bool>{true, true, false}));
  Click("chkUseData(0)", Qt::ControlModifier);
  EXPECT_EQ(use, (std::vector<bool>{false, false, false}));
  Find("chkUseData(1)")->setFocus();
  QTest::keyClick(Find("chkUseData(1)"), Qt::Key_Up);
  EXPECT_TRUE(Find("chkUseData(0)")->hasFocus());
  QTest::keyClick(Find("chkUseData(0)"), Qt::Key_Space, Qt::ControlModifier);
  EXPECT_EQ(use, (std::vector<bool>{true, true, false}));
  data->SetCalculating(true);
  EXPECT_FALSE(Find("chkUseData(0)")->isEnabled() || Find("cmdRemoveAllData")->isEnabled());
}

TEST_F(DataTabs, ShowsCommentsAndPassesTheModelOn) {
  const QSignalSpy setups(data, &LoadedDataTab::SetupFitRequested);
  Load({"a.RA1"});
  Click("cmdShowInfo(0)");
  const QPointer<InfoWindow> info = Find<InfoWindow>("frmInfo");
  EXPECT_TRUE(info->isModal());
  const QString comments = Find<QPlainTextEdit>("txtInfo")->toPlainText();
  EXPECT_TRUE(comments.startsWith("buffer A :: ") && comments.endsWith(".RA1\n" + kHeader));
  Click("cmdOK");
  EXPECT_TRUE(info.isNull());
  Find<QComboBox>("cmbModel")->setCurrentIndex(10);
  Click("cmdSetFit");
  EXPECT_EQ(setups.size(), 1);
  EXPECT_EQ(session.Module.ChosenModel, FindModel(10));
  Click("cmdRemoveAllData");
  EXPECT_TRUE(Loaded().empty());
}
