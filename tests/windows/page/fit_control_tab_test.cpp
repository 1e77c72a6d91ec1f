// Faults caught here: a value stored in the form in which it is shown, a refusal that changes
// something or says the wrong words, a control that a model should not have, gestures that reach
// the wrong rows, links in chains.
#include "windows/page/fit_control_tab.h"
#include "fit/models.h"

#include <QAction>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <clocale>
#include <cmath>

#include "core/settings/settings_store.h"
#include "support/recording_host.h"
#include "support/session.h"
#include "windows/controls/value_box.h"
#include "windows/page/ni_warning.h"
#include "windows/scripted_dialogs.h"
#include "windows/session/session.h"

using namespace quorvane;

namespace {

using enum KDisplay;

constexpr double kLn10 = 2.302585092994046;

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

}  // namespace

TEST_F(FitControlTabTest, ValuesAreShownAndStoredInTheirForms) {
  SetUp(8, 1);
  page.Vbar = 0.75;
  page.VbarB = 0.5;
  struct Case {
    bool buoyant;
    KDisplay KFormat;
    const char* box;
    const char* typed;
    double FitPage::*field;
    double stored;
    const char* shown;
  };
  const std::vector<Case> cases = {
      {true, kLn, "txtMWB", "8000", &FitPage::ModelMW, 8000.0, "8.000E+3"},
      {false, kLn, "txtMWB", "8000", &FitPage::ModelMW, 2000.0, "8.000E+3"},
      {false, kLn, "txtMWB2", "50", &FitPage::ModelMWB, 25.0, "50.0000"},
      {true, kLn, "txtLnK1", "-1.5", &FitPage::ModelLnK1, -1.5, "-1.5000"},
      {true, kLog10, "txtLnK1", "6", &FitPage::ModelLnK1, 6.0 * kLn10, "6.0000"},
      {true, kPlain, "txtLnK2", "1e6", &FitPage::ModelLnK2, 6.0 * kLn10, "1.000E+6"},
      {true, kPlain, "txtLnK3", ".01", &FitPage::ModelLnK3, -2.0 * kLn10, "1.000E-2"},
  };
  for (const Case& c : cases) {
    session.Module.Preferences.UseBuoyantMW = c.buoyant;
    session.Module.Preferences.KFormat = c.KFormat;
    tab.RefreshDisplay();
    Type(c.box, c.typed);
    EXPECT_NEAR(page.*c.field, c.stored, 1e-12 * std::fabs(c.stored)) << c.box << c.typed;
    EXPECT_EQ(Text(c.box), c.shown);
  }
  // Three changes of the display bring the first text back and leave the value alone.
  page.ModelLnK1 = 14.123456;
  for (const KDisplay display : {kLn, kLog10, kPlain, kLn}) {
    session.Module.Preferences.KFormat = display;
    tab.RefreshDisplay();
  }
  EXPECT_EQ(Text("txtLnK1"), "14.1235");
  EXPECT_EQ(page.ModelLnK1, 14.123456);
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(FitControlTabTest, RefusalsKeepTheValueAndTheFocus) {
  SetUp(8, 2);
  session.Module.Preferences.UseBuoyantMW = false;
  const char* const illegal = "Illegal Value Entered";
  struct Case {
    KDisplay KFormat;
    bool constrained;
    const char* box;
    const char* typed;
    const char* text;
    const char* remark;  // its beginning
  };
  const std::vector<Case> cases = {
      {kLn, false, "txtLnK1", "1,5", illegal, "LnK1 takes any number, such as 0.5 or 1.5E-6."},
      {kPlain, false, "txtLnK1", "0", "K must be >0 !", "K1 takes a number above 0."},
      {kPlain, false, "txtLnK2", "0", "K2 must be greater than 0!", "K2 "},
      {kLn, true, "txtLnK3", "-1", "K3/K1 must be greater than 0!",
       "K3/K1 takes a number above 0."},
      {kLog10, false, "txtLnK1", "1e308", "Overflow", "LogK1 "},
      {kLn, false, "txtOffset(1)", "0x1", illegal, "Baseline of row 2 takes any number"},
      {kLn, false, "txtRefConc(1)", "0", illegal, "Ref.Conc.A of row 2 takes a number above 0."},
      {kLn, false, "txtALoad(1)", "-0.1", illegal,
       "[A]load of row 2 takes 0 or a number above it."},
      {kLn, false, "lblRunSpeed(1)", "0", illegal, "Speed of row 2 takes a number above 0."},
      {kLn, false, "lblDegC", "warm", illegal, "Temperature takes any number"},
      {kLn, false, "txtLinkTo(1)", "3", illegal, "Link To of row 2 "},
  };
  QString remark;
  session.Remark = [&remark](const QString& text) { remark = text; };
  Click("chkUseMC");
  for (const Case& c : cases) {
    session.Module.Preferences.KFormat = c.KFormat;
    tab.RefreshDisplay();
    if (setup.ConstrainKRatios != c.constrained) Click("chkConstrainKratios");
    const std::string before = Text(c.box);
    dialogs.messages.clear();
    Type(c.box, c.typed);
    ASSERT_EQ(dialogs.messages.size(), 1u) << c.box << c.typed;
    EXPECT_EQ(dialogs.messages[0].title, "Parameter Entry Error");
    EXPECT_EQ(LastMessage(), c.text);
    EXPECT_TRUE(remark.startsWith(c.remark)) << remark.toStdString();
    EXPECT_EQ(Text(c.box), before);
    EXPECT_TRUE(Find(c.box)->hasFocus());
  }
  Type("txtALoad(1)", "0");
  EXPECT_EQ(Scan(1).ALoad, 0.0);
  EXPECT_EQ(remark, "");
}

TEST_F(FitControlTabTest, ValuesBeyondTheirFormAreNoCrash) {
  SetUp(2, 1);
  page.Vbar = 1.0;
  page.ModelLnK1 = 800.0;
  session.Module.Preferences.UseBuoyantMW = false;
  session.Module.Preferences.KFormat = kPlain;
  tab.RefreshDisplay();
  EXPECT_EQ(Text("txtMWB"), "Division by zero");
  EXPECT_EQ(Text("txtLnK1"), "Overflow");
  Type("txtMWB", "50000");
  EXPECT_EQ(LastMessage(), "Division by zero");
  EXPECT_EQ(page.ModelMW, 7500.0);
}

TEST_F(FitControlTabTest, EachModelShowsItsOwnControls) {
  AddScans(2);
  const std::vector<std::string> cases = {
      "chkCalcConcs",
      "chkCalcConcs txtVirialC",
      "chkCalcConcs txtN1mer LnK1",
      "chkCalcConcs txtN1mer LnK1 txtN2mer LnK2",
      "chkCalcConcs txtN1mer LnK1 txtAlpha txtRmen(1) txtRbase(1)",
      "chkCalcConcs txtN1mer LnK1 txtAlpha txtRmen(1) txtRbase(1)",
      "txtMWB2 LnK1",
      "txtMWB2 LnK1 LnK2 chkConstrainKratios",
      "txtMWB2 LnK1 LnK2 LnK3 chkConstrainKratios",
      "chkCalcConcs LnKi",
      "txtMWB2 txtN1mer LnKs LnKh",
  };
  for (std::size_t model = 0; model < cases.size(); ++model) {
    ASSERT_TRUE(tab.SetupFit(*FindModel(static_cast<int>(model))));
    QStringList expected = QString::fromStdString(cases[model]).split(' ');
    const bool two = expected.contains("txtMWB2");
    if (two)
      expected << "chkUseMC"
               << "txtRefConc2(1)"
               << "txtExtCoeff2(1)"
               << "txtLinkTo(1)";
    for (const std::string name :
         {"txtMWB2", "txtVirialC", "txtN1mer", "txtN2mer", "txtAlpha", "lblLnK1", "lblLnK2",
          "lblLnK3", "chkCalcConcs", "chkUseMC", "chkConstrainKratios", "txtRefConc2(1)",
          "txtExtCoeff2(1)", "txtALoad(1)", "txtRmen(1)", "txtRbase(1)", "txtLinkTo(1)"}) {
      const bool isK = name.starts_with("lbl");
      const QString key = isK ? Find<QLabel>(name)->text() : QString::fromStdString(name);
      EXPECT_EQ(Find(name)->isVisible(), expected.contains(key)) << model << " " << name;
    }
    EXPECT_EQ(Find<QLabel>("lblMWB")->text(), two ? "Buoy. MW-A" : "Buoy. MW");
    EXPECT_EQ(Find<QLabel>("lblRef")->text(), two ? "Ref.Conc.A" : "Ref.Conc.");
    EXPECT_EQ(Find<QLabel>("lblRmen")->text(), two ? "[A]load" : "R[men.]");
  }
  session.Module.Store.UseData[1] = false;
  ASSERT_TRUE(tab.SetupFit(*FindModel(10)));
  EXPECT_FALSE(Find("lblLinkTo")->isVisible());
  EXPECT_EQ(tab.findChild<QWidget*>("txtOffset(1)"), nullptr);
}

TEST_F(FitControlTabTest, CtrlCopiesToTheRowsBelow) {
  SetUp(6, 4);
  Find<QLineEdit>("txtExtCoeff(1)")->setText("2.000004");
  Click("txtExtCoeff(1)", Qt::ControlModifier);
  EXPECT_NE(Scan(0).ExtCoeff, 2.000004);
  EXPECT_EQ(Scan(1).ExtCoeff, 2.000004);
  EXPECT_EQ(Scan(3).ExtCoeff, 2.000004);
  EXPECT_EQ(Text("txtExtCoeff(3)"), "2.0000");
  Find<QLineEdit>("txtRefConc(2)")->setText("0");
  Click("txtRefConc(2)", Qt::ControlModifier);
  EXPECT_EQ(dialogs.messages.size(), 1u);
  Click("chkRefC(2)", Qt::ControlModifier);
  const CheckState on = CheckState::kChecked, off = CheckState::kUnchecked;
  EXPECT_EQ(setup.chkRefC, (std::vector<CheckState>{on, on, off, off}));
  EXPECT_FALSE(Find<QCheckBox>("chkRefC(3)")->isChecked());
  Find<QLineEdit>("txtExtCoeff(0)")->setText("3");  // typed, and not yet stored
  Click("txtOffset(0)", Qt::ControlModifier);
  EXPECT_EQ(Scan(0).ExtCoeff, 3.0);
}

TEST_F(FitControlTabTest, LinksAreNeverChained) {
  SetUp(6, 3);
  Click("txtLinkTo(1)", {}, Qt::RightButton);
  EXPECT_EQ(Entries("mnuLinkTo"), "++++");
  Choose("mnuLinkTo", "mnuLinkToSet(0)");
  EXPECT_EQ(setup.RefLink, (std::vector<std::int16_t>{0, 0, 2}));
  EXPECT_EQ(Text("txtLinkTo(1)"), "1");
  EXPECT_FALSE(Find("txtRefConc(1)")->isEnabled() || Find("txtRefConc2(1)")->isEnabled());
  Click("txtLinkTo(0)", {}, Qt::RightButton);
  EXPECT_EQ(LastMessage(), "This set is currently being used as a link");
  Click("txtLinkTo(2)", {}, Qt::RightButton);
  EXPECT_EQ(Entries("mnuLinkTo"), "+-++");
  Choose("mnuLinkTo", "mnuCancelLink");
  Type("txtLinkTo(1)", "2");
  EXPECT_TRUE(Find("txtRefConc(1)")->isEnabled());
}

TEST_F(FitControlTabTest, ConstrainedRatiosComeBackAsTheyWere) {
  SetUp(7, 1);
  page.ModelLnK2 = 15.5;
  tab.ShowValues();
  Click("chkLnK1");
  Click("chkConstrainKratios");
  EXPECT_EQ(Find<QLabel>("lblLnK2")->text(), "K2/K1");
  EXPECT_EQ(Text("txtLnK2"), "4.4817");
  EXPECT_EQ(Find<QCheckBox>("chkLnK2")->checkState(), Qt::PartiallyChecked);
  EXPECT_FALSE(Find("chkLnK2")->isEnabled());
  session.Module.Preferences.KFormat = kPlain;
  tab.RefreshDisplay();
  EXPECT_EQ(Text("txtLnK2"), "4.4817");
  Click("chkConstrainKratios");
  EXPECT_NEAR(page.ModelLnK2, 15.5, 5e-4);  // half a unit in the fourth digit of K1
  EXPECT_NEAR(page.ModelLnK3, 24.0, 5e-4);
  EXPECT_EQ(Find<QLabel>("lblLnK2")->text(), "K2");
  EXPECT_EQ(Find<QCheckBox>("chkLnK2")->checkState(), Qt::Unchecked);  // as chkLnK1
  page.ModelLnK2 = 15.5 + 800.0;
  Click("chkConstrainKratios");
  EXPECT_EQ(LastMessage(), "Overflow");
  EXPECT_FALSE(setup.ConstrainKRatios || Find<QCheckBox>("chkConstrainKratios")->isChecked());
}

TEST_F(FitControlTabTest, TheDisplayIsChosenWhereItIsSeen) {
  SetUp(6, 1);
  const QSignalSpy forK(&tab, &FitControlTab::KDisplayChosen);
  const QSignalSpy forWeights(&tab, &FitControlTab::MwDisplayChosen);
  Find<QLineEdit>("txtLnK1")->setText("3");
  Click("txtLnK1", {}, Qt::RightButton);
  EXPECT_EQ(Entries("mnuKDisplay"), "*++");
  Choose("mnuKDisplay", "popmnuDispLogK");
  EXPECT_EQ(page.ModelLnK1, 3.0);  // stored before it could be read as log K
  emit Find<QLabel>("lblMWB2")->customContextMenuRequested({});
  EXPECT_EQ(Entries("mnuMWDisplay"), "+*");
  Choose("mnuMWDisplay", "popmnuDispMW");
  EXPECT_EQ(forK.value(0), QVariantList{QVariant::fromValue(kLog10)});
  EXPECT_EQ(forWeights.value(0), QVariantList{false});
}

TEST_F(FitControlTabTest, CellGeometryIsChosenByShiftAndCtrl) {
  session.Module.CellGeometries = {{1, " sector ", {}, {}}, {2, "band", {}, {}}, {3, "x", {}, {}}};
  SetUp(0, 3);
  EXPECT_FALSE(Find("lblFitNum(1)")->isEnabled());
  Click("chkCalcConcs");
  EXPECT_TRUE(Find("lblFitNum(1)")->isEnabled());
  EXPECT_FALSE(Find("lblFitNum(1)")->toolTip().isEmpty());
  Click("lblFitNum(1)");
  EXPECT_EQ(tab.findChild<QMenu*>("mnuOptionCellGeom"), nullptr);
  Click("lblFitNum(1)", Qt::ControlModifier);
  EXPECT_EQ(Entries("mnuOptionCellGeom"), "*++");
  EXPECT_EQ(Find<QAction>("mnuCellGeom(0)")->text(), "sector");
  Choose("mnuOptionCellGeom", "mnuCellGeom(1)");
  Click("lblFitNum(1)", Qt::ShiftModifier);
  Choose("mnuOptionCellGeom", "mnuCellGeom(2)");
  EXPECT_EQ(setup.SetCellChannel, (std::vector<std::int16_t>{0, 2, 1}));
}

TEST_F(FitControlTabTest, HoldsAsManyDatasetsAsAFit) {
  EXPECT_FALSE(tab.SetupFit(*FindModel(0)));
  EXPECT_EQ(host.messages.at(0).text, "No datasets were chosen to be fitted!");
  SetUp(0, 101);
  auto* last = Find<QLineEdit>("txtRefConc(100)");
  EXPECT_TRUE(last->visibleRegion().isEmpty());
  Find<QScrollBar>("tabVScroll2")->setValue(100000);
  EXPECT_FALSE(last->visibleRegion().isEmpty());
  AddScans(1);
  EXPECT_FALSE(tab.SetupFit(*FindModel(1)));
  EXPECT_EQ(LastMessage(), "Subscript out of range.  At most 101 datasets can be fitted together.");
  EXPECT_EQ(Find<QLabel>("lblUseModel")->text(), "Ideal");
  session.Module.Store.Datasets.clear();
  tab.ShowValues();
}

TEST_F(FitControlTabTest, FocusGoesRowByRowThenThroughTheBlock) {
  SetUp(0, 2);
  auto* first = Find<QLineEdit>("lblRunSpeed(0)");
  Scan(0).RefConc = 0.123456789;
  tab.ShowValues();
  first->setFocus();
  QStringList order;
  for (int k = 0; k < 15; ++k) {
    order += QApplication::focusWidget()->objectName();
    EXPECT_EQ(Find("Shape1")->isVisible(), order.last().startsWith("chk"));
    if (order.last().startsWith("chk")) {
      const QRect box = QApplication::focusWidget()->geometry();
      EXPECT_EQ(Find("Shape1")->geometry(),
                QRect(box.x() - 2, box.y() - 1, box.width() + 4, box.height() + 2));
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCoreApplication::processEvents();
  }
  const QString row =
      "lblRunSpeed(%1) txtOffset(%1) chkOffset(%1) txtRefConc(%1) chkRefC(%1) "
      "txtExtCoeff(%1) ";
  EXPECT_EQ(order.join(' '), row.arg(0) + row.arg(1) + "txtMWB chkMWB lblDegC");
  EXPECT_EQ(Scan(0).RefConc, 0.123456789);  // passing through a box does not round its value
}

TEST_F(FitControlTabTest, KeysDoWhatTheButtonsOfTheMouseDo) {
  session.Module.CellGeometries = {{1, "sector", {}, {}}, {2, "band", {}, {}}};
  SetUp(7, 3);
  Click("chkUseMC");
  const auto press = [](QWidget* control, int key, Qt::KeyboardModifiers modifiers = {}) {
    control->setFocus();
    QTest::keyClick(control, static_cast<Qt::Key>(key), modifiers);
    QCoreApplication::processEvents();
  };
  const auto pressMenuKey = [](QWidget* control) {
    const QPoint center = control->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, center, control->mapToGlobal(center));
    QCoreApplication::sendEvent(control, &event);
  };
  press(Find("chkOffset(1)"), Qt::Key_Space, Qt::ControlModifier);
  EXPECT_EQ(setup.chkOffset,
            (std::vector{CheckState::kChecked, CheckState::kUnchecked, CheckState::kUnchecked}));
  Find<QLineEdit>("txtRefConc(1)")->setText("0.25");
  press(Find("txtRefConc(1)"), Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Scan(0).RefConc, 0.5);
  EXPECT_EQ(Scan(2).RefConc, 0.25);
  const QSignalSpy adjustments(&tab, &FitControlTab::RefConcRequested);
  pressMenuKey(Find("txtRefConc(1)"));
  EXPECT_EQ(adjustments.count(), 1);
  pressMenuKey(Find("txtLinkTo(1)"));
  EXPECT_EQ(Entries("mnuLinkTo"), "++++");
  Choose("mnuLinkTo", "mnuLinkToSet(2)");
  EXPECT_EQ(Text("txtLinkTo(1)"), "3");
  pressMenuKey(Find("txtLnK1"));
  EXPECT_EQ(Entries("mnuKDisplay"), "*++");
  Find<QMenu>("mnuKDisplay")->close();
  press(Find("lblFitNum(1)"), Qt::Key_Space, Qt::ControlModifier);
  Choose("mnuOptionCellGeom", "mnuCellGeom(1)");
  EXPECT_EQ(setup.SetCellChannel, (std::vector<std::int16_t>{0, 1, 1}));
}

TEST_F(FitControlTabTest, ArrowsGoToTheNextRowThatHasTheControl) {
  SetUp(6, 60);
  Type("txtLinkTo(1)", "1");
  struct Case {
    const char* from;
    Qt::Key key;
    const char* to;
  };
  const std::vector<Case> cases = {{"txtRefConc(0)", Qt::Key_Down, "txtRefConc(2)"},
                                   {"chkOffset(2)", Qt::Key_Up, "chkOffset(1)"},
                                   {"txtOffset(0)", Qt::Key_Up, "txtOffset(0)"},
                                   {"txtRefConc(59)", Qt::Key_Down, "txtRefConc(59)"}};
  for (const Case& c : cases) {
    Find(c.from)->setFocus();
    QTest::keyClick(Find(c.from), c.key);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), c.to) << c.from;
  }
  Find("txtOffset(0)")->setFocus();
  for (int k = 0; k < 50; ++k) QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
  EXPECT_EQ(QApplication::focusWidget()->objectName(), "txtOffset(50)");
  EXPECT_FALSE(QApplication::focusWidget()->visibleRegion().isEmpty());
  // A refusal brings a box back that was scrolled away.
  Find<QLineEdit>("txtOffset(50)")->setText("x");
  Find<QScrollBar>("tabVScroll2")->setValue(0);
  Find("txtMWB")->setFocus();
  QCoreApplication::processEvents();
  EXPECT_TRUE(Find("txtOffset(50)")->hasFocus());
  EXPECT_FALSE(Find("txtOffset(50)")->visibleRegion().isEmpty());
}

