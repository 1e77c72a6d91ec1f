// The parameter page on the screen, with what tests type and click there.
#pragma once

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <string>

#include "core/settings/settings_store.h"
#include "fit/models.h"
#include "support/recording_host.h"
#include "support/session.h"
#include "windows/page/fit_control_tab.h"
#include "windows/scripted_dialogs.h"
#include "windows/session/session.h"

namespace quorvane {

class FitControlTabTest : public testing::Test {
 protected:
  FitControlTabTest() {
    session.Module.Preferences.ShowNIWarning = false;
    tab.show();
    tab.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&tab));
  }

  void AddScans(int count) {
    for (int k = 0; k < count; ++k) {
      AddScan(session.Module, {.name = "seventeen_long.da", .points = 10},
              [](double, double) { return 0.1; });
    }
  }
  void SetUp(int model, int scans) {
    AddScans(scans);
    ASSERT_TRUE(tab.SetupFit(*FindModel(model)));
    QCoreApplication::processEvents();
  }
  template <class T = QWidget>
  T* Find(const std::string& name) {
    T* found = tab.findChild<T*>(QString::fromStdString(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  std::string Text(const std::string& box) { return Find<QLineEdit>(box)->text().toStdString(); }
  void Type(const std::string& name, const char* text) {
    auto* box = Find<QLineEdit>(name);
    ASSERT_TRUE(box->isVisible() && box->isEnabled()) << name;
    box->setFocus();
    QCoreApplication::processEvents();
    box->clear();
    QTest::keyClicks(box, text);
    QTest::keyClick(box, Qt::Key_Return);
  }
  void Click(const std::string& name, Qt::KeyboardModifiers modifiers = {},
             Qt::MouseButton button = Qt::LeftButton) {
    auto* control = Find(name);
    ASSERT_TRUE(control->isVisible()) << name;
    const bool check = qobject_cast<QCheckBox*>(control) != nullptr;
    QTest::mouseClick(control, button, modifiers,
                      check ? QPoint(8, control->height() / 2) : control->rect().center());
  }
  // The entries of the open menu with that name: "+" enabled, "-" disabled, "*" checked.
  std::string Entries(const std::string& name) {
    std::string states;
    for (const QAction* entry : Find<QMenu>(name)->actions()) {
      if (!entry->isSeparator())
        states += !entry->isEnabled() ? '-' : entry->isChecked() ? '*' : '+';
    }
    return states;
  }
  void Choose(const std::string& menu, const std::string& entry) {
    Find<QAction>(entry)->trigger();
    Find<QMenu>(menu)->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  Dataset& Scan(std::size_t k) { return session.Module.Store.Datasets[k]; }
  std::string LastMessage() {
    return dialogs.messages.empty() ? "" : dialogs.messages.back().text.toStdString();
  }

  IniSettings settings{"unused.ini"};
  ScriptedDialogs dialogs;
  Session session{settings, dialogs, {}};
  RecordingHost host;
  FitControlTab tab{session, host};
  FitPage& page = session.Module.FitPage;
  FitSetup& setup = session.Module.Setup;
};

}  // namespace quorvane
