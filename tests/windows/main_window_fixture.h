// The whole window program in a test: an empty settings folder, dialogs answered in advance.
#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QTabWidget>
#include <QTest>
#include <QTextEdit>
#include <cmath>
#include <memory>

#include <gtest/gtest.h>

#include "core/settings/settings_store.h"
#include "scan/point_edits.h"
#include "support/temp_folder.h"
#include "windows/commands/experiment_commands.h"
#include "windows/frame/main_window.h"
#include "windows/scripted_dialogs.h"

namespace quorvane {

inline const std::filesystem::path kExamples =
    std::filesystem::path(QUORVANE_SOURCE_DIR) / "examples";

class MainWindowTest : public testing::Test {
 protected:
  MainWindowTest() {
    session.CurrentFolder = folder.path();
    Start();
  }

  // Closes the program, if it runs, and starts it again with the same settings.
  void Start() {
    window = std::make_unique<MainWindow>(session);
    window->show();
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QTest::qWait(1);
  }

  template <class T = QWidget>
  T* Find(const char* name) {
    T* found = window->findChild<T*>(name);
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  void Trigger(const char* name) {
    auto* action = Find<QAction>(name);
    EXPECT_TRUE(action->isEnabled()) << name;
    action->trigger();
    QCoreApplication::processEvents();
  }
  void Click(const char* name) {
    auto* button = Find<QAbstractButton>(name);
    EXPECT_TRUE(button->isEnabled()) << name;
    button->click();
    QCoreApplication::processEvents();
  }
  QString LogText() { return Find<QTextEdit>("logFile")->toPlainText(); }

  // Tabs of dataTab that can be chosen, by place, such as "1100"; the current one as "2".
  std::string Tabs() {
    const auto* tabs = Find<QTabWidget>("dataTab");
    std::string states;
    for (int k = 0; k < tabs->count(); ++k) {
      states += k == tabs->currentIndex() ? '2' : tabs->isTabEnabled(k) ? '1' : '0';
    }
    return states;
  }

  // The monomer-dimer example, loaded from its archive, its page set up.
  void SetUpExample() {
    dialogs.yesNo = {true};
    session.Module.ExperimentOpen = true;
    window->Experiments().LoadAsked(ToQString(kExamples / "monomer-dimer" / "experiment.exz"));
    Click("cmdSetFit");
  }

  // A fit that takes so long that events come through: many points, and a model without vectors.
  void SetUpLongFit(int scans = 40) {
    const QString scan = ToQString(kExamples / "monomer-dimer" / "00001.RA1");
    window->Experiments().OpenDropped(QStringList(scans, scan));
    for (Dataset& dataset : session.Module.Store.Datasets) FillLong(dataset);
    Find<QComboBox>("cmbModel")->setCurrentIndex(9);
    Click("cmdSetFit");
    session.Module.FitPage.ModelMW = 8000.0;
    session.Module.FitPage.ModelLnK1 = -1.0;
    session.Module.Preferences.LogGraphs = session.Module.Preferences.SaveGraphs = false;
  }
  // 2000 points of an exponential, with a wave for noise.
  static void FillLong(Dataset& dataset) {
    dataset.NumPoints = 2000;
    for (std::size_t k = 0; k < 2000; ++k) {
      const double r = 6.4 + 1e-4 * static_cast<double>(k);
      dataset.R[k] = r;
      dataset.C[k] = 0.2 * std::exp(1.1 * (r * r - 42.6) / 2.0) + 0.005 * std::sin(r * 9000.0);
      dataset.Err[k] = 1.0;
      dataset.Good[k] = kTrue;
    }
    RestoreAll(dataset);
  }

  TempFolder folder;
  IniSettings settings{folder / "quorvane.ini"};
  ScriptedDialogs dialogs;
  Session session{settings, dialogs, folder.path()};
  std::unique_ptr<MainWindow> window;
};

}  // namespace quorvane