TEST_F(FitControlTabTest, AnEntryIsStoredBeforeTheFitStarts) {
  SetUp(0, 1);
  const QSignalSpy fits(&tab, &FitControlTab::FitRequested);
  const QSignalSpy adjustments(&tab, &FitControlTab::RefConcRequested);
  auto* box = Find<QLineEdit>("txtRefConc(0)");
  box->setText("0.25");
  Find<QPushButton>("cmdFitMe")->click();
  EXPECT_EQ(Scan(0).RefConc, 0.25);
  EXPECT_EQ(fits.count(), 1);
  box->setText("no");
  Find<QPushButton>("cmdFitMe")->click();
  EXPECT_EQ(fits.count(), 1);
  Click("txtRefConc(0)", {}, Qt::RightButton);
  QTest::mouseDClick(box, Qt::LeftButton);
  EXPECT_EQ(adjustments.count(), 2);
}

TEST_F(FitControlTabTest, NumbersHaveAPointInEveryLocale) {
  QLocale::setDefault(QLocale(QLocale::German));
  const bool german = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
  SetUp(0, 1);
  Type("txtOffset(0)", " 1.5 ");
  Type("lblDegC", "4.25");
  Type("lblRunSpeed(0)", "12000.5");
  EXPECT_EQ(Scan(0).Offset, 1.5);
  EXPECT_EQ(setup.DegC, 4.25);
  EXPECT_EQ(Scan(0).Speed, 12000);
  EXPECT_EQ(Text("txtOffset(0)") + " " + Text("lblDegC"), "1.5000 4.25");
  if (german) std::setlocale(LC_NUMERIC, "C");
  QLocale::setDefault(QLocale::c());
}

TEST_F(FitControlTabTest, TheNonidealModelWarnsUntilToldNotTo) {
  session.Module.Preferences.ShowNIWarning = true;
  SetUp(1, 1);
  auto* warning = Find<QDialog>("frmNIWarn");
  EXPECT_TRUE(warning->isVisible() && warning->isModal());
  warning->findChild<QCheckBox*>("chkDontShow")->setChecked(true);
  warning->findChild<QPushButton*>("cmdOK")->click();
  EXPECT_FALSE(warning->isVisible() || session.Module.Preferences.ShowNIWarning);
}
